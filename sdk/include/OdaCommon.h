#ifndef ODA_COMMON_H
#define ODA_COMMON_H

/// Fixed-width integer names of the drawing platform and the UTF-16 code unit type that
/// every platform string is made of.

#include <cstddef>
#include <cstdint>

typedef std::int8_t OdInt8;
typedef std::uint8_t OdUInt8;
typedef std::int16_t OdInt16;
typedef std::uint16_t OdUInt16;
typedef std::int32_t OdInt32;
typedef std::uint32_t OdUInt32;
typedef std::int64_t OdInt64;
typedef std::uint64_t OdUInt64;
typedef std::intptr_t OdIntPtr;
typedef std::uint8_t OdUInt8;

/// One UTF-16 code unit. Platform strings, DWG strings and the Chinese labels of the
/// property grid are sequences of these.
typedef char16_t OdChar;

/// A string literal of OdChar code units: OD_T("坐标") is u"坐标".
#define OD_T(x) u##x

/// Marker for graphics selection (sub-entity) markers.
typedef OdIntPtr OdGsMarker;

#endif
