#ifndef HOST_PROPERTY_RECORDS_H
#define HOST_PROPERTY_RECORDS_H

/// The records that carry property groups, property rows and menu entries between the property
/// extensions of loaded modules and the host's property grid and right-click menus. They are
/// plain values: extensions create and fill them, the host copies them.

#include "OdString.h"
#include "OdVariant.h"
#include "OdaCommon.h"

/// One group of the property grid.
struct entityProperty {
  /// 1 for a group the grid shows; 0 marks "no such group".
  OdInt32 flag = 0;
  /// The caption shown above the group's rows.
  OdString name;
  /// How many rows the grid asks for.
  OdInt32 count = 0;
};

/// One row of a property group.
struct propAttribute {
  /// The row's index within its group.
  OdInt32 index = 0;
  /// The label shown in the grid.
  OdString name;
  /// The help line; "修改..." for rows that can be changed, "查看..." for read-only rows.
  OdString tip;
  /// The current value; an empty variant for a row that does not exist.
  OdVariant value;
  /// False for computed rows the user may only look at.
  bool editable = false;
  /// Kept for the grid's own use; extensions leave it false.
  bool reserved = false;
  /// Which editor the grid opens: 0 the default for the value's type, 1 the colour picker,
  /// 3 a yes/no choice.
  OdInt32 editorKind = 0;
};

/// One entry of a right-click menu. Modules copy whole entries out of the host's table, so the
/// meaning of the fields is the host's:
/// - id: the command id the host runs when the entry is chosen;
/// - text: the caption; an empty caption is a separator line;
/// - flag1: the entry is enabled (greyed out when false);
/// - flag2: the entry carries a check mark;
/// - data: for an entry shown in a submenu, the id of the entry that opens the submenu;
///   0 for a top-level entry;
/// - extra: the index of the entry's icon in the host's menu bitmap, 0 for none.
struct EntMenuData {
  OdInt32 id = 0;
  OdString text;
  bool flag1 = true;
  bool flag2 = false;
  OdUInt64 data = 0;
  OdInt32 extra = 0;
};

/// One item of an entity's own menu-item map: lets an extension put commands of its own into
/// the host's entity menu (GetEntityMenuItemMap).
struct MenuMap {
  /// The command id the host assigns to the item.
  OdInt32 menuId = 0;
  /// The caption shown in the menu.
  OdString itemName;
  /// The command line the host runs when the item is chosen.
  OdString command;
};

#endif
