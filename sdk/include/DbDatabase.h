#ifndef OD_DB_DATABASE_H
#define OD_DB_DATABASE_H

/// A drawing: its objects by id and handle, the symbol tables, model and paper space, and the
/// system variables that new entities take their properties from.

#include "CmColor.h"
#include "DbLineWeight.h"
#include "DbObject.h"
#include "Ge/GeMatrix3d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeVector3d.h"

#include <memory>
#include <unordered_map>
#include <vector>

class OdDbDatabase : public OdRxObject {
  ODRX_DECLARE_MEMBERS(OdDbDatabase);

  /// A new drawing holds layer "0"; linetypes "ByBlock", "ByLayer" and "Continuous"; the
  /// block records "*Model_Space" and "*Paper_Space"; text style "Standard" (font "txt").
  OdDbDatabase();
  ~OdDbDatabase() override;

  /// Makes a free-standing object resident under a new handle (or the given one, which must be
  /// unused: OdError(eHandleInUse)). Throws OdError(eAlreadyInDb) for a resident object. The
  /// object stays open for write while the caller holds it.
  OdDbObjectId addOdDbObject(OdDbObject* object, OdDbObjectId ownerId = OdDbObjectId::kNull,
                             OdDbHandle handle = OdDbHandle());
  /// The id of a handle; with createIfNotFound an id without an object is made for a handle not
  /// seen yet (a forward reference while reading), otherwise null.
  OdDbObjectId getOdDbObjectId(const OdDbHandle& handle, bool createIfNotFound = false);
  /// The next handle to be given out.
  OdDbHandle handseed() const { return m_handseed; }
  /// Number of objects in the database (erased ones included).
  unsigned numObjects() const;

  OdDbObjectId getLayerTableId() const { return m_layerTableId; }
  OdDbObjectId getLinetypeTableId() const { return m_linetypeTableId; }
  OdDbObjectId getBlockTableId() const { return m_blockTableId; }
  OdDbObjectId getTextStyleTableId() const { return m_textStyleTableId; }
  OdDbObjectId getTextStyleStandardId() const { return m_textStyleStandardId; }
  OdDbObjectId getModelSpaceId() const { return m_modelSpaceId; }
  OdDbObjectId getPaperSpaceId() const { return m_paperSpaceId; }
  OdDbObjectId getLayerZeroId() const { return m_layerZeroId; }
  OdDbObjectId getLinetypeByLayerId() const { return m_linetypeByLayerId; }
  OdDbObjectId getLinetypeByBlockId() const { return m_linetypeByBlockId; }
  OdDbObjectId getLinetypeContinuousId() const { return m_linetypeContinuousId; }
  /// The root of the drawing's dictionaries (a new drawing holds "ACAD_GROUP" there).
  OdDbObjectId getNamedObjectsDictionaryId() const { return m_namedObjectsDictionaryId; }
  /// The "ACAD_GROUP" dictionary, where the drawing's groups live under their names.
  OdDbObjectId getGroupDictionaryId() const { return m_groupDictionaryId; }

  // System variables for new entities.
  OdCmColor getCECOLOR() const { return m_cecolor; }
  void setCECOLOR(const OdCmColor& color) { m_cecolor = color; }
  OdDbObjectId getCLAYER() const { return m_clayer; }
  /// Throws OdError(eWrongObjectType) for an id that is not a layer of this database.
  void setCLAYER(OdDbObjectId layerId);
  OdDbObjectId getCELTYPE() const { return m_celtype; }
  void setCELTYPE(OdDbObjectId linetypeId);
  double getCELTSCALE() const { return m_celtscale; }
  void setCELTSCALE(double scale);
  OdDb::LineWeight getCELWEIGHT() const { return m_celweight; }
  void setCELWEIGHT(OdDb::LineWeight lineWeight);
  double getLTSCALE() const { return m_ltscale; }
  void setLTSCALE(double scale);
  /// The height new texts take (2.5 in a new drawing).
  double getTEXTSIZE() const { return m_textsize; }
  /// Throws OdError(eInvalidInput) for a size that is not a positive finite number.
  void setTEXTSIZE(double size);
  /// The text style new texts take ("Standard" in a new drawing).
  OdDbObjectId getTEXTSTYLE() const { return m_textstyle; }
  /// Throws OdError(eWrongObjectType) for an id that is not a text style of this database.
  void setTEXTSTYLE(OdDbObjectId textStyleId);
  /// The overall scale of annotations, the drawing scale (1 in a new drawing): a drawing at
  /// 1:100 has 100, and its texts and arrows are drawn 100 times their plotted size.
  double getDIMSCALE() const { return m_dimscale; }
  /// Throws OdError(eInvalidInput) for a scale that is not a positive finite number.
  void setDIMSCALE(double scale);

  // The current user coordinate system, in which commands take and show coordinates (the
  // world system in a new drawing).
  OdGePoint3d getUCSORG() const { return m_ucsOrigin; }
  OdGeVector3d getUCSXDIR() const { return m_ucsXAxis; }
  OdGeVector3d getUCSYDIR() const { return m_ucsYAxis; }
  /// Stores the axes as unit vectors. Throws OdError(eInvalidInput), changing nothing, for a
  /// non-finite value, a zero axis or axes that are not perpendicular.
  void setUcs(const OdGePoint3d& origin, const OdGeVector3d& xAxis, const OdGeVector3d& yAxis);
  /// Maps UCS coordinates to world coordinates; its inverse maps world to UCS.
  OdGeMatrix3d getUcsToWorldMatrix() const;

private:
  friend class OdDbObjectId;
  struct Stubs;

  OdDbStub* newStub(const OdDbHandle& handle);

  std::unique_ptr<Stubs> m_stubs;
  OdDbHandle m_handseed = 1;
  OdDbObjectId m_layerTableId, m_linetypeTableId, m_blockTableId;
  OdDbObjectId m_textStyleTableId, m_textStyleStandardId, m_textstyle;
  double m_textsize = 2.5;
  double m_dimscale = 1.0;
  OdGePoint3d m_ucsOrigin;
  OdGeVector3d m_ucsXAxis{1.0, 0.0, 0.0};
  OdGeVector3d m_ucsYAxis{0.0, 1.0, 0.0};
  OdDbObjectId m_modelSpaceId, m_paperSpaceId, m_layerZeroId;
  OdDbObjectId m_linetypeByLayerId, m_linetypeByBlockId, m_linetypeContinuousId;
  OdDbObjectId m_namedObjectsDictionaryId, m_groupDictionaryId;
  OdCmColor m_cecolor;
  OdDbObjectId m_clayer, m_celtype;
  double m_celtscale = 1.0;
  double m_ltscale = 1.0;
  OdDb::LineWeight m_celweight = OdDb::kLnWtByLayer;
};

typedef OdSmartPtr<OdDbDatabase> OdDbDatabasePtr;

#endif
