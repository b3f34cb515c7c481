// Filling the triangle and the polygon with a colour or a pattern.

#include "survey/TriangleExtensions.h"

#include "DbDatabase.h"
#include "DbHatch.h"
#include "DbLine.h"
#include "OdError.h"

#include "GeoPolygonTestSupport.h"

#include <cmath>

namespace {

ExtendPEPtr fillerOf(OdRxClass* cls) {
  return ExtendPE::cast(cls->getX(ExtendPE::desc()));
}

OdDbGeoTrianglePtr triangle() {
  return OdDbGeoTrianglePtr(new OdDbGeoTriangle({1, 1, 5}, {7, 1, 5}, {1, 4, 5}));
}

OdDbGeoPolygonPtr square() {
  OdDbGeoPolygonPtr polygon = OdDbGeoPolygon::createObject();
  polygon->init(OdGePoint3d::kOrigin, 4);
  polygon->setValue(OdGePoint3d(2, 0, 0)); // (2,0) (0,2) (-2,0) (0,-2): area 8
  return polygon;
}

/// The hatch's only loop is an external polyline loop through these points, all straight.
void expectOutlineLoop(const OdDbHatch* hatch, const std::vector<OdGePoint2d>& points) {
  ASSERT_EQ(hatch->numLoops(), 1);
  OdInt32 type = 0;
  OdGePoint2dArray vertices;
  OdGeDoubleArray bulges;
  hatch->getLoopAt(0, type, vertices, bulges);
  EXPECT_EQ(type, OdDbHatch::kExternal | OdDbHatch::kPolyline);
  ASSERT_EQ(vertices.size(), points.size());
  for (unsigned int i = 0; i < vertices.size(); ++i) {
    EXPECT_NEAR(vertices[i].x, points[i].x, 1e-9) << i;
    EXPECT_NEAR(vertices[i].y, points[i].y, 1e-9) << i;
    EXPECT_EQ(bulges[i], 0.0);
  }
}

struct Shape {
  const char* name;
  OdDbEntityPtr entity;
  ExtendPEPtr filler;
  std::vector<OdGePoint2d> outline;
  double area;
};

std::vector<Shape> shapes() {
  return {{"triangle",
           OdDbEntityPtr(triangle()),
           fillerOf(OdDbGeoTriangle::desc()),
           {{1, 1}, {7, 1}, {1, 4}},
           9.0},
          {"polygon",
           OdDbEntityPtr(square()),
           fillerOf(OdDbGeoPolygon::desc()),
           {{2, 0}, {0, 2}, {-2, 0}, {0, -2}},
           8.0}};
}

TEST(TriangleExtendPE, ColourFillIsASolidAssociativeHatchOverTheOutline) {
  for (const Shape& s : shapes()) {
    SCOPED_TRACE(s.name);
    ASSERT_FALSE(s.filler.isNull());
    OdCmColor colour;
    colour.setColorIndex(3);
    OdDbHatchPtr hatch = s.filler->FillColor(s.entity, colour);
    ASSERT_FALSE(hatch.isNull());
    expectOutlineLoop(hatch, s.outline);
    EXPECT_TRUE(hatch->isSolidFill());
    EXPECT_EQ(hatch->patternType(), OdDbHatch::kPreDefined);
    EXPECT_EQ(hatch->patternName(), OdString(u"SOLID"));
    EXPECT_TRUE(hatch->associative());
    EXPECT_EQ(hatch->colorIndex(), 3);
    EXPECT_EQ(hatch->hatchStyle(), OdDbHatch::kNormal);
    EXPECT_EQ(hatch->hatchObjectType(), OdDbHatch::kHatchObject);
    EXPECT_FALSE(hatch->isDBRO());
    double area = 0;
    hatch->getArea(area);
    EXPECT_NEAR(area, s.area, 1e-9);
  }
}

TEST(TriangleExtendPE, PatternFillTakesTheDrawingDefaultsAndReportsCellsCovered) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  OdCmColor current;
  current.setColorIndex(6);
  db->setCECOLOR(current);
  for (const Shape& s : shapes()) {
    SCOPED_TRACE(s.name);
    s.entity->setDatabaseDefaults(db);
    double result = 0.5; // the pattern's unit size on the way in
    OdDbHatchPtr hatch = s.filler->FillPattern(s.entity, OdString(u"BRICK"), 2.0, 0.25, result);
    ASSERT_FALSE(hatch.isNull());
    EXPECT_NEAR(result, s.area / (2.0 * 2.0 * 0.5 * 0.5), 1e-9);
    expectOutlineLoop(hatch, s.outline);
    EXPECT_FALSE(hatch->isSolidFill());
    EXPECT_EQ(hatch->patternType(), OdDbHatch::kCustomDefined);
    EXPECT_EQ(hatch->patternName(), OdString(u"BRICK"));
    EXPECT_EQ(hatch->patternScale(), 2.0);
    EXPECT_EQ(hatch->patternAngle(), 0.25);
    EXPECT_TRUE(hatch->associative());
    EXPECT_EQ(hatch->colorIndex(), 6);
    EXPECT_FALSE(hatch->isDBRO());
  }
}

TEST(TriangleExtendPE, OtherClassesAreRefusedAndNoShapeFillsNothing) {
  OdDbLinePtr line = OdDbLine::createObject();
  OdCmColor colour;
  double result = 1.0;
  for (OdRxClass* cls : {OdDbGeoTriangle::desc(), OdDbGeoPolygon::desc()}) {
    ExtendPEPtr filler = fillerOf(cls);
    try {
      filler->FillColor(OdDbEntityPtr(line), colour);
      ADD_FAILURE() << "a line was filled";
    } catch (const OdError_NotThatKindOfClass& err) {
      EXPECT_EQ(err.objectClass(), OdDbLine::desc());
      EXPECT_EQ(err.wantedClass(), cls);
    }
    EXPECT_THROW(filler->FillPattern(OdDbEntityPtr(line), OdString(u"LINE"), 1.0, 0.0, result),
                 OdError_NotThatKindOfClass);
    EXPECT_TRUE(filler->FillColor(OdDbEntityPtr(), colour).isNull());
    EXPECT_TRUE(filler->FillPattern(OdDbEntityPtr(), OdString(u"LINE"), 1, 0, result).isNull());
    EXPECT_EQ(result, 1.0);
  }
}

TEST(TriangleExtendPE, PolygonWithFewerVerticesThanSidesCannotBeFilled) {
  OdDbGeoPolygonPtr polygon = square();
  polygon->init(OdGePoint3d::kOrigin, 6);
  OdCmColor colour;
  EXPECT_THROW(fillerOf(OdDbGeoPolygon::desc())->FillColor(OdDbEntityPtr(polygon), colour),
               OdError_InvalidIndex);
}

} // namespace
