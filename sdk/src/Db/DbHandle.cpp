#include "DbHandle.h"

#include <cstdio>

OdDbHandle::OdDbHandle(const OdString& hex) {
  if (hex.isEmpty() || hex.getLength() > 16)
    return;
  OdUInt64 value = 0;
  for (int i = 0; i < hex.getLength(); ++i) {
    const OdChar c = hex.getAt(i);
    int digit;
    if (c >= '0' && c <= '9')
      digit = c - '0';
    else if (c >= 'A' && c <= 'F')
      digit = c - 'A' + 10;
    else if (c >= 'a' && c <= 'f')
      digit = c - 'a' + 10;
    else
      return;
    value = (value << 4) | static_cast<OdUInt64>(digit);
  }
  m_value = value;
}

OdString OdDbHandle::ascii() const {
  char buffer[17];
  std::snprintf(buffer, sizeof buffer, "%llX", static_cast<unsigned long long>(m_value));
  return OdString(buffer);
}

int OdDbHandle::getIntoAsciiBuffer(char* buffer, std::size_t size) const {
  return std::snprintf(buffer, size, "%llX", static_cast<unsigned long long>(m_value));
}
