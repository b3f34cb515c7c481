#include "StyleResolver.h"

#include "DbLayerTable.h"

#include <algorithm>

namespace custents {
namespace render {

namespace {

// The dark background CAD programs use for model space; light enough to tell from black
// strokes, dark enough for white ones.
constexpr Rgb kDarkBackground{33, 40, 48};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlack{0, 0, 0};

Rgb fromPacked(OdUInt32 rgb) {
  return Rgb{static_cast<std::uint8_t>((rgb >> 16) & 0xFF),
             static_cast<std::uint8_t>((rgb >> 8) & 0xFF), static_cast<std::uint8_t>(rgb & 0xFF)};
}

} // namespace

StyleResolver::StyleResolver(const RenderOptions& options) : m_options(options) {
  const bool dark = options.background == Background::kDark;
  m_background = dark ? kDarkBackground : kWhite;
  m_foreground = dark ? kWhite : kBlack;
}

const StyleResolver::LayerFacts& StyleResolver::layerFacts(OdDbStub* layer) {
  auto found = m_layers.find(layer);
  if (found != m_layers.end())
    return found->second;
  LayerFacts facts;
  facts.color.setColorIndex(OdCmEntityColor::kACIforeground);
  if (layer) {
    OdDbLayerTableRecordPtr record =
        OdDbLayerTableRecord::cast(OdDbObjectId(layer).openObject(OdDb::kForRead).get());
    if (!record.isNull()) {
      facts.shows = !record->isOff() && !record->isFrozen();
      facts.color = record->color().entityColor();
      facts.lineWeight = record->lineWeight();
    }
  }
  return m_layers.emplace(layer, facts).first->second;
}

bool StyleResolver::layerShows(OdDbStub* layer) {
  return layerFacts(layer).shows;
}

Rgb StyleResolver::concreteColor(const OdCmEntityColor& color) const {
  switch (color.colorMethod()) {
  case OdCmEntityColor::kByColor:
    return Rgb{color.red(), color.green(), color.blue()};
  case OdCmEntityColor::kByACI:
  case OdCmEntityColor::kByPen: {
    const OdUInt16 index = color.colorIndex();
    // ACI 7 is the foreground: the palette's white would vanish on a white background.
    if (index == OdCmEntityColor::kACIforeground || index == 0 || index > 255)
      return m_foreground;
    return fromPacked(OdCmEntityColor::lookUpRGB(static_cast<OdUInt8>(index)));
  }
  default:
    return m_foreground;
  }
}

Rgb StyleResolver::color(const OdCmEntityColor& color, OdDbStub* layer) {
  if (color.isByLayer()) {
    const OdCmEntityColor& layerColor = layerFacts(layer).color;
    // A layer's colour is always concrete in a sane drawing; anything else shows as the
    // foreground rather than recursing.
    return layerColor.isByLayer() ? m_foreground : concreteColor(layerColor);
  }
  return concreteColor(color);
}

double StyleResolver::lineWidth(OdDb::LineWeight lineWeight, OdDbStub* layer) {
  if (lineWeight == OdDb::kLnWtByLayer)
    lineWeight = layerFacts(layer).lineWeight;
  if (lineWeight < 0)
    return m_options.lineWidth;
  const double pixels = lineWeight / 100.0 * m_options.pixelsPerMillimetre;
  return std::max(pixels, m_options.lineWidth);
}

} // namespace render
} // namespace custents
