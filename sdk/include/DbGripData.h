#ifndef OD_DB_GRIP_DATA_H
#define OD_DB_GRIP_DATA_H

/// Grips that an entity hands to the editor. A grip is a point plus whatever the entity needs to
/// recognise it again when the editor moves it (the application data), plus optional callbacks
/// through which the entity draws or explains the grip. The platform stores and returns the
/// callbacks; calling them is the editor's business.

#include "Ge/GePoint3d.h"
#include "OdArray.h"
#include "OdString.h"
#include "SharedPtr.h"

class OdDbGripData;
class OdDbObjectId;
class OdDbDimData;
class OdGiViewportDraw;
class OdGiWorldDraw;
class OdRxClass;

namespace OdDbGripOperations {

enum ReturnValue { eOk = 0, eFailure, eNoRedrawGrip, eGripHotToRtClk };

/// The state in which a grip is drawn.
enum DrawType { kWarmGrip = 0, kHoverGrip, kHotGrip, kDragImageGrip };

/// What the editor reports to a grip's status callback.
enum GripStatus {
  kGripStart = 0,
  kGripEnd,
  kGripAbort,
  kStretch,
  kMove,
  kRotate,
  kScale,
  kMirror,
  kDimFocusChanged,
  kPopUpMenu
};

/// Bits of OdDbGripData::bitFlags().
enum GripFlags {
  kSkipWhenShared = 0x1,
  kDisableRubberBandLine = 0x2,
  kDisableModeKeywords = 0x4,
  kDrawAtDragImageGripPoint = 0x8,
  kTriggerGrip = 0x10,
  kTurnOnForcedPick = 0x20,
  kMapGripHotToRtClk = 0x40,
  kGizmosEnabled = 0x80,
  kGripIsPerpendicular = 0x100,
  kGripEditTip = 0x200
};

/// Bits passed to hot-grip and hover callbacks.
enum GripContextFlags { kSharedGrip = 0x1, kMultiHotGrip = 0x2 };

/// Bits of the bitFlags argument of getGripPoints.
enum GetGripPointsFlags {
  kGripPointsOnly = 0x1,
  kCyclableGripsOnly = 0x2,
  kDynamicDimMode = 0x4,
  kNoMultiModesGrip = 0x8
};

/// Bits of the bitFlags argument of moveGripPointsAt: how the editor arrived at the offset.
enum MoveGripPointsFlags {
  kOsnapped = 0x1,
  kPolar = 0x2,
  kOtrack = 0x4,
  kZdir = 0x8,
  kKeyboard = 0x10,
  kDragging = 0x20
};

} // namespace OdDbGripOperations

typedef OdArray<OdDbDimData*> OdDbDimDataPtrArray;

typedef bool (*GripOperationPtr)(OdDbGripData* grip, const OdDbObjectId& entityId,
                                 int contextFlags);
typedef void (*GripOpStatusPtr)(OdDbGripData* grip, const OdDbObjectId& entityId,
                                OdDbGripOperations::GripStatus status);
typedef bool (*GripWorldDrawPtr)(OdDbGripData* grip, OdGiWorldDraw* worldDraw,
                                 const OdDbObjectId& entityId, OdDbGripOperations::DrawType type,
                                 OdGePoint3d* imageGripPoint, double gripSize);
typedef void (*GripViewportDrawPtr)(OdDbGripData* grip, OdGiViewportDraw* viewportDraw,
                                    const OdDbObjectId& entityId, OdDbGripOperations::DrawType type,
                                    OdGePoint3d* imageGripPoint, int gripSize);
typedef OdString (*GripToolTipPtr)(OdDbGripData* grip);
typedef void (*GripDimensionPtr)(OdDbGripData* grip, const OdDbObjectId& entityId, double dimScale,
                                 OdDbDimDataPtrArray& dimData);

class OdDbGripData {
public:
  OdDbGripData() = default;

  const OdGePoint3d& gripPoint() const { return m_gripPoint; }
  void setGripPoint(const OdGePoint3d& point) { m_gripPoint = point; }

  /// The entity's own tag for the grip; the editor hands it back in moveGripPointsAt. Not
  /// owned: it usually encodes an index rather than pointing at memory.
  void* appData() const { return m_appData; }
  void setAppData(void* appData) { m_appData = appData; }
  /// The class whose code understands appData, when grips of several entities are mixed.
  OdRxClass* appDataOdRxClass() const { return m_appDataClass; }
  void setAppDataOdRxClass(OdRxClass* appDataClass) { m_appDataClass = appDataClass; }

  /// The point that rubber-band lines start from instead of the grip point; not owned, may be
  /// null.
  OdGePoint3d* alternateBasePoint() const { return m_alternateBasePoint; }
  void setAlternateBasePoint(OdGePoint3d* point) { m_alternateBasePoint = point; }

  /// OdDbGripOperations::GripFlags bits.
  OdUInt32 bitFlags() const { return m_bitFlags; }
  void setBitFlags(OdUInt32 flags) { m_bitFlags = flags; }

  bool skipWhenShared() const { return hasFlag(OdDbGripOperations::kSkipWhenShared); }
  void setSkipWhenShared(bool on) { setFlag(OdDbGripOperations::kSkipWhenShared, on); }
  bool isRubberBandLineDisabled() const {
    return hasFlag(OdDbGripOperations::kDisableRubberBandLine);
  }
  void disableRubberBandLine(bool on) { setFlag(OdDbGripOperations::kDisableRubberBandLine, on); }
  bool areModeKeywordsDisabled() const { return hasFlag(OdDbGripOperations::kDisableModeKeywords); }
  void disableModeKeywords(bool on) { setFlag(OdDbGripOperations::kDisableModeKeywords, on); }
  bool drawAtDragImageGripPoint() const {
    return hasFlag(OdDbGripOperations::kDrawAtDragImageGripPoint);
  }
  void setDrawAtDragImageGripPoint(bool on) {
    setFlag(OdDbGripOperations::kDrawAtDragImageGripPoint, on);
  }
  bool triggerGrip() const { return hasFlag(OdDbGripOperations::kTriggerGrip); }
  void setTriggerGrip(bool on) { setFlag(OdDbGripOperations::kTriggerGrip, on); }
  bool forcedPickOn() const { return hasFlag(OdDbGripOperations::kTurnOnForcedPick); }
  void setForcedPickOn(bool on) { setFlag(OdDbGripOperations::kTurnOnForcedPick, on); }
  bool mapGripHotToRtClk() const { return hasFlag(OdDbGripOperations::kMapGripHotToRtClk); }
  void setMapGripHotToRtClk(bool on) { setFlag(OdDbGripOperations::kMapGripHotToRtClk, on); }
  bool gizmosEnabled() const { return hasFlag(OdDbGripOperations::kGizmosEnabled); }
  void setGizmosEnabled(bool on) { setFlag(OdDbGripOperations::kGizmosEnabled, on); }
  bool gripIsPerpendicular() const { return hasFlag(OdDbGripOperations::kGripIsPerpendicular); }
  void setGripIsPerpendicular(bool on) { setFlag(OdDbGripOperations::kGripIsPerpendicular, on); }

  // Callbacks: null unless the entity sets them.
  GripOperationPtr hotGripFunc() const { return m_hotGrip; }
  void setHotGripFunc(GripOperationPtr func) { m_hotGrip = func; }
  GripOperationPtr hoverFunc() const { return m_hover; }
  void setHoverFunc(GripOperationPtr func) { m_hover = func; }
  GripWorldDrawPtr worldDraw() const { return m_worldDraw; }
  void setWorldDraw(GripWorldDrawPtr func) { m_worldDraw = func; }
  GripViewportDrawPtr viewportDraw() const { return m_viewportDraw; }
  void setViewportDraw(GripViewportDrawPtr func) { m_viewportDraw = func; }
  GripOpStatusPtr gripOpStatFunc() const { return m_gripOpStatus; }
  void setGripOpStatFunc(GripOpStatusPtr func) { m_gripOpStatus = func; }
  GripToolTipPtr toolTipFunc() const { return m_toolTip; }
  void setToolTipFunc(GripToolTipPtr func) { m_toolTip = func; }
  GripDimensionPtr hoverDimensionFunc() const { return m_hoverDimension; }
  void setHoverDimensionFunc(GripDimensionPtr func) { m_hoverDimension = func; }
  GripDimensionPtr hotGripDimensionFunc() const { return m_hotGripDimension; }
  void setHotGripDimensionFunc(GripDimensionPtr func) { m_hotGripDimension = func; }

private:
  bool hasFlag(OdUInt32 flag) const { return (m_bitFlags & flag) != 0; }
  void setFlag(OdUInt32 flag, bool on) {
    m_bitFlags = on ? (m_bitFlags | flag) : (m_bitFlags & ~flag);
  }

  OdGePoint3d m_gripPoint;
  void* m_appData = nullptr;
  OdRxClass* m_appDataClass = nullptr;
  OdGePoint3d* m_alternateBasePoint = nullptr;
  OdUInt32 m_bitFlags = 0;
  GripOperationPtr m_hotGrip = nullptr;
  GripOperationPtr m_hover = nullptr;
  GripWorldDrawPtr m_worldDraw = nullptr;
  GripViewportDrawPtr m_viewportDraw = nullptr;
  GripOpStatusPtr m_gripOpStatus = nullptr;
  GripToolTipPtr m_toolTip = nullptr;
  GripDimensionPtr m_hoverDimension = nullptr;
  GripDimensionPtr m_hotGripDimension = nullptr;
};

typedef OdSharedPtr<OdDbGripData> OdDbGripDataPtr;
typedef OdArray<OdDbGripDataPtr> OdDbGripDataPtrArray;
typedef OdArray<OdDbGripData> OdDbGripDataArray;

#endif
