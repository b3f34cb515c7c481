#include "DbLineWeight.h"

namespace {

// The DWG index of a width is its position in this list, so the order is part of the format.
constexpr OdDb::LineWeight kWidthsByIndex[] = {
    OdDb::kLnWt000, OdDb::kLnWt005, OdDb::kLnWt009, OdDb::kLnWt013, OdDb::kLnWt015, OdDb::kLnWt018,
    OdDb::kLnWt020, OdDb::kLnWt025, OdDb::kLnWt030, OdDb::kLnWt035, OdDb::kLnWt040, OdDb::kLnWt050,
    OdDb::kLnWt053, OdDb::kLnWt060, OdDb::kLnWt070, OdDb::kLnWt080, OdDb::kLnWt090, OdDb::kLnWt100,
    OdDb::kLnWt106, OdDb::kLnWt120, OdDb::kLnWt140, OdDb::kLnWt158, OdDb::kLnWt200, OdDb::kLnWt211};
constexpr int kWidthCount = static_cast<int>(sizeof(kWidthsByIndex) / sizeof(kWidthsByIndex[0]));
static_assert(kWidthCount == 24, "DWG lineweight indices 0..23 name 24 widths");

constexpr int kByLayerIndex = 29;
constexpr int kByBlockIndex = 30;
constexpr int kDefaultIndex = 31;

} // namespace

bool odIsValidLineWeight(int value) {
  if (value == OdDb::kLnWtByLayer || value == OdDb::kLnWtByBlock || value == OdDb::kLnWtByLwDefault)
    return true;
  for (OdDb::LineWeight width : kWidthsByIndex) {
    if (value == width)
      return true;
  }
  return false;
}

int odLineWeightToDwgIndex(OdDb::LineWeight lineWeight) {
  switch (lineWeight) {
  case OdDb::kLnWtByLayer:
    return kByLayerIndex;
  case OdDb::kLnWtByBlock:
    return kByBlockIndex;
  case OdDb::kLnWtByLwDefault:
    return kDefaultIndex;
  default:
    break;
  }
  for (int index = 0; index < kWidthCount; ++index) {
    if (kWidthsByIndex[index] == lineWeight)
      return index;
  }
  return -1;
}

bool odLineWeightFromDwgIndex(int index, OdDb::LineWeight& out) {
  if (index >= 0 && index < kWidthCount) {
    out = kWidthsByIndex[index];
    return true;
  }
  switch (index) {
  case kByLayerIndex:
    out = OdDb::kLnWtByLayer;
    return true;
  case kByBlockIndex:
    out = OdDb::kLnWtByBlock;
    return true;
  case kDefaultIndex:
    out = OdDb::kLnWtByLwDefault;
    return true;
  default:
    return false;
  }
}
