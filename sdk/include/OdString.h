#ifndef OD_STRING_H
#define OD_STRING_H

/// A platform string: a sequence of UTF-16 code units. DWG strings and the Chinese labels of
/// the property grid are UTF-16; conversion to and from UTF-8 happens only at the edges
/// (files, terminal) through fromUtf8/toUtf8 or the const char* constructor.

#include "OdaCommon.h"

#include <cstdarg>
#include <functional>
#include <string>

class OdString {
public:
  static const OdString kEmpty;

  OdString() = default;
  OdString(const OdString&) = default;
  OdString(OdString&&) noexcept = default;
  OdString& operator=(const OdString&) = default;
  OdString& operator=(OdString&&) noexcept = default;

  /// A null pointer gives the empty string.
  OdString(const OdChar* source);
  OdString(const OdChar* source, int length);
  OdString(OdChar ch, int repeatCount);
  OdString(const std::u16string& source) : m_data(source) {}
  OdString(std::u16string&& source) : m_data(std::move(source)) {}
  /// Decodes UTF-8. A malformed sequence becomes U+FFFD; a null pointer gives the empty string.
  OdString(const char* utf8);

  static OdString fromUtf8(const std::string& utf8);
  /// Encodes as UTF-8. A lone surrogate code unit becomes U+FFFD.
  std::string toUtf8() const;

  int getLength() const { return static_cast<int>(m_data.size()); }
  bool isEmpty() const { return m_data.empty(); }
  const OdChar* c_str() const { return m_data.c_str(); }
  operator const OdChar*() const { return m_data.c_str(); }
  const std::u16string& str() const { return m_data; }

  /// Checked access: an index outside [0, getLength()) throws OdError_InvalidIndex.
  OdChar getAt(int index) const;
  void setAt(int index, OdChar ch);

  /// printf-style formatting into this string. Conversions: d i u x X o c e E f F g G s %
  /// with flags, width, precision (including '*') and the length modifiers h l ll z.
  /// %s and %ls take a const OdChar*, %hs a UTF-8 const char*, %c an OdChar.
  OdString& format(const OdChar* fmt, ...);
  OdString& formatV(const OdChar* fmt, va_list args);

  OdString& operator=(const OdChar* source);
  OdString& operator+=(const OdString& other);
  OdString& operator+=(const OdChar* other);
  OdString& operator+=(OdChar ch);

  int compare(const OdChar* other) const;
  /// Comparison that folds ASCII letters to one case.
  int iCompare(const OdChar* other) const;

  /// Lower-cases ASCII letters; other characters are kept.
  OdString& makeLower();

  OdString left(int count) const;
  OdString right(int count) const;
  /// Characters from start on; count < 0 means to the end. Out-of-range arguments are clamped.
  OdString mid(int start, int count = -1) const;

  /// Index of the first match at or after start, or -1.
  int find(OdChar ch, int start = 0) const;
  int find(const OdChar* sub, int start = 0) const;
  int reverseFind(OdChar ch) const;

  /// Replaces every occurrence; returns how many were replaced.
  int replace(OdChar oldChar, OdChar newChar);
  int replace(const OdChar* oldText, const OdChar* newText);

  OdString& trimLeft();
  OdString& trimRight();
  OdString& empty() {
    m_data.clear();
    return *this;
  }

  friend OdString operator+(const OdString& a, const OdString& b);
  friend OdString operator+(const OdString& a, const OdChar* b);
  friend OdString operator+(const OdChar* a, const OdString& b);
  friend bool operator==(const OdString& a, const OdString& b) { return a.m_data == b.m_data; }
  friend bool operator==(const OdString& a, const OdChar* b) { return a.compare(b) == 0; }
  friend bool operator==(const OdChar* a, const OdString& b) { return b.compare(a) == 0; }
  friend bool operator!=(const OdString& a, const OdString& b) { return !(a == b); }
  friend bool operator!=(const OdString& a, const OdChar* b) { return !(a == b); }
  friend bool operator<(const OdString& a, const OdString& b) { return a.m_data < b.m_data; }

private:
  std::u16string m_data;
};

namespace std {
template <> struct hash<OdString> {
  size_t operator()(const OdString& s) const noexcept { return hash<u16string>()(s.str()); }
};
} // namespace std

/// Wide-string-to-double conversion as the C runtime's wcstod does it: leading white space,
/// the longest valid prefix, 0.0 when nothing converts. `end` (optional) receives the number of
/// code units consumed.
double odStrToD(const OdString& text, int* end = nullptr);

#endif
