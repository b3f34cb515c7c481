#include "OdError.h"
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

TEST(OdStringUtf8, LoneSurrogatesEncodeAsReplacementCharacter) {
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(OdString(std::u16string(u"\xD800")).toUtf8(), replacement);
  EXPECT_EQ(OdString(std::u16string(u"a\xDC00z")).toUtf8(), "a" + replacement + "z");
  EXPECT_EQ(OdString(std::u16string(u"\xD83Dx")).toUtf8(), replacement + "x");
  EXPECT_EQ(OdString(std::u16string(u"\xDE00\xD83D")).toUtf8(), replacement + replacement);
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

TEST(OdStringFormat, UnknownOrUnfinishedConversionsStayAsWritten) {
  EXPECT_EQ(formatted(u"%q"), u"%q");
  EXPECT_EQ(formatted(u"%y=%d", 5), u"%y=5");
  EXPECT_EQ(formatted(u"50%"), u"50%");
  EXPECT_EQ(formatted(u"abc%5"), u"abc%5");
  EXPECT_EQ(formatted(u"%n%d", 3), u"%n3"); // %n never writes through an argument
  OdString s(u"keep");
  s.format(nullptr);
  EXPECT_TRUE(s.isEmpty());
}

TEST(OdStringFormat, FormatMayReadItsOwnText) {
  OdString s(u"x=%d");
  s.format(s.c_str(), 3);
  EXPECT_EQ(s, u"x=3");
  OdString t(u"ab");
  t.format(u"%s%s", t.c_str(), t.c_str());
  EXPECT_EQ(t, u"abab");
}

TEST(OdStrToD, ConvertsLikeWcstod) {
  struct Case {
    const OdChar* text;
    double value;
    int end;
  };
  const Case cases[] = {
      {u"12.5abc", 12.5, 4}, {u"  -3", -3.0, 4},       {u"", 0.0, 0},      {u"abc", 0.0, 0},
      {u"   ", 0.0, 0},      {u"\t+.5e1x", 5.0, 6},    {u"1e", 1.0, 1},    {u"1e+", 1.0, 1},
      {u"-", 0.0, 0},        {u".", 0.0, 0},           {u"0x10", 16.0, 4}, {u"3.5坐标", 3.5, 3},
      {u"坐3", 0.0, 0},      {u"\u30001", 0.0, 0}, // only ASCII white space is skipped
      {u"1,5", 1.0, 1},      {u"7.25\u00A0", 7.25, 4},
  };
  for (const Case& c : cases) {
    int end = -1;
    EXPECT_DOUBLE_EQ(odStrToD(OdString(c.text), &end), c.value) << OdString(c.text).toUtf8();
    EXPECT_EQ(end, c.end) << OdString(c.text).toUtf8();
  }
}

TEST(OdStrToD, InfinityAndNan) {
  int end = -1;
  EXPECT_EQ(odStrToD(OdString(u"1e999"), &end), HUGE_VAL);
  EXPECT_EQ(end, 5);
  EXPECT_EQ(odStrToD(OdString(u"-inf"), &end), -HUGE_VAL);
  EXPECT_EQ(end, 4);
  EXPECT_EQ(odStrToD(OdString(u" Infinity!"), &end), HUGE_VAL);
  EXPECT_EQ(end, 9);
  EXPECT_TRUE(std::isnan(odStrToD(OdString(u"nan"), &end)));
  EXPECT_EQ(end, 3);
  EXPECT_TRUE(std::isnan(odStrToD(OdString(u"NaN(123)z"), &end)));
  EXPECT_EQ(end, 8);
  EXPECT_DOUBLE_EQ(odStrToD(OdString(u"2.5")), 2.5); // end is optional
}

TEST(OdStringEdit, SubstringsClampTheirArguments) {
  const OdString s(u"坐标abc");
  EXPECT_EQ(s.mid(2), u"abc");
  EXPECT_EQ(s.mid(-3, 2), u"坐标");
  EXPECT_EQ(s.mid(1, 100), u"标abc");
  EXPECT_EQ(s.mid(5), u"");
  EXPECT_EQ(s.mid(99, 2), u"");
  EXPECT_EQ(s.mid(2, 0), u"");
  EXPECT_EQ(s.left(2), u"坐标");
  EXPECT_EQ(s.left(-1), u"");
  EXPECT_EQ(s.left(50), s);
  EXPECT_EQ(s.right(3), u"abc");
  EXPECT_EQ(s.right(0), u"");
  EXPECT_EQ(s.right(50), s);
}

TEST(OdStringEdit, FindAndReverseFind) {
  const OdString s(u"a.b.c");
  EXPECT_EQ(s.find(u'.'), 1);
  EXPECT_EQ(s.find(u'.', 2), 3);
  EXPECT_EQ(s.find(u'.', -7), 1);
  EXPECT_EQ(s.find(u'.', 4), -1);
  EXPECT_EQ(s.find(u'.', 100), -1);
  EXPECT_EQ(s.find(u"b.c"), 2);
  EXPECT_EQ(s.find(u"b.c", 3), -1);
  EXPECT_EQ(s.find(u"c", 100), -1);
  EXPECT_EQ(s.find(u""), -1);
  EXPECT_EQ(s.find(static_cast<const OdChar*>(nullptr)), -1);
  EXPECT_EQ(s.reverseFind(u'.'), 3);
  EXPECT_EQ(s.reverseFind(u'x'), -1);
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

TEST(OdStringEdit, CaseTrimAndCompare) {
  OdString s(u"Ab坐z");
  EXPECT_EQ(OdString(s).makeUpper(), u"AB坐Z");
  EXPECT_EQ(OdString(s).makeLower(), u"ab坐z");
  EXPECT_EQ(OdString(u" \t x \r\n").trimLeft(), u"x \r\n");
  EXPECT_EQ(OdString(u" \t x \r\n").trimRight(), u" \t x");
  EXPECT_EQ(OdString(u"\u3000x").trimLeft(), u"\u3000x");

  EXPECT_EQ(OdString(u"abc").compare(u"abc"), 0);
  EXPECT_LT(OdString(u"abc").compare(u"abd"), 0);
  EXPECT_GT(OdString(u"abc").compare(u"ab"), 0);
  EXPECT_GT(OdString(u"a").compare(nullptr), 0);
  EXPECT_EQ(OdString().compare(nullptr), 0);
  EXPECT_EQ(OdString(u"LaYeR").iCompare(u"layer"), 0);
  EXPECT_LT(OdString(u"a").iCompare(u"B"), 0);
  EXPECT_NE(OdString(u"坐").iCompare(u"标"), 0);
}

TEST(OdStringEdit, ConstructionAndConcatenation) {
  EXPECT_TRUE(OdString(static_cast<const OdChar*>(nullptr)).isEmpty());
  EXPECT_EQ(OdString(u"abcdef", 3), u"abc");
  EXPECT_TRUE(OdString(u"abc", 0).isEmpty());
  EXPECT_TRUE(OdString(u"abc", -2).isEmpty());
  EXPECT_EQ(OdString(u'-', 3), u"---");
  EXPECT_TRUE(OdString(u'-', -1).isEmpty());
  EXPECT_TRUE(OdString::kEmpty.isEmpty());

  OdString s(u"ab");
  s += s.c_str(); // appending its own text
  EXPECT_EQ(s, u"abab");
  s += static_cast<const OdChar*>(nullptr);
  s += u'!';
  EXPECT_EQ(s, u"abab!");
  EXPECT_EQ(OdString(u"x") + u"y", u"xy");
  EXPECT_EQ(u"x" + OdString(u"y"), u"xy");
  s = s.c_str() + 2;
  EXPECT_EQ(s, u"ab!");
}

TEST(OdStringAccess, CheckedIndexing) {
  OdString s(u"坐标");
  EXPECT_EQ(s.getAt(1), u'标');
  s.setAt(0, u'X');
  EXPECT_EQ(s, u"X标");
  for (int bad : {-1, 2, 100, INT_MIN}) {
    EXPECT_THROW(s.getAt(bad), OdError_InvalidIndex) << bad;
    EXPECT_THROW(s.setAt(bad, u'y'), OdError_InvalidIndex) << bad;
  }
  EXPECT_EQ(s, u"X标");
  try {
    OdString().getAt(0);
    FAIL() << "no exception";
  } catch (const OdError& e) {
    EXPECT_EQ(e.code(), eInvalidIndex);
  }
}
