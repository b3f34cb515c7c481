#include "PropertyContract.h"

namespace custents {

void appendHostMenus(const std::vector<int>& ids, std::vector<EntMenuData>& menus) {
  for (int id : ids) {
    auto it = g_mapAllRMenu.find(id);
    if (it != g_mapAllRMenu.end())
      menus.push_back(it->second);
  }
}

} // namespace custents
