#include "PlainExport.h"

#include "DbArc.h"
#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDxfProxy.h"
#include "DbHatch.h"
#include "DbLayerTable.h"
#include "DbLine.h"
#include "DbLinetypeTable.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "DbProxyEntity.h"
#include "DbText.h"
#include "Ge/GeMatrix3d.h"
#include "Ge/GePoint2d.h"
#include "Ge/GePoint2dArray.h"
#include "OdError.h"

#include <cmath>
#include <exception>
#include <stdexcept>
#include <utility>

namespace custents {
namespace plain {

namespace {

const double kPi = 3.14159265358979323846;
/// Points closer than this are one point, and a polyline whose points stray less than this
/// from its plane lies in it. Drawings are in metres or millimetres; a micro-unit is far below
/// anything drawn.
const double kTolerance = 1e-9;

std::string utf8(const OdString& text) {
  return text.toUtf8();
}

std::string resultText(OdResult result) {
  return utf8(OdError(result).description());
}

/// The class a person knows the entity by: a proxy's original class.
std::string classNameOf(const OdDbEntity* entity) {
  if (const OdDbProxyEntity* proxy = OdDbProxyEntity::cast(entity).get())
    return utf8(proxy->originalClassName());
  return utf8(entity->isA()->name());
}

std::string describe(const OdDbEntity* entity) {
  return classNameOf(entity) + " " + utf8(entity->getDbHandle().ascii());
}

template <class Entity> OdSmartPtr<Entity> withProperties(const OdDbEntity* source) {
  OdSmartPtr<Entity> entity = Entity::createObject();
  entity->setPropertiesFrom(source);
  return entity;
}

/// Applies the traits the graphics set on purpose: anything that differs from the traits a
/// fresh drawing session starts with.
void applyTraits(OdDbEntity* entity, const OdGiSubEntityTraitsData& traits) {
  static const OdGiSubEntityTraitsData kFresh;
  if (!(traits.trueColor() == kFresh.trueColor())) {
    entity->setColor(OdCmColor(traits.trueColor()));
  }
  const OdDbObjectId layer(traits.layer());
  if (!layer.isNull() && layer.database() == entity->database() && layer.objectClass() &&
      layer.objectClass()->isDerivedFrom(OdDbLayerTableRecord::desc()))
    entity->setLayer(layer);
  const OdDbObjectId linetype(traits.lineType());
  if (!linetype.isNull() && linetype.database() == entity->database() && linetype.objectClass() &&
      linetype.objectClass()->isDerivedFrom(OdDbLinetypeTableRecord::desc()))
    entity->setLinetype(linetype);
  if (traits.lineWeight() != kFresh.lineWeight())
    entity->setLineWeight(traits.lineWeight());
}

/// The coordinates of points in the plane with this normal (arbitrary-axis rule), and whether
/// they all lie at one elevation in it.
struct PlanePoints {
  OdGePoint2dArray points;
  double elevation = 0.0;
  bool planar = true;
};

PlanePoints toPlane(const std::vector<OdGePoint3d>& points, const OdGeVector3d& normal) {
  const OdGeMatrix3d toPlaneMatrix = OdGeMatrix3d::worldToPlane(normal);
  PlanePoints plane;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const OdGePoint3d p = toPlaneMatrix * points[i];
    if (i == 0)
      plane.elevation = p.z;
    else if (std::fabs(p.z - plane.elevation) > kTolerance * (1.0 + std::fabs(plane.elevation)))
      plane.planar = false;
    plane.points.append(OdGePoint2d(p.x, p.y));
  }
  return plane;
}

/// The angle of a world direction in the plane with this normal, from the plane's X axis.
double angleInPlane(const OdGeVector3d& direction, const OdGeVector3d& normal) {
  OdGeVector3d v = direction;
  v.transformBy(OdGeMatrix3d::worldToPlane(normal));
  return std::atan2(v.y, v.x);
}

OdGeVector3d normalOrZ(const OdGeVector3d& normal) {
  return normal.isZeroLength() ? OdGeVector3d(0.0, 0.0, 1.0) : normal;
}

/// Consecutive points without repeats (and, for a closed chain, without a last point that
/// repeats the first).
std::vector<OdGePoint3d> distinctChain(const std::vector<OdGePoint3d>& points, bool closed) {
  std::vector<OdGePoint3d> chain;
  for (const OdGePoint3d& p : points)
    if (chain.empty() || chain.back().distanceTo(p) > kTolerance)
      chain.push_back(p);
  if (closed && chain.size() > 1 && chain.back().distanceTo(chain.front()) <= kTolerance)
    chain.pop_back();
  return chain;
}

class PieceMaker {
public:
  PieceMaker(const OdDbEntity* source, OdRxObjectPtrArray& out, std::vector<std::string>& notes)
      : m_source(source), m_out(out), m_notes(notes) {}

  void add(const OdGiRecord& record) {
    switch (record.kind) {
    case OdGiRecord::kCircle:
      addCircle(record.points.at(0), record.radius, normalOrZ(record.normal), record.traits);
      break;
    case OdGiRecord::kArc:
      addArc(record);
      break;
    case OdGiRecord::kPolyline:
      addChain(record.points, normalOrZ(record.normal), false, record.traits);
      break;
    case OdGiRecord::kPolygon:
      if (record.traits.fillType() == kOdGiFillAlways && addSolid(record))
        break;
      addChain(record.points, OdGeVector3d(0.0, 0.0, 1.0), true, record.traits);
      break;
    case OdGiRecord::kText:
      addText(record);
      break;
    case OdGiRecord::kXline:
    case OdGiRecord::kRay:
      m_notes.push_back(describe(m_source) +
                        ": an infinite line has no plain equivalent; left out");
      break;
    }
  }

private:
  template <class Entity> OdSmartPtr<Entity> make(const OdGiSubEntityTraitsData& traits) {
    OdSmartPtr<Entity> entity = withProperties<Entity>(m_source);
    applyTraits(entity.get(), traits);
    return entity;
  }

  void push(const OdDbEntityPtr& entity) { m_out.append(OdRxObjectPtr(entity.get())); }

  void addLine(const OdGePoint3d& from, const OdGePoint3d& to,
               const OdGiSubEntityTraitsData& traits) {
    if (from.distanceTo(to) <= kTolerance)
      return;
    OdDbLinePtr line = make<OdDbLine>(traits);
    line->setStartPoint(from);
    line->setEndPoint(to);
    push(line);
  }

  void addCircle(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                 const OdGiSubEntityTraitsData& traits) {
    if (!(radius > kTolerance) || !std::isfinite(radius))
      return;
    // Two half circles: a closed polyline is the circle every DXF reader draws, where an arc
    // with equal end angles is read differently by different readers.
    const PlanePoints plane = toPlane({center}, normal);
    const OdGePoint2d c = plane.points[0];
    OdDbPolylinePtr circle = make<OdDbPolyline>(traits);
    circle->setNormal(normal);
    circle->setElevation(plane.elevation);
    circle->addVertexAt(0, OdGePoint2d(c.x - radius, c.y), 1.0);
    circle->addVertexAt(1, OdGePoint2d(c.x + radius, c.y), 1.0);
    circle->setClosed(true);
    push(circle);
  }

  void addArc(const OdGiRecord& record) {
    const OdGeVector3d normal = normalOrZ(record.normal);
    const double sweep = record.sweepAngle;
    if (!std::isfinite(sweep) || std::fabs(sweep) <= kTolerance)
      return;
    const OdGePoint3d& center = record.points.at(0);
    const OdGePoint3d& start = record.points.at(1);
    const OdGePoint3d& end = record.points.at(2);
    if (std::fabs(sweep) >= 2.0 * kPi - kTolerance) {
      addCircle(center, record.radius, normal, record.traits);
    } else if (record.radius > kTolerance && std::isfinite(record.radius)) {
      const double from = angleInPlane(record.startVector, normal);
      OdDbArcPtr arc = make<OdDbArc>(record.traits);
      arc->setNormal(normal);
      arc->setCenter(center);
      arc->setRadius(record.radius);
      // An arc runs counter-clockwise; a clockwise sweep is the same arc from its other end.
      arc->setStartAngle(sweep > 0 ? from : from + sweep);
      arc->setEndAngle(sweep > 0 ? from + sweep : from);
      push(arc);
    }
    if (record.arcType == kOdGiArcSector) {
      addLine(center, start, record.traits);
      addLine(end, center, record.traits);
    } else if (record.arcType == kOdGiArcChord) {
      addLine(end, start, record.traits);
    }
  }

  void addChain(const std::vector<OdGePoint3d>& points, const OdGeVector3d& normal, bool closed,
                const OdGiSubEntityTraitsData& traits) {
    const std::vector<OdGePoint3d> chain = distinctChain(points, closed);
    if (chain.empty())
      return;
    if (chain.size() == 1) {
      OdDbPointPtr point = make<OdDbPoint>(traits);
      point->setPosition(chain.front());
      push(point);
      return;
    }
    const PlanePoints plane = toPlane(chain, normal);
    if (!plane.planar) {
      for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        addLine(chain[i], chain[i + 1], traits);
      if (closed)
        addLine(chain.back(), chain.front(), traits);
      return;
    }
    OdDbPolylinePtr polyline = make<OdDbPolyline>(traits);
    polyline->setNormal(normal);
    polyline->setElevation(plane.elevation);
    for (unsigned i = 0; i < plane.points.size(); ++i)
      polyline->addVertexAt(i, plane.points[i]);
    polyline->setClosed(closed && chain.size() > 2);
    push(polyline);
  }

  /// A filled polygon as a solid hatch; false when the outline encloses no area in one plane.
  bool addSolid(const OdGiRecord& record) {
    const std::vector<OdGePoint3d> chain = distinctChain(record.points, true);
    if (chain.size() < 3)
      return false;
    // The polygon's own plane: the first corner that is not on the line of the first two.
    OdGeVector3d normal;
    for (std::size_t i = 2; i < chain.size() && normal.isZeroLength(); ++i)
      normal = (chain[1] - chain[0]).crossProduct(chain[i] - chain[0]);
    if (normal.isZeroLength())
      return false;
    normal.normalize();
    // Keep the usual plane for flat drawings so that the hatch reads as 2D.
    if (normal.z < 0 && std::fabs(normal.x) <= kTolerance && std::fabs(normal.y) <= kTolerance)
      normal = -normal;
    const PlanePoints plane = toPlane(chain, normal);
    if (!plane.planar)
      return false;
    OdDbHatchPtr hatch = make<OdDbHatch>(record.traits);
    hatch->setNormal(normal);
    hatch->setElevation(plane.elevation);
    hatch->setPattern(OdDbHatch::kPreDefined, OD_T("SOLID"));
    hatch->appendLoop(OdDbHatch::kExternal | OdDbHatch::kPolyline, plane.points, OdGeDoubleArray());
    push(hatch);
    return true;
  }

  void addText(const OdGiRecord& record) {
    if (!(record.height > 0.0) || !std::isfinite(record.height)) {
      m_notes.push_back(describe(m_source) + ": a text without a height left out");
      return;
    }
    const OdGeVector3d normal = normalOrZ(record.normal);
    OdDbTextPtr text = make<OdDbText>(record.traits);
    text->setNormal(normal);
    text->setPosition(record.points.at(0));
    text->setHeight(record.height);
    text->setWidthFactor(record.width > 0.0 && std::isfinite(record.width) ? record.width : 1.0);
    text->setOblique(record.oblique);
    text->setRotation(angleInPlane(record.direction, normal));
    text->setTextString(record.text);
    push(text);
  }

  const OdDbEntity* m_source;
  OdRxObjectPtrArray& m_out;
  std::vector<std::string>& m_notes;
};

/// One custom entity's replacement, computed before anything in the database changes.
struct Replacement {
  OdDbObjectId entityId;
  OdDbObjectId ownerId;
  std::vector<OdDbEntityPtr> pieces;
};

class Exploder {
public:
  explicit Exploder(std::vector<std::string>& notes) : m_notes(notes) {}

  /// The standard entities for entity, or throws std::runtime_error with the reason.
  void explodeFully(const OdDbEntity* entity, std::vector<OdDbEntityPtr>& pieces, int depth) {
    if (depth > kMaxExplodeDepth)
      throw std::runtime_error("still not standard after " + std::to_string(kMaxExplodeDepth) +
                               " levels of explode");
    if (const OdDbProxyEntity* proxy = OdDbProxyEntity::cast(entity).get()) {
      fromProxyGraphics(proxy, pieces);
      return;
    }
    OdRxObjectPtrArray exploded;
    const OdResult result = entity->explode(exploded);
    if (result != eOk) {
      fromDrawing(entity, result, pieces);
      return;
    }
    for (const OdRxObjectPtr& object : exploded) {
      OdDbEntityPtr piece = OdDbEntity::cast(object.get());
      if (piece.isNull())
        throw std::runtime_error(
            "its explode gave " +
            (object.isNull() ? std::string("a null object") : "a " + utf8(object->isA()->name())) +
            ", not an entity");
      if (isCustomEntity(piece.get())) {
        explodeFully(piece.get(), pieces, depth + 1);
        continue;
      }
      if (piece->layerId().isNull())
        piece->setPropertiesFrom(entity);
      pieces.push_back(piece);
    }
  }

private:
  void addConverted(const OdGiRecorder& recorder, const OdDbEntity* entity,
                    std::vector<OdDbEntityPtr>& pieces) {
    OdRxObjectPtrArray converted = entitiesFromGraphics(recorder.records(), entity, m_notes);
    for (const OdRxObjectPtr& object : converted)
      pieces.push_back(OdDbEntity::cast(object.get()));
  }

  void fromProxyGraphics(const OdDbProxyEntity* proxy, std::vector<OdDbEntityPtr>& pieces) {
    OdGiRecorder recorder;
    recorder.setDatabase(proxy->database());
    recorder.setRegenType(kOdGiForExplode);
    const OdResult result = oddbReplayProxyGraphics(proxy->proxyData().graphicsMetafile(),
                                                    &recorder, proxy->database());
    if (result != eOk)
      throw std::runtime_error("its proxy graphics are damaged: " + resultText(result));
    addConverted(recorder, proxy, pieces);
  }

  void fromDrawing(const OdDbEntity* entity, OdResult explodeResult,
                   std::vector<OdDbEntityPtr>& pieces) {
    OdGiRecorder recorder;
    recorder.setDatabase(entity->database());
    recorder.setRegenType(kOdGiForExplode);
    if (!entity->worldDraw(&recorder))
      entity->viewportDraw(&recorder);
    if (recorder.records().empty())
      return;
    m_notes.push_back(describe(entity) + ": explode gave \"" + resultText(explodeResult) +
                      "\"; its graphics were converted instead");
    addConverted(recorder, entity, pieces);
  }

  std::vector<std::string>& m_notes;
};

std::string blockName(const OdDbObjectId& blockId) {
  OdDbObjectPtr block = blockId.openObject();
  if (OdDbSymbolTableRecord* record = OdDbSymbolTableRecord::cast(block).get())
    return utf8(record->getName());
  return utf8(blockId.getHandle().ascii());
}

} // namespace

bool isCustomEntity(const OdDbEntity* entity) {
  return entity && odDbDxfIsProxyClass(entity->isA());
}

OdRxObjectPtrArray entitiesFromGraphics(const std::vector<OdGiRecord>& records,
                                        const OdDbEntity* source, std::vector<std::string>& notes) {
  OdRxObjectPtrArray out;
  PieceMaker maker(source, out, notes);
  for (const OdGiRecord& record : records) {
    try {
      maker.add(record);
    } catch (const OdError& error) {
      notes.push_back(describe(source) +
                      ": a primitive was left out: " + utf8(error.description()));
    } catch (const std::out_of_range&) {
      notes.push_back(describe(source) + ": a primitive without its points was left out");
    }
  }
  return out;
}

PlainExportResult exportPlain(OdDbDatabase* database, const PlainExportOptions& options) {
  if (!database)
    throw std::invalid_argument("no drawing to export");
  PlainExportResult result;

  // Every block: model space, paper space and the block definitions alike.
  std::vector<OdDbObjectId> customIds;
  {
    OdDbSymbolTablePtr blocks = database->getBlockTableId().safeOpenObject();
    for (OdDbSymbolTableIteratorPtr it = blocks->newIterator(); !it->done(); it->step()) {
      OdDbBlockTableRecordPtr block = OdDbBlockTableRecord::cast(it->getRecord());
      if (block.isNull())
        continue;
      for (const OdDbObjectId& id : block->entityIds()) {
        OdRxClass* cls = id.objectClass();
        if (cls && cls->isDerivedFrom(OdDbEntity::desc()) && odDbDxfIsProxyClass(cls))
          customIds.push_back(id);
      }
    }
  }
  result.customEntities = customIds.size();

  std::vector<Replacement> replacements;
  replacements.reserve(customIds.size());
  std::vector<OdDbObjectId> failedIds;
  Exploder exploder(result.notes);
  for (std::size_t i = 0; i < customIds.size(); ++i) {
    OdDbEntityPtr entity = OdDbEntity::cast(customIds[i].safeOpenObject());
    if (!OdDbProxyEntity::cast(entity.get()).isNull())
      ++result.keptProxies;
    Replacement replacement;
    replacement.entityId = customIds[i];
    replacement.ownerId = entity->ownerId();
    try {
      exploder.explodeFully(entity.get(), replacement.pieces, 0);
      replacements.push_back(std::move(replacement));
    } catch (const OdError& error) {
      failedIds.push_back(customIds[i]);
      result.failures.push_back({utf8(entity->getDbHandle().ascii()), classNameOf(entity.get()),
                                 blockName(replacement.ownerId), utf8(error.description())});
    } catch (const std::exception& error) {
      failedIds.push_back(customIds[i]);
      result.failures.push_back({utf8(entity->getDbHandle().ascii()), classNameOf(entity.get()),
                                 blockName(replacement.ownerId), error.what()});
    }
    if (options.progress)
      options.progress(i + 1, customIds.size());
  }

  if (!result.failures.empty() && !options.keepGoing)
    return result;

  for (const Replacement& replacement : replacements) {
    OdDbBlockTableRecordPtr owner =
        OdDbBlockTableRecord::cast(replacement.ownerId.safeOpenObject(OdDb::kForWrite));
    for (const OdDbEntityPtr& piece : replacement.pieces)
      owner->appendOdDbEntity(piece.get());
    result.piecesAdded += replacement.pieces.size();
    if (replacement.pieces.empty()) {
      ++result.entitiesRemoved;
      OdDbEntityPtr entity = OdDbEntity::cast(replacement.entityId.safeOpenObject());
      result.notes.push_back(describe(entity.get()) + ": nothing to show; removed");
    }
    replacement.entityId.safeOpenObject(OdDb::kForWrite)->erase();
  }
  for (const OdDbObjectId& id : failedIds)
    id.safeOpenObject(OdDb::kForWrite)->erase();
  result.applied = true;
  return result;
}

} // namespace plain
} // namespace custents
