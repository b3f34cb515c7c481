#include "OdVariant.h"

#include "OdError.h"

namespace {

const char* baseTypeName(int code) {
  switch (code & 0x3F) {
  case OdVariant::kVoid:
    return "Void";
  case OdVariant::kString:
    return "String";
  case OdVariant::kBool:
    return "Bool";
  case OdVariant::kInt8:
    return "Int8";
  case OdVariant::kInt16:
    return "Int16";
  case OdVariant::kInt32:
    return "Int32";
  case OdVariant::kInt64:
    return "Int64";
  case OdVariant::kDouble:
    return "Double";
  case OdVariant::kAnsiString:
    return "AnsiString";
  case OdVariant::kRxObjectPtr:
    return "RxObjectPtr";
  default:
    return "Unknown";
  }
}

/// Keeps only the bits of the integer's own size, so that a value stored through one size
/// never carries stray high bits into a getter of that size.
OdUInt64 maskBits(int code, OdUInt64 bits) {
  switch (code) {
  case OdVariant::kInt8:
    return bits & 0xFFu;
  case OdVariant::kInt16:
    return bits & 0xFFFFu;
  case OdVariant::kInt32:
    return bits & 0xFFFFFFFFu;
  default:
    return bits;
  }
}

} // namespace

OdString OdVariant::typeName(int varType) {
  std::string name = baseTypeName(varType);
  if (varType & kByRef)
    name += " reference";
  if (varType & kArray)
    name += " array";
  return OdString::fromUtf8(name);
}

void OdVariant::throwMismatch(const char* wanted) const {
  const std::string message =
      std::string("OdVariant holds ") + typeName(m_type).toUtf8() + ", not the requested " + wanted;
  throw OdError(eInvalidInput, OdString::fromUtf8(message));
}

void OdVariant::requireType(int code, const char* wanted) const {
  if (m_type != code)
    throwMismatch(wanted);
}

OdUInt64 OdVariant::intBits(int code, const char* wanted) const {
  if (m_type == code)
    return std::get<OdUInt64>(m_value);
  if (code == kInt32 && m_type == (kInt32 | kByRef))
    return static_cast<OdUInt32>(*std::get<OdInt32*>(m_value));
  throwMismatch(wanted);
}

OdVariant& OdVariant::setString(const OdString& value) {
  m_value.emplace<OdString>(value);
  m_type = kString;
  return *this;
}

OdVariant& OdVariant::setBool(bool value) {
  m_value.emplace<bool>(value);
  m_type = kBool;
  return *this;
}

OdVariant& OdVariant::setInt8(OdInt8 value) {
  return setUInt8(static_cast<OdUInt8>(value));
}

OdVariant& OdVariant::setUInt8(OdUInt8 value) {
  m_value.emplace<OdUInt64>(maskBits(kUInt8, value));
  m_type = kUInt8;
  return *this;
}

OdVariant& OdVariant::setInt16(OdInt16 value) {
  return setUInt16(static_cast<OdUInt16>(value));
}

OdVariant& OdVariant::setUInt16(OdUInt16 value) {
  m_value.emplace<OdUInt64>(maskBits(kUInt16, value));
  m_type = kUInt16;
  return *this;
}

OdVariant& OdVariant::setInt32(OdInt32 value) {
  return setUInt32(static_cast<OdUInt32>(value));
}

OdVariant& OdVariant::setUInt32(OdUInt32 value) {
  m_value.emplace<OdUInt64>(maskBits(kUInt32, value));
  m_type = kUInt32;
  return *this;
}

OdVariant& OdVariant::setInt64(OdInt64 value) {
  return setUInt64(static_cast<OdUInt64>(value));
}

OdVariant& OdVariant::setUInt64(OdUInt64 value) {
  m_value.emplace<OdUInt64>(value);
  m_type = kUInt64;
  return *this;
}

OdVariant& OdVariant::setDouble(double value) {
  m_value.emplace<double>(value);
  m_type = kDouble;
  return *this;
}

OdVariant& OdVariant::setAnsiString(const std::string& value) {
  m_value.emplace<std::string>(value);
  m_type = kAnsiString;
  return *this;
}

namespace {
template <class T> void requireNonNull(T* value, const char* setter) {
  if (!value)
    throw OdError(eInvalidInput,
                  OdString::fromUtf8(std::string("OdVariant::") + setter + ": null pointer"));
}
} // namespace

OdVariant& OdVariant::setStringPtr(OdString* value) {
  requireNonNull(value, "setStringPtr");
  m_value.emplace<OdString*>(value);
  m_type = kString | kByRef;
  return *this;
}

OdVariant& OdVariant::setBoolPtr(bool* value) {
  requireNonNull(value, "setBoolPtr");
  m_value.emplace<bool*>(value);
  m_type = kBool | kByRef;
  return *this;
}

OdVariant& OdVariant::setInt32Ptr(OdInt32* value) {
  requireNonNull(value, "setInt32Ptr");
  m_value.emplace<OdInt32*>(value);
  m_type = kInt32 | kByRef;
  return *this;
}

OdVariant& OdVariant::setDoublePtr(double* value) {
  requireNonNull(value, "setDoublePtr");
  m_value.emplace<double*>(value);
  m_type = kDouble | kByRef;
  return *this;
}

OdVariant& OdVariant::setStringArray(const OdStringArray& values) {
  m_value.emplace<OdStringArray>(values);
  m_type = kString | kArray;
  return *this;
}

OdVariant& OdVariant::setInt32Array(const OdIntArray& values) {
  m_value.emplace<OdIntArray>(values);
  m_type = kInt32 | kArray;
  return *this;
}

OdVariant& OdVariant::setDoubleArray(const OdGeDoubleArray& values) {
  m_value.emplace<OdGeDoubleArray>(values);
  m_type = kDouble | kArray;
  return *this;
}

const OdString& OdVariant::getString() const {
  if (m_type == (kString | kByRef))
    return *std::get<OdString*>(m_value);
  requireType(kString, "String");
  return std::get<OdString>(m_value);
}

bool OdVariant::getBool() const {
  if (m_type == (kBool | kByRef))
    return *std::get<bool*>(m_value);
  requireType(kBool, "Bool");
  return std::get<bool>(m_value);
}

OdInt8 OdVariant::getInt8() const {
  return static_cast<OdInt8>(intBits(kInt8, "Int8"));
}
OdUInt8 OdVariant::getUInt8() const {
  return static_cast<OdUInt8>(intBits(kUInt8, "UInt8"));
}
OdInt16 OdVariant::getInt16() const {
  return static_cast<OdInt16>(intBits(kInt16, "Int16"));
}
OdUInt16 OdVariant::getUInt16() const {
  return static_cast<OdUInt16>(intBits(kUInt16, "UInt16"));
}
OdInt32 OdVariant::getInt32() const {
  return static_cast<OdInt32>(intBits(kInt32, "Int32"));
}
OdUInt32 OdVariant::getUInt32() const {
  return static_cast<OdUInt32>(intBits(kUInt32, "UInt32"));
}
OdInt64 OdVariant::getInt64() const {
  return static_cast<OdInt64>(intBits(kInt64, "Int64"));
}
OdUInt64 OdVariant::getUInt64() const {
  return intBits(kUInt64, "UInt64");
}

double OdVariant::getDouble() const {
  if (m_type == (kDouble | kByRef))
    return *std::get<double*>(m_value);
  requireType(kDouble, "Double");
  return std::get<double>(m_value);
}

const std::string& OdVariant::getAnsiString() const {
  requireType(kAnsiString, "AnsiString");
  return std::get<std::string>(m_value);
}

OdString* OdVariant::getStringPtr() const {
  requireType(kString | kByRef, "String reference");
  return std::get<OdString*>(m_value);
}

bool* OdVariant::getBoolPtr() const {
  requireType(kBool | kByRef, "Bool reference");
  return std::get<bool*>(m_value);
}

OdInt32* OdVariant::getInt32Ptr() const {
  requireType(kInt32 | kByRef, "Int32 reference");
  return std::get<OdInt32*>(m_value);
}

double* OdVariant::getDoublePtr() const {
  requireType(kDouble | kByRef, "Double reference");
  return std::get<double*>(m_value);
}

const OdStringArray& OdVariant::getStringArray() const {
  requireType(kString | kArray, "String array");
  return std::get<OdStringArray>(m_value);
}

const OdIntArray& OdVariant::getInt32Array() const {
  requireType(kInt32 | kArray, "Int32 array");
  return std::get<OdIntArray>(m_value);
}

const OdGeDoubleArray& OdVariant::getDoubleArray() const {
  requireType(kDouble | kArray, "Double array");
  return std::get<OdGeDoubleArray>(m_value);
}

bool operator==(const OdVariant& a, const OdVariant& b) {
  if (a.m_type != b.m_type)
    return false;
  switch (a.m_type) {
  case OdVariant::kString | OdVariant::kByRef:
    return *std::get<OdString*>(a.m_value) == *std::get<OdString*>(b.m_value);
  case OdVariant::kBool | OdVariant::kByRef:
    return *std::get<bool*>(a.m_value) == *std::get<bool*>(b.m_value);
  case OdVariant::kInt32 | OdVariant::kByRef:
    return *std::get<OdInt32*>(a.m_value) == *std::get<OdInt32*>(b.m_value);
  case OdVariant::kDouble | OdVariant::kByRef:
    return *std::get<double*>(a.m_value) == *std::get<double*>(b.m_value);
  default:
    return a.m_value == b.m_value;
  }
}
