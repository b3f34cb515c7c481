// The plain export: graphics turned into standard entities, and drawings whose kept proxies (in
// any block) are left as nothing but standard entities. Live module entities are exploded by
// `custents explode` in DrawingCommandsTest, and its output audited by ezdxf.

#include "ModuleSession.h"
#include "PlainExport.h"

#include "DbArc.h"
#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDxfProxy.h"
#include "DbHatch.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
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
#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using custents::plain::entitiesFromGraphics;
using custents::plain::exportPlain;
using custents::plain::PlainExportOptions;
using custents::plain::PlainExportResult;

const double kPi = 3.14159265358979323846;

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

/// A number as pieces are compared: nine digits, without rounding dust or a negative zero.
std::string num(double value) {
  const double rounded = std::round(value * 1e9) / 1e9;
  std::ostringstream out;
  out << std::setprecision(9) << (rounded == 0.0 ? 0.0 : rounded);
  return out.str();
}

std::string at(const OdGePoint3d& p) {
  return "(" + num(p.x) + "," + num(p.y) + "," + num(p.z) + ")";
}

/// A piece as text: its kind and what the conversion set, then its colour and lineweight where
/// they are not those of the source (colour 3, 0.50 mm).
std::string describe(const OdRxObjectPtr& piece) {
  std::string text;
  if (OdDbPolylinePtr p = OdDbPolyline::cast(piece.get())) {
    text = std::string("polyline") + (p->isClosed() ? " closed" : "") + " z=" + num(p->elevation());
    for (unsigned i = 0; i < p->numVerts(); ++i) {
      OdGePoint3d point;
      double bulge = 0.0;
      p->getPointAt(i, point);
      p->getBulgeAt(i, bulge);
      text += " " + at(point) + (bulge != 0.0 ? " b=" + num(bulge) : "");
    }
  } else if (OdDbArcPtr arc = OdDbArc::cast(piece.get())) {
    text = "arc " + at(arc->center()) + " r=" + num(arc->radius()) + " " + num(arc->startAngle()) +
           ".." + num(arc->endAngle());
  } else if (OdDbLinePtr line = OdDbLine::cast(piece.get())) {
    text = "line " + at(line->startPoint()) + "-" + at(line->endPoint());
  } else if (OdDbPointPtr point = OdDbPoint::cast(piece.get())) {
    text = "point " + at(point->position());
  } else if (OdDbHatchPtr hatch = OdDbHatch::cast(piece.get())) {
    text = "hatch " + hatch->patternName().toUtf8() +
           " loops=" + std::to_string(hatch->numLoops()) + " z=" + num(hatch->elevation()) +
           " n=" + at(OdGePoint3d::kOrigin + hatch->normal());
  } else if (OdDbTextPtr t = OdDbText::cast(piece.get())) {
    text = "text " + t->textString().toUtf8() + " " + at(t->position()) + " h=" + num(t->height()) +
           " w=" + num(t->widthFactor()) + " rot=" + num(t->rotation());
  } else {
    return piece->isA()->name().toUtf8();
  }
  const OdDbEntity* entity = static_cast<const OdDbEntity*>(piece.get());
  if (entity->colorIndex() != 3 || entity->lineWeight() != OdDb::kLnWt050)
    text += " c=" + std::to_string(entity->colorIndex()) +
            " lw=" + std::to_string(static_cast<int>(entity->lineWeight()));
  return text;
}

TEST_F(PlainGraphics, EachPrimitiveBecomesItsStandardEntityWithTheSourceProperties) {
  const OdGePoint3d square[4] = {OdGePoint3d(0, 0, 2), OdGePoint3d(4, 0, 2), OdGePoint3d(4, 4, 2),
                                 OdGePoint3d(0, 4, 2)};
  const OdGePoint3d segment[2] = {OdGePoint3d(0, 0, 0), OdGePoint3d(1, 0, 0)};
  struct Case {
    const char* name;
    std::function<void(OdGiRecorder&)> draw;
    std::vector<std::string> pieces;
    bool noted = false;
  };
  const std::vector<Case> cases = {
      {"circle: closed polyline of two half circles at the circle's elevation",
       [](OdGiRecorder& r) { r.circle(OdGePoint3d(1, 2, 3), 2.0, OdGeVector3d::kZAxis); },
       {"polyline closed z=3 (-1,2,3) b=1 (3,2,3) b=1"}},
      {"clockwise arc: the same arc run counter-clockwise from its other end",
       [](OdGiRecorder& r) {
         r.circularArc(OdGePoint3d(0, 0, 0), 5.0, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis,
                       -kPi / 2);
       },
       {"arc (0,0,0) r=5 4.71238898..0"}},
      {"sector: the arc and its two radii",
       [](OdGiRecorder& r) {
         r.circularArc(OdGePoint3d(0, 0, 0), 1.0, OdGeVector3d::kZAxis, OdGeVector3d::kYAxis,
                       kPi / 2, kOdGiArcSector);
       },
       {"arc (0,0,0) r=1 1.57079633..3.14159265", "line (0,0,0)-(0,1,0)", "line (-1,0,0)-(0,0,0)"}},
      {"full-turn arc: a circle",
       [](OdGiRecorder& r) {
         r.circularArc(OdGePoint3d(0, 0, 0), 1.0, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis,
                       2 * kPi);
       },
       {"polyline closed z=0 (-1,0,0) b=1 (1,0,0) b=1"}},
      {"flat polyline: one lightweight polyline, repeated points dropped",
       [](OdGiRecorder& r) {
         const OdGePoint3d pts[4] = {OdGePoint3d(0, 0, 1), OdGePoint3d(3, 0, 1),
                                     OdGePoint3d(3, 0, 1), OdGePoint3d(3, 3, 1)};
         r.polyline(4, pts);
       },
       {"polyline z=1 (0,0,1) (3,0,1) (3,3,1)"}},
      {"polyline leaving its plane: one line per segment",
       [](OdGiRecorder& r) {
         const OdGePoint3d pts[3] = {OdGePoint3d(0, 0, 0), OdGePoint3d(3, 0, 0),
                                     OdGePoint3d(3, 3, 7)};
         r.polyline(3, pts);
       },
       {"line (0,0,0)-(3,0,0)", "line (3,0,0)-(3,3,7)"}},
      {"polyline on one spot: a point",
       [](OdGiRecorder& r) {
         const OdGePoint3d pts[2] = {OdGePoint3d(5, 6, 7), OdGePoint3d(5, 6, 7)};
         r.polyline(2, pts);
       },
       {"point (5,6,7)"}},
      {"unfilled polygon: closed polyline",
       [&](OdGiRecorder& r) { r.polygon(4, square); },
       {"polyline closed z=2 (0,0,2) (4,0,2) (4,4,2) (0,4,2)"}},
      {"filled polygon: solid hatch in its plane",
       [&](OdGiRecorder& r) {
         r.setFillType(kOdGiFillAlways);
         r.polygon(4, square);
       },
       {"hatch SOLID loops=1 z=2 n=(0,0,1)"}},
      {"text: position, height, width, rotation from its direction",
       [](OdGiRecorder& r) {
         r.text(OdGePoint3d(1, 1, 0), OdGeVector3d::kZAxis, OdGeVector3d::kYAxis, 2.5, 0.8, 0.0,
                OD_T("界址点 J1"));
       },
       {"text 界址点 J1 (1,1,0) h=2.5 w=0.8 rot=1.57079633"}},
      {"text without a width factor: factor 1",
       [](OdGiRecorder& r) {
         r.text(OdGePoint3d(1, 1, 0), OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, 2.5, 0.0, 0.0,
                OD_T("J2"));
       },
       {"text J2 (1,1,0) h=2.5 w=1 rot=0"}},
      {"infinite line: left out with a note",
       [](OdGiRecorder& r) { r.xline(OdGePoint3d(0, 0, 0), OdGePoint3d(1, 1, 0)); },
       {},
       true},
      {"traits the graphics set override the source's",
       [&](OdGiRecorder& r) {
         r.polyline(2, segment);
         r.setColor(1);
         r.setLineWeight(OdDb::kLnWt100);
         r.polyline(2, segment);
       },
       {"polyline z=0 (0,0,0) (1,0,0)", "polyline z=0 (0,0,0) (1,0,0) c=1 lw=100"}},
  };
  const OdDbEntityPtr source = coloredSource(3);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdGiRecorder recorder;
    c.draw(recorder);
    std::vector<std::string> notes;
    std::vector<std::string> pieces;
    for (const OdRxObjectPtr& piece : entitiesFromGraphics(recorder.records(), source.get(), notes))
      pieces.push_back(describe(piece));
    EXPECT_EQ(pieces, c.pieces);
    EXPECT_EQ(!notes.empty(), c.noted);
  }
}

TEST_F(PlainGraphics, LayerAndLinetypeTheGraphicsSetAreThoseOfTheSourcesDrawing) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbLayerTableRecordPtr wall = OdDbLayerTableRecord::createObject();
  wall->setName(OD_T("WALL"));
  const OdDbObjectId wallId =
      OdDbLayerTable::cast(db->getLayerTableId().safeOpenObject(OdDb::kForWrite))->add(wall);
  OdDbLinetypeTableRecordPtr dashed = OdDbLinetypeTableRecord::createObject();
  dashed->setName(OD_T("DASHED"));
  const OdDbObjectId dashedId =
      OdDbLinetypeTable::cast(db->getLinetypeTableId().safeOpenObject(OdDb::kForWrite))
          ->add(dashed);
  OdDbLinePtr source = OdDbLine::createObject();
  source->setDatabaseDefaults(db);
  OdGiRecorder recorder;
  const OdGePoint3d segment[2] = {OdGePoint3d(0, 0, 0), OdGePoint3d(1, 0, 0)};
  recorder.setLayer(wallId);
  recorder.setLineType(dashedId);
  recorder.polyline(2, segment);
  std::vector<std::string> notes;
  const OdRxObjectPtrArray out = entitiesFromGraphics(recorder.records(), source.get(), notes);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(OdDbEntity::cast(out[0].get())->layerId(), wallId);
  EXPECT_EQ(OdDbEntity::cast(out[0].get())->linetypeId(), dashedId);
}

// --- Whole drawings -------------------------------------------------------------------------

/// A kept proxy with these graphics, in owner.
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

const char* const kSegmentsPiece = "polyline z=0 (0,0,0) (10,0,0) (10,5,0) c=4 lw=50";

OdUInt8Array segmentGraphics() {
  OdGiProxyGraphicsWriter writer;
  const OdGePoint3d pts[3] = {OdGePoint3d(0, 0, 0), OdGePoint3d(10, 0, 0), OdGePoint3d(10, 5, 0)};
  writer.polyline(3, pts);
  return writer.data();
}

/// What a block holds, each entity as describe() gives it.
std::vector<std::string> piecesIn(OdDbObjectId blockId) {
  std::vector<std::string> pieces;
  OdDbBlockTableRecordPtr block = OdDbBlockTableRecord::cast(blockId.safeOpenObject());
  for (const OdDbObjectId& id : block->entityIds())
    pieces.push_back(describe(OdRxObjectPtr(id.safeOpenObject().get())));
  return pieces;
}

TEST_F(PlainExport, KeptProxiesBecomeTheirGraphicsInTheirOwnBlock) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdDbBlockTableRecordPtr widgets = OdDbBlockTableRecord::createObject();
  widgets->setName(OD_T("WIDGETS"));
  const OdDbObjectId block =
      OdDbSymbolTable::cast(db->getBlockTableId().safeOpenObject(OdDb::kForWrite))->add(widgets);
  for (OdDbObjectId owner : {db->getModelSpaceId(), db->getPaperSpaceId(), block})
    addProxy(owner, segmentGraphics());

  const PlainExportResult result = exportPlain(db.get());
  EXPECT_TRUE(result.applied);
  EXPECT_EQ(result.customEntities, 3u);
  EXPECT_EQ(result.keptProxies, 3u);
  EXPECT_EQ(result.piecesAdded, 3u);
  EXPECT_TRUE(result.failures.empty());
  // In the proxy's place, with the proxy's colour.
  for (OdDbObjectId owner : {db->getModelSpaceId(), db->getPaperSpaceId(), block})
    EXPECT_EQ(piecesIn(owner), std::vector<std::string>{kSegmentsPiece});
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
    // Keeping going, the good proxy's polyline only; else nothing changed.
    const std::vector<std::string> left =
        keepGoing ? std::vector<std::string>{kSegmentsPiece}
                  : std::vector<std::string>{"OdDbProxyEntity", "OdDbProxyEntity"};
    EXPECT_EQ(piecesIn(db->getModelSpaceId()), left);
  }
}

} // namespace
