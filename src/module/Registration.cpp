#include "Registration.h"

#include "EntEditTextOper.h"
#include "ExtendPE.h"
#include "PropertyPE.h"
#include "RxObjectImpl.h"
#include "dimensions/DimensionExtensions.h"
#include "lines/LineExtensions.h"
#include "markup/EditTextCallbacks.h"
#include "markup/KVClasses.h"
#include "markup/MarkupExtensions.h"
#include "survey/SurveyExtensions.h"
#include "tables/TableExtensions.h"

// ---------------------------------------------------------------------------------------------
// Run-time type members of every class, from the class table.

#define CUSTENTS_CLASS(ClassName, CppParent, RxParent, DxfName, AppName, ProxyFlags, PropertyExt, \
                       ShapeExt)                                                                   \
  ODRX_DEFINE_PSEUDO_CONSTRUCTOR(ClassName)                                                        \
  ODRX_DEFINE_RTTI_MEMBERS(ClassName, CppParent)                                                   \
  ODRX_DEFINE_INIT_MEMBERS(ClassName, RxParent, &ClassName::pseudoConstructor, 33, 55, ProxyFlags, \
                           OdString(u"" DxfName), OdString(u"" AppName))
#include "CustEntsClasses.def"

#define CUSTENTS_DEFINE_PIPE_KIND(ClassName, DxfName)                                              \
  ODRX_DEFINE_PSEUDO_CONSTRUCTOR(ClassName)                                                        \
  ODRX_DEFINE_RTTI_MEMBERS(ClassName, DecorationPipe)                                              \
  ODRX_DEFINE_INIT_MEMBERS(ClassName, DecorationPipe::desc(), &ClassName::pseudoConstructor, 33,   \
                           55, 3071, OdString(u"" DxfName),                                        \
                           OdString(u"" #ClassName "|Description:"))
CUSTENTS_PIPE_KINDS(CUSTENTS_DEFINE_PIPE_KIND)
#undef CUSTENTS_DEFINE_PIPE_KIND

namespace custents {
namespace {

// ---------------------------------------------------------------------------------------------
// Extension instances: one static, never-deleted object per extension class, constructed when
// the module is loaded, before initApp.

struct NoExtension {};

template <class Extension> struct ExtensionInstance {
  static OdStaticRxObject<Extension> instance;
};
template <class Extension> OdStaticRxObject<Extension> ExtensionInstance<Extension>::instance;

template <class Extension> OdRxObject* extensionOf() {
  return &ExtensionInstance<Extension>::instance;
}
template <> OdRxObject* extensionOf<NoExtension>() { return nullptr; }

struct ClassEntry {
  void (*rxInit)();
  void (*rxUninit)();
  OdRxClass* (*desc)();
  OdRxObject* propertyExtension;
  OdRxObject* shapeExtension;
};

const std::vector<ClassEntry>& classTable() {
  static const std::vector<ClassEntry> table = {
#define CUSTENTS_CLASS(ClassName, CppParent, RxParent, DxfName, AppName, ProxyFlags, PropertyExt, \
                       ShapeExt)                                                                   \
  {static_cast<void (*)()>(&ClassName::rxInit), &ClassName::rxUninit, &ClassName::desc,            \
   extensionOf<PropertyExt>(), extensionOf<ShapeExt>()},
#include "CustEntsClasses.def"
  };
  return table;
}

/// The unregistration order. It is not the reverse of registration: the free pen and the new
/// cloud go right after the bar-code entity, DecorationPipe goes between two of its children
/// (the platform keeps a parent alive while children hold it), and the dimension base goes
/// last of all.
void (*const kUnregistrationOrder[])() = {
    &KVDb2DBarEntity::rxUninit,
    &OdDbFreePen::rxUninit,
    &OdDbNewCloud::rxUninit,
    &OdDbAnnotate::rxUninit,
    &OdDbNewAnnotate::rxUninit,
    &OdDbDimCircle::rxUninit,
    &OdDbCustomFrame::rxUninit,
    &OdDbDimCoor::rxUninit,
    &OdDbGeoRect::rxUninit,
    &OdDbGeoTriangle::rxUninit,
    &OdDbMesuarData::rxUninit,
    &DbPipeWireway::rxUninit,
    &GeosymHouseObjectTable::rxUninit,
    &GeoQuantityTable::rxUninit,
    &OdDbArcLine::rxUninit,
    &OdDbArrowExtraction::rxUninit,
    &OdDbBendLine::rxUninit,
    &OdDbBrokenLine::rxUninit,
    &OdDbBuildHeight::rxUninit,
    &OdDbCloud::rxUninit,
    &OdDbRevCloud::rxUninit,
    &OdDbDivPoint::rxUninit,
    &OdDbDivPointNew::rxUninit,
    &OdDbNewDimCoor::rxUninit,
    &OdDbNewDimText::rxUninit,
    &OdDbSymmetryAxis::rxUninit,
    &KVDbSignEntity::rxUninit,
    &OdDbGeoPolygon::rxUninit,
    &OdDbDoubleLineCableTray::rxUninit,
    &DecorationPipe::rxUninit,
    &OdDbNewCableTray::rxUninit,
    &DbCoverPolyLine::rxUninit,
    &OdDbDimCableTray::rxUninit,
    &OdDbDimExtraction::rxUninit,
    &OdDbSeekMap::rxUninit,
    &OdDbPracticeLabel::rxUninit,
    &OdDbPipeLine::rxUninit,
    &OdDbLinePattern::rxUninit,
    &OdDbIndexicalSigns::rxUninit,
    &OdDbDimName::rxUninit,
    &OdDbDimCutting::rxUninit,
    &OdDbCoverArea::rxUninit,
    &OdDbCompass::rxUninit,
    &OdDbBlkStatisticsTable::rxUninit,
    &OdDbCabinet::rxUninit,
    &GeoTreeTable::rxUninit,
    &GeosymTable::rxUninit,
    &GeoTreeSimpleTable::rxUninit,
    &GeoLandAreaTable::rxUninit,
    &DecorationPipeHot::rxUninit,
    &OdDbDimArea::rxUninit,
    &OdDbDimContinue::rxUninit,
    &OdDbDimContinueNew::rxUninit,
    &OdDbGeoTag::rxUninit,
    &OdDbGeo3dRect::rxUninit,
    &OdDb3dArrow::rxUninit,
    &OdDbCustomDimensionBase::rxUninit,
};

const ClassEntry& entryOf(void (*rxUninit)()) {
  for (const ClassEntry& entry : classTable())
    if (entry.rxUninit == rxUninit)
      return entry;
  throw OdError(eKeyNotFound, OD_T("A class of the unregistration order is not in the table"));
}

} // namespace

void registerClasses() {
  for (const ClassEntry& entry : classTable()) {
    entry.rxInit();
    if (entry.propertyExtension)
      entry.desc()->addX(PropertyPE::desc(), entry.propertyExtension);
    if (entry.shapeExtension)
      entry.desc()->addX(ExtendPE::desc(), entry.shapeExtension);
  }
  EntEditTextOper::addEditTextOper(&pickEditText, &commitEditText, &showEditText);
}

void unregisterClasses() {
  static_assert(sizeof kUnregistrationOrder / sizeof kUnregistrationOrder[0] == 57,
                "every registered class is unregistered once");
  for (void (*rxUninit)() : kUnregistrationOrder) {
    const ClassEntry& entry = entryOf(rxUninit);
    if (OdRxClass* cls = entry.desc()) {
      if (entry.propertyExtension)
        cls->delX(PropertyPE::desc());
      if (entry.shapeExtension)
        cls->delX(ExtendPE::desc());
    }
    rxUninit();
  }
  EntEditTextOper::removeEditTextOper(&pickEditText, &commitEditText, nullptr);
}

} // namespace custents
