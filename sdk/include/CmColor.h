#ifndef OD_CM_COLOR_H
#define OD_CM_COLOR_H

/// Entity colours. A colour is one packed 32-bit value: the colour method in the high byte
/// and the method's data below it (0xC0000100 by layer, 0xC1000000 by block, 0xC30000nn ACI
/// index nn, 0xC2RRGGBB true colour). The packed value is what the property grid and the
/// DWG CMC field carry, so every setter keeps it in one canonical form per method.

#include "OdResult.h"
#include "OdString.h"

class OdDbDwgFiler;

class OdCmEntityColor {
public:
  enum ColorMethod {
    kByLayer = 0xC0,
    kByBlock = 0xC1,
    kByColor = 0xC2,
    kByACI = 0xC3,
    kByPen = 0xC4,
    kForeground = 0xC5,
    kLayerOff = 0xC6,
    kLayerFrozen = 0xC7,
    kNone = 0xC8
  };

  /// AutoCAD Color Index values with a meaning of their own.
  enum ACIcolorMethod {
    kACIbyBlock = 0,
    kACIclear = 0,
    kACIRed = 1,
    kACIYellow = 2,
    kACIGreen = 3,
    kACICyan = 4,
    kACIBlue = 5,
    kACIMagenta = 6,
    kACIWhite = 7,
    kACIforeground = 7,
    kACIstandard = 7,
    kACImaxStandard = 255,
    kACIbyLayer = 256,
    kACInone = 257
  };

  /// By layer, the colour every new entity starts with.
  OdCmEntityColor() = default;
  OdCmEntityColor(OdUInt8 red, OdUInt8 green, OdUInt8 blue) { setRGB(red, green, blue); }

  /// The packed value, method byte included.
  OdUInt32 color() const { return m_value; }
  /// Accepts any packed value whose high byte is one of ColorMethod and stores its canonical
  /// form: by layer and by block drop the data bits (0xC0000000 from DXF becomes
  /// 0xC0000100), an ACI value keeps its low byte (index 0 means by block), a true colour its
  /// 24 RGB bits. Another high byte returns eInvalidInput and changes nothing.
  OdResult setColor(OdUInt32 packed);

  ColorMethod colorMethod() const { return static_cast<ColorMethod>(m_value >> 24); }
  /// Switches method and keeps what the new method can express: to kByColor the colour's
  /// current red/green/blue; to kByACI or kByPen its current index (a true colour's nearest
  /// palette entry, kACIforeground when it has no index of 1..255). A value that is not a
  /// ColorMethod returns eInvalidInput and changes nothing.
  OdResult setColorMethod(ColorMethod method);

  /// Sets a true colour (method kByColor).
  void setRGB(OdUInt8 red, OdUInt8 green, OdUInt8 blue);
  /// True colour: its own components; ACI, by pen and foreground: the palette entry of the
  /// index; by layer, by block and the other methods: 0 (they have no colour of their own).
  OdUInt8 red() const;
  OdUInt8 green() const;
  OdUInt8 blue() const;

  /// 0 sets by block, 256 by layer, 1..255 that ACI index. 257 and above return
  /// eInvalidInput and change nothing.
  OdResult setColorIndex(OdUInt16 colorIndex);
  /// By layer 256, by block 0, ACI and by pen their index, foreground 7, a true colour the
  /// nearest palette entry (lookUpACI), and kACInone (257) for layer off, layer frozen and
  /// none.
  OdUInt16 colorIndex() const;

  bool isByLayer() const { return colorMethod() == kByLayer; }
  bool isByBlock() const { return colorMethod() == kByBlock; }
  bool isByColor() const { return colorMethod() == kByColor; }
  bool isByACI() const { return colorMethod() == kByACI; }
  bool isByPen() const { return colorMethod() == kByPen; }
  bool isForeground() const { return colorMethod() == kForeground; }
  bool isNone() const { return colorMethod() == kNone; }

  /// The standard AutoCAD Color Index palette as 0x00RRGGBB. Entry 7 is white (shown black
  /// on a light background); entry 0 stands for "by block", has no colour of its own and
  /// reads as black.
  static OdUInt32 lookUpRGB(OdUInt8 colorIndex);
  /// The palette entry (1..255) nearest to a true colour by squared RGB distance; on a tie
  /// the lowest index wins, so pure red gives 1, not its duplicate 10.
  static OdUInt8 lookUpACI(OdUInt8 red, OdUInt8 green, OdUInt8 blue);

  friend bool operator==(const OdCmEntityColor& a, const OdCmEntityColor& b) {
    return a.m_value == b.m_value;
  }
  friend bool operator!=(const OdCmEntityColor& a, const OdCmEntityColor& b) { return !(a == b); }

private:
  OdUInt32 m_value = 0xC0000100u;
};

/// The colour record that entities, layers and the property grid keep: the packed colour and,
/// for colours picked from a colour book, the colour's and the book's names.
class OdCmColor {
public:
  OdCmColor() = default;
  explicit OdCmColor(const OdCmEntityColor& color) : m_color(color) {}

  OdUInt32 color() const { return m_color.color(); }
  OdResult setColor(OdUInt32 packed) { return m_color.setColor(packed); }
  OdCmEntityColor::ColorMethod colorMethod() const { return m_color.colorMethod(); }
  OdResult setColorMethod(OdCmEntityColor::ColorMethod method) {
    return m_color.setColorMethod(method);
  }
  void setRGB(OdUInt8 red, OdUInt8 green, OdUInt8 blue) { m_color.setRGB(red, green, blue); }
  OdUInt8 red() const { return m_color.red(); }
  OdUInt8 green() const { return m_color.green(); }
  OdUInt8 blue() const { return m_color.blue(); }
  OdResult setColorIndex(OdUInt16 colorIndex) { return m_color.setColorIndex(colorIndex); }
  OdUInt16 colorIndex() const { return m_color.colorIndex(); }

  bool isByLayer() const { return m_color.isByLayer(); }
  bool isByBlock() const { return m_color.isByBlock(); }
  bool isByACI() const { return m_color.isByACI(); }
  bool isByColor() const { return m_color.isByColor(); }
  bool isByPen() const { return m_color.isByPen(); }
  bool isForeground() const { return m_color.isForeground(); }
  bool isNone() const { return m_color.isNone(); }

  /// The names travel with the record as given; changing the colour does not clear them, so
  /// a reader may set colour and names in either order. A book name without a colour name
  /// is refused (false, nothing changed): a book entry is always named.
  bool setNames(const OdString& colorName, const OdString& bookName = OdString());
  const OdString& colorName() const { return m_colorName; }
  const OdString& bookName() const { return m_bookName; }

  OdCmEntityColor entityColor() const { return m_color; }

  /// Files the record as the filer's colour field. A null filer throws
  /// OdError(eNullObjectPointer).
  void dwgOut(OdDbDwgFiler* filer) const;
  void dwgIn(OdDbDwgFiler* filer);

  friend bool operator==(const OdCmColor& a, const OdCmColor& b) {
    return a.m_color == b.m_color && a.m_colorName == b.m_colorName && a.m_bookName == b.m_bookName;
  }
  friend bool operator!=(const OdCmColor& a, const OdCmColor& b) { return !(a == b); }

private:
  OdCmEntityColor m_color;
  OdString m_colorName;
  OdString m_bookName;
};

#endif
