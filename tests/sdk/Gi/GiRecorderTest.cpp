#include "Gi/GiRecorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

const double kEps = 1e-9;

void expectPoint(const OdGePoint3d& actual, const OdGePoint3d& expected) {
  EXPECT_NEAR(actual.x, expected.x, kEps);
  EXPECT_NEAR(actual.y, expected.y, kEps);
  EXPECT_NEAR(actual.z, expected.z, kEps);
}

void expectVector(const OdGeVector3d& actual, const OdGeVector3d& expected) {
  EXPECT_NEAR(actual.x, expected.x, kEps);
  EXPECT_NEAR(actual.y, expected.y, kEps);
  EXPECT_NEAR(actual.z, expected.z, kEps);
}

// Layer and linetype stubs are opaque; any distinct addresses stand for distinct records.
char g_stubStorage[4];
OdDbStub* stub(int i) {
  return reinterpret_cast<OdDbStub*>(&g_stubStorage[i]);
}

const OdGeVector3d kZ(0, 0, 1);
const OdGePoint3d kA(0, 0, 0);
const OdGePoint3d kB(1, 1, 0);
const OdGePoint3d kC(2, 2, 0);
const double kNaN = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(GiRecorder, ModelTransformsStackAndUnbalancedPopIsIgnored) {
  OdGiRecorder rec;
  const OdGePoint3d p(1, 0, 0);

  rec.popModelTransform(); // nothing pushed: ignored
  EXPECT_EQ(rec.modelTransformDepth(), 0u);
  rec.polyline(1, &p);

  rec.pushModelTransform(OdGeMatrix3d::translation(OdGeVector3d(10, 0, 0)));
  rec.pushModelTransform(OdGeMatrix3d::rotation(OdaPI2, kZ));
  rec.polyline(1, &p); // rotated first, then translated: (10, 1, 0)
  rec.popModelTransform();
  rec.polyline(1, &p); // translation only: (11, 0, 0)
  rec.popModelTransform();
  rec.popModelTransform(); // one pop too many: ignored
  rec.popModelTransform();
  rec.polyline(1, &p);
  EXPECT_EQ(rec.modelTransformDepth(), 0u);
  EXPECT_TRUE(rec.getModelToWorldTransform().isEqualTo(OdGeMatrix3d::kIdentity));

  ASSERT_EQ(rec.records().size(), 4u);
  expectPoint(rec.records()[0].points.at(0), OdGePoint3d(1, 0, 0));
  expectPoint(rec.records()[1].points.at(0), OdGePoint3d(10, 1, 0));
  expectPoint(rec.records()[2].points.at(0), OdGePoint3d(11, 0, 0));
  expectPoint(rec.records()[3].points.at(0), OdGePoint3d(1, 0, 0));
}

TEST(GiRecorder, EachPrimitiveCarriesTheTraitsInForceWhenDrawn) {
  OdGiRecorder rec;
  const OdGePoint3d square[4] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};

  rec.circle(OdGePoint3d(0, 0, 0), 1, kZ); // defaults
  rec.subEntityTraits().setColor(1);
  rec.subEntityTraits().setLayer(stub(0));
  rec.subEntityTraits().setLineType(stub(1));
  rec.subEntityTraits().setFillType(kOdGiFillAlways);
  rec.subEntityTraits().setLineWeight(OdDb::kLnWt050);
  rec.subEntityTraits().setLineTypeScale(2.5);
  rec.subEntityTraits().setSelectionMarker(7);
  rec.polygon(4, square);
  rec.subEntityTraits().setTrueColor(OdCmEntityColor(10, 20, 30));
  rec.subEntityTraits().setFillType(kOdGiFillNever);
  rec.text(OdGePoint3d(0, 0, 0), kZ, OdGeVector3d(1, 0, 0), 1, 1, 0, OdString("A"));

  ASSERT_EQ(rec.records().size(), 3u);
  const OdGiSubEntityTraitsData& first = rec.records()[0].traits;
  EXPECT_EQ(first.color(), 256);
  EXPECT_TRUE(first.trueColor().isByLayer());
  EXPECT_EQ(first.layer(), nullptr);
  EXPECT_EQ(first.fillType(), kOdGiFillNever);
  EXPECT_EQ(first.lineWeight(), OdDb::kLnWtByLayer);
  EXPECT_EQ(first.lineTypeScale(), 1.0);

  const OdGiSubEntityTraitsData& second = rec.records()[1].traits;
  EXPECT_EQ(second.color(), 1);
  EXPECT_TRUE(second.trueColor().isByACI());
  EXPECT_EQ(second.layer(), stub(0));
  EXPECT_EQ(second.lineType(), stub(1));
  EXPECT_EQ(second.fillType(), kOdGiFillAlways);
  EXPECT_EQ(second.lineWeight(), OdDb::kLnWt050);
  EXPECT_EQ(second.lineTypeScale(), 2.5);
  EXPECT_EQ(second.selectionMarker(), 7);

  const OdGiSubEntityTraitsData& third = rec.records()[2].traits;
  EXPECT_TRUE(third.trueColor().isByColor());
  EXPECT_EQ(third.trueColor().red(), 10);
  EXPECT_EQ(third.trueColor().blue(), 30);
  EXPECT_EQ(third.fillType(), kOdGiFillNever);
  EXPECT_EQ(third.layer(), stub(0)); // untouched traits carry over
  EXPECT_EQ(third.selectionMarker(), 7);

  // The getters answer what was set last.
  EXPECT_EQ(rec.subEntityTraits().trueColor(), OdCmEntityColor(10, 20, 30));
  EXPECT_EQ(rec.subEntityTraits().lineType(), stub(1));
}

TEST(GiRecorder, ClearKeepsTraitsAndTransformsResetDropsThem) {
  OdGiRecorder rec;
  const OdGePoint3d p(0, 0, 0);
  rec.subEntityTraits().setColor(3);
  rec.pushModelTransform(OdGeMatrix3d::translation(OdGeVector3d(0, 0, 5)));
  rec.polyline(1, &p);
  rec.xline(p, OdGePoint3d(1, 0, 0));
  rec.ray(p, OdGePoint3d(0, 1, 0));
  EXPECT_EQ(rec.count(OdGiRecord::kPolyline), 1u);
  EXPECT_EQ(rec.count(OdGiRecord::kXline), 1u);
  EXPECT_EQ(rec.count(OdGiRecord::kRay), 1u);
  EXPECT_EQ(rec.count(OdGiRecord::kCircle), 0u);

  rec.clear();
  EXPECT_TRUE(rec.records().empty());
  rec.polyline(1, &p);
  EXPECT_EQ(rec.records()[0].traits.color(), 3);
  expectPoint(rec.records()[0].points[0], OdGePoint3d(0, 0, 5));

  rec.reset();
  rec.polyline(1, &p);
  ASSERT_EQ(rec.records().size(), 1u);
  EXPECT_EQ(rec.records()[0].traits.color(), 256);
  expectPoint(rec.records()[0].points[0], OdGePoint3d(0, 0, 0));
}

TEST(GiRecorder, ArcsAndCirclesAreRecordedInWorldCoordinates) {
  OdGiRecorder rec;
  // Rotate a quarter turn about Z, scale by 2, move to (5, 0, 0).
  OdGeMatrix3d xfm = OdGeMatrix3d::translation(OdGeVector3d(5, 0, 0)) * OdGeMatrix3d::scaling(2.0) *
                     OdGeMatrix3d::rotation(OdaPI2, kZ);
  rec.pushModelTransform(xfm);
  rec.circularArc(OdGePoint3d(1, 0, 0), 1, kZ, OdGeVector3d(1, 0, 0), OdaPI2, kOdGiArcChord);
  rec.circle(OdGePoint3d(0, 0, 0), 3, kZ);
  rec.popModelTransform();

  // A mirror in the YZ plane flips the normal; the arc still runs counter-clockwise about it.
  rec.pushModelTransform(OdGeMatrix3d::mirroring(OdGePoint3d(0, 0, 0), OdGeVector3d(1, 0, 0)));
  rec.circularArc(OdGePoint3d(0, 0, 0), 1, kZ, OdGeVector3d(1, 0, 0), OdaPI2);
  rec.popModelTransform();

  ASSERT_EQ(rec.records().size(), 3u);
  const OdGiRecord& arc = rec.records()[0];
  EXPECT_EQ(arc.kind, OdGiRecord::kArc);
  expectPoint(arc.points.at(0), OdGePoint3d(5, 2, 0)); // centre
  expectPoint(arc.points.at(1), OdGePoint3d(5, 4, 0)); // start
  expectPoint(arc.points.at(2), OdGePoint3d(3, 2, 0)); // end
  EXPECT_NEAR(arc.radius, 2.0, kEps);
  expectVector(arc.normal, kZ);
  expectVector(arc.startVector, OdGeVector3d(0, 1, 0));
  EXPECT_NEAR(arc.sweepAngle, OdaPI2, kEps);
  EXPECT_EQ(arc.arcType, kOdGiArcChord);

  const OdGiRecord& circle = rec.records()[1];
  EXPECT_EQ(circle.kind, OdGiRecord::kCircle);
  expectPoint(circle.points.at(0), OdGePoint3d(5, 0, 0));
  EXPECT_NEAR(circle.radius, 6.0, kEps);
  expectVector(circle.normal, kZ);

  const OdGiRecord& mirrored = rec.records()[2];
  expectVector(mirrored.normal, OdGeVector3d(0, 0, -1));
  expectPoint(mirrored.points.at(1), OdGePoint3d(-1, 0, 0));
  expectPoint(mirrored.points.at(2), OdGePoint3d(0, 1, 0));
  // Re-derive the end from the recorded parameters to show they agree with the points.
  const OdGeVector3d v = mirrored.normal.crossProduct(mirrored.startVector);
  expectPoint(mirrored.points[0] + (mirrored.startVector * std::cos(mirrored.sweepAngle) +
                                    v * std::sin(mirrored.sweepAngle)) *
                                       mirrored.radius,
              mirrored.points[2]);
}

TEST(GiRecorder, ThreePointCirclesAndArcs) {
  OdGiRecorder rec;
  // Clockwise in XY seen from +Z: the normal points down.
  rec.circle(OdGePoint3d(0, 1, 0), OdGePoint3d(1, 0, 0), OdGePoint3d(0, -1, 0));
  rec.circularArc(OdGePoint3d(2, 0, 0), OdGePoint3d(0, 2, 0), OdGePoint3d(-2, 0, 0));
  rec.circularArc(OdGePoint3d(1, 0, 7), OdGePoint3d(0, -1, 7), OdGePoint3d(0, 1, 7));
  ASSERT_EQ(rec.records().size(), 3u);

  const OdGiRecord& circle = rec.records()[0];
  EXPECT_EQ(circle.kind, OdGiRecord::kCircle);
  expectPoint(circle.points[0], OdGePoint3d(0, 0, 0));
  EXPECT_NEAR(circle.radius, 1.0, kEps);
  expectVector(circle.normal, OdGeVector3d(0, 0, -1));

  const OdGiRecord& upper = rec.records()[1];
  expectPoint(upper.points[0], OdGePoint3d(0, 0, 0));
  EXPECT_NEAR(upper.radius, 2.0, kEps);
  expectVector(upper.normal, kZ);
  EXPECT_NEAR(upper.sweepAngle, OdaPI, kEps);

  // Start at 0°, through 270°, end at 90°: three quarters of a turn clockwise about +Z, that
  // is counter-clockwise about -Z.
  const OdGiRecord& major = rec.records()[2];
  expectPoint(major.points[0], OdGePoint3d(0, 0, 7));
  expectVector(major.normal, OdGeVector3d(0, 0, -1));
  EXPECT_NEAR(major.sweepAngle, 1.5 * OdaPI, kEps);
  expectPoint(major.points[2], OdGePoint3d(0, 1, 7));
}

TEST(GiRecorder, DegenerateInputIsRefusedOrSimplified) {
  struct Case {
    const char* what;
    void (*draw)(OdGiRecorder&);
  };
  const Case refused[] = {
      {"negative radius", [](OdGiRecorder& r) { r.circle(kA, -1, kZ); }},
      {"NaN radius", [](OdGiRecorder& r) { r.circle(kA, kNaN, kZ); }},
      {"zero normal", [](OdGiRecorder& r) { r.circle(kA, 1, OdGeVector3d()); }},
      {"arc start along the normal",
       [](OdGiRecorder& r) { r.circularArc(kA, 1, kZ, OdGeVector3d(0, 0, 3), 1.0); }},
      {"arc with NaN sweep",
       [](OdGiRecorder& r) { r.circularArc(kA, 1, kZ, OdGeVector3d(1, 0, 0), kNaN); }},
      {"collinear three-point circle", [](OdGiRecorder& r) { r.circle(kA, kB, kC); }},
      {"coincident three-point circle", [](OdGiRecorder& r) { r.circle(kA, kA, kB); }},
      {"polyline without vertices", [](OdGiRecorder& r) { r.polyline(0, &kA); }},
      {"polyline with negative count", [](OdGiRecorder& r) { r.polyline(-3, &kA); }},
      {"polygon with null list", [](OdGiRecorder& r) { r.polygon(3, nullptr); }},
      {"text along its normal",
       [](OdGiRecorder& r) { r.text(kA, kZ, kZ, 1, 1, 0, OdString("x")); }},
  };
  for (const Case& test : refused) {
    OdGiRecorder rec;
    test.draw(rec);
    EXPECT_TRUE(rec.records().empty()) << test.what;
  }

  // Collinear three-point arcs flatten into the two segments.
  OdGiRecorder rec;
  rec.circularArc(kA, kB, kC);
  ASSERT_EQ(rec.records().size(), 1u);
  EXPECT_EQ(rec.records()[0].kind, OdGiRecord::kPolyline);
  ASSERT_EQ(rec.records()[0].points.size(), 3u);
  expectPoint(rec.records()[0].points[1], kB);
}

TEST(GiRecorder, TextFollowsTheModelTransform) {
  OdGiRecorder rec;
  // Stretch x by 3: text along x gets a wider width factor but keeps its height.
  OdGeMatrix3d stretch;
  stretch.entry[0][0] = 3.0;
  rec.pushModelTransform(stretch);
  rec.text(OdGePoint3d(1, 1, 0), kZ, OdGeVector3d(2, 0, 0), 2.5, 0.8, 0.1, OdString("坐标"));
  rec.popModelTransform();
  // A quarter turn about Z turns the baseline to +Y.
  rec.pushModelTransform(OdGeMatrix3d::rotation(OdaPI2, kZ));
  rec.text(OdGePoint3d(1, 0, 0), kZ, OdGeVector3d(1, 0, 0), 1, 1, 0, OdString("A"));
  rec.popModelTransform();

  ASSERT_EQ(rec.count(OdGiRecord::kText), 2u);
  const OdGiRecord& stretched = rec.records()[0];
  expectPoint(stretched.points[0], OdGePoint3d(3, 1, 0));
  expectVector(stretched.direction, OdGeVector3d(1, 0, 0));
  expectVector(stretched.normal, kZ);
  EXPECT_NEAR(stretched.height, 2.5, kEps);
  EXPECT_NEAR(stretched.width, 2.4, kEps);
  EXPECT_NEAR(stretched.oblique, 0.1, kEps);
  EXPECT_EQ(stretched.text, OdString("坐标"));

  const OdGiRecord& turned = rec.records()[1];
  expectPoint(turned.points[0], OdGePoint3d(0, 1, 0));
  expectVector(turned.direction, OdGeVector3d(0, 1, 0));
  EXPECT_NEAR(turned.height, 1.0, kEps);
  EXPECT_NEAR(turned.width, 1.0, kEps);
}

TEST(GiRecorder, PolylineKeepsMarkerAndTransformedNormal) {
  OdGiRecorder rec;
  const OdGePoint3d pts[2] = {{0, 0, 0}, {1, 0, 0}};
  rec.pushModelTransform(OdGeMatrix3d::rotation(OdaPI2, OdGeVector3d(1, 0, 0)));
  rec.polyline(2, pts, &kZ, 40);
  rec.polyline(2, pts);
  ASSERT_EQ(rec.records().size(), 2u);
  EXPECT_EQ(rec.records()[0].subEntMarker, 40);
  expectVector(rec.records()[0].normal, OdGeVector3d(0, -1, 0));
  EXPECT_EQ(rec.records()[1].subEntMarker, -1);
  expectVector(rec.records()[1].normal, OdGeVector3d());
}

TEST(GiRecorder, SessionSettingsAndViewport) {
  OdGiRecorder rec;
  OdDbDatabase* db = reinterpret_cast<OdDbDatabase*>(&g_stubStorage[2]);
  EXPECT_EQ(rec.context()->database(), nullptr);
  EXPECT_EQ(rec.regenType(), kOdGiStandardDisplay);
  rec.setDatabase(db);
  rec.setRegenType(kOdGiSaveWorldDrawForProxy);
  rec.setRegenAbort(true);
  rec.setDeviation(0.01);
  EXPECT_EQ(rec.context()->database(), db);
  EXPECT_EQ(rec.regenType(), kOdGiSaveWorldDrawForProxy);
  EXPECT_TRUE(rec.regenAbort());
  EXPECT_EQ(rec.deviation(kOdGiMaxDevForCurve, OdGePoint3d()), 0.01);

  // Drawing through either interface lands in the same records.
  OdGiWorldDraw& world = rec;
  OdGiViewportDraw& view = rec;
  const OdGePoint3d p(1, 2, 3);
  world.geometry().polyline(1, &p);
  view.geometry().polygon(1, &p);
  EXPECT_EQ(rec.records().size(), 2u);

  // The viewport looks from +X at (10, 0, 0), Z up, 4 pixels per unit; its model-to-eye
  // transform includes the model transforms pushed on the recorder.
  ASSERT_TRUE(rec.fixedViewport().setView(OdGePoint3d(10, 0, 0), OdGeVector3d(5, 0, 0), kZ));
  ASSERT_TRUE(rec.fixedViewport().setPixelsPerUnit(4));
  EXPECT_FALSE(rec.fixedViewport().setPixelsPerUnit(0));
  EXPECT_FALSE(rec.fixedViewport().setView(OdGePoint3d(), OdGeVector3d(), kZ));
  const OdGiViewport& vp = view.viewport();
  expectVector(vp.viewDir(), OdGeVector3d(1, 0, 0));
  expectPoint(vp.getCameraLocation(), OdGePoint3d(11, 0, 0));
  OdGePoint2d density;
  vp.getNumPixelsInUnitSquare(OdGePoint3d(), density);
  EXPECT_EQ(density.x, 4.0);
  EXPECT_EQ(density.y, 4.0);

  rec.pushModelTransform(OdGeMatrix3d::translation(OdGeVector3d(10, 0, 7)));
  // Model origin is world (10, 0, 7): at the target, 7 units up, so eye (0, 7, 0).
  expectPoint(vp.getModelToEyeTransform() * OdGePoint3d(0, 0, 0), OdGePoint3d(0, 7, 0));
  // World (10, 1, 0) lies to the viewer's right looking down -X with Z up: eye x is +1.
  expectPoint(vp.getWorldToEyeTransform() * OdGePoint3d(10, 1, 0), OdGePoint3d(1, 0, 0));
  expectPoint(vp.getEyeToModelTransform() * OdGePoint3d(0, 7, 0), OdGePoint3d(0, 0, 0));
  expectPoint(vp.getEyeToWorldTransform() * OdGePoint3d(1, 0, 0), OdGePoint3d(10, 1, 0));
}
