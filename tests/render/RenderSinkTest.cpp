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
#include <sstream>
#include <string>
#include <utility>
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

std::string render(const std::vector<ScriptedEntityPtr>& entities, RenderResult* result = nullptr) {
  std::vector<const OdDbEntity*> list;
  for (const ScriptedEntityPtr& entity : entities)
    list.push_back(entity.get());
  std::string document;
  const RenderResult rendered = DrawingRenderer(fixedScale()).svgDocument(list, document);
  EXPECT_TRUE(rendered.ok) << rendered.error;
  if (result)
    *result = rendered;
  return document;
}

/// One primitive the sink must write, as "tag name=value ...": "text()" is the element's
/// text; d, points and transform are compared number by number.
void expectPrimitive(const std::string& spec, const SvgElement& got) {
  std::istringstream words(spec);
  std::string tag, word;
  words >> tag;
  ASSERT_EQ(tag, got.tag);
  while (words >> word) {
    const std::string name = word.substr(0, word.find('=')), value = word.substr(name.size() + 1);
    if (name == "d" || name == "points" || name == "transform")
      expectNumbers(numbersIn(value), numbersIn(got.attribute(name)));
    else
      EXPECT_EQ(value, name == "text()" ? got.text : got.attribute(name)) << name;
  }
}

using Primitives = std::vector<SvgElement>;

void expectArcOnCircle(const SvgElement& path, bool closed, bool startsAtCentre) {
  const std::string d = path.attribute("d");
  EXPECT_EQ(closed, d.find('Z') != std::string::npos);
  std::vector<double> n = numbersIn(d);
  ASSERT_GE(n.size(), 8u);
  if (startsAtCentre) {
    expectNumbers({30, 30}, {n[0], n[1]});
    n.erase(n.begin(), n.begin() + 2);
  }
  // From world (18, 10) counter-clockwise to (10, 18), every point on the circle.
  expectNumbers({46, 30, 30, 14}, {n[0], n[1], n[n.size() - 2], n.back()});
  for (std::size_t i = 0; i + 1 < n.size(); i += 2)
    EXPECT_NEAR(16.0, std::hypot(n[i] - 30.0, n[i + 1] - 30.0), 1e-3);
}

TEST(RenderSink, EachPrimitiveBecomesItsSvgElement) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const OdGePoint3d pt(1, 1, 0);
  const OdGePoint3d segment[2] = {OdGePoint3d(0, 0, 0), OdGePoint3d(1, 0, 0)};
  const OdGePoint3d triangle[3] = {OdGePoint3d(0, 0, 0), OdGePoint3d(10, 0, 0),
                                   OdGePoint3d(0, 10, 0)};
  const auto geometry = [](std::function<void(OdGiGeometry&)> draw) {
    return [draw](OdGiWorldDraw* w) { draw(w->geometry()); };
  };
  struct Case {
    const char* name;
    std::function<void(OdGiWorldDraw*)> draw;
    std::vector<std::string> expected; // after the frame
    std::function<void(const Primitives&)> check;
  };
  std::vector<Case> cases = {
      {"polygons are filled only while fill is on",
       [&](OdGiWorldDraw* draw) {
         draw->subEntityTraits().setColor(1);
         draw->subEntityTraits().setFillType(kOdGiFillAlways);
         draw->geometry().polygon(3, triangle);
         draw->subEntityTraits().setFillType(kOdGiFillNever);
         draw->geometry().polygon(3, triangle);
       },
       {"polygon fill=#ff0000 fill-rule=evenodd stroke=none points=10,50,30,50,10,30",
        "polygon fill=none stroke=#ff0000"},
       nullptr},
      {"circles facing the view (either way) stay circles, tilted ones are traced",
       [](OdGiWorldDraw* draw) {
         draw->geometry().circle(OdGePoint3d(10, 10, 0), 5.0, OdGeVector3d::kZAxis);
         draw->geometry().circle(OdGePoint3d(10, 10, 0), 4.0, -OdGeVector3d::kZAxis);
         draw->geometry().circle(OdGePoint3d(10, 10, 0), 5.0,
                                 OdGeVector3d(0.0, std::sin(kPi / 3), std::cos(kPi / 3)));
         draw->subEntityTraits().setFillType(kOdGiFillAlways);
         draw->geometry().circle(OdGePoint3d(10, 10, 0), 3.0, OdGeVector3d::kZAxis);
       },
       {"circle cx=30 cy=30 r=10 fill=none", "circle r=8", "path", "circle fill=#000000"},
       [](const Primitives& p) {
         // Tilted 60 degrees: an ellipse with half its width across.
         EXPECT_NE(std::string::npos, p[3].attribute("d").find('Z'));
         const std::vector<double> n = numbersIn(p[3].attribute("d"));
         double widest = 0.0, tallest = 0.0;
         for (std::size_t i = 0; i + 1 < n.size(); i += 2) {
           widest = std::max(widest, std::fabs(n[i] - 30.0));
           tallest = std::max(tallest, std::fabs(n[i + 1] - 30.0));
         }
         EXPECT_NEAR(10.0, widest, 0.01);
         EXPECT_NEAR(5.0, tallest, 0.3);
       }},
      {"simple arc, sector and chord",
       geometry([](OdGiGeometry& g) {
         for (OdGiArcType type : {kOdGiArcSimple, kOdGiArcSector, kOdGiArcChord})
           g.circularArc(OdGePoint3d(10, 10, 0), 8.0, OdGeVector3d::kZAxis, OdGeVector3d::kXAxis,
                         kPi / 2, type);
       }),
       {"path", "path", "path"},
       [](const Primitives& p) {
         expectArcOnCircle(p[1], false, false);
         expectArcOnCircle(p[2], true, true);
         expectArcOnCircle(p[3], true, false);
       }},
      {"three-point circle and collinear arc",
       geometry([](OdGiGeometry& g) {
         g.circle(OdGePoint3d(5, 10, 0), OdGePoint3d(10, 15, 0), OdGePoint3d(15, 10, 0));
         g.circularArc(OdGePoint3d(0, 5, 0), OdGePoint3d(5, 5, 0), OdGePoint3d(10, 5, 0));
       }),
       {"circle cx=30 r=10", "path d=10,40,20,40,30,40"},
       nullptr},
      {"text is placed, scaled, turned and escaped",
       [](OdGiWorldDraw* draw) {
         draw->subEntityTraits().setColor(5);
         draw->geometry().text(OdGePoint3d(2, 3, 0), OdGeVector3d::kZAxis, OdGeVector3d::kXAxis,
                               3.0, 1.0, 0.0, OdString(OD_T("A<&>\"")));
         draw->geometry().text(OdGePoint3d(10, 3, 0), OdGeVector3d::kZAxis, OdGeVector3d::kYAxis,
                               4.0, 2.0, 0.0, OdString(OD_T("up")));
       },
       {"text text()=A&lt;&amp;&gt;&quot; fill=#0000ff transform=1,0,0,1,14,44", "text text()=up"},
       [](const Primitives& p) {
         // Turned text (TextGlyphs checks size and length of upright text): along world Y is up
         // the picture; the width factor stretches along the baseline.
         const double emPerCap = GlyphFitter(RenderOptions().fontFamily).emPerCapHeight();
         const double size = std::sqrt(2.0);
         EXPECT_NEAR(8.0 * emPerCap * size, std::stod(p[2].attribute("font-size")), 1e-2);
         expectNumbers({0, -2 / size, 1 / size, 0, 30, 44}, numbersIn(p[2].attribute("transform")),
                       2e-3);
         // 2 x 0.6 x 4 x 2 = 9.6 units, 19.2 pixels, along a frame whose unit is sqrt(2) pixels.
         EXPECT_NEAR(19.2 / size, std::stod(p[2].attribute("textLength")), 2e-3);
       }},
      {"model transforms stack and an unmatched pop is ignored",
       geometry([&](OdGiGeometry& g) {
         g.pushModelTransform(OdGeMatrix3d::translation(OdGeVector3d(5, 5, 0)));
         g.pushModelTransform(OdGeMatrix3d::scaling(2.0));
         g.polyline(2, segment);
         g.popModelTransform();
         g.polyline(2, segment);
         g.popModelTransform();
         g.popModelTransform();
         g.polyline(2, segment);
       }),
       {"path d=20,40,24,40", "path d=20,40,22,40", "path d=10,50,12,50"},
       nullptr},
      {"xlines and rays run out of the picture",
       geometry([](OdGiGeometry& g) {
         g.xline(OdGePoint3d(5, 10, 0), OdGePoint3d(6, 10, 0));
         g.ray(OdGePoint3d(5, 10, 0), OdGePoint3d(5, 11, 0));
       }),
       {"path", "path"},
       [](const Primitives& p) {
         const std::vector<double> xline = numbersIn(p[1].attribute("d"));
         ASSERT_EQ(4u, xline.size());
         EXPECT_LT(std::min(xline[0], xline[2]), 0.0);
         EXPECT_GT(std::max(xline[0], xline[2]), 60.0);
         expectNumbers({30, 30}, {xline[1], xline[3]});
         const std::vector<double> ray = numbersIn(p[2].attribute("d"));
         ASSERT_EQ(4u, ray.size());
         expectNumbers({20, 30, 20}, {ray[0], ray[1], ray[2]});
         EXPECT_LT(ray[3], 0.0);
       }},
      {"traits set mid-entity apply to the following primitives",
       [&](OdGiWorldDraw* draw) {
         draw->subEntityTraits().setColor(1);
         draw->subEntityTraits().setLineWeight(OdDb::kLnWt200);
         draw->geometry().polyline(2, segment);
         draw->subEntityTraits().setColor(3);
         draw->geometry().polyline(2, segment);
         draw->subEntityTraits().setTrueColor(OdCmEntityColor(1, 2, 3));
         draw->geometry().polyline(2, segment);
       },
       {"path stroke=#ff0000", "path stroke=#00ff00", "path stroke=#010203"},
       [](const Primitives& p) {
         EXPECT_EQ("#000000", p[0].attribute("stroke")) << "by layer, no layer: foreground";
         EXPECT_NEAR(2.0 * 96.0 / 25.4, std::stod(p[1].attribute("stroke-width")), 1e-3);
       }},
      {"a single vertex shows as a dot",
       geometry([&](OdGiGeometry& g) { g.polyline(1, &pt); }),
       {"path d=12,48,12,48"},
       nullptr},
  };
  // Primitives the sink refuses draw nothing, and refusing them is no failure of the entity.
  const auto kX = OdGeVector3d::kXAxis, kY = OdGeVector3d::kYAxis, kZ = OdGeVector3d::kZAxis;
  const OdGePoint3d notANumber[2] = {pt, OdGePoint3d(nan, 0, 0)};
  cases.push_back({"refused primitives",
                   geometry([&](OdGiGeometry& g) {
                     g.polyline(0, &pt);                // no vertices
                     g.polyline(3, nullptr);            // no list
                     g.polygon(-1, &pt);                // no vertices
                     g.polyline(2, notANumber);         // a point not a number
                     g.circle(pt, -1.0, kZ);            // negative radius
                     g.circle(pt, nan, kZ);             // radius not a number
                     g.circle(pt, 1.0, OdGeVector3d()); // zero normal
                     g.circle(pt, OdGePoint3d(2, 2, 0), OdGePoint3d(3, 3, 0)); // collinear
                     g.circularArc(pt, 1.0, kZ, kZ, 1.0);           // start along the normal
                     g.circularArc(pt, 1.0, kZ, kX, nan);           // sweep not a number
                     g.text(pt, kZ, kX, 0.0, 1.0, 0.0, OD_T("x"));  // no height
                     g.text(pt, kZ, kX, 1.0, 1.0, 0.0, OdString()); // no string
                     g.text(pt, kX, kY, 1.0, 1.0, 0.0, OD_T("x"));  // seen edge-on
                     g.xline(pt, pt);                               // through one point
                     g.ray(pt, OdGePoint3d(1, 1, 5));               // along the view
                   }),
                   {},
                   nullptr});
  for (const Case& item : cases) {
    SCOPED_TRACE(item.name);
    RenderResult result;
    const Primitives primitives =
        svgPrimitives(render({scripted(drawFrame), scripted(item.draw)}, &result));
    EXPECT_TRUE(result.notes.empty()) << result.notes.front();
    ASSERT_EQ(item.expected.size() + 1, primitives.size());
    for (std::size_t i = 0; i < item.expected.size(); ++i) {
      SCOPED_TRACE(item.expected[i]);
      expectPrimitive(item.expected[i], primitives[i + 1]);
    }
    if (item.check)
      item.check(primitives);
  }
}

TEST(RenderSink, ViewportDrawingRunsWhenWorldDrawingDeclinesAndSeesThePictureScale) {
  ScriptedEntityPtr entity = ScriptedEntity::createObject();
  entity->viewportScript = [](OdGiViewportDraw* draw) {
    // A marker five pixels in radius whatever the scale, as view-dependent graphics do.
    OdGePoint2d pixels;
    draw->viewport().getNumPixelsInUnitSquare(OdGePoint3d::kOrigin, pixels);
    draw->geometry().circle(OdGePoint3d(0, 0, 0), 5.0 / pixels.x, OdGeVector3d::kZAxis);
  };
  const Primitives primitives = svgPrimitives(render({scripted(drawFrame), entity}));
  ASSERT_EQ(2u, primitives.size());
  EXPECT_EQ("circle", primitives[1].tag);
  // The extents pass saw the marker at one pixel per unit (radius 5 units), which widens the
  // picture to start at world (-5, -5): the origin is pixel (20, 50).
  for (const auto& [name, value] : {std::pair{"r", "5"}, {"cx", "20"}, {"cy", "50"}})
    EXPECT_EQ(value, primitives[1].attribute(name)) << name;
}

TEST(RenderSink, AnEntityThatFailsIsNotedAndTheOthersAreDrawn) {
  RenderResult result;
  const std::string document =
      render({scripted(drawFrame), scripted([](OdGiWorldDraw*) { throw OdError(eInvalidInput); })},
             &result);
  EXPECT_EQ(1u, svgPrimitives(document).size());
  ASSERT_EQ(1u, result.notes.size());
  EXPECT_NE(std::string::npos, result.notes[0].find("ScriptedEntity")) << result.notes[0];
}

TEST(RenderSink, PngFillsPolygonsAndCircles) {
  // Ink of text in pictures is TextGlyphs' to check.
  ScriptedEntityPtr entity = scripted([](OdGiWorldDraw* draw) {
    drawFrame(draw);
    const OdGePoint3d square[4] = {OdGePoint3d(1, 1, 0), OdGePoint3d(9, 1, 0), OdGePoint3d(9, 9, 0),
                                   OdGePoint3d(1, 9, 0)};
    draw->subEntityTraits().setColor(3);
    draw->subEntityTraits().setFillType(kOdGiFillAlways);
    draw->geometry().polygon(4, square);
    draw->subEntityTraits().setColor(5);
    draw->geometry().circle(OdGePoint3d(15, 5, 0), 3.0, OdGeVector3d::kZAxis);
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
  // The filled circle round world (15, 5) is whole: left of and below its centre too.
  EXPECT_EQ(0x0000FFu, pixels.at(125, 150));
  EXPECT_EQ(0x0000FFu, pixels.at(150, 170));
}

} // namespace
} // namespace render_test
