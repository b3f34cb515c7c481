#ifndef OD_VARIANT_H
#define OD_VARIANT_H

/// A property value as it travels between an entity's property extension and the host's
/// property grid: one value of a fixed set of types, held by value, by reference (a pointer
/// to a value that someone else owns) or as an array. The receiver checks type() before
/// converting, so every getter insists on the type that was stored.

#include "OdArray.h"
#include "OdString.h"

#include <string>
#include <type_traits>
#include <variant>

class OdVariant {
public:
  /// The SDK's type codes. Signed and unsigned integers of one size share a code: the code
  /// says how many bits travel, not how to read them.
  enum Type {
    kVoid = 0,
    kString = 1,
    kBool = 2,
    kInt8 = 3,
    kUInt8 = 3,
    kInt16 = 4,
    kUInt16 = 4,
    kInt32 = 5,
    kUInt32 = 5,
    kInt64 = 6,
    kUInt64 = 6,
    kDouble = 7,
    kAnsiString = 8,
    kRxObjectPtr = 9,
    kNextType = 10,
    kByRef = 0x40,
    kArray = 0x80
  };

  OdVariant() = default;
  OdVariant(const OdVariant&) = default;
  OdVariant(OdVariant&&) noexcept = default;
  OdVariant& operator=(const OdVariant&) = default;
  OdVariant& operator=(OdVariant&&) noexcept = default;

  OdVariant(const OdString& value) { setString(value); }
  OdVariant(const OdChar* value) { setString(OdString(value)); }
  OdVariant(bool value) { setBool(value); }
  OdVariant(OdInt8 value) { setInt8(value); }
  OdVariant(OdUInt8 value) { setUInt8(value); }
  OdVariant(OdInt16 value) { setInt16(value); }
  OdVariant(OdUInt16 value) { setUInt16(value); }
  OdVariant(OdInt32 value) { setInt32(value); }
  OdVariant(OdUInt32 value) { setUInt32(value); }
  OdVariant(OdInt64 value) { setInt64(value); }
  OdVariant(OdUInt64 value) { setUInt64(value); }
  OdVariant(double value) { setDouble(value); }
  OdVariant(const std::string& ansi) { setAnsiString(ansi); }
  OdVariant(const OdStringArray& values) { setStringArray(values); }
  OdVariant(const OdIntArray& values) { setInt32Array(values); }
  OdVariant(const OdGeDoubleArray& values) { setDoubleArray(values); }
  /// Deleted because a narrow literal or any other pointer would otherwise silently become a
  /// bool. Use OdString(utf8) or std::string for narrow text, the set...Ptr setters for
  /// references.
  OdVariant(const char*) = delete;
  template <class T, class = std::enable_if_t<!std::is_same<std::remove_cv_t<T>, OdChar>::value>>
  OdVariant(T*) = delete;

  /// The full code, by-reference and array bits included.
  int varType() const { return m_type; }
  /// The value's type without the by-reference and array bits: what a receiver compares
  /// against the type it expects.
  Type type() const { return static_cast<Type>(m_type & 0x3F); }
  bool isByRef() const { return (m_type & kByRef) != 0; }
  bool isArray() const { return (m_type & kArray) != 0; }

  OdVariant& setString(const OdString& value);
  OdVariant& setBool(bool value);
  OdVariant& setInt8(OdInt8 value);
  OdVariant& setUInt8(OdUInt8 value);
  OdVariant& setInt16(OdInt16 value);
  OdVariant& setUInt16(OdUInt16 value);
  OdVariant& setInt32(OdInt32 value);
  OdVariant& setUInt32(OdUInt32 value);
  OdVariant& setInt64(OdInt64 value);
  OdVariant& setUInt64(OdUInt64 value);
  OdVariant& setDouble(double value);
  /// Narrow text in the drawing's code page, kept byte for byte.
  OdVariant& setAnsiString(const std::string& value);

  /// References to values owned elsewhere; the getters read through the pointer, so the
  /// owner must outlive the variant. A null pointer throws OdError(eInvalidInput) and leaves
  /// the variant unchanged.
  OdVariant& setStringPtr(OdString* value);
  OdVariant& setBoolPtr(bool* value);
  OdVariant& setInt32Ptr(OdInt32* value);
  OdVariant& setDoublePtr(double* value);

  OdVariant& setStringArray(const OdStringArray& values);
  OdVariant& setInt32Array(const OdIntArray& values);
  OdVariant& setDoubleArray(const OdGeDoubleArray& values);

  /// Each getter accepts its own type, held by value or (where a by-reference setter exists)
  /// by reference; anything else throws OdError(eInvalidInput) naming both types.
  const OdString& getString() const;
  bool getBool() const;
  OdInt8 getInt8() const;
  OdUInt8 getUInt8() const;
  OdInt16 getInt16() const;
  OdUInt16 getUInt16() const;
  OdInt32 getInt32() const;
  OdUInt32 getUInt32() const;
  OdInt64 getInt64() const;
  OdUInt64 getUInt64() const;
  double getDouble() const;
  const std::string& getAnsiString() const;

  /// The pointers given to the by-reference setters; other contents throw as above.
  OdString* getStringPtr() const;
  bool* getBoolPtr() const;
  OdInt32* getInt32Ptr() const;
  double* getDoublePtr() const;

  const OdStringArray& getStringArray() const;
  const OdIntArray& getInt32Array() const;
  const OdGeDoubleArray& getDoubleArray() const;

  /// A readable name of a full type code, such as "Int32", "String reference" or
  /// "Double array"; used in error messages.
  static OdString typeName(int varType);

  /// Equal when the full type codes match and the values do; references compare the values
  /// they point to, not the pointers.
  friend bool operator==(const OdVariant& a, const OdVariant& b);
  friend bool operator!=(const OdVariant& a, const OdVariant& b) { return !(a == b); }

private:
  /// Integers of every size are kept as their raw bits, so that signed and unsigned getters
  /// of one size read the same value.
  OdUInt64 intBits(int code, const char* wanted) const;
  void requireType(int code, const char* wanted) const;
  [[noreturn]] void throwMismatch(const char* wanted) const;

  typedef std::variant<std::monostate, OdString, bool, OdUInt64, double, std::string, OdString*,
                       bool*, OdInt32*, double*, OdStringArray, OdIntArray, OdGeDoubleArray>
      Storage;

  int m_type = kVoid;
  Storage m_value;
};

#endif
