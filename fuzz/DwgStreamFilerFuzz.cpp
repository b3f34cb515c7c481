// Feeds arbitrary bytes to the DWG stream filer as the three streams of an object and reads
// them with every rd call until the filer reports an error. The filer must never read outside
// its buffers, never size an allocation by an unchecked count, and never loop forever.
//
// Input layout: objectfuzz::StreamSlices (ObjectStreamFuzzing.h); a, b and trims also pick
// the first read and the step between reads.

#include "CmColor.h"
#include "DbDwgStreamFiler.h"
#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeScale3d.h"
#include "Ge/GeVector2d.h"
#include "Ge/GeVector3d.h"
#include "ObjectStreamFuzzing.h"
#include "RxObjectImpl.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

// One read of each kind; each either consumes at least one bit or fails.
void readOne(OdDbDwgStreamFiler& filer, unsigned op) {
  switch (op) {
  case 0:
    filer.rdBool();
    break;
  case 1:
    filer.rdString();
    break;
  case 2: {
    // A count read from the data, bounded by what is left before anything is sized by it.
    const OdUInt32 count = static_cast<OdUInt16>(filer.rdInt16());
    if (filer.filerStatus() != eOk || count == 0 || count > filer.remainingDataBits() / 8)
      break;
    std::vector<OdUInt8> buffer(count);
    filer.rdBytes(buffer.data(), count);
    break;
  }
  case 3:
    filer.rdInt8();
    break;
  case 4:
    filer.rdUInt8();
    break;
  case 5:
    filer.rdInt16();
    break;
  case 6:
    filer.rdInt32();
    break;
  case 7:
    filer.rdInt64();
    break;
  case 8:
    filer.rdDouble();
    break;
  case 9:
    filer.rdDbHandle();
    break;
  case 10:
    filer.rdSoftOwnershipId();
    break;
  case 11:
    filer.rdHardOwnershipId();
    break;
  case 12:
    filer.rdHardPointerId();
    break;
  case 13:
    filer.rdSoftPointerId();
    break;
  case 14:
    filer.rdPoint2d();
    break;
  case 15:
    filer.rdPoint3d();
    break;
  case 16:
    filer.rdVector2d();
    break;
  case 17:
    filer.rdVector3d();
    break;
  case 18:
    filer.rdScale3d();
    break;
  case 19: {
    OdCmColor color;
    filer.rdCmColor(color);
    break;
  }
  default: {
    // Seeks back and forth must keep the position inside the stream.
    const OdUInt64 at = filer.tell();
    filer.seek(-1, OdDb::kSeekFromEnd);
    filer.seek(static_cast<OdInt64>(at), OdDb::kSeekFromStart);
    if (filer.tell() > filer.dataBitSize())
      std::abort();
    filer.rdBool();
    break;
  }
  }
}

constexpr unsigned kOperations = 21;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  objectfuzz::StreamSlices streams;
  if (!streams.cut(bytes, size))
    return 0;
  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  streams.openForRead(filer);

  // Every successful read consumes at least one bit, so the total bits bound the iterations.
  const OdUInt64 limit = filer.dataBitSize() + filer.stringBitSize() + filer.handleBitSize() + 1;
  unsigned op = (streams.a ^ streams.b) % kOperations;
  for (OdUInt64 i = 0; i <= limit && filer.filerStatus() == eOk; ++i) {
    const OdUInt64 before =
        filer.remainingDataBits() + filer.remainingStringBits() + filer.remainingHandleBits();
    readOne(filer, op);
    const OdUInt64 after =
        filer.remainingDataBits() + filer.remainingStringBits() + filer.remainingHandleBits();
    if (filer.filerStatus() == eOk && after >= before)
      std::abort(); // a successful read that consumed nothing could loop forever
    op = (op + 1 + streams.trims) % kOperations;
  }
  return 0;
}
