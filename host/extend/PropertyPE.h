#ifndef HOST_PROPERTY_PE_H
#define HOST_PROPERTY_PE_H

/// The property protocol extension: the host's property grid, right-click menus and list
/// command know nothing of a module's entity classes, so each module attaches a PropertyPE
/// to its classes and the host asks that object instead. This base class answers for any
/// entity with the host's common group (colour, layer, linetype, linetype scale, lineweight),
/// which is why an entity without an extension of its own still gets a useful grid.
///
/// The virtual operations follow OdRxObject's in a fixed order that modules built for the
/// host depend on; do not reorder, insert or remove any of them.

#include "DbObjectId.h"
#include "OdArray.h"
#include "OdString.h"
#include "PropertyRecords.h"
#include "RxObject.h"

#include <vector>

class OdDbEntity;
class OdVariant;

class PropertyPE : public OdRxObject {
  ODRX_DECLARE_MEMBERS(PropertyPE);

  PropertyPE() = default;

  /// Number of groups, group 0 (the common group) included.
  virtual int getPropertyCount();
  /// Neutral: 0. The grid takes a group's row count from getPropertyByeId.
  virtual int getAttributeCount(const OdDbEntity* entity, int group);
  /// Group 0 is {1, "常规", 5}; any other group number gives {0, "", 0}.
  virtual entityProperty getPropertyByeId(const OdDbEntity* entity, int group);
  /// Group 0 rows 0..4 are the common rows (getComPropAtt); anything else is an empty record.
  virtual propAttribute getPropAttributeByeId(const OdDbEntity* entity, int group, int row);
  /// The name the host shows for the entity; here its class name, empty for null.
  virtual OdString getEntityName(const OdDbEntity* entity);
  /// Neutral: adds nothing, false.
  virtual bool GetEntityMenuItemMap(std::vector<MenuMap>& items);
  /// Neutral: empty.
  virtual OdString getZCMXName(const OdDbEntity* entity);
  /// Neutral: adds nothing.
  virtual void GetOperationItem(OdArray<OdString>& items);
  /// The text of the host's list command for any entity, one "label:value" line each, joined
  /// by "\n" with no newline at the end:
  ///   类名:<class name>
  ///   句柄:<handle, upper-case hexadecimal, 0 outside a database>
  ///   颜色:<ByLayer | ByBlock | 索引<n> | RGB(<r>,<g>,<b>) | None | Foreground>
  ///   图层:<layer name>
  ///   线型:<linetype name>
  ///   线型比例:<scale, "%.4f">
  ///   线宽:<ByLayer | ByBlock | Default | <width in mm, "%.2f">mm>
  /// A null entity gives an empty text. Extensions put a caption in front and their own
  /// lines after it.
  virtual OdString GetListInfo(OdDbEntity* entity);

private:
  /// Kept for the host's id-based callers; answers false. Modules never override it.
  virtual bool setPropAttributeByeId(OdDbObjectId entityId, const OdVariant& value, int group,
                                     int row);

public:
  /// Applies an edited value. Group 0 rows 0..4 go to setComPropAtt; any other group or row is
  /// accepted (true) and changes nothing, so the grid never reports an error for a row the
  /// extension does not know.
  virtual bool setPropAttributeByeId(OdDbEntity* entity, const OdVariant& value, int group,
                                     int row);
  /// Appends the entity's right-click menu entries; the base wants no menu (true, nothing).
  virtual bool GetRMenus(std::vector<EntMenuData>& menus);
  /// Neutral: 0.
  virtual int Reset(const OdVariant& value);

  /// One of the five common rows of group 0, read from the entity:
  /// 0 colour (packed colour as an unsigned 32-bit value, colour-picker editor),
  /// 1 layer name, 2 linetype name, 3 linetype scale (double),
  /// 4 lineweight (32-bit integer of OdDb::LineWeight: hundredths of a millimetre, -1 by
  /// layer, -2 by block, -3 default). A null entity or a row outside 0..4 gives an empty
  /// record.
  propAttribute getComPropAtt(const OdDbEntity* entity, int row);

protected:
  /// Writes one common row to an entity open for write (free-standing entities always are).
  /// Accepted values per row: 0 a 32-bit integer holding a packed colour; 1 the name of a layer
  /// of the entity's database; 2 the name of a linetype of the entity's database; 3 a positive
  /// finite double, or a string that converts to one as a whole (white space around it
  /// allowed); 4 a 32-bit integer that is a lineweight. Values may be held by reference, not as
  /// arrays. Anything else, a null entity, an entity that is not open for write, or a row
  /// outside 0..4 returns false and changes nothing.
  bool setComPropAtt(OdDbEntity* entity, const OdVariant& value, int row);
};

typedef OdSmartPtr<PropertyPE> PropertyPEPtr;

#endif
