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

using Filer = OdDbDwgStreamFiler;

// One read of each kind; each either consumes at least one bit or fails.
void (*const kReads[])(Filer&) = {
    [](Filer& f) { f.rdBool(); },
    [](Filer& f) { f.rdString(); },
    [](Filer& f) {
      // A count read from the data, bounded by what is left before anything is sized by it.
      const OdUInt32 count = static_cast<OdUInt16>(f.rdInt16());
      if (f.filerStatus() != eOk || count == 0 || count > f.remainingDataBits() / 8)
        return;
      std::vector<OdUInt8> buffer(count);
      f.rdBytes(buffer.data(), count);
    },
    [](Filer& f) { f.rdInt8(); },
    [](Filer& f) { f.rdUInt8(); },
    [](Filer& f) { f.rdInt16(); },
    [](Filer& f) { f.rdInt32(); },
    [](Filer& f) { f.rdInt64(); },
    [](Filer& f) { f.rdDouble(); },
    [](Filer& f) { f.rdDbHandle(); },
    [](Filer& f) { f.rdSoftOwnershipId(); },
    [](Filer& f) { f.rdHardOwnershipId(); },
    [](Filer& f) { f.rdHardPointerId(); },
    [](Filer& f) { f.rdSoftPointerId(); },
    [](Filer& f) { f.rdPoint2d(); },
    [](Filer& f) { f.rdPoint3d(); },
    [](Filer& f) { f.rdVector2d(); },
    [](Filer& f) { f.rdVector3d(); },
    [](Filer& f) { f.rdScale3d(); },
    [](Filer& f) {
      OdCmColor color;
      f.rdCmColor(color);
    },
    [](Filer& f) {
      // Seeks back and forth must keep the position inside the stream.
      const OdUInt64 at = f.tell();
      f.seek(-1, OdDb::kSeekFromEnd);
      f.seek(static_cast<OdInt64>(at), OdDb::kSeekFromStart);
      if (f.tell() > f.dataBitSize())
        std::abort();
      f.rdBool();
    },
};

constexpr unsigned kOperations = sizeof kReads / sizeof kReads[0];

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
    kReads[op](filer);
    const OdUInt64 after =
        filer.remainingDataBits() + filer.remainingStringBits() + filer.remainingHandleBits();
    if (filer.filerStatus() == eOk && after >= before)
      std::abort(); // a successful read that consumed nothing could loop forever
    op = (op + 1 + streams.trims) % kOperations;
  }
  return 0;
}
