#ifndef HOST_GLOBAL_SHARED_H
#define HOST_GLOBAL_SHARED_H

/// Shared services of the host: string helpers for the texts modules show, and the text styles
/// of the host's drawing template.

#include "DbDatabase.h"
#include "DbObjectId.h"
#include "OdArray.h"
#include "OdString.h"

class GlobalShared {
public:
  /// Drops the trailing zeros of a decimal number's fraction and then a trailing '.', so a
  /// number formatted with fixed decimals reads naturally: "1.500000" -> "1.5", "2.000" -> "2",
  /// "-0.250" -> "-0.25", "100" -> "100" (no '.', kept). Only a plain decimal (optional sign,
  /// digits, one '.') is changed; any other text, such as "1.50e+3" or "长1.50", comes back
  /// as it was.
  static OdString CStringRemoveZero(OdString text);

  /// Splits text at every occurrence of separator into parts (cleared first). Empty parts are
  /// kept, so "a,,b" gives "a", "", "b" and "a," gives "a", "": n separators always give n + 1
  /// parts. An empty text gives no parts; an empty separator gives the whole text as one part.
  static void StrSeparate(const OdString& text, const OdString& separator,
                          OdArray<OdString>& parts);

  /// A text style of the face faceName brought into database from the host's template drawing
  /// templateName (a file name looked up in the host's template folder, see templateFolder;
  /// an absolute path is used as it is), so that texts look the same in every drawing made
  /// with the host. The template's first style that describes the face is taken: a TrueType
  /// style whose face (setFont typeface) is faceName, or an SHX style, which has no face,
  /// whose big-font or main font file is faceName plus ".shx" ("hztxt" finds the style on
  /// hztxt.shx); ASCII letter case is ignored. It is copied into database under the
  /// template's style name, unless database has a style of that name already, which is then
  /// returned unchanged. A null id when the database is null, faceName is empty, the template
  /// is missing or cannot be read, has no style of that face, or the style cannot be added.
  /// The template is read once and again only when its file changes.
  static OdDbObjectId GetTextStyleIdFromTemplate(OdSmartPtr<OdDbDatabase>& database,
                                                 OdString faceName, OdString templateName);
  /// Where templates are looked for: the folder set with setTemplateFolder, else
  /// $CUSTENTS_TEMPLATES when set and not empty, else the "templates" folder beside the host
  /// library itself.
  static OdString templateFolder();
  /// An empty folder goes back to the default.
  static void setTemplateFolder(const OdString& folder);
};

#endif
