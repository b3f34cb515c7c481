#ifndef CUSTENTS_TESTS_RENDER_RENDER_TEST_SUPPORT_H
#define CUSTENTS_TESTS_RENDER_RENDER_TEST_SUPPORT_H

// What the renderer's tests share: an entity whose drawing each test scripts, a reader of the
// SVG elements the renderer writes, and readers of the PNG it writes.

#include "DbEntity.h"
#include "Gi/GiWorldDraw.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace render_test {

/// An entity that draws whatever the test gives it, so that every primitive and trait can be
/// put through the renderer. Without a world script it draws nothing and asks for viewport
/// drawing (worldDraw returns false).
class ScriptedEntity : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(ScriptedEntity);

public:
  std::function<void(OdGiWorldDraw*)> worldScript;
  std::function<void(OdGiViewportDraw*)> viewportScript;

protected:
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  void subViewportDraw(OdGiViewportDraw* viewportDraw) const override;
};
typedef OdSmartPtr<ScriptedEntity> ScriptedEntityPtr;

/// One element of an SVG document: its tag, its attributes and the text it holds.
struct SvgElement {
  std::string tag;
  std::map<std::string, std::string> attributes;
  std::string text;

  std::string attribute(const std::string& name) const;
};

/// The drawing elements (path, polygon, circle, text) in document order.
std::vector<SvgElement> svgPrimitives(const std::string& svg);
/// The first element with this tag; an element with an empty tag when there is none.
SvgElement svgElement(const std::string& svg, const std::string& tag);
/// The numbers of a path's d or a polygon's points attribute, in order.
std::vector<double> numbersIn(const std::string& text);

void expectNumbers(const std::vector<double>& expected, const std::vector<double>& actual,
                   double tolerance = 1e-3);

/// A PNG file's pixels as 0xRRGGBB, read back through cairo.
struct PngPixels {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> rgb;

  /// 0xFFFFFFFF outside the picture, which no opaque pixel reads as.
  std::uint32_t at(int x, int y) const;
};
/// False when the file cannot be read as a PNG.
bool readPngPixels(const std::string& path, PngPixels& pixels);

std::string temporaryPath(const std::string& name);

} // namespace render_test

#endif
