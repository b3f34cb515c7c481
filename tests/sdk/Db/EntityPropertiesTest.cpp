#include "DbBlockTable.h"
#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbEntity.h"
#include "DbLayerTable.h"
#include "DbLinetypeTable.h"
#include "DbPoint.h"
#include "OdError.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace entity_properties_test {

/// An entity that overrides nothing: it shows the platform's default behaviour.
class EntPropsBlank : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(EntPropsBlank);
};
ODRX_DEFINE_PSEUDO_CONSTRUCTOR(EntPropsBlank)
ODRX_DEFINE_MEMBERS2(EntPropsBlank, OdDbEntity, &EntPropsBlank::pseudoConstructor, 0, 0, 0,
                     OD_T("ENTPROPSBLANK"), OdString::kEmpty)
typedef OdSmartPtr<EntPropsBlank> BlankPtr;

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;

/// The six common properties, compared together.
struct Props {
  OdCmColor color;
  OdDbObjectId layerId;
  OdDbObjectId linetypeId;
  double linetypeScale;
  OdDb::LineWeight lineWeight;
  OdDb::Visibility visibility;

  static Props of(const OdDbEntity* entity) {
    return Props{entity->color(),         entity->layerId(),    entity->linetypeId(),
                 entity->linetypeScale(), entity->lineWeight(), entity->visibility()};
  }
  bool operator==(const Props& other) const {
    return color == other.color && layerId == other.layerId && linetypeId == other.linetypeId &&
           linetypeScale == other.linetypeScale && lineWeight == other.lineWeight &&
           visibility == other.visibility;
  }
};

OdResult codeOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const OdError& err) {
    return err.code();
  }
  return eOk;
}

class EntityPropertiesTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { EntPropsBlank::rxInit(); }
  static void TearDownTestSuite() { EntPropsBlank::rxUninit(); }

  void SetUp() override {
    m_db = OdDbDatabase::createObject();
    OdDbLayerTablePtr layers = m_db->getLayerTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLayerTableRecordPtr walls = OdDbLayerTableRecord::createObject();
    walls->setName(OD_T("Walls"));
    m_walls = layers->add(walls);
    OdDbLinetypeTablePtr linetypes = m_db->getLinetypeTableId().safeOpenObject(OdDb::kForWrite);
    OdDbLinetypeTableRecordPtr dashed = OdDbLinetypeTableRecord::createObject();
    dashed->setName(OD_T("Dashed"));
    m_dashed = linetypes->add(dashed);
  }

  BlankPtr appendBlank() {
    BlankPtr entity = EntPropsBlank::createObject();
    OdDbBlockTableRecordPtr space = m_db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
    space->appendOdDbEntity(entity);
    return entity;
  }

  /// A resident entity with none of its properties at their defaults.
  BlankPtr appendDressed() {
    BlankPtr entity = appendBlank();
    OdCmColor color;
    color.setRGB(10, 200, 30);
    entity->setColor(color);
    entity->setLayer(m_walls);
    entity->setLinetype(m_dashed);
    entity->setLinetypeScale(2.5);
    entity->setLineWeight(OdDb::kLnWt035);
    entity->setVisibility(OdDb::kInvisible);
    return entity;
  }

  OdDbDatabasePtr m_db;
  OdDbObjectId m_walls, m_dashed;
};

TEST_F(EntityPropertiesTest, ColourByIndexOrValueAndBadIndexRefused) {
  BlankPtr entity = appendBlank();
  for (OdUInt16 index : {0, 1, 7, 255, 256}) {
    SCOPED_TRACE(index);
    entity->setColorIndex(index);
    EXPECT_EQ(index, entity->colorIndex());
    EXPECT_EQ(index, entity->entityColor().colorIndex());
  }
  EXPECT_TRUE(entity->color().isByLayer()) << "256 is ByLayer";
  entity->setColorIndex(3);
  for (OdUInt16 bad : {257, 1000, 65535}) {
    SCOPED_TRACE(bad);
    EXPECT_EQ(eInvalidInput, codeOf([&] { entity->setColorIndex(bad); }));
    EXPECT_EQ(3, entity->colorIndex()) << "a refused index changed the colour";
  }
  OdCmColor rgb;
  rgb.setRGB(1, 2, 3);
  entity->setColor(rgb);
  EXPECT_TRUE(entity->color() == rgb);
  EXPECT_TRUE(entity->color().isByColor());
}

TEST_F(EntityPropertiesTest, LayerAndLinetypeByNameNeedARecordOfTheDatabase) {
  struct Case {
    const char* what;
    std::function<void(OdDbEntity*, const OdString&)> setByName;
    std::function<OdString(const OdDbEntity*)> name;
    std::function<OdDbObjectId(const OdDbEntity*)> id;
    OdDbObjectId expected;
    const char16_t* defaultName;
  } cases[] = {
      {"layer", [](OdDbEntity* e, const OdString& n) { e->setLayer(n); },
       [](const OdDbEntity* e) { return e->layer(); },
       [](const OdDbEntity* e) { return e->layerId(); }, m_walls, u"0"},
      {"linetype", [](OdDbEntity* e, const OdString& n) { e->setLinetype(n); },
       [](const OdDbEntity* e) { return e->linetype(); },
       [](const OdDbEntity* e) { return e->linetypeId(); }, m_dashed, u"ByLayer"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    BlankPtr resident = appendBlank();
    const OdDbObjectId before = c.id(resident);
    EXPECT_EQ(eKeyNotFound, codeOf([&] { c.setByName(resident, OD_T("Nowhere")); }));
    EXPECT_EQ(before, c.id(resident));
    const OdString upper = c.expected == m_walls ? OD_T("WALLS") : OD_T("DASHED");
    c.setByName(resident, upper); // names are found in any letter case
    EXPECT_EQ(c.expected, c.id(resident));
    EXPECT_EQ(0, c.name(resident).iCompare(upper));
    EXPECT_NE(upper, c.name(resident)) << "the record's own spelling is reported";

    BlankPtr loose = EntPropsBlank::createObject();
    EXPECT_EQ(OdString(c.defaultName), c.name(loose));
    EXPECT_EQ(eNotInDatabase, codeOf([&] { c.setByName(loose, upper); }));
    EXPECT_TRUE(c.id(loose).isNull());
    loose->setDatabaseDefaults(m_db);
    c.setByName(loose, upper); // a free-standing entity of a database resolves names there
    EXPECT_EQ(c.expected, c.id(loose));
  }
  BlankPtr entity = appendBlank();
  EXPECT_EQ(eWrongObjectType, codeOf([&] { entity->setLayer(m_dashed); }));
  EXPECT_EQ(eWrongObjectType, codeOf([&] { entity->setLinetype(m_walls); }));
}

TEST_F(EntityPropertiesTest, LinetypeScaleMustBePositiveAndFinite) {
  BlankPtr entity = appendBlank();
  entity->setLinetypeScale(2.5);
  const double inf = std::numeric_limits<double>::infinity();
  for (double bad : {0.0, -0.0, -1.0, -inf, inf, std::nan("")}) {
    SCOPED_TRACE(bad);
    EXPECT_EQ(eInvalidInput, codeOf([&] { entity->setLinetypeScale(bad); }));
    EXPECT_EQ(2.5, entity->linetypeScale());
  }
  for (double good : {1e-9, 1.0, 1e9}) {
    entity->setLinetypeScale(good);
    EXPECT_EQ(good, entity->linetypeScale());
  }
}

TEST_F(EntityPropertiesTest, LineWeightMustBeALineweight) {
  BlankPtr entity = appendBlank();
  entity->setLineWeight(OdDb::kLnWt050);
  for (int bad : {-4, 1, 4, 6, 51, 201, 212, 1000}) {
    SCOPED_TRACE(bad);
    EXPECT_EQ(eInvalidInput,
              codeOf([&] { entity->setLineWeight(static_cast<OdDb::LineWeight>(bad)); }));
    EXPECT_EQ(OdDb::kLnWt050, entity->lineWeight());
  }
  for (OdDb::LineWeight good : {OdDb::kLnWt000, OdDb::kLnWt211, OdDb::kLnWtByLayer,
                                OdDb::kLnWtByBlock, OdDb::kLnWtByLwDefault}) {
    entity->setLineWeight(good);
    EXPECT_EQ(good, entity->lineWeight());
  }
  entity->setVisibility(OdDb::kInvisible);
  EXPECT_EQ(OdDb::kInvisible, entity->visibility());
  entity->setVisibility(OdDb::kVisible);
  EXPECT_EQ(OdDb::kVisible, entity->visibility());
}

TEST_F(EntityPropertiesTest, SetPropertiesFromCopiesAllSix) {
  BlankPtr source = appendDressed();
  BlankPtr resident = appendBlank();
  BlankPtr loose = EntPropsBlank::createObject();
  for (OdDbEntity* target : {static_cast<OdDbEntity*>(resident), static_cast<OdDbEntity*>(loose)}) {
    ASSERT_FALSE(Props::of(target) == Props::of(source));
    target->setPropertiesFrom(source);
    EXPECT_TRUE(Props::of(target) == Props::of(source));
    EXPECT_EQ(m_db.get(), target->database());
  }
  EXPECT_EQ(OdString(OD_T("Walls")), loose->layer());
  EXPECT_EQ(eNullEntityPointer, codeOf([&] { loose->setPropertiesFrom(nullptr); }));
}

TEST_F(EntityPropertiesTest, SetDatabaseDefaultsTakesTheCurrentProperties) {
  OdCmColor cecolor;
  cecolor.setColorIndex(5);
  m_db->setCECOLOR(cecolor);
  m_db->setCLAYER(m_walls);
  m_db->setCELTYPE(m_dashed);
  m_db->setCELTSCALE(3.0);
  m_db->setCELWEIGHT(OdDb::kLnWt050);

  BlankPtr entity = EntPropsBlank::createObject();
  EXPECT_EQ(eNotInDatabase, codeOf([&] { entity->setDatabaseDefaults(); }));
  entity->setDatabaseDefaults(m_db);
  EXPECT_FALSE(entity->isDBRO());
  EXPECT_EQ(m_db.get(), entity->database());
  EXPECT_EQ(5, entity->colorIndex());
  EXPECT_EQ(m_walls, entity->layerId());
  EXPECT_EQ(m_dashed, entity->linetypeId());
  EXPECT_EQ(3.0, entity->linetypeScale());
  EXPECT_EQ(OdDb::kLnWt050, entity->lineWeight());

  // Without an argument the entity's own database is used.
  m_db->setCELTSCALE(4.0);
  entity->setDatabaseDefaults();
  EXPECT_EQ(4.0, entity->linetypeScale());
}

TEST_F(EntityPropertiesTest, AppendGivesAnUnsetLayerAndLinetypeTheCurrentOnes) {
  m_db->setCLAYER(m_walls);
  m_db->setCELTYPE(m_dashed);
  BlankPtr plain = appendBlank();
  EXPECT_EQ(m_walls, plain->layerId());
  EXPECT_EQ(m_dashed, plain->linetypeId());

  BlankPtr own = EntPropsBlank::createObject();
  own->setLayer(m_db->getLayerZeroId());
  OdDbBlockTableRecordPtr space = m_db->getModelSpaceId().safeOpenObject(OdDb::kForWrite);
  space->appendOdDbEntity(own);
  EXPECT_EQ(m_db->getLayerZeroId(), own->layerId()) << "a set layer is kept";
  EXPECT_EQ(m_dashed, own->linetypeId());
  EXPECT_EQ(space->objectId(), own->ownerId());
}

TEST_F(EntityPropertiesTest, DwgRoundTripKeepsTheCommonData) {
  BlankPtr source = appendDressed();
  struct Case {
    OdDbFiler::FilerType type;
    bool keepsOwner;
  } cases[] = {{OdDbFiler::kFileFiler, true}, {OdDbFiler::kCopyFiler, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.type));
    Filer filer;
    filer.openForWrite(m_db, c.type);
    source->dwgOutFields(&filer);
    ASSERT_EQ(eOk, filer.filerStatus());
    filer.rewind();
    BlankPtr copy = EntPropsBlank::createObject();
    ASSERT_EQ(eOk, copy->dwgInFields(&filer));
    EXPECT_TRUE(Props::of(copy) == Props::of(source));
    EXPECT_EQ(c.keepsOwner ? m_db->getModelSpaceId() : OdDbObjectId(), copy->ownerId());
  }
}

TEST_F(EntityPropertiesTest, StreamCutShortAtAnyByteIsRefused) {
  BlankPtr source = appendDressed();
  Filer writer;
  writer.openForWrite(m_db, OdDbFiler::kFileFiler);
  source->dwgOutFields(&writer);
  const OdUInt8Array* buffers[] = {&writer.dataBuffer(), &writer.stringBuffer(),
                                   &writer.handleBuffer()};
  const OdUInt64 bits[] = {writer.dataBitSize(), writer.stringBitSize(), writer.handleBitSize()};
  int cuts = 0;
  for (int stream = 0; stream < 3; ++stream) {
    for (OdUInt64 bytes = 0; bytes * 8 < bits[stream]; ++bytes) {
      SCOPED_TRACE(::testing::Message() << "stream " << stream << " cut at byte " << bytes);
      OdUInt8Array cut[3] = {*buffers[0], *buffers[1], *buffers[2]};
      OdUInt64 cutBits[3] = {bits[0], bits[1], bits[2]};
      cut[stream].resize(static_cast<unsigned>(bytes));
      cutBits[stream] = bytes * 8;
      Filer reader;
      reader.openForRead(cut[0], cutBits[0], cut[1], cutBits[1], cut[2], cutBits[2], m_db);
      BlankPtr target = EntPropsBlank::createObject();
      target->setColorIndex(3);
      const Props before = Props::of(target);
      EXPECT_NE(eOk, target->dwgInFields(&reader));
      EXPECT_TRUE(Props::of(target) == before) << "a refused read changed the entity";
      ++cuts;
    }
  }
  EXPECT_GT(cuts, 10);
}

TEST_F(EntityPropertiesTest, ImpossibleValuesInAStreamAreRefused) {
  BlankPtr source = appendDressed();
  struct Case {
    const char* what;
    double scale;
    OdInt16 visibility;
    OdUInt8 lineWeightIndex;
    OdResult expected;
  } cases[] = {
      {"valid", 2.0, 1, 7, eOk},
      {"zero scale", 0.0, 0, 7, eDwgObjectImproperlyRead},
      {"negative scale", -1.0, 0, 7, eDwgObjectImproperlyRead},
      {"NaN scale", std::nan(""), 0, 7, eDwgObjectImproperlyRead},
      {"visibility 2", 1.0, 2, 7, eDwgObjectImproperlyRead},
      {"visibility -1", 1.0, -1, 7, eDwgObjectImproperlyRead},
      {"lineweight index 24", 1.0, 0, 24, eDwgObjectImproperlyRead},
      {"lineweight index 255", 1.0, 0, 255, eDwgObjectImproperlyRead},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Filer filer;
    filer.openForWrite(m_db, OdDbFiler::kFileFiler);
    filer.wrSoftPointerId(m_db->getModelSpaceId());
    filer.wrCmColor(source->color());
    filer.wrDouble(c.scale);
    filer.wrHardPointerId(m_walls);
    filer.wrHardPointerId(m_dashed);
    filer.wrInt16(c.visibility);
    filer.wrUInt8(c.lineWeightIndex);
    filer.rewind();
    BlankPtr target = EntPropsBlank::createObject();
    const Props before = Props::of(target);
    EXPECT_EQ(c.expected, target->dwgInFields(&filer));
    if (c.expected == eOk) {
      EXPECT_EQ(2.0, target->linetypeScale());
      EXPECT_EQ(OdDb::kInvisible, target->visibility());
      EXPECT_EQ(OdDb::kLnWt025, target->lineWeight());
      EXPECT_EQ(m_walls, target->layerId());
    } else {
      EXPECT_TRUE(Props::of(target) == before);
    }
  }
}

TEST_F(EntityPropertiesTest, CloneAndCopyFromMakeEqualFreeStandingCopies) {
  BlankPtr source = appendDressed();
  OdDbEntityPtr clone = OdDbEntity::cast(source->clone());
  ASSERT_FALSE(clone.isNull());
  EXPECT_NE(source.get(), clone.get());
  EXPECT_EQ(EntPropsBlank::desc(), clone->isA());
  EXPECT_FALSE(clone->isDBRO());
  EXPECT_TRUE(clone->objectId().isNull());
  EXPECT_TRUE(clone->ownerId().isNull());
  EXPECT_EQ(m_db.get(), clone->database());
  EXPECT_TRUE(Props::of(clone) == Props::of(source));
  clone->setColorIndex(1);
  EXPECT_NE(1, source->colorIndex()) << "the copy shares state with its source";

  BlankPtr target = EntPropsBlank::createObject();
  target->copyFrom(source);
  EXPECT_TRUE(Props::of(target) == Props::of(source));

  OdDbPointPtr point = OdDbPoint::createObject();
  EXPECT_EQ(eNotThatKindOfClass, codeOf([&] { target->copyFrom(point); }));
  EXPECT_EQ(eNotThatKindOfClass, codeOf([&] { target->copyFrom(nullptr); }));
}

TEST_F(EntityPropertiesTest, DefaultOperationsRefuseOrReportNothing) {
  BlankPtr entity = appendDressed();
  const OdGePoint3d origin;
  OdGePoint3dArray points;
  points.append(origin);
  EXPECT_EQ(eNotApplicable, entity->getGripPoints(points));
  EXPECT_EQ(eNotApplicable, entity->getStretchPoints(points));
  EXPECT_EQ(eNotApplicable,
            entity->getOsnapPoints(OdDb::kOsModeEnd, 0, origin, origin, OdGeMatrix3d(), points));
  EXPECT_EQ(1u, points.size()) << "a refusal adds no points";

  OdDbGripDataPtrArray grips;
  EXPECT_EQ(eNotImplemented, entity->getGripPoints(grips, 1.0, 3, OdGeVector3d(0, 0, 1), 0));
  EXPECT_EQ(0u, grips.size());
  OdIntArray indices;
  indices.append(0);
  EXPECT_EQ(eNotApplicable, entity->moveGripPointsAt(indices, OdGeVector3d(1, 0, 0)));
  EXPECT_EQ(eNotApplicable, entity->moveStretchPointsAt(indices, OdGeVector3d(1, 0, 0)));
  EXPECT_EQ(eNotImplemented,
            entity->moveGripPointsAt(OdDbVoidPtrArray(), OdGeVector3d(1, 0, 0), 0));

  const OdGeMatrix3d shift = OdGeMatrix3d::translation(OdGeVector3d(5, 0, 0));
  EXPECT_EQ(eNotApplicable, entity->transformBy(shift));
  OdDbEntityPtr copy;
  EXPECT_EQ(eNotApplicable, entity->getTransformedCopy(shift, copy));
  EXPECT_TRUE(copy.isNull()) << "a refused transform hands out no copy";

  OdRxObjectPtrArray pieces;
  pieces.append(OdRxObjectPtr());
  EXPECT_EQ(eNotApplicable, entity->explode(pieces));
  EXPECT_EQ(1u, pieces.size());

  OdGePoint3dArray hits;
  EXPECT_EQ(eNotImplemented, entity->intersectWith(entity, OdDb::kOnBothOperands, hits));
  EXPECT_EQ(0u, hits.size());

  const OdGeExtents3d marker(OdGePoint3d(1, 2, 3), OdGePoint3d(4, 5, 6));
  OdGeExtents3d extents = marker;
  EXPECT_EQ(eInvalidExtents, entity->getGeomExtents(extents));
  EXPECT_TRUE(extents.minPoint() == marker.minPoint() && extents.maxPoint() == marker.maxPoint());
}

} // namespace entity_properties_test
