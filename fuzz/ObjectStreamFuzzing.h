#ifndef CUSTENTS_FUZZ_OBJECT_STREAM_FUZZING_H
#define CUSTENTS_FUZZ_OBJECT_STREAM_FUZZING_H

// What the object harnesses share: arbitrary bytes read by a class's dwgInFields as the three
// DWG streams of one object, and the rules for what it accepts. A reader must refuse what it
// cannot read with the filer's status, never read past the streams or size an allocation by an
// unchecked count. What it accepts must be something the writer can write and read back, and
// after one round trip further ones must give the same streams, or copies, undo and saving
// would keep changing the object.
//
// Input layout: u8 selector, then the three streams as StreamSlices cuts them (below). The
// selector modulo the number of classes picks the class, in registration order; the next bit of
// the quotient reads as a copy instead of a file.

#include "DbDwgStreamFiler.h"
#include "DbObject.h"
#include "RxModule.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace objectfuzz {

/// The three streams of one object cut from fuzzer bytes by DwgStreamFilerFuzz's layout: u16 a,
/// u16 b (little-endian), u8 trims, then the stream bytes, split into data, strings and handles
/// at a % (n + 1) and after b more bytes; the low, middle and high bits of trims take up to 7,
/// 7 and 3 bits off the end of each stream, so that bit sizes which do not end on a byte are
/// covered.
struct StreamSlices {
  unsigned a = 0;
  unsigned b = 0;
  unsigned trims = 0;
  OdUInt8Array data, strings, handles;

  /// False, leaving the slices empty, when there are fewer than the 5 bytes of the header.
  bool cut(const std::uint8_t* bytes, std::size_t size);
  /// Opens `filer` for reading the three streams, each with its trimmed bit size.
  void openForRead(OdDbDwgStreamFiler& filer, OdDbDatabase* db = nullptr,
                   OdDbFiler::FilerType type = OdDbFiler::kFileFiler) const;
};

/// The registered classes whose objects a drawing reader makes and fills through dwgInFields,
/// in registration order: all of them, or only those of `module` when one is given.
std::vector<OdRxClass*> readableClasses(const OdRxModule* module = nullptr);

/// Reads one input as described above into an object of the class it selects and checks the
/// round-trip rules. A broken rule is reported on stderr with the class and the rule, then
/// the process aborts, so that the fuzzer keeps the input.
void checkInput(const std::vector<OdRxClass*>& classes, const std::uint8_t* bytes,
                std::size_t size);

/// The input that makes checkInput read `object`'s streams as a file filer writes them, or an
/// empty vector when its class is not among `classes` or it does not file out cleanly. Handle
/// streams that end more than 3 bits before a byte boundary keep up to 4 zero bits of padding.
std::vector<std::uint8_t> encodeInput(const std::vector<OdRxClass*>& classes,
                                      const OdDbObject* object);

/// When the environment variable CUSTENTS_FUZZ_WRITE_SEEDS names a folder, writes one input per
/// class into it, named after the class, and returns true. An object of `samples` stands for
/// its class where there is one (the first of each class wins); other classes are seeded
/// with a default-constructed object.
bool writeSeedsIfAsked(const std::vector<OdRxClass*>& classes,
                       const std::vector<OdDbObjectPtr>& samples = {});

} // namespace objectfuzz

#endif
