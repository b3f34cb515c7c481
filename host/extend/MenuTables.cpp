#include "MenuTables.h"

namespace {

struct MenuEntryText {
  int id;
  const OdChar* text;
  int parentId; // 0 for a top-level entry
  int icon;     // 0 for none
};

// Every entry of the host's right-click menus. Captions are the host's Chinese user interface.
const MenuEntryText kAllMenuEntries[] = {
    {kMenuDelete, OD_T("删除"), 0, 1},
    {kMenuMove, OD_T("移动"), 0, 2},
    {kMenuCopy, OD_T("复制选择"), 0, 3},
    {kMenuScale, OD_T("缩放"), 0, 4},
    {kMenuRotate, OD_T("旋转"), 0, 5},
    {kMenuMirror, OD_T("镜像"), 0, 6},
    {kMenuDrawOrder, OD_T("绘图次序"), 0, 0},
    {kMenuOffset, OD_T("偏移"), 0, 7},
    {kMenuArray, OD_T("阵列"), 0, 8},
    {kMenuGroup, OD_T("编组"), 0, 0},
    {kMenuExplode, OD_T("打散"), 0, 9},
    {kMenuProperties, OD_T("特性"), 0, 10},
    {kMenuBringToFront, OD_T("前置"), kMenuDrawOrder, 0},
    {kMenuSendToBack, OD_T("后置"), kMenuDrawOrder, 0},
    {kMenuBringAbove, OD_T("置于对象之上"), kMenuDrawOrder, 0},
    {kMenuSendUnder, OD_T("置于对象之下"), kMenuDrawOrder, 0},
    {kMenuEditDimText, OD_T("编辑文字"), 0, 11},
    {kMenuResetDimText, OD_T("文字重置"), 0, 0},
    {kMenuMoveDimText, OD_T("移动文字"), 0, 0},
    {kMenuDimTextStyle, OD_T("文字样式"), 0, 0},
    {kMenuDimUnit, OD_T("标注精度"), 0, 0},
    {kMenuClose, OD_T("闭合"), 0, 0},
    {kMenuOpen, OD_T("打开"), 0, 0},
    {kMenuAddVertex, OD_T("添加顶点"), 0, 0},
    {kMenuRemoveVertex, OD_T("删除顶点"), 0, 0},
    {kMenuUpdateStatistics, OD_T("更新统计"), 0, 0},
    {kMenuExportTable, OD_T("导出表格"), 0, 12},
    {kMenuLocateBlocks, OD_T("定位图块"), 0, 0},
    {kMenuTableStyle, OD_T("表格样式"), 0, 0},
    {kMenuDrawingStatistics, OD_T("图形统计"), 0, 13},
    {kMenuSelectSimilar, OD_T("选择类似对象"), 0, 0},
    {kMenuDeselectAll, OD_T("全部不选"), 0, 0},
    {kMenuSeparator, OD_T(""), 0, 0},
};

std::map<int, EntMenuData> buildAllMenus() {
  std::map<int, EntMenuData> menus;
  for (const MenuEntryText& entry : kAllMenuEntries) {
    EntMenuData data;
    data.id = entry.id;
    data.text = entry.text;
    data.data = static_cast<OdUInt64>(entry.parentId);
    data.extra = entry.icon;
    menus[entry.id] = data;
  }
  return menus;
}

} // namespace

std::map<int, EntMenuData> g_mapAllRMenu = buildAllMenus();

// The editing commands every basic entity offers, in display order.
std::vector<int> vbaseDrawing = {kMenuDelete,        kMenuMove,       kMenuCopy,
                                 kMenuScale,         kMenuRotate,     kMenuMirror,
                                 kMenuOffset,        kMenuSeparator,  kMenuClose,
                                 kMenuOpen,          kMenuAddVertex,  kMenuRemoveVertex,
                                 kMenuSeparator,     kMenuDrawOrder,  kMenuBringToFront,
                                 kMenuSendToBack,    kMenuBringAbove, kMenuSendUnder,
                                 kMenuSeparator,     kMenuExplode,    kMenuDrawingStatistics,
                                 kMenuSelectSimilar, kMenuSeparator,  kMenuProperties};

std::vector<int> votherBaseDrawing = {
    kMenuDelete,        kMenuMove,         kMenuCopy,       kMenuScale,
    kMenuRotate,        kMenuMirror,       kMenuArray,      kMenuSeparator,
    kMenuDrawOrder,     kMenuBringToFront, kMenuSendToBack, kMenuBringAbove,
    kMenuSendUnder,     kMenuSeparator,    kMenuExplode,    kMenuDrawingStatistics,
    kMenuSelectSimilar, kMenuSeparator,    kMenuProperties};

std::vector<int> vdimMenus = {
    kMenuEditDimText, kMenuResetDimText,  kMenuMoveDimText, kMenuDimTextStyle,
    kMenuDimUnit,     kMenuSeparator,     kMenuDelete,      kMenuMove,
    kMenuCopy,        kMenuRotate,        kMenuMirror,      kMenuSeparator,
    kMenuExplode,     kMenuSelectSimilar, kMenuSeparator,   kMenuProperties};

std::vector<int> vBlkStaTablefMenus = {
    kMenuUpdateStatistics, kMenuExportTable, kMenuLocateBlocks, kMenuTableStyle,
    kMenuSeparator,        kMenuDelete,      kMenuMove,         kMenuCopy,
    kMenuSeparator,        kMenuExplode,     kMenuSeparator,    kMenuProperties};
