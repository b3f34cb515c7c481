// Feeds arbitrary bytes to the dwgInFields of every database class the platform can create,
// as the three DWG streams of one object, and files each object that reads successfully out
// again. A reader must refuse what it cannot read with the filer's status, never read past
// the streams or size an allocation by an unchecked count. What it accepts must be something
// the writer can write and read back, and after one round trip further ones must give the same
// streams, or copies, undo and saving would keep changing the object.
//
// Input layout: u8 selector, then the layout of DwgStreamFilerFuzz (u16 a, u16 b, u8 trims,
// the stream bytes split at a % (n + 1) and after b more bytes, trims taking up to 7, 7 and 3
// bits off the ends). The selector modulo the number of classes picks the class, in
// registration order; the next bit of the quotient reads as a copy instead of a file.

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "DbObject.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
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

// The classes whose objects a drawing reader makes and fills through dwgInFields.
std::vector<OdRxClass*> readableClasses() {
  odInitialize();
  std::vector<OdRxClass*> classes;
  const OdArray<OdRxClass*> registered = odrxRegisteredClasses();
  for (OdRxClass* rxClass : registered) {
    if (rxClass->constructor() && rxClass->isDerivedFrom(OdDbObject::desc()))
      classes.push_back(rxClass);
  }
  return classes;
}

OdDbObjectPtr make(const OdRxClass* rxClass) {
  OdDbObjectPtr object = rxClass->create();
  if (object.isNull())
    std::abort(); // a pseudo-constructor that makes something other than its class
  return object;
}

bool sameStreams(const OdDbDwgStreamFiler& a, const OdDbDwgStreamFiler& b) {
  return a.dataBitSize() == b.dataBitSize() && a.dataBuffer() == b.dataBuffer() &&
         a.stringBitSize() == b.stringBitSize() && a.stringBuffer() == b.stringBuffer() &&
         a.handleBitSize() == b.handleBitSize() && a.handleBuffer() == b.handleBuffer();
}

/// Names the class and the broken rule, then stops: the fuzzer keeps the input.
[[noreturn]] void fail(const OdRxClass* rxClass, const char* rule) {
  std::fprintf(stderr, "%s: %s\n", rxClass->name().toUtf8().c_str(), rule);
  std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const std::vector<OdRxClass*> classes = readableClasses();
  if (classes.empty())
    std::abort();
  if (size < 6)
    return 0;

  const OdRxClass* rxClass = classes[bytes[0] % classes.size()];
  const OdDbFiler::FilerType type =
      (bytes[0] / classes.size()) & 1 ? OdDbFiler::kCopyFiler : OdDbFiler::kFileFiler;
  const unsigned a = bytes[1] | (bytes[2] << 8);
  const unsigned b = bytes[3] | (bytes[4] << 8);
  const unsigned trims = bytes[5];
  const std::uint8_t* body = bytes + 6;
  const std::size_t n = size - 6;
  const std::size_t cut1 = a % (n + 1);
  const std::size_t cut2 = cut1 + b % (n - cut1 + 1);

  const OdUInt8Array data = slice(body, 0, cut1);
  const OdUInt8Array strings = slice(body, cut1, cut2);
  const OdUInt8Array handles = slice(body, cut2, n);

  // A fresh database each time: ids read are made in it, and they must not pile up.
  OdDbDatabasePtr db = OdDbDatabase::createObject();

  OdStaticRxObject<OdDbDwgStreamFiler> in;
  in.openForRead(data, trimmed(data, trims & 7), strings, trimmed(strings, (trims >> 3) & 7),
                 handles, trimmed(handles, trims >> 6), db, type);
  OdDbObjectPtr object = make(rxClass);
  if (object->dwgInFields(&in) != eOk)
    return 0;

  // What was read is filed out and read back, twice. Both must succeed. The first read may
  // round a value it normalises (a normal made unit length moves by an ulp when normalised
  // again), so only from the second filing on must the streams stay the same.
  OdStaticRxObject<OdDbDwgStreamFiler> filings[3];
  OdDbObjectPtr current = object;
  for (OdStaticRxObject<OdDbDwgStreamFiler>& out : filings) {
    out.openForWrite(db, type);
    current->dwgOutFields(&out);
    if (out.filerStatus() != eOk)
      fail(rxClass, "the reader accepted a value the writer refuses");
    if (&out == &filings[2])
      break;
    OdStaticRxObject<OdDbDwgStreamFiler> back;
    back.openForRead(out.dataBuffer(), out.dataBitSize(), out.stringBuffer(), out.stringBitSize(),
                     out.handleBuffer(), out.handleBitSize(), db, type);
    current = make(rxClass);
    if (current->dwgInFields(&back) != eOk)
      fail(rxClass, "the reader refuses what the writer wrote");
  }
  if (!sameStreams(filings[1], filings[2]))
    fail(rxClass, "a file round trip keeps changing the object");
  return 0;
}
