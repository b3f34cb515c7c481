#include "GlobalShared.h"

#include "DbDxfFile.h"
#include "DbTextStyleTable.h"
#include "OdError.h"

#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <map>
#include <string>
#include <system_error>
#include <vector>

namespace {

bool isDigit(OdChar c) {
  return c >= OD_T('0') && c <= OD_T('9');
}

/// Optional sign, digits, exactly one '.', at least one digit in all.
bool isPlainDecimal(const OdString& text) {
  int pos = 0;
  const int length = text.getLength();
  if (pos < length && (text.getAt(pos) == OD_T('-') || text.getAt(pos) == OD_T('+')))
    ++pos;
  int digits = 0;
  int points = 0;
  for (; pos < length; ++pos) {
    const OdChar c = text.getAt(pos);
    if (isDigit(c))
      ++digits;
    else if (c == OD_T('.'))
      ++points;
    else
      return false;
  }
  return digits > 0 && points == 1;
}

} // namespace

OdString GlobalShared::CStringRemoveZero(OdString text) {
  if (!isPlainDecimal(text))
    return text;
  int end = text.getLength();
  while (end > 0 && text.getAt(end - 1) == OD_T('0'))
    --end;
  if (end > 0 && text.getAt(end - 1) == OD_T('.'))
    --end;
  OdString result = text.left(end);
  // ".000" or "-.0" lose every digit; they are zero.
  bool hasDigit = false;
  for (int i = 0; i < result.getLength(); ++i)
    hasDigit = hasDigit || isDigit(result.getAt(i));
  return hasDigit ? result : OdString(OD_T("0"));
}

void GlobalShared::StrSeparate(const OdString& text, const OdString& separator,
                               OdArray<OdString>& parts) {
  parts.clear();
  if (text.isEmpty())
    return;
  if (separator.isEmpty()) {
    parts.append(text);
    return;
  }
  int start = 0;
  for (;;) {
    const int found = text.find(separator.c_str(), start);
    if (found < 0) {
      parts.append(text.mid(start));
      return;
    }
    parts.append(text.mid(start, found - start));
    start = found + separator.getLength();
  }
}

// ---------------------------------------------------------------------------------------------
// Template text styles

namespace {

/// What a template's text style says, kept apart from the template's database so the loaded
/// template costs no platform objects between calls.
struct TemplateStyle {
  OdString name;
  OdString fileName;
  OdString bigFontFileName;
  bool isShapeFile = false;
  bool isVertical = false;
  double textSize = 0.0;
  double priorSize = 0.0;
  double xScale = 1.0;
  double obliquingAngle = 0.0;
  OdString typeface;
  bool bold = false;
  bool italic = false;
  int charset = 0;
  int pitchAndFamily = 0;
};

/// One template file as last read: the file's time stamp and size tell whether it changed.
struct LoadedTemplate {
  std::filesystem::file_time_type modified;
  std::uintmax_t size = 0;
  std::vector<TemplateStyle> styles;
};

/// Templates by path. Created once and never destroyed, so no exit-time destructor runs after
/// the platform is gone; it holds only plain values.
std::map<std::string, LoadedTemplate>& templateCache() {
  static auto* cache = new std::map<std::string, LoadedTemplate>;
  return *cache;
}

OdString& configuredTemplateFolder() {
  static auto* folder = new OdString;
  return *folder;
}

std::vector<TemplateStyle> stylesOf(OdDbDatabase* database) {
  std::vector<TemplateStyle> styles;
  OdDbTextStyleTablePtr table = database->getTextStyleTableId().safeOpenObject();
  OdDbSymbolTableIteratorPtr it = table->newIterator();
  for (it->start(); !it->done(); it->step()) {
    OdDbTextStyleTableRecordPtr record = it->getRecord();
    TemplateStyle style;
    style.name = record->getName();
    style.fileName = record->fileName();
    style.bigFontFileName = record->bigFontFileName();
    style.isShapeFile = record->isShapeFile();
    style.isVertical = record->isVertical();
    style.textSize = record->textSize();
    style.priorSize = record->priorSize();
    style.xScale = record->xScale();
    style.obliquingAngle = record->obliquingAngle();
    record->font(style.typeface, style.bold, style.italic, style.charset, style.pitchAndFamily);
    styles.push_back(style);
  }
  return styles;
}

/// The template at path, read again only when the file changed since the last read. Null when
/// the file is missing; an unreadable file gives a template without styles.
const LoadedTemplate* loadTemplate(const std::string& path) {
  std::map<std::string, LoadedTemplate>& cache = templateCache();
  std::error_code error;
  const std::filesystem::file_time_type modified = std::filesystem::last_write_time(path, error);
  const std::uintmax_t size = error ? 0 : std::filesystem::file_size(path, error);
  if (error) {
    cache.erase(path);
    return nullptr;
  }
  auto found = cache.find(path);
  if (found != cache.end() && found->second.modified == modified && found->second.size == size)
    return &found->second;

  LoadedTemplate loaded;
  loaded.modified = modified;
  loaded.size = size;
  try {
    OdDbDatabasePtr database;
    if (odDbReadDxf(OdString::fromUtf8(path), database) == eOk && !database.isNull())
      loaded.styles = stylesOf(database.get());
  } catch (const OdError&) {
    loaded.styles.clear();
  }
  LoadedTemplate& slot = cache[path];
  slot = std::move(loaded);
  return &slot;
}

/// Letter case ignored for ASCII letters only, as font names are compared.
bool sameNameNoCase(const OdString& a, const OdString& b) {
  if (a.getLength() != b.getLength())
    return false;
  auto lower = [](OdChar c) {
    return (c >= OD_T('A') && c <= OD_T('Z')) ? static_cast<OdChar>(c - OD_T('A') + OD_T('a')) : c;
  };
  for (int i = 0; i < a.getLength(); ++i) {
    if (lower(a.getAt(i)) != lower(b.getAt(i)))
      return false;
  }
  return true;
}

/// A font file's name without its folder and extension: "fonts/hztxt.shx" -> "hztxt".
OdString fileStem(const OdString& fileName) {
  int start = 0;
  for (int i = 0; i < fileName.getLength(); ++i) {
    if (fileName.getAt(i) == OD_T('/') || fileName.getAt(i) == OD_T('\\'))
      start = i + 1;
  }
  OdString name = fileName.mid(start);
  const int dot = name.reverseFind(OD_T('.'));
  return dot > 0 ? name.left(dot) : name;
}

bool isShxFile(const OdString& fileName) {
  const OdString name = fileName.getLength() >= 4 ? fileName.right(4) : OdString();
  return sameNameNoCase(name, OD_T(".shx"));
}

/// A TrueType style matches by its face; an SHX style, which has no face, by the name of its
/// big-font or main font file.
bool describesFace(const TemplateStyle& style, const OdString& face) {
  if (!style.typeface.isEmpty())
    return sameNameNoCase(style.typeface, face);
  if (isShxFile(style.bigFontFileName) && sameNameNoCase(fileStem(style.bigFontFileName), face))
    return true;
  return isShxFile(style.fileName) && sameNameNoCase(fileStem(style.fileName), face);
}

OdDbObjectId bringIn(OdDbDatabase* database, const TemplateStyle& source) {
  OdDbObjectPtr object = database->getTextStyleTableId().openObject(OdDb::kForWrite);
  OdDbTextStyleTablePtr table = OdDbTextStyleTable::cast(object.get());
  if (table.isNull())
    return OdDbObjectId();
  // The drawing's own style of that name wins: the user may have changed it on purpose.
  const OdDbObjectId existing = table->getAt(source.name);
  if (!existing.isNull())
    return existing;
  OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
  style->setName(source.name);
  style->setIsShapeFile(source.isShapeFile);
  style->setIsVertical(source.isVertical);
  style->setFileName(source.fileName);
  style->setBigFontFileName(source.bigFontFileName);
  style->setTextSize(source.textSize);
  style->setPriorSize(source.priorSize);
  style->setXScale(source.xScale);
  style->setObliquingAngle(source.obliquingAngle);
  if (!source.typeface.isEmpty())
    style->setFont(source.typeface, source.bold, source.italic, source.charset,
                   source.pitchAndFamily);
  return table->add(style);
}

} // namespace

OdDbObjectId GlobalShared::GetTextStyleIdFromTemplate(OdSmartPtr<OdDbDatabase>& database,
                                                      OdString faceName, OdString templateName) {
  if (database.isNull() || faceName.isEmpty() || templateName.isEmpty())
    return OdDbObjectId();
  const std::string name = templateName.toUtf8();
  const std::filesystem::path path = std::filesystem::path(name).is_absolute()
                                         ? std::filesystem::path(name)
                                         : std::filesystem::path(templateFolder().toUtf8()) / name;
  const LoadedTemplate* loaded = loadTemplate(path.string());
  if (!loaded)
    return OdDbObjectId();
  for (const TemplateStyle& style : loaded->styles) {
    if (!describesFace(style, faceName))
      continue;
    try {
      return bringIn(database.get(), style);
    } catch (const OdError&) {
      // A name the drawing cannot take (an erased record of that name, say): no style.
      return OdDbObjectId();
    }
  }
  return OdDbObjectId();
}

OdString GlobalShared::templateFolder() {
  const OdString& configured = configuredTemplateFolder();
  if (!configured.isEmpty())
    return configured;
  const char* fromEnvironment = std::getenv("CUSTENTS_TEMPLATES");
  if (fromEnvironment && *fromEnvironment)
    return OdString::fromUtf8(fromEnvironment);
  // Beside the host library, wherever it was installed.
  static const char anchorInThisLibrary = 0;
  Dl_info info{};
  if (dladdr(&anchorInThisLibrary, &info) && info.dli_fname) {
    const std::filesystem::path library(info.dli_fname);
    return OdString::fromUtf8((library.parent_path() / "templates").string());
  }
  return OD_T("templates");
}

void GlobalShared::setTemplateFolder(const OdString& folder) {
  configuredTemplateFolder() = folder;
}
