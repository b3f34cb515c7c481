#ifndef OD_DB_HEX_DIGITS_H
#define OD_DB_HEX_DIGITS_H

// Hex digits of binary groups, handles and character codes: one table, built at compile time
// so the decoding loops look values up without a first-use check.

namespace oddb_hex {

struct DigitTable {
  signed char value[256];
};

constexpr DigitTable makeDigitTable() {
  DigitTable table{};
  for (signed char& v : table.value)
    v = -1;
  for (int i = 0; i < 10; ++i)
    table.value['0' + i] = static_cast<signed char>(i);
  for (int i = 0; i < 6; ++i) {
    table.value['A' + i] = static_cast<signed char>(10 + i);
    table.value['a' + i] = static_cast<signed char>(10 + i);
  }
  return table;
}

inline constexpr DigitTable kDigits = makeDigitTable();

} // namespace oddb_hex

/// The value of a hex digit in either letter case, -1 for any other character code.
constexpr int odDbHexDigit(unsigned code) {
  return code < 256 ? oddb_hex::kDigits.value[code] : -1;
}

#endif
