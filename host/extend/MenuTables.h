#ifndef HOST_MENU_TABLES_H
#define HOST_MENU_TABLES_H

/// The host's right-click menu tables. Every menu entry the host knows lives once in
/// g_mapAllRMenu; the id vectors list, in display order, which entries make up the menu of a
/// kind of entity. Extensions build an entity's menu by looking each id of a vector up in the
/// map. The tables are filled when the library is loaded and are read-only afterwards.
///
/// Ids in use: 8001-8012 editing commands, 8020-8023 the drawing-order submenu, 8040-8044
/// dimension text commands, 8070-8073 polyline commands, 8090-8093 block statistics table
/// commands, 8099 drawing statistics, 8100-8101 selection, 8109 a separator.

#include "PropertyRecords.h"

#include <map>
#include <vector>

/// Every right-click menu entry of the host, by command id.
extern std::map<int, EntMenuData> g_mapAllRMenu;
/// The menu of dimension entities.
extern std::vector<int> vdimMenus;
/// The menu of basic drawing entities built on polylines (clouds, free-pen strokes): it holds
/// both "闭合" and "打开", and the host shows the one that applies.
extern std::vector<int> vbaseDrawing;
/// The menu of other basic drawing entities (closed survey shapes).
extern std::vector<int> votherBaseDrawing;
/// The menu of the block statistics table.
extern std::vector<int> vBlkStaTablefMenus;

/// Command ids with a fixed meaning that the host and modules refer to.
enum HostMenuId {
  kMenuDelete = 8001,
  kMenuMove = 8002,
  kMenuCopy = 8003,
  kMenuScale = 8004,
  kMenuRotate = 8005,
  kMenuMirror = 8006,
  kMenuDrawOrder = 8007,
  kMenuOffset = 8008,
  kMenuArray = 8009,
  kMenuGroup = 8010,
  kMenuExplode = 8011,
  kMenuProperties = 8012,
  kMenuBringToFront = 8020,
  kMenuSendToBack = 8021,
  kMenuBringAbove = 8022,
  kMenuSendUnder = 8023,
  kMenuEditDimText = 8040,
  kMenuResetDimText = 8041,
  kMenuMoveDimText = 8042,
  kMenuDimTextStyle = 8043,
  kMenuDimUnit = 8044,
  kMenuClose = 8070,
  kMenuOpen = 8071,
  kMenuAddVertex = 8072,
  kMenuRemoveVertex = 8073,
  kMenuUpdateStatistics = 8090,
  kMenuExportTable = 8091,
  kMenuLocateBlocks = 8092,
  kMenuTableStyle = 8093,
  kMenuDrawingStatistics = 8099,
  kMenuSelectSimilar = 8100,
  kMenuDeselectAll = 8101,
  kMenuSeparator = 8109
};

#endif
