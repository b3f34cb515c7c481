#include "DrawingRenderer.h"

#include "CairoPainter.h"
#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbEntity.h"
#include "Gi/GiExtentsCollector.h"
#include "OdError.h"
#include "RenderSink.h"
#include "StyleResolver.h"
#include "SvgWriter.h"
#include "ViewFit.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>

namespace custents {
namespace render {

namespace {

/// How a person finds the entity in the drawing: its class and handle.
std::string entityLabel(const OdDbEntity* entity) {
  std::string label = entity->isA() ? entity->isA()->name().toUtf8() : std::string("entity");
  if (entity->isDBRO())
    label += " " + entity->getDbHandle().ascii().toUtf8();
  return label;
}

bool isFinite(const OdGePoint3d& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

/// The box an entity covers: its geometric extents, or when it has none to report, the
/// extents of what it draws. False when neither gives a finite box.
bool entityExtents(const OdDbEntity* entity, OdGeExtents3d& extents) {
  if (entity->getGeomExtents(extents) != eOk || !extents.isValidExtents()) {
    OdGiExtentsCollector collector(entity->database());
    if (!entity->worldDraw(&collector))
      entity->viewportDraw(&collector);
    extents = collector.extents();
  }
  return extents.isValidExtents() && isFinite(extents.minPoint()) && isFinite(extents.maxPoint());
}

/// The entities that show: not null, not invisible, not on a layer that is off or frozen.
/// Entities that fail while being asked are left out with a note.
std::vector<const OdDbEntity*> shownEntities(const std::vector<const OdDbEntity*>& entities,
                                             StyleResolver& styles, RenderResult& result) {
  std::vector<const OdDbEntity*> shown;
  for (const OdDbEntity* entity : entities) {
    if (!entity)
      continue;
    try {
      if (entity->visibility() == OdDb::kInvisible || !styles.layerShows(entity->layerId()))
        continue;
      shown.push_back(entity);
    } catch (const std::exception& error) {
      result.notes.push_back(entityLabel(entity) + " was left out: " + error.what());
    }
  }
  return shown;
}

/// Fills scene with the picture of the entities, or explains in the result why it cannot.
RenderResult buildScene(const RenderOptions& options,
                        const std::vector<const OdDbEntity*>& entities, RenderScene& scene) {
  RenderResult result;
  result.error = options.validate();
  if (!result.error.empty())
    return result;

  StyleResolver styles(options);
  scene = RenderScene();
  scene.background = styles.background();
  scene.fontFamily = options.fontFamily;
  scene.width = options.width;
  scene.height = options.height;

  std::vector<const OdDbEntity*> drawable;
  bool haveBox = false;
  PlanBox box;
  for (const OdDbEntity* entity : shownEntities(entities, styles, result)) {
    OdGeExtents3d extents;
    try {
      if (!entityExtents(entity, extents)) {
        drawable.push_back(entity);
        continue;
      }
    } catch (const std::exception& error) {
      result.notes.push_back(entityLabel(entity) + " was left out: " + error.what());
      continue;
    }
    drawable.push_back(entity);
    const PlanBox entityBox{extents.minPoint().x, extents.minPoint().y, extents.maxPoint().x,
                            extents.maxPoint().y};
    if (!haveBox) {
      box = entityBox;
      haveBox = true;
      continue;
    }
    box.minX = std::min(box.minX, entityBox.minX);
    box.minY = std::min(box.minY, entityBox.minY);
    box.maxX = std::max(box.maxX, entityBox.maxX);
    box.maxY = std::max(box.maxY, entityBox.maxY);
  }

  if (!haveBox) {
    result.notes.push_back("nothing to draw: the picture is blank");
    result.ok = true;
    result.width = scene.width;
    result.height = scene.height;
    return result;
  }

  ViewTransform view;
  if (options.pixelsPerUnit > 0.0) {
    const double width =
        std::ceil((box.maxX - box.minX) * options.pixelsPerUnit + 2.0 * options.margin);
    const double height =
        std::ceil((box.maxY - box.minY) * options.pixelsPerUnit + 2.0 * options.margin);
    if (!(width <= kMaxPictureSide) || !(height <= kMaxPictureSide) ||
        width * height > kMaxPicturePixels) {
      result.error = "the drawing at " + std::to_string(options.pixelsPerUnit) +
                     " pixels per unit needs a picture larger than " +
                     std::to_string(kMaxPictureSide) + " pixels a side or " +
                     std::to_string(static_cast<long long>(kMaxPicturePixels)) +
                     " pixels; use a smaller scale";
      return result;
    }
    scene.width = std::max(1, static_cast<int>(width));
    scene.height = std::max(1, static_cast<int>(height));
    view = viewAtScale(box, scene.height, options.pixelsPerUnit, options.margin);
  } else {
    view = fitView(box, scene.width, scene.height, options.margin);
  }

  RenderSink sink(scene, view, styles);
  for (const OdDbEntity* entity : drawable) {
    try {
      sink.drawEntity(entity);
      ++result.entitiesDrawn;
    } catch (const std::exception& error) {
      result.notes.push_back(entityLabel(entity) + " could not be drawn: " + error.what());
    }
  }
  result.ok = true;
  result.width = scene.width;
  result.height = scene.height;
  result.primitives = scene.primitives.size();
  return result;
}

/// Model space's entities, open for read while the caller holds the pointers.
std::vector<OdDbEntityPtr> modelSpaceEntities(OdDbDatabase* database, RenderResult& result) {
  std::vector<OdDbEntityPtr> entities;
  OdDbBlockTableRecordPtr modelSpace =
      OdDbBlockTableRecord::cast(database->getModelSpaceId().openObject(OdDb::kForRead).get());
  if (modelSpace.isNull()) {
    result.error = "the drawing has no model space";
    return entities;
  }
  for (const OdDbObjectId& id : modelSpace->entityIds()) {
    OdDbEntityPtr entity = OdDbEntity::cast(id.openObject(OdDb::kForRead).get());
    if (entity.isNull()) {
      result.notes.push_back("object " + id.getHandle().ascii().toUtf8() +
                             " in model space is not an entity and was left out");
      continue;
    }
    entities.push_back(entity);
  }
  return entities;
}

/// Renders model space through render(entities), keeping the notes about model space itself.
template <class Render> RenderResult renderModelSpace(OdDbDatabase* database, Render render) {
  RenderResult opened;
  if (!database) {
    opened.error = "no drawing to render";
    return opened;
  }
  std::vector<OdDbEntityPtr> held;
  try {
    held = modelSpaceEntities(database, opened);
  } catch (const std::exception& error) {
    opened.error = std::string("cannot read model space: ") + error.what();
  }
  if (!opened.error.empty())
    return opened;
  std::vector<const OdDbEntity*> entities;
  for (const OdDbEntityPtr& entity : held)
    entities.push_back(entity.get());
  RenderResult result = render(entities);
  result.notes.insert(result.notes.begin(), opened.notes.begin(), opened.notes.end());
  return result;
}

std::string writeTextFile(const std::string& path, const std::string& text) {
  errno = 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file)
    return "cannot write '" + path + "': " + std::strerror(errno);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  file.close();
  if (!file)
    return "cannot write '" + path + "': " + std::strerror(errno);
  return std::string();
}

} // namespace

DrawingRenderer::DrawingRenderer(const RenderOptions& options) : m_options(options) {}

RenderResult DrawingRenderer::svgDocument(const std::vector<const OdDbEntity*>& entities,
                                          std::string& svg) const {
  RenderScene scene;
  RenderResult result = buildScene(m_options, entities, scene);
  if (result.ok)
    svg = writeSvg(scene);
  return result;
}

RenderResult DrawingRenderer::renderSvg(const std::vector<const OdDbEntity*>& entities,
                                        const std::string& path) const {
  std::string svg;
  RenderResult result = svgDocument(entities, svg);
  if (!result.ok)
    return result;
  result.error = writeTextFile(path, svg);
  result.ok = result.error.empty();
  return result;
}

RenderResult DrawingRenderer::renderPng(const std::vector<const OdDbEntity*>& entities,
                                        const std::string& path) const {
  RenderScene scene;
  RenderResult result = buildScene(m_options, entities, scene);
  if (!result.ok)
    return result;
  result.error = writePng(scene, path);
  result.ok = result.error.empty();
  return result;
}

RenderResult DrawingRenderer::svgDocument(OdDbDatabase* database, std::string& svg) const {
  return renderModelSpace(database, [&](const std::vector<const OdDbEntity*>& entities) {
    return svgDocument(entities, svg);
  });
}

RenderResult DrawingRenderer::renderSvg(OdDbDatabase* database, const std::string& path) const {
  return renderModelSpace(database, [&](const std::vector<const OdDbEntity*>& entities) {
    return renderSvg(entities, path);
  });
}

RenderResult DrawingRenderer::renderPng(OdDbDatabase* database, const std::string& path) const {
  return renderModelSpace(database, [&](const std::vector<const OdDbEntity*>& entities) {
    return renderPng(entities, path);
  });
}

} // namespace render
} // namespace custents
