#include "MenuTables.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

bool contains(const std::vector<int>& ids, int id) {
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

TEST(MenuTablesTest, EveryEntryIsWellFormed) {
  for (const auto& [id, entry] : g_mapAllRMenu) {
    SCOPED_TRACE(id);
    EXPECT_EQ(id, entry.id);
    EXPECT_TRUE(entry.flag1);
    EXPECT_FALSE(entry.flag2);
    // Only the separator has no caption.
    EXPECT_EQ(id == kMenuSeparator, entry.text.isEmpty());
    // A submenu entry names an entry of the table that opens its submenu, one level deep.
    if (entry.data != 0) {
      auto parent = g_mapAllRMenu.find(static_cast<int>(entry.data));
      ASSERT_NE(g_mapAllRMenu.end(), parent);
      EXPECT_EQ(0u, parent->second.data);
    }
  }
}

TEST(MenuTablesTest, MenusListOnlyKnownEntriesInAUsableOrder) {
  const std::pair<const char*, const std::vector<int>*> menus[] = {
      {"vdimMenus", &vdimMenus},
      {"vbaseDrawing", &vbaseDrawing},
      {"votherBaseDrawing", &votherBaseDrawing},
      {"vBlkStaTablefMenus", &vBlkStaTablefMenus}};
  for (const auto& [name, ids] : menus) {
    SCOPED_TRACE(name);
    ASSERT_FALSE(ids->empty());
    EXPECT_NE(kMenuSeparator, ids->front());
    EXPECT_NE(kMenuSeparator, ids->back());
    for (std::size_t i = 0; i < ids->size(); ++i) {
      const int id = (*ids)[i];
      SCOPED_TRACE(id);
      auto entry = g_mapAllRMenu.find(id);
      ASSERT_NE(g_mapAllRMenu.end(), entry);
      if (id != kMenuSeparator) {
        EXPECT_EQ(1, std::count(ids->begin(), ids->end(), id)) << "listed twice";
      } else if (i + 1 < ids->size()) {
        EXPECT_NE(kMenuSeparator, (*ids)[i + 1]) << "two separators in a row";
      }
      // A submenu entry comes after the entry that opens it.
      if (entry->second.data != 0) {
        auto parent = std::find(ids->begin(), ids->begin() + static_cast<long>(i),
                                static_cast<int>(entry->second.data));
        EXPECT_NE(ids->begin() + static_cast<long>(i), parent);
      }
    }
    EXPECT_TRUE(contains(*ids, kMenuProperties));
  }
  EXPECT_TRUE(contains(vbaseDrawing, 8070));
  EXPECT_FALSE(contains(votherBaseDrawing, 8070)) << "closed shapes cannot be opened";
}

} // namespace
