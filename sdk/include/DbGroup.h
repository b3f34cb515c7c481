#ifndef OD_DB_GROUP_H
#define OD_DB_GROUP_H

/// A named selection of entities that users pick and edit together. A group lives in the
/// database's "ACAD_GROUP" dictionary, whose key is the group's name; it only refers to its
/// entities (hard pointers), which stay owned by their block.

#include "DbObject.h"

class OdDbEntity;

class OdDbGroup : public OdDbObject {
  ODRX_DECLARE_MEMBERS(OdDbGroup);

  OdDbGroup();

  OdString description() const;
  /// Throws OdError(eInvalidInput) for a description with a line break (a DXF value is one line).
  void setDescription(const OdString& description);
  /// A selectable group selects all its entities when one of them is picked.
  bool isSelectable() const;
  void setSelectable(bool selectable);
  /// An anonymous group has a generated name ("*A1") and is not listed to users.
  bool isAnonymous() const;
  void setAnonymous();

  /// Throws OdError: eNullObjectId for a null id, eInvalidInput for an id the group has
  /// already, eWrongObjectType for an object that is not an entity, eWrongDatabase for an id
  /// of another database than the group's. insertAt also throws eInvalidIndex for an index
  /// past the end.
  void append(OdDbObjectId id);
  void append(const OdDbObjectIdArray& ids);
  void prepend(OdDbObjectId id);
  void insertAt(OdUInt32 index, OdDbObjectId id);
  /// False when the group does not hold id.
  bool remove(OdDbObjectId id);
  /// Throws OdError(eInvalidIndex) for an index past the end.
  void removeAt(OdUInt32 index);
  bool has(OdDbObjectId id) const;
  bool has(const OdDbEntity* entity) const;
  OdUInt32 numEntities() const;
  /// Replaces ids with the group's entity ids in order.
  void allEntityIds(OdDbObjectIdArray& ids) const;
  /// The index of id, or -1.
  int indexOf(OdDbObjectId id) const;
  void clear();

  /// After the object's data: TU description, BS anonymous, BS selectable, BL count, then a
  /// hard pointer per entity. A negative count, one the remaining stream cannot hold, a flag
  /// other than 0 or 1, or a repeated id gives eDwgObjectImproperlyRead, nothing changed.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbGroup": 300 description, 70 anonymous, 71 selectable, 340 per entity.
  /// A flag other than 0 or 1 or a repeated id gives eInvalidDxfCode, nothing changed.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

private:
  void checkNewId(OdDbObjectId id) const;

  OdString m_description;
  bool m_selectable = true;
  bool m_anonymous = false;
  OdDbObjectIdArray m_ids;
};

typedef OdSmartPtr<OdDbGroup> OdDbGroupPtr;

#endif
