#ifndef OD_DB_LINE_WEIGHT_H
#define OD_DB_LINE_WEIGHT_H

/// Lineweights and entity visibility. Lineweights are a closed set of widths in hundredths of a
/// millimetre plus three inherited values; files store them either as that number (DXF group
/// 370, proxy graphics) or as a small index (DWG), so both mappings live here.

namespace OdDb {

enum LineWeight {
  kLnWt000 = 0,
  kLnWt005 = 5,
  kLnWt009 = 9,
  kLnWt013 = 13,
  kLnWt015 = 15,
  kLnWt018 = 18,
  kLnWt020 = 20,
  kLnWt025 = 25,
  kLnWt030 = 30,
  kLnWt035 = 35,
  kLnWt040 = 40,
  kLnWt050 = 50,
  kLnWt053 = 53,
  kLnWt060 = 60,
  kLnWt070 = 70,
  kLnWt080 = 80,
  kLnWt090 = 90,
  kLnWt100 = 100,
  kLnWt106 = 106,
  kLnWt120 = 120,
  kLnWt140 = 140,
  kLnWt158 = 158,
  kLnWt200 = 200,
  kLnWt211 = 211,
  kLnWtByLayer = -1,
  kLnWtByBlock = -2,
  kLnWtByLwDefault = -3
};

enum Visibility { kVisible = 0, kInvisible = 1 };

} // namespace OdDb

/// True when value is one of the enumerators of OdDb::LineWeight. A number read from a file
/// must pass this before it is cast to the enum.
bool odIsValidLineWeight(int value);

/// The DWG index of a lineweight: 0..23 for the 24 widths in ascending order, 29 by layer,
/// 30 by block, 31 default. Returns -1 for a value that is not a lineweight.
int odLineWeightToDwgIndex(OdDb::LineWeight lineWeight);

/// Reads a DWG lineweight index. Indices 24..28 and anything outside 0..31 are refused:
/// false, and out is left unchanged.
bool odLineWeightFromDwgIndex(int index, OdDb::LineWeight& out);

#endif
