#include "CmColor.h"

#include "DbFiler.h"
#include "OdError.h"

#include <array>

namespace {

constexpr OdUInt32 packRGB(int red, int green, int blue) {
  return (static_cast<OdUInt32>(red) << 16) | (static_cast<OdUInt32>(green) << 8) |
         static_cast<OdUInt32>(blue);
}

/// The standard AutoCAD Color Index palette. Entries 10 to 249 follow a regular pattern: 24
/// hues 15 degrees apart, ten shades each. Even shades are fully saturated at the brightness
/// levels 255, 204, 153, 127 and 76; odd shades are the same levels with the weaker
/// components raised to half the level. Between the six primary and secondary hues the
/// changing component moves in quarter steps, rounded down. Writing the rule instead of
/// 720 numbers keeps the table free of typing slips; the tests check it against the
/// published values.
constexpr std::array<OdUInt32, 256> buildPalette() {
  std::array<OdUInt32, 256> palette{};
  palette[0] = packRGB(0, 0, 0);
  palette[1] = packRGB(255, 0, 0);
  palette[2] = packRGB(255, 255, 0);
  palette[3] = packRGB(0, 255, 0);
  palette[4] = packRGB(0, 255, 255);
  palette[5] = packRGB(0, 0, 255);
  palette[6] = packRGB(255, 0, 255);
  palette[7] = packRGB(255, 255, 255);
  palette[8] = packRGB(128, 128, 128);
  palette[9] = packRGB(192, 192, 192);
  const int levels[5] = {255, 204, 153, 127, 76};
  for (int index = 10; index < 250; ++index) {
    const int hue = (index - 10) / 10;
    const int shade = (index - 10) % 10;
    const int high = levels[shade / 2];
    const int low = (shade % 2) ? high / 2 : 0;
    const int step = hue % 4;
    const int rising = low + (high - low) * step / 4;
    const int falling = low + (high - low) * (4 - step) / 4;
    switch (hue / 4) {
    case 0: // red towards yellow
      palette[index] = packRGB(high, rising, low);
      break;
    case 1: // yellow towards green
      palette[index] = packRGB(falling, high, low);
      break;
    case 2: // green towards cyan
      palette[index] = packRGB(low, high, rising);
      break;
    case 3: // cyan towards blue
      palette[index] = packRGB(low, falling, high);
      break;
    case 4: // blue towards magenta
      palette[index] = packRGB(rising, low, high);
      break;
    default: // magenta towards red
      palette[index] = packRGB(high, low, falling);
      break;
    }
  }
  const int greys[6] = {51, 91, 132, 173, 214, 255};
  for (int i = 0; i < 6; ++i)
    palette[250 + i] = packRGB(greys[i], greys[i], greys[i]);
  return palette;
}

constexpr std::array<OdUInt32, 256> kPalette = buildPalette();

constexpr OdUInt32 kByLayerValue = 0xC0000100u;
constexpr OdUInt32 kByBlockValue = 0xC1000000u;

OdUInt32 methodBits(OdCmEntityColor::ColorMethod method) {
  return static_cast<OdUInt32>(method) << 24;
}

bool isColorMethod(OdUInt32 methodByte) {
  return methodByte >= OdCmEntityColor::kByLayer && methodByte <= OdCmEntityColor::kNone;
}

} // namespace

OdUInt32 OdCmEntityColor::lookUpRGB(OdUInt8 colorIndex) {
  return kPalette[colorIndex];
}

OdUInt8 OdCmEntityColor::lookUpACI(OdUInt8 red, OdUInt8 green, OdUInt8 blue) {
  int best = 1;
  long bestDistance = -1;
  for (int index = 1; index < 256; ++index) {
    const OdUInt32 rgb = kPalette[index];
    const long dr = static_cast<long>((rgb >> 16) & 0xFF) - red;
    const long dg = static_cast<long>((rgb >> 8) & 0xFF) - green;
    const long db = static_cast<long>(rgb & 0xFF) - blue;
    const long distance = dr * dr + dg * dg + db * db;
    if (bestDistance < 0 || distance < bestDistance) {
      best = index;
      bestDistance = distance;
    }
  }
  return static_cast<OdUInt8>(best);
}

OdResult OdCmEntityColor::setColor(OdUInt32 packed) {
  const OdUInt32 methodByte = packed >> 24;
  if (!isColorMethod(methodByte))
    return eInvalidInput;
  switch (static_cast<ColorMethod>(methodByte)) {
  case kByLayer:
    m_value = kByLayerValue;
    break;
  case kByBlock:
    m_value = kByBlockValue;
    break;
  case kByColor:
    m_value = packed;
    break;
  case kByACI:
    m_value = (packed & 0xFF) == 0 ? kByBlockValue : methodBits(kByACI) | (packed & 0xFF);
    break;
  case kByPen:
    m_value = methodBits(kByPen) | (packed & 0xFF);
    break;
  case kForeground:
    m_value = methodBits(kForeground) | kACIforeground;
    break;
  default: // layer off, layer frozen, none: no data of their own
    m_value = packed & 0xFF000000u;
    break;
  }
  return eOk;
}

OdResult OdCmEntityColor::setColorMethod(ColorMethod method) {
  if (!isColorMethod(static_cast<OdUInt32>(method)))
    return eInvalidInput;
  switch (method) {
  case kByColor:
    setRGB(red(), green(), blue());
    break;
  case kByACI:
  case kByPen: {
    const OdUInt16 index = colorIndex();
    const OdUInt32 aci =
        (index >= 1 && index <= kACImaxStandard) ? index : OdUInt32(kACIforeground);
    m_value = methodBits(method) | aci;
    break;
  }
  default:
    return setColor(methodBits(method));
  }
  return eOk;
}

void OdCmEntityColor::setRGB(OdUInt8 red, OdUInt8 green, OdUInt8 blue) {
  m_value = methodBits(kByColor) | packRGB(red, green, blue);
}

namespace {
/// The 0x00RRGGBB that the colour shows, or 0 for methods without a colour of their own.
OdUInt32 shownRGB(const OdCmEntityColor& color) {
  switch (color.colorMethod()) {
  case OdCmEntityColor::kByColor:
    return color.color() & 0xFFFFFFu;
  case OdCmEntityColor::kByACI:
  case OdCmEntityColor::kByPen:
  case OdCmEntityColor::kForeground:
    return OdCmEntityColor::lookUpRGB(static_cast<OdUInt8>(color.color() & 0xFF));
  default:
    return 0;
  }
}
} // namespace

OdUInt8 OdCmEntityColor::red() const {
  return static_cast<OdUInt8>(shownRGB(*this) >> 16);
}
OdUInt8 OdCmEntityColor::green() const {
  return static_cast<OdUInt8>(shownRGB(*this) >> 8);
}
OdUInt8 OdCmEntityColor::blue() const {
  return static_cast<OdUInt8>(shownRGB(*this));
}

OdResult OdCmEntityColor::setColorIndex(OdUInt16 colorIndex) {
  if (colorIndex == kACIbyBlock)
    m_value = kByBlockValue;
  else if (colorIndex == kACIbyLayer)
    m_value = kByLayerValue;
  else if (colorIndex <= kACImaxStandard)
    m_value = methodBits(kByACI) | colorIndex;
  else
    return eInvalidInput;
  return eOk;
}

OdUInt16 OdCmEntityColor::colorIndex() const {
  switch (colorMethod()) {
  case kByLayer:
    return kACIbyLayer;
  case kByBlock:
    return kACIbyBlock;
  case kByACI:
  case kByPen:
  case kForeground:
    return static_cast<OdUInt16>(m_value & 0xFF);
  case kByColor:
    return lookUpACI(red(), green(), blue());
  default:
    return kACInone;
  }
}

bool OdCmColor::setNames(const OdString& colorName, const OdString& bookName) {
  if (colorName.isEmpty() && !bookName.isEmpty())
    return false;
  m_colorName = colorName;
  m_bookName = bookName;
  return true;
}

void OdCmColor::dwgOut(OdDbDwgFiler* filer) const {
  if (!filer)
    throw OdError(eNullObjectPointer);
  filer->wrCmColor(*this);
}

void OdCmColor::dwgIn(OdDbDwgFiler* filer) {
  if (!filer)
    throw OdError(eNullObjectPointer);
  filer->rdCmColor(*this);
}
