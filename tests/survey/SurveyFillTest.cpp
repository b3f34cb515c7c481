// Filling the survey shapes: a solid or a pattern hatch over the outline, free-standing, with the
// shape's drawing defaults; each shape extension fills its own class only.

#include "survey/RectExtensions.h"
#include "survey/TriangleExtensions.h"

#include "DbDatabase.h"
#include "DbHatch.h"
#include "DbLine.h"
#include "OdError.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

OdStaticRxObject<OdDb3dRectExtendPE> g_fill3dRect; // not attached: built as a host would

struct Shape {
  const char* name;
  OdDbEntityPtr entity;
  ExtendPE* filler;
  std::vector<OdGePoint2d> outline;
  double area;
  OdDbEntityPtr stranger; // an entity of another class
};

ExtendPE* attachedFiller(OdRxClass* cls) {
  return ExtendPE::cast(cls->getX(ExtendPE::desc())).get();
}

template <class Rect> OdDbEntityPtr rectangle() {
  OdSmartPtr<Rect> rect = Rect::createObject();
  rect->setPts(OdGePoint3d(1, 2, 0), OdGePoint3d(11, 6, 0)); // 10 by 4
  return rect;
}

/// One shape of every kind in `db`, whose current colour is ACI 6.
std::vector<Shape> shapes(OdDbDatabase* db) {
  OdDbGeoPolygonPtr square = OdDbGeoPolygon::createObject();
  square->init(OdGePoint3d::kOrigin, 4);
  square->setValue(OdGePoint3d(2, 0, 0));
  const std::vector<OdGePoint2d> tri = {{1, 1}, {7, 1}, {1, 4}},
                                 sq = {{2, 0}, {0, 2}, {-2, 0}, {0, -2}},
                                 rect = {{1, 2}, {11, 2}, {11, 6}, {1, 6}};
  OdDbEntityPtr triangle = OdDbGeoTrianglePtr(new OdDbGeoTriangle({1, 1, 5}, {7, 1, 5}, {1, 4, 5}));
  OdDbEntityPtr line = OdDbLine::createObject();
  std::vector<Shape> all = {
      {"triangle", triangle, attachedFiller(OdDbGeoTriangle::desc()), tri, 9.0, line},
      {"polygon", square, attachedFiller(OdDbGeoPolygon::desc()), sq, 8.0, line},
      {"rectangle", rectangle<OdDbGeoRect>(), attachedFiller(OdDbGeoRect::desc()), rect, 40.0,
       rectangle<OdDbGeo3dRect>()},
      {"3D rectangle", rectangle<OdDbGeo3dRect>(), &g_fill3dRect, rect, 40.0,
       rectangle<OdDbGeoRect>()},
  };
  OdCmColor current;
  current.setColorIndex(6);
  db->setCECOLOR(current);
  for (Shape& s : all) {
    s.entity->setDatabaseDefaults(db);
    s.stranger->setDatabaseDefaults(db);
  }
  return all;
}

/// A free-standing associative hatch over the shape's outline.
void expectHatchOver(const OdDbHatch* hatch, const Shape& shape, OdDbDatabase* db) {
  ASSERT_EQ(hatch->numLoops(), 1);
  OdInt32 type = 0;
  OdGePoint2dArray vertices;
  OdGeDoubleArray bulges;
  hatch->getLoopAt(0, type, vertices, bulges);
  EXPECT_EQ(type, OdDbHatch::kExternal | OdDbHatch::kPolyline);
  ASSERT_EQ(vertices.size(), shape.outline.size());
  for (unsigned int i = 0; i < vertices.size(); ++i) {
    EXPECT_NEAR(vertices[i].distanceTo(shape.outline[i]), 0.0, 1e-9) << i;
    EXPECT_EQ(bulges[i], 0.0);
  }
  EXPECT_TRUE(hatch->associative());
  EXPECT_EQ(hatch->hatchStyle(), OdDbHatch::kNormal);
  EXPECT_EQ(hatch->hatchObjectType(), OdDbHatch::kHatchObject);
  EXPECT_FALSE(hatch->isDBRO());
  EXPECT_TRUE(hatch->objectId().isNull());
  EXPECT_EQ(hatch->layerId(), db->getLayerZeroId());
}

TEST(SurveyFill, ColourIsASolidHatchAndAPatternReportsHowManyCellsTheAreaHolds) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  const struct { double scale, unit; } cases[] = {{2, 0.5}, {1, 1}, {0.5, 2}, {2, 1}};
  for (const Shape& s : shapes(db)) {
    SCOPED_TRACE(s.name);
    ASSERT_NE(s.filler, nullptr);
    OdCmColor colour;
    colour.setRGB(200, 30, 10);
    OdDbHatchPtr hatch = s.filler->FillColor(s.entity, colour);
    ASSERT_FALSE(hatch.isNull());
    expectHatchOver(hatch, s, db);
    EXPECT_TRUE(hatch->isSolidFill());
    EXPECT_EQ(hatch->patternType(), OdDbHatch::kPreDefined);
    EXPECT_EQ(hatch->patternName(), OdString(u"SOLID"));
    EXPECT_EQ(hatch->color().color(), colour.color());

    for (const auto& c : cases) {
      SCOPED_TRACE(testing::Message() << "scale " << c.scale << " unit " << c.unit);
      double ratio = c.unit; // the pattern's unit size on the way in
      hatch = s.filler->FillPattern(s.entity, OdString(u"BRICK"), c.scale, 0.25, ratio);
      ASSERT_FALSE(hatch.isNull());
      expectHatchOver(hatch, s, db);
      EXPECT_NEAR(ratio, s.area / (c.scale * c.scale * c.unit * c.unit), 1e-9);
      EXPECT_FALSE(hatch->isSolidFill());
      EXPECT_EQ(hatch->patternType(), OdDbHatch::kCustomDefined);
      EXPECT_EQ(hatch->patternName(), OdString(u"BRICK"));
      EXPECT_EQ(hatch->patternScale(), c.scale);
      EXPECT_EQ(hatch->patternAngle(), 0.25);
      EXPECT_EQ(hatch->colorIndex(), 6) << "the drawing's current colour";
    }
  }
}

TEST(SurveyFill, OtherClassesNoShapeAndShapesThatCannotBeFilledAreRefused) {
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  for (const Shape& s : shapes(db)) {
    SCOPED_TRACE(s.name);
    double ratio = 1.0;
    try {
      s.filler->FillColor(s.stranger, OdCmColor());
      ADD_FAILURE() << "another class was filled";
    } catch (const OdError_NotThatKindOfClass& error) {
      EXPECT_EQ(error.objectClass(), s.stranger->isA());
      EXPECT_EQ(error.wantedClass(), s.entity->isA());
    }
    EXPECT_THROW(s.filler->FillPattern(s.stranger, OdString(u"LINE"), 1.0, 0.0, ratio),
                 OdError_NotThatKindOfClass);
    EXPECT_TRUE(s.filler->FillColor(OdDbEntityPtr(), OdCmColor()).isNull());
    EXPECT_TRUE(s.filler->FillPattern(OdDbEntityPtr(), OdString(u"LINE"), 1, 0, ratio).isNull());
    EXPECT_EQ(ratio, 1.0);
  }
  std::vector<Shape> all = shapes(db);
  // A polygon with fewer vertices than sides has no outline.
  OdDbGeoPolygon::cast(all[1].entity)->init(OdGePoint3d::kOrigin, 6);
  EXPECT_THROW(all[1].filler->FillColor(all[1].entity, OdCmColor()), OdError_InvalidIndex);

  // A rectangle: a zero scale gives an infinite ratio that the hatch refuses, and outside a
  // drawing there are no defaults to give.
  for (const Shape& s : {all[2], all[3]}) {
    SCOPED_TRACE(s.name);
    double ratio = 1.0;
    try {
      s.filler->FillPattern(s.entity, OdString(u"ANSI31"), 0.0, 0.0, ratio);
      ADD_FAILURE() << "a zero scale was accepted";
    } catch (const OdError& error) {
      EXPECT_EQ(error.code(), eInvalidInput);
    }
    EXPECT_TRUE(std::isinf(ratio));
    OdDbEntityPtr loose = OdDbEntity::cast(s.entity->isA()->create());
    try {
      s.filler->FillColor(loose, OdCmColor());
      ADD_FAILURE() << "filled without a database";
    } catch (const OdError& error) {
      EXPECT_EQ(error.code(), eNotInDatabase);
    }
  }
}

} // namespace
