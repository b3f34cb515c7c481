// Proxy groups in drawing files that do not fit the class and data they describe are refused,
// naming the line. A module class (here a stand-in module's) is saved as an ACAD_PROXY_ENTITY;
// that a class no module knows stays a proxy written back unchanged is the module tests' check.

#include "DbDxfProxy.h"

#include "DbBlockTable.h"
#include "DbFiler.h"
#include "DbDatabase.h"
#include "DbLayerTable.h"
#include "DbLine.h"
#include "DbProxyEntity.h"
#include "Gi/GiWorldDraw.h"
#include "RxModule.h"
#include "sdk/SdkTestSupport.h"

#include <set>
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
  OdDbObjectId marker; // a layer, filed as a reference of each of the four kinds

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
    if (filer->rdSoftPointerId() != marker || filer->rdHardOwnershipId() != marker ||
        filer->rdSoftOwnershipId() != marker)
      return eDwgObjectImproperlyRead;
    return filer->filerStatus();
  }
  void dwgOutFields(OdDbDwgFiler* filer) const override {
    OdDbEntity::dwgOutFields(filer);
    filer->wrInt16(7);
    filer->wrPoint3d(center);
    filer->wrDouble(radius);
    filer->wrString(label);
    filer->wrHardPointerId(marker);
    filer->wrSoftPointerId(marker);
    filer->wrHardOwnershipId(marker);
    filer->wrSoftOwnershipId(marker);
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

/// Stands in for a loaded module so that classes registered under it count as module classes.
class StandInModule : public OdRxModule {
public:
  void* sysData() override { return nullptr; }
  void initApp() override { ProxyTestShape::rxInit(); }
  void uninitApp() override { ProxyTestShape::rxUninit(); }
  OdString fileName() const override { return OD_T("standin.tx"); }
  void deleteModuleObject() override {}
};

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

  /// A drawing with lines and two module shapes on a layer of its own, whose handle, after
  /// the lines', takes two bytes and has a zero digit.
  OdDbDatabasePtr drawing() {
    OdDbDatabasePtr db = OdDbDatabase::createObject();
    OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    for (int i = 0; i < 290; ++i) {
      OdDbLinePtr line = OdDbLine::createObject();
      line->setEndPoint(OdGePoint3d(4, i, 0));
      space->appendOdDbEntity(line);
    }
    OdDbLayerTablePtr layers = db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLayerTableRecordPtr layer = OdDbLayerTableRecord::createObject();
    layer->setName("Shapes");
    layerId = layers->add(layer);
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

  OdStaticRxObject<StandInModule> module;
  std::string base;
  OdDbObjectId layerId;
};

// The proxy's handle groups carry each kind of reference under its own code, and a handle of
// two bytes comes back as the object it names.
TEST_F(DxfProxyTest, ReferencesOfEveryKindComeBackAsTheirObjects) {
  OdDbDatabasePtr db = drawing();
  const OdString layerHandle = layerId.getHandle().ascii();
  ASSERT_EQ(layerHandle, OD_T("130"));
  ASSERT_EQ(odDbWriteDxf(db, OdString::fromUtf8(file("a.dxf"))), eOk);
  const std::string text = readAll(file("a.dxf"));
  const std::size_t proxy = lineOf(text, "ACAD_PROXY_ENTITY");
  // The references follow the string data (162) and end with 94; the layer is among them
  // under each of the four codes.
  std::istringstream in(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  const std::size_t strings = lineOf(text, "162", proxy);
  const std::size_t end = lineOf(text, " 94", strings);
  std::set<std::string> codes;
  for (std::size_t at = strings; at + 1 < end; ++at)
    if (lines[at] == layerHandle.toUtf8())
      codes.insert(lines[at - 1]);
  EXPECT_EQ(codes, (std::set<std::string>{"330", "340", "350", "360"}));
  OdDbDatabasePtr loaded;
  OdString error;
  ASSERT_EQ(odDbReadDxf(OdString::fromUtf8(file("a.dxf")), loaded, &error), eOk) << error.toUtf8();
  OdDbBlockTableRecordPtr space = loaded->getModelSpaceId().safeOpenObject();
  int shapes = 0;
  for (const OdDbObjectId& id : space->entityIds()) {
    OdDbObjectPtr object = id.safeOpenObject();
    if (ProxyTestShape* shape = dynamic_cast<ProxyTestShape*>(object.get())) {
      ++shapes;
      EXPECT_EQ(shape->marker.getHandle(), layerId.getHandle());
      EXPECT_EQ(shape->layerId(), shape->marker);
    }
  }
  EXPECT_EQ(shapes, 2);
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

} // namespace
