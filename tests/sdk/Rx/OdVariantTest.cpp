#include "OdError.h"
#include "OdVariant.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <type_traits>

inline void PrintTo(const OdString& s, std::ostream* os) {
  *os << '"' << s.toUtf8() << '"';
}

// A narrow literal or a foreign pointer must not silently turn into a bool.
static_assert(!std::is_constructible<OdVariant, const char*>::value, "narrow text");
static_assert(!std::is_constructible<OdVariant, OdString*>::value, "pointer");
static_assert(!std::is_constructible<OdVariant, int*>::value, "pointer");
static_assert(std::is_constructible<OdVariant, const OdChar*>::value, "wide text");
static_assert(std::is_constructible<OdVariant, OdChar*>::value, "wide text");

namespace {
OdString g_text(u"ref");
bool g_flag = true;
OdInt32 g_int = -8;
double g_real = 2.5;
} // namespace

TEST(OdVariantType, CodesAndLowSixBits) {
  struct Case {
    const char* what;
    OdVariant value;
    int varType;
    OdVariant::Type type;
  };
  const Case cases[] = {
      {"void", OdVariant(), 0, OdVariant::kVoid},
      {"string", OdVariant().setString(OdString(u"坐标")), 1, OdVariant::kString},
      {"bool", OdVariant().setBool(false), 2, OdVariant::kBool},
      {"int8", OdVariant().setInt8(-1), 3, OdVariant::kInt8},
      {"uint8", OdVariant().setUInt8(1), 3, OdVariant::kUInt8},
      {"int16", OdVariant().setInt16(-1), 4, OdVariant::kInt16},
      {"uint16", OdVariant().setUInt16(1), 4, OdVariant::kUInt16},
      {"int32", OdVariant().setInt32(-1), 5, OdVariant::kInt32},
      {"uint32", OdVariant().setUInt32(1), 5, OdVariant::kUInt32},
      {"int64", OdVariant().setInt64(-1), 6, OdVariant::kInt64},
      {"uint64", OdVariant().setUInt64(1), 6, OdVariant::kUInt64},
      {"double", OdVariant().setDouble(1.5), 7, OdVariant::kDouble},
      {"ansi", OdVariant().setAnsiString("abc"), 8, OdVariant::kAnsiString},
      {"string ref", OdVariant().setStringPtr(&g_text), 0x41, OdVariant::kString},
      {"bool ref", OdVariant().setBoolPtr(&g_flag), 0x42, OdVariant::kBool},
      {"int32 ref", OdVariant().setInt32Ptr(&g_int), 0x45, OdVariant::kInt32},
      {"double ref", OdVariant().setDoublePtr(&g_real), 0x47, OdVariant::kDouble},
      {"string array", OdVariant().setStringArray(OdStringArray{OdString(u"a")}), 0x81,
       OdVariant::kString},
      {"int32 array", OdVariant().setInt32Array(OdIntArray{1, 2}), 0x85, OdVariant::kInt32},
      {"double array", OdVariant().setDoubleArray(OdGeDoubleArray{0.5}), 0x87, OdVariant::kDouble},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.value.varType(), c.varType) << c.what;
    EXPECT_EQ(c.value.type(), c.type) << c.what;
    EXPECT_EQ(c.value.isByRef(), (c.varType & 0x40) != 0) << c.what;
    EXPECT_EQ(c.value.isArray(), (c.varType & 0x80) != 0) << c.what;
  }
}

TEST(OdVariantType, ConstructorsPickTheMatchingType) {
  EXPECT_EQ(OdVariant(OdString(u"a")).varType(), OdVariant::kString);
  EXPECT_EQ(OdVariant(u"坐标").getString(), OdString(u"坐标"));
  EXPECT_EQ(OdVariant(true).varType(), OdVariant::kBool);
  EXPECT_EQ(OdVariant(OdInt8(-3)).varType(), OdVariant::kInt8);
  EXPECT_EQ(OdVariant(OdUInt16(3)).varType(), OdVariant::kUInt16);
  EXPECT_EQ(OdVariant(7).getInt32(), 7);
  EXPECT_EQ(OdVariant(OdUInt64(1) << 40).getUInt64(), OdUInt64(1) << 40);
  EXPECT_EQ(OdVariant(0.25).getDouble(), 0.25);
  EXPECT_EQ(OdVariant(std::string("ansi")).getAnsiString(), "ansi");
  EXPECT_EQ(OdVariant(OdIntArray{4, 5}).getInt32Array(), (OdIntArray{4, 5}));
}

TEST(OdVariantGet, WrongTypeThrowsNamingBothTypes) {
  struct Case {
    OdVariant value;
    std::function<void(const OdVariant&)> get;
    const char* stored;
    const char* wanted;
  };
  const Case cases[] = {
      {OdVariant(1.5), [](const OdVariant& v) { v.getString(); }, "Double", "String"},
      {OdVariant(OdString(u"1.5")), [](const OdVariant& v) { v.getDouble(); }, "String", "Double"},
      {OdVariant(), [](const OdVariant& v) { v.getBool(); }, "Void", "Bool"},
      {OdVariant(OdInt16(1)), [](const OdVariant& v) { v.getInt32(); }, "Int16", "Int32"},
      {OdVariant(OdInt32(1)), [](const OdVariant& v) { v.getInt64(); }, "Int32", "Int64"},
      {OdVariant(OdInt8(1)), [](const OdVariant& v) { v.getUInt16(); }, "Int8", "UInt16"},
      {OdVariant(true), [](const OdVariant& v) { v.getInt32(); }, "Bool", "Int32"},
      {OdVariant(std::string("a")), [](const OdVariant& v) { v.getString(); }, "AnsiString",
       "String"},
      {OdVariant(OdStringArray{OdString(u"a")}), [](const OdVariant& v) { v.getString(); },
       "String array", "String"},
      {OdVariant(OdString(u"a")), [](const OdVariant& v) { v.getStringArray(); }, "String",
       "String array"},
      {OdVariant().setDoublePtr(&g_real), [](const OdVariant& v) { v.getDoubleArray(); },
       "Double reference", "Double array"},
      {OdVariant(2.0), [](const OdVariant& v) { v.getDoublePtr(); }, "Double", "Double reference"},
      {OdVariant(OdIntArray{1}), [](const OdVariant& v) { v.getInt32(); }, "Int32 array", "Int32"},
  };
  for (const Case& c : cases) {
    try {
      c.get(c.value);
      ADD_FAILURE() << "no exception for " << c.stored << " read as " << c.wanted;
    } catch (const OdError& e) {
      EXPECT_EQ(e.code(), eInvalidInput);
      const std::string message = e.description().toUtf8();
      EXPECT_NE(message.find(std::string("holds ") + c.stored + ","), std::string::npos) << message;
      EXPECT_NE(message.find(std::string("requested ") + c.wanted), std::string::npos) << message;
    }
  }
}

TEST(OdVariantGet, SignedAndUnsignedOfOneSizeShareBits) {
  EXPECT_EQ(OdVariant().setInt32(-1).getUInt32(), 0xFFFFFFFFu);
  EXPECT_EQ(OdVariant().setUInt32(0x80000000u).getInt32(), std::numeric_limits<OdInt32>::min());
  EXPECT_EQ(OdVariant().setUInt8(255).getInt8(), -1);
  EXPECT_EQ(OdVariant().setInt8(-128).getUInt8(), 128);
  EXPECT_EQ(OdVariant().setInt16(-2).getUInt16(), 0xFFFE);
  EXPECT_EQ(OdVariant().setUInt64(std::numeric_limits<OdUInt64>::max()).getInt64(), -1);
  EXPECT_EQ(OdVariant().setInt64(-1).getUInt64(), std::numeric_limits<OdUInt64>::max());
  // A colour arrives as a signed 32-bit value and is read back as the packed unsigned one.
  EXPECT_EQ(OdVariant().setInt32(static_cast<OdInt32>(0xC2123456u)).getUInt32(), 0xC2123456u);
  EXPECT_EQ(OdVariant().setInt32Ptr(&g_int).getUInt32(), static_cast<OdUInt32>(g_int));
}

TEST(OdVariantGet, ReferencesReadThroughThePointer) {
  OdString text(u"before");
  bool flag = false;
  OdInt32 number = 1;
  double real = 1.0;
  OdVariant vs, vb, vi, vd;
  vs.setStringPtr(&text);
  vb.setBoolPtr(&flag);
  vi.setInt32Ptr(&number);
  vd.setDoublePtr(&real);
  text = u"after";
  flag = true;
  number = -5;
  real = 3.25;
  EXPECT_EQ(vs.getString(), OdString(u"after"));
  EXPECT_TRUE(vb.getBool());
  EXPECT_EQ(vi.getInt32(), -5);
  EXPECT_EQ(vd.getDouble(), 3.25);
  EXPECT_EQ(vs.getStringPtr(), &text);
  *vi.getInt32Ptr() = 9;
  EXPECT_EQ(number, 9);
  EXPECT_EQ(vb.getBoolPtr(), &flag);
  EXPECT_EQ(vd.getDoublePtr(), &real);
}

TEST(OdVariantSet, NullReferenceIsRefusedWithoutChange) {
  OdVariant v(4.5);
  EXPECT_THROW(v.setStringPtr(nullptr), OdError);
  EXPECT_THROW(v.setBoolPtr(nullptr), OdError);
  EXPECT_THROW(v.setInt32Ptr(nullptr), OdError);
  EXPECT_THROW(v.setDoublePtr(nullptr), OdError);
  EXPECT_EQ(v.varType(), OdVariant::kDouble);
  EXPECT_EQ(v.getDouble(), 4.5);
}

TEST(OdVariantValue, CopyMoveAndEquality) {
  OdVariant a(OdStringArray{OdString(u"坐标"), OdString(u"x")});
  OdVariant b(a);
  EXPECT_EQ(a, b);
  OdVariant c(std::move(b));
  EXPECT_EQ(c.getStringArray().size(), 2u);
  c.setString(OdString(u"y"));
  EXPECT_NE(a, c);
  EXPECT_EQ(a.getStringArray()[0], OdString(u"坐标")); // the copy did not share storage
  OdVariant d;
  d = a;
  EXPECT_EQ(d, a);

  EXPECT_EQ(OdVariant(OdInt32(5)), OdVariant(OdUInt32(5))); // one code, same bits
  EXPECT_NE(OdVariant(OdInt32(5)), OdVariant(OdInt16(5)));
  EXPECT_NE(OdVariant(1.0), OdVariant(true));
  EXPECT_NE(OdVariant(OdString(u"1")), OdVariant(std::string("1")));
  EXPECT_EQ(OdVariant(), OdVariant());

  double x = 2.0, y = 2.0;
  OdVariant rx, ry;
  rx.setDoublePtr(&x);
  ry.setDoublePtr(&y);
  EXPECT_EQ(rx, ry); // references compare what they point to
  y = 3.0;
  EXPECT_NE(rx, ry);
  EXPECT_NE(rx, OdVariant(2.0)); // a reference is not a value
}

TEST(OdVariantValue, TypeNames) {
  EXPECT_EQ(OdVariant::typeName(OdVariant::kInt32), OdString(u"Int32"));
  EXPECT_EQ(OdVariant::typeName(OdVariant::kString | OdVariant::kByRef),
            OdString(u"String reference"));
  EXPECT_EQ(OdVariant::typeName(OdVariant::kDouble | OdVariant::kArray), OdString(u"Double array"));
  EXPECT_EQ(OdVariant::typeName(0x3F), OdString(u"Unknown"));
}
