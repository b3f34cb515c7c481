// The plain export: graphics turned into standard entities, and whole drawings (live module
// entities, kept proxies, block definitions) left with nothing but standard entities.

#include "ModuleSession.h"
#include "PlainExport.h"

#include "DbArc.h"
#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDxfProxy.h"
#include "DbHatch.h"
#include "DbLine.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "DbProxyEntity.h"
#include "DbText.h"
#include "Gi/GiProxyGraphicsWriter.h"
#include "Gi/GiRecorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using custents::plain::entitiesFromGraphics;
using custents::plain::exportPlain;
using custents::plain::isCustomEntity;
using custents::plain::PlainExportOptions;
using custents::plain::PlainExportResult;

const double kPi = 3.14159265358979323846;

std::string className(const OdRxObjectPtr& object) {
  return object->isA()->name().toUtf8();
}

std::vector<OdDbEntityPtr> entitiesOf(OdDbObjectId blockId) {
  std::vector<OdDbEntityPtr> entities;
  OdDbBlockTableRecordPtr block = OdDbBlockTableRecord::cast(blockId.safeOpenObject());
  for (const OdDbObjectId& id : block->entityIds())
    entities.push_back(OdDbEntity::cast(id.safeOpenObject()));
  return entities;
}

/// Every block of the drawing, model and paper space included.
std::vector<OdDbObjectId> blockIds(OdDbDatabase* db) {
  std::vector<OdDbObjectId> ids;
  OdDbSymbolTablePtr table = db->getBlockTableId().safeOpenObject();
  for (OdDbSymbolTableIteratorPtr it = table->newIterator(); !it->done(); it->step())
    ids.push_back(it->getRecordId());
  return ids;
}

std::size_t customEntityCount(OdDbDatabase* db) {
  std::size_t count = 0;
  for (const OdDbObjectId& block : blockIds(db))
    for (const OdDbEntityPtr& entity : entitiesOf(block))
      count += isCustomEntity(entity.get()) ? 1 : 0;
  return count;
}

/// A source entity with distinct properties, for pieces to take them from.
OdDbEntityPtr coloredSource(OdUInt16 color) {
  OdDbLinePtr line = OdDbLine::createObject();
  line->setColorIndex(color);
  line->setLineWeight(OdDb::kLnWt050);
  return line;
}

/// The platform's classes, registered for the tests that need no module.
class PlatformTest : public ::testing::Test {
protected:
  PlatformScope platform;
};
using PlainGraphics = PlatformTest;
using PlainExport = PlatformTest;

// --- Graphics to entities -------------------------------------------------------------------

struct GraphicsCase {
  const char* name;
  std::function<void(OdGiRecorder&)> draw;
  std::vector<std::string> classes;
  std::function<void(const OdRxObjectPtrArray&)> check;
  bool noted = false;
};

TEST_F(PlainGraphics, EachPrimitiveBecomesItsStandardEntity) {
  const OdGePoint3d square[4] = {OdGePoint3d(0, 0, 2), OdGePoint3d(4, 0, 2), OdGePoint3d(4, 4, 2),
                                 OdGePoint3d(0, 4, 2)};
  const std::vector<GraphicsCase> cases = {
      {"circle: closed polyline of two half circles at the circle's elevation",
       [](OdGiRecorder& r) { r.circle(OdGePoint3d(1, 2, 3), 2.0, OdGeVector3d::kZAxis); },
       {"OdDbPolyline"},
       [](const OdRxObjectPtrArray& out) {
         OdDbPolylinePtr p = OdDbPolyline::cast(out[0].get());
         ASSERT_EQ(p->numVerts(), 2u);
         EXPECT_TRUE(p->isClosed());
         EXPECT_DOUBLE_EQ(p->elevation(), 3.0);
         const double x[2] = {-1, 3};
         for (unsigned i = 0; i < 2; ++i) {
           OdGePoint3d at;
           double bulge = 0;
           p->getPointAt(i, at);
           p->getBulgeAt(i, bulge);
           EXPECT_NEAR(at.distanceTo(OdGePoint3d(x[i], 2, 3)), 0.0, 1e-12) << i;
           EXPECT_EQ(bulge, 1.0) << i;
         }
       }},
      {"clockwise arc: the same arc run counter-clockwise from its other end",
       [](OdGiRecorder& r) {
         r.circularArc(OdGePoint3d(0, 0, 0), 5.0, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis,
                       -kPi / 2);
       },
       {"OdDbArc"},
       [](const OdRxObjectPtrArray& out) {
         OdDbArcPtr arc = OdDbArc::cast(out[0].get());
         EXPECT_DOUBLE_EQ(arc->radius(), 5.0);
         EXPECT_NEAR(arc->startAngle(), 1.5 * kPi, 1e-12);
         EXPECT_NEAR(arc->endAngle(), 0.0, 1e-12);
       }},
      {"sector: the arc and its two radii",
       [](OdGiRecorder& r) {
         r.circularArc(OdGePoint3d(0, 0, 0), 1.0, OdGeVector3d::kZAxis, OdGeVector3d::kYAxis,
                       kPi / 2, kOdGiArcSector);
       },
       {"OdDbArc", "OdDbLine", "OdDbLine"},
       [](const OdRxObjectPtrArray& out) {
         EXPECT_NEAR(OdDbLine::cast(out[1].get())->endPoint().distanceTo(OdGePoint3d(0, 1, 0)), 0.0,
                     1e-12);
         EXPECT_NEAR(OdDbLine::cast(out[2].get())->startPoint().distanceTo(OdGePoint3d(-1, 0, 0)),
                     0.0, 1e-12);
       }},
      {"full-turn arc: a circle",
       [](OdGiRecorder& r) {
         r.circularArc(OdGePoint3d(0, 0, 0), 1.0, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis,
                       2 * kPi);
       },
       {"OdDbPolyline"},
       nullptr},
      {"flat polyline: one lightweight polyline, repeated points dropped",
       [](OdGiRecorder& r) {
         const OdGePoint3d pts[4] = {OdGePoint3d(0, 0, 1), OdGePoint3d(3, 0, 1),
                                     OdGePoint3d(3, 0, 1), OdGePoint3d(3, 3, 1)};
         r.polyline(4, pts);
       },
       {"OdDbPolyline"},
       [](const OdRxObjectPtrArray& out) {
         OdDbPolylinePtr p = OdDbPolyline::cast(out[0].get());
         EXPECT_EQ(p->numVerts(), 3u);
         EXPECT_FALSE(p->isClosed());
         EXPECT_DOUBLE_EQ(p->elevation(), 1.0);
       }},
      {"polyline leaving its plane: one line per segment",
       [](OdGiRecorder& r) {
         const OdGePoint3d pts[3] = {OdGePoint3d(0, 0, 0), OdGePoint3d(3, 0, 0),
                                     OdGePoint3d(3, 3, 7)};
         r.polyline(3, pts);
       },
       {"OdDbLine", "OdDbLine"},
       [](const OdRxObjectPtrArray& out) {
         EXPECT_EQ(OdDbLine::cast(out[1].get())->endPoint(), OdGePoint3d(3, 3, 7));
       }},
      {"polyline on one spot: a point",
       [](OdGiRecorder& r) {
         const OdGePoint3d pts[2] = {OdGePoint3d(5, 6, 7), OdGePoint3d(5, 6, 7)};
         r.polyline(2, pts);
       },
       {"OdDbPoint"},
       [](const OdRxObjectPtrArray& out) {
         EXPECT_EQ(OdDbPoint::cast(out[0].get())->position(), OdGePoint3d(5, 6, 7));
       }},
      {"unfilled polygon: closed polyline",
       [square](OdGiRecorder& r) { r.polygon(4, square); },
       {"OdDbPolyline"},
       [](const OdRxObjectPtrArray& out) {
         EXPECT_TRUE(OdDbPolyline::cast(out[0].get())->isClosed());
       }},
      {"filled polygon: solid hatch in its plane",
       [square](OdGiRecorder& r) {
         r.setFillType(kOdGiFillAlways);
         r.polygon(4, square);
       },
       {"OdDbHatch"},
       [](const OdRxObjectPtrArray& out) {
         OdDbHatchPtr hatch = OdDbHatch::cast(out[0].get());
         EXPECT_EQ(hatch->patternName(), OD_T("SOLID"));
         EXPECT_EQ(hatch->numLoops(), 1);
         EXPECT_DOUBLE_EQ(hatch->elevation(), 2.0);
         EXPECT_EQ(hatch->normal(), OdGeVector3d::kZAxis);
       }},
      {"text: position, height, width, rotation from its direction",
       [](OdGiRecorder& r) {
         r.text(OdGePoint3d(1, 1, 0), OdGeVector3d::kZAxis, OdGeVector3d::kYAxis, 2.5, 0.8, 0.0,
                OD_T("界址点 J1"));
       },
       {"OdDbText"},
       [](const OdRxObjectPtrArray& out) {
         OdDbTextPtr text = OdDbText::cast(out[0].get());
         EXPECT_EQ(text->textString(), OD_T("界址点 J1"));
         EXPECT_EQ(text->position(), OdGePoint3d(1, 1, 0));
         EXPECT_DOUBLE_EQ(text->height(), 2.5);
         EXPECT_DOUBLE_EQ(text->widthFactor(), 0.8);
         EXPECT_NEAR(text->rotation(), kPi / 2, 1e-12);
       }},
      {"text without a width factor: factor 1",
       [](OdGiRecorder& r) {
         r.text(OdGePoint3d(1, 1, 0), OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, 2.5, 0.0, 0.0,
                OD_T("J2"));
       },
       {"OdDbText"},
       [](const OdRxObjectPtrArray& out) {
         EXPECT_DOUBLE_EQ(OdDbText::cast(out[0].get())->widthFactor(), 1.0);
       }},
      {"infinite line: left out with a note",
       [](OdGiRecorder& r) { r.xline(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0)); },
       {},
       nullptr,
       true},
  };
  const OdDbEntityPtr source = coloredSource(3);
  for (const GraphicsCase& c : cases) {
    SCOPED_TRACE(c.name);
    OdGiRecorder recorder;
    c.draw(recorder);
    std::vector<std::string> notes;
    const OdRxObjectPtrArray out = entitiesFromGraphics(recorder.records(), source.get(), notes);
    std::vector<std::string> classes;
    for (const OdRxObjectPtr& piece : out) {
      classes.push_back(className(piece));
      const OdDbEntityPtr entity = OdDbEntity::cast(piece.get());
      ASSERT_FALSE(entity.isNull());
      EXPECT_EQ(entity->colorIndex(), 3) << "the source's colour";
      EXPECT_EQ(entity->lineWeight(), OdDb::kLnWt050) << "the source's lineweight";
    }
    EXPECT_EQ(classes, c.classes);
    EXPECT_EQ(!notes.empty(), c.noted);
    if (c.check && classes == c.classes)
      c.check(out);
  }
}

TEST_F(PlainGraphics, TraitsTheGraphicsSetOverrideTheSourceProperties) {
  OdGiRecorder recorder;
  const OdGePoint3d pts[2] = {OdGePoint3d(0, 0, 0), OdGePoint3d(1, 0, 0)};
  recorder.polyline(2, pts);
  recorder.setColor(1);
  recorder.setLineWeight(OdDb::kLnWt100);
  recorder.polyline(2, pts);
  std::vector<std::string> notes;
  const OdRxObjectPtrArray out =
      entitiesFromGraphics(recorder.records(), coloredSource(5).get(), notes);
  ASSERT_EQ(out.size(), 2u);
  EXPECT_EQ(OdDbEntity::cast(out[0].get())->colorIndex(), 5);
  EXPECT_EQ(OdDbEntity::cast(out[1].get())->colorIndex(), 1);
  EXPECT_EQ(OdDbEntity::cast(out[0].get())->lineWeight(), OdDb::kLnWt050);
  EXPECT_EQ(OdDbEntity::cast(out[1].get())->lineWeight(), OdDb::kLnWt100);
}

// --- Whole drawings -------------------------------------------------------------------------

/// A kept proxy whose graphics are the two segments given, in owner.
OdDbObjectId addProxy(OdDbObjectId owner, const OdUInt8Array& metafile) {
  OdDbProxyData parts;
  parts.setOriginalClassName(OD_T("AcmeWidget"));
  parts.setOriginalDxfName(OD_T("ACMEWIDGET"));
  parts.setApplicationDescription(OD_T("Acme"));
  parts.setGraphicsMetafile(metafile);
  OdDbProxyEntityPtr proxy = OdDbProxyEntity::createObject();
  proxy->setPropertiesFrom(coloredSource(4).get());
  proxy->setProxyData(parts);
  OdDbBlockTableRecordPtr block = OdDbBlockTableRecord::cast(owner.safeOpenObject(OdDb::kForWrite));
  return block->appendOdDbEntity(proxy.get());
}

OdUInt8Array segmentGraphics() {
  OdGiProxyGraphicsWriter writer;
  const OdGePoint3d pts[3] = {OdGePoint3d(0, 0, 0), OdGePoint3d(10, 0, 0), OdGePoint3d(10, 5, 0)};
  writer.polyline(3, pts);
  return writer.data();
}

OdDbObjectId addBlock(OdDbDatabase* db, const OdString& name) {
  OdDbBlockTableRecordPtr block = OdDbBlockTableRecord::createObject();
  block->setName(name);
  OdDbSymbolTablePtr table = db->getBlockTableId().safeOpenObject(OdDb::kForWrite);
  return table->add(block.get());
}

TEST_F(PlainExport, KeptProxiesBecomeTheirGraphicsInTheirOwnBlock) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const OdDbObjectId block = addBlock(db.get(), OD_T("WIDGETS"));
  for (OdDbObjectId owner : {db->getModelSpaceId(), db->getPaperSpaceId(), block})
    addProxy(owner, segmentGraphics());
  ASSERT_EQ(customEntityCount(db.get()), 3u);

  const PlainExportResult result = exportPlain(db.get());
  EXPECT_TRUE(result.applied);
  EXPECT_EQ(result.customEntities, 3u);
  EXPECT_EQ(result.keptProxies, 3u);
  EXPECT_EQ(result.piecesAdded, 3u);
  EXPECT_TRUE(result.failures.empty());
  EXPECT_EQ(customEntityCount(db.get()), 0u);
  for (OdDbObjectId owner : {db->getModelSpaceId(), db->getPaperSpaceId(), block}) {
    const std::vector<OdDbEntityPtr> entities = entitiesOf(owner);
    ASSERT_EQ(entities.size(), 1u);
    OdDbPolylinePtr polyline = OdDbPolyline::cast(entities[0].get());
    ASSERT_FALSE(polyline.isNull());
    EXPECT_EQ(polyline->numVerts(), 3u);
    EXPECT_EQ(polyline->colorIndex(), 4) << "the proxy's colour";
  }
  std::vector<OdDbDxfClassRecord> records;
  odDbDxfProxyHooks()->collectClasses(db.get(), records);
  EXPECT_TRUE(records.empty());
}

TEST_F(PlainExport, DamagedGraphicsFailAndKeepGoingDecidesWhatHappens) {
  OdUInt8Array damaged = segmentGraphics();
  damaged.resize(damaged.size() - 6);
  for (bool keepGoing : {false, true}) {
    SCOPED_TRACE(keepGoing ? "keep going" : "stop");
    OdDbDatabasePtr db = OdDbDatabase::createObject();
    addProxy(db->getModelSpaceId(), segmentGraphics());
    const OdDbObjectId bad = addProxy(db->getModelSpaceId(), damaged);
    PlainExportOptions options;
    options.keepGoing = keepGoing;
    std::vector<std::size_t> progress;
    options.progress = [&progress](std::size_t done, std::size_t total) {
      EXPECT_EQ(total, 2u);
      progress.push_back(done);
    };

    const PlainExportResult result = exportPlain(db.get(), options);
    EXPECT_EQ(progress, (std::vector<std::size_t>{1, 2}));
    ASSERT_EQ(result.failures.size(), 1u);
    EXPECT_EQ(result.failures[0].handle, bad.getHandle().ascii().toUtf8());
    EXPECT_EQ(result.failures[0].className, "AcmeWidget");
    EXPECT_EQ(result.failures[0].owner, "*Model_Space");
    EXPECT_NE(result.failures[0].reason.find("damaged"), std::string::npos);
    EXPECT_EQ(result.applied, keepGoing);
    const std::vector<OdDbEntityPtr> left = entitiesOf(db->getModelSpaceId());
    if (keepGoing) {
      ASSERT_EQ(left.size(), 1u) << "the good proxy's polyline only";
      EXPECT_EQ(className(left[0]), "OdDbPolyline");
    } else {
      EXPECT_EQ(left.size(), 2u) << "nothing changed";
      EXPECT_EQ(customEntityCount(db.get()), 2u);
    }
  }
}

} // namespace
