#ifndef CUSTENTS_PROPERTY_CONTRACT_H
#define CUSTENTS_PROPERTY_CONTRACT_H

// How every property extension of the module answers the host's property grid. An extension
// declares its groups as tables of rows; this template walks the tables, so the rules below
// live in one place:
//  - the entity must be of the extension's class, else OdError_NotThatKindOfClass (a null
//    entity reads as an empty record and cannot be set);
//  - group 0 rows 0 to 4 are the host's common rows (colour, layer, linetype, linetype scale,
//    lineweight);
//  - a set whose value type (the low six bits of the variant type) is not the row's is refused
//    with false and changes nothing;
//  - rows and groups the extension does not know read as empty records and set as true with
//    no change, as do read-only rows.

#include "DbEntity.h"
#include "MenuTables.h"
#include "OdVariant.h"
#include "PropertyGridName.h"
#include "PropertyPE.h"

#include <vector>

namespace custents {

/// One row of a property group.
template <class Entity> struct PropertyRow {
  OdString label;
  /// "修改..." for a row that can be changed, "查看..." for one that can only be viewed.
  OdString tip;
  /// The variant type a set must carry: kString, kInt32 (colours), kDouble or kBool.
  OdVariant::Type type;
  /// 0 default editor, 1 colour picker, 3 yes/no choice.
  OdInt32 editorKind;
  OdVariant (*get)(const Entity& entity);
  /// Applies a value of the right type; null for a read-only row. Returns false to refuse.
  bool (*set)(Entity& entity, const OdVariant& value);
};

/// One group of rows after the common group.
template <class Entity> struct PropertyGroup {
  OdString caption;
  std::vector<PropertyRow<Entity>> rows;
  /// The leading integer of the group record.
  OdInt32 flag = 1;
};

/// Appends, in the order of `ids`, a copy of each host menu entry that the host's map has;
/// ids the map lacks are skipped.
void appendHostMenus(const std::vector<int>& ids, std::vector<EntMenuData>& menus);

/// The property extension of entities of class Entity.
template <class Entity> class EntityPropertyPE : public PropertyPE {
public:
  int getPropertyCount() override { return 1 + static_cast<int>(groups().size()); }

  entityProperty getPropertyByeId(const OdDbEntity* /*entity*/, int group) override {
    entityProperty record;
    if (group == 0) {
      record.flag = commonGroupFlag();
      record.name = PropertyGridName::_propertycommonyname;
      record.count = 5;
    } else if (const PropertyGroup<Entity>* g = groupAt(group)) {
      record.flag = g->flag;
      record.name = g->caption;
      record.count = static_cast<OdInt32>(g->rows.size());
    }
    return record;
  }

  propAttribute getPropAttributeByeId(const OdDbEntity* entity, int group, int row) override {
    OdSmartPtr<Entity> own = castEntity(entity);
    if (own.isNull())
      return propAttribute();
    if (group == 0)
      return row >= 0 && row < 5 ? getComPropAtt(entity, row) : propAttribute();
    const PropertyRow<Entity>* r = rowAt(group, row);
    if (!r)
      return propAttribute();
    propAttribute record;
    record.index = row;
    record.name = r->label;
    record.tip = r->tip;
    record.value = r->get(*own);
    record.editable = r->set != nullptr;
    record.reserved = false;
    record.editorKind = r->editorKind;
    return record;
  }

  bool setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value, int group,
                             int row) override {
    OdSmartPtr<Entity> own = castEntity(entity);
    if (own.isNull())
      return false;
    if (group == 0)
      return row >= 0 && row < 5 ? setComPropAtt(entity, value, row) : true;
    const PropertyRow<Entity>* r = rowAt(group, row);
    if (!r || !r->set)
      return true;
    if (value.type() != r->type)
      return false;
    return r->set(*own, value);
  }

protected:
  /// The groups after the common one; none by default.
  virtual const std::vector<PropertyGroup<Entity>>& groups() const {
    static const std::vector<PropertyGroup<Entity>> none;
    return none;
  }
  /// The leading integer of the common group's record.
  virtual OdInt32 commonGroupFlag() const { return 1; }

  /// The entity as the extension's class; null for a null entity; throws
  /// OdError_NotThatKindOfClass for an entity of another class.
  static OdSmartPtr<Entity> castEntity(const OdDbEntity* entity) {
    if (!entity)
      return OdSmartPtr<Entity>();
    OdSmartPtr<Entity> own = Entity::cast(entity);
    if (own.isNull())
      throw OdError_NotThatKindOfClass(entity->isA(), Entity::desc());
    return own;
  }

private:
  const PropertyGroup<Entity>* groupAt(int group) const {
    const auto& all = groups();
    return group >= 1 && group <= static_cast<int>(all.size()) ? &all[group - 1] : nullptr;
  }
  const PropertyRow<Entity>* rowAt(int group, int row) const {
    const PropertyGroup<Entity>* g = groupAt(group);
    return g && row >= 0 && row < static_cast<int>(g->rows.size()) ? &g->rows[row] : nullptr;
  }
};

} // namespace custents

/// An extension that offers the common group only, under a fixed display name. Entities whose
/// own rows come later answer through one of these.
#define CUSTENTS_COMMON_PROPERTY_PE(ExtensionClass, EntityClass, DisplayName)                      \
  class ExtensionClass : public custents::EntityPropertyPE<EntityClass> {                          \
  public:                                                                                          \
    OdString getEntityName(const OdDbEntity*) override { return OdString(DisplayName); }          \
  };

#endif
