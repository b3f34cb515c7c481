#include "SampleDrawing.h"

#include "BrevantApp.h"
#include "DbBlockTable.h"
#include "DbDwgStreamFiler.h"
#include "DbHatch.h"
#include "DbMText.h"
#include "ExtendPE.h"
#include "Ge/GeMatrix3d.h"
#include "OdError.h"
#include "PropertyPE.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <stdexcept>
#include <string>

#include <unistd.h>

namespace custents {
namespace sample {

namespace {

const double kPi = 3.14159265358979323846;
/// The rotation handle stands this far above the centre along Y, as the shapes place it.
const double kRotateHandleRise = 50.0;
/// The format versions of the records, as the classes write them.
const OdInt16 kRectangleVersion = 1;
const OdInt16 kTriangleVersion = 1;
const OdInt16 kPolygonVersion = 1;
const OdInt16 kMeasurementVersion = 5;
const int kMaxPolygonSides = 32767;
const double kCoordinateDimensionVersion = 3.0;
const double kNewCoordinateDimensionVersion = 1.0;

OdGePoint3d rotateHandleAbove(const OdGePoint3d& center) {
  return OdGePoint3d(center.x, center.y + kRotateHandleRise, center.z);
}

std::string utf8(const OdString& text) {
  return text.toUtf8();
}

/// The property extension that the entity's class (or its nearest ancestor) carries.
PropertyPEPtr propertyExtensionOf(const OdDbEntity* entity) {
  return PropertyPE::cast(entity->isA()->getX(PropertyPE::desc()).get());
}

ExtendPEPtr shapeExtensionOf(const OdDbEntity* entity) {
  const ExtendPEPtr extension = ExtendPE::cast(entity->isA()->getX(ExtendPE::desc()).get());
  if (extension.isNull())
    throw std::runtime_error("class " + utf8(entity->isA()->name()) +
                             " has no shape extension to fill it with");
  return extension;
}

/// The longer of the texts a coordinate dimension fills empty ones in with for startPt ("X="
/// with x, "Y=" with y, two decimals), in characters.
int filledInTextLength(const OdGePoint3d& startPt) {
  OdString x, y;
  x.format(OD_T("X=%.2f"), startPt.x);
  y.format(OD_T("Y=%.2f"), startPt.y);
  return std::max(x.getLength(), y.getLength());
}

/// Where a coordinate dimension's shoulder ends: level with the bend, reaching
/// (longest text + 1) x height x 0.75 away from the measured point's side.
OdGePoint3d shoulderEnd(const OdGePoint3d& startPt, const OdGePoint3d& dimPt, double textHeight) {
  const double reach = (filledInTextLength(startPt) + 1) * textHeight * 0.75;
  return OdGePoint3d(dimPt.x >= startPt.x ? dimPt.x + reach : dimPt.x - reach, dimPt.y, dimPt.z);
}

OdCmColor aciColor(OdUInt16 index) {
  OdCmColor color;
  color.setColorIndex(index);
  return color;
}

/// The host's profile replaced by a file of its own holding the decimals of measured texts,
/// as if the user had set them in the host's options; the profile in use before comes back
/// when the object goes.
class ScopedMeasuredDecimals {
public:
  explicit ScopedMeasuredDecimals(int decimals)
      : m_previous(TheApp()->profilePath()),
        m_path((std::filesystem::temp_directory_path() /
                ("custents-sample-" + std::to_string(getpid()) + ".ini"))
                   .string()) {
    TheApp()->setProfilePath(OdString(m_path.c_str()));
    if (!TheApp()->WriteProfileInt(OD_T("options"), OD_T("dimAccurity"), decimals)) {
      restore();
      throw std::runtime_error("cannot write the temporary profile " + m_path);
    }
  }
  ~ScopedMeasuredDecimals() { restore(); }
  ScopedMeasuredDecimals(const ScopedMeasuredDecimals&) = delete;
  ScopedMeasuredDecimals& operator=(const ScopedMeasuredDecimals&) = delete;

private:
  void restore() {
    TheApp()->setProfilePath(m_previous);
    std::remove(m_path.c_str());
  }

  OdString m_previous;
  std::string m_path;
};

/// Model space opened for write, for appending.
OdDbBlockTableRecordPtr openModelSpace(OdDbDatabase* database) {
  return OdDbBlockTableRecord::cast(
      database->getModelSpaceId().safeOpenObject(OdDb::kForWrite).get());
}

} // namespace

RectangleShape rectangleFromDiagonal(const OdGePoint3d& p1, const OdGePoint3d& p2) {
  if (p1.x == p2.x || p1.y == p2.y)
    throw std::invalid_argument("a rectangle needs two corners that differ in x and in y");
  RectangleShape shape;
  shape.corners[0] = p1;
  shape.corners[1] = OdGePoint3d(p2.x, p1.y, 0.0);
  shape.corners[2] = p2;
  shape.corners[3] = OdGePoint3d(p1.x, p2.y, 0.0);
  shape.center = OdGePoint3d((p1.x + p2.x) / 2.0, (p1.y + p2.y) / 2.0, (p1.z + p2.z) / 2.0);
  shape.rotatePt = rotateHandleAbove(shape.center);
  return shape;
}

TriangleShape triangleThrough(const OdGePoint3d& v0, const OdGePoint3d& v1, const OdGePoint3d& v2) {
  const OdGeVector3d a = v1 - v0;
  const OdGeVector3d b = v2 - v0;
  const double twiceArea = a.crossProduct(b).length();
  if (!(twiceArea > 1e-10 * (a.lengthSqrd() + b.lengthSqrd())))
    throw std::invalid_argument("a triangle needs three points that are not on one line");
  TriangleShape shape;
  shape.vertices = {v0, v1, v2};
  shape.center = OdGePoint3d((v0.x + v1.x + v2.x) / 3.0, (v0.y + v1.y + v2.y) / 3.0,
                             (v0.z + v1.z + v2.z) / 3.0);
  shape.rotatePt = rotateHandleAbove(shape.center);
  return shape;
}

TriangleShape equilateralTriangle(const OdGePoint3d& center, const OdGePoint3d& vertex) {
  OdGeVector3d radius = vertex - center;
  const double length = radius.length();
  if (!(length > 0.0))
    throw std::invalid_argument("an equilateral triangle needs a vertex away from its centre");
  // The radius turns twice by a third of a turn: V1 after the first, V0 after the second.
  const double third = 2.0 * kPi / 3.0;
  TriangleShape shape;
  shape.vertices[2] = vertex;
  radius.rotateBy(third, OdGeVector3d::kZAxis);
  shape.vertices[1] = center + radius.normal() * length;
  radius.rotateBy(third, OdGeVector3d::kZAxis);
  shape.vertices[0] = center + radius.normal() * length;
  shape.center = center;
  shape.rotatePt = rotateHandleAbove(center);
  return shape;
}

OdGePoint3dArray regularPolygonVertices(const OdGePoint3d& center, const OdGePoint3d& start,
                                        int sides) {
  if (sides < 3 || sides > kMaxPolygonSides)
    throw std::invalid_argument("a polygon needs 3 to " + std::to_string(kMaxPolygonSides) +
                                " sides, not " + std::to_string(sides));
  OdGeVector3d radius = start - center;
  if (!(radius.length() > 0.0))
    throw std::invalid_argument("a polygon needs a start vertex away from its centre");
  const double step = (1.0 / sides) * 2.0 * kPi;
  OdGePoint3dArray vertices;
  vertices.reserve(static_cast<OdGePoint3dArray::size_type>(sides));
  for (int i = 0; i < sides; ++i) {
    vertices.append(center + radius);
    radius.rotateBy(step, OdGeVector3d::kZAxis);
  }
  return vertices;
}

EntityRecord rectangleRecord(const RectangleShape& shape, RectangleKind kind) {
  EntityRecord record;
  record.className = kind == RectangleKind::kFlat ? OD_T("OdDbGeoRect") : OD_T("OdDbGeo3dRect");
  record.writeFields = [shape](OdDbDwgFiler& filer) {
    filer.wrInt16(kRectangleVersion);
    for (const OdGePoint3d& corner : shape.corners)
      filer.wrPoint3d(corner);
    filer.wrPoint3d(shape.center);
    filer.wrPoint3d(shape.rotatePt);
  };
  return record;
}

EntityRecord triangleRecord(const TriangleShape& shape) {
  EntityRecord record;
  record.className = OD_T("OdDbGeoTriangle");
  record.writeFields = [shape](OdDbDwgFiler& filer) {
    filer.wrInt16(kTriangleVersion);
    for (const OdGePoint3d& vertex : shape.vertices)
      filer.wrPoint3d(vertex);
    filer.wrPoint3d(shape.center);
    filer.wrPoint3d(shape.rotatePt);
  };
  return record;
}

EntityRecord polygonRecord(const OdGePoint3d& center, const OdGePoint3d& start, int sides) {
  const OdGePoint3dArray vertices = regularPolygonVertices(center, start, sides);
  EntityRecord record;
  record.className = OD_T("OdDbGeoPolygon");
  record.writeFields = [center, start, vertices](OdDbDwgFiler& filer) {
    filer.wrInt16(kPolygonVersion);
    filer.wrInt16(static_cast<OdInt16>(vertices.size()));
    filer.wrPoint3d(center);
    filer.wrPoint3d(start);
    for (const OdGePoint3d& vertex : vertices)
      filer.wrPoint3d(vertex);
  };
  return record;
}

EntityRecord measurementRecord(const OdString& text) {
  EntityRecord record;
  record.className = OD_T("OdDbMesuarData");
  record.writeFields = [text](OdDbDwgFiler& filer) {
    filer.wrInt16(kMeasurementVersion);
    filer.wrString(text);
  };
  return record;
}

EntityRecord coordinateDimensionRecord(const OdGePoint3d& startPt, const OdGePoint3d& dimPt,
                                       double textHeight, bool xUp, OdUInt16 lineColor,
                                       OdUInt16 textColor) {
  EntityRecord record;
  record.className = OD_T("OdDbDimCoor");
  record.writeFields = [=](OdDbDwgFiler& filer) {
    filer.wrDouble(kCoordinateDimensionVersion);
    filer.wrPoint3d(startPt);
    filer.wrPoint3d(dimPt);
    filer.wrPoint3d(shoulderEnd(startPt, dimPt, textHeight));
    filer.wrDouble(textHeight);
    filer.wrDouble(0.0);              // x offset of the texts
    filer.wrDouble(0.0);              // y offset, kept but not drawn
    filer.wrDouble(textHeight * 0.2); // gap between shoulder and texts
    filer.wrBool(xUp);
    filer.wrString(OdString());
    filer.wrString(OdString());
    aciColor(lineColor).dwgOut(&filer);
    aciColor(textColor).dwgOut(&filer);
  };
  return record;
}

EntityRecord newCoordinateDimensionRecord(const OdGePoint3d& startPt, const OdGePoint3d& dimPt,
                                          double textHeight, bool xUp, OdUInt16 lineColor,
                                          OdUInt16 textColor, const OdString& note) {
  EntityRecord record;
  record.className = OD_T("OdDbNewDimCoor");
  record.writeFields = [=](OdDbDwgFiler& filer) {
    filer.wrDouble(kNewCoordinateDimensionVersion);
    filer.wrPoint3d(startPt);
    filer.wrPoint3d(dimPt);
    filer.wrPoint3d(shoulderEnd(startPt, dimPt, textHeight));
    filer.wrBool(xUp);
    aciColor(lineColor).dwgOut(&filer);
    // The X, Y and note texts, each filed inline in its own layout.
    for (const OdString& contents : {OdString(), OdString(), note}) {
      OdDbMTextPtr text = OdDbMText::createObject();
      text->setContents(contents);
      text->setTextHeight(textHeight);
      text->setColorIndex(textColor);
      text->dwgOutFields(&filer);
    }
  };
  return record;
}

OdDbEntityPtr createFromRecord(OdDbDatabase* database, const EntityRecord& record,
                               OdUInt16 colorIndex) {
  const std::string name = utf8(record.className);
  OdRxClass* cls = odrxGetClass(record.className);
  if (!cls)
    throw std::runtime_error("class " + name +
                             " is not registered (is the CustEnts module loaded?)");
  const OdRxObjectPtr object = cls->create();
  OdDbEntityPtr entity = OdDbEntity::cast(object.get());
  if (entity.isNull())
    throw std::runtime_error("class " + name + " does not make entities");
  entity->setDatabaseDefaults(database);
  entity->setColorIndex(colorIndex);

  // The common entity data comes from the platform's own writer, so it is exactly what the
  // entity's reader expects; the class's part follows in its published layout.
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForWrite(database, OdDbFiler::kCopyFiler);
  entity->OdDbEntity::dwgOutFields(&filer);
  record.writeFields(filer);
  if (filer.filerStatus() != eOk)
    throw OdError(filer.filerStatus(), OD_T("cannot write the record of ") + record.className);
  filer.rewind();
  const OdResult result = entity->dwgInFields(&filer);
  if (result != eOk)
    throw OdError(result, record.className + OD_T(" refused its record"));
  // A reader that stops short means the layout written here is not the class's.
  if (filer.remainingDataBits() != 0 || filer.remainingStringBits() != 0 ||
      filer.remainingHandleBits() != 0)
    throw std::runtime_error(name + " left part of its record unread");
  return entity;
}

void dragGrip(OdDbEntity* entity, const OdGePoint3d& gripPoint, const OdGeVector3d& offset) {
  OdDbGripDataPtrArray grips;
  const OdResult found = entity->getGripPoints(grips, 0.0, 0, OdGeVector3d::kZAxis, 0);
  if (found != eOk || grips.isEmpty())
    throw std::runtime_error(utf8(entity->isA()->name()) + " offers no grips to drag");
  OdDbGripDataPtrArray::size_type nearest = 0;
  double nearestDistance = std::numeric_limits<double>::infinity();
  for (OdDbGripDataPtrArray::size_type i = 0; i < grips.size(); ++i) {
    const double distance = grips[i]->gripPoint().distanceTo(gripPoint);
    if (distance < nearestDistance) {
      nearest = i;
      nearestDistance = distance;
    }
  }
  OdDbVoidPtrArray picked;
  picked.append(grips[nearest]->appData());
  const OdResult moved = entity->moveGripPointsAt(picked, offset, OdDbGripOperations::kDragging);
  if (moved != eOk)
    throw OdError(moved, entity->isA()->name() + OD_T(" refused to move its grip"));
}

void setPropertyText(OdDbEntity* entity, const OdString& label, const OdString& text) {
  const PropertyPEPtr extension = propertyExtensionOf(entity);
  const std::string className = utf8(entity->isA()->name());
  if (extension.isNull())
    throw std::runtime_error("class " + className + " has no property extension");
  const int groups = extension->getPropertyCount();
  for (int group = 0; group < groups; ++group) {
    const entityProperty header = extension->getPropertyByeId(entity, group);
    for (int row = 0; row < header.count; ++row) {
      const propAttribute attribute = extension->getPropAttributeByeId(entity, group, row);
      if (attribute.name != label)
        continue;
      if (!attribute.editable)
        throw std::runtime_error("the row " + utf8(label) + " of " + className + " is read-only");
      if (!extension->setPropAttributeByeId(entity, OdVariant(text), group, row))
        throw std::runtime_error(className + " refused " + utf8(text) + " for " + utf8(label));
      return;
    }
  }
  throw std::runtime_error(className + " has no property row " + utf8(label));
}

void addSampleEntities(OdDbDatabase* database) {
  const OdDbBlockTableRecordPtr modelSpace = openModelSpace(database);
  const auto add = [&](const EntityRecord& record, OdUInt16 colorIndex) {
    OdDbEntityPtr entity = createFromRecord(database, record, colorIndex);
    modelSpace->appendOdDbEntity(entity.get());
    return entity;
  };
  const auto point = [](double x, double y, double z = 0.0) { return OdGePoint3d(x, y, z); };
  const OdGeVector3d zAxis = OdGeVector3d::kZAxis;

  // The drawing is a grid of 160-unit cells, four across and three down; each shape keeps
  // well inside its cell. Top row: the rectangles.
  {
    // Drawn 100 long, then made 120 long from the property grid.
    OdDbEntityPtr rect =
        add(rectangleRecord(rectangleFromDiagonal(point(0, 320), point(100, 390))), 1);
    setPropertyText(rect.get(), OD_T("长"), OD_T("120"));
  }
  {
    OdDbEntityPtr rect =
        add(rectangleRecord(rectangleFromDiagonal(point(180, 320), point(280, 380))), 5);
    rect->transformBy(OdGeMatrix3d::rotation(kPi / 6.0, zAxis, point(230, 350)));
  }
  // The flat twin, and the same rectangle as a 3D rectangle tilted out of the XY plane about a
  // slanted axis: seen from above it is foreshortened into a parallelogram, which no flat
  // rectangle can show.
  add(rectangleRecord(rectangleFromDiagonal(point(340, 320), point(440, 390))), 94);
  {
    OdDbEntityPtr rect =
        add(rectangleRecord(rectangleFromDiagonal(point(500, 320), point(600, 390)),
                            RectangleKind::kThreeD),
            6);
    rect->transformBy(
        OdGeMatrix3d::rotation(kPi / 3.0, OdGeVector3d(1.0, 1.0, 0.0).normal(), point(550, 355)));
  }

  // Middle row: the triangles and the fills.
  add(triangleRecord(equilateralTriangle(point(60, 205), point(60, 260))), 30);
  {
    const TriangleShape shape = triangleThrough(point(170, 165), point(290, 175), point(215, 260));
    OdDbEntityPtr triangle = createFromRecord(database, triangleRecord(shape), 152);
    double unitRatio = 1.0;
    OdDbHatchPtr hatch = shapeExtensionOf(triangle.get())
                             ->FillPattern(triangle, OD_T("ANSI31"), 2.0, 0.0, unitRatio);
    if (hatch.isNull())
      throw std::runtime_error("the triangle's shape extension made no pattern fill");
    hatch->setColorIndex(152);
    // The fill goes in first, so the outline is drawn over it.
    modelSpace->appendOdDbEntity(hatch.get());
    modelSpace->appendOdDbEntity(triangle.get());
  }
  {
    OdDbEntityPtr rect = createFromRecord(
        database, rectangleRecord(rectangleFromDiagonal(point(340, 170), point(450, 250))), 34);
    OdCmColor gold;
    gold.setRGB(255, 200, 80);
    OdDbHatchPtr hatch = shapeExtensionOf(rect.get())->FillColor(rect, gold);
    if (hatch.isNull())
      throw std::runtime_error("the rectangle's shape extension made no colour fill");
    modelSpace->appendOdDbEntity(hatch.get());
    modelSpace->appendOdDbEntity(rect.get());
  }
  add(measurementRecord(OD_T("测点 P1: X=3521.402 Y=8712.115 H=12.345")), 8);

  // Bottom row: regular polygons of 3, 6 and 12 sides, and a hexagon with one vertex dragged
  // out, which leaves its centre and the other vertices where they were.
  add(polygonRecord(point(60, 55), point(115, 55), 3), 202);
  add(polygonRecord(point(230, 55), point(285, 55), 6), 134);
  add(polygonRecord(point(390, 55), point(445, 55), 12), 232);
  {
    OdDbEntityPtr polygon = add(polygonRecord(point(550, 55), point(605, 55), 6), 42);
    dragGrip(polygon.get(), point(605, 55), OdGeVector3d(20.0, 35.0, 0.0));
  }

  // A fourth row below: coordinate dimensions of both kinds. Each is re-labelled by dragging
  // its one grip a little, which formats its texts with the decimals set in the host's options.
  const auto relabel = [&](OdDbEntity* dimension, const OdGePoint3d& measured, int decimals) {
    ScopedMeasuredDecimals setting(decimals);
    dragGrip(dimension, measured, OdGeVector3d(5.0, 0.0, 0.0));
  };
  {
    // The older kind, right of its point, survey convention (X shows the northing), no decimals.
    OdDbEntityPtr dim =
        add(coordinateDimensionRecord(point(20, -130), point(50, -90), 10.0, true, 3, 5), 3);
    relabel(dim.get(), point(20, -130), 0);
  }
  {
    // The older kind left of its point, plain axes, three decimals: the texts centre on the
    // shoulder's far end.
    OdDbEntityPtr dim =
        add(coordinateDimensionRecord(point(300, -130), point(280, -90), 10.0, false, 140, 1), 140);
    relabel(dim.get(), point(300, -130), 3);
  }
  {
    // The newer kind, right of its point, survey convention, three decimals, with a note line.
    OdDbEntityPtr dim = add(newCoordinateDimensionRecord(point(340, -130), point(360, -90), 9.0,
                                                         true, 1, 5, OD_T("P1")),
                            1);
    relabel(dim.get(), point(340, -130), 3);
  }
  {
    // The newer kind laid out under a UCS turned by 30 degrees, plain axes, no decimals: its
    // shoulder and texts run along the UCS's x axis. The world system comes back afterwards.
    const OdGePoint3d ucsOrigin = database->getUCSORG();
    const OdGeVector3d ucsX = database->getUCSXDIR(), ucsY = database->getUCSYDIR();
    OdGeVector3d turnedX = OdGeVector3d::kXAxis, turnedY = OdGeVector3d::kYAxis;
    turnedX.rotateBy(kPi / 6.0, zAxis);
    turnedY.rotateBy(kPi / 6.0, zAxis);
    database->setUcs(point(500, -130), turnedX, turnedY);
    try {
      OdDbEntityPtr dim = add(newCoordinateDimensionRecord(point(500, -130), point(530, -110), 9.0,
                                                           false, 6, 6, OD_T("P2")),
                              6);
      relabel(dim.get(), point(500, -130), 0);
    } catch (...) {
      database->setUcs(ucsOrigin, ucsX, ucsY);
      throw;
    }
    database->setUcs(ucsOrigin, ucsX, ucsY);
  }
  {
    // A caption over the row, a standard multi-line text in Chinese: the drawing's one
    // paragraph break and its CJK glyphs show that texts reach the pictures and the files.
    OdDbMTextPtr caption = OdDbMText::createObject();
    caption->setDatabaseDefaults(database);
    caption->setLocation(point(20, -40));
    caption->setTextHeight(9.0);
    caption->setAttachment(OdDbMText::kTopLeft);
    caption->setContents(OD_T("坐标标注\\P{\\H0.8x;X 为北坐标，Y 为东坐标}"));
    caption->setColorIndex(7);
    modelSpace->appendOdDbEntity(caption.get());
  }
}

OdDbDatabasePtr buildSampleDrawing() {
  OdDbDatabasePtr database = OdDbDatabase::createObject();
  addSampleEntities(database.get());
  return database;
}

std::vector<OdDbEntityPtr> modelSpaceEntities(OdDbDatabase* database) {
  const OdDbBlockTableRecordPtr modelSpace =
      OdDbBlockTableRecord::cast(database->getModelSpaceId().safeOpenObject(OdDb::kForRead).get());
  std::vector<OdDbEntityPtr> entities;
  for (const OdDbObjectId& id : modelSpace->entityIds()) {
    OdDbEntityPtr entity = OdDbEntity::cast(id.safeOpenObject(OdDb::kForRead).get());
    if (!entity.isNull())
      entities.push_back(entity);
  }
  return entities;
}

} // namespace sample
} // namespace custents
