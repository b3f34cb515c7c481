#include "EntEditTextOper.h"

#include "DbEntity.h"
#include "Ge/GePoint3d.h"

#include <algorithm>
#include <vector>

namespace {

struct Registration {
  EditTextPickFn pick;
  EditTextCommitFn commit;
  EditTextShowFn show;
};

// Created on first use, so that a module's static initialisers may register safely.
std::vector<Registration>& registrations() {
  static std::vector<Registration> list;
  return list;
}

std::vector<Registration>::iterator findPair(EditTextPickFn pick, EditTextCommitFn commit) {
  std::vector<Registration>& list = registrations();
  return std::find_if(list.begin(), list.end(),
                      [&](const Registration& r) { return r.pick == pick && r.commit == commit; });
}

} // namespace

bool EntEditTextOper::addEditTextOper(EditTextPickFn pick, EditTextCommitFn commit,
                                      EditTextShowFn show) {
  if (!pick || !commit)
    return false;
  if (findPair(pick, commit) != registrations().end())
    return false;
  registrations().push_back(Registration{pick, commit, show});
  return true;
}

bool EntEditTextOper::removeEditTextOper(EditTextPickFn pick, EditTextCommitFn commit,
                                         EditTextShowFn /*show*/) {
  auto found = findPair(pick, commit);
  if (found == registrations().end())
    return false;
  registrations().erase(found);
  return true;
}

// The callbacks run on a copy of the list, so one that registers or removes callbacks (a module
// unloading itself) does not disturb the walk.

bool EntEditTextOper::pickText(const OdSmartPtr<OdDbEntity>& entity, const OdGePoint3d& clickPoint,
                               OdSmartPtr<OdDbEntity>& textOut, int& kind) {
  if (entity.isNull())
    return false;
  const std::vector<Registration> list = registrations();
  for (const Registration& r : list) {
    if (r.pick(entity, clickPoint, textOut, kind))
      return true;
  }
  return false;
}

bool EntEditTextOper::commitText(const OdSmartPtr<OdDbEntity>& entity,
                                 const OdSmartPtr<OdDbEntity>& editedText, const OdString& newText,
                                 const OdSmartPtr<OdDbEntity>& dimensionText) {
  if (entity.isNull())
    return false;
  const std::vector<Registration> list = registrations();
  for (const Registration& r : list) {
    if (r.commit(entity, editedText, newText, dimensionText))
      return true;
  }
  return false;
}

void EntEditTextOper::showText(const OdSmartPtr<OdDbEntity>& entity,
                               const OdSmartPtr<OdDbEntity>& other, bool editing) {
  if (entity.isNull())
    return;
  const std::vector<Registration> list = registrations();
  for (const Registration& r : list) {
    if (r.show)
      r.show(entity, other, editing);
  }
}

int EntEditTextOper::count() {
  return static_cast<int>(registrations().size());
}
