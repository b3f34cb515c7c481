#ifndef OD_DB_DXF_GROUPS_H
#define OD_DB_DXF_GROUPS_H

// The loop every class's dxfInFields runs over the groups of its own subclass.

#include "DbFiler.h"
#include "OdString.h"

#include <type_traits>

/// Hands each group code of one subclass's data to read, which reads the value of the groups
/// it knows; a group it leaves unread is skipped. Stops at the next subclass marker (100,
/// left unread for the class whose data it begins), at the end of the object, on a filer
/// fault, or when read returns a result other than eOk, which is then returned. A class whose
/// data repeats its own marker part-way (single-line text) names it in repeatedMarker, and
/// that marker is read past. Returns the filer's status otherwise.
template <class Read>
OdResult odDbReadDxfSubclassGroups(OdDbDxfFiler* filer, Read&& read,
                                   const OdChar* repeatedMarker = nullptr) {
  while (!filer->atEOF() && !filer->atEndOfObject() && filer->filerStatus() == eOk) {
    const int code = filer->nextItem();
    if (code == 100) {
      if (repeatedMarker && filer->rdString() == OdString(repeatedMarker))
        continue;
      filer->pushBackItem();
      break;
    }
    if constexpr (std::is_void_v<decltype(read(code))>) {
      read(code);
    } else {
      const OdResult result = read(code);
      if (result != eOk)
        return result;
    }
  }
  return filer->filerStatus();
}

#endif
