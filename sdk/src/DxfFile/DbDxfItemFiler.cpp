#include "DbDxfItemFiler.h"
#include "DbHexDigits.h"

#include "DbDatabase.h"
#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeVector2d.h"
#include "Ge/GeVector3d.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

namespace {

constexpr OdInt64 kInt16Min = std::numeric_limits<OdInt16>::min();
constexpr OdInt64 kInt16Max = std::numeric_limits<OdInt16>::max();
constexpr OdInt64 kInt32Min = std::numeric_limits<OdInt32>::min();
constexpr OdInt64 kInt32Max = std::numeric_limits<OdInt32>::max();
constexpr OdInt64 kInt64Min = std::numeric_limits<OdInt64>::min();
constexpr OdInt64 kInt64Max = std::numeric_limits<OdInt64>::max();
constexpr int kMaxHandleDigits = 16;

bool isIntegerType(OdDbDxfItemFiler::ValueType type) {
  return type == OdDbDxfItemFiler::kInt16 || type == OdDbDxfItemFiler::kInt32 ||
         type == OdDbDxfItemFiler::kInt64 || type == OdDbDxfItemFiler::kBool;
}

/// The values an integer code's type can hold.
void integerRange(OdDbDxfItemFiler::ValueType type, OdInt64& min, OdInt64& max) {
  switch (type) {
  case OdDbDxfItemFiler::kBool:
    min = 0;
    max = 1;
    break;
  case OdDbDxfItemFiler::kInt16:
    min = kInt16Min;
    max = kInt16Max;
    break;
  case OdDbDxfItemFiler::kInt32:
    min = kInt32Min;
    max = kInt32Max;
    break;
  default:
    min = kInt64Min;
    max = kInt64Max;
    break;
  }
}

/// The value's text without surrounding blanks, as 8-bit characters. Numbers, handles and hex
/// are plain ASCII; anything else (a control character, a non-ASCII unit) makes it no number.
/// Short texts (every number) are copied to a buffer of its own, so reading costs no
/// allocation.
class NumericText {
public:
  bool set(const OdString& value) {
    const std::u16string& units = value.str();
    std::size_t first = 0;
    std::size_t last = units.size();
    while (first < last && (units[first] == u' ' || units[first] == u'\t'))
      ++first;
    while (last > first && (units[last - 1] == u' ' || units[last - 1] == u'\t'))
      --last;
    m_size = last - first;
    char* out = m_small;
    if (m_size > sizeof m_small) {
      m_large.resize(m_size);
      out = &m_large[0];
    }
    m_data = out;
    for (std::size_t i = first; i < last; ++i) {
      if (units[i] < 0x21 || units[i] > 0x7E)
        return false;
      *out++ = static_cast<char>(units[i]);
    }
    return true;
  }
  const char* begin() const { return m_data; }
  const char* end() const { return m_data + m_size; }
  std::size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  char operator[](std::size_t i) const { return m_data[i]; }

private:
  char m_small[64];
  std::string m_large;
  const char* m_data = m_small;
  std::size_t m_size = 0;
};

/// from_chars refuses a leading '+', which other writers may put before a number.
const char* skipPlus(const NumericText& text) {
  const char* begin = text.begin();
  if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
    ++begin;
  return begin;
}

bool parseInteger(const OdString& value, OdInt64& result) {
  NumericText text;
  if (!text.set(value) || text.empty())
    return false;
  const char* begin = skipPlus(text);
  const char* end = text.end();
  long long parsed = 0;
  const std::from_chars_result r = std::from_chars(begin, end, parsed);
  if (r.ec != std::errc() || r.ptr != end)
    return false;
  result = parsed;
  return true;
}

bool parseDouble(const OdString& value, double& result) {
  NumericText text;
  if (!text.set(value) || text.empty())
    return false;
  const char* begin = skipPlus(text);
  const char* end = text.end();
  double parsed = 0.0;
  const std::from_chars_result r = std::from_chars(begin, end, parsed, std::chars_format::general);
  // Overflow ("1e999") is refused like any other text that is no finite double; so are "inf"
  // and "nan", which no DXF reader would take.
  if (r.ec != std::errc() || r.ptr != end || !std::isfinite(parsed))
    return false;
  result = parsed;
  return true;
}

int hexDigit(char c) {
  return odDbHexDigit(static_cast<unsigned char>(c));
}

bool parseHandle(const OdString& value, OdDbHandle& result) {
  NumericText text;
  if (!text.set(value) || text.empty() || text.size() > kMaxHandleDigits)
    return false;
  OdUInt64 parsed = 0;
  for (char c : text) {
    const int digit = hexDigit(c);
    if (digit < 0)
      return false;
    parsed = (parsed << 4) | static_cast<OdUInt64>(digit);
  }
  result = OdDbHandle(parsed);
  return true;
}

const char kHexUpper[] = "0123456789ABCDEF";

/// The two upper-case hex digits of every byte.
struct HexPairs {
  char digits[256][2];
  HexPairs() {
    for (int i = 0; i < 256; ++i) {
      digits[i][0] = kHexUpper[i >> 4];
      digits[i][1] = kHexUpper[i & 0x0F];
    }
  }
};
const HexPairs kHexPairs;

/// The code lines of the group codes DXF defines (0 to 1071, with room to spare), right-aligned
/// in three columns as "%3d" prints them.
struct CodeLines {
  static constexpr int kCount = 1100;
  char text[kCount][8];
  unsigned char size[kCount];
  CodeLines() {
    for (int code = 0; code < kCount; ++code) {
      char digits[8];
      const std::to_chars_result r = std::to_chars(digits, digits + sizeof digits, code);
      std::size_t n = static_cast<std::size_t>(r.ptr - digits);
      std::size_t at = 0;
      for (; at + n < 3; ++at)
        text[code][at] = ' ';
      for (std::size_t i = 0; i < n; ++i)
        text[code][at++] = digits[i];
      text[code][at++] = '\n';
      size[code] = static_cast<unsigned char>(at);
    }
  }
};
const CodeLines kCodeLines;

/// Upper-case hex without leading zeros ("0" for zero), as handles are written; returns the
/// length (at most 16).
std::size_t formatHandle(OdUInt64 value, char* buffer) {
  char digits[16];
  std::size_t n = 0;
  do {
    digits[n++] = kHexUpper[value & 0x0F];
    value >>= 4;
  } while (value != 0);
  for (std::size_t i = 0; i < n; ++i)
    buffer[i] = digits[n - 1 - i];
  return n;
}

bool hasLineBreak(const OdString& value) {
  const std::u16string& units = value.str();
  return units.find(u'\n') != std::u16string::npos || units.find(u'\r') != std::u16string::npos;
}

} // namespace

namespace {

OdDbDxfItemFiler::ValueType computeValueType(int code);

/// The value type of every code up to 1071, looked up instead of walking the ranges: readers
/// ask for it once or twice for every value of a drawing.
struct ValueTypes {
  static constexpr int kCount = 1072;
  unsigned char type[kCount];
  ValueTypes() {
    for (int code = 0; code < kCount; ++code)
      type[code] = static_cast<unsigned char>(computeValueType(code));
  }
};

} // namespace

OdDbDxfItemFiler::ValueType OdDbDxfItemFiler::valueType(int code) {
  static const ValueTypes types;
  if (code >= 0 && code < ValueTypes::kCount)
    return static_cast<ValueType>(types.type[code]);
  return computeValueType(code);
}

namespace {

OdDbDxfItemFiler::ValueType computeValueType(int code) {
  typedef OdDbDxfItemFiler F;
  if (code == 5 || code == 105)
    return F::kHandle; // the object's own handle, and a dimension style's
  if (code >= 0 && code <= 9)
    return F::kString;
  if (code >= 10 && code <= 59)
    return F::kDouble;
  if (code >= 60 && code <= 79)
    return F::kInt16;
  if (code >= 90 && code <= 99)
    return F::kInt32;
  if (code >= 100 && code <= 102)
    return F::kString; // subclass marker, embedded object, control string
  if (code >= 110 && code <= 149)
    return F::kDouble;
  if (code >= 160 && code <= 169)
    return F::kInt64;
  if (code >= 170 && code <= 179)
    return F::kInt16;
  if (code >= 210 && code <= 239)
    return F::kDouble;
  if (code >= 270 && code <= 289)
    return F::kInt16;
  if (code >= 290 && code <= 299)
    return F::kBool;
  if (code >= 300 && code <= 309)
    return F::kString;
  if (code >= 310 && code <= 319)
    return F::kBinary;
  if (code >= 320 && code <= 369)
    return F::kHandle;
  if (code >= 370 && code <= 389)
    return F::kInt16;
  if (code >= 390 && code <= 399)
    return F::kHandle;
  if (code >= 400 && code <= 409)
    return F::kInt16;
  if (code >= 410 && code <= 419)
    return F::kString;
  if (code >= 420 && code <= 429)
    return F::kInt32;
  if (code >= 430 && code <= 439)
    return F::kString;
  if (code >= 440 && code <= 459)
    return F::kInt32;
  if (code >= 460 && code <= 469)
    return F::kDouble;
  if (code >= 470 && code <= 479)
    return F::kString;
  if (code == 480 || code == 481)
    return F::kHandle;
  if (code == 999)
    return F::kString; // comment
  // Extended data.
  if (code == 1004)
    return F::kBinary;
  if (code == 1005)
    return F::kHandle;
  if (code >= 1000 && code <= 1009)
    return F::kString;
  if (code >= 1010 && code <= 1059)
    return F::kDouble;
  if (code >= 1060 && code <= 1070)
    return F::kInt16;
  if (code == 1071)
    return F::kInt32;
  return F::kInvalidCode;
}

} // namespace

OdDbDxfItemFiler::OdDbDxfItemFiler() = default;

OdDbDxfItemFiler::~OdDbDxfItemFiler() = default;

void OdDbDxfItemFiler::openForWrite(OdDbDatabase* db, FilerType type) {
  m_items.clear();
  m_text = nullptr;
  m_database = db;
  m_filerType = type;
  m_status = eOk;
  m_reading = false;
  m_next = 0;
  m_current = kNoItem;
}

void OdDbDxfItemFiler::setTableOrders(const OdDbObjectIdArray& layers,
                                      const OdDbObjectIdArray& linetypes) {
  static std::atomic<OdUInt64> lastSerial{0};
  m_layerOrder = layers;
  m_linetypeOrder = linetypes;
  m_tableOrdersSerial = ++lastSerial;
}

void OdDbDxfItemFiler::openForText(std::string* out, OdDbDatabase* db, FilerType type) {
  openForWrite(db, type);
  m_text = out;
}

void OdDbDxfItemFiler::openForRead(const ItemArray& items, OdDbDatabase* db, FilerType type) {
  m_items = items;
  m_database = db;
  m_filerType = type;
  rewind();
}

void OdDbDxfItemFiler::openForRead(ItemArray&& items, OdDbDatabase* db, FilerType type) {
  m_items = std::move(items);
  m_database = db;
  m_filerType = type;
  rewind();
}

void OdDbDxfItemFiler::rewind() {
  m_text = nullptr;
  m_status = eOk;
  m_reading = true;
  m_next = 0;
  m_current = kNoItem;
}

void OdDbDxfItemFiler::setPrecision(int precision) {
  m_precision = std::clamp(precision, 1, static_cast<int>(kMaxPrec));
}

void OdDbDxfItemFiler::fail(OdResult status) {
  if (m_status == eOk)
    m_status = status;
}

// ---------------------------------------------------------------------------------------------
// Walking the items

int OdDbDxfItemFiler::nextItem() {
  if (!m_reading) {
    fail(eNotApplicable);
    return -1;
  }
  if (m_next >= m_items.size()) {
    m_current = kNoItem;
    fail(eEndOfFile);
    return -1;
  }
  m_current = m_next++;
  return m_items[m_current].code;
}

void OdDbDxfItemFiler::pushBackItem() {
  if (!m_reading || m_current == kNoItem)
    return;
  m_next = m_current;
  m_current = kNoItem;
}

bool OdDbDxfItemFiler::atEOF() {
  return !m_reading || m_next >= m_items.size();
}

bool OdDbDxfItemFiler::atSubclassData(const OdString& subClassName) {
  if (atEOF())
    return false;
  const Item& item = m_items[m_next];
  if (item.code != 100 || item.value != subClassName)
    return false;
  m_current = m_next++;
  return true;
}

bool OdDbDxfItemFiler::atEndOfObject() {
  return atEOF() || m_items[m_next].code == 0;
}

// ---------------------------------------------------------------------------------------------
// Reading values

const OdDbDxfItemFiler::Item* OdDbDxfItemFiler::current() {
  if (!m_reading || m_current == kNoItem) {
    fail(eNotApplicable);
    return nullptr;
  }
  return &m_items[m_current];
}

bool OdDbDxfItemFiler::readSigned(OdInt64 min, OdInt64 max, OdInt64& value) {
  const Item* item = current();
  if (!item)
    return false;
  OdInt64 parsed = item->integer;
  if (!isIntegerType(valueType(item->code)) ||
      (item->form != Item::kInteger && !parseInteger(item->value, parsed)) || parsed < min ||
      parsed > max) {
    fail(eInvalidDxfCode);
    return false;
  }
  value = parsed;
  return true;
}

OdString OdDbDxfItemFiler::rdString() {
  const Item* item = current();
  if (!item)
    return OdString();
  if (item->form != Item::kBytes)
    return item->value;
  std::u16string units(2 * static_cast<std::size_t>(item->bytes.size()), u'0');
  std::size_t at = 0;
  for (OdUInt8 byte : item->bytes) {
    units[at++] = static_cast<char16_t>(kHexPairs.digits[byte][0]);
    units[at++] = static_cast<char16_t>(kHexPairs.digits[byte][1]);
  }
  return OdString(std::move(units));
}

bool OdDbDxfItemFiler::rdBool() {
  OdInt64 value = 0;
  return readSigned(0, 1, value) && value != 0;
}

OdInt8 OdDbDxfItemFiler::rdInt8() {
  OdInt64 value = 0;
  if (!readSigned(std::numeric_limits<OdInt8>::min(), std::numeric_limits<OdInt8>::max(), value))
    return 0;
  return static_cast<OdInt8>(value);
}

OdInt16 OdDbDxfItemFiler::rdInt16() {
  OdInt64 value = 0;
  return readSigned(kInt16Min, kInt16Max, value) ? static_cast<OdInt16>(value) : OdInt16(0);
}

OdInt32 OdDbDxfItemFiler::rdInt32() {
  OdInt64 value = 0;
  return readSigned(kInt32Min, kInt32Max, value) ? static_cast<OdInt32>(value) : OdInt32(0);
}

OdInt64 OdDbDxfItemFiler::rdInt64() {
  OdInt64 value = 0;
  return readSigned(kInt64Min, kInt64Max, value) ? value : OdInt64(0);
}

double OdDbDxfItemFiler::rdDouble() {
  const Item* item = current();
  if (!item)
    return 0.0;
  double value = item->real;
  if (valueType(item->code) != kDouble ||
      (item->form != Item::kReal && !parseDouble(item->value, value))) {
    fail(eInvalidDxfCode);
    return 0.0;
  }
  return value;
}

bool OdDbDxfItemFiler::readCoordinates(int count, int optionalCount, double* coords) {
  const Item* item = current();
  if (!item)
    return false;
  const int code = item->code;
  std::size_t used = 0;
  for (int i = 0; i < count + optionalCount; ++i) {
    const std::size_t index = m_current + used;
    const bool present = index < m_items.size() && m_items[index].code == code + 10 * i;
    if (!present) {
      if (i < count) {
        fail(eInvalidDxfCode);
        return false;
      }
      coords[i] = 0.0;
      break;
    }
    const Item& coordinate = m_items[index];
    if (coordinate.form == Item::kReal && valueType(coordinate.code) == kDouble) {
      coords[i] = coordinate.real;
    } else if (valueType(coordinate.code) != kDouble || !parseDouble(coordinate.value, coords[i])) {
      fail(eInvalidDxfCode);
      return false;
    }
    ++used;
  }
  // Reading the same point twice reads the same items; the next nextItem() comes after them.
  m_next = std::max(m_next, m_current + used);
  return true;
}

void OdDbDxfItemFiler::rdPoint2d(OdGePoint2d& value) {
  double c[3] = {0.0, 0.0, 0.0};
  if (readCoordinates(2, 1, c))
    value.set(c[0], c[1]);
}

void OdDbDxfItemFiler::rdPoint3d(OdGePoint3d& value) {
  double c[3] = {0.0, 0.0, 0.0};
  if (readCoordinates(2, 1, c))
    value = OdGePoint3d(c[0], c[1], c[2]);
}

void OdDbDxfItemFiler::rdVector2d(OdGeVector2d& value) {
  double c[3] = {0.0, 0.0, 0.0};
  if (readCoordinates(2, 1, c))
    value = OdGeVector2d(c[0], c[1]);
}

void OdDbDxfItemFiler::rdVector3d(OdGeVector3d& value) {
  double c[3] = {0.0, 0.0, 0.0};
  if (readCoordinates(2, 1, c))
    value = OdGeVector3d(c[0], c[1], c[2]);
}

OdDbHandle OdDbDxfItemFiler::rdHandle() {
  const Item* item = current();
  if (!item)
    return OdDbHandle();
  OdDbHandle handle;
  if (valueType(item->code) != kHandle || !parseHandle(item->value, handle)) {
    fail(eInvalidDxfCode);
    return OdDbHandle();
  }
  return handle;
}

OdDbObjectId OdDbDxfItemFiler::rdObjectId() {
  const OdResult before = m_status;
  const OdDbHandle handle = rdHandle();
  if (m_status != before || handle.isNull() || !m_database)
    return OdDbObjectId();
  return m_database->getOdDbObjectId(handle, true);
}

void OdDbDxfItemFiler::rdBinaryChunk(OdUInt8Array& data) {
  const Item* item = current();
  if (!item)
    return;
  if (item->form == Item::kBytes && valueType(item->code) == kBinary) {
    data.append(item->bytes);
    return;
  }
  NumericText text;
  if (valueType(item->code) != kBinary || !text.set(item->value) || text.size() % 2 != 0) {
    fail(eInvalidDxfCode);
    return;
  }
  // Decoded in place past the end, and kept only when every digit is good, so a bad digit at
  // the end appends nothing.
  const OdUInt8Array::size_type before = data.size();
  const OdUInt8Array::size_type count = static_cast<OdUInt8Array::size_type>(text.size() / 2);
  data.resize(before + count);
  OdUInt8* bytes = data.asArrayPtr() + before;
  for (OdUInt8Array::size_type i = 0; i < count; ++i) {
    const int high = hexDigit(text[2 * i]);
    const int low = hexDigit(text[2 * i + 1]);
    if (high < 0 || low < 0) {
      data.resize(before);
      fail(eInvalidDxfCode);
      return;
    }
    bytes[i] = static_cast<OdUInt8>((high << 4) | low);
  }
}

// ---------------------------------------------------------------------------------------------
// Writing values

bool OdDbDxfItemFiler::canWrite() {
  if (m_reading) {
    fail(eNotApplicable);
    return false;
  }
  return true;
}

void OdDbDxfItemFiler::appendCode(int groupCode) {
  if (groupCode >= 0 && groupCode < CodeLines::kCount) {
    m_text->append(kCodeLines.text[groupCode], kCodeLines.size[groupCode]);
    return;
  }
  // Right-aligned in three columns, as "%3d" prints it.
  char buffer[16];
  const std::to_chars_result r = std::to_chars(buffer, buffer + sizeof buffer, groupCode);
  const std::size_t n = static_cast<std::size_t>(r.ptr - buffer);
  if (n < 3)
    m_text->append(3 - n, ' ');
  m_text->append(buffer, n);
  m_text->push_back('\n');
}

void OdDbDxfItemFiler::append(int groupCode, const OdString& value) {
  if (m_text) {
    appendCode(groupCode);
    // Plain ASCII (almost every string of a drawing) goes over unit by unit; anything else
    // through the UTF-8 encoder.
    const std::u16string& units = value.str();
    bool ascii = true;
    for (char16_t unit : units)
      if (unit >= 0x80) {
        ascii = false;
        break;
      }
    if (ascii) {
      const std::size_t at = m_text->size();
      m_text->resize(at + units.size());
      char* out = &(*m_text)[at];
      for (char16_t unit : units)
        *out++ = static_cast<char>(unit);
    } else {
      m_text->append(value.toUtf8());
    }
    m_text->push_back('\n');
    return;
  }
  Item item;
  item.code = groupCode;
  item.value = value;
  m_items.push_back(std::move(item));
}

void OdDbDxfItemFiler::appendAscii(int groupCode, const char* text, std::size_t size) {
  if (m_text) {
    // The usual line (a known code and a value no longer than a binary chunk) is put
    // together here and goes over in one append.
    char line[8 + 2 * kMaxBinaryChunkBytes + 1];
    if (groupCode >= 0 && groupCode < CodeLines::kCount && size <= 2 * kMaxBinaryChunkBytes) {
      const std::size_t codeSize = kCodeLines.size[groupCode];
      std::memcpy(line, kCodeLines.text[groupCode], codeSize);
      if (size != 0)
        std::memcpy(line + codeSize, text, size);
      line[codeSize + size] = '\n';
      m_text->append(line, codeSize + size + 1);
      return;
    }
    appendCode(groupCode);
    m_text->append(text, size);
    m_text->push_back('\n');
    return;
  }
  Item item;
  item.code = groupCode;
  item.value = OdString(std::u16string(text, text + size));
  m_items.push_back(std::move(item));
}

bool OdDbDxfItemFiler::writeInteger(int groupCode, OdInt64 value) {
  if (!canWrite())
    return false;
  const ValueType type = valueType(groupCode);
  OdInt64 min = 0;
  OdInt64 max = 0;
  integerRange(type, min, max);
  if (!isIntegerType(type) || value < min || value > max) {
    fail(eInvalidDxfCode);
    return false;
  }
  char buffer[24];
  const std::to_chars_result r = std::to_chars(buffer, buffer + sizeof buffer, value);
  appendAscii(groupCode, buffer, static_cast<std::size_t>(r.ptr - buffer));
  return true;
}

void OdDbDxfItemFiler::wrString(int groupCode, const OdString& value) {
  if (!canWrite())
    return;
  if (valueType(groupCode) != kString) {
    fail(eInvalidDxfCode);
    return;
  }
  if (hasLineBreak(value)) {
    fail(eInvalidInput);
    return;
  }
  append(groupCode, value);
}

void OdDbDxfItemFiler::wrBool(int groupCode, bool value) {
  writeInteger(groupCode, value ? 1 : 0);
}

void OdDbDxfItemFiler::wrInt8(int groupCode, OdInt8 value) {
  writeInteger(groupCode, value);
}

void OdDbDxfItemFiler::wrInt16(int groupCode, OdInt16 value) {
  writeInteger(groupCode, value);
}

void OdDbDxfItemFiler::wrInt32(int groupCode, OdInt32 value) {
  writeInteger(groupCode, value);
}

void OdDbDxfItemFiler::wrInt64(int groupCode, OdInt64 value) {
  writeInteger(groupCode, value);
}

std::size_t OdDbDxfItemFiler::formatDouble(double value, int precision, char* buffer) const {
  const int digits =
      precision == kDfltPrec ? m_precision : std::clamp(precision, 1, static_cast<int>(kMaxPrec));
  char* const limit = buffer + 29; // room for ".0" after the longest text
  // Full precision writes the shortest text that reads back exactly (up to 17 digits), so a
  // file round trip never changes a value; less rounds as printf's %.*g does.
  const std::to_chars_result r =
      digits >= kMaxPrec ? std::to_chars(buffer, limit, value)
                         : std::to_chars(buffer, limit, value, std::chars_format::general, digits);
  std::size_t n = static_cast<std::size_t>(r.ptr - buffer);
  // Whole numbers get ".0", as DXF files show them, so the text reads as a real in any reader.
  bool whole = true;
  for (std::size_t i = 0; i < n && whole; ++i)
    whole = buffer[i] == '-' || (buffer[i] >= '0' && buffer[i] <= '9');
  if (whole) {
    buffer[n++] = '.';
    buffer[n++] = '0';
  }
  return n;
}

bool OdDbDxfItemFiler::writeCoordinates(int groupCode, const double* coords, int count,
                                        int precision) {
  if (!canWrite())
    return false;
  for (int i = 0; i < count; ++i) {
    if (valueType(groupCode + 10 * i) != kDouble) {
      fail(eInvalidDxfCode);
      return false;
    }
  }
  for (int i = 0; i < count; ++i) {
    if (!std::isfinite(coords[i])) {
      fail(eInvalidInput);
      return false;
    }
  }
  char buffer[32];
  for (int i = 0; i < count; ++i)
    appendAscii(groupCode + 10 * i, buffer, formatDouble(coords[i], precision, buffer));
  return true;
}

void OdDbDxfItemFiler::wrDouble(int groupCode, double value, int precision) {
  writeCoordinates(groupCode, &value, 1, precision);
}

void OdDbDxfItemFiler::wrPoint2d(int groupCode, const OdGePoint2d& value, int precision) {
  const double c[2] = {value.x, value.y};
  writeCoordinates(groupCode, c, 2, precision);
}

void OdDbDxfItemFiler::wrPoint3d(int groupCode, const OdGePoint3d& value, int precision) {
  const double c[3] = {value.x, value.y, value.z};
  writeCoordinates(groupCode, c, 3, precision);
}

void OdDbDxfItemFiler::wrVector2d(int groupCode, const OdGeVector2d& value, int precision) {
  const double c[2] = {value.x, value.y};
  writeCoordinates(groupCode, c, 2, precision);
}

void OdDbDxfItemFiler::wrVector3d(int groupCode, const OdGeVector3d& value, int precision) {
  const double c[3] = {value.x, value.y, value.z};
  writeCoordinates(groupCode, c, 3, precision);
}

void OdDbDxfItemFiler::wrHandle(int groupCode, const OdDbHandle& value) {
  if (!canWrite())
    return;
  if (valueType(groupCode) != kHandle) {
    fail(eInvalidDxfCode);
    return;
  }
  char buffer[16];
  appendAscii(groupCode, buffer, formatHandle(static_cast<OdUInt64>(value), buffer));
}

void OdDbDxfItemFiler::wrObjectId(int groupCode, const OdDbObjectId& id) {
  wrHandle(groupCode, id.isNull() ? OdDbHandle() : id.getHandle());
}

void OdDbDxfItemFiler::wrSubclassMarker(const OdString& subClassName) {
  wrString(100, subClassName);
}

void OdDbDxfItemFiler::wrBinaryChunk(int groupCode, const OdUInt8* buffer, OdUInt32 numBytes) {
  if (!canWrite())
    return;
  if (valueType(groupCode) != kBinary) {
    fail(eInvalidDxfCode);
    return;
  }
  if (numBytes != 0 && !buffer) {
    fail(eInvalidInput);
    return;
  }
  char text[2 * kMaxBinaryChunkBytes];
  for (OdUInt32 offset = 0; offset < numBytes; offset += kMaxBinaryChunkBytes) {
    const OdUInt32 count = std::min(kMaxBinaryChunkBytes, numBytes - offset);
    for (OdUInt32 i = 0; i < count; ++i)
      std::memcpy(text + 2 * i, kHexPairs.digits[buffer[offset + i]], 2);
    appendAscii(groupCode, text, 2 * count);
  }
}
