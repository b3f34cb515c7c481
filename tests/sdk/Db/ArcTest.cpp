#include "DbArc.h"

#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "Gi/GiRecorder.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;
typedef OdStaticRxObject<OdDbDxfItemFiler> DxfFiler;

constexpr double kDeg = OdaPI / 180.0;

OdDbArcPtr makeArc(const OdGePoint3d& center, double radius, double startDeg, double endDeg,
                   const OdGeVector3d& normal = OdGeVector3d::kZAxis) {
  OdDbArcPtr arc = OdDbArc::createObject();
  arc->setNormal(normal);
  arc->setCenter(center);
  arc->setRadius(radius);
  arc->setStartAngle(startDeg * kDeg);
  arc->setEndAngle(endDeg * kDeg);
  return arc;
}

void expectPoint(const OdGePoint3d& expected, const OdGePoint3d& actual, double tol = 1e-9) {
  EXPECT_NEAR(expected.x, actual.x, tol);
  EXPECT_NEAR(expected.y, actual.y, tol);
  EXPECT_NEAR(expected.z, actual.z, tol);
}

/// The distance from point to the nearest point of the arc.
double distanceToArc(const OdDbArc* arc, const OdGePoint3d& point) {
  OdGePoint3d closest;
  EXPECT_EQ(eOk, arc->getClosestPointTo(point, closest));
  return closest.distanceTo(point);
}

/// Points spread over the arc, ends included.
std::vector<OdGePoint3d> samples(const OdDbArc* arc, int count = 9) {
  double start = 0.0;
  double end = 0.0;
  arc->getStartParam(start);
  arc->getEndParam(end);
  std::vector<OdGePoint3d> points;
  for (int i = 0; i < count; ++i) {
    OdGePoint3d point;
    EXPECT_EQ(eOk, arc->getPointAtParam(start + (end - start) * i / (count - 1), point));
    points.push_back(point);
  }
  return points;
}

/// What the entity level writes to DXF ahead of the arc's own groups.
OdDbDxfItemFiler::ItemArray entityDxfItems() {
  DxfFiler filer;
  filer.openForWrite();
  OdDbArc::createObject()->OdDbEntity::dxfOutFields(&filer);
  return filer.items();
}

void writeArc(const OdDbArc* arc, Filer& filer) {
  filer.openForWrite();
  arc->dwgOutFields(&filer);
  ASSERT_EQ(eOk, filer.filerStatus());
}

TEST(ArcTest, RegisteredUnderCurveWithDxfNameAndDwgType) {
  OdRxClass* cls = odrxGetClass(OD_T("OdDbArc"));
  ASSERT_NE(nullptr, cls);
  EXPECT_EQ(OdDbCurve::desc(), cls->myParent());
  EXPECT_EQ(OdString(OD_T("ARC")), cls->dxfName());
  EXPECT_EQ(OdDbArc::desc(), oddbDwgClassMapDesc(17));
  EXPECT_TRUE(OdDbArc::createObject()->isKindOf(OdDbCurve::desc()));
}

TEST(ArcTest, DefaultStateDrawsNothing) {
  OdDbArcPtr arc = OdDbArc::createObject();
  EXPECT_EQ(OdGePoint3d::kOrigin, arc->center());
  EXPECT_EQ(0.0, arc->radius());
  EXPECT_EQ(0.0, arc->startAngle());
  EXPECT_EQ(0.0, arc->endAngle());
  EXPECT_EQ(OdGeVector3d::kZAxis, arc->normal());
  EXPECT_EQ(0.0, arc->thickness());
  EXPECT_FALSE(arc->isClosed());
  OdGiRecorder recorder;
  EXPECT_TRUE(arc->worldDraw(&recorder));
  EXPECT_TRUE(recorder.records().empty());
}

TEST(ArcTest, SettersNormalizeAnglesAndRefuseBadValues) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(1.0, 2.0, 0.0), 3.0, 0.0, 90.0);
  arc->setStartAngle(-OdaPI2);
  EXPECT_NEAR(1.5 * OdaPI, arc->startAngle(), 1e-12);
  arc->setEndAngle(5.0 * OdaPI);
  EXPECT_NEAR(OdaPI, arc->endAngle(), 1e-12);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_THROW(arc->setRadius(0.0), OdError);
  EXPECT_THROW(arc->setRadius(-1.0), OdError);
  EXPECT_THROW(arc->setRadius(nan), OdError);
  EXPECT_THROW(arc->setStartAngle(inf), OdError);
  EXPECT_THROW(arc->setEndAngle(nan), OdError);
  EXPECT_THROW(arc->setNormal(OdGeVector3d(0.0, 0.0, 0.0)), OdError);
  EXPECT_THROW(arc->setCenter(OdGePoint3d(nan, 0.0, 0.0)), OdError);
  EXPECT_EQ(3.0, arc->radius());
  EXPECT_NEAR(1.5 * OdaPI, arc->startAngle(), 1e-12);
  EXPECT_EQ(OdGePoint3d(1.0, 2.0, 0.0), arc->center());
}

TEST(ArcTest, DwgRoundTripKeepsEveryFieldAndFilesThePlaneCentre) {
  const OdGeVector3d normal(0.0, 0.6, 0.8);
  OdDbArcPtr arc = makeArc(OdGePoint3d(1.5, -2.25, 3.0), 2.5, 30.0, 300.0, normal);
  arc->setThickness(1.25);
  Filer filer;
  writeArc(arc.get(), filer);
  filer.rewind();
  OdDbArcPtr copy = OdDbArc::createObject();
  ASSERT_EQ(eOk, copy->dwgInFields(&filer));
  EXPECT_EQ(0u, filer.remainingDataBits());
  expectPoint(arc->center(), copy->center(), 1e-12);
  EXPECT_EQ(2.5, copy->radius());
  EXPECT_EQ(1.25, copy->thickness());
  EXPECT_TRUE(normal.isEqualTo(copy->normal()));
  EXPECT_EQ(arc->startAngle(), copy->startAngle());
  EXPECT_EQ(arc->endAngle(), copy->endAngle());

  // Drawing files keep the centre in the arc's plane coordinates, as DXF group 10 does.
  filer.rewind();
  OdDbArcPtr skip = OdDbArc::createObject();
  ASSERT_EQ(eOk, skip->OdDbEntity::dwgInFields(&filer));
  expectPoint(OdGeMatrix3d::worldToPlane(normal) * arc->center(), filer.rdPoint3d(), 1e-12);
}

TEST(ArcTest, WritingWhatWasReadGivesTheSameNumbers) {
  // Tilted planes put the filed centre through a rotation to world coordinates and back,
  // which may move its last bit; what was read must be written back exactly, or every save
  // and load of a drawing would change it. A small deterministic sample of planes and centres.
  unsigned seed = 12345;
  const auto next = [&seed]() {
    seed = seed * 1103515245u + 12345u;
    return static_cast<double>((seed >> 8) % 20000) / 97.0 - 100.0;
  };
  for (int i = 0; i < 200; ++i) {
    SCOPED_TRACE(i);
    OdGeVector3d normal(next(), next(), next());
    if (normal.isZeroLength())
      continue;
    OdDbArcPtr arc = makeArc(OdGePoint3d(next(), next(), next()), 2.0, 10.0, 200.0, normal);
    Filer first;
    writeArc(arc.get(), first);
    first.rewind();
    OdDbArcPtr read = OdDbArc::createObject();
    ASSERT_EQ(eOk, read->dwgInFields(&first));
    Filer second;
    writeArc(read.get(), second);
    ASSERT_EQ(first.dataBitSize(), second.dataBitSize());
    EXPECT_TRUE(first.dataBuffer() == second.dataBuffer());

    DxfFiler dxf;
    dxf.openForWrite();
    read->dxfOutFields(&dxf);
    dxf.rewind();
    OdDbArcPtr fromDxf = OdDbArc::createObject();
    ASSERT_EQ(eOk, fromDxf->dxfInFields(&dxf));
    DxfFiler again;
    again.openForWrite();
    fromDxf->dxfOutFields(&again);
    ASSERT_EQ(dxf.items().size(), again.items().size());
    for (unsigned k = 0; k < dxf.items().size(); ++k)
      EXPECT_TRUE(dxf.items()[k].value == again.items()[k].value) << dxf.items()[k].code;
  }
}

TEST(ArcTest, ShortStreamFailsCleanlyAtEveryBit) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(1.0, 2.0, 3.0), 4.0, 10.0, 20.0);
  Filer written;
  writeArc(arc.get(), written);
  for (OdUInt64 bits = 0; bits < written.dataBitSize(); ++bits) {
    Filer reader;
    reader.openForRead(written.dataBuffer(), bits, written.stringBuffer(), written.stringBitSize(),
                       written.handleBuffer(), written.handleBitSize());
    OdDbArcPtr fresh = OdDbArc::createObject();
    EXPECT_NE(eOk, fresh->dwgInFields(&reader)) << "cut at bit " << bits;
    EXPECT_EQ(0.0, fresh->radius()) << "cut at bit " << bits;
  }
}

TEST(ArcTest, BadValuesInStreamAreRefused) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  struct Case {
    const char* name;
    OdGePoint3d center;
    double radius;
    double thickness;
    OdGeVector3d normal;
    double start;
    double end;
  };
  const OdGeVector3d z = OdGeVector3d::kZAxis;
  const Case cases[] = {
      {"zero radius", OdGePoint3d(), 0.0, 0.0, z, 0.0, 1.0},
      {"negative radius", OdGePoint3d(), -2.0, 0.0, z, 0.0, 1.0},
      {"NaN radius", OdGePoint3d(), nan, 0.0, z, 0.0, 1.0},
      {"infinite centre", OdGePoint3d(inf, 0.0, 0.0), 1.0, 0.0, z, 0.0, 1.0},
      {"NaN thickness", OdGePoint3d(), 1.0, nan, z, 0.0, 1.0},
      {"zero normal", OdGePoint3d(), 1.0, 0.0, OdGeVector3d(0.0, 0.0, 0.0), 0.0, 1.0},
      {"infinite start angle", OdGePoint3d(), 1.0, 0.0, z, inf, 1.0},
      {"NaN end angle", OdGePoint3d(), 1.0, 0.0, z, 0.0, nan},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbArcPtr blank = OdDbArc::createObject();
    Filer filer;
    filer.openForWrite();
    blank->OdDbEntity::dwgOutFields(&filer);
    filer.wrPoint3d(c.center);
    filer.wrDouble(c.radius);
    filer.wrDouble(c.thickness);
    filer.wrVector3d(c.normal);
    filer.wrDouble(c.start);
    filer.wrDouble(c.end);
    filer.rewind();
    OdDbArcPtr arc = makeArc(OdGePoint3d(5.0, 5.0, 0.0), 7.0, 0.0, 90.0);
    EXPECT_EQ(eInvalidInput, arc->dwgInFields(&filer));
    EXPECT_EQ(7.0, arc->radius());
    EXPECT_EQ(OdGePoint3d(5.0, 5.0, 0.0), arc->center());
  }
}

TEST(ArcTest, DxfGroupsInDegreesAndRoundTrip) {
  const OdGeVector3d normal(1.0, 0.0, 0.0);
  OdDbArcPtr arc = makeArc(OdGePoint3d(4.0, 5.0, 6.0), 2.0, 45.0, 270.0, normal);
  arc->setThickness(0.5);
  DxfFiler filer;
  filer.openForWrite();
  arc->dxfOutFields(&filer);
  ASSERT_EQ(eOk, filer.filerStatus());
  const std::size_t first = entityDxfItems().size();
  const OdDbDxfItemFiler::ItemArray& items = filer.items();
  std::vector<int> codes;
  for (std::size_t i = first; i < items.size(); ++i)
    codes.push_back(items[i].code);
  const std::vector<int> expected = {100, 10, 20, 30, 40, 39, 210, 220, 230, 100, 50, 51};
  ASSERT_EQ(expected, codes);
  const auto text = [&](std::size_t i) { return items[first + i].value.toUtf8(); };
  EXPECT_EQ("AcDbCircle", text(0));
  EXPECT_EQ("AcDbArc", text(9));
  EXPECT_EQ("45.0", text(10));
  EXPECT_EQ("270.0", text(11));
  // The centre is written in the plane's coordinates: for normal +X the plane's axes are
  // world Y and Z, and the elevation is along X.
  EXPECT_EQ("5.0", text(1));
  EXPECT_EQ("6.0", text(2));
  EXPECT_EQ("4.0", text(3));

  filer.rewind();
  OdDbArcPtr copy = OdDbArc::createObject();
  ASSERT_EQ(eOk, copy->dxfInFields(&filer));
  expectPoint(arc->center(), copy->center(), 1e-12);
  EXPECT_EQ(2.0, copy->radius());
  EXPECT_EQ(0.5, copy->thickness());
  EXPECT_TRUE(normal.isEqualTo(copy->normal()));
  EXPECT_NEAR(arc->startAngle(), copy->startAngle(), 1e-12);
  EXPECT_NEAR(arc->endAngle(), copy->endAngle(), 1e-12);
}

TEST(ArcTest, DxfWithoutArcSubclassOrRadiusIsRefused) {
  struct Case {
    const char* name;
    OdDbDxfItemFiler::ItemArray items;
    OdResult expected;
  };
  const Case cases[] = {
      {"no arc subclass",
       {{100, OD_T("AcDbCircle")}, {10, OD_T("1")}, {20, OD_T("2")}, {40, OD_T("3")}},
       eInvalidDxfCode},
      {"zero radius",
       {{100, OD_T("AcDbCircle")}, {40, OD_T("0")}, {100, OD_T("AcDbArc")}, {50, OD_T("10")}},
       eInvalidInput},
      {"no circle subclass", {{100, OD_T("AcDbArc")}, {50, OD_T("10")}}, eInvalidDxfCode},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbDxfItemFiler::ItemArray items = entityDxfItems();
    items.insert(items.end(), c.items.begin(), c.items.end());
    DxfFiler filer;
    filer.openForRead(items);
    OdDbArcPtr arc = makeArc(OdGePoint3d(), 9.0, 0.0, 90.0);
    EXPECT_EQ(c.expected, arc->dxfInFields(&filer));
    EXPECT_EQ(9.0, arc->radius());
  }
}

TEST(ArcTest, CurveQueriesUseTheAngleAsParameter) {
  // 110 degrees from 350 to 100: the arc passes angle 0.
  OdDbArcPtr arc = makeArc(OdGePoint3d(1.0, 1.0, 0.0), 2.0, 350.0, 100.0);
  double start = 0.0;
  double end = 0.0;
  ASSERT_EQ(eOk, arc->getStartParam(start));
  ASSERT_EQ(eOk, arc->getEndParam(end));
  EXPECT_NEAR(350.0 * kDeg, start, 1e-12);
  EXPECT_NEAR(460.0 * kDeg, end, 1e-12);
  OdGePoint3d point;
  ASSERT_EQ(eOk, arc->getPointAtParam(Oda2PI, point));
  expectPoint(OdGePoint3d(3.0, 1.0, 0.0), point);
  EXPECT_EQ(eInvalidInput, arc->getPointAtParam(end + 0.1, point));

  double param = 0.0;
  ASSERT_EQ(eOk, arc->getParamAtPoint(OdGePoint3d(1.0, 3.0, 0.0), param));
  EXPECT_NEAR(450.0 * kDeg, param, 1e-12) << "90 degrees lies past the end";
  EXPECT_EQ(eInvalidInput, arc->getParamAtPoint(OdGePoint3d(-1.0, 1.0, 0.0), param));

  double dist = 0.0;
  ASSERT_EQ(eOk, arc->getDistAtParam(Oda2PI, dist));
  EXPECT_NEAR(2.0 * 10.0 * kDeg, dist, 1e-12);
  ASSERT_EQ(eOk, arc->getParamAtDist(2.0 * 10.0 * kDeg, param));
  EXPECT_NEAR(Oda2PI, param, 1e-12);
  EXPECT_EQ(eInvalidInput, arc->getParamAtDist(2.0 * 110.0 * kDeg + 0.01, param));

  // Nearest points: inside the sweep on the arc, outside at the nearer end, or on the circle
  // when extended.
  OdGePoint3d closest;
  ASSERT_EQ(eOk, arc->getClosestPointTo(OdGePoint3d(1.0, 5.0, 3.0), closest));
  expectPoint(OdGePoint3d(1.0, 3.0, 0.0), closest);
  ASSERT_EQ(eOk, arc->getClosestPointTo(OdGePoint3d(-5.0, 1.1, 0.0), closest));
  expectPoint(arc->center() +
                  OdGeVector3d(2.0 * std::cos(100 * kDeg), 2.0 * std::sin(100 * kDeg), 0),
              closest);
  ASSERT_EQ(eOk, arc->getClosestPointTo(OdGePoint3d(-5.0, 1.0, 0.0), closest, true));
  expectPoint(OdGePoint3d(-1.0, 1.0, 0.0), closest);

  double area = 0.0;
  ASSERT_EQ(eOk, arc->getArea(area));
  EXPECT_NEAR(0.5 * 4.0 * (110.0 * kDeg - std::sin(110.0 * kDeg)), area, 1e-12)
      << "the segment cut off by the chord";
}

TEST(ArcTest, EqualAnglesMakeAFullTurn) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(), 1.0, 30.0, 30.0);
  double start = 0.0;
  double end = 0.0;
  arc->getStartParam(start);
  arc->getEndParam(end);
  EXPECT_NEAR(Oda2PI, end - start, 1e-12);
  EXPECT_FALSE(arc->isClosed());
}

TEST(ArcTest, DrawsOneCircularArcInItsPlane) {
  const OdGeVector3d normal(0.0, -1.0, 0.0);
  OdDbArcPtr arc = makeArc(OdGePoint3d(1.0, 2.0, 3.0), 2.0, 30.0, 120.0, normal);
  OdGiRecorder recorder;
  EXPECT_TRUE(arc->worldDraw(&recorder));
  ASSERT_EQ(1u, recorder.records().size());
  const OdGiRecord& record = recorder.records()[0];
  EXPECT_EQ(OdGiRecord::kArc, record.kind);
  EXPECT_NEAR(2.0, record.radius, 1e-12);
  EXPECT_NEAR(OdaPI2, record.sweepAngle, 1e-12);
  EXPECT_TRUE(normal.isEqualTo(record.normal));
  OdGePoint3d start;
  OdGePoint3d end;
  arc->getStartPoint(start);
  arc->getEndPoint(end);
  ASSERT_EQ(3u, record.points.size());
  expectPoint(arc->center(), record.points[0]);
  expectPoint(start, record.points[1]);
  expectPoint(end, record.points[2]);
  // For normal -Y the arbitrary-axis rule gives the plane axes world X (Z x N) and world Z.
  expectPoint(arc->center() + OdGeVector3d(std::cos(30 * kDeg), 0.0, std::sin(30 * kDeg)) * 2.0,
              start);
}

TEST(ArcTest, TransformKeepsTheArcsPoints) {
  struct Case {
    const char* name;
    OdGeMatrix3d xform;
    double radiusFactor;
  };
  const Case cases[] = {
      {"rotation about z", OdGeMatrix3d::rotation(0.7, OdGeVector3d::kZAxis), 1.0},
      {"rotation about a tilted axis",
       OdGeMatrix3d::rotation(1.1, OdGeVector3d(1.0, 2.0, 0.5), OdGePoint3d(1, 0, 0)), 1.0},
      {"translation", OdGeMatrix3d::translation(OdGeVector3d(1.0, -1.0, 2.0)), 1.0},
      {"uniform scale", OdGeMatrix3d::scaling(3.0, OdGePoint3d(1.0, 1.0, 0.0)), 3.0},
      {"mirror in the yz plane", OdGeMatrix3d::mirroring(OdGePoint3d(), OdGeVector3d::kXAxis), 1.0},
      {"mirror in a slanted plane",
       OdGeMatrix3d::mirroring(OdGePoint3d(2.0, 0.0, 0.0), OdGeVector3d(1.0, 1.0, 1.0)), 1.0},
      {"mirror through a point", OdGeMatrix3d::mirroring(OdGePoint3d(1.0, 2.0, 3.0)), 1.0},
      {"scale that keeps the xy plane round", OdGeMatrix3d::scaling(OdGeScale3d(2.0, 2.0, 5.0)),
       2.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbArcPtr arc = makeArc(OdGePoint3d(3.0, 1.0, 0.5), 2.0, 20.0, 135.0);
    OdDbArcPtr original = makeArc(OdGePoint3d(3.0, 1.0, 0.5), 2.0, 20.0, 135.0);
    arc->setThickness(1.0);
    ASSERT_EQ(eOk, arc->transformBy(c.xform));
    EXPECT_NEAR(2.0 * c.radiusFactor, arc->radius(), 1e-9);
    expectPoint(c.xform * original->center(), arc->center());
    // Every point of the old arc lands on the new one, and the new one covers no more.
    for (const OdGePoint3d& point : samples(original.get()))
      EXPECT_NEAR(0.0, distanceToArc(arc.get(), c.xform * point), 1e-9);
    double oldStart = 0, oldEnd = 0, newStart = 0, newEnd = 0;
    original->getStartParam(oldStart);
    original->getEndParam(oldEnd);
    arc->getStartParam(newStart);
    arc->getEndParam(newEnd);
    EXPECT_NEAR(oldEnd - oldStart, newEnd - newStart, 1e-9);
  }
}

TEST(ArcTest, MirrorInThePlaneKeepsTheNormalAndSwapsTheEnds) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(), 1.0, 0.0, 90.0);
  ASSERT_EQ(eOk, arc->transformBy(OdGeMatrix3d::mirroring(OdGePoint3d(), OdGeVector3d::kXAxis)));
  EXPECT_EQ(OdGeVector3d::kZAxis, arc->normal());
  EXPECT_NEAR(OdaPI2, arc->startAngle(), 1e-12);
  EXPECT_NEAR(OdaPI, arc->endAngle(), 1e-12);
}

TEST(ArcTest, TransformThatWouldMakeAnEllipseIsRefused) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(1.0, 1.0, 0.0), 2.0, 0.0, 90.0);
  const OdGeMatrix3d squash = OdGeMatrix3d::scaling(OdGeScale3d(1.0, 3.0, 1.0));
  EXPECT_EQ(eNotApplicable, arc->transformBy(squash));
  EXPECT_EQ(eNotApplicable, arc->transformBy(OdGeMatrix3d::scaling(0.0)));
  EXPECT_EQ(2.0, arc->radius());
  EXPECT_EQ(OdGePoint3d(1.0, 1.0, 0.0), arc->center());
  EXPECT_EQ(0.0, arc->startAngle());
}

TEST(ArcTest, GripsRefitTheArcThroughThreePoints) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(), 2.0, 0.0, 180.0);
  OdGePoint3dArray grips;
  ASSERT_EQ(eOk, arc->getGripPoints(grips));
  ASSERT_EQ(4u, grips.size());
  expectPoint(OdGePoint3d(2.0, 0.0, 0.0), grips[0]);
  expectPoint(OdGePoint3d(0.0, 2.0, 0.0), grips[1]);
  expectPoint(OdGePoint3d(-2.0, 0.0, 0.0), grips[2]);
  expectPoint(OdGePoint3d(0.0, 0.0, 0.0), grips[3]);

  // Pulling the midpoint down flattens the arc over the same chord.
  ASSERT_EQ(eOk, arc->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(0.0, -1.0, 0.0)));
  EXPECT_NEAR(2.5, arc->radius(), 1e-12);
  expectPoint(OdGePoint3d(0.0, -1.5, 0.0), arc->center());
  OdGePoint3d start;
  arc->getStartPoint(start);
  expectPoint(OdGePoint3d(2.0, 0.0, 0.0), start);

  // Past the chord the arc turns the other way round, still counter-clockwise about +Z.
  ASSERT_EQ(eOk, arc->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(0.0, -2.0, 0.0)));
  EXPECT_EQ(OdGeVector3d::kZAxis, arc->normal());
  arc->getStartPoint(start);
  expectPoint(OdGePoint3d(-2.0, 0.0, 0.0), start);
  EXPECT_NEAR(0.0, distanceToArc(arc.get(), OdGePoint3d(0.0, -1.0, 0.0)), 1e-12);

  // The centre moves it all, once.
  const OdGePoint3d center = arc->center();
  ASSERT_EQ(eOk, arc->moveGripPointsAt(OdIntArray{0, 3}, OdGeVector3d(1.0, 1.0, 1.0)));
  expectPoint(center + OdGeVector3d(1.0, 1.0, 1.0), arc->center());
}

TEST(ArcTest, GripMovesWithoutAnArcAreRefused) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(), 2.0, 0.0, 180.0);
  // The midpoint moved onto the chord leaves three points on one line.
  EXPECT_EQ(eInvalidInput, arc->moveGripPointsAt(OdIntArray{1}, OdGeVector3d(0.0, -2.0, 0.0)));
  EXPECT_EQ(eInvalidIndex, arc->moveGripPointsAt(OdIntArray{0, 4}, OdGeVector3d(1.0, 0.0, 0.0)));
  EXPECT_EQ(eInvalidIndex, arc->moveGripPointsAt(OdIntArray{-1}, OdGeVector3d(1.0, 0.0, 0.0)));
  EXPECT_EQ(2.0, arc->radius());
  EXPECT_EQ(OdGePoint3d(), arc->center());
}

TEST(ArcTest, StretchingAnEndKeepsTheOtherEndAndTheSweep) {
  OdDbArcPtr arc = makeArc(OdGePoint3d(), 1.0, 0.0, 90.0);
  OdGePoint3dArray points;
  ASSERT_EQ(eOk, arc->getStretchPoints(points));
  ASSERT_EQ(2u, points.size());
  ASSERT_EQ(eOk, arc->moveStretchPointsAt(OdIntArray{0}, OdGeVector3d(1.0, 0.0, 0.0)));
  OdGePoint3d start;
  OdGePoint3d end;
  arc->getStartPoint(start);
  arc->getEndPoint(end);
  expectPoint(OdGePoint3d(2.0, 0.0, 0.0), start);
  expectPoint(OdGePoint3d(0.0, 1.0, 0.0), end);
  double startParam = 0.0;
  double endParam = 0.0;
  arc->getStartParam(startParam);
  arc->getEndParam(endParam);
  EXPECT_NEAR(OdaPI2, endParam - startParam, 1e-12);
  EXPECT_NEAR(std::sqrt(5.0) / std::sqrt(2.0), arc->radius(), 1e-12);

  EXPECT_EQ(eInvalidInput, arc->moveStretchPointsAt(OdIntArray{0}, OdGeVector3d(-2.0, 1.0, 0.0)));
  EXPECT_EQ(eInvalidIndex, arc->moveStretchPointsAt(OdIntArray{2}, OdGeVector3d(1.0, 0.0, 0.0)));
  arc->getStartPoint(start);
  expectPoint(OdGePoint3d(2.0, 0.0, 0.0), start);
}

TEST(ArcTest, OsnapPoints) {
  struct Case {
    const char* name;
    OdDb::OsnapMode mode;
    OdGePoint3d pick;
    OdGePoint3d last;
    std::vector<OdGePoint3d> expected;
  };
  const OdGePoint3d anywhere(9.0, 9.0, 0.0);
  const double r = std::sqrt(0.5);
  // Centre (1, 1), radius 1, from 45 to 270 degrees.
  const Case cases[] = {
      {"end",
       OdDb::kOsModeEnd,
       anywhere,
       anywhere,
       {OdGePoint3d(1.0 + r, 1.0 + r, 0.0), OdGePoint3d(1.0, 0.0, 0.0)}},
      {"mid",
       OdDb::kOsModeMid,
       anywhere,
       anywhere,
       {OdGePoint3d(1.0 + std::cos(157.5 * kDeg), 1.0 + std::sin(157.5 * kDeg), 0.0)}},
      {"centre", OdDb::kOsModeCen, anywhere, anywhere, {OdGePoint3d(1.0, 1.0, 0.0)}},
      {"quadrants within the sweep only",
       OdDb::kOsModeQuad,
       anywhere,
       anywhere,
       {OdGePoint3d(1.0, 2.0, 0.0), OdGePoint3d(0.0, 1.0, 0.0), OdGePoint3d(1.0, 0.0, 0.0)}},
      {"near on the arc",
       OdDb::kOsModeNear,
       OdGePoint3d(-3.0, 1.0, 5.0),
       anywhere,
       {OdGePoint3d(0.0, 1.0, 0.0)}},
      {"near outside the sweep takes the nearer end",
       OdDb::kOsModeNear,
       OdGePoint3d(2.0, -0.2, 0.0),
       anywhere,
       {OdGePoint3d(1.0, 0.0, 0.0)}},
      {"perp where the arc passes",
       OdDb::kOsModePerp,
       anywhere,
       OdGePoint3d(1.0, 4.0, 0.0),
       {OdGePoint3d(1.0, 2.0, 0.0), OdGePoint3d(1.0, 0.0, 0.0)}},
      {"perp, the near side outside the sweep",
       OdDb::kOsModePerp,
       anywhere,
       OdGePoint3d(4.0, 1.0, 0.0),
       {OdGePoint3d(0.0, 1.0, 0.0)}},
      {"tangent from outside",
       OdDb::kOsModeTan,
       anywhere,
       OdGePoint3d(-1.0, 1.0, 0.0),
       {OdGePoint3d(0.5, 1.0 + std::sqrt(0.75), 0.0),
        OdGePoint3d(0.5, 1.0 - std::sqrt(0.75), 0.0)}},
      {"tangent from inside", OdDb::kOsModeTan, anywhere, OdGePoint3d(1.2, 1.0, 0.0), {}},
      {"node has none", OdDb::kOsModeNode, anywhere, anywhere, {}},
  };
  OdDbArcPtr arc = makeArc(OdGePoint3d(1.0, 1.0, 0.0), 1.0, 45.0, 270.0);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdGePoint3dArray snaps;
    ASSERT_EQ(eOk, arc->getOsnapPoints(c.mode, 0, c.pick, c.last, OdGeMatrix3d::kIdentity, snaps));
    ASSERT_EQ(c.expected.size(), snaps.size());
    for (unsigned int i = 0; i < snaps.size(); ++i)
      expectPoint(c.expected[i], snaps[i]);
  }
}

TEST(ArcTest, ExtentsReachTheQuadrantsTheArcPasses) {
  struct Case {
    const char* name;
    double startDeg;
    double endDeg;
    OdGePoint3d min;
    OdGePoint3d max;
  };
  const double h = std::sqrt(0.5);
  const Case cases[] = {
      {"first quadrant only", 10.0, 80.0,
       OdGePoint3d(std::cos(80 * kDeg), std::sin(10 * kDeg), 0.0),
       OdGePoint3d(std::cos(10 * kDeg), std::sin(80 * kDeg), 0.0)},
      {"across 90", 45.0, 135.0, OdGePoint3d(-h, h, 0.0), OdGePoint3d(h, 1.0, 0.0)},
      {"across 180", 135.0, 225.0, OdGePoint3d(-1.0, -h, 0.0), OdGePoint3d(-h, h, 0.0)},
      {"across 270", 225.0, 315.0, OdGePoint3d(-h, -1.0, 0.0), OdGePoint3d(h, -h, 0.0)},
      {"across 0", 315.0, 45.0, OdGePoint3d(h, -h, 0.0), OdGePoint3d(1.0, h, 0.0)},
      {"all but a sliver across 0", 1.0, 359.0, OdGePoint3d(-1.0, -1.0, 0.0),
       OdGePoint3d(std::cos(kDeg), 1.0, 0.0)},
      {"full turn", 30.0, 30.0, OdGePoint3d(-1.0, -1.0, 0.0), OdGePoint3d(1.0, 1.0, 0.0)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    OdDbArcPtr arc = makeArc(OdGePoint3d(), 1.0, c.startDeg, c.endDeg);
    OdGeExtents3d extents;
    ASSERT_EQ(eOk, arc->getGeomExtents(extents));
    expectPoint(c.min, extents.minPoint());
    expectPoint(c.max, extents.maxPoint());
  }
  // A tilted arc reaches out of the XY plane.
  OdDbArcPtr standing = makeArc(OdGePoint3d(), 1.0, 0.0, 180.0, OdGeVector3d::kYAxis);
  OdGeExtents3d extents;
  ASSERT_EQ(eOk, standing->getGeomExtents(extents));
  EXPECT_NEAR(1.0, std::max(std::fabs(extents.minPoint().z), std::fabs(extents.maxPoint().z)),
              1e-12);

  OdRxObjectPtrArray parts;
  EXPECT_EQ(eNotApplicable, standing->explode(parts));
  EXPECT_TRUE(parts.isEmpty());
}

} // namespace
