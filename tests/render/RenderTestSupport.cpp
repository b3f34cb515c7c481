#include "RenderTestSupport.h"

#include "RxDictionary.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <regex>

namespace render_test {

ODRX_DEFINE_PSEUDO_CONSTRUCTOR(ScriptedEntity)
ODRX_DEFINE_MEMBERS2(ScriptedEntity, OdDbEntity, &ScriptedEntity::pseudoConstructor, 0, 0, 0,
                     OD_T("SCRIPTEDENTITY"), OdString::kEmpty)

bool ScriptedEntity::subWorldDraw(OdGiWorldDraw* worldDraw) const {
  if (!worldScript)
    return false;
  worldScript(worldDraw);
  return true;
}

void ScriptedEntity::subViewportDraw(OdGiViewportDraw* viewportDraw) const {
  if (viewportScript)
    viewportScript(viewportDraw);
}

std::string SvgElement::attribute(const std::string& name) const {
  auto found = attributes.find(name);
  return found == attributes.end() ? std::string() : found->second;
}

namespace {

std::vector<SvgElement> elements(const std::string& svg, const std::string& tagPattern) {
  // Empty elements, elements holding only text (the renderer's text), and opening tags of
  // elements holding others (svg, g).
  const std::regex element("<(" + tagPattern + ")\\b([^>]*?)(/>|>([^<]*)</\\1>|>)");
  const std::regex attribute("([A-Za-z_:][-A-Za-z0-9_:.]*)=\"([^\"]*)\"");
  std::vector<SvgElement> found;
  for (auto it = std::sregex_iterator(svg.begin(), svg.end(), element);
       it != std::sregex_iterator(); ++it) {
    SvgElement item;
    item.tag = (*it)[1];
    item.text = (*it)[4];
    const std::string attributes = (*it)[2];
    for (auto at = std::sregex_iterator(attributes.begin(), attributes.end(), attribute);
         at != std::sregex_iterator(); ++at)
      item.attributes[(*at)[1]] = (*at)[2];
    found.push_back(item);
  }
  return found;
}

} // namespace

std::vector<SvgElement> svgPrimitives(const std::string& svg) {
  return elements(svg, "path|polygon|circle|text");
}

SvgElement svgElement(const std::string& svg, const std::string& tag) {
  std::vector<SvgElement> found = elements(svg, tag);
  return found.empty() ? SvgElement() : found.front();
}

std::vector<double> numbersIn(const std::string& text) {
  const std::regex number("-?[0-9]+(\\.[0-9]+)?");
  std::vector<double> numbers;
  for (auto it = std::sregex_iterator(text.begin(), text.end(), number);
       it != std::sregex_iterator(); ++it)
    numbers.push_back(std::stod(it->str()));
  return numbers;
}

void expectNumbers(const std::vector<double>& expected, const std::vector<double>& actual,
                   double tolerance) {
  ASSERT_EQ(expected.size(), actual.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_NEAR(expected[i], actual[i], tolerance) << "number " << i;
}

std::uint32_t PngPixels::at(int x, int y) const {
  if (x < 0 || y < 0 || x >= width || y >= height)
    return 0xFFFFFFFFu;
  return rgb[static_cast<std::size_t>(y) * width + x];
}

bool readPngPixels(const std::string& path, PngPixels& pixels) {
  cairo_surface_t* surface = cairo_image_surface_create_from_png(path.c_str());
  const bool ok = cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS;
  if (ok) {
    cairo_surface_flush(surface);
    pixels.width = cairo_image_surface_get_width(surface);
    pixels.height = cairo_image_surface_get_height(surface);
    pixels.rgb.assign(static_cast<std::size_t>(pixels.width) * pixels.height, 0);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    for (int y = 0; y < pixels.height; ++y)
      for (int x = 0; x < pixels.width; ++x) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, data + y * stride + 4 * x, 4);
        // ARGB32 in native byte order; the pictures are opaque, so there is no premultiplied
        // alpha to undo.
        pixels.rgb[static_cast<std::size_t>(y) * pixels.width + x] = pixel & 0xFFFFFFu;
      }
  }
  cairo_surface_destroy(surface);
  return ok;
}

std::string temporaryPath(const std::string& name) {
  const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string folder = ::testing::TempDir();
  if (!folder.empty() && folder.back() != '/')
    folder += '/';
  const std::string path =
      folder + "render_" + (test ? std::string(test->name()) + "_" : "") + name;
  std::remove(path.c_str());
  return path;
}

namespace {

class RenderEnvironment : public ::testing::Environment {
public:
  void SetUp() override {
    odInitialize();
    ScriptedEntity::rxInit();
  }
  void TearDown() override {
    ScriptedEntity::rxUninit();
    odUninitialize();
  }
};

::testing::Environment* const g_renderEnvironment =
    ::testing::AddGlobalTestEnvironment(new RenderEnvironment);

} // namespace

} // namespace render_test
