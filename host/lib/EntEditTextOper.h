#ifndef HOST_ENT_EDIT_TEXT_OPER_H
#define HOST_ENT_EDIT_TEXT_OPER_H

/// In-place text editing. The host edits a text inside an entity it does not know (for example
/// the text of a module's annotation) by asking the callbacks that modules register here: one
/// finds the text under the picked point, one applies the edited text, one shows or hides the
/// entity's own text while the editor covers it.

#include "OdString.h"
#include "SmartPtr.h"

class OdDbEntity;
class OdGePoint3d;

/// Returns true and fills textToEdit (and kind, the callback's own code for what was hit) when
/// the entity has an editable text at clickPoint.
typedef bool (*EditTextPickFn)(OdSmartPtr<OdDbEntity> entity, const OdGePoint3d& clickPoint,
                               OdSmartPtr<OdDbEntity>& textToEdit, int& kind);
/// Applies the edited text newText to the entity; true when the callback handled it.
typedef bool (*EditTextCommitFn)(OdSmartPtr<OdDbEntity> entity, OdSmartPtr<OdDbEntity> editedText,
                                 OdString newText, OdSmartPtr<OdDbEntity> dimensionText);
/// Called with editing true as editing begins and false when it ends.
typedef void (*EditTextShowFn)(OdSmartPtr<OdDbEntity> entity, OdSmartPtr<OdDbEntity> other,
                               bool editing);

/// The process-wide registry of text-editing callbacks and the host's side that drives them.
/// Registrations are kept in the order they were added; the host runs on one thread.
class EntEditTextOper {
public:
  /// Registers a pick/commit pair with its show callback (which may be null). A pair that is
  /// registered already is kept as it is (its first show callback stays) and false is
  /// returned; a null pick or commit is refused (false). True when a registration was added.
  static bool addEditTextOper(EditTextPickFn pick, EditTextCommitFn commit, EditTextShowFn show);
  /// Removes the registration of the pick/commit pair. `show` is not compared, so a caller may
  /// pass null. True when a registration was removed.
  static bool removeEditTextOper(EditTextPickFn pick, EditTextCommitFn commit,
                                 EditTextShowFn show = nullptr);

  /// Asks each registered pick callback in registration order until one returns true; its
  /// answer is returned. False (textOut and kind untouched by the registry) when none does or
  /// the entity is null.
  static bool pickText(const OdSmartPtr<OdDbEntity>& entity, const OdGePoint3d& clickPoint,
                       OdSmartPtr<OdDbEntity>& textOut, int& kind);
  /// Hands the edit result to each registered commit callback in order until one returns
  /// true. False when none does or the entity is null.
  static bool commitText(const OdSmartPtr<OdDbEntity>& entity,
                         const OdSmartPtr<OdDbEntity>& editedText, const OdString& newText,
                         const OdSmartPtr<OdDbEntity>& dimensionText);
  /// Calls every registered show callback (null ones are skipped). Nothing for a null entity.
  static void showText(const OdSmartPtr<OdDbEntity>& entity, const OdSmartPtr<OdDbEntity>& other,
                       bool editing);
  /// Number of registrations.
  static int count();
};

#endif
