#ifndef CUSTENTS_TEXT_STYLES_H
#define CUSTENTS_TEXT_STYLES_H

// Text styles and fonts the module's entities draw their texts in. A style is found in the
// drawing's own table (brought in from the host's template when the template has one of the
// face), so that a drawing opened elsewhere shows the same fonts.

#include "DbDatabase.h"
#include "DbObjectId.h"
#include "OdString.h"

namespace custents {

/// The host template text styles are taken from.
extern const char16_t* const kTemplateName; // u"BrevantArchEx.dwt"

/// The id of a text style for faceName: the template's style of that face when the host brings
/// one in; else the drawing's style named faceName + "_txtstyle_<bold>_<italic>", created when
/// missing. A font file ending in "shx" (any letter case) makes an SHX style: the file becomes
/// the big font, "tssdeng.shx" the main font, and no face is set. Throws
/// OdError_NotThatKindOfClass when the database's text style table is of another class, the
/// not-loaded error when the text style record class is missing, OdError(eNullObjectPointer)
/// for a null database and OdError(eInvalidInput) for a negative or non-finite priorSize when
/// a style would be created.
OdDbObjectId getCurTextStyle(OdDbDatabasePtr database, double priorSize, const OdString& faceName,
                             const OdString& fontFile, int bold, int italic);

/// The same with the size in the generated name: faceName + "_txtstyle_%.2f_%d_%d"
/// (hztxt_txtstyle_12.00_0_0). The coordinate dimensions name their styles this way.
OdDbObjectId getCurTextStyle(OdDbDatabasePtr database, double priorSize, const OdString& faceName,
                             const OdString& fontFile, int bold, int italic, double nameSize);

/// The font file of a face: the last of the known faces whose name and faceName agree over
/// the shorter of the two lengths, else "simsun.ttc". So "Arial Black" gives "ARIAL.TTF" and
/// an empty face, which agrees with every entry, the last one's "hztxt.shx".
OdString getFontFileName(const OdString& faceName);

} // namespace custents

#endif
