// Writes the host's drawing template BrevantArchEx.dwt: an empty drawing whose text style table
// holds the styles the host and its modules draw texts in. Run at build time; the template is
// a drawing file of the platform's own format, so the host reads it as it reads any drawing.
//
//   BrevantMakeTemplate <output path>

#include "DbDatabase.h"
#include "DbDxfFile.h"
#include "DbTextStyleTable.h"
#include "OdError.h"
#include "RxDictionary.h"

#include <cstdio>

namespace {

/// GB2312, the character set the Chinese faces are installed with.
const int kChineseCharset = 134;
/// Variable pitch, Swiss family: what a font dialog stores for an ordinary proportional face.
const int kVariablePitchSwiss = 0x22;

struct TemplateStyle {
  const OdChar* name;
  const OdChar* fontFile;
  const OdChar* bigFontFile; // SHX styles only
  const OdChar* face;        // TrueType styles only
  int charset;
  double priorSize;
};

// The table order is the order styles are found in when two describe the same face: the plain
// "HZTXT" style comes before the annotation style built on the same fonts.
const TemplateStyle kStyles[] = {
    {OD_T("HZTXT"), OD_T("tssdeng.shx"), OD_T("hztxt.shx"), nullptr, 0, 3.5},
    {OD_T("SONGTI"), OD_T("SIMSUN.TTC"), nullptr, OD_T("宋体"), kChineseCharset, 3.5},
    {OD_T("HEITI"), OD_T("SIMHEI.TTF"), nullptr, OD_T("黑体"), kChineseCharset, 3.5},
    {OD_T("FANGSONG"), OD_T("SIMFANG.TTF"), nullptr, OD_T("仿宋体"), kChineseCharset, 3.5},
    {OD_T("ARIAL"), OD_T("ARIAL.TTF"), nullptr, OD_T("Arial"), 0, 2.5},
    // The host's annotation style: its texts are sized from the drawing scale, not the style.
    {OD_T("BREVANT_AISTYLE"), OD_T("tssdeng.shx"), OD_T("hztxt.shx"), nullptr, 0, 3.5},
};

void addStyles(OdDbDatabase* database) {
  OdDbTextStyleTablePtr table = database->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
  for (const TemplateStyle& entry : kStyles) {
    OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
    style->setName(entry.name);
    style->setIsShapeFile(false);
    style->setFileName(entry.fontFile);
    if (entry.bigFontFile)
      style->setBigFontFileName(entry.bigFontFile);
    style->setTextSize(0.0);
    style->setXScale(entry.face ? 1.0 : 0.7);
    style->setObliquingAngle(0.0);
    style->setPriorSize(entry.priorSize);
    if (entry.face)
      style->setFont(entry.face, false, false, entry.charset, kVariablePitchSwiss);
    table->add(style);
  }
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <output path>\n", argc > 0 ? argv[0] : "BrevantMakeTemplate");
    return 2;
  }
  odInitialize();
  int status = 0;
  try {
    OdDbDatabasePtr database = OdDbDatabase::createObject();
    addStyles(database.get());
    OdString error;
    if (odDbWriteDxf(database.get(), OdString(argv[1]), &error) != eOk) {
      std::fprintf(stderr, "cannot write %s: %s\n", argv[1], error.toUtf8().c_str());
      status = 1;
    }
  } catch (const OdError& e) {
    std::fprintf(stderr, "cannot build the template: %s\n", e.description().toUtf8().c_str());
    status = 1;
  }
  odUninitialize();
  return status;
}
