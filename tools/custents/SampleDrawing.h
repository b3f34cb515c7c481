#ifndef CUSTENTS_SAMPLE_DRAWING_H
#define CUSTENTS_SAMPLE_DRAWING_H

/// The built-in sample drawing: the survey shapes and the coordinate dimensions of the CustEnts
/// module in configurations that show how each one behaves. The application knows the module's
/// classes only through the run-time class tree, so every entity is made the way a host makes
/// entities of classes it has no code for: created by class name, filled from a DWG record written
/// in the class's published layout (exactly what a drawing reader does), and then edited through
/// virtual operations and the classes' protocol extensions only.

#include "DbDatabase.h"
#include "DbEntity.h"
#include "Ge/GePoint3d.h"
#include "Ge/GePoint3dArray.h"
#include "OdString.h"

#include <array>
#include <functional>
#include <vector>

class OdDbDwgFiler;

namespace custents {
namespace sample {

// Geometry of the shapes, computed as the classes compute it themselves, so that a record
// written here is the record the entity would write after the same construction.

/// A rectangle as its two-point construction leaves it: P0 = p1, P2 = p2, the other two
/// corners on the axes through them at z = 0, the centre the middle of p1 and p2, and the
/// rotation handle 50 units above the centre.
struct RectangleShape {
  std::array<OdGePoint3d, 4> corners;
  OdGePoint3d center;
  OdGePoint3d rotatePt;
};
/// Throws std::invalid_argument when p1 and p2 share an x or a y (no area to speak of).
RectangleShape rectangleFromDiagonal(const OdGePoint3d& p1, const OdGePoint3d& p2);

/// A triangle's vertices, its centroid and its rotation handle (50 units above the centroid).
struct TriangleShape {
  std::array<OdGePoint3d, 3> vertices;
  OdGePoint3d center;
  OdGePoint3d rotatePt;
};
/// Any three points. Throws std::invalid_argument when they are collinear.
TriangleShape triangleThrough(const OdGePoint3d& v0, const OdGePoint3d& v1, const OdGePoint3d& v2);
/// The equilateral triangle with centre `center` through `vertex`, built as the triangle's
/// own construction from a centre and a vertex builds it: V2 = vertex, V1 and V0 turned by
/// 120° and 240° about Z. Throws std::invalid_argument when the two points coincide.
TriangleShape equilateralTriangle(const OdGePoint3d& center, const OdGePoint3d& vertex);

/// The vertices of a regular polygon about `center`, vertex 0 at `start`, counter-clockwise
/// seen from +Z. Throws std::invalid_argument for fewer than 3 or more than 32767 sides (the
/// count is filed as a 16-bit integer) and for a start point on the centre.
OdGePoint3dArray regularPolygonVertices(const OdGePoint3d& center, const OdGePoint3d& start,
                                        int sides);

// DWG records. Each names the class and writes the class's own part of the record (version
// first), which follows the common entity data.

struct EntityRecord {
  OdString className;
  std::function<void(OdDbDwgFiler&)> writeFields;
};

/// The survey rectangle drawn flat (OdDbGeoRect) or with its corners' heights (OdDbGeo3dRect);
/// both file the same record.
enum class RectangleKind { kFlat, kThreeD };
EntityRecord rectangleRecord(const RectangleShape& shape,
                             RectangleKind kind = RectangleKind::kFlat);
EntityRecord triangleRecord(const TriangleShape& shape);
/// A regular polygon as its construction from a centre, a start vertex and a side count
/// leaves it. Throws as regularPolygonVertices.
EntityRecord polygonRecord(const OdGePoint3d& center, const OdGePoint3d& start, int sides);
/// The invisible carrier of one text of measurement data.
EntityRecord measurementRecord(const OdString& text);
/// The older coordinate dimension (OdDbDimCoor) labelling startPt, bent at dimPt: texts of
/// textHeight left empty, so that the class fills them in until they are re-labelled; xUp
/// true for the survey convention; lines in ACI lineColor, texts in ACI textColor.
EntityRecord coordinateDimensionRecord(const OdGePoint3d& startPt, const OdGePoint3d& dimPt,
                                       double textHeight, bool xUp, OdUInt16 lineColor,
                                       OdUInt16 textColor);
/// The newer coordinate dimension (OdDbNewDimCoor), as the older one, with its texts as
/// multi-line texts and `note` as its third text.
EntityRecord newCoordinateDimensionRecord(const OdGePoint3d& startPt, const OdGePoint3d& dimPt,
                                          double textHeight, bool xUp, OdUInt16 lineColor,
                                          OdUInt16 textColor, const OdString& note);

// Building and editing through the run-time interfaces.

/// A new entity of the record's class with the database's current properties and the given
/// colour (an ACI index), filled by reading the record the way a drawing reader does. The
/// entity is not added to the database. Throws std::runtime_error when the class is not
/// registered (module not loaded) or is not an entity, and OdError with the reader's result
/// when the entity refuses the record.
OdDbEntityPtr createFromRecord(OdDbDatabase* database, const EntityRecord& record,
                               OdUInt16 colorIndex);

/// Drags the entity's grip nearest to `gripPoint` by `offset`, as the editor does when the
/// user picks that grip. Throws std::runtime_error when the entity offers no grip or refuses
/// the move.
void dragGrip(OdDbEntity* entity, const OdGePoint3d& gripPoint, const OdGeVector3d& offset);

/// Types `text` into the row labelled `label` of the entity's property page, as a drafter does
/// in the property grid. Throws std::runtime_error when the class has no property extension,
/// no such row exists, or the extension refuses the value.
void setPropertyText(OdDbEntity* entity, const OdString& label, const OdString& text);

/// Adds the sample drawing's entities to model space of `database`. The CustEnts module must be
/// loaded (the classes are found by name). Throws as createFromRecord and the edits above.
void addSampleEntities(OdDbDatabase* database);

/// A new database holding the sample drawing. Release it before the module is unloaded: its
/// entities' code lives in the module.
OdDbDatabasePtr buildSampleDrawing();

/// The entities of model space in drawing order, opened for read.
std::vector<OdDbEntityPtr> modelSpaceEntities(OdDbDatabase* database);

} // namespace sample
} // namespace custents

#endif
