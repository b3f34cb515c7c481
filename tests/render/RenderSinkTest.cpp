// The renderer's graphics sink, driven through entities whose drawing each test scripts: what
// every primitive becomes in the picture, and how traits and transforms act on it.

#include "DrawingRenderer.h"

#include "CmColor.h"
#include "Ge/GeMatrix3d.h"
#include "Ge/GePoint2d.h"
#include "GlyphFitter.h"
#include "OdError.h"
#include "OdString.h"
#include "RenderTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace render_test {
namespace {

using custents::render::DrawingRenderer;
using custents::render::GlyphFitter;
using custents::render::RenderOptions;
using custents::render::RenderResult;

constexpr double kPi = 3.14159265358979323846;

/// Two pixels per unit with a 10-pixel margin: a picture whose pixels are easy to predict from
/// the drawing's extents.
RenderOptions fixedScale() {
  RenderOptions options;
  options.pixelsPerUnit = 2.0;
  options.margin = 10.0;
  return options;
}

ScriptedEntityPtr scripted(std::function<void(OdGiWorldDraw*)> script) {
  ScriptedEntityPtr entity = ScriptedEntity::createObject();
  entity->worldScript = std::move(script);
  return entity;
}

/// A square from (0, 0) to (20, 20): with fixedScale() the picture is 60 x 60 and world
/// (x, y) is pixel (10 + 2x, 50 - 2y).
void drawFrame(OdGiWorldDraw* draw) {
  const OdGePoint3d frame[5] = {OdGePoint3d(0, 0, 0), OdGePoint3d(20, 0, 0), OdGePoint3d(20, 20, 0),
                                OdGePoint3d(0, 20, 0), OdGePoint3d(0, 0, 0)};
  draw->geometry().polyline(5, frame);
}

std::string render(const std::vector<ScriptedEntityPtr>& entities,
                   const RenderOptions& options = fixedScale(), RenderResult* result = nullptr) {
  std::vector<const OdDbEntity*> list;
  for (const ScriptedEntityPtr& entity : entities)
    list.push_back(entity.get());
  std::string document;
  const RenderResult rendered = DrawingRenderer(options).svgDocument(list, document);
  EXPECT_TRUE(rendered.ok) << rendered.error;
  if (result)
    *result = rendered;
  return document;
}

/// The primitives of the frame (first) and of an entity drawing script, which must stay
/// inside the frame so that the picture is the frame's.
std::vector<SvgElement> primitivesOf(std::function<void(OdGiWorldDraw*)> script) {
  return svgPrimitives(render({scripted(drawFrame), scripted(std::move(script))}));
}

void expectNumbers(const std::vector<double>& expected, const std::vector<double>& actual,
                   double tolerance = 1e-3) {
  ASSERT_EQ(expected.size(), actual.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_NEAR(expected[i], actual[i], tolerance) << "number " << i;
}

TEST(RenderSink, PolygonsAreFilledOnlyWhileFillIsOn) {
  const std::vector<SvgElement> primitives = primitivesOf([](OdGiWorldDraw* draw) {
    const OdGePoint3d triangle[3] = {OdGePoint3d(0, 0, 0), OdGePoint3d(10, 0, 0),
                                     OdGePoint3d(0, 10, 0)};
    draw->subEntityTraits().setColor(1);
    draw->subEntityTraits().setFillType(kOdGiFillAlways);
    draw->geometry().polygon(3, triangle);
    draw->subEntityTraits().setFillType(kOdGiFillNever);
    draw->geometry().polygon(3, triangle);
  });
  ASSERT_EQ(3u, primitives.size());
  const SvgElement& filled = primitives[1];
  EXPECT_EQ("polygon", filled.tag);
  EXPECT_EQ("#ff0000", filled.attribute("fill"));
  EXPECT_EQ("evenodd", filled.attribute("fill-rule"));
  EXPECT_EQ("none", filled.attribute("stroke"));
  expectNumbers({10, 50, 30, 50, 10, 30}, numbersIn(filled.attribute("points")));
  const SvgElement& outline = primitives[2];
  EXPECT_EQ("polygon", outline.tag);
  EXPECT_EQ("none", outline.attribute("fill"));
  EXPECT_EQ("#ff0000", outline.attribute("stroke"));
}

TEST(RenderSink, CirclesFacingTheViewStayCirclesOthersAreTraced) {
  const std::vector<SvgElement> primitives = primitivesOf([](OdGiWorldDraw* draw) {
    draw->geometry().circle(OdGePoint3d(10, 10, 0), 5.0, OdGeVector3d::kZAxis);
    // Seen from below it is still a circle on screen.
    draw->geometry().circle(OdGePoint3d(10, 10, 0), 4.0, -OdGeVector3d::kZAxis);
    // Tilted 60 degrees: an ellipse with half its width across.
    draw->geometry().circle(OdGePoint3d(10, 10, 0), 5.0,
                            OdGeVector3d(0.0, std::sin(kPi / 3), std::cos(kPi / 3)));
    draw->subEntityTraits().setFillType(kOdGiFillAlways);
    draw->geometry().circle(OdGePoint3d(10, 10, 0), 3.0, OdGeVector3d::kZAxis);
  });
  ASSERT_EQ(5u, primitives.size());
  EXPECT_EQ("circle", primitives[1].tag);
  EXPECT_EQ("30", primitives[1].attribute("cx"));
  EXPECT_EQ("30", primitives[1].attribute("cy"));
  EXPECT_EQ("10", primitives[1].attribute("r"));
  EXPECT_EQ("none", primitives[1].attribute("fill"));
  EXPECT_EQ("circle", primitives[2].tag);
  EXPECT_EQ("8", primitives[2].attribute("r"));

  const SvgElement& ellipse = primitives[3];
  ASSERT_EQ("path", ellipse.tag);
  EXPECT_NE(std::string::npos, ellipse.attribute("d").find('Z'));
  const std::vector<double> numbers = numbersIn(ellipse.attribute("d"));
  double widest = 0.0, tallest = 0.0;
  for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
    widest = std::max(widest, std::fabs(numbers[i] - 30.0));
    tallest = std::max(tallest, std::fabs(numbers[i + 1] - 30.0));
  }
  EXPECT_NEAR(10.0, widest, 0.01);
  EXPECT_NEAR(5.0, tallest, 0.3);

  EXPECT_EQ("circle", primitives[4].tag);
  EXPECT_EQ("#000000", primitives[4].attribute("fill"));
}

TEST(RenderSink, ArcsAreTracedCloseToTheCurveAndClosedByType) {
  struct Case {
    OdGiArcType type;
    bool closed;
    bool startsAtCentre;
  };
  for (const Case& item : {Case{kOdGiArcSimple, false, false}, Case{kOdGiArcSector, true, true},
                           Case{kOdGiArcChord, true, false}}) {
    SCOPED_TRACE(item.type);
    const std::vector<SvgElement> primitives = primitivesOf([&](OdGiWorldDraw* draw) {
      draw->geometry().circularArc(OdGePoint3d(10, 10, 0), 8.0, OdGeVector3d::kZAxis,
                                   OdGeVector3d::kXAxis, kPi / 2, item.type);
    });
    ASSERT_EQ(2u, primitives.size());
    const std::string d = primitives[1].attribute("d");
    EXPECT_EQ(item.closed, d.find('Z') != std::string::npos);
    std::vector<double> numbers = numbersIn(d);
    ASSERT_GE(numbers.size(), 8u);
    if (item.startsAtCentre) {
      EXPECT_NEAR(30.0, numbers[0], 1e-3);
      EXPECT_NEAR(30.0, numbers[1], 1e-3);
      numbers.erase(numbers.begin(), numbers.begin() + 2);
    }
    // From world (18, 10) counter-clockwise to (10, 18), every point on the circle.
    EXPECT_NEAR(46.0, numbers[0], 1e-3);
    EXPECT_NEAR(30.0, numbers[1], 1e-3);
    EXPECT_NEAR(30.0, numbers[numbers.size() - 2], 1e-3);
    EXPECT_NEAR(14.0, numbers.back(), 1e-3);
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
      EXPECT_NEAR(16.0, std::hypot(numbers[i] - 30.0, numbers[i + 1] - 30.0), 1e-3);
  }
}

TEST(RenderSink, ThreePointShapesAndCollinearArcs) {
  const std::vector<SvgElement> primitives = primitivesOf([](OdGiWorldDraw* draw) {
    draw->geometry().circle(OdGePoint3d(5, 10, 0), OdGePoint3d(10, 15, 0), OdGePoint3d(15, 10, 0));
    draw->geometry().circularArc(OdGePoint3d(0, 5, 0), OdGePoint3d(5, 5, 0), OdGePoint3d(10, 5, 0));
  });
  ASSERT_EQ(3u, primitives.size());
  EXPECT_EQ("circle", primitives[1].tag);
  EXPECT_EQ("30", primitives[1].attribute("cx"));
  EXPECT_EQ("10", primitives[1].attribute("r"));
  EXPECT_EQ("path", primitives[2].tag);
  expectNumbers({10, 40, 20, 40, 30, 40}, numbersIn(primitives[2].attribute("d")));
}

TEST(RenderSink, TextIsPlacedScaledTurnedAndEscaped) {
  const std::vector<SvgElement> primitives = primitivesOf([](OdGiWorldDraw* draw) {
    draw->subEntityTraits().setColor(5);
    draw->geometry().text(OdGePoint3d(2, 3, 0), OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, 3.0,
                          1.0, 0.0, OdString(OD_T("A<&>\"")));
    draw->geometry().text(OdGePoint3d(10, 3, 0), OdGeVector3d::kZAxis, OdGeVector3d::kYAxis, 4.0,
                          2.0, 0.0, OdString(OD_T("up")));
  });
  ASSERT_EQ(3u, primitives.size());
  const SvgElement& level = primitives[1];
  ASSERT_EQ("text", level.tag);
  EXPECT_EQ("A&lt;&amp;&gt;&quot;", level.text);
  EXPECT_EQ("#0000ff", level.attribute("fill"));
  // Height 3 units is 6 pixels of capital; the em is larger by the font's cap-height ratio.
  // The line is as long as the text metrics say: 5 characters of 0.6 heights, 18 pixels.
  const double emPerCap = GlyphFitter(RenderOptions().fontFamily).emPerCapHeight();
  EXPECT_NEAR(6.0 * emPerCap, std::stod(level.attribute("font-size")), 1e-3);
  EXPECT_NEAR(18.0, std::stod(level.attribute("textLength")), 1e-3);
  expectNumbers({1, 0, 0, 1, 14, 44}, numbersIn(level.attribute("transform")));

  // Along world Y is up the picture; the width factor stretches along the baseline.
  const SvgElement& turned = primitives[2];
  EXPECT_EQ("up", turned.text);
  const double em = 8.0 * emPerCap;
  EXPECT_NEAR(em * std::sqrt(2.0), std::stod(turned.attribute("font-size")), 1e-2);
  const std::vector<double> m = numbersIn(turned.attribute("transform"));
  ASSERT_EQ(6u, m.size());
  const double size = std::sqrt(2.0);
  expectNumbers({0, -2 / size, 1 / size, 0, 30, 44}, m, 2e-3);
  // 2 x 0.6 x 4 x 2 = 9.6 units, 19.2 pixels, along a frame whose unit is sqrt(2) pixels.
  EXPECT_NEAR(19.2 / size, std::stod(turned.attribute("textLength")), 2e-3);
}

TEST(RenderSink, ModelTransformsStackAndAnUnmatchedPopIsIgnored) {
  const std::vector<SvgElement> primitives = primitivesOf([](OdGiWorldDraw* draw) {
    const OdGePoint3d segment[2] = {OdGePoint3d(0, 0, 0), OdGePoint3d(1, 0, 0)};
    OdGiGeometry& geometry = draw->geometry();
    geometry.pushModelTransform(OdGeMatrix3d::translation(OdGeVector3d(5, 5, 0)));
    geometry.pushModelTransform(OdGeMatrix3d::scaling(2.0));
    geometry.polyline(2, segment); // (5, 5) to (7, 5)
    geometry.popModelTransform();
    geometry.polyline(2, segment); // (5, 5) to (6, 5)
    geometry.popModelTransform();
    geometry.popModelTransform();
    geometry.polyline(2, segment); // (0, 0) to (1, 0)
  });
  ASSERT_EQ(4u, primitives.size());
  expectNumbers({20, 40, 24, 40}, numbersIn(primitives[1].attribute("d")));
  expectNumbers({20, 40, 22, 40}, numbersIn(primitives[2].attribute("d")));
  expectNumbers({10, 50, 12, 50}, numbersIn(primitives[3].attribute("d")));
}

TEST(RenderSink, XlinesAndRaysRunOutOfThePicture) {
  const std::vector<SvgElement> primitives = primitivesOf([](OdGiWorldDraw* draw) {
    draw->geometry().xline(OdGePoint3d(5, 10, 0), OdGePoint3d(6, 10, 0));
    draw->geometry().ray(OdGePoint3d(5, 10, 0), OdGePoint3d(5, 11, 0));
  });
  ASSERT_EQ(3u, primitives.size());
  const std::vector<double> xline = numbersIn(primitives[1].attribute("d"));
  ASSERT_EQ(4u, xline.size());
  EXPECT_LT(std::min(xline[0], xline[2]), 0.0);
  EXPECT_GT(std::max(xline[0], xline[2]), 60.0);
  EXPECT_NEAR(30.0, xline[1], 1e-3);
  EXPECT_NEAR(30.0, xline[3], 1e-3);
  const std::vector<double> ray = numbersIn(primitives[2].attribute("d"));
  ASSERT_EQ(4u, ray.size());
  expectNumbers({20, 30}, {ray[0], ray[1]});
  EXPECT_NEAR(20.0, ray[2], 1e-3);
  EXPECT_LT(ray[3], 0.0);
}

TEST(RenderSink, TraitsSetMidEntityApplyToTheFollowingPrimitives) {
  const std::vector<SvgElement> primitives = primitivesOf([](OdGiWorldDraw* draw) {
    const OdGePoint3d segment[2] = {OdGePoint3d(0, 0, 0), OdGePoint3d(1, 0, 0)};
    draw->subEntityTraits().setColor(1);
    draw->subEntityTraits().setLineWeight(OdDb::kLnWt200);
    draw->geometry().polyline(2, segment);
    draw->subEntityTraits().setColor(3);
    draw->geometry().polyline(2, segment);
    draw->subEntityTraits().setTrueColor(OdCmEntityColor(1, 2, 3));
    draw->geometry().polyline(2, segment);
  });
  ASSERT_EQ(4u, primitives.size());
  EXPECT_EQ("#000000", primitives[0].attribute("stroke")) << "by layer, no layer: foreground";
  EXPECT_EQ("#ff0000", primitives[1].attribute("stroke"));
  EXPECT_NEAR(2.0 * 96.0 / 25.4, std::stod(primitives[1].attribute("stroke-width")), 1e-3);
  EXPECT_EQ("#00ff00", primitives[2].attribute("stroke"));
  EXPECT_EQ("#010203", primitives[3].attribute("stroke"));
}

TEST(RenderSink, ViewportDrawingRunsWhenWorldDrawingDeclinesAndSeesThePictureScale) {
  ScriptedEntityPtr entity = ScriptedEntity::createObject();
  entity->viewportScript = [](OdGiViewportDraw* draw) {
    // A marker five pixels in radius whatever the scale, as view-dependent graphics do.
    OdGePoint2d pixels;
    draw->viewport().getNumPixelsInUnitSquare(OdGePoint3d::kOrigin, pixels);
    draw->geometry().circle(OdGePoint3d(0, 0, 0), 5.0 / pixels.x, OdGeVector3d::kZAxis);
  };
  const std::vector<SvgElement> primitives = svgPrimitives(render({scripted(drawFrame), entity}));
  ASSERT_EQ(2u, primitives.size());
  EXPECT_EQ("circle", primitives[1].tag);
  EXPECT_EQ("5", primitives[1].attribute("r"));
  // The extents pass saw the marker at one pixel per unit (radius 5 units), which widens the
  // picture to start at world (-5, -5): the origin is pixel (20, 50).
  EXPECT_EQ("20", primitives[1].attribute("cx"));
  EXPECT_EQ("50", primitives[1].attribute("cy"));
}

TEST(RenderSink, RefusedPrimitivesDrawNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const OdGePoint3d p(1, 1, 0);
  struct Case {
    const char* name;
    std::function<void(OdGiGeometry&)> draw;
  };
  const std::vector<Case> cases = {
      {"polyline without vertices", [&](OdGiGeometry& g) { g.polyline(0, &p); }},
      {"polyline without a list", [](OdGiGeometry& g) { g.polyline(3, nullptr); }},
      {"polygon without vertices", [&](OdGiGeometry& g) { g.polygon(-1, &p); }},
      {"negative radius", [&](OdGiGeometry& g) { g.circle(p, -1.0, OdGeVector3d::kZAxis); }},
      {"radius not a number", [&](OdGiGeometry& g) { g.circle(p, nan, OdGeVector3d::kZAxis); }},
      {"zero normal", [&](OdGiGeometry& g) { g.circle(p, 1.0, OdGeVector3d()); }},
      {"collinear circle",
       [&](OdGiGeometry& g) { g.circle(p, OdGePoint3d(2, 2, 0), OdGePoint3d(3, 3, 0)); }},
      {"arc start along the normal",
       [&](OdGiGeometry& g) {
         g.circularArc(p, 1.0, OdGeVector3d::kZAxis, OdGeVector3d::kZAxis, 1.0);
       }},
      {"arc sweep not a number",
       [&](OdGiGeometry& g) {
         g.circularArc(p, 1.0, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, nan);
       }},
      {"text without height",
       [&](OdGiGeometry& g) {
         g.text(p, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, 0.0, 1.0, 0.0, OD_T("x"));
       }},
      {"text without a string",
       [&](OdGiGeometry& g) {
         g.text(p, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, 1.0, 1.0, 0.0, OdString());
       }},
      {"text seen edge-on",
       [&](OdGiGeometry& g) {
         g.text(p, OdGeVector3d::kXAxis, OdGeVector3d::kYAxis, 1.0, 1.0, 0.0, OD_T("x"));
       }},
      {"xline through one point", [&](OdGiGeometry& g) { g.xline(p, p); }},
      {"ray along the view", [&](OdGiGeometry& g) { g.ray(p, OdGePoint3d(1, 1, 5)); }},
      {"point not a number",
       [&](OdGiGeometry& g) {
         const OdGePoint3d bad[2] = {p, OdGePoint3d(nan, 0, 0)};
         g.polyline(2, bad);
       }},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.name);
    const std::vector<SvgElement> primitives =
        primitivesOf([&](OdGiWorldDraw* draw) { item.draw(draw->geometry()); });
    EXPECT_EQ(1u, primitives.size());
  }
}

TEST(RenderSink, SingleVerticesShowAsDots) {
  const std::vector<SvgElement> primitives = primitivesOf([](OdGiWorldDraw* draw) {
    const OdGePoint3d point(5, 5, 0);
    draw->geometry().polyline(1, &point);
  });
  ASSERT_EQ(2u, primitives.size());
  expectNumbers({20, 40, 20, 40}, numbersIn(primitives[1].attribute("d")));
}

TEST(RenderSink, AnEntityThatFailsIsNotedAndTheOthersAreDrawn) {
  RenderResult result;
  const std::string document =
      render({scripted(drawFrame), scripted([](OdGiWorldDraw*) { throw OdError(eInvalidInput); })},
             fixedScale(), &result);
  EXPECT_EQ(1u, svgPrimitives(document).size());
  ASSERT_EQ(1u, result.notes.size());
  EXPECT_NE(std::string::npos, result.notes[0].find("ScriptedEntity")) << result.notes[0];
}

TEST(RenderSink, PngShowsTextAndFills) {
  // Not a pixel-exact comparison (fonts differ between systems): the filled square is solid
  // and the text leaves ink inside its box.
  ScriptedEntityPtr entity = scripted([](OdGiWorldDraw* draw) {
    drawFrame(draw);
    const OdGePoint3d square[4] = {OdGePoint3d(1, 1, 0), OdGePoint3d(9, 1, 0), OdGePoint3d(9, 9, 0),
                                   OdGePoint3d(1, 9, 0)};
    draw->subEntityTraits().setColor(3);
    draw->subEntityTraits().setFillType(kOdGiFillAlways);
    draw->geometry().polygon(4, square);
    draw->subEntityTraits().setColor(1);
    draw->geometry().text(OdGePoint3d(11, 11, 0), OdGeVector3d::kZAxis, OdGeVector3d::kXAxis, 8.0,
                          1.0, 0.0, OD_T("HH"));
  });
  RenderOptions options;
  options.pixelsPerUnit = 10.0;
  options.margin = 0.0;
  const std::string path = temporaryPath("shapes.png");
  const RenderResult result = DrawingRenderer(options).renderPng({entity.get()}, path);
  ASSERT_TRUE(result.ok) << result.error;
  PngPixels pixels;
  ASSERT_TRUE(readPngPixels(path, pixels));
  // Square centre, world (5, 5): pixel (50, 150).
  EXPECT_EQ(0x00FF00u, pixels.at(50, 150));
  // The text stands on world y 11 with capitals up to y 19: pixels 110.. across, 10..90 down.
  int redPixels = 0;
  for (int x = 110; x < 200; ++x)
    for (int y = 10; y < 90; ++y)
      if (pixels.at(x, y) == 0xFF0000u)
        ++redPixels;
  EXPECT_GT(redPixels, 200);
  // Nothing red below the baseline or above the capitals.
  for (int x = 110; x < 200; ++x) {
    EXPECT_NE(0xFF0000u, pixels.at(x, 5));
    EXPECT_NE(0xFF0000u, pixels.at(x, 95));
  }
}

} // namespace
} // namespace render_test
