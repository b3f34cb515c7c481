// Writing a drawing as an ASCII DXF file (AC1032). Every group goes through one item filer, so
// numbers and handles have one text form in the whole file, and out through a buffered
// writer. The reader is in DbDxfFileReader.cpp.

#include "DbDxfFile.h"
#include "DbDxfProxy.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbDxfItemFiler.h"
#include "DbEntity.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "DbTextStyleTable.h"
#include "Ge/GePoint2d.h"
#include "OdError.h"
#include "RxObjectImpl.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <unordered_set>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// ---------------------------------------------------------------------------------------------
// Hooks

OdDbDxfFileHooks::~OdDbDxfFileHooks() = default;

void OdDbDxfFileHooks::collectClasses(OdDbDatabase* /*db*/,
                                      std::vector<OdDbDxfClassRecord>& /*records*/) {}

bool OdDbDxfFileHooks::writeObject(const OdDbObject* /*object*/,
                                   const std::vector<OdDbDxfClassRecord>& /*classes*/,
                                   OdString& /*dxfName*/, OdDbDxfFiler* /*filer*/) {
  return false;
}

OdDbObjectPtr
OdDbDxfFileHooks::readUnknownEntity(const OdString& /*dxfName*/,
                                    const std::vector<OdDbDxfClassRecord>& /*classes*/,
                                    OdDbDxfFiler* /*filer*/) {
  return OdDbObjectPtr();
}

OdDbObjectPtr
OdDbDxfFileHooks::readUnknownObject(const OdString& /*dxfName*/,
                                    const std::vector<OdDbDxfClassRecord>& /*classes*/,
                                    OdDbDxfFiler* /*filer*/) {
  return OdDbObjectPtr();
}

namespace {
// Null while the defaults are in use: module objects written and read as proxies.
OdDbDxfFileHooks* g_installedHooks = nullptr;
} // namespace

OdDbDxfFileHooks* odDbSetDxfFileHooks(OdDbDxfFileHooks* hooks) {
  OdDbDxfFileHooks* previous = g_installedHooks;
  g_installedHooks = hooks;
  return previous;
}

// Shared with the reader (declared there).
OdDbDxfFileHooks* odDbDxfFileHooksInUse() {
  return g_installedHooks ? g_installedHooks : odDbDxfProxyHooks();
}

// ---------------------------------------------------------------------------------------------
// The objects of the OBJECTS section

namespace {

void appendTree(const OdDbObjectId& id, OdDbObjectIdArray& out,
                std::unordered_set<OdDbStub*>& seen) {
  if (id.isNull() || !seen.insert(static_cast<OdDbStub*>(id)).second)
    return;
  OdDbObjectPtr object = id.openObject();
  if (object.isNull() || object->isKindOf(OdDbEntity::desc()))
    return;
  out.append(id);
  if (const OdDbDictionary* dictionary = OdDbDictionary::cast(object).get())
    for (OdDbDictionaryIteratorPtr it = dictionary->newIterator(); !it->done(); it->next())
      appendTree(it->objectId(), out, seen);
}

} // namespace

OdDbObjectIdArray odDbDxfObjectsInFileOrder(OdDbDatabase* db) {
  OdDbObjectIdArray ids;
  if (!db)
    return ids;
  std::unordered_set<OdDbStub*> seen;
  appendTree(db->getNamedObjectsDictionaryId(), ids, seen);
  return ids;
}

// ---------------------------------------------------------------------------------------------
// Writer

namespace {

/// A failure that ends the save; the message names what could not be written.
struct WriteFailure {
  OdResult result;
  OdString message;
};

const OdChar* const kSymbolTableMarker = OD_T("AcDbSymbolTable");
const OdChar* const kRecordMarker = OD_T("AcDbSymbolTableRecord");

class DxfFileWriter {
public:
  DxfFileWriter(OdDbDatabase* db, std::FILE* file) : m_db(db), m_file(file) {
    m_out.reserve(kFlushSize + 4096);
  }

  void write() {
    collect();
    writeHeader();
    writeClasses();
    writeTables();
    writeBlocks();
    writeEntities();
    writeObjects();
    pair(0, "EOF");
    flush();
    if (m_nextHandle != m_handseed)
      throw WriteFailure{eInvalidInput, OD_T("Internal error: handle plan does not match")};
  }

private:
  static constexpr std::size_t kFlushSize = 1 << 20;

  // Output -------------------------------------------------------------------------------------

  void code(int groupCode) {
    // Right-aligned in three columns, as "%3d" prints it.
    char buffer[16];
    const std::to_chars_result r = std::to_chars(buffer, buffer + sizeof buffer, groupCode);
    const std::size_t n = static_cast<std::size_t>(r.ptr - buffer);
    if (n < 3)
      m_out.append(3 - n, ' ');
    m_out.append(buffer, n);
    m_out += '\n';
  }

  void pair(int groupCode, const char* value) {
    code(groupCode);
    m_out += value;
    m_out += '\n';
    if (m_out.size() >= kFlushSize)
      flush();
  }

  void flush() {
    if (!m_out.empty() && std::fwrite(m_out.data(), 1, m_out.size(), m_file) != m_out.size())
      throw WriteFailure{eFileAccessErr, OdString(OD_T("Cannot write the file: ")) +
                                             OdString(std::strerror(errno))};
    m_out.clear();
  }

  /// Starts printing the groups of one object (or a run of header groups) through the filer,
  /// which formats them straight into the output.
  OdDbDxfItemFiler& begin() {
    m_filer.openForText(&m_out, m_db);
    return m_filer;
  }

  /// Ends what begin() started: a group the filer refused fails the save (what names the
  /// object in the message; the output written so far is thrown away with the file).
  void emit(const OdString& what) {
    if (m_filer.filerStatus() != eOk)
      throw WriteFailure{m_filer.filerStatus(), OD_T("Cannot write ") + what + OD_T(": ") +
                                                    OdString(odResultText(m_filer.filerStatus()))};
    if (m_out.size() >= kFlushSize)
      flush();
  }

  OdDbHandle newHandle() {
    const OdDbHandle handle = m_nextHandle;
    ++m_nextHandle;
    return handle;
  }

  // Planning -----------------------------------------------------------------------------------

  template <class Record> std::vector<OdSmartPtr<Record>> records(OdDbObjectId tableId) {
    std::vector<OdSmartPtr<Record>> result;
    OdDbSymbolTablePtr table = tableId.safeOpenObject();
    for (OdDbSymbolTableIteratorPtr it = table->newIterator(); !it->done(); it->step())
      result.push_back(OdSmartPtr<Record>(it->getRecord()));
    return result;
  }

  /// Everything the file holds that is known before writing, and the handles of the objects
  /// the file makes up, so that $HANDSEED can be written first.
  void collect() {
    m_layers = records<OdDbLayerTableRecord>(m_db->getLayerTableId());
    m_linetypes = records<OdDbLinetypeTableRecord>(m_db->getLinetypeTableId());
    m_styles = records<OdDbTextStyleTableRecord>(m_db->getTextStyleTableId());
    m_blocks = records<OdDbBlockTableRecord>(m_db->getBlockTableId());
    odDbDxfFileHooksInUse()->collectClasses(m_db, m_classes);
    // Proxy graphics number layers and linetypes by these orders; handed over once here
    // rather than worked out from the tables again for every entity.
    OdDbObjectIdArray layerIds, linetypeIds;
    layerIds.reserve(static_cast<OdDbObjectIdArray::size_type>(m_layers.size()));
    for (const OdDbLayerTableRecordPtr& layer : m_layers)
      layerIds.append(layer->objectId());
    linetypeIds.reserve(static_cast<OdDbObjectIdArray::size_type>(m_linetypes.size()));
    for (const OdDbLinetypeTableRecordPtr& linetype : m_linetypes)
      linetypeIds.append(linetype->objectId());
    m_filer.setTableOrders(layerIds, linetypeIds);

    m_nextHandle = m_db->handseed();
    m_vportTable = newHandle();
    m_vportActive = newHandle();
    m_viewTable = newHandle();
    m_ucsTable = newHandle();
    m_appidTable = newHandle();
    m_appidAcad = newHandle();
    m_dimstyleTable = newHandle();
    m_dimstyleStandard = newHandle();
    // BLOCK and ENDBLK of each block come last, two per block in block order.
    m_blockMarkers = m_nextHandle;
    m_handseed = static_cast<OdUInt64>(m_nextHandle) + 2 * m_blocks.size();
  }

  // HEADER -------------------------------------------------------------------------------------

  void variable(const char* name) { pair(9, name); }

  static OdString nameOf(OdDbObjectId id) {
    OdDbSymbolTableRecordPtr record = OdDbSymbolTableRecord::cast(id.openObject());
    return record.isNull() ? OdString() : record->getName();
  }

  void writeHeader() {
    pair(0, "SECTION");
    pair(2, "HEADER");
    variable("$ACADVER");
    pair(1, "AC1032");
    variable("$DWGCODEPAGE");
    pair(3, "ANSI_1252");
    variable("$INSUNITS");
    pair(70, "0");
    variable("$HANDSEED");
    pair(5, OdDbHandle(m_handseed).ascii().toUtf8().c_str());

    OdDbDxfItemFiler& f = begin();
    auto var = [&f](const OdChar* name) { f.wrString(9, name); };
    var(OD_T("$CLAYER"));
    f.wrString(8, nameOf(m_db->getCLAYER()));
    var(OD_T("$CELTYPE"));
    f.wrString(6, nameOf(m_db->getCELTYPE()));
    var(OD_T("$CECOLOR"));
    const OdCmColor cecolor = m_db->getCECOLOR();
    f.wrInt16(62, static_cast<OdInt16>(colorIndexOf(cecolor)));
    var(OD_T("$CELTSCALE"));
    f.wrDouble(40, m_db->getCELTSCALE());
    var(OD_T("$CELWEIGHT"));
    f.wrInt16(370, static_cast<OdInt16>(m_db->getCELWEIGHT()));
    var(OD_T("$LTSCALE"));
    f.wrDouble(40, m_db->getLTSCALE());
    var(OD_T("$TEXTSIZE"));
    f.wrDouble(40, m_db->getTEXTSIZE());
    var(OD_T("$DIMSCALE"));
    f.wrDouble(40, m_db->getDIMSCALE());
    const OdString textStyle = nameOf(m_db->getTEXTSTYLE());
    if (!textStyle.isEmpty()) {
      var(OD_T("$TEXTSTYLE"));
      f.wrString(7, textStyle);
    }
    var(OD_T("$UCSORG"));
    f.wrPoint3d(10, m_db->getUCSORG());
    var(OD_T("$UCSXDIR"));
    f.wrVector3d(10, m_db->getUCSXDIR());
    var(OD_T("$UCSYDIR"));
    f.wrVector3d(10, m_db->getUCSYDIR());
    emit(OD_T("the header"));
    pair(0, "ENDSEC");
  }

  /// The colour number of a colour in a group 62 (an RGB colour by its nearest number).
  static int colorIndexOf(const OdCmColor& color) {
    if (color.isByColor())
      return OdCmEntityColor::lookUpACI(color.red(), color.green(), color.blue());
    return color.colorIndex();
  }

  // CLASSES ------------------------------------------------------------------------------------

  void writeClasses() {
    pair(0, "SECTION");
    pair(2, "CLASSES");
    for (const OdDbDxfClassRecord& record : m_classes) {
      OdDbDxfItemFiler& f = begin();
      f.wrString(0, OD_T("CLASS"));
      f.wrString(1, record.dxfName);
      f.wrString(2, record.cppClassName);
      f.wrString(3, record.appName);
      f.wrInt32(90, record.proxyFlags);
      f.wrInt32(91, record.instanceCount);
      f.wrInt16(280, record.wasProxy ? 1 : 0);
      f.wrInt16(281, record.isEntity ? 1 : 0);
      emit(OD_T("class ") + record.dxfName);
    }
    pair(0, "ENDSEC");
  }

  // TABLES -------------------------------------------------------------------------------------

  void beginTable(OdDbDxfItemFiler& f, const OdChar* name, OdDbHandle handle, std::size_t count) {
    f.wrString(0, OD_T("TABLE"));
    f.wrString(2, name);
    f.wrHandle(5, handle);
    f.wrHandle(330, OdDbHandle());
    f.wrSubclassMarker(kSymbolTableMarker);
    f.wrInt16(70, static_cast<OdInt16>(count > 32767 ? 32767 : count));
  }

  void beginRecord(OdDbDxfItemFiler& f, const OdChar* type, OdDbHandle handle, OdDbHandle owner,
                   const OdChar* subclass, const OdString& name, int handleCode = 5) {
    f.wrString(0, type);
    f.wrHandle(handleCode, handle);
    f.wrHandle(330, owner);
    f.wrSubclassMarker(kRecordMarker);
    f.wrSubclassMarker(subclass);
    f.wrString(2, name);
  }

  void endTable() { pair(0, "ENDTAB"); }

  void writeTables() {
    pair(0, "SECTION");
    pair(2, "TABLES");
    writeViewportTable();
    writeLinetypeTable();
    writeLayerTable();
    writeStyleTable();
    writeEmptyTable(OD_T("VIEW"), m_viewTable);
    writeEmptyTable(OD_T("UCS"), m_ucsTable);
    writeAppIdTable();
    writeDimStyleTable();
    writeBlockRecordTable();
    pair(0, "ENDSEC");
  }

  void writeViewportTable() {
    OdDbDxfItemFiler& f = begin();
    beginTable(f, OD_T("VPORT"), m_vportTable, 1);
    beginRecord(f, OD_T("VPORT"), m_vportActive, m_vportTable, OD_T("AcDbViewportTableRecord"),
                OD_T("*Active"));
    f.wrInt16(70, 0);
    f.wrPoint2d(10, OdGePoint2d(0.0, 0.0));   // lower left of the viewport
    f.wrPoint2d(11, OdGePoint2d(1.0, 1.0));   // upper right
    f.wrPoint2d(12, OdGePoint2d(0.0, 0.0));   // view centre
    f.wrPoint2d(13, OdGePoint2d(0.0, 0.0));   // snap base
    f.wrPoint2d(14, OdGePoint2d(10.0, 10.0)); // snap spacing
    f.wrPoint2d(15, OdGePoint2d(10.0, 10.0)); // grid spacing
    f.wrVector3d(16, OdGeVector3d(0.0, 0.0, 1.0));
    f.wrPoint3d(17, OdGePoint3d(0.0, 0.0, 0.0));
    f.wrDouble(40, 100.0); // view height
    f.wrDouble(41, 1.5);   // aspect ratio
    f.wrDouble(42, 50.0);  // lens length
    f.wrDouble(43, 0.0);
    f.wrDouble(44, 0.0);
    f.wrDouble(50, 0.0);
    f.wrDouble(51, 0.0);
    f.wrInt16(71, 0);
    f.wrInt16(72, 100);
    f.wrInt16(73, 1);
    f.wrInt16(74, 3);
    f.wrInt16(75, 0);
    f.wrInt16(76, 0);
    f.wrInt16(77, 0);
    f.wrInt16(78, 0);
    emit(OD_T("the VPORT table"));
    endTable();
  }

  void writeLinetypeTable() {
    OdDbDxfItemFiler& f = begin();
    beginTable(f, OD_T("LTYPE"), m_db->getLinetypeTableId().getHandle(), m_linetypes.size());
    emit(OD_T("the LTYPE table"));
    for (const OdDbLinetypeTableRecordPtr& lt : m_linetypes) {
      OdDbDxfItemFiler& r = begin();
      beginRecord(r, OD_T("LTYPE"), lt->getDbHandle(), lt->ownerId().getHandle(),
                  OD_T("AcDbLinetypeTableRecord"), lt->getName());
      r.wrInt16(70, 0);
      r.wrString(3, lt->comments());
      r.wrInt16(72, 65); // alignment 'A', the only one there is
      r.wrInt16(73, static_cast<OdInt16>(lt->numDashes()));
      r.wrDouble(40, lt->patternLength());
      for (int i = 0; i < lt->numDashes(); ++i) {
        r.wrDouble(49, lt->dashLengthAt(i));
        r.wrInt16(74, 0); // a plain dash: no shape or text in it
      }
      emit(OD_T("linetype ") + lt->getName());
    }
    endTable();
  }

  void writeLayerTable() {
    OdDbDxfItemFiler& f = begin();
    beginTable(f, OD_T("LAYER"), m_db->getLayerTableId().getHandle(), m_layers.size());
    emit(OD_T("the LAYER table"));
    for (const OdDbLayerTableRecordPtr& layer : m_layers) {
      OdDbDxfItemFiler& r = begin();
      beginRecord(r, OD_T("LAYER"), layer->getDbHandle(), layer->ownerId().getHandle(),
                  OD_T("AcDbLayerTableRecord"), layer->getName());
      r.wrInt16(70,
                static_cast<OdInt16>((layer->isFrozen() ? 1 : 0) | (layer->isLocked() ? 4 : 0)));
      const OdCmColor color = layer->color();
      int index = colorIndexOf(color);
      if (index < 1 || index > 255)
        index = 7; // a layer's colour is a real colour; anything else shows as white
      r.wrInt16(62, static_cast<OdInt16>(layer->isOff() ? -index : index));
      if (color.isByColor())
        r.wrInt32(420, static_cast<OdInt32>((OdUInt32(color.red()) << 16) |
                                            (OdUInt32(color.green()) << 8) | color.blue()));
      const OdString linetype = nameOf(layer->linetypeObjectId());
      r.wrString(6, linetype.isEmpty() ? OdString(OD_T("Continuous")) : linetype);
      r.wrBool(290, layer->isPlottable());
      r.wrInt16(370, static_cast<OdInt16>(layer->lineWeight()));
      emit(OD_T("layer ") + layer->getName());
    }
    endTable();
  }

  void writeStyleTable() {
    OdDbDxfItemFiler& f = begin();
    beginTable(f, OD_T("STYLE"), m_db->getTextStyleTableId().getHandle(), m_styles.size());
    emit(OD_T("the STYLE table"));
    for (const OdDbTextStyleTableRecordPtr& style : m_styles) {
      OdDbDxfItemFiler& r = begin();
      beginRecord(r, OD_T("STYLE"), style->getDbHandle(), style->ownerId().getHandle(),
                  OD_T("AcDbTextStyleTableRecord"), style->getName());
      r.wrInt16(
          70, static_cast<OdInt16>((style->isShapeFile() ? 1 : 0) | (style->isVertical() ? 4 : 0)));
      r.wrDouble(40, style->textSize());
      r.wrDouble(41, style->xScale());
      r.wrAngle(50, style->obliquingAngle());
      r.wrInt16(71, 0);
      r.wrDouble(42, style->priorSize());
      r.wrString(3, style->fileName());
      r.wrString(4, style->bigFontFileName());
      OdString typeface;
      bool bold = false;
      bool italic = false;
      int charset = 0;
      int pitchAndFamily = 0;
      style->font(typeface, bold, italic, charset, pitchAndFamily);
      if (!typeface.isEmpty()) {
        // A face-described font travels as the ACAD application's extended data: the face,
        // then pitch and family, charset, italic and bold packed into one number.
        r.wrString(1001, OD_T("ACAD"));
        r.wrString(1000, typeface);
        r.wrInt32(1071, static_cast<OdInt32>((pitchAndFamily & 0xFF) | ((charset & 0xFF) << 8) |
                                             (italic ? 0x01000000 : 0) | (bold ? 0x02000000 : 0)));
      }
      emit(OD_T("text style ") + style->getName());
    }
    endTable();
  }

  void writeEmptyTable(const OdChar* name, OdDbHandle handle) {
    OdDbDxfItemFiler& f = begin();
    beginTable(f, name, handle, 0);
    emit(name);
    endTable();
  }

  void writeAppIdTable() {
    OdDbDxfItemFiler& f = begin();
    beginTable(f, OD_T("APPID"), m_appidTable, 1);
    beginRecord(f, OD_T("APPID"), m_appidAcad, m_appidTable, OD_T("AcDbRegAppTableRecord"),
                OD_T("ACAD"));
    f.wrInt16(70, 0);
    emit(OD_T("the APPID table"));
    endTable();
  }

  void writeDimStyleTable() {
    OdDbDxfItemFiler& f = begin();
    beginTable(f, OD_T("DIMSTYLE"), m_dimstyleTable, 1);
    f.wrSubclassMarker(OD_T("AcDbDimStyleTable"));
    f.wrInt16(71, 0);
    // A dimension style's own handle has its own group code, 105.
    beginRecord(f, OD_T("DIMSTYLE"), m_dimstyleStandard, m_dimstyleTable,
                OD_T("AcDbDimStyleTableRecord"), OD_T("Standard"), 105);
    f.wrInt16(70, 0);
    if (!m_db->getTextStyleStandardId().isNull())
      f.wrObjectId(340, m_db->getTextStyleStandardId());
    emit(OD_T("the DIMSTYLE table"));
    endTable();
  }

  void writeBlockRecordTable() {
    OdDbDxfItemFiler& f = begin();
    beginTable(f, OD_T("BLOCK_RECORD"), m_db->getBlockTableId().getHandle(), m_blocks.size());
    emit(OD_T("the BLOCK_RECORD table"));
    for (const OdDbBlockTableRecordPtr& block : m_blocks) {
      OdDbDxfItemFiler& r = begin();
      beginRecord(r, OD_T("BLOCK_RECORD"), block->getDbHandle(), block->ownerId().getHandle(),
                  OD_T("AcDbBlockTableRecord"), block->getName());
      r.wrInt16(70, 0);  // insertion units: none
      r.wrInt16(280, 1); // explodable
      r.wrInt16(281, 0); // scales non-uniformly
      emit(OD_T("block ") + block->getName());
    }
    endTable();
  }

  // BLOCKS and ENTITIES ------------------------------------------------------------------------

  bool isLayoutBlock(const OdDbBlockTableRecord* block) const {
    return block->objectId() == m_db->getModelSpaceId() ||
           block->objectId() == m_db->getPaperSpaceId();
  }

  void writeBlocks() {
    pair(0, "SECTION");
    pair(2, "BLOCKS");
    OdDbHandle marker = m_blockMarkers;
    for (const OdDbBlockTableRecordPtr& block : m_blocks) {
      const bool paper = block->objectId() == m_db->getPaperSpaceId();
      OdDbDxfItemFiler& f = begin();
      f.wrString(0, OD_T("BLOCK"));
      f.wrHandle(5, marker);
      f.wrHandle(330, block->getDbHandle());
      f.wrSubclassMarker(OD_T("AcDbEntity"));
      if (paper)
        f.wrInt16(67, 1);
      f.wrString(8, OD_T("0"));
      f.wrSubclassMarker(OD_T("AcDbBlockBegin"));
      f.wrString(2, block->getName());
      f.wrInt16(70, 0);
      f.wrPoint3d(10, block->origin());
      f.wrString(3, block->getName());
      emit(OD_T("block ") + block->getName());
      // Model and paper space keep their entities in the ENTITIES section.
      if (!isLayoutBlock(block))
        writeEntitiesOf(block, false);
      OdDbDxfItemFiler& e = begin();
      e.wrString(0, OD_T("ENDBLK"));
      e.wrHandle(5, ++marker);
      e.wrHandle(330, block->getDbHandle());
      e.wrSubclassMarker(OD_T("AcDbEntity"));
      if (paper)
        e.wrInt16(67, 1);
      e.wrString(8, OD_T("0"));
      e.wrSubclassMarker(OD_T("AcDbBlockEnd"));
      emit(OD_T("block ") + block->getName());
      ++marker;
    }
    m_nextHandle = marker;
    pair(0, "ENDSEC");
  }

  void writeEntities() {
    pair(0, "SECTION");
    pair(2, "ENTITIES");
    for (const OdDbBlockTableRecordPtr& block : m_blocks)
      if (block->objectId() == m_db->getModelSpaceId())
        writeEntitiesOf(block, false);
    for (const OdDbBlockTableRecordPtr& block : m_blocks)
      if (block->objectId() == m_db->getPaperSpaceId())
        writeEntitiesOf(block, true);
    pair(0, "ENDSEC");
  }

  void writeEntitiesOf(const OdDbBlockTableRecord* block, bool paperSpace) {
    const OdDbObjectIdArray ids = block->entityIds();
    for (const OdDbObjectId& id : ids) {
      OdDbObjectPtr object = id.openObject();
      if (object.isNull())
        continue;
      writeEntity(object, paperSpace);
    }
  }

  void writeEntity(const OdDbObject* entity, bool paperSpace) {
    writeObject(entity, paperSpace, false);
  }

  /// One entity or object: type, handle, owner (also as a reactor for objects that
  /// dictionaries own), then the hooks' groups or the class's own. The groups after the type
  /// are printed aside first, since the hooks decide the type while writing them.
  void writeObject(const OdDbObject* object, bool paperSpace, bool ownerAsReactor) {
    m_body.clear();
    m_filer.openForText(&m_body, m_db);
    OdDbDxfItemFiler& f = m_filer;
    f.wrHandle(5, object->getDbHandle());
    const OdDbHandle owner = object->ownerId().getHandle();
    if (ownerAsReactor && !owner.isNull()) {
      f.wrString(102, OD_T("{ACAD_REACTORS"));
      f.wrHandle(330, owner);
      f.wrString(102, OD_T("}"));
    }
    f.wrHandle(330, owner);
    const std::size_t common = m_body.size();
    OdString dxfName;
    if (!odDbDxfFileHooksInUse()->writeObject(object, m_classes, dxfName, &f)) {
      dxfName = object->isA()->dxfName();
      if (dxfName.isEmpty())
        throw WriteFailure{eNotImplemented, OD_T("Cannot write a ") + object->isA()->name() +
                                                OD_T(": its class has no DXF name")};
      object->dxfOutFields(&f);
    }
    if (f.filerStatus() != eOk)
      emit(dxfName + OD_T(" ") + object->getDbHandle().ascii());
    printEntity(dxfName, common, paperSpace);
  }

  /// Prints the entity: the type first, then its groups, with `67 1` right after the first
  /// AcDbEntity marker past the common groups for a paper-space entity.
  void printEntity(const OdString& dxfName, std::size_t common, bool paperSpace) {
    code(0);
    m_out += dxfName.toUtf8();
    m_out += '\n';
    std::size_t split = std::string::npos;
    if (paperSpace && common > 0) {
      // Code and value lines alternate and code lines are numbers, so a line "100" followed
      // by a line "AcDbEntity" can only be that marker group.
      static const char kMarker[] = "\n100\nAcDbEntity\n";
      const std::size_t at = m_body.find(kMarker, common - 1, sizeof kMarker - 1);
      if (at != std::string::npos)
        split = at + sizeof kMarker - 1;
    }
    if (split == std::string::npos) {
      m_out += m_body;
    } else {
      m_out.append(m_body, 0, split);
      code(67);
      m_out += "1\n";
      m_out.append(m_body, split, std::string::npos);
    }
    if (m_out.size() >= kFlushSize)
      flush();
  }

  // OBJECTS ------------------------------------------------------------------------------------

  void writeObjects() {
    pair(0, "SECTION");
    pair(2, "OBJECTS");
    for (const OdDbObjectId& id : odDbDxfObjectsInFileOrder(m_db)) {
      OdDbObjectPtr object = id.openObject();
      const bool inDictionary =
          !object->ownerId().isNull() && object->ownerId().objectClass() &&
          object->ownerId().objectClass()->isDerivedFrom(OdDbDictionary::desc());
      writeObject(object, false, inDictionary);
    }
    pair(0, "ENDSEC");
  }

  OdDbDatabase* m_db;
  std::FILE* m_file;
  std::string m_out;
  std::string m_body; ///< the groups of the entity being written, after its type
  OdStaticRxObject<OdDbDxfItemFiler> m_filer;
  std::vector<OdDbDxfClassRecord> m_classes;
  std::vector<OdDbLayerTableRecordPtr> m_layers;
  std::vector<OdDbLinetypeTableRecordPtr> m_linetypes;
  std::vector<OdDbTextStyleTableRecordPtr> m_styles;
  std::vector<OdDbBlockTableRecordPtr> m_blocks;
  OdDbHandle m_nextHandle, m_handseed;
  OdDbHandle m_vportTable, m_vportActive, m_viewTable, m_ucsTable, m_appidTable, m_appidAcad;
  OdDbHandle m_dimstyleTable, m_dimstyleStandard;
  OdDbHandle m_blockMarkers;
};

OdResult failWith(OdResult result, const OdString& message, OdString* error) {
  if (error)
    *error = message;
  return result;
}

} // namespace

OdResult odDbWriteDxf(OdDbDatabase* db, const OdString& path, OdString* error) {
  if (!db)
    return failWith(eNullObjectPointer, OD_T("No drawing to save"), error);
  const std::string target = path.toUtf8();
  if (target.empty())
    return failWith(eInvalidInput, OD_T("No file name to save to"), error);

  // The new content goes to a temporary file in the same directory, so that the rename that
  // replaces the old file cannot cross file systems.
  std::string temporary = target + ".XXXXXX";
  const int fd = ::mkstemp(&temporary[0]);
  if (fd < 0)
    return failWith(eFileAccessErr,
                    OD_T("Cannot create a file beside ") + path + OD_T(": ") +
                        OdString(std::strerror(errno)),
                    error);
  struct stat existing;
  ::fchmod(fd, ::stat(target.c_str(), &existing) == 0 ? (existing.st_mode & 07777) : 0644);
  std::FILE* file = ::fdopen(fd, "wb");
  if (!file) {
    ::close(fd);
    ::unlink(temporary.c_str());
    return failWith(eFileAccessErr, OD_T("Cannot open a file beside ") + path, error);
  }

  OdResult result = eOk;
  OdString message;
  try {
    DxfFileWriter writer(db, file);
    writer.write();
    if (std::fflush(file) != 0 || ::fsync(::fileno(file)) != 0)
      throw WriteFailure{eFileAccessErr, OdString(OD_T("Cannot write the file: ")) +
                                             OdString(std::strerror(errno))};
  } catch (const WriteFailure& failure) {
    result = failure.result;
    message = failure.message;
  } catch (const OdError& e) {
    result = e.code();
    message = OD_T("Cannot save the drawing: ") + e.description();
  } catch (const std::bad_alloc&) {
    result = eOutOfMemory;
    message = OD_T("Out of memory while saving the drawing");
  }
  if (std::fclose(file) != 0 && result == eOk) {
    result = eFileAccessErr;
    message = OdString(OD_T("Cannot write the file: ")) + OdString(std::strerror(errno));
  }
  if (result == eOk && std::rename(temporary.c_str(), target.c_str()) != 0) {
    result = eFileAccessErr;
    message = OD_T("Cannot replace ") + path + OD_T(": ") + OdString(std::strerror(errno));
  }
  if (result != eOk) {
    ::unlink(temporary.c_str());
    return failWith(result, message, error);
  }
  return eOk;
}
