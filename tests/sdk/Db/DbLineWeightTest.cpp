#include "DbLineWeight.h"

#include <gtest/gtest.h>

namespace {

const OdDb::LineWeight kAllWeights[] = {
    OdDb::kLnWt000,     OdDb::kLnWt005,        OdDb::kLnWt009, OdDb::kLnWt013, OdDb::kLnWt015,
    OdDb::kLnWt018,     OdDb::kLnWt020,        OdDb::kLnWt025, OdDb::kLnWt030, OdDb::kLnWt035,
    OdDb::kLnWt040,     OdDb::kLnWt050,        OdDb::kLnWt053, OdDb::kLnWt060, OdDb::kLnWt070,
    OdDb::kLnWt080,     OdDb::kLnWt090,        OdDb::kLnWt100, OdDb::kLnWt106, OdDb::kLnWt120,
    OdDb::kLnWt140,     OdDb::kLnWt158,        OdDb::kLnWt200, OdDb::kLnWt211, OdDb::kLnWtByLayer,
    OdDb::kLnWtByBlock, OdDb::kLnWtByLwDefault};

} // namespace

// Widths take the indices from 0 up in ascending order; by layer, by block and the default
// take 29, 30 and 31.
TEST(DbLineWeight, EveryWeightRoundTripsThroughItsIndex) {
  int nextWidthIndex = 0;
  for (OdDb::LineWeight weight : kAllWeights) {
    const int index = odLineWeightToDwgIndex(weight);
    EXPECT_EQ(index, weight >= 0 ? nextWidthIndex++ : 28 - weight) << weight;
    OdDb::LineWeight back = OdDb::kLnWt211;
    ASSERT_TRUE(odLineWeightFromDwgIndex(index, back)) << index;
    EXPECT_EQ(back, weight);
    EXPECT_TRUE(odIsValidLineWeight(weight));
  }
}

TEST(DbLineWeight, UnknownIndicesAndValuesAreRefused) {
  for (int index : {-1, 24, 25, 26, 27, 28, 32, 255, 1000}) {
    OdDb::LineWeight out = OdDb::kLnWt090;
    EXPECT_FALSE(odLineWeightFromDwgIndex(index, out)) << index;
    EXPECT_EQ(out, OdDb::kLnWt090) << "output changed for refused index " << index;
  }
  for (int value : {1, 4, 10, 24, 201, 212, -4, 1000}) {
    EXPECT_FALSE(odIsValidLineWeight(value)) << value;
    EXPECT_EQ(odLineWeightToDwgIndex(static_cast<OdDb::LineWeight>(value)), -1) << value;
  }
}
