#include "GiTextMetrics.h"

#include "GiPlaneAxes.h"

#include <algorithm>
#include <cmath>

namespace {

OdGiTextLineWidthFunction& installedLineWidth() {
  static OdGiTextLineWidthFunction function;
  return function;
}

bool isHighSurrogate(OdChar c) {
  return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(OdChar c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

} // namespace

bool odgiIsFullWidth(OdUInt32 cp) {
  struct Range {
    OdUInt32 first;
    OdUInt32 last;
  };
  static const Range ranges[] = {
      {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0x33FF}, {0x3400, 0x4DBF},
      {0x4E00, 0x9FFF}, {0xA000, 0xA4CF}, {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},
      {0xFE30, 0xFE4F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x20000, 0x3FFFD},
  };
  for (const Range& r : ranges)
    if (cp >= r.first && cp <= r.last)
      return true;
  return false;
}

double odgiDefaultTextLineWidth(const OdString& text, double height, double widthFactor) {
  if (!std::isfinite(height) || !std::isfinite(widthFactor) || height < 0.0 || widthFactor < 0.0)
    return 0.0;
  double cells = 0.0;
  const int length = text.getLength();
  for (int i = 0; i < length; ++i) {
    OdUInt32 cp = text.getAt(i);
    if (isHighSurrogate(text.getAt(i)) && i + 1 < length && isLowSurrogate(text.getAt(i + 1))) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (text.getAt(i + 1) - 0xDC00);
      ++i;
    }
    if (cp < 0x20 || cp == 0x7F)
      continue;
    cells +=
        odgiIsFullWidth(cp) ? OdGiTextMetrics::kFullWidthAdvance : OdGiTextMetrics::kNarrowAdvance;
  }
  return cells * height * widthFactor;
}

double odgiTextLineWidth(const OdString& text, double height, double widthFactor) {
  const OdGiTextLineWidthFunction& installed = installedLineWidth();
  const double width = installed ? installed(text, height, widthFactor)
                                 : odgiDefaultTextLineWidth(text, height, widthFactor);
  return std::isfinite(width) && width > 0.0 ? width : 0.0;
}

void odgiSetTextLineWidthFunction(OdGiTextLineWidthFunction function) {
  installedLineWidth() = std::move(function);
}

std::vector<OdString> odgiSplitTextLines(const OdString& text) {
  std::vector<OdString> lines;
  std::u16string current;
  const int length = text.getLength();
  for (int i = 0; i < length; ++i) {
    const OdChar c = text.getAt(i);
    if (c == '\\' && i + 1 < length) {
      const OdChar next = text.getAt(i + 1);
      if (next == 'P') {
        lines.emplace_back(current);
        current.clear();
        ++i;
        continue;
      }
      if (next == '\\') {
        // An escaped backslash stays as written and cannot begin a "\P".
        current += c;
        current += next;
        ++i;
        continue;
      }
    }
    if (c == '\r' && i + 1 < length && text.getAt(i + 1) == '\n')
      continue; // the '\n' that follows makes the break
    if (c == '\n') {
      lines.emplace_back(current);
      current.clear();
      continue;
    }
    current += c;
  }
  lines.emplace_back(current);
  return lines;
}

OdGiTextBlockSize odgiTextBlockSize(const OdString& text, double height, double widthFactor) {
  OdGiTextBlockSize size;
  const std::vector<OdString> lines = odgiSplitTextLines(text);
  size.lineCount = static_cast<int>(lines.size());
  for (const OdString& line : lines)
    size.width = std::max(size.width, odgiTextLineWidth(line, height, widthFactor));
  if (std::isfinite(height) && height > 0.0)
    size.height =
        height * (OdGiTextMetrics::kCapHeight +
                  (size.lineCount - 1) * OdGiTextMetrics::kLineSpacing + OdGiTextMetrics::kDescent);
  return size;
}

bool odgiTextBox(const OdGePoint3d& position, const OdGeVector3d& normal,
                 const OdGeVector3d& direction, double height, double widthFactor, double oblique,
                 const OdString& text, OdGePoint3d corners[4]) {
  OdGeVector3d along;
  OdGeVector3d up;
  if (!odgi::planeAxes(normal, &direction, along, up))
    return false;
  const double slant = std::tan(oblique);
  if (!std::isfinite(position.x) || !std::isfinite(position.y) || !std::isfinite(position.z) ||
      !std::isfinite(height) || !std::isfinite(slant))
    return false;
  const double advance = odgiTextLineWidth(text, height, widthFactor);
  const double top = OdGiTextMetrics::kCapHeight * height;
  const OdGeVector3d baseline = along * advance;
  const OdGeVector3d rise = up * top + along * (top * slant);
  corners[0] = position;
  corners[1] = position + baseline;
  corners[2] = position + baseline + rise;
  corners[3] = position + rise;
  return true;
}
