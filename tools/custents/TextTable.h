#ifndef CUSTENTS_TEXT_TABLE_H
#define CUSTENTS_TEXT_TABLE_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

/// The number of terminal columns a UTF-8 string takes: East Asian wide and full-width
/// characters take two, combining marks none, everything else one. Malformed bytes count one
/// each, as a terminal shows them as one replacement character.
std::size_t displayWidth(const std::string& utf8);

/// A table printed with its columns aligned by display width, so that class names and Chinese
/// labels line up in a terminal. The header is underlined; the last column is not padded.
class TextTable {
public:
  enum class Align { Left, Right };

  explicit TextTable(std::vector<std::string> header);

  /// Numbers read better right-aligned.
  void setAlign(std::size_t column, Align align);
  /// Rows shorter than the header are padded with empty cells; longer rows are an error
  /// (std::invalid_argument), as their extra cells would have no column.
  void addRow(std::vector<std::string> row);
  std::size_t rowCount() const { return m_rows.size(); }

  void print(std::ostream& out) const;

private:
  std::vector<std::string> m_header;
  std::vector<Align> m_align;
  std::vector<std::vector<std::string>> m_rows;
};

#endif
