#ifndef CUSTENTS_TESTS_ENTITY_TEST_SUPPORT_H
#define CUSTENTS_TESTS_ENTITY_TEST_SUPPORT_H

// Helpers shared by the tests of the survey shapes and the dimensions: a class's own DWG record as
// hex text, grips by index, snaps, drawing and explode output, true colours, points compared with
// a tolerance.

#include "CmColor.h"
#include "DbBitStream.h"
#include "DbDwgStreamFiler.h"
#include "DbEntity.h"
#include "DbLine.h"
#include "Gi/GiRecorder.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace enttest {

typedef OdStaticRxObject<OdDbDwgStreamFiler> Filer;
typedef std::vector<std::pair<OdGePoint3d, OdGePoint3d>> Segments;

inline std::string toHex(const OdUInt8Array& bytes) {
  std::string hex;
  char digits[3];
  for (OdUInt8 byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02x", byte);
    hex += digits;
  }
  return hex;
}

/// The bits from `startBit` to the end of a stream, packed again from the first byte, in hex:
/// a class's own record after its base's data.
inline std::string hexOfBits(const OdUInt8Array& bytes, OdUInt64 bitSize, OdUInt64 startBit) {
  OdDbBitStream in;
  in.assign(bytes, bitSize);
  in.setPosition(startBit);
  OdDbBitStream out;
  bool bit = false;
  while (in.readBit(bit))
    out.writeBit(bit);
  return toHex(out.bytes());
}

/// The entity's own record after its entity data: the data and the strings in hex.
inline std::string ownRecord(const OdDbEntity* entity) {
  Filer base, full;
  base.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  entity->OdDbEntity::dwgOutFields(&base);
  full.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  entity->dwgOutFields(&full);
  return hexOfBits(full.dataBuffer(), full.dataBitSize(), base.dataBitSize()) + "|" +
         hexOfBits(full.stringBuffer(), full.stringBitSize(), base.stringBitSize());
}

/// The object's whole record, its base's data included: the data and the strings in hex.
inline std::string wholeRecord(const OdDbObject* object) {
  Filer filer;
  filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  object->dwgOutFields(&filer);
  return hexOfBits(filer.dataBuffer(), filer.dataBitSize(), 0) + "|" +
         hexOfBits(filer.stringBuffer(), filer.stringBitSize(), 0);
}

/// Writes `source` and reads it into `target`, the way copies are made.
inline OdResult copyThroughDwg(const OdDbObject* source, OdDbObject* target) {
  Filer filer;
  filer.openForWrite(nullptr, OdDbFiler::kCopyFiler);
  source->dwgOutFields(&filer);
  filer.rewind();
  return target->dwgInFields(&filer);
}

/// The entity's grips, asked for as an editor asks.
inline OdDbGripDataPtrArray gripsOf(const OdDbEntity* entity) {
  OdDbGripDataPtrArray grips;
  EXPECT_EQ(entity->getGripPoints(grips, 1.0, 5, OdGeVector3d::kZAxis, 0), eOk);
  return grips;
}

inline OdIntPtr gripIndex(const OdDbGripDataPtr& grip) {
  return reinterpret_cast<OdIntPtr>(grip->appData());
}

/// Moves the grips with these application data by `offset`.
inline OdResult moveGrips(OdDbEntity* entity, std::initializer_list<OdIntPtr> indices,
                          const OdGeVector3d& offset) {
  OdDbVoidPtrArray tags;
  for (OdIntPtr index : indices)
    tags.append(reinterpret_cast<void*>(index));
  return entity->moveGripPointsAt(tags, offset, 0);
}

/// Snap points of `entity` with default pick and last points and an identity view.
inline OdGePoint3dArray snapsOf(const OdDbEntity* entity, OdDb::OsnapMode mode,
                                OdGsMarker marker = 0) {
  OdGePoint3dArray points;
  EXPECT_EQ(entity->getOsnapPoints(mode, marker, OdGePoint3d::kOrigin, OdGePoint3d::kOrigin,
                                   OdGeMatrix3d::kIdentity, points),
            eOk);
  return points;
}

/// What the entity draws.
inline std::vector<OdGiRecord> drawn(const OdDbEntity* entity) {
  OdGiRecorder recorder;
  EXPECT_TRUE(entity->worldDraw(&recorder));
  return recorder.records();
}

inline OdCmColor trueColor(OdUInt8 r, OdUInt8 g, OdUInt8 b) {
  OdCmColor color;
  color.setRGB(r, g, b);
  return color;
}

inline ::testing::AssertionResult samePoint(const OdGePoint3d& actual, const OdGePoint3d& expected,
                                            double tol = 1e-9) {
  if (actual.distanceTo(expected) <= tol)
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure()
         << "(" << actual.x << ", " << actual.y << ", " << actual.z << ") is not (" << expected.x
         << ", " << expected.y << ", " << expected.z << ")";
}

/// `actual` holds exactly `expected`, in order.
template <class Points>
void expectPoints(const Points& actual, const std::vector<OdGePoint3d>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (unsigned int i = 0; i < expected.size(); ++i)
    EXPECT_TRUE(samePoint(actual[i], expected[i])) << "point " << i;
}

/// The first `ends.size()` pieces are lines from each pair's first point to its second.
inline void expectLines(const OdRxObjectPtrArray& pieces, const Segments& ends) {
  ASSERT_GE(pieces.size(), ends.size());
  for (unsigned int i = 0; i < ends.size(); ++i) {
    OdDbLinePtr line = OdDbLine::cast(pieces[i].get());
    ASSERT_FALSE(line.isNull()) << "piece " << i;
    EXPECT_TRUE(samePoint(line->startPoint(), ends[i].first)) << "piece " << i;
    EXPECT_TRUE(samePoint(line->endPoint(), ends[i].second)) << "piece " << i;
  }
}

} // namespace enttest

#endif
