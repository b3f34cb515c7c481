// The rows of the class contract: one per class, with a typical instance of it.

#include "ClassContract.h"

#include "DbArc.h"
#include "DbHatch.h"
#include "DbLine.h"
#include "DbMText.h"
#include "DbPoint.h"
#include "DbPolyline.h"
#include "DbText.h"
#include "DbTextStyleTable.h"
#include "dimensions/DimensionClasses.h"
#include "lines/LineClasses.h"
#include "markup/KVClasses.h"
#include "markup/MarkupClasses.h"
#include "survey/SurveyClasses.h"
#include "tables/TableClasses.h"

#include <cmath>

namespace contract {

namespace {

/// What the C++ base of a class files, called without virtual dispatch: the part of the
/// stream in front of the class's own version.
template <class Base> void baseOf(const OdDbObject* object, OdDbDwgFiler* filer) {
  static_cast<const Base*>(object)->Base::dwgOutFields(filer);
}

/// A polyline-shaped base: a closed path off the plane whose first and last segments bulge,
/// with a constant width.
void shapePolyline(OdDbPolyline* polyline) {
  polyline->addVertexAt(0, OdGePoint2d(0, 0), -0.3);
  polyline->addVertexAt(1, OdGePoint2d(10, 0), 0.5);
  polyline->addVertexAt(2, OdGePoint2d(10, 8), 0.2);
  polyline->setClosed(true);
  polyline->setElevation(1.5);
  polyline->setConstantWidth(0.25);
}

/// A new instance of any class; the classes built on a standard entity get that entity's
/// typical geometry, so their filing carries real base data.
template <class T> OdDbObjectPtr typical(OdDbDatabase*) {
  OdSmartPtr<T> object = T::createObject();
  if (OdDbPolylinePtr polyline = OdDbPolyline::cast(object.get()))
    shapePolyline(polyline);
  else if (OdDbLinePtr line = OdDbLine::cast(object.get())) {
    line->setStartPoint(OdGePoint3d(1, 2, 0));
    line->setEndPoint(OdGePoint3d(9, 7, 0));
    line->setThickness(0.75);
  } else if (OdDbPointPtr point = OdDbPoint::cast(object.get())) {
    point->setPosition(OdGePoint3d(4, -3, 2));
    point->setThickness(0.75);
  }
  return object;
}

OdDbObjectPtr rect(OdDbDatabase*) {
  OdDbGeoRectPtr rect = OdDbGeoRect::createObject();
  rect->setPts(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0));
  rect->transformBy(OdGeMatrix3d::rotation(0.5, OdGeVector3d::kZAxis, OdGePoint3d(1, 2, 0)));
  return rect;
}

OdDbObjectPtr rect3d(OdDbDatabase*) {
  OdDbGeo3dRectPtr rect = OdDbGeo3dRect::createObject();
  rect->setPts(OdGePoint3d(1, 2, 4), OdGePoint3d(5, 8, 10));
  return rect;
}

OdDbObjectPtr triangle(OdDbDatabase*) {
  OdDbGeoTrianglePtr triangle = OdDbGeoTriangle::createObject();
  triangle->setPts(OdGePoint3d(5, 5, 0), OdGePoint3d(5, 9, 0));
  return triangle;
}

OdDbObjectPtr polygon(OdDbDatabase*) {
  OdDbGeoPolygonPtr polygon = OdDbGeoPolygon::createObject();
  polygon->init(OdGePoint3d(2, 3, 0), 6);
  polygon->setValue(OdGePoint3d(5, 7, 0));
  return polygon;
}

OdDbObjectPtr measurement(OdDbDatabase*) {
  OdDbMesuarDataPtr data = OdDbMesuarData::createObject();
  data->data = OdString(u"测量 12.5");
  return data;
}

OdDbObjectPtr dimCoor(OdDbDatabase*) {
  OdDbDimCoorPtr dim = OdDbDimCoor::createObject();
  dim->setStartPt(OdGePoint3d(3, 4, 0));
  dim->setDimPt(OdGePoint3d(9, 8, 0));
  dim->setXText(u"X=4.000");
  dim->setYText(u"Y=3.000");
  return dim;
}

OdDbObjectPtr newDimCoor(OdDbDatabase* db) {
  OdDbNewDimCoorPtr dim = OdDbNewDimCoor::createObject();
  dim->setTxtStyleId(db->getTextStyleStandardId());
  dim->setStartPt(OdGePoint3d(3, 4, 0));
  dim->setDimPt(OdGePoint3d(9, 8, 0));
  dim->setXtext(u"X=4.000");
  dim->setYtext(u"Y=3.000");
  dim->setTextHeight(2.0);
  return dim;
}

OdDbObjectPtr line(OdDbDatabase* db) {
  return typical<OdDbLine>(db);
}
OdDbObjectPtr point(OdDbDatabase* db) {
  return typical<OdDbPoint>(db);
}
/// The standard polyline is what the polyline-shaped rows are not: open, straight, with widths
/// of each vertex, in a tilted plane, with a thickness. Between them every optional part of
/// the record is filed.
OdDbObjectPtr polyline(OdDbDatabase*) {
  OdDbPolylinePtr pline = OdDbPolyline::createObject();
  pline->addVertexAt(0, OdGePoint2d(0, 0), 0.0, 0.0, 0.5);
  pline->addVertexAt(1, OdGePoint2d(10, 0), 0.0, 0.5, 0.25);
  pline->addVertexAt(2, OdGePoint2d(10, 8), 0.0, 0.1, 0.1);
  pline->setNormal(OdGeVector3d(0, 0.6, 0.8));
  pline->setElevation(-2.0);
  pline->setThickness(0.75);
  return pline;
}

OdDbObjectPtr arc(OdDbDatabase*) {
  OdDbArcPtr arc = OdDbArc::createObject();
  arc->setCenter(OdGePoint3d(2, 1, 0));
  arc->setRadius(5);
  arc->setStartAngle(0.3);
  arc->setEndAngle(2.2);
  arc->setThickness(0.75);
  return arc;
}

/// An outer square, an island with a bulged edge, and an island within the island, filled
/// with a pattern by the nested-loop rule.
OdDbObjectPtr hatch(OdDbDatabase*) {
  OdDbHatchPtr hatch = OdDbHatch::createObject();
  hatch->setPattern(OdDbHatch::kPreDefined, OD_T("ANSI31"));
  hatch->setPatternScale(0.5);
  hatch->setHatchStyle(OdDbHatch::kOuter);
  const auto square = [](double lo, double hi) {
    OdGePoint2dArray points;
    for (const OdGePoint2d& p :
         {OdGePoint2d(lo, lo), OdGePoint2d(hi, lo), OdGePoint2d(hi, hi), OdGePoint2d(lo, hi)})
      points.append(p);
    return points;
  };
  hatch->appendLoop(OdDbHatch::kExternal | OdDbHatch::kPolyline, square(0, 12), {0, 0, 0, 0});
  hatch->appendLoop(OdDbHatch::kPolyline, square(2, 10), {0.4, 0, 0, 0});
  hatch->appendLoop(OdDbHatch::kPolyline, square(4, 7), {0, 0, 0, 0});
  return hatch;
}

OdDbObjectPtr text(OdDbDatabase*) {
  OdDbTextPtr text = OdDbText::createObject();
  text->setPosition(OdGePoint3d(2, 3, 0));
  text->setHeight(2.5);
  text->setRotation(0.4);
  text->setTextString(u"坐标 A-1");
  // Centred, so that the alignment point is filed and drawn from.
  text->setHorizontalMode(OdDb::kTextCenter);
  text->setAlignmentPoint(OdGePoint3d(8, 5, 0));
  return text;
}

OdDbObjectPtr mtext(OdDbDatabase* db) {
  OdDbMTextPtr text = OdDbMText::createObject();
  // A text style of the drawing's own, named in the DXF groups.
  OdDbTextStyleTablePtr styles = db->getTextStyleTableId().safeOpenObject(OdDb::kForWrite);
  OdDbObjectId notes = styles->getAt(OD_T("Notes"));
  if (notes.isNull()) {
    OdDbTextStyleTableRecordPtr style = OdDbTextStyleTableRecord::createObject();
    style->setName(OD_T("Notes"));
    style->setXScale(0.8);
    notes = styles->add(style);
  }
  text->setTextStyle(notes);
  // The drawing's current style too, which the text takes on with the drawing's defaults.
  db->setTEXTSTYLE(notes);
  text->setLocation(OdGePoint3d(2, 3, 0));
  text->setTextHeight(2.0);
  text->setWidth(30);
  text->setRotation(0.6);
  text->setContents(u"第一行\\P{\\H1.5x;second} line\\Pthird");
  return text;
}

constexpr unsigned kPlain = kDxfRefused;
constexpr unsigned kPlainShape = kDxfRefused | kGeometry | kExplodes;

#define PLAIN(Class, Base)                                                                         \
  Row {                                                                                            \
#Class, &typical < Class>, &baseOf < Base>, Version::Int16, 2, kPlain, Transform::Exact,       \
        Transform::Exact                                                                           \
  }
#define PLAIN_POLYLINE(Class, Base)                                                                \
  Row {                                                                                            \
#Class, &typical < Class>, &baseOf < Base>, Version::Int16, 2, kPlainShape, Transform::Exact,  \
        Transform::Accepted                                                                        \
  }
#define PLAIN_POINT(Class, Base)                                                                   \
  Row {                                                                                            \
#Class, &typical < Class>, &baseOf < Base>, Version::Int16, 2, kDxfRefused | kGeometry,        \
        Transform::Exact, Transform::Exact                                                         \
  }

} // namespace

const std::vector<Row>& rows() {
  static const std::vector<Row> all = {
      // The module's classes, in registration order.
      {"KVDb2DBarEntity", &typical<KVDb2DBarEntity>, &baseOf<OdDbEntity>, Version::Int16, 2, 0,
       Transform::Exact, Transform::Exact},
      {"OdDbCustomDimensionBase", &typical<OdDbCustomDimensionBase>, nullptr, Version::None, 0, 0,
       Transform::Exact, Transform::Exact},
      PLAIN(OdDbAnnotate, OdDbEntity),
      PLAIN(OdDbNewAnnotate, OdDbCustomDimensionBase),
      PLAIN(OdDbDimCircle, OdDbCustomDimensionBase),
      PLAIN(OdDbCustomFrame, OdDbEntity),
      {"OdDbDimCoor", &dimCoor, &baseOf<OdDbEntity>, Version::Double, 4.0,
       kDxfRefused | kGeometry | kExplodes | kOwnPieceColours, Transform::Accepted,
       Transform::Accepted},
      {"OdDbGeoRect", &rect, &baseOf<OdDbEntity>, Version::Int16, 2,
       kDxfRefused | kGeometry | kExplodes | kFlat, Transform::Exact, Transform::Accepted},
      {"OdDbGeoTriangle", &triangle, &baseOf<OdDbEntity>, Version::Int16, 2,
       kDxfRefused | kGeometry | kExplodes | kFlat, Transform::Exact, Transform::Accepted},
      {"OdDbMesuarData", &measurement, &baseOf<OdDbEntity>, Version::Int16, 2,
       kDxfRefused | kOwnVersionRule, Transform::Exact, Transform::Exact},
      PLAIN_POLYLINE(DbPipeWireway, OdDbPolyline),
      PLAIN(GeosymHouseObjectTable, OdDbObject),
      PLAIN(GeoQuantityTable, OdDbEntity),
      PLAIN(OdDbArcLine, OdDbCustomDimensionBase),
      PLAIN(OdDbArrowExtraction, OdDbCustomDimensionBase),
      PLAIN(OdDbBendLine, OdDbCustomDimensionBase),
      PLAIN(OdDbBrokenLine, OdDbCustomDimensionBase),
      PLAIN(OdDbBuildHeight, OdDbCustomDimensionBase),
      PLAIN(OdDbCloud, OdDbEntity),
      PLAIN(OdDbRevCloud, OdDbEntity),
      PLAIN_POINT(OdDbDivPointNew, OdDbPoint),
      PLAIN_POINT(OdDbDivPoint, OdDbPoint),
      {"OdDbNewDimCoor", &newDimCoor, &baseOf<OdDbEntity>, Version::Double, 2.0,
       kDxfRefused | kGeometry | kExplodes | kOwnPieceColours | kExtentsBeyondDrawing,
       Transform::Accepted, Transform::Accepted},
      PLAIN(OdDbNewDimText, OdDbCustomDimensionBase),
      PLAIN(OdDbSymmetryAxis, OdDbCustomDimensionBase),
      {"KVDbSignEntity", &typical<KVDbSignEntity>, &baseOf<OdDbEntity>, Version::Int16, 2, 0,
       Transform::Exact, Transform::Exact},
      {"OdDbGeoPolygon", &polygon, &baseOf<OdDbEntity>, Version::Int16, 2,
       kDxfRefused | kGeometry | kExplodes | kFlat, Transform::Exact, Transform::Accepted},
      PLAIN_POLYLINE(DecorationPipe, OdDbPolyline),
      PLAIN_POLYLINE(OdDbDoubleLineCableTray, DecorationPipe),
      PLAIN_POLYLINE(OdDbNewCableTray, DecorationPipe),
      PLAIN_POLYLINE(DbCoverPolyLine, OdDbPolyline),
      PLAIN(OdDbDimCableTray, OdDbCustomDimensionBase),
      PLAIN(OdDbDimExtraction, OdDbCustomDimensionBase),
      PLAIN(OdDbSeekMap, OdDbCustomDimensionBase),
      PLAIN(OdDbPracticeLabel, OdDbCustomDimensionBase),
      PLAIN_POINT(OdDbPipeLine, OdDbLine),
      PLAIN(OdDbLinePattern, OdDbCustomDimensionBase),
      PLAIN(OdDbIndexicalSigns, OdDbCustomDimensionBase),
      PLAIN(OdDbDimName, OdDbEntity),
      PLAIN(OdDbDimCutting, OdDbCustomDimensionBase),
      PLAIN(OdDbCoverArea, OdDbCustomDimensionBase),
      PLAIN(OdDbCompass, OdDbCustomDimensionBase),
      PLAIN(OdDbBlkStatisticsTable, OdDbEntity),
      PLAIN(OdDbCabinet, OdDbCustomDimensionBase),
      PLAIN(GeosymTable, OdDbObject),
      PLAIN(GeoTreeTable, OdDbObject),
      PLAIN(GeoTreeSimpleTable, OdDbObject),
      PLAIN(GeoLandAreaTable, OdDbObject),
      PLAIN_POLYLINE(DecorationPipeHot, DecorationPipe),
      PLAIN(OdDbDimArea, OdDbCustomDimensionBase),
      PLAIN_POLYLINE(OdDbFreePen, OdDbPolyline),
      PLAIN(OdDbNewCloud, OdDbEntity),
      PLAIN(OdDbDimContinue, OdDbCustomDimensionBase),
      PLAIN(OdDbDimContinueNew, OdDbCustomDimensionBase),
      PLAIN(OdDbGeoTag, OdDbEntity),
      {"OdDbGeo3dRect", &rect3d, &baseOf<OdDbEntity>, Version::Int16, 2,
       kDxfRefused | kGeometry | kExplodes, Transform::Exact, Transform::Accepted},
      PLAIN(OdDb3dArrow, OdDbCustomDimensionBase),

      // The platform's standard entities that the module builds on, draws with or explodes into.
      {"OdDbLine", &line, nullptr, Version::None, 0, kGeometry, Transform::Exact, Transform::Exact},
      {"OdDbPoint", &point, nullptr, Version::None, 0, kGeometry, Transform::Exact,
       Transform::Exact},
      {"OdDbPolyline", &polyline, nullptr, Version::None, 0, kGeometry | kExplodes,
       Transform::Exact, Transform::Accepted},
      {"OdDbArc", &arc, nullptr, Version::None, 0, kGeometry, Transform::Exact, Transform::Refused},
      {"OdDbHatch", &hatch, nullptr, Version::None, 0, kGeometry | kExplodes, Transform::Exact,
       Transform::Refused},
      {"OdDbText", &text, nullptr, Version::None, 0, kGeometry, Transform::Accepted,
       Transform::Accepted},
      {"OdDbMText", &mtext, nullptr, Version::None, 0,
       kGeometry | kExplodes | kExtentsBeyondDrawing, Transform::Accepted, Transform::Accepted},
  };
  return all;
}

const std::vector<std::string>& moduleClassNames() {
  static const std::vector<std::string> names = {
#define CUSTENTS_CLASS(ClassName, ...) #ClassName,
#include "module/CustEntsClasses.def"
  };
  return names;
}

std::string rowName(const Row& row) {
  return row.className;
}

void PrintTo(const Row& row, std::ostream* out) {
  *out << row.className;
}

} // namespace contract
