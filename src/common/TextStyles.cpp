#include "TextStyles.h"

#include "DbTextStyleTable.h"
#include "GlobalShared.h"
#include "OdError.h"
#include "common/NotLoaded.h"

#include <cmath>

namespace custents {

const char16_t* const kTemplateName = u"BrevantArchEx.dwt";

namespace {

/// The main font that goes with an SHX big font: the Latin letters and digits of SHX styles.
const OdChar* const kShxMainFont = OD_T("tssdeng.shx");
/// The prior size an SHX style starts with; overwritten at once by the caller's size.
const double kShxPriorSize = 22.45;

struct FaceFile {
  const OdChar* face;
  const OdChar* file;
};

// Searched in this order; the last face agreeing with the asked one wins (see getFontFileName).
// "花纹细黑" is spelled as the host writes it, so it must stay so.
const FaceFile kFontFiles[] = {
    {OD_T("Arial"), OD_T("ARIAL.TTF")},       {OD_T("Times New Roman"), OD_T("TIMES.TTF")},
    {OD_T("宋体"), OD_T("SIMSUN.TTC")},       {OD_T("黑体"), OD_T("SIMHEI.TTF")},
    {OD_T("方正姚体"), OD_T("FZYTK.TTF")},    {OD_T("方正舒体"), OD_T("FZSTK.TTF")},
    {OD_T("仿宋体"), OD_T("SIMFANG.TTF")},    {OD_T("华文彩云"), OD_T("STCAIYUN.TTF")},
    {OD_T("华文仿宋"), OD_T("STFANGSO.TTF")}, {OD_T("华文琥珀"), OD_T("STHUPO.TTF")},
    {OD_T("华文楷体"), OD_T("STKAITI.TTF")},  {OD_T("华文隶书"), OD_T("STLITI.TTF")},
    {OD_T("华文宋体"), OD_T("STSONG.TTF")},   {OD_T("花纹细黑"), OD_T("STXIHEI.TTF")},
    {OD_T("华文新魏"), OD_T("STXINWEI.TTF")}, {OD_T("华文行楷"), OD_T("STXINGKA.TTF")},
    {OD_T("华文中宋"), OD_T("STZHONGS.TTF")}, {OD_T("楷体"), OD_T("SIMKAI.TTF")},
    {OD_T("隶书"), OD_T("SIMLI.TTF")},        {OD_T("新宋体"), OD_T("SIMSUN.TTC")},
    {OD_T("微软雅黑"), OD_T("msyh.ttf")},     {OD_T("幼圆"), OD_T("SIMYOU.TTF")},
    {OD_T("hztxt"), OD_T("hztxt.shx")},
};

bool endsWithShx(const OdString& fileName) {
  if (fileName.getLength() < 3)
    return false;
  OdString suffix = fileName.right(3);
  return suffix.makeLower() == OD_T("shx");
}

/// The find-or-create routine behind both getCurTextStyle forms; styleName is the generated
/// name used when the template has no style of the face.
OdDbObjectId findOrCreateStyle(OdDbDatabasePtr& database, double priorSize,
                               const OdString& faceName, const OdString& fontFile, int bold,
                               int italic, const OdString& styleName) {
  if (database.isNull())
    throw OdError(eNullObjectPointer);
  // A table of another class throws OdError_NotThatKindOfClass from the checked cast.
  OdDbTextStyleTablePtr table = database->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);

  const OdDbObjectId fromTemplate =
      GlobalShared::GetTextStyleIdFromTemplate(database, faceName, kTemplateName);
  if (!fromTemplate.isNull())
    return fromTemplate;

  const OdDbObjectId existing = table->getAt(styleName);
  if (!existing.isNull())
    return existing;

  if (!OdDbTextStyleTableRecord::desc())
    throw notLoadedError(OD_T("TextStyleTableRecord"));
  // Refused before anything is added, so a bad size leaves no half-made style behind.
  if (!std::isfinite(priorSize) || priorSize < 0.0)
    throw OdError(eInvalidInput);
  OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
  style->setName(styleName);
  const OdDbObjectId id = table->add(style);

  const bool shxBased = endsWithShx(fontFile);
  if (shxBased) {
    style->setPriorSize(kShxPriorSize);
    style->setIsShapeFile(false);
    style->setBigFontFileName(fontFile);
    style->setFileName(kShxMainFont);
  } else {
    style->setIsShapeFile(false);
    style->setFileName(fontFile);
  }
  style->setTextSize(0.0);
  style->setXScale(1.0);
  style->setObliquingAngle(0.0);
  // Deliberately after the SHX default above: the caller's size is what the style keeps.
  style->setPriorSize(priorSize);
  if (!faceName.isEmpty() && !shxBased)
    style->setFont(faceName, bold != 0, italic != 0, 0, 0);
  return id;
}

} // namespace

OdDbObjectId getCurTextStyle(OdDbDatabasePtr database, double priorSize, const OdString& faceName,
                             const OdString& fontFile, int bold, int italic) {
  OdString name;
  name.format(OD_T("%ls_txtstyle_%d_%d"), faceName.c_str(), bold, italic);
  return findOrCreateStyle(database, priorSize, faceName, fontFile, bold, italic, name);
}

OdDbObjectId getCurTextStyle(OdDbDatabasePtr database, double priorSize, const OdString& faceName,
                             const OdString& fontFile, int bold, int italic, double nameSize) {
  OdString name;
  name.format(OD_T("%ls_txtstyle_%.2f_%d_%d"), faceName.c_str(), nameSize, bold, italic);
  return findOrCreateStyle(database, priorSize, faceName, fontFile, bold, italic, name);
}

OdString getFontFileName(const OdString& faceName) {
  OdString result = OD_T("simsun.ttc");
  for (const FaceFile& entry : kFontFiles) {
    const OdString face(entry.face);
    const int length =
        face.getLength() < faceName.getLength() ? face.getLength() : faceName.getLength();
    // No early exit: a later entry that also agrees replaces an earlier one.
    if (face.left(length) == faceName.left(length))
      result = entry.file;
  }
  return result;
}

} // namespace custents
