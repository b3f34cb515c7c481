#include "TextTable.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace {

/// Decodes one UTF-8 sequence at `pos`; returns the code point and advances `pos`. A malformed
/// or truncated sequence yields U+FFFD and consumes one byte.
char32_t nextCodePoint(const std::string& text, std::size_t& pos) {
  const unsigned char lead = static_cast<unsigned char>(text[pos]);
  std::size_t length = 0;
  char32_t cp = 0;
  if (lead < 0x80) {
    ++pos;
    return lead;
  }
  if ((lead & 0xE0) == 0xC0) {
    length = 2;
    cp = lead & 0x1F;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3;
    cp = lead & 0x0F;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4;
    cp = lead & 0x07;
  } else {
    ++pos;
    return 0xFFFD;
  }
  if (pos + length > text.size()) {
    ++pos;
    return 0xFFFD;
  }
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = static_cast<unsigned char>(text[pos + i]);
    if ((next & 0xC0) != 0x80) {
      ++pos;
      return 0xFFFD;
    }
    cp = (cp << 6) | (next & 0x3F);
  }
  pos += length;
  return cp;
}

bool isCombining(char32_t cp) {
  return (cp >= 0x0300 && cp <= 0x036F) || (cp >= 0x1AB0 && cp <= 0x1AFF) ||
         (cp >= 0x1DC0 && cp <= 0x1DFF) || (cp >= 0x20D0 && cp <= 0x20FF) ||
         (cp >= 0xFE20 && cp <= 0xFE2F) || cp == 0x200B || cp == 0x200D;
}

bool isWide(char32_t cp) {
  return (cp >= 0x1100 && cp <= 0x115F) || (cp >= 0x2E80 && cp <= 0x303E) ||
         (cp >= 0x3041 && cp <= 0x33FF) || (cp >= 0x3400 && cp <= 0x4DBF) ||
         (cp >= 0x4E00 && cp <= 0x9FFF) || (cp >= 0xA000 && cp <= 0xA4CF) ||
         (cp >= 0xAC00 && cp <= 0xD7A3) || (cp >= 0xF900 && cp <= 0xFAFF) ||
         (cp >= 0xFE30 && cp <= 0xFE4F) || (cp >= 0xFF00 && cp <= 0xFF60) ||
         (cp >= 0xFFE0 && cp <= 0xFFE6) || (cp >= 0x1F300 && cp <= 0x1F64F) ||
         (cp >= 0x20000 && cp <= 0x3FFFD);
}

} // namespace

std::size_t displayWidth(const std::string& utf8) {
  std::size_t width = 0;
  for (std::size_t pos = 0; pos < utf8.size();) {
    const char32_t cp = nextCodePoint(utf8, pos);
    if (isCombining(cp))
      continue;
    width += isWide(cp) ? 2 : 1;
  }
  return width;
}

TextTable::TextTable(std::vector<std::string> header)
    : m_header(std::move(header)), m_align(m_header.size(), Align::Left) {}

void TextTable::setAlign(std::size_t column, Align align) {
  m_align.at(column) = align;
}

void TextTable::addRow(std::vector<std::string> row) {
  if (row.size() > m_header.size())
    throw std::invalid_argument("table row has more cells than the table has columns");
  row.resize(m_header.size());
  m_rows.push_back(std::move(row));
}

void TextTable::print(std::ostream& out) const {
  const std::size_t columns = m_header.size();
  std::vector<std::size_t> widths(columns, 0);
  for (std::size_t c = 0; c < columns; ++c) {
    widths[c] = displayWidth(m_header[c]);
    for (const auto& row : m_rows)
      widths[c] = std::max(widths[c], displayWidth(row[c]));
  }

  // Lines are built whole so that the blanks of empty trailing cells can be cut off.
  auto printRow = [&](const std::vector<std::string>& row) {
    std::string line;
    for (std::size_t c = 0; c < columns; ++c) {
      const std::string gap(widths[c] - displayWidth(row[c]), ' ');
      if (m_align[c] == Align::Right)
        line += gap;
      line += row[c];
      if (m_align[c] == Align::Left)
        line += gap;
      line += "  ";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  };

  printRow(m_header);
  std::size_t total = 0;
  for (std::size_t c = 0; c < columns; ++c)
    total += widths[c] + (c + 1 == columns ? 0 : 2);
  for (std::size_t i = 0; i < total; ++i)
    out << u8"\u2500";
  out << '\n';
  for (const auto& row : m_rows)
    printRow(row);
}
