#ifndef OD_DB_HANDLE_H
#define OD_DB_HANDLE_H

#include "OdString.h"

/// A database handle: the persistent 64-bit number of an object within its drawing.
class OdDbHandle {
public:
  OdDbHandle() = default;
  OdDbHandle(OdUInt64 value) : m_value(value) {}
  /// Parses upper- or lower-case hexadecimal; anything else gives the null handle.
  explicit OdDbHandle(const OdString& hex);

  bool isNull() const { return m_value == 0; }
  operator OdUInt64() const { return m_value; }
  /// Upper-case hexadecimal without leading zeros ("0" for the null handle).
  OdString ascii() const;
  /// The handle's significant bytes, most significant first (none for the null handle).
  int getIntoAsciiBuffer(char* buffer, std::size_t size) const;
  OdDbHandle& operator++() {
    ++m_value;
    return *this;
  }

private:
  OdUInt64 m_value = 0;
};

#endif
