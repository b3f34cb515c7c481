#include "DrawingRenderer.h"

#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbLayerTable.h"
#include "DbLine.h"
#include "RenderTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

namespace render_test {
namespace {

using custents::render::Background;
using custents::render::DrawingRenderer;
using custents::render::RenderOptions;
using custents::render::RenderResult;

RenderOptions sizedOptions(int width, int height, double margin) {
  RenderOptions options;
  options.width = width;
  options.height = height;
  options.margin = margin;
  return options;
}

class DrawingRendererTest : public ::testing::Test {
protected:
  void SetUp() override { m_db = OdDbDatabase::createObject(); }

  OdDbLinePtr addLine(const OdGePoint3d& start, const OdGePoint3d& end) {
    OdDbLinePtr line = OdDbLine::createObject();
    line->setStartPoint(start);
    line->setEndPoint(end);
    OdDbBlockTableRecordPtr space = m_db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    space->appendOdDbEntity(line);
    return line;
  }

  OdDbObjectId addLayer(const OdString& name, std::function<void(OdDbLayerTableRecord*)> dress) {
    OdDbLayerTablePtr layers = m_db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLayerTableRecordPtr layer = OdDbLayerTableRecord::createObject();
    layer->setName(name);
    dress(layer.get());
    return layers->add(layer);
  }

  std::string svg(const RenderOptions& options, RenderResult* result = nullptr) {
    std::string document;
    RenderResult rendered = DrawingRenderer(options).svgDocument(m_db.get(), document);
    EXPECT_TRUE(rendered.ok) << rendered.error;
    if (result)
      *result = rendered;
    return document;
  }

  OdDbDatabasePtr m_db;
};

TEST_F(DrawingRendererTest, EachEntityIsOnePathInItsResolvedColourAndLineweight) {
  const OdDbObjectId cyanLayer = addLayer(OD_T("Cyan"), [](OdDbLayerTableRecord* layer) {
    layer->setColor(OdCmColor(OdCmEntityColor(0, 255, 255)));
  });
  const OdDbObjectId heavyLayer = addLayer(
      OD_T("Heavy"), [](OdDbLayerTableRecord* layer) { layer->setLineWeight(OdDb::kLnWt100); });
  const double mm = 96.0 / 25.4;
  // Lineweights widen strokes but never below the default width, 1.5 pixels here.
  struct Case {
    const char* name;
    std::function<void(OdDbEntity*)> dress;
    const char* stroke;
    double width;
  };
  const std::vector<Case> cases = {
      {"ACI 30", [](OdDbEntity* e) { e->setColorIndex(30); }, "#ff7f00", 1.5},
      {"ACI 7 on white", [](OdDbEntity* e) { e->setColorIndex(7); }, "#000000", 1.5},
      {"true colour",
       [](OdDbEntity* e) {
         OdCmColor color;
         color.setRGB(10, 200, 30);
         e->setColor(color);
       },
       "#0ac81e", 1.5},
      {"colour by layer", [&](OdDbEntity* e) { e->setLayer(cyanLayer); }, "#00ffff", 1.5},
      {"colour by layer 0", [](OdDbEntity* e) { e->setColorIndex(256); }, "#000000", 1.5},
      {"colour by block", [](OdDbEntity* e) { e->setColorIndex(0); }, "#000000", 1.5},
      {"0.00 mm", [](OdDbEntity* e) { e->setLineWeight(OdDb::kLnWt000); }, "#000000", 1.5},
      {"0.13 mm", [](OdDbEntity* e) { e->setLineWeight(OdDb::kLnWt013); }, "#000000", 1.5},
      {"0.80 mm", [](OdDbEntity* e) { e->setLineWeight(OdDb::kLnWt080); }, "#000000", 0.8 * mm},
      {"by layer 1.00 mm", [&](OdDbEntity* e) { e->setLayer(heavyLayer); }, "#000000", 1.0 * mm},
      {"lineweight by block", [](OdDbEntity* e) { e->setLineWeight(OdDb::kLnWtByBlock); },
       "#000000", 1.5},
  };
  double y = 0.0;
  for (const Case& item : cases) {
    item.dress(addLine(OdGePoint3d(0.0, y, 0.0), OdGePoint3d(50.0, y, 0.0)).get());
    y += 10.0;
  }
  RenderOptions options;
  options.lineWidth = 1.5;
  RenderResult result;
  const std::vector<SvgElement> primitives = svgPrimitives(svg(options, &result));
  ASSERT_EQ(cases.size(), primitives.size());
  EXPECT_EQ(cases.size(), result.primitives);
  EXPECT_EQ(cases.size(), result.entitiesDrawn);
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(cases[i].name);
    EXPECT_EQ("path", primitives[i].tag);
    EXPECT_EQ(cases[i].stroke, primitives[i].attribute("stroke"));
    EXPECT_EQ("none", primitives[i].attribute("fill"));
    EXPECT_NEAR(cases[i].width, std::stod(primitives[i].attribute("stroke-width")), 1e-3);
  }
}

TEST_F(DrawingRendererTest, ThePlanOfTheVisibleEntitiesIsFittedIntoThePicture) {
  const OdDbObjectId offLayer =
      addLayer(OD_T("Off"), [](OdDbLayerTableRecord* layer) { layer->setIsOff(true); });
  const OdDbObjectId frozenLayer =
      addLayer(OD_T("Frozen"), [](OdDbLayerTableRecord* layer) { layer->setIsFrozen(true); });
  // A line rising out of the plan: the picture is fitted to its plan at two pixels per unit,
  // centred, with the margin.
  addLine(OdGePoint3d(0.0, 0.0, 25.0), OdGePoint3d(100.0, 50.0, -40.0));
  // Far away, so that fitting any of them would move the visible line.
  addLine(OdGePoint3d(1000.0, 1000.0, 0.0), OdGePoint3d(2000.0, 3000.0, 0.0))
      ->setVisibility(OdDb::kInvisible);
  addLine(OdGePoint3d(-1000.0, 0.0, 0.0), OdGePoint3d(-900.0, 0.0, 0.0))->setLayer(offLayer);
  addLine(OdGePoint3d(0.0, -800.0, 0.0), OdGePoint3d(0.0, -700.0, 0.0))->setLayer(frozenLayer);

  RenderResult result;
  const std::string document = svg(sizedOptions(220, 320, 10.0), &result);
  const std::vector<SvgElement> primitives = svgPrimitives(document);
  ASSERT_EQ(1u, primitives.size());
  EXPECT_EQ(1u, result.entitiesDrawn);
  expectNumbers({10.0, 210.0, 210.0, 110.0}, numbersIn(primitives[0].attribute("d")));
  EXPECT_EQ("220", svgElement(document, "svg").attribute("width"));
  EXPECT_EQ("320", svgElement(document, "svg").attribute("height"));
}

TEST_F(DrawingRendererTest, EmptyDrawingGivesABlankPictureOfTheRequestedSize) {
  addLine(OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(1.0, 1.0, 0.0))->setVisibility(OdDb::kInvisible);
  const RenderOptions options = sizedOptions(64, 48, 4.0);

  RenderResult result;
  const std::string document = svg(options, &result);
  EXPECT_TRUE(svgPrimitives(document).empty());
  EXPECT_FALSE(result.notes.empty());
  EXPECT_EQ(64, result.width);
  EXPECT_EQ(48, result.height);
  EXPECT_EQ("64", svgElement(document, "svg").attribute("width"));

  const std::string png = temporaryPath("blank.png");
  const RenderResult written = DrawingRenderer(options).renderPng(m_db.get(), png);
  ASSERT_TRUE(written.ok) << written.error;
  EXPECT_FALSE(written.notes.empty());
  PngPixels pixels;
  ASSERT_TRUE(readPngPixels(png, pixels));
  EXPECT_EQ(64, pixels.width);
  EXPECT_EQ(48, pixels.height);
  EXPECT_EQ(0xFFFFFFu, pixels.at(32, 24));
}

TEST_F(DrawingRendererTest, BackgroundDecidesTheForegroundInSvgAndPng) {
  // A red line across the middle, a blue one down the left edge, foreground and by-block lines
  // near the top.
  addLine(OdGePoint3d(0.0, 50.0, 0.0), OdGePoint3d(200.0, 50.0, 0.0))->setColorIndex(1);
  addLine(OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(0.0, 100.0, 0.0))->setColorIndex(5);
  addLine(OdGePoint3d(50.0, 80.0, 0.0), OdGePoint3d(150.0, 80.0, 0.0))->setColorIndex(7);
  addLine(OdGePoint3d(50.0, 70.0, 0.0), OdGePoint3d(150.0, 70.0, 0.0))->setColorIndex(0);
  struct Case {
    Background background;
    const char* foreground;
    std::uint32_t foregroundPixel, backgroundPixel;
  };
  for (const Case& item : {Case{Background::kWhite, "#000000", 0x000000u, 0xFFFFFFu},
                           Case{Background::kDark, "#ffffff", 0xFFFFFFu, 0x212830u}}) {
    SCOPED_TRACE(item.foreground);
    RenderOptions options = sizedOptions(220, 120, 10.0);
    options.lineWidth = 3.0;
    options.background = item.background;
    const std::string document = svg(options);
    const std::vector<SvgElement> primitives = svgPrimitives(document);
    ASSERT_EQ(4u, primitives.size());
    EXPECT_EQ("#ff0000", primitives[0].attribute("stroke"));
    EXPECT_EQ(item.foreground, primitives[2].attribute("stroke"));
    EXPECT_EQ(item.foreground, primitives[3].attribute("stroke"));
    const std::string background = svgElement(document, "rect").attribute("fill");
    EXPECT_NE(item.foreground, background);
    EXPECT_EQ(item.background == Background::kWhite, background == "#ffffff");

    const std::string png = temporaryPath("lines.png");
    const RenderResult result = DrawingRenderer(options).renderPng(m_db.get(), png);
    ASSERT_TRUE(result.ok) << result.error;
    EXPECT_EQ(4u, result.primitives);
    PngPixels pixels;
    ASSERT_TRUE(readPngPixels(png, pixels));
    EXPECT_EQ(220, pixels.width);
    EXPECT_EQ(120, pixels.height);
    // World (100, 50) is pixel (110, 60); (0, 20) is (10, 90); (100, 80) is (110, 30).
    EXPECT_EQ(0xFF0000u, pixels.at(110, 60));
    EXPECT_EQ(0x0000FFu, pixels.at(10, 90));
    EXPECT_EQ(item.foregroundPixel, pixels.at(110, 30));
    EXPECT_EQ(item.backgroundPixel, pixels.at(110, 90));
  }
}

TEST_F(DrawingRendererTest, FilesAreWrittenWhereTheyCanBeAndRefusedWithTheReason) {
  addLine(OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(10.0, 10.0, 0.0));
  const DrawingRenderer renderer;
  const std::string missing = "/nonexistent-folder-for-render-tests/picture";
  for (const RenderResult& result :
       {renderer.renderSvg(m_db.get(), missing), renderer.renderPng(m_db.get(), missing)}) {
    EXPECT_FALSE(result.ok);
    EXPECT_NE(std::string::npos, result.error.find("cannot write '" + missing + "': "))
        << result.error;
  }
  // A writable path holds what svgDocument returns; no drawing at all is refused.
  const std::string path = temporaryPath("drawing.svg");
  ASSERT_TRUE(renderer.renderSvg(m_db.get(), path).ok);
  std::string document;
  ASSERT_TRUE(renderer.svgDocument(m_db.get(), document).ok);
  std::ifstream in(path, std::ios::binary);
  EXPECT_EQ(document, std::string(std::istreambuf_iterator<char>(in), {}));
  const RenderResult none = renderer.svgDocument(static_cast<OdDbDatabase*>(nullptr), document);
  EXPECT_FALSE(none.ok);
  EXPECT_FALSE(none.error.empty());
  EXPECT_FALSE(
      renderer.renderPng(static_cast<OdDbDatabase*>(nullptr), temporaryPath("none.png")).ok);
}

TEST_F(DrawingRendererTest, BadOptionsAreRefusedBeforeAnythingIsWritten) {
  addLine(OdGePoint3d(0.0, 0.0, 0.0), OdGePoint3d(100.0, 100.0, 0.0));
  struct Case {
    const char* name;
    std::function<void(RenderOptions&)> spoil;
  };
  const std::vector<Case> cases = {
      {"zero width", [](RenderOptions& o) { o.width = 0; }},
      {"negative height", [](RenderOptions& o) { o.height = -5; }},
      {"side too large", [](RenderOptions& o) { o.width = 100000; }},
      {"area too large",
       [](RenderOptions& o) {
         o.width = 16000;
         o.height = 16000;
       }},
      {"negative margin", [](RenderOptions& o) { o.margin = -1.0; }},
      {"margin fills the picture", [](RenderOptions& o) { o.margin = 300.0; }},
      {"no line width", [](RenderOptions& o) { o.lineWidth = 0.0; }},
      {"scale not a number", [](RenderOptions& o) { o.pixelsPerUnit = std::nan(""); }},
      {"scale makes a huge picture", [](RenderOptions& o) { o.pixelsPerUnit = 1e6; }},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.name);
    RenderOptions options;
    item.spoil(options);
    const std::string path = temporaryPath("refused.png");
    const RenderResult result = DrawingRenderer(options).renderPng(m_db.get(), path);
    EXPECT_FALSE(result.ok);
    EXPECT_FALSE(result.error.empty());
    EXPECT_EQ(nullptr, std::fopen(path.c_str(), "rb"));
  }
}

} // namespace
} // namespace render_test
