// Module objects in drawing files: a class of a (stand-in) module is saved as an
// ACAD_PROXY_ENTITY, restored as itself while its class is registered, kept as a proxy and
// written back unchanged when it is not, and malformed proxy groups are refused by line.

#include "DbDxfProxy.h"

#include "DbBlockTable.h"
#include "DbFiler.h"
#include "DbDatabase.h"
#include "DbDictionary.h"
#include "DbLayerTable.h"
#include "DbLine.h"
#include "DbProxyEntity.h"
#include "Gi/GiWorldDraw.h"
#include "RxDictionary.h"
#include "RxModule.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

/// A module entity with data in all three streams: numbers, a string and a layer reference.
class ProxyTestShape : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(ProxyTestShape);

public:
  OdGePoint3d center;
  double radius = 1.0;
  OdString label;
  OdDbObjectId marker; // hard pointer to a layer

  OdResult dwgInFields(OdDbDwgFiler* filer) override {
    const OdResult base = OdDbEntity::dwgInFields(filer);
    if (base != eOk)
      return base;
    if (filer->rdInt16() != 7)
      return eDwgObjectImproperlyRead;
    center = filer->rdPoint3d();
    radius = filer->rdDouble();
    label = filer->rdString();
    marker = filer->rdHardPointerId();
    return filer->filerStatus();
  }
  void dwgOutFields(OdDbDwgFiler* filer) const override {
    OdDbEntity::dwgOutFields(filer);
    filer->wrInt16(7);
    filer->wrPoint3d(center);
    filer->wrDouble(radius);
    filer->wrString(label);
    filer->wrHardPointerId(marker);
  }

protected:
  bool subWorldDraw(OdGiWorldDraw* draw) const override {
    draw->geometry().circle(center, radius, OdGeVector3d::kZAxis);
    return true;
  }
};

ODRX_DEFINE_PSEUDO_CONSTRUCTOR(ProxyTestShape)
ODRX_DEFINE_MEMBERS2(ProxyTestShape, OdDbEntity, &ProxyTestShape::pseudoConstructor, 33, 55, 3071,
                     OD_T("PROXYTESTSHAPE"), OD_T("ProxyTestShape|Description:"))

/// A non-graphical module object: a number and a name, pointing at a shape (soft pointer).
class ProxyTestRecord : public OdDbObject {
  ODRX_DECLARE_MEMBERS(ProxyTestRecord);

public:
  OdInt32 count = 0;
  OdString name;
  OdDbObjectId shape;

  OdResult dwgInFields(OdDbDwgFiler* filer) override {
    const OdResult base = OdDbObject::dwgInFields(filer);
    if (base != eOk)
      return base;
    count = filer->rdInt32();
    name = filer->rdString();
    shape = filer->rdSoftPointerId();
    return filer->filerStatus();
  }
  void dwgOutFields(OdDbDwgFiler* filer) const override {
    OdDbObject::dwgOutFields(filer);
    filer->wrInt32(count);
    filer->wrString(name);
    filer->wrSoftPointerId(shape);
  }
};

ODRX_DEFINE_PSEUDO_CONSTRUCTOR(ProxyTestRecord)
ODRX_DEFINE_MEMBERS2(ProxyTestRecord, OdDbObject, &ProxyTestRecord::pseudoConstructor, 33, 0, 1,
                     OD_T("PROXYTESTRECORD"), OD_T("ProxyTestRecord|Description:"))

/// Stands in for a loaded module so that classes registered under it count as module classes.
class StandInModule : public OdRxModule {
public:
  void* sysData() override { return nullptr; }
  void initApp() override {
    ProxyTestShape::rxInit();
    ProxyTestRecord::rxInit();
  }
  void uninitApp() override {
    ProxyTestRecord::rxUninit();
    ProxyTestShape::rxUninit();
  }
  OdString fileName() const override { return OD_T("standin.tx"); }
  void deleteModuleObject() override {}
};

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

void writeAll(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

/// The line number (1-based) of the first line equal to value after line `after`.
std::size_t lineOf(const std::string& text, const std::string& value, std::size_t after = 0) {
  std::istringstream in(text);
  std::string line;
  for (std::size_t n = 1; std::getline(in, line); ++n)
    if (n > after && line == value)
      return n;
  return 0;
}

class DxfProxyTest : public ::testing::Test {
protected:
  void SetUp() override {
    OdRxModule* previous = odrxSetCurrentInitModule(&module);
    module.initApp();
    odrxSetCurrentInitModule(previous);
    base = "/tmp/dxfproxy-" + std::to_string(::getpid()) + "-" +
           ::testing::UnitTest::GetInstance()->current_test_info()->name();
  }
  void TearDown() override {
    if (ProxyTestShape::desc())
      module.uninitApp();
    for (const char* suffix : {"a.dxf", "b.dxf", "c.dxf"})
      std::remove((base + suffix).c_str());
  }
  std::string file(const char* suffix) const { return base + suffix; }

  /// A drawing with a line and two module shapes on a layer of its own.
  OdDbDatabasePtr drawing() {
    OdDbDatabasePtr db = OdDbDatabase::createObject();
    OdDbLayerTablePtr layers = db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLayerTableRecordPtr layer = OdDbLayerTableRecord::createObject();
    layer->setName("Shapes");
    layerId = layers->add(layer);
    OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    OdDbLinePtr line = OdDbLine::createObject();
    line->setEndPoint(OdGePoint3d(4, 4, 0));
    space->appendOdDbEntity(line);
    for (int i = 0; i < 2; ++i) {
      OdSmartPtr<ProxyTestShape> shape = ProxyTestShape::createObject();
      shape->center = OdGePoint3d(1.5 + i, -2.25, 0.5);
      shape->radius = 3.0 + i;
      shape->label = i == 0 ? OdString(OD_T("first \u00e9")) : OdString();
      shape->marker = layerId;
      shape->setLayer(layerId);
      space->appendOdDbEntity(shape);
    }
    return db;
  }

  std::vector<OdDbObjectPtr> modelEntities(OdDbDatabase* db) {
    std::vector<OdDbObjectPtr> result;
    OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject();
    for (const OdDbObjectId& id : space->entityIds())
      result.push_back(id.safeOpenObject());
    return result;
  }

  OdStaticRxObject<StandInModule> module;
  std::string base;
  OdDbObjectId layerId;
};

TEST_F(DxfProxyTest, ModuleEntityIsWrittenAsProxyWithClassRecord) {
  OdDbDatabasePtr db = drawing();
  ASSERT_EQ(odDbWriteDxf(db, OdString::fromUtf8(file("a.dxf"))), eOk);
  const std::string text = readAll(file("a.dxf"));
  // One CLASS record for both shapes, the groups in the fixed order.
  EXPECT_NE(text.find("  0\nCLASS\n  1\nPROXYTESTSHAPE\n  2\nProxyTestShape\n  3\n"
                      "ProxyTestShape|Description:\n 90\n3071\n 91\n2\n280\n0\n281\n1\n"),
            std::string::npos);
  EXPECT_EQ(text.find("PROXYTESTSHAPE", text.find("ENTITIES")), std::string::npos);
  const std::size_t first = text.find("ACAD_PROXY_ENTITY");
  ASSERT_NE(first, std::string::npos);
  EXPECT_NE(text.find("ACAD_PROXY_ENTITY", first + 1), std::string::npos);
  const std::string proxy = text.substr(first, text.find("\n  0\n", first) - first);
  // Subclass order, ids, class number, versions, graphics, strings, data, handles, end.
  std::vector<std::string> expected = {"100\nAcDbEntity", "8\nShapes", "100\nAcDbProxyEntity",
                                       " 90\n498",        " 91\n500",  " 71\n33",
                                       " 97\n55",         " 70\n0",    "160\n",
                                       "162\n",           "311\n",     "161\n",
                                       "310\n",           "330\n",     "340\n",
                                       " 94\n0"};
  std::size_t at = 0;
  for (const std::string& piece : expected) {
    const std::size_t found = proxy.find(piece, at);
    ASSERT_NE(found, std::string::npos) << piece << " after " << at << " in\n" << proxy;
    at = found;
  }
}

TEST_F(DxfProxyTest, ModuleEntityComesBackAsItselfAndSavesTheSame) {
  OdDbDatabasePtr db = drawing();
  ASSERT_EQ(odDbWriteDxf(db, OdString::fromUtf8(file("a.dxf"))), eOk);
  OdDbDatabasePtr loaded;
  OdString error;
  ASSERT_EQ(odDbReadDxf(OdString::fromUtf8(file("a.dxf")), loaded, &error), eOk) << error.toUtf8();
  const std::vector<OdDbObjectPtr> before = modelEntities(db), after = modelEntities(loaded);
  ASSERT_EQ(after.size(), 3u);
  for (std::size_t i = 1; i < 3; ++i) {
    OdSmartPtr<ProxyTestShape> a = ProxyTestShape::cast(before[i]);
    OdSmartPtr<ProxyTestShape> b = ProxyTestShape::cast(after[i]);
    ASSERT_FALSE(b.isNull()) << after[i]->isA()->name().toUtf8();
    EXPECT_EQ(b->center, a->center);
    EXPECT_EQ(b->radius, a->radius);
    EXPECT_EQ(b->label, a->label);
    EXPECT_EQ(b->marker.getHandle(), a->marker.getHandle());
    EXPECT_EQ(b->layerId().getHandle(), a->layerId().getHandle());
    EXPECT_EQ(b->getDbHandle(), a->getDbHandle());
    EXPECT_EQ(b->ownerId(), loaded->getModelSpaceId());
  }
  ASSERT_EQ(odDbWriteDxf(loaded, OdString::fromUtf8(file("b.dxf"))), eOk);
  EXPECT_EQ(readAll(file("b.dxf")), readAll(file("a.dxf")));
}

TEST_F(DxfProxyTest, UnknownClassStaysProxyAndIsWrittenBackUnchanged) {
  OdDbDatabasePtr db = drawing();
  ASSERT_EQ(odDbWriteDxf(db, OdString::fromUtf8(file("a.dxf"))), eOk);
  const std::string written = readAll(file("a.dxf"));
  module.uninitApp();

  OdDbDatabasePtr loaded;
  OdString error;
  ASSERT_EQ(odDbReadDxf(OdString::fromUtf8(file("a.dxf")), loaded, &error), eOk) << error.toUtf8();
  const std::vector<OdDbObjectPtr> entities = modelEntities(loaded);
  ASSERT_EQ(entities.size(), 3u);
  OdDbProxyEntityPtr proxy = OdDbProxyEntity::cast(entities[1]);
  ASSERT_FALSE(proxy.isNull());
  EXPECT_EQ(proxy->originalClassName(), OdString(OD_T("ProxyTestShape")));
  EXPECT_EQ(proxy->originalDxfName(), OdString(OD_T("PROXYTESTSHAPE")));
  EXPECT_EQ(proxy->proxyFlags(), 3071u);
  EXPECT_EQ(proxy->graphicsMetafileType(), OdDbProxyEntity::kFullGraphics);
  EXPECT_FALSE(proxy->proxyData().strings().isEmpty());
  EXPECT_EQ(proxy->proxyData().references().size(), 4u); // owner, layer, linetype, marker

  ASSERT_EQ(odDbWriteDxf(loaded, OdString::fromUtf8(file("b.dxf"))), eOk);
  // Only the class record changes: the class was not loaded when the proxy was written.
  const std::string again = readAll(file("b.dxf"));
  std::string expectedFixed = written;
  const std::size_t record = expectedFixed.find("280\n0\n");
  ASSERT_NE(record, std::string::npos);
  expectedFixed.replace(record, 6, "280\n1\n");
  EXPECT_EQ(again, expectedFixed);

  // Loading the class again makes the kept bytes a live object once more.
  OdRxModule* previous = odrxSetCurrentInitModule(&module);
  module.initApp();
  odrxSetCurrentInitModule(previous);
  ASSERT_EQ(odDbReadDxf(OdString::fromUtf8(file("b.dxf")), loaded, &error), eOk) << error.toUtf8();
  OdSmartPtr<ProxyTestShape> shape = ProxyTestShape::cast(modelEntities(loaded)[1]);
  ASSERT_FALSE(shape.isNull());
  EXPECT_EQ(shape->label, OdString(OD_T("first \u00e9")));
}

TEST_F(DxfProxyTest, MalformedProxyGroupsAreRefusedWithTheirLine) {
  OdDbDatabasePtr db = drawing();
  ASSERT_EQ(odDbWriteDxf(db, OdString::fromUtf8(file("a.dxf"))), eOk);
  const std::string good = readAll(file("a.dxf"));
  const std::size_t proxyLine = lineOf(good, "ACAD_PROXY_ENTITY");
  ASSERT_GT(proxyLine, 0u);
  const std::size_t classLine = lineOf(good, "500", proxyLine);
  const std::size_t dataLine = lineOf(good, "161", proxyLine) + 1;
  const std::size_t graphicsLine = lineOf(good, "160", proxyLine) + 1;
  const std::size_t endLine = lineOf(good, "0", lineOf(good, " 94", proxyLine));
  const std::size_t firstDataHex = lineOf(good, "310", dataLine) + 1;

  struct Case {
    const char* name;
    std::function<void(std::vector<std::string>&)> edit;
    std::size_t line;
    const char* message;
  };
  const std::vector<Case> cases = {
      {"class number without a record",
       [&](std::vector<std::string>& l) { l[classLine - 1] = "509"; }, classLine,
       "has no CLASS record"},
      {"data size larger than the data",
       [&](std::vector<std::string>& l) { l[dataLine - 1] += "0"; }, dataLine, "does not match"},
      {"graphics size off by one",
       [&](std::vector<std::string>& l) {
         l[graphicsLine - 1] = std::to_string(std::stoll(l[graphicsLine - 1]) + 1);
       },
       graphicsLine, "does not match"},
      {"odd hex digits", [&](std::vector<std::string>& l) { l[firstDataHex - 1] += "A"; },
       firstDataHex, "even number of hex digits"},
      {"not 498", [&](std::vector<std::string>& l) { l[classLine - 3] = "499"; }, classLine - 2,
       "498"},
      {"a group with no place in proxy data",
       [&](std::vector<std::string>& l) { l[endLine - 2] = " 95"; }, endLine, "has no place"},
  };
  for (const Case& c : cases) {
    std::vector<std::string> lines;
    std::istringstream in(good);
    for (std::string line; std::getline(in, line);)
      lines.push_back(line);
    c.edit(lines);
    std::string text;
    for (const std::string& line : lines)
      text += line + "\n";
    writeAll(file("c.dxf"), text);
    OdDbDatabasePtr loaded;
    OdString error;
    EXPECT_EQ(odDbReadDxf(OdString::fromUtf8(file("c.dxf")), loaded, &error), eInvalidDxfCode)
        << c.name;
    EXPECT_TRUE(loaded.isNull()) << c.name;
    EXPECT_NE(error.toUtf8().find("line " + std::to_string(c.line) + ":"), std::string::npos)
        << c.name << ": " << error.toUtf8();
    EXPECT_NE(error.toUtf8().find(c.message), std::string::npos)
        << c.name << ": " << error.toUtf8();
  }
}

TEST_F(DxfProxyTest, ModuleObjectsAreProxyObjectsInADictionaryAndComeBack) {
  OdDbDatabasePtr db = drawing();
  const OdDbObjectId shapeId =
      OdDbBlockTableRecordPtr(db->getModelSpaceId().safeOpenObject())->entityIds()[2];
  {
    OdDbDictionaryPtr root = db->getNamedObjectsDictionaryId().safeOpenObject(OdDb::kForWrite);
    OdDbDictionaryPtr app = OdDbDictionary::createObject();
    root->setAt("TEST_APP", app);
    for (int i = 0; i < 3; ++i) {
      OdSmartPtr<ProxyTestRecord> record = ProxyTestRecord::createObject();
      record->count = 10 + i;
      record->name = OdString::fromUtf8("record " + std::to_string(i));
      record->shape = shapeId;
      app->setAt(OdString::fromUtf8("R" + std::to_string(i)), record);
    }
  }
  ASSERT_EQ(odDbWriteDxf(db, OdString::fromUtf8(file("a.dxf"))), eOk);
  const std::string written = readAll(file("a.dxf"));
  // The shapes' record first, then the objects' one, each with its instance count and kind.
  EXPECT_NE(written.find(" 91\n2\n280\n0\n281\n1\n  0\nCLASS\n  1\nPROXYTESTRECORD\n  2\n"
                         "ProxyTestRecord\n  3\nProxyTestRecord|Description:\n 90\n1\n 91\n3\n"
                         "280\n0\n281\n0\n"),
            std::string::npos);
  const std::size_t proxy = written.find("ACAD_PROXY_OBJECT", written.find("OBJECTS"));
  ASSERT_NE(proxy, std::string::npos);
  const std::string groups = written.substr(proxy, written.find("\n  0\n", proxy) - proxy);
  std::size_t at = 0;
  for (const char* piece : {"102\n{ACAD_REACTORS", "100\nAcDbProxyObject", " 90\n499", " 91\n501",
                            "162\n", "161\n", "330\n", " 94\n0"}) {
    at = groups.find(piece, at);
    ASSERT_NE(at, std::string::npos) << piece << " in\n" << groups;
  }
  EXPECT_EQ(groups.find("160\n"), std::string::npos); // no graphics for an object

  // Loaded class: the records come back as themselves, owned by their dictionary.
  OdDbDatabasePtr loaded;
  OdString error;
  ASSERT_EQ(odDbReadDxf(OdString::fromUtf8(file("a.dxf")), loaded, &error), eOk) << error.toUtf8();
  {
    OdDbDictionaryPtr root = loaded->getNamedObjectsDictionaryId().safeOpenObject();
    OdDbDictionaryPtr app = root->getAt("TEST_APP", OdDb::kForRead);
    ASSERT_FALSE(app.isNull());
    ASSERT_EQ(app->numEntries(), 3u);
    OdSmartPtr<ProxyTestRecord> second = ProxyTestRecord::cast(app->getAt("R1", OdDb::kForRead));
    ASSERT_FALSE(second.isNull());
    EXPECT_EQ(second->count, 11);
    EXPECT_EQ(second->name, OdString(OD_T("record 1")));
    EXPECT_EQ(second->shape.getHandle(), shapeId.getHandle());
    EXPECT_EQ(second->ownerId(), app->objectId());
  }
  ASSERT_EQ(odDbWriteDxf(loaded, OdString::fromUtf8(file("b.dxf"))), eOk);
  EXPECT_EQ(readAll(file("b.dxf")), written);

  // Class gone: kept as proxy objects, written back with only the class records' flags changed.
  module.uninitApp();
  ASSERT_EQ(odDbReadDxf(OdString::fromUtf8(file("a.dxf")), loaded, &error), eOk) << error.toUtf8();
  {
    OdDbDictionaryPtr root = loaded->getNamedObjectsDictionaryId().safeOpenObject();
    OdDbDictionaryPtr app = root->getAt("TEST_APP", OdDb::kForRead);
    ASSERT_FALSE(app.isNull());
    OdDbProxyObjectPtr kept = OdDbProxyObject::cast(app->getAt("R2", OdDb::kForRead));
    ASSERT_FALSE(kept.isNull());
    EXPECT_EQ(kept->originalClassName(), OdString(OD_T("ProxyTestRecord")));
    EXPECT_EQ(kept->proxyData().references().size(), 2u); // owner and shape
  }
  ASSERT_EQ(odDbWriteDxf(loaded, OdString::fromUtf8(file("c.dxf"))), eOk);
  std::string expected = written;
  const std::size_t classesEnd = expected.find("ENDSEC", expected.find("CLASSES"));
  for (std::size_t flag = expected.find("280\n0\n"); flag < classesEnd;
       flag = expected.find("280\n0\n", flag + 1))
    expected.replace(flag, 6, "280\n1\n");
  EXPECT_EQ(readAll(file("c.dxf")), expected);
}

TEST_F(DxfProxyTest, ClassesOutsideModulesAreNotProxies) {
  EXPECT_TRUE(odDbDxfIsProxyClass(ProxyTestShape::desc()));
  EXPECT_TRUE(odDbDxfIsProxyClass(OdDbProxyEntity::desc()));
  EXPECT_FALSE(odDbDxfIsProxyClass(OdDbLine::desc()));
  EXPECT_FALSE(odDbDxfIsProxyClass(nullptr));
}

/// The layer indexes the graphics of the first proxy entity of a file send, decoded from its
/// 310 lines after group 160.
std::vector<int> graphicsLayerIndexes(const std::string& text) {
  const std::size_t proxy = text.find("ACAD_PROXY_ENTITY", text.find("ENTITIES"));
  std::size_t at = text.find("\n160\n", proxy);
  at = text.find('\n', at + 5) + 1;
  std::string bytes;
  while (text.compare(at, 4, "310\n") == 0) {
    const std::size_t end = text.find('\n', at + 4);
    for (std::size_t i = at + 4; i + 1 < end; i += 2)
      bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    at = end + 1;
  }
  auto u32 = [&](std::size_t i) {
    std::uint32_t v = 0;
    for (int k = 3; k >= 0; --k)
      v = (v << 8) | static_cast<unsigned char>(bytes.at(i + static_cast<std::size_t>(k)));
    return v;
  };
  std::vector<int> layers;
  for (std::size_t i = 8; i + 8 <= bytes.size(); i += u32(i)) {
    if (u32(i) < 8)
      break;
    if (u32(i + 4) == 16) // layer index
      layers.push_back(static_cast<int>(u32(i + 8)));
  }
  return layers;
}

TEST_F(DxfProxyTest, GraphicsNumberLayersByTheTablesOfTheDrawingBeingSaved) {
  // Two saves in a row on one thread, the second of a drawing where the shapes' layer comes
  // later in the table: each file's graphics must use its own drawing's order.
  for (int extra = 0; extra < 3; extra += 2) {
    OdDbDatabasePtr db = OdDbDatabase::createObject();
    OdDbLayerTablePtr table = db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
    for (int i = 0; i < extra; ++i) {
      OdDbLayerTableRecordPtr before = OdDbLayerTableRecord::createObject();
      before->setName(OdString::fromUtf8("Before" + std::to_string(i)));
      table->add(before);
    }
    OdDbLayerTableRecordPtr layer = OdDbLayerTableRecord::createObject();
    layer->setName("Shapes");
    const OdDbObjectId shapesLayer = table->add(layer);
    OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    OdSmartPtr<ProxyTestShape> shape = ProxyTestShape::createObject();
    shape->marker = shapesLayer;
    shape->setLayer(shapesLayer);
    space->appendOdDbEntity(shape);
    ASSERT_EQ(odDbWriteDxf(db, OdString::fromUtf8(file("a.dxf"))), eOk);
    // Layer "0" is first, then the extra layers, then the shapes' layer.
    EXPECT_EQ(graphicsLayerIndexes(readAll(file("a.dxf"))), std::vector<int>{1 + extra})
        << extra << " layers before";
  }
}

} // namespace
