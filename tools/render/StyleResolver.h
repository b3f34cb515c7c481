#ifndef CUSTENTS_RENDER_STYLE_RESOLVER_H
#define CUSTENTS_RENDER_STYLE_RESOLVER_H

/// Turns the traits an entity draws with (colour, layer, lineweight) into what a picture
/// needs: an RGB colour, a width in pixels and whether the primitive shows at all. Layers are
/// opened once each and remembered for the rendering.

#include "CmColor.h"
#include "DbLineWeight.h"
#include "RenderOptions.h"
#include "RenderScene.h"

#include <map>

class OdDbStub;

namespace custents {
namespace render {

class StyleResolver {
public:
  explicit StyleResolver(const RenderOptions& options);

  Rgb background() const { return m_background; }
  /// ACI 7 and the foreground method: black on white, white on dark.
  Rgb foreground() const { return m_foreground; }

  /// True unless the layer is off or frozen. A null or unopenable layer shows.
  bool layerShows(OdDbStub* layer);
  /// ACI through the standard palette, true colour as given, by layer through the layer's
  /// colour (layer is the one in force for the primitive), by block and anything without a
  /// colour of its own as the foreground.
  Rgb color(const OdCmEntityColor& color, OdDbStub* layer);
  /// Lineweights in pixels at the options' density, never below the default line width; by
  /// layer takes the layer's, by block and default the default line width.
  double lineWidth(OdDb::LineWeight lineWeight, OdDbStub* layer);

private:
  struct LayerFacts {
    bool shows = true;
    OdCmEntityColor color;
    OdDb::LineWeight lineWeight = OdDb::kLnWtByLwDefault;
  };

  const LayerFacts& layerFacts(OdDbStub* layer);
  Rgb concreteColor(const OdCmEntityColor& color) const;

  RenderOptions m_options;
  Rgb m_background;
  Rgb m_foreground;
  std::map<OdDbStub*, LayerFacts> m_layers;
};

} // namespace render
} // namespace custents

#endif
