#include "OdString.h"

#include "OdError.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale.h>
#include <type_traits>
#include <vector>

const OdString OdString::kEmpty;

namespace {

const OdChar kReplacementChar = 0xFFFD;

bool isHighSurrogate(OdChar c) {
  return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(OdChar c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

/// The white space of the "C" locale. Trimming and number parsing share this set so that a
/// string trimmed by one is read the same way by the other.
bool isAsciiSpace(OdChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r';
}

OdChar asciiLower(OdChar c) {
  return (c >= u'A' && c <= u'Z') ? OdChar(c + (u'a' - u'A')) : c;
}

void appendCodePoint(std::u16string& out, char32_t cp) {
  if (cp < 0x10000) {
    out += static_cast<OdChar>(cp);
    return;
  }
  cp -= 0x10000;
  out += static_cast<OdChar>(0xD800 + (cp >> 10));
  out += static_cast<OdChar>(0xDC00 + (cp & 0x3FF));
}

/// Decodes UTF-8. Each maximal ill-formed subsequence becomes one U+FFFD (the substitution
/// that Unicode recommends), so a bad byte never swallows the good text after it. Overlong
/// forms, encoded surrogates and values above U+10FFFF are ill-formed: the second-byte ranges
/// below exclude them.
void decodeUtf8(std::u16string& out, const unsigned char* s, size_t n) {
  out.reserve(out.size() + n);
  size_t i = 0;
  while (i < n) {
    const unsigned char lead = s[i];
    if (lead < 0x80) {
      out += static_cast<OdChar>(lead);
      ++i;
      continue;
    }
    int trail = 0;
    char32_t cp = 0;
    unsigned char lo = 0x80;
    unsigned char hi = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
      trail = 1;
      cp = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      trail = 2;
      cp = lead & 0x0F;
      if (lead == 0xE0)
        lo = 0xA0; // below: overlong
      else if (lead == 0xED)
        hi = 0x9F; // above: UTF-16 surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      trail = 3;
      cp = lead & 0x07;
      if (lead == 0xF0)
        lo = 0x90; // below: overlong
      else if (lead == 0xF4)
        hi = 0x8F; // above: beyond U+10FFFF
    } else {
      out += kReplacementChar;
      ++i;
      continue;
    }
    size_t j = i + 1;
    int got = 0;
    while (got < trail && j < n && s[j] >= lo && s[j] <= hi) {
      cp = (cp << 6) | (s[j] & 0x3F);
      lo = 0x80;
      hi = 0xBF;
      ++j;
      ++got;
    }
    i = j;
    if (got < trail)
      out += kReplacementChar;
    else
      appendCodePoint(out, cp);
  }
}

void appendPadded(std::u16string& out, const std::u16string& field, int width, bool leftAlign) {
  const size_t pad =
      width > 0 && static_cast<size_t>(width) > field.size() ? width - field.size() : 0;
  if (!leftAlign)
    out.append(pad, u' ');
  out += field;
  if (leftAlign)
    out.append(pad, u' ');
}

void appendAscii(std::u16string& out, const char* text, size_t n) {
  for (size_t i = 0; i < n; ++i)
    out += static_cast<OdChar>(static_cast<unsigned char>(text[i]));
}

locale_t classicLocale() {
  static const locale_t loc = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return loc;
}

/// Runs the C library in the "C" locale for the current thread: the process locale (a host
/// may set one with a decimal comma) must not change how drawing values are written or read.
class ClassicLocaleScope {
public:
  ClassicLocaleScope() : m_previous(classicLocale() ? uselocale(classicLocale()) : nullptr) {}
  ~ClassicLocaleScope() {
    if (m_previous)
      uselocale(m_previous);
  }
  ClassicLocaleScope(const ClassicLocaleScope&) = delete;
  ClassicLocaleScope& operator=(const ClassicLocaleScope&) = delete;

private:
  locale_t m_previous;
};

/// Formats one value through the C library with a narrow conversion that holds only
/// ASCII, and widens the result.
template <class T> void appendNumber(std::u16string& out, const std::string& narrow, T value) {
  const ClassicLocaleScope classic;
  char small[128];
  const int n = std::snprintf(small, sizeof small, narrow.c_str(), value);
  if (n < 0)
    return;
  if (static_cast<size_t>(n) < sizeof small) {
    appendAscii(out, small, static_cast<size_t>(n));
    return;
  }
  std::vector<char> big(static_cast<size_t>(n) + 1);
  std::snprintf(big.data(), big.size(), narrow.c_str(), value);
  appendAscii(out, big.data(), static_cast<size_t>(n));
}

enum class Length { None, Char, Short, Long, LongLong, Size, IntMax, PtrDiff, LongDouble };

/// Reads a decimal field width or precision; a value too large for int saturates, so the
/// C library then refuses the conversion instead of us overflowing.
int readDecimal(const OdChar*& p) {
  long long v = 0;
  while (*p >= u'0' && *p <= u'9') {
    v = std::min<long long>(v * 10 + (*p - u'0'), INT_MAX);
    ++p;
  }
  return static_cast<int>(v);
}

bool isConversion(OdChar c) {
  switch (c) {
  case u'd':
  case u'i':
  case u'u':
  case u'x':
  case u'X':
  case u'o':
  case u'c':
  case u'e':
  case u'E':
  case u'f':
  case u'F':
  case u'g':
  case u'G':
  case u'a':
  case u'A':
  case u's':
  case u'%':
    return true;
  default:
    return false;
  }
}

} // namespace

OdString::OdString(const OdChar* source) {
  if (source)
    m_data.assign(source);
}

OdString::OdString(const OdChar* source, int length) {
  if (source && length > 0)
    m_data.assign(source, static_cast<size_t>(length));
}

OdString::OdString(OdChar ch, int repeatCount) {
  if (repeatCount > 0)
    m_data.assign(static_cast<size_t>(repeatCount), ch);
}

OdString::OdString(const char* utf8) {
  if (utf8)
    decodeUtf8(m_data, reinterpret_cast<const unsigned char*>(utf8), std::strlen(utf8));
}

OdString OdString::fromUtf8(const std::string& utf8) {
  OdString result;
  decodeUtf8(result.m_data, reinterpret_cast<const unsigned char*>(utf8.data()), utf8.size());
  return result;
}

std::string OdString::toUtf8() const {
  std::string out;
  const size_t n = m_data.size();
  // Plain ASCII (names, markers, numbers: almost every string) is one byte a unit, copied
  // without the encoder's per-unit branches.
  size_t ascii = 0;
  while (ascii < n && m_data[ascii] < 0x80)
    ++ascii;
  if (ascii == n) {
    out.resize(n);
    for (size_t i = 0; i < n; ++i)
      out[i] = static_cast<char>(m_data[i]);
    return out;
  }
  out.reserve(n);
  for (size_t i = 0; i < n; ++i) {
    char32_t cp = m_data[i];
    if (isHighSurrogate(m_data[i]) && i + 1 < n && isLowSurrogate(m_data[i + 1])) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (m_data[i + 1] - 0xDC00);
      ++i;
    } else if (isHighSurrogate(m_data[i]) || isLowSurrogate(m_data[i])) {
      cp = kReplacementChar;
    }
    if (cp < 0x80) {
      out += static_cast<char>(cp);
    } else if (cp < 0x800) {
      out += static_cast<char>(0xC0 | (cp >> 6));
      out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
      out += static_cast<char>(0xE0 | (cp >> 12));
      out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (cp >> 18));
      out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (cp & 0x3F));
    }
  }
  return out;
}

OdChar OdString::getAt(int index) const {
  if (index < 0 || index >= getLength())
    throw OdError_InvalidIndex();
  return m_data[static_cast<size_t>(index)];
}

void OdString::setAt(int index, OdChar ch) {
  if (index < 0 || index >= getLength())
    throw OdError_InvalidIndex();
  m_data[static_cast<size_t>(index)] = ch;
}

OdString& OdString::format(const OdChar* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  formatV(fmt, args);
  va_end(args);
  return *this;
}

// All va_arg calls stay in this one function: a va_list handed on to helpers could not be
// used again here afterwards. The result is built aside and assigned at the end, so the
// format or an argument may point into this string.
OdString& OdString::formatV(const OdChar* fmt, va_list args) {
  std::u16string out;
  const OdChar* p = fmt ? fmt : u"";
  while (*p) {
    if (*p != u'%') {
      out += *p++;
      continue;
    }
    const OdChar* start = p++;
    bool leftAlign = false;
    std::string flags;
    for (;; ++p) {
      if (*p == u'-')
        leftAlign = true;
      else if (*p != u'+' && *p != u' ' && *p != u'#' && *p != u'0')
        break;
      flags += static_cast<char>(*p);
    }
    int width = -1;
    if (*p == u'*') {
      ++p;
      width = va_arg(args, int);
      if (width < 0) {
        // A negative width from '*' means left alignment, as in C.
        leftAlign = true;
        flags += '-';
        width = width == INT_MIN ? INT_MAX : -width;
      }
    } else if (*p >= u'0' && *p <= u'9') {
      width = readDecimal(p);
    }
    int precision = -1;
    if (*p == u'.') {
      ++p;
      if (*p == u'*') {
        ++p;
        precision = va_arg(args, int); // negative: as if no precision was given
        if (precision < 0)
          precision = -1;
      } else {
        precision = readDecimal(p);
      }
    }
    Length length = Length::None;
    if (*p == u'h') {
      ++p;
      length = Length::Short;
      if (*p == u'h') {
        ++p;
        length = Length::Char;
      }
    } else if (*p == u'l') {
      ++p;
      length = Length::Long;
      if (*p == u'l') {
        ++p;
        length = Length::LongLong;
      }
    } else if (*p == u'z') {
      ++p;
      length = Length::Size;
    } else if (*p == u'j') {
      ++p;
      length = Length::IntMax;
    } else if (*p == u't') {
      ++p;
      length = Length::PtrDiff;
    } else if (*p == u'L') {
      ++p;
      length = Length::LongDouble;
    }

    const OdChar conv = *p;
    if (!isConversion(conv)) {
      // Not a conversion this formatter knows (or the format ends inside one): the text is
      // kept as written and no argument is taken for it, except those already taken by '*'.
      if (conv)
        ++p;
      out.append(start, p);
      continue;
    }
    ++p;

    std::string narrow = "%" + flags;
    if (width >= 0)
      narrow += std::to_string(width);
    if (precision >= 0)
      narrow += "." + std::to_string(precision);

    switch (conv) {
    case u'%':
      out += u'%';
      break;
    case u'd':
    case u'i': {
      long long v = 0;
      switch (length) {
      case Length::Char:
        v = static_cast<signed char>(va_arg(args, int));
        break;
      case Length::Short:
        v = static_cast<short>(va_arg(args, int));
        break;
      case Length::Long:
        v = va_arg(args, long);
        break;
      case Length::LongLong:
      case Length::LongDouble:
        v = va_arg(args, long long);
        break;
      case Length::Size:
        v = va_arg(args, std::make_signed<std::size_t>::type);
        break;
      case Length::IntMax:
        v = va_arg(args, std::intmax_t);
        break;
      case Length::PtrDiff:
        v = va_arg(args, std::ptrdiff_t);
        break;
      case Length::None:
        v = va_arg(args, int);
        break;
      }
      appendNumber(out, narrow + "ll" + static_cast<char>(conv), v);
      break;
    }
    case u'u':
    case u'x':
    case u'X':
    case u'o': {
      unsigned long long v = 0;
      switch (length) {
      case Length::Char:
        v = static_cast<unsigned char>(va_arg(args, unsigned int));
        break;
      case Length::Short:
        v = static_cast<unsigned short>(va_arg(args, unsigned int));
        break;
      case Length::Long:
        v = va_arg(args, unsigned long);
        break;
      case Length::LongLong:
      case Length::LongDouble:
        v = va_arg(args, unsigned long long);
        break;
      case Length::Size:
        v = va_arg(args, std::size_t);
        break;
      case Length::IntMax:
        v = va_arg(args, std::uintmax_t);
        break;
      case Length::PtrDiff:
        v = va_arg(args, std::make_unsigned<std::ptrdiff_t>::type);
        break;
      case Length::None:
        v = va_arg(args, unsigned int);
        break;
      }
      appendNumber(out, narrow + "ll" + static_cast<char>(conv), v);
      break;
    }
    case u'e':
    case u'E':
    case u'f':
    case u'F':
    case u'g':
    case u'G':
    case u'a':
    case u'A':
      if (length == Length::LongDouble)
        appendNumber(out, narrow + "L" + static_cast<char>(conv), va_arg(args, long double));
      else
        appendNumber(out, narrow + static_cast<char>(conv), va_arg(args, double));
      break;
    case u'c': {
      // An OdChar travels through "..." promoted to int.
      const std::u16string field(1, static_cast<OdChar>(va_arg(args, int)));
      appendPadded(out, field, width, leftAlign);
      break;
    }
    case u's': {
      std::u16string field;
      if (length == Length::Short || length == Length::Char) {
        const char* utf8 = va_arg(args, const char*);
        if (utf8)
          decodeUtf8(field, reinterpret_cast<const unsigned char*>(utf8), std::strlen(utf8));
        else
          field = u"(null)";
      } else {
        const OdChar* text = va_arg(args, const OdChar*);
        field = text ? text : u"(null)";
      }
      // The precision counts UTF-16 code units; a cut never leaves half a surrogate pair.
      if (precision >= 0 && static_cast<size_t>(precision) < field.size()) {
        size_t keep = static_cast<size_t>(precision);
        if (keep > 0 && isHighSurrogate(field[keep - 1]) && isLowSurrogate(field[keep]))
          --keep;
        field.resize(keep);
      }
      appendPadded(out, field, width, leftAlign);
      break;
    }
    default:
      break;
    }
  }
  m_data = std::move(out);
  return *this;
}

OdString& OdString::operator=(const OdChar* source) {
  // Built aside first: source may point into this string.
  m_data = source ? std::u16string(source) : std::u16string();
  return *this;
}

OdString& OdString::operator+=(const OdString& other) {
  m_data += other.m_data;
  return *this;
}

OdString& OdString::operator+=(const OdChar* other) {
  if (other)
    m_data += std::u16string(other);
  return *this;
}

OdString& OdString::operator+=(OdChar ch) {
  m_data += ch;
  return *this;
}

int OdString::compare(const OdChar* other) const {
  const OdChar* a = m_data.c_str();
  const OdChar* b = other ? other : u"";
  for (;; ++a, ++b) {
    if (*a != *b)
      return *a < *b ? -1 : 1;
    if (*a == 0)
      return 0;
  }
}

int OdString::iCompare(const OdChar* other) const {
  const OdChar* a = m_data.c_str();
  const OdChar* b = other ? other : u"";
  for (;; ++a, ++b) {
    const OdChar ca = asciiLower(*a);
    const OdChar cb = asciiLower(*b);
    if (ca != cb)
      return ca < cb ? -1 : 1;
    if (ca == 0)
      return 0;
  }
}

OdString& OdString::makeLower() {
  std::transform(m_data.begin(), m_data.end(), m_data.begin(), asciiLower);
  return *this;
}

OdString OdString::left(int count) const {
  if (count <= 0)
    return OdString();
  return OdString(m_data.substr(0, static_cast<size_t>(count)));
}

OdString OdString::right(int count) const {
  if (count <= 0)
    return OdString();
  const size_t n = std::min(static_cast<size_t>(count), m_data.size());
  return OdString(m_data.substr(m_data.size() - n));
}

OdString OdString::mid(int start, int count) const {
  const size_t from = start < 0 ? 0 : static_cast<size_t>(start);
  if (from >= m_data.size())
    return OdString();
  if (count < 0)
    return OdString(m_data.substr(from));
  return OdString(m_data.substr(from, static_cast<size_t>(count)));
}

int OdString::find(OdChar ch, int start) const {
  const size_t from = start < 0 ? 0 : static_cast<size_t>(start);
  const size_t at = m_data.find(ch, from);
  return at == std::u16string::npos ? -1 : static_cast<int>(at);
}

// A null or empty pattern finds nothing: there is no character to point at.
int OdString::find(const OdChar* sub, int start) const {
  if (!sub || !*sub)
    return -1;
  const size_t from = start < 0 ? 0 : static_cast<size_t>(start);
  const size_t at = m_data.find(sub, from);
  return at == std::u16string::npos ? -1 : static_cast<int>(at);
}

int OdString::reverseFind(OdChar ch) const {
  const size_t at = m_data.rfind(ch);
  return at == std::u16string::npos ? -1 : static_cast<int>(at);
}

int OdString::replace(OdChar oldChar, OdChar newChar) {
  int count = 0;
  for (OdChar& c : m_data) {
    if (c == oldChar) {
      c = newChar;
      ++count;
    }
  }
  return count;
}

// Left to right, without overlaps; a null or empty oldText replaces nothing, a null newText
// removes the matches.
int OdString::replace(const OdChar* oldText, const OdChar* newText) {
  if (!oldText || !*oldText)
    return 0;
  const std::u16string from(oldText);
  const std::u16string to(newText ? newText : u"");
  std::u16string out;
  int count = 0;
  size_t pos = 0;
  for (;;) {
    const size_t at = m_data.find(from, pos);
    if (at == std::u16string::npos)
      break;
    out.append(m_data, pos, at - pos);
    out += to;
    pos = at + from.size();
    ++count;
  }
  if (count == 0)
    return 0;
  out.append(m_data, pos, std::u16string::npos);
  m_data = std::move(out);
  return count;
}

OdString& OdString::trimLeft() {
  size_t i = 0;
  while (i < m_data.size() && isAsciiSpace(m_data[i]))
    ++i;
  m_data.erase(0, i);
  return *this;
}

OdString& OdString::trimRight() {
  size_t n = m_data.size();
  while (n > 0 && isAsciiSpace(m_data[n - 1]))
    --n;
  m_data.resize(n);
  return *this;
}

OdString operator+(const OdString& a, const OdString& b) {
  return OdString(a.m_data + b.m_data);
}

OdString operator+(const OdString& a, const OdChar* b) {
  OdString result(a);
  result += b;
  return result;
}

OdString operator+(const OdChar* a, const OdString& b) {
  OdString result(a);
  result += b;
  return result;
}

// Only the ASCII prefix can belong to a number, so it is narrowed and handed to strtod in the
// "C" locale.
double odStrToD(const OdString& text, int* end) {
  const std::u16string& s = text.str();
  size_t first = 0;
  while (first < s.size() && isAsciiSpace(s[first]))
    ++first;
  std::string ascii;
  for (size_t i = first; i < s.size() && s[i] != 0 && s[i] < 0x80; ++i)
    ascii += static_cast<char>(s[i]);

  char* stop = nullptr;
  double value = 0.0;
  {
    const ClassicLocaleScope classic;
    value = std::strtod(ascii.c_str(), &stop);
  }
  const size_t used = static_cast<size_t>(stop - ascii.c_str());
  if (used == 0) {
    if (end)
      *end = 0;
    return 0.0;
  }
  if (end)
    *end = static_cast<int>(first + used);
  return value;
}
