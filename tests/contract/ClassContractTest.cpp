// The class contract: every check below runs for every row of ClassContractRows.cpp.

#include "ClassContract.h"

#include "DbBlockTable.h"
#include "DbDictionary.h"
#include "DbDwgStreamFiler.h"
#include "DbDxfFile.h"
#include "DbDxfProxy.h"
#include "DbEntity.h"
#include "DbLayerTable.h"
#include "DbLine.h"
#include "Gi/GiExtentsCollector.h"
#include "OdError.h"
#include "PropertyPE.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>
#include <sstream>
#include <unistd.h>

namespace contract {
namespace {

using Filer = OdStaticRxObject<OdDbDwgStreamFiler>;

/// The three streams an object files, compared as a whole.
struct Streams {
  OdUInt8Array data, strings, handles;
  OdUInt64 dataBits = 0, stringBits = 0, handleBits = 0;

  bool operator==(const Streams& o) const {
    return dataBits == o.dataBits && stringBits == o.stringBits && handleBits == o.handleBits &&
           data == o.data && strings == o.strings && handles == o.handles;
  }
};

std::ostream& operator<<(std::ostream& out, const Streams& s) {
  return out << "data " << s.dataBits << " bits, strings " << s.stringBits << " bits, handles "
             << s.handleBits << " bits";
}

/// Where two filings part: the stream and the first byte that differs.
std::string difference(const Streams& a, const Streams& b) {
  std::ostringstream out;
  const OdUInt8Array Streams::*parts[] = {&Streams::data, &Streams::strings, &Streams::handles};
  const char* names[] = {"data", "strings", "handles"};
  for (int i = 0; i < 3; ++i) {
    const OdUInt8Array& x = a.*parts[i];
    const OdUInt8Array& y = b.*parts[i];
    for (unsigned k = 0; k < std::max(x.size(), y.size()); ++k)
      if (k >= x.size() || k >= y.size() || x[k] != y[k]) {
        out << names[i] << " differ from byte " << k << "; ";
        break;
      }
  }
  out << "first: " << a << "; second: " << b;
  return out.str();
}

Streams streamsOf(const Filer& filer) {
  return {filer.dataBuffer(),  filer.stringBuffer(),  filer.handleBuffer(),
          filer.dataBitSize(), filer.stringBitSize(), filer.handleBitSize()};
}

Streams fileOut(const OdDbObject* object, OdDbDatabase* db,
                OdDbFiler::FilerType type = OdDbFiler::kFileFiler) {
  Filer filer;
  filer.openForWrite(db, type);
  object->dwgOutFields(&filer);
  EXPECT_EQ(filer.filerStatus(), eOk);
  return streamsOf(filer);
}

void openReader(Filer& reader, const Streams& s, OdDbDatabase* db,
                OdDbFiler::FilerType type = OdDbFiler::kFileFiler) {
  reader.openForRead(s.data, s.dataBits, s.strings, s.stringBits, s.handles, s.handleBits, db,
                     type);
}

std::string fileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string scratchPath(const std::string& name) {
  return "/tmp/custents-contract-" + std::to_string(getpid()) + "-" + name;
}

/// Extents of what an entity draws, viewport drawing included when world drawing asks for it.
OdGeExtents3d drawnExtents(const OdDbEntity* entity, OdDbDatabase* db) {
  OdGiExtentsCollector collector(db);
  if (!entity->worldDraw(&collector))
    entity->viewportDraw(&collector);
  return collector.extents();
}

/// Boxes equal within a tolerance relative to their size.
std::string boxText(const OdGeExtents3d& box) {
  std::ostringstream out;
  out.precision(17);
  out << "(" << box.minPoint().x << ", " << box.minPoint().y << ", " << box.minPoint().z << ")-("
      << box.maxPoint().x << ", " << box.maxPoint().y << ", " << box.maxPoint().z << ")";
  return out.str();
}

bool sameBox(const OdGeExtents3d& a, const OdGeExtents3d& b) {
  if (!a.isValidExtents() || !b.isValidExtents())
    return a.isValidExtents() == b.isValidExtents();
  const double size = std::max(1.0, (a.maxPoint() - a.minPoint()).length());
  return a.minPoint().distanceTo(b.minPoint()) <= 1e-9 * size &&
         a.maxPoint().distanceTo(b.maxPoint()) <= 1e-9 * size;
}

OdGeExtents3d transformedBox(const OdGeExtents3d& box, const OdGeMatrix3d& xform) {
  OdGeExtents3d result;
  const OdGePoint3d& lo = box.minPoint();
  const OdGePoint3d& hi = box.maxPoint();
  for (int corner = 0; corner < 8; ++corner)
    result.addPoint(
        OdGePoint3d(corner & 1 ? hi.x : lo.x, corner & 2 ? hi.y : lo.y, corner & 4 ? hi.z : lo.z)
            .transformBy(xform));
  return result;
}

class ClassContract : public testing::TestWithParam<Row> {
protected:
  void SetUp() override {
    db = OdDbDatabase::createObject();
    OdDbLayerTablePtr layers = db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLayerTableRecordPtr layer = OdDbLayerTableRecord::createObject();
    layer->setName(OD_T("CONTRACT"));
    layerId = layers->add(layer);
    object = build();
  }

  /// The row's typical instance, an entity of it with properties that differ from every
  /// default, so that filing, copies and explode pieces show whether they are kept.
  OdDbObjectPtr build() const {
    OdDbObjectPtr made = GetParam().build(db);
    EXPECT_FALSE(made.isNull());
    EXPECT_STREQ(made->isA()->name().toUtf8().c_str(), GetParam().className);
    if (OdDbEntityPtr entity = OdDbEntity::cast(made)) {
      entity->setDatabaseDefaults(db, true);
      entity->setColorIndex(6);
      entity->setLayer(layerId);
      entity->setLinetypeScale(2.5);
      entity->setLineWeight(OdDb::kLnWt050);
    }
    return made;
  }
  OdDbObjectPtr fresh() const { return OdDbObject::cast(GetParam().build(db)->isA()->create()); }
  OdDbEntityPtr entity() const { return OdDbEntity::cast(object); }
  bool has(unsigned flag) const { return (GetParam().flags & flag) != 0; }

  /// A copy made the way deep clones and undo make them: through a copy filer.
  OdDbObjectPtr copyThroughFiler(const OdDbObject* source) const {
    Filer reader;
    openReader(reader, fileOut(source, db, OdDbFiler::kCopyFiler), db, OdDbFiler::kCopyFiler);
    OdDbObjectPtr copy = fresh();
    EXPECT_EQ(copy->dwgInFields(&reader), eOk);
    return copy;
  }

  OdDbDatabasePtr db;
  OdDbObjectId layerId;
  OdDbObjectPtr object;
};

// ---------------------------------------------------------------------------------------------
// DWG filing

TEST_P(ClassContract, DwgRoundTripGivesTheSameStreams) {
  for (OdDbFiler::FilerType type : {OdDbFiler::kFileFiler, OdDbFiler::kCopyFiler}) {
    SCOPED_TRACE(type);
    const Streams first = fileOut(object, db, type);
    Filer reader;
    openReader(reader, first, db, type);
    OdDbObjectPtr copy = fresh();
    ASSERT_EQ(copy->dwgInFields(&reader), eOk);
    EXPECT_EQ(reader.remainingDataBits(), 0u);
    const Streams second = fileOut(copy, db, type);
    EXPECT_TRUE(second == first) << difference(first, second);
  }
}

TEST_P(ClassContract, StreamsCutAtAnyByteFailCleanly) {
  const Streams whole = fileOut(object, db);
  OdUInt64 Streams::*sizes[] = {&Streams::dataBits, &Streams::stringBits, &Streams::handleBits};
  for (OdUInt64 Streams::*size : sizes) {
    for (OdUInt64 cut = 0; cut < whole.*size; cut += 8) {
      Streams part = whole;
      part.*size = cut;
      Filer reader;
      openReader(reader, part, db);
      OdDbObjectPtr target = build();
      EXPECT_NE(target->dwgInFields(&reader), eOk) << "cut at bit " << cut;
      // Whatever was read, the object stays whole enough to be filed again.
      Filer again;
      again.openForWrite(db);
      target->dwgOutFields(&again);
    }
  }
}

/// Writes one double, picked by its place among the doubles written, as another value: what a
/// damaged file or a hostile proxy may hold where a coordinate, size or angle belongs.
class SpoilingFiler : public Filer {
public:
  SpoilingFiler(int spoiled, double value) : m_spoiled(spoiled), m_value(value) {}
  void wrDouble(double value) override {
    Filer::wrDouble(m_written++ == m_spoiled ? m_value : value);
  }
  int written() const { return m_written; }

private:
  int m_spoiled;
  double m_value;
  int m_written = 0;
};

TEST_P(ClassContract, NonNumbersInAStreamAreRefused) {
  SpoilingFiler counter(-1, 0.0);
  counter.openForWrite(db);
  object->dwgOutFields(&counter);
  for (double bad :
       {std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::infinity()}) {
    for (int spoiled = 0; spoiled < counter.written(); ++spoiled) {
      SpoilingFiler writer(spoiled, bad);
      writer.openForWrite(db);
      object->dwgOutFields(&writer);
      Filer reader;
      openReader(reader, streamsOf(writer), db);
      OdDbObjectPtr target = build();
      EXPECT_NE(target->dwgInFields(&reader), eOk) << bad << " as double " << spoiled;
    }
  }
}

TEST_P(ClassContract, NewerVersionIsRefusedWithNothingReadBeyondIt) {
  const Row& row = GetParam();
  if (row.version == Version::None || has(kOwnVersionRule))
    GTEST_SKIP() << "no version of its own, or a rule of its own";
  Filer stream;
  stream.openForWrite(db);
  row.writeBase(object, &stream);
  if (row.version == Version::Int16)
    stream.wrInt16(static_cast<OdInt16>(row.newerVersion));
  else
    stream.wrDouble(row.newerVersion);
  // Only the base and the version: a reader that went on would run out of data.
  Filer reader;
  openReader(reader, streamsOf(stream), db);
  OdDbObjectPtr target = build();
  EXPECT_EQ(static_cast<int>(target->dwgInFields(&reader)), 1);
  EXPECT_EQ(reader.filerStatus(), eOk);
  EXPECT_TRUE(fileOut(target, db) == fileOut(object, db)) << "the refused read changed fields";
}

TEST_P(ClassContract, DxfReadingIsRefusedWithoutReading) {
  if (!has(kDxfRefused))
    GTEST_SKIP() << "reads DXF groups of its own";
  const Streams before = fileOut(object, db);
  // A null filer proves that nothing is read, not even the base class's data.
  EXPECT_EQ(static_cast<int>(object->dxfInFields(nullptr)), 1);
  EXPECT_TRUE(fileOut(object, db) == before);
}

TEST_P(ClassContract, ClonesAndFilerCopiesEqualTheOriginal) {
  const Streams original = fileOut(object, db, OdDbFiler::kCopyFiler);
  OdDbObjectPtr clone = OdDbObject::cast(object->clone());
  ASSERT_FALSE(clone.isNull());
  EXPECT_EQ(clone->isA(), object->isA());
  EXPECT_TRUE(fileOut(clone, db, OdDbFiler::kCopyFiler) == original);
  EXPECT_TRUE(fileOut(copyThroughFiler(object), db, OdDbFiler::kCopyFiler) == original);
}

// ---------------------------------------------------------------------------------------------
// Drawing files

/// Puts an object where a drawing keeps it: entities in model space, other objects under the
/// named-objects dictionary. What is an entity is the registered class's say, not the C++
/// type's: a class registered as an object is filed as one.
void addToDrawing(OdDbDatabase* db, OdDbObject* object, const OdString& key) {
  if (object->isA()->isDerivedFrom(OdDbEntity::desc())) {
    OdDbEntity* entity = static_cast<OdDbEntity*>(object);
    OdDbBlockTableRecordPtr space = db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    space->appendOdDbEntity(entity);
    return;
  }
  OdDbDictionaryPtr named = db->getNamedObjectsDictionaryId().safeOpenObject(OdDb::kForWrite);
  named->setAt(key, object);
}

TEST_P(ClassContract, DrawingOfOneObjectSavesLoadsAndSavesTheSameBytes) {
  addToDrawing(db, object, OD_T("CONTRACT_OBJECT"));
  // A turned UCS, so that the header's axes are kept coordinate by coordinate.
  db->setUcs(OdGePoint3d(1, 2, 3), OdGeVector3d(0.6, 0.8, 0), OdGeVector3d(-0.8, 0.6, 0));
  const std::string first = scratchPath("first.dxf"), second = scratchPath("second.dxf");
  OdString error;
  ASSERT_EQ(odDbWriteDxf(db, OdString(first.c_str()), &error), eOk) << error.toUtf8();
  OdDbDatabasePtr loaded;
  ASSERT_EQ(odDbReadDxf(OdString(first.c_str()), loaded, &error), eOk) << error.toUtf8();
  ASSERT_EQ(odDbWriteDxf(loaded, OdString(second.c_str()), &error), eOk) << error.toUtf8();
  EXPECT_EQ(fileBytes(first), fileBytes(second));
  // The object came back live, as its own class.
  OdDbObjectPtr back =
      loaded->getOdDbObjectId(object->objectId().getHandle()).safeOpenObject(OdDb::kForRead);
  EXPECT_EQ(back->isA(), object->isA());
  if (back->isA()->isDerivedFrom(OdDbEntity::desc())) {
    EXPECT_EQ(back->ownerId(), loaded->getModelSpaceId());
  }
  // A module object travels as its DWG record, so it comes back field for field; a standard
  // entity travels as DXF groups, whose angles in degrees may come back one ulp off.
  if (odDbDxfIsProxyClass(object->isA())) {
    EXPECT_TRUE(fileOut(back, loaded, OdDbFiler::kCopyFiler) ==
                fileOut(object, db, OdDbFiler::kCopyFiler));
  }
  std::remove(first.c_str());
  std::remove(second.c_str());
}

// ---------------------------------------------------------------------------------------------
// Geometry

TEST_P(ClassContract, IdentityTransformChangesNothing) {
  OdDbEntityPtr shape = entity();
  if (shape.isNull())
    GTEST_SKIP() << "not an entity";
  const Streams before = fileOut(shape, db);
  const OdResult result = shape->transformBy(OdGeMatrix3d::kIdentity);
  // A class without geometry may refuse every transform; one with geometry takes it.
  if (has(kGeometry)) {
    EXPECT_EQ(result, eOk);
  }
  EXPECT_TRUE(fileOut(shape, db) == before);
}

TEST_P(ClassContract, TranslationMovesTheExtentsByTheVector) {
  OdDbEntityPtr shape = entity();
  if (shape.isNull() || !has(kGeometry))
    GTEST_SKIP() << "draws nothing";
  OdGeExtents3d before;
  ASSERT_EQ(shape->getGeomExtents(before), eOk);
  const OdGeVector3d move(30, -40, 5);
  ASSERT_EQ(shape->transformBy(OdGeMatrix3d::translation(move)), eOk);
  OdGeExtents3d after;
  ASSERT_EQ(shape->getGeomExtents(after), eOk);
  OdGeExtents3d expected = transformedBox(before, OdGeMatrix3d::translation(move));
  if (has(kFlat))
    expected = OdGeExtents3d(OdGePoint3d(expected.minPoint().x, expected.minPoint().y, 0),
                             OdGePoint3d(expected.maxPoint().x, expected.maxPoint().y, 0));
  EXPECT_TRUE(sameBox(after, expected)) << boxText(before) << " moved to " << boxText(after);
}

TEST_P(ClassContract, MirrorAndNonUniformScaleFollowTheClassRule) {
  OdDbEntityPtr shape = entity();
  if (shape.isNull() || !has(kGeometry))
    GTEST_SKIP() << "draws nothing";
  const struct {
    const char* name;
    OdGeMatrix3d xform;
    Transform rule;
  } cases[] = {
      {"mirror", OdGeMatrix3d::mirroring(OdGePoint3d(1, 0, 0), OdGeVector3d::kXAxis),
       GetParam().mirror},
      {"non-uniform scale", OdGeMatrix3d::scaling(OdGeScale3d(2, 1, 1), OdGePoint3d(1, 1, 0)),
       GetParam().nonUniformScale},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbEntityPtr target = OdDbEntity::cast(build());
    OdGeExtents3d before;
    ASSERT_EQ(target->getGeomExtents(before), eOk);
    const Streams unchanged = fileOut(target, db);
    const OdResult result = target->transformBy(c.xform);
    if (c.rule == Transform::Refused) {
      EXPECT_NE(result, eOk);
      EXPECT_TRUE(fileOut(target, db) == unchanged);
      continue;
    }
    ASSERT_EQ(result, eOk);
    OdGeExtents3d after;
    ASSERT_EQ(target->getGeomExtents(after), eOk);
    if (c.rule == Transform::Exact) {
      EXPECT_TRUE(sameBox(after, transformedBox(before, c.xform)));
    }
  }
}

TEST_P(ClassContract, ExplodeGivesStandardEntitiesWithTheEntityProperties) {
  OdDbEntityPtr shape = entity();
  if (shape.isNull())
    GTEST_SKIP() << "not an entity";
  OdRxObjectPtrArray pieces;
  const OdResult result = shape->explode(pieces);
  if (!has(kExplodes)) {
    // Refused, or nothing to give (an entity that shows nothing).
    EXPECT_TRUE(pieces.isEmpty()) << "result " << result;
    return;
  }
  ASSERT_EQ(result, eOk);
  ASSERT_FALSE(pieces.isEmpty());
  std::set<std::string> module(moduleClassNames().begin(), moduleClassNames().end());
  OdGeExtents3d whole, parts;
  ASSERT_EQ(shape->getGeomExtents(whole), eOk);
  for (const OdRxObjectPtr& item : pieces) {
    OdDbEntityPtr piece = OdDbEntity::cast(item);
    ASSERT_FALSE(piece.isNull());
    for (const OdRxClass* cls = piece->isA(); cls; cls = cls->myParent())
      EXPECT_EQ(module.count(cls->name().toUtf8()), 0u)
          << "a piece of module class " << piece->isA()->name().toUtf8();
    if (!has(kOwnPieceColours)) {
      EXPECT_EQ(piece->colorIndex(), shape->colorIndex());
    }
    EXPECT_EQ(piece->layerId(), shape->layerId());
    EXPECT_EQ(piece->linetypeId(), shape->linetypeId());
    EXPECT_EQ(piece->linetypeScale(), shape->linetypeScale());
    EXPECT_EQ(piece->lineWeight(), shape->lineWeight());
    OdGeExtents3d extents;
    if (piece->getGeomExtents(extents) == eOk)
      parts.addExt(extents);
  }
  SCOPED_TRACE(boxText(whole) + " holds the pieces " + boxText(parts));
  const double slack = 1e-9 * std::max(1.0, (whole.maxPoint() - whole.minPoint()).length());
  EXPECT_TRUE(whole.contains(parts, OdGeTol(slack)));
}

TEST_P(ClassContract, WhatItDrawsIsItsExtents) {
  OdDbEntityPtr shape = entity();
  if (shape.isNull())
    GTEST_SKIP() << "not an entity";
  OdGeExtents3d extents;
  const OdResult result = shape->getGeomExtents(extents);
  const OdGeExtents3d drawn = drawnExtents(shape, db);
  if (!has(kGeometry)) {
    EXPECT_FALSE(drawn.isValidExtents());
    EXPECT_NE(result, eOk);
    return;
  }
  ASSERT_EQ(result, eOk);
  SCOPED_TRACE(boxText(extents) + " drawn " + boxText(drawn));
  const double size = std::max(1.0, (extents.maxPoint() - extents.minPoint()).length());
  EXPECT_TRUE(extents.contains(drawn, OdGeTol(1e-9 * size)));
  // Arcs may be drawn as chords, so the ink may fall short of the exact extents by a little.
  if (!has(kExtentsBeyondDrawing)) {
    EXPECT_TRUE(drawn.contains(extents, OdGeTol(1e-3 * size)));
  }
}

// ---------------------------------------------------------------------------------------------
// Property pages

TEST_P(ClassContract, PropertyPageKeepsTheHostContract) {
  OdDbEntityPtr shape = entity();
  PropertyPEPtr page =
      shape.isNull() ? PropertyPEPtr() : PropertyPE::cast(shape->isA()->getX(PropertyPE::desc()));
  if (page.isNull())
    GTEST_SKIP() << "no property extension";
  OdStaticRxObject<PropertyPE> host;

  // Group 0 is the host's common group.
  const entityProperty common = page->getPropertyByeId(shape, 0);
  EXPECT_EQ(common.count, 5);
  EXPECT_EQ(common.name, host.getPropertyByeId(shape, 0).name);
  for (int row = 0; row < 5; ++row) {
    const propAttribute own = page->getPropAttributeByeId(shape, 0, row);
    const propAttribute hosts = host.getPropAttributeByeId(shape, 0, row);
    EXPECT_EQ(own.name, hosts.name) << "common row " << row;
    EXPECT_EQ(own.tip, hosts.tip) << "common row " << row;
    EXPECT_TRUE(own.value == hosts.value) << "common row " << row;
    EXPECT_EQ(own.editorKind, hosts.editorKind) << "common row " << row;
  }
  EXPECT_FALSE(page->getEntityName(shape).isEmpty());

  // Another class is refused in both directions.
  OdDbLinePtr stranger = OdDbLine::createObject();
  EXPECT_THROW(page->getPropAttributeByeId(stranger, 0, 0), OdError_NotThatKindOfClass);
  EXPECT_THROW(page->setPropAttributeByeId(stranger, OdVariant(OdString(u"1")), 0, 0),
               OdError_NotThatKindOfClass);

  // Rows and groups beyond what the page reports are empty.
  const int groups = page->getPropertyCount();
  EXPECT_TRUE(page->getPropAttributeByeId(shape, 0, 5).name.isEmpty());
  EXPECT_TRUE(page->getPropAttributeByeId(shape, groups, 0).name.isEmpty());

  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (int group = 1; group < groups; ++group) {
    const entityProperty record = page->getPropertyByeId(shape, group);
    EXPECT_FALSE(record.name.isEmpty()) << "group " << group;
    EXPECT_TRUE(page->getPropAttributeByeId(shape, group, record.count).name.isEmpty());
    for (int row = 0; row < record.count; ++row) {
      SCOPED_TRACE(testing::Message() << "group " << group << " row " << row);
      const propAttribute attribute = page->getPropAttributeByeId(shape, group, row);
      EXPECT_EQ(attribute.index, row);
      EXPECT_FALSE(attribute.name.isEmpty());
      EXPECT_FALSE(attribute.reserved);
      EXPECT_TRUE(attribute.tip.left(2) == OdString(attribute.editable ? u"修改" : u"查看"))
          << attribute.tip.toUtf8();
      // What a row must refuse without a change: anything for a read-only row; a value of
      // another kind for any row; and for a number, a text that is no finite number.
      std::vector<OdVariant> refused = {OdVariant(nan), OdVariant(inf), OdVariant(true)};
      const OdVariant::Type shown = attribute.value.type();
      const bool number =
          shown == OdVariant::kDouble || shown == OdVariant::kInt32 || shown == OdVariant::kInt16;
      if (number && attribute.editorKind == 0)
        for (const char16_t* text : {u"abc", u"nan", u"inf", u"-inf", u""})
          refused.push_back(OdVariant(OdString(text)));
      if (shown == OdVariant::kString) {
        refused = {OdVariant(1.5), OdVariant(true), OdVariant(OdInt32(3))};
        // A row that shows a number as text takes only numbers.
        const std::string text = attribute.value.getString().toUtf8();
        char* end = nullptr;
        const double parsed = std::strtod(text.c_str(), &end);
        if (!text.empty() && *end == '\0' && std::isfinite(parsed))
          for (const char16_t* other : {u"abc", u"nan", u"inf", u""})
            refused.push_back(OdVariant(OdString(other)));
      }
      if (!attribute.editable)
        refused.push_back(OdVariant(OdString(u"1")));
      for (const OdVariant& value : refused) {
        OdDbEntityPtr target = OdDbEntity::cast(build());
        const Streams before = fileOut(target, db);
        const bool accepted = page->setPropAttributeByeId(target, value, group, row);
        if (attribute.editable) {
          EXPECT_FALSE(accepted) << "value type " << value.type();
        }
        EXPECT_TRUE(fileOut(target, db) == before) << "value type " << value.type();
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, ClassContract, testing::ValuesIn(rows()),
                         [](const testing::TestParamInfo<Row>& param) {
                           return rowName(param.param);
                         });

// ---------------------------------------------------------------------------------------------
// The table itself

TEST(ClassContractTable, EveryRegisteredModuleClassHasARow) {
  std::set<std::string> rowNames;
  for (const Row& row : rows())
    EXPECT_TRUE(rowNames.insert(row.className).second) << "two rows for " << row.className;
  for (const std::string& name : moduleClassNames()) {
    EXPECT_EQ(rowNames.count(name), 1u) << name << " has no row";
    EXPECT_NE(odrxGetClass(OdString(name.c_str())), nullptr) << name << " is not registered";
  }
}

/// One drawing holding an object of every row, audited by the outside DXF library.
TEST(ClassContractTable, DrawingOfEveryRowPassesEzdxfAudit) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  std::set<std::string> module(moduleClassNames().begin(), moduleClassNames().end());
  int proxies = 0;
  for (const Row& row : rows()) {
    OdDbObjectPtr object = row.build(db);
    if (object->isA()->isDerivedFrom(OdDbEntity::desc())) {
      OdDbEntity::cast(object)->setDatabaseDefaults(db, true);
      proxies += module.count(row.className) ? 1 : 0;
    }
    addToDrawing(db, object, OdString(row.className));
  }
  const std::string path = scratchPath("all.dxf");
  OdString error;
  ASSERT_EQ(odDbWriteDxf(db, OdString(path.c_str()), &error), eOk) << error.toUtf8();
  std::ostringstream command;
  // Every module entity as a proxy with graphics (but the drawing-less ones), every standard
  // entity as itself.
  command << "/usr/bin/python3 " << CUSTENTS_TESTS_DIR << "/ezdxf/audit_dxf.py " << path
          << " --count ACAD_PROXY_ENTITY=" << proxies;
  for (const char* type : {"LINE", "POINT", "LWPOLYLINE", "ARC", "HATCH", "TEXT", "MTEXT"})
    command << " --count " << type << "=1";
  command << " 2>&1";
  FILE* pipe = popen(command.str().c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string output;
  char buffer[512];
  while (fgets(buffer, sizeof buffer, pipe))
    output += buffer;
  EXPECT_EQ(pclose(pipe), 0) << output;
  EXPECT_NE(output.find("OK"), std::string::npos) << output;
  std::remove(path.c_str());
}

} // namespace
} // namespace contract
