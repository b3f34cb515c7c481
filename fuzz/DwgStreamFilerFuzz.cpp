// Feeds arbitrary bytes to the DWG stream filer as the three streams of an object and reads
// them with every rd call until the filer reports an error. The filer must never read outside
// its buffers, never size an allocation by an unchecked count, and never loop forever.
//
// Input layout: u16 a, u16 b (little-endian), u8 trims, then the stream bytes. The bytes are
// split into data, strings and handles at a % (n + 1) and after b more bytes; the low, middle
// and high bits of trims take up to 7, 7 and 3 bits off the end of each stream so that bit
// sizes which do not end on a byte are covered.

#include "CmColor.h"
#include "DbDwgStreamFiler.h"
#include "Ge/GePoint2d.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeScale3d.h"
#include "Ge/GeVector2d.h"
#include "Ge/GeVector3d.h"
#include "RxObjectImpl.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

OdUInt8Array slice(const std::uint8_t* bytes, std::size_t begin, std::size_t end) {
  OdUInt8Array part;
  part.reserve(static_cast<OdUInt8Array::size_type>(end - begin));
  for (std::size_t i = begin; i < end; ++i)
    part.push_back(bytes[i]);
  return part;
}

OdUInt64 trimmed(const OdUInt8Array& bytes, unsigned trim) {
  const OdUInt64 bits = static_cast<OdUInt64>(bytes.size()) * 8;
  return bits > trim ? bits - trim : 0;
}

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
  if (size < 5)
    return 0;
  const unsigned a = bytes[0] | (bytes[1] << 8);
  const unsigned b = bytes[2] | (bytes[3] << 8);
  const unsigned trims = bytes[4];
  const std::uint8_t* body = bytes + 5;
  const std::size_t n = size - 5;
  const std::size_t cut1 = a % (n + 1);
  const std::size_t cut2 = cut1 + b % (n - cut1 + 1);

  const OdUInt8Array data = slice(body, 0, cut1);
  const OdUInt8Array strings = slice(body, cut1, cut2);
  const OdUInt8Array handles = slice(body, cut2, n);

  OdStaticRxObject<OdDbDwgStreamFiler> filer;
  filer.openForRead(data, trimmed(data, trims & 7), strings, trimmed(strings, (trims >> 3) & 7),
                    handles, trimmed(handles, trims >> 6));

  // Every successful read consumes at least one bit, so the total bits bound the iterations.
  const OdUInt64 limit = filer.dataBitSize() + filer.stringBitSize() + filer.handleBitSize() + 1;
  unsigned op = (a ^ b) % kOperations;
  for (OdUInt64 i = 0; i <= limit && filer.filerStatus() == eOk; ++i) {
    const OdUInt64 before =
        filer.remainingDataBits() + filer.remainingStringBits() + filer.remainingHandleBits();
    readOne(filer, op);
    const OdUInt64 after =
        filer.remainingDataBits() + filer.remainingStringBits() + filer.remainingHandleBits();
    if (filer.filerStatus() == eOk && after >= before)
      std::abort(); // a successful read that consumed nothing could loop forever
    op = (op + 1 + trims) % kOperations;
  }
  return 0;
}
