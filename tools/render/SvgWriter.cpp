#include "SvgWriter.h"

#include "GlyphFitter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace custents {
namespace render {

namespace {

/// A number with at most three decimals and no trailing zeros. to_chars ignores the locale,
/// so a decimal comma never slips into the document.
std::string number(double value) {
  if (std::fabs(value) < 0.0005)
    return "0";
  char buffer[64];
  const std::to_chars_result result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 3);
  std::string text(buffer, result.ptr);
  const std::size_t point = text.find('.');
  if (point != std::string::npos) {
    std::size_t end = text.size();
    while (end > point + 1 && text[end - 1] == '0')
      --end;
    if (end == point + 1)
      --end;
    text.erase(end);
  }
  return text;
}

std::string hexColor(const Rgb& color) {
  char buffer[8];
  std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", color.red, color.green, color.blue);
  return buffer;
}

std::string escapeXml(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (char ch : text) {
    const unsigned char byte = static_cast<unsigned char>(ch);
    if (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r')
      continue;
    switch (ch) {
    case '&':
      out += "&amp;";
      break;
    case '<':
      out += "&lt;";
      break;
    case '>':
      out += "&gt;";
      break;
    case '"':
      out += "&quot;";
      break;
    default:
      out += ch;
    }
  }
  return out;
}

/// The paint attributes: filled shapes have no outline, stroked ones no fill.
std::string paint(const ScenePrimitive& primitive) {
  if (primitive.filled)
    return " fill=\"" + hexColor(primitive.color) + "\" fill-rule=\"evenodd\" stroke=\"none\"";
  return " fill=\"none\" stroke=\"" + hexColor(primitive.color) + "\" stroke-width=\"" +
         number(primitive.lineWidth) + "\"";
}

void writePath(const ScenePrimitive& primitive, std::string& out) {
  out += "<path d=\"";
  for (std::size_t i = 0; i < primitive.points.size(); ++i) {
    out += i == 0 ? "M " : " L ";
    out += number(primitive.points[i].x) + " " + number(primitive.points[i].y);
  }
  if (primitive.closed)
    out += " Z";
  out += "\"" + paint(primitive) + "/>\n";
}

void writePolygon(const ScenePrimitive& primitive, std::string& out) {
  out += "<polygon points=\"";
  for (std::size_t i = 0; i < primitive.points.size(); ++i) {
    if (i > 0)
      out += " ";
    out += number(primitive.points[i].x) + "," + number(primitive.points[i].y);
  }
  out += "\"" + paint(primitive) + "/>\n";
}

void writeCircle(const ScenePrimitive& primitive, std::string& out) {
  out += "<circle cx=\"" + number(primitive.points[0].x) + "\" cy=\"" +
         number(primitive.points[0].y) + "\" r=\"" + number(primitive.radius) + "\"" +
         paint(primitive) + "/>\n";
}

/// The text in the frame its box gives it: the font size makes the capitals as tall as the
/// box (for the chosen font), and textLength squeezes or stretches the line to the box's length,
/// so any viewer's glyphs cover the box the drawing's extents count. The transform turns,
/// stretches and slants it; its linear part is normalised so viewers that round small font
/// sizes see a natural one.
void writeText(const ScenePrimitive& primitive, double emPerCapHeight, std::string& out) {
  const PixelPoint& along = primitive.textAlong;
  const PixelPoint& up = primitive.textUp;
  const double m[4] = {emPerCapHeight * along.x, emPerCapHeight * along.y, -emPerCapHeight * up.x,
                       -emPerCapHeight * up.y};
  const double size = std::sqrt(std::fabs(m[0] * m[3] - m[1] * m[2]));
  if (!(size > 0.0) || !std::isfinite(size))
    return;
  const double length = primitive.textAdvance * size / emPerCapHeight;
  out += "<text x=\"0\" y=\"0\" font-size=\"" + number(size) + "\" textLength=\"" + number(length) +
         "\" lengthAdjust=\"spacingAndGlyphs\" transform=\"matrix(" + number(m[0] / size) + " " +
         number(m[1] / size) + " " + number(m[2] / size) + " " + number(m[3] / size) + " " +
         number(primitive.points[0].x) + " " + number(primitive.points[0].y) + ")\" fill=\"" +
         hexColor(primitive.color) + "\" xml:space=\"preserve\">" + escapeXml(primitive.text) +
         "</text>\n";
}

/// The chosen font first, then the CJK fallback the PNG painter uses, then the viewer's own.
std::string fontFamilies(const std::string& family) {
  std::string list = "'" + family + "'";
  if (family != kCjkFallbackFamily)
    list += ", '" + std::string(kCjkFallbackFamily) + "'";
  return list + ", sans-serif";
}

} // namespace

std::string writeSvg(const RenderScene& scene) {
  const std::string width = std::to_string(scene.width);
  const std::string height = std::to_string(scene.height);
  std::string out;
  out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
         "\" viewBox=\"0 0 " + width + " " + height + "\">\n";
  out += "<rect x=\"0\" y=\"0\" width=\"" + width + "\" height=\"" + height + "\" fill=\"" +
         hexColor(scene.background) + "\"/>\n";
  out += "<g stroke-linecap=\"round\" stroke-linejoin=\"round\" font-family=\"" +
         escapeXml(fontFamilies(scene.fontFamily)) + "\">\n";
  const bool hasText = std::any_of(
      scene.primitives.begin(), scene.primitives.end(),
      [](const ScenePrimitive& primitive) { return primitive.kind == ScenePrimitive::kText; });
  const double emPerCapHeight = hasText ? GlyphFitter(scene.fontFamily).emPerCapHeight() : 1.0;
  for (const ScenePrimitive& primitive : scene.primitives) {
    switch (primitive.kind) {
    case ScenePrimitive::kPath:
      writePath(primitive, out);
      break;
    case ScenePrimitive::kPolygon:
      writePolygon(primitive, out);
      break;
    case ScenePrimitive::kCircle:
      writeCircle(primitive, out);
      break;
    case ScenePrimitive::kText:
      writeText(primitive, emPerCapHeight, out);
      break;
    }
  }
  out += "</g>\n</svg>\n";
  return out;
}

} // namespace render
} // namespace custents
