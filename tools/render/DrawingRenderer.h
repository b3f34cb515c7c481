#ifndef CUSTENTS_RENDER_DRAWING_RENDERER_H
#define CUSTENTS_RENDER_DRAWING_RENDERER_H

/// Pictures of drawings: what the application's render command writes and what a person looks
/// at to see that entities draw what they should. Every entity is drawn through its own
/// worldDraw (and viewportDraw when worldDraw asks for it), so the picture shows exactly the
/// graphics the entity produces for any other consumer.

#include "RenderOptions.h"

#include <cstddef>
#include <string>
#include <vector>

class OdDbDatabase;
class OdDbEntity;

namespace custents {
namespace render {

/// The outcome of one rendering. A failure leaves no promise about the output file.
struct RenderResult {
  bool ok = false;
  /// Why it failed, for a person to read; empty on success.
  std::string error;
  /// Things worth knowing about a success: an empty drawing, entities that failed to draw.
  std::vector<std::string> notes;
  /// The picture's size in pixels.
  int width = 0;
  int height = 0;
  /// Entities drawn and primitives that reached the picture.
  std::size_t entitiesDrawn = 0;
  std::size_t primitives = 0;

  explicit operator bool() const { return ok; }
};

/// Renders model space of a database, or a given list of entities, fitted into the picture.
///
/// The view is the world XY plane seen from above (looking down -Z, Y up); 3D geometry is
/// projected by dropping z. The view is fitted to the union of the drawn entities' extents
/// (getGeomExtents, or the extents of what they draw when that fails) with the margin
/// around it, keeping the aspect ratio. Entities that are invisible or on a layer that is off
/// or frozen are neither drawn nor counted in the extents.
///
/// A drawing with nothing to draw gives a blank picture of the requested size and a note.
class DrawingRenderer {
public:
  explicit DrawingRenderer(const RenderOptions& options = RenderOptions());

  const RenderOptions& options() const { return m_options; }

  RenderResult renderSvg(OdDbDatabase* database, const std::string& path) const;
  RenderResult renderPng(OdDbDatabase* database, const std::string& path) const;
  /// Entities need not be in a database; those that are take their layers from it. Null
  /// entries are skipped.
  RenderResult renderSvg(const std::vector<const OdDbEntity*>& entities,
                         const std::string& path) const;
  RenderResult renderPng(const std::vector<const OdDbEntity*>& entities,
                         const std::string& path) const;

  /// The SVG document as text, for callers that print it or embed it rather than save it.
  RenderResult svgDocument(OdDbDatabase* database, std::string& svg) const;
  RenderResult svgDocument(const std::vector<const OdDbEntity*>& entities, std::string& svg) const;

private:
  RenderOptions m_options;
};

} // namespace render
} // namespace custents

#endif
