#include "OdString.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <string>

inline void PrintTo(const OdString& s, std::ostream* os) {
  *os << '"' << s.toUtf8() << '"';
}

namespace {

OdString formatted(const OdChar* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  OdString s;
  s.formatV(fmt, args);
  va_end(args);
  return s;
}

// A search starts at its index (a negative one at the start); an empty pattern finds nothing.
TEST(OdStringEdit, FindStartsAtItsIndex) {
  const OdString s(u"坐a坐a");
  EXPECT_EQ(s.find(u"坐a", 1), 2);
  EXPECT_EQ(s.find(u"坐a", -3), 0);
  EXPECT_EQ(s.find(u'a', 2), 3);
  EXPECT_EQ(s.find(u'坐', 1), 2);
  EXPECT_EQ(s.find(u'a', 4), -1);
  EXPECT_EQ(s.find(u"", 0), -1);
  EXPECT_EQ(s.reverseFind(u'坐'), 2);
}

TEST(OdStringEdit, ReplaceCountsMatches) {
  OdString s(u"aaaa");
  EXPECT_EQ(s.replace(u"aa", u"b"), 2);
  EXPECT_EQ(s, u"bb");
  OdString t(u"aaa");
  EXPECT_EQ(t.replace(u"aa", u"aab"), 1); // no overlap, no rescanning of inserted text
  EXPECT_EQ(t, u"aaba");
  OdString u(u"坐标-坐标");
  EXPECT_EQ(u.replace(u"坐标", nullptr), 2);
  EXPECT_EQ(u, u"-");
  OdString v(u"abc");
  EXPECT_EQ(v.replace(u"", u"x"), 0);
  EXPECT_EQ(v.replace(static_cast<const OdChar*>(nullptr), u"x"), 0);
  EXPECT_EQ(v.replace(u"zz", u"x"), 0);
  EXPECT_EQ(v, u"abc");
  OdString w(u"a,b,,c");
  EXPECT_EQ(w.replace(u',', u';'), 3);
  EXPECT_EQ(w, u"a;b;;c");
}

} // namespace

TEST(OdStringUtf8, RoundTripsValidText) {
  struct Case {
    const char* utf8;
    std::u16string utf16;
  };
  const Case cases[] = {
      {"", u""},
      {"plain ASCII", u"plain ASCII"},
      {"\xC2\xA9 1\xC2\xB0", u"\u00A9 1\u00B0"}, // two-byte forms
      {"\xE5\x9D\x90\xE6\xA0\x87\xE6\xA0\x87\xE6\xB3\xA8", u"\u5750\u6807\u6807\u6CE8"}, // 坐标标注
      {"\xF0\x9F\x98\x80", u"\xD83D\xDE00"},                                             // U+1F600
      {"\xF0\x90\x80\x80", u"\xD800\xDC00"},                                             // U+10000
      {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},                                             // U+10FFFF
      {"\xEF\xBF\xBF", u"\uFFFF"},
      {"a\xF0\x9F\x93\x90z", u"a\xD83D\xDCD0z"},
  };
  for (const Case& c : cases) {
    const OdString decoded(c.utf8);
    EXPECT_EQ(decoded.str(), c.utf16) << c.utf8;
    EXPECT_EQ(decoded.toUtf8(), c.utf8);
    EXPECT_EQ(OdString::fromUtf8(c.utf8), decoded);
  }
  EXPECT_EQ(OdString(u"坐标标注").toUtf8(), "坐标标注");
  EXPECT_EQ(OdString(u"坐标标注").getLength(), 4);
  EXPECT_EQ(OdString(u"😀").getLength(), 2);
}

TEST(OdStringUtf8, MalformedBytesBecomeReplacementCharacters) {
  struct Case {
    std::string utf8;
    std::u16string utf16;
  };
  const Case cases[] = {
      {"\x80", u"\uFFFD"}, // lone continuation byte
      {"\xFF", u"\uFFFD"}, // never a lead byte
      {"a\xC0\xAF"
       "b",
       u"a\uFFFD\uFFFDb"},                                  // overlong two-byte '/'
      {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},              // overlong three-byte
      {"\xF0\x80\x80\xAF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},    // overlong four-byte
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},              // encoded surrogate U+D800
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},    // above U+10FFFF
      {"\xE5\x9D", u"\uFFFD"},                              // truncated at the end
      {"\xE5\x9Dx", u"\uFFFDx"},                            // truncated before ASCII
      {"\xF0\x9F\x98", u"\uFFFD"},                          // truncated emoji
      {"\xF0\x9F\x98\xE6\xA0\x87", u"\uFFFD\u6807"},        // truncated, then valid
      {std::string("a\0b", 3), std::u16string(u"a\0b", 3)}, // NUL kept by fromUtf8
  };
  for (const Case& c : cases)
    EXPECT_EQ(OdString::fromUtf8(c.utf8).str(), c.utf16) << c.utf8;

  EXPECT_TRUE(OdString(static_cast<const char*>(nullptr)).isEmpty());
}

TEST(OdStringFormat, NumbersAndTextInOneFormat) {
  EXPECT_EQ(formatted(u"%.2f_%d_%d", 3.14159, 12, -7), u"3.14_12_-7");
  EXPECT_EQ(formatted(u"%.4f", 2.5), u"2.5000");
  EXPECT_EQ(formatted(u"%.4f", -0.00004), u"-0.0000");
  EXPECT_EQ(formatted(u"X=%s", u"坐标标注"), u"X=坐标标注");
  EXPECT_EQ(formatted(u"%ls|%hs", u"标注", "\xE5\x9D\x90\xE6\xA0\x87"), u"标注|坐标");
  EXPECT_EQ(formatted(u"%c%c", static_cast<int>(u'坐'), 'A'), u"坐A");
  EXPECT_EQ(formatted(u"100%%"), u"100%");
  EXPECT_EQ(
      formatted(u"%s,%hs", static_cast<const OdChar*>(nullptr), static_cast<const char*>(nullptr)),
      u"(null),(null)");
}

TEST(OdStringFormat, IntegerConversionsAndLengthModifiers) {
  EXPECT_EQ(formatted(u"%d %i %u", -5, 6, 7u), u"-5 6 7");
  EXPECT_EQ(formatted(u"%u", -1), u"4294967295");
  EXPECT_EQ(formatted(u"%x %X %#x %o %#o", 255, 255, 255, 8, 8), u"ff FF 0xff 10 010");
  EXPECT_EQ(formatted(u"%hd %hu", 70000, 65537), u"4464 1");
  EXPECT_EQ(formatted(u"%ld %lu", -123456789L, 123456789UL), u"-123456789 123456789");
  EXPECT_EQ(formatted(u"%lld %llx", -(1LL << 40), 1ULL << 40), u"-1099511627776 10000000000");
  EXPECT_EQ(formatted(u"%zu %zd", static_cast<std::size_t>(123), static_cast<std::ptrdiff_t>(-4)),
            u"123 -4");
  EXPECT_EQ(formatted(u"%d", INT_MIN), u"-2147483648");
}

TEST(OdStringFormat, FloatingConversions) {
  EXPECT_EQ(formatted(u"%e", 12345.678), u"1.234568e+04");
  EXPECT_EQ(formatted(u"%E", 0.5), u"5.000000E-01");
  EXPECT_EQ(formatted(u"%f %F", 1.5, 2.25), u"1.500000 2.250000");
  EXPECT_EQ(formatted(u"%g %g", 0.0001, 1e20), u"0.0001 1e+20");
  EXPECT_EQ(formatted(u"%G", 1e-10), u"1E-10");
  EXPECT_EQ(formatted(u"%F %f", INFINITY, -INFINITY), u"INF -inf");
  EXPECT_EQ(formatted(u"%#.0f", 3.0), u"3.");
}

TEST(OdStringFormat, FlagsWidthAndPrecision) {
  EXPECT_EQ(formatted(u"[%5d|%-5d|%05d]", 42, 42, 42), u"[   42|42   |00042]");
  EXPECT_EQ(formatted(u"[%+d|% d|%+.1f]", 5, 5, 2.0), u"[+5| 5|+2.0]");
  EXPECT_EQ(formatted(u"[%*d]", 6, 42), u"[    42]");
  EXPECT_EQ(formatted(u"[%-*d]", 4, 7), u"[7   ]");
  EXPECT_EQ(formatted(u"[%*d]", -4, 7), u"[7   ]"); // negative '*' width: left aligned
  EXPECT_EQ(formatted(u"[%.*f]", 3, 1.23456), u"[1.235]");
  EXPECT_EQ(formatted(u"[%.*f]", -1, 1.5), u"[1.500000]"); // negative precision: none
  EXPECT_EQ(formatted(u"[%*.*f]", 8, 2, 3.14159), u"[    3.14]");
  EXPECT_EQ(formatted(u"[%.3d]", 7), u"[007]");
  EXPECT_EQ(formatted(u"[%8.3s]", u"abcdef"), u"[     abc]");
  EXPECT_EQ(formatted(u"[%-6s]", u"ab"), u"[ab    ]");
  EXPECT_EQ(formatted(u"[%4s]", u"坐标"), u"[  坐标]");
  EXPECT_EQ(formatted(u"[%-3c]", static_cast<int>(u'x')), u"[x  ]");
  EXPECT_EQ(formatted(u"[%.1s]", u"😀"), u"[]"); // never half a surrogate pair
  EXPECT_EQ(formatted(u"[%.2s]", u"😀x"), u"[😀]");
}
