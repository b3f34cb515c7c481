#include "DbMTextFormat.h"
#include "DxfFile/DbHexDigits.h"

#include "GiTextMetrics.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string>

namespace {

constexpr OdChar kNoBreakSpace = 0x00A0;
constexpr OdChar kDiameter = 0x2300;
constexpr OdChar kDegree = 0x00B0;
constexpr OdChar kPlusMinus = 0x00B1;
constexpr std::size_t kNone = std::u16string::npos;

bool isLineBreak(OdChar c) {
  return c == '\n' || c == '\r';
}

bool isHighSurrogate(OdChar c) {
  return c >= 0xD800 && c <= 0xDBFF;
}

bool isLowSurrogate(OdChar c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

/// The ';' that closes a code's value starting at start; kNone when the value runs into a line
/// break, another code or the end, which makes the code malformed (no value holds a
/// backslash, so a forgotten ';' cannot swallow the codes after it).
std::size_t closingSemicolon(const std::u16string& s, std::size_t start) {
  for (std::size_t i = start; i < s.size(); ++i) {
    if (s[i] == ';')
      return i;
    if (isLineBreak(s[i]) || s[i] == '\\')
      return kNone;
  }
  return kNone;
}

/// The ASCII characters of a value; false for anything else (no number has them).
bool asciiOf(const std::u16string& value, std::string& out) {
  out.clear();
  for (OdChar c : value) {
    if (c == 0 || c > 0x7E)
      return false;
    out += static_cast<char>(c);
  }
  return true;
}

/// A finite decimal number written in full, in the classic locale whatever the process's is.
bool parseNumber(const std::u16string& value, double& result) {
  std::string text;
  if (!asciiOf(value, text) || text.empty() || text.size() > 64)
    return false;
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  double parsed = 0.0;
  in >> parsed;
  if (in.fail() || !in.eof() || !std::isfinite(parsed))
    return false;
  result = parsed;
  return true;
}

/// A non-negative decimal integer of at most nine digits.
bool parseCount(const std::u16string& value, std::uint32_t& result) {
  if (value.empty() || value.size() > 9)
    return false;
  std::uint32_t parsed = 0;
  for (OdChar c : value) {
    if (c < '0' || c > '9')
      return false;
    parsed = parsed * 10 + static_cast<std::uint32_t>(c - '0');
  }
  result = parsed;
  return true;
}

int hexValue(OdChar c) {
  return odDbHexDigit(c);
}

/// A \H or \W value: a positive number, absolute or, with a trailing 'x', a factor of the
/// current value.
bool scaledValue(const std::u16string& value, double current, double& result) {
  std::u16string number = value;
  const bool relative = !number.empty() && (number.back() == 'x' || number.back() == 'X');
  if (relative)
    number.pop_back();
  double parsed = 0.0;
  if (!parseNumber(number, parsed) || !(parsed > 0.0))
    return false;
  const double scaled = relative ? current * parsed : parsed;
  if (!std::isfinite(scaled) || !(scaled > 0.0))
    return false;
  result = scaled;
  return true;
}

std::u16string formatNumber(double value) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out.precision(15);
  out << value;
  const std::string text = out.str();
  return std::u16string(text.begin(), text.end());
}

struct Format {
  double height = 0.0;
  double widthFactor = 1.0;
  bool hasColor = false;
  OdCmEntityColor color;

  bool sameAs(const OdDbMTextFragment& fragment) const {
    return fragment.height == height && fragment.widthFactor == widthFactor &&
           fragment.hasColor == hasColor && (!hasColor || fragment.color == color);
  }
};

/// Reads contents once, from left to right, into paragraphs of fragments.
class Parser {
public:
  Parser(const OdString& contents, double textHeight) : m_s(contents.str()) {
    m_format.height = std::isfinite(textHeight) && textHeight > 0.0 ? textHeight : 0.0;
    startParagraph();
  }

  std::vector<OdDbMTextParagraph> run() {
    std::size_t i = 0;
    while (i < m_s.size()) {
      const OdChar c = m_s[i];
      if (c == '\\') {
        i = backslashCode(i);
      } else if (c == '{') {
        m_groups.push_back(m_format);
        ++i;
      } else if (c == '}') {
        if (m_groups.empty()) {
          append(c); // nothing to close: kept as typed
        } else {
          m_format = m_groups.back();
          m_groups.pop_back();
        }
        ++i;
      } else if (c == '%') {
        i = percentCode(i);
      } else if (c == '\r') {
        startParagraph();
        i += (i + 1 < m_s.size() && m_s[i + 1] == '\n') ? 2 : 1;
      } else if (c == '\n') {
        startParagraph();
        ++i;
      } else {
        append(c);
        ++i;
      }
    }
    return std::move(m_paragraphs);
  }

private:
  void startParagraph() {
    m_paragraphs.emplace_back();
    m_paragraphs.back().height = m_format.height;
  }

  void append(OdChar c) {
    std::vector<OdDbMTextFragment>& fragments = m_paragraphs.back().fragments;
    if (fragments.empty() || !m_format.sameAs(fragments.back())) {
      OdDbMTextFragment fragment;
      fragment.height = m_format.height;
      fragment.widthFactor = m_format.widthFactor;
      fragment.hasColor = m_format.hasColor;
      fragment.color = m_format.color;
      fragments.push_back(fragment);
    }
    fragments.back().text += c;
  }

  void append(const std::u16string& text) {
    for (OdChar c : text)
      append(c);
  }

  /// "%%c", "%%d", "%%p" and "%%%"; any other '%' is a plain character.
  std::size_t percentCode(std::size_t i) {
    if (i + 2 < m_s.size() && m_s[i + 1] == '%') {
      switch (m_s[i + 2]) {
      case 'c':
      case 'C':
        append(kDiameter);
        return i + 3;
      case 'd':
      case 'D':
        append(kDegree);
        return i + 3;
      case 'p':
      case 'P':
        append(kPlusMinus);
        return i + 3;
      case '%':
        append('%');
        return i + 3;
      default:
        break;
      }
    }
    append('%');
    return i + 1;
  }

  /// Handles the code that starts with the backslash at i; returns where reading goes on.
  std::size_t backslashCode(std::size_t i) {
    if (i + 1 >= m_s.size()) {
      append('\\'); // a dangling backslash is kept
      return i + 1;
    }
    const OdChar code = m_s[i + 1];
    switch (code) {
    case 'P':
      startParagraph();
      return i + 2;
    case '\\':
    case '{':
    case '}':
      append(code);
      return i + 2;
    case '~':
      append(kNoBreakSpace);
      return i + 2;
    case 'L':
    case 'l':
    case 'O':
    case 'o':
    case 'K':
    case 'k':
      return i + 2;
    case 'H':
    case 'W':
    case 'C':
    case 'c':
    case 'f':
    case 'F':
    case 'A':
    case 'Q':
    case 'T':
    case 'p':
      return valueCode(i, code);
    case 'S':
      return stack(i);
    case 'U':
      return unicodeCode(i);
    default:
      break;
    }
    // An unknown code: the backslash is kept and the next character read as usual.
    append('\\');
    return i + 1;
  }

  /// A code with a value closed by ';'. A missing ';' or a value that makes no sense keeps
  /// the backslash as a character, and what follows is read as usual.
  std::size_t valueCode(std::size_t i, OdChar code) {
    const std::size_t end = closingSemicolon(m_s, i + 2);
    if (end == kNone) {
      append('\\');
      return i + 1;
    }
    const std::u16string value = m_s.substr(i + 2, end - (i + 2));
    bool valid = true;
    switch (code) {
    case 'H':
      valid = scaledValue(value, m_format.height, m_format.height);
      break;
    case 'W':
      valid = scaledValue(value, m_format.widthFactor, m_format.widthFactor);
      break;
    case 'C': {
      std::uint32_t index = 0;
      valid = parseCount(value, index) && index <= 256;
      if (valid) {
        m_format.color.setColorIndex(static_cast<OdUInt16>(index));
        m_format.hasColor = true;
      }
      break;
    }
    case 'c': {
      std::uint32_t bgr = 0;
      valid = parseCount(value, bgr) && bgr <= 0xFFFFFF;
      if (valid) {
        // The drawing programs write the blue component in the high byte.
        m_format.color.setRGB(static_cast<OdUInt8>(bgr & 0xFF),
                              static_cast<OdUInt8>((bgr >> 8) & 0xFF),
                              static_cast<OdUInt8>((bgr >> 16) & 0xFF));
        m_format.hasColor = true;
      }
      break;
    }
    default:
      break; // font, alignment, oblique, tracking, paragraph settings: no effect on metrics
    }
    if (!valid) {
      append('\\');
      return i + 1;
    }
    return end + 1;
  }

  /// "\S<top><separator><bottom>;" in line as "top/bottom"; inside, a backslash takes the next
  /// character literally (so "\;" and "\^" can be part of a number), except "\P".
  std::size_t stack(std::size_t i) {
    std::u16string top;
    std::u16string bottom;
    bool separated = false;
    for (std::size_t j = i + 2; j < m_s.size(); ++j) {
      OdChar c = m_s[j];
      // A paragraph cannot break inside a stack: a stack that meets one is malformed.
      if (isLineBreak(c) || (c == '\\' && j + 1 < m_s.size() && m_s[j + 1] == 'P'))
        break;
      if (c == ';') {
        append(top);
        if (separated) {
          append('/');
          append(bottom);
        }
        return j + 1;
      }
      if (c == '\\' && j + 1 < m_s.size() && !isLineBreak(m_s[j + 1])) {
        c = m_s[++j];
      } else if (!separated && (c == '^' || c == '/' || c == '#')) {
        separated = true;
        continue;
      }
      (separated ? bottom : top) += c;
    }
    append('\\'); // no closing ';'
    return i + 1;
  }

  /// "\U+XXXX": the code point of four hexadecimal digits.
  std::size_t unicodeCode(std::size_t i) {
    if (i + 6 < m_s.size() && m_s[i + 2] == '+') {
      int value = 0;
      bool valid = true;
      for (std::size_t k = i + 3; k < i + 7; ++k) {
        const int digit = hexValue(m_s[k]);
        valid = valid && digit >= 0;
        value = value * 16 + std::max(digit, 0);
      }
      if (valid) {
        append(static_cast<OdChar>(value));
        return i + 7;
      }
    }
    append('\\');
    return i + 1;
  }

  const std::u16string& m_s;
  Format m_format;
  std::vector<Format> m_groups;
  std::vector<OdDbMTextParagraph> m_paragraphs;
};

// Layout -------------------------------------------------------------------------------------

/// One code point of a paragraph (one or two UTF-16 units) and the fragment it belongs to.
struct Cell {
  std::size_t fragment = 0;
  std::size_t first = 0; // first unit in the fragment's text
  int units = 1;
  bool space = false;
  bool fullWidth = false;
};

std::vector<Cell> cellsOf(const OdDbMTextParagraph& paragraph) {
  std::vector<Cell> cells;
  for (std::size_t f = 0; f < paragraph.fragments.size(); ++f) {
    const std::u16string& text = paragraph.fragments[f].text.str();
    for (std::size_t u = 0; u < text.size(); ++u) {
      Cell cell;
      cell.fragment = f;
      cell.first = u;
      OdUInt32 cp = text[u];
      if (isHighSurrogate(text[u]) && u + 1 < text.size() && isLowSurrogate(text[u + 1])) {
        cp = 0x10000 + ((cp - 0xD800) << 10) + (text[u + 1] - 0xDC00);
        cell.units = 2;
        ++u;
      }
      cell.space = cp == ' ';
      cell.fullWidth = odgiIsFullWidth(cp);
      cells.push_back(cell);
    }
  }
  return cells;
}

/// The line made of cells [begin, end): runs of one fragment each, measured and placed.
OdDbMTextLayoutLine lineOf(const OdDbMTextParagraph& paragraph, const std::vector<Cell>& cells,
                           std::size_t begin, std::size_t end) {
  OdDbMTextLayoutLine line;
  line.height = paragraph.height;
  bool sized = false;
  for (std::size_t i = begin; i < end;) {
    const OdDbMTextFragment& source = paragraph.fragments[cells[i].fragment];
    std::size_t j = i;
    while (j < end && cells[j].fragment == cells[i].fragment)
      ++j;
    const std::size_t lastUnit = cells[j - 1].first + static_cast<std::size_t>(cells[j - 1].units);
    OdDbMTextFragment fragment = source;
    fragment.text = OdString(source.text.str().substr(cells[i].first, lastUnit - cells[i].first));
    fragment.offset = line.width;
    fragment.width = odgiTextLineWidth(fragment.text, fragment.height, fragment.widthFactor);
    line.width += fragment.width;
    line.height = sized ? std::max(line.height, fragment.height) : fragment.height;
    sized = true;
    line.text += fragment.text;
    line.fragments.push_back(fragment);
    i = j;
  }
  return line;
}

/// The end of a wrapped line that stops at a break before `end`: its trailing spaces dropped.
std::size_t trimmedEnd(const std::vector<Cell>& cells, std::size_t begin, std::size_t end) {
  while (end > begin && cells[end - 1].space)
    --end;
  return end;
}

/// Greedy wrapping: each line takes as many break units as fit. Spaces at the end of a line do
/// not count towards the fit; at a wrap they are dropped.
void wrapParagraph(const OdDbMTextParagraph& paragraph, double wrapWidth,
                   std::vector<OdDbMTextLayoutLine>& lines) {
  const std::vector<Cell> cells = cellsOf(paragraph);
  if (!(wrapWidth > 0.0)) {
    lines.push_back(lineOf(paragraph, cells, 0, cells.size()));
    return;
  }
  // A line may begin after a space and before or after a full-width character.
  std::vector<std::size_t> breaks;
  for (std::size_t i = 1; i < cells.size(); ++i)
    if (!cells[i].space && (cells[i - 1].space || cells[i].fullWidth || cells[i - 1].fullWidth))
      breaks.push_back(i);
  breaks.push_back(cells.size());

  const auto fitsFrom = [&](std::size_t begin, std::size_t end) {
    const double width = lineOf(paragraph, cells, begin, trimmedEnd(cells, begin, end)).width;
    return width <= wrapWidth * (1.0 + 1e-12) + 1e-12;
  };
  std::size_t start = 0;
  std::size_t lastFit = 0; // the furthest break the current line can reach; start: none yet
  for (std::size_t end : breaks) {
    if (fitsFrom(start, end)) {
      // Leading spaces alone make no line.
      if (trimmedEnd(cells, start, end) > start)
        lastFit = end;
      continue;
    }
    if (lastFit > start) {
      lines.push_back(lineOf(paragraph, cells, start, trimmedEnd(cells, start, lastFit)));
      start = lastFit;
      if (fitsFrom(start, end)) {
        lastFit = end;
        continue;
      }
    }
    // What lies between start and end has no break inside and is wider than the width: it
    // gets a line of its own (the paragraph's last piece is emitted below).
    if (end < cells.size()) {
      lines.push_back(lineOf(paragraph, cells, start, trimmedEnd(cells, start, end)));
      start = end;
    }
    lastFit = start;
  }
  if (start < cells.size() || cells.empty())
    lines.push_back(lineOf(paragraph, cells, start, cells.size()));
}

} // namespace

std::vector<OdDbMTextParagraph> oddbParseMText(const OdString& contents, double textHeight) {
  return Parser(contents, textHeight).run();
}

OdString oddbMTextPlainText(const std::vector<OdDbMTextParagraph>& paragraphs) {
  std::u16string text;
  for (std::size_t p = 0; p < paragraphs.size(); ++p) {
    if (p > 0)
      text += u"\r\n";
    for (const OdDbMTextFragment& fragment : paragraphs[p].fragments)
      text += fragment.text.str();
  }
  return OdString(std::move(text));
}

OdString oddbScaleMTextHeights(const OdString& contents, double factor) {
  const std::u16string& s = contents.str();
  std::u16string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] != '\\' || i + 1 >= s.size()) {
      out += s[i];
      continue;
    }
    if (s[i + 1] == 'H') {
      const std::size_t end = closingSemicolon(s, i + 2);
      double height = 0.0;
      if (end != kNone) {
        const std::u16string value = s.substr(i + 2, end - (i + 2));
        const bool relative = !value.empty() && (value.back() == 'x' || value.back() == 'X');
        if (!relative && parseNumber(value, height) && height > 0.0 &&
            std::isfinite(height * factor) && height * factor > 0.0) {
          out += u"\\H";
          out += formatNumber(height * factor);
          out += u";";
          i = end;
          continue;
        }
      }
    }
    // Any other code (an escaped backslash included) is copied with the character after it.
    out += s[i];
    out += s[++i];
  }
  return OdString(std::move(out));
}

OdString oddbMTextContentsWithoutLineBreaks(const OdString& contents) {
  const std::u16string& s = contents.str();
  std::u16string out;
  out.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    const OdChar c = s[i];
    if (c == '\\') {
      if (i + 1 < s.size() && !isLineBreak(s[i + 1])) {
        out += c;
        out += s[++i];
      } else {
        out += u"\\\\"; // a lone backslash, written so that it cannot join the "\P" after it
      }
    } else if (isLineBreak(c)) {
      out += u"\\P";
      if (c == '\r' && i + 1 < s.size() && s[i + 1] == '\n')
        ++i;
    } else {
      out += c;
    }
  }
  return OdString(std::move(out));
}

OdDbMTextLayout oddbLayoutMText(const std::vector<OdDbMTextParagraph>& paragraphs, double wrapWidth,
                                double lineSpacingFactor, int attachment) {
  OdDbMTextLayout layout;
  const double wrap = std::isfinite(wrapWidth) ? wrapWidth : 0.0;
  for (const OdDbMTextParagraph& paragraph : paragraphs)
    wrapParagraph(paragraph, wrap, layout.lines);
  if (layout.lines.empty())
    return layout;
  const double spacing = std::isfinite(lineSpacingFactor) && lineSpacingFactor > 0.0
                             ? lineSpacingFactor * OdGiTextMetrics::kLineSpacing
                             : OdGiTextMetrics::kLineSpacing;
  if (attachment < 1 || attachment > 9)
    attachment = 1;
  const int row = (attachment - 1) / 3;    // 0 top, 1 middle, 2 bottom
  const int column = (attachment - 1) % 3; // 0 left, 1 centre, 2 right

  // Baselines measured down from the top of the block.
  double baseline = -OdGiTextMetrics::kCapHeight * layout.lines.front().height;
  for (std::size_t i = 0; i < layout.lines.size(); ++i) {
    OdDbMTextLayoutLine& line = layout.lines[i];
    if (i > 0)
      baseline -= spacing * std::max(line.height, layout.lines[i - 1].height);
    line.y = baseline;
    layout.width = std::max(layout.width, line.width);
  }
  layout.height = -baseline + OdGiTextMetrics::kDescent * layout.lines.back().height;

  const double shift = row == 0 ? 0.0 : (row == 1 ? layout.height / 2.0 : layout.height);
  const double along = column == 0 ? 0.0 : (column == 1 ? 0.5 : 1.0);
  for (OdDbMTextLayoutLine& line : layout.lines) {
    line.y += shift;
    line.x = -along * line.width;
  }
  layout.top = shift;
  layout.bottom = shift - layout.height;
  layout.left = -along * layout.width;
  layout.right = layout.left + layout.width;
  return layout;
}
