#include "ObjectStreamFuzzing.h"

#include "DbDatabase.h"
#include "DbDwgStreamFiler.h"
#include "RxDictionary.h"
#include "RxObjectImpl.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace objectfuzz {
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

} // namespace

bool StreamSlices::cut(const std::uint8_t* bytes, std::size_t size) {
  if (size < 5)
    return false;
  a = bytes[0] | (bytes[1] << 8);
  b = bytes[2] | (bytes[3] << 8);
  trims = bytes[4];
  const std::uint8_t* body = bytes + 5;
  const std::size_t n = size - 5;
  const std::size_t cut1 = a % (n + 1);
  const std::size_t cut2 = cut1 + b % (n - cut1 + 1);
  data = slice(body, 0, cut1);
  strings = slice(body, cut1, cut2);
  handles = slice(body, cut2, n);
  return true;
}

void StreamSlices::openForRead(OdDbDwgStreamFiler& filer, OdDbDatabase* db,
                               OdDbFiler::FilerType type) const {
  filer.openForRead(data, trimmed(data, trims & 7), strings, trimmed(strings, (trims >> 3) & 7),
                    handles, trimmed(handles, trims >> 6), db, type);
}

namespace {

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

// The bits a stream's last byte leaves unused.
unsigned padding(const OdUInt8Array& bytes, OdUInt64 bits) {
  return static_cast<unsigned>(static_cast<OdUInt64>(bytes.size()) * 8 - bits);
}

} // namespace

std::vector<OdRxClass*> readableClasses(const OdRxModule* module) {
  std::vector<OdRxClass*> classes;
  const OdArray<OdRxClass*> registered = odrxRegisteredClasses();
  for (OdRxClass* rxClass : registered) {
    if (module && rxClass->module() != module)
      continue;
    if (rxClass->constructor() && rxClass->isDerivedFrom(OdDbObject::desc()))
      classes.push_back(rxClass);
  }
  return classes;
}

void checkInput(const std::vector<OdRxClass*>& classes, const std::uint8_t* bytes,
                std::size_t size) {
  if (classes.empty())
    std::abort(); // the harness itself cannot work: stop rather than report nothing
  if (size < 6)
    return;

  const OdRxClass* rxClass = classes[bytes[0] % classes.size()];
  const OdDbFiler::FilerType type =
      (bytes[0] / classes.size()) & 1 ? OdDbFiler::kCopyFiler : OdDbFiler::kFileFiler;
  StreamSlices streams;
  streams.cut(bytes + 1, size - 1);

  // A fresh database each time: ids read are made in it, and they must not pile up.
  OdDbDatabasePtr db = OdDbDatabase::createObject();

  OdStaticRxObject<OdDbDwgStreamFiler> in;
  streams.openForRead(in, db, type);
  OdDbObjectPtr object = make(rxClass);
  if (object->dwgInFields(&in) != eOk)
    return;

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
}

std::vector<std::uint8_t> encodeInput(const std::vector<OdRxClass*>& classes,
                                      const OdDbObject* object) {
  const auto found = std::find(classes.begin(), classes.end(), object->isA());
  if (found == classes.end())
    return {};
  OdStaticRxObject<OdDbDwgStreamFiler> out;
  out.openForWrite(object->database(), OdDbFiler::kFileFiler);
  object->dwgOutFields(&out);
  const OdUInt8Array& data = out.dataBuffer();
  const OdUInt8Array& strings = out.stringBuffer();
  const OdUInt8Array& handles = out.handleBuffer();
  if (out.filerStatus() != eOk || data.size() > 0xFFFF || strings.size() > 0xFFFF)
    return {};

  // The selector's quotient bit stays clear: a file filer.
  const std::size_t selector = static_cast<std::size_t>(found - classes.begin());
  if (selector > 0xFF)
    return {};
  const unsigned trims = padding(data, out.dataBitSize()) |
                         padding(strings, out.stringBitSize()) << 3 |
                         std::min(padding(handles, out.handleBitSize()), 3u) << 6;
  std::vector<std::uint8_t> input;
  const auto put = [&input](std::size_t value) {
    input.push_back(static_cast<std::uint8_t>(value & 0xFF));
  };
  put(selector);
  put(data.size());
  put(data.size() >> 8);
  put(strings.size());
  put(strings.size() >> 8);
  put(trims);
  input.insert(input.end(), data.begin(), data.end());
  input.insert(input.end(), strings.begin(), strings.end());
  input.insert(input.end(), handles.begin(), handles.end());
  return input;
}

bool writeSeedsIfAsked(const std::vector<OdRxClass*>& classes,
                       const std::vector<OdDbObjectPtr>& samples) {
  const char* folder = std::getenv("CUSTENTS_FUZZ_WRITE_SEEDS");
  if (!folder || !*folder)
    return false;
  OdDbDatabasePtr db = OdDbDatabase::createObject();
  for (const OdRxClass* rxClass : classes) {
    const auto sample = std::find_if(samples.begin(), samples.end(),
                                     [&](const OdDbObjectPtr& o) { return o->isA() == rxClass; });
    OdDbObjectPtr object = sample != samples.end() ? *sample : make(rxClass);
    if (sample == samples.end())
      db->addOdDbObject(object);
    const std::vector<std::uint8_t> input = encodeInput(classes, object);
    const std::string name = rxClass->name().toUtf8();
    if (input.empty()) {
      std::fprintf(stderr, "%s: does not file out, no seed\n", name.c_str());
      continue;
    }
    // A seed is of use only if its class reads it back.
    StreamSlices streams;
    streams.cut(input.data() + 1, input.size() - 1);
    OdStaticRxObject<OdDbDwgStreamFiler> in;
    streams.openForRead(in, db, OdDbFiler::kFileFiler);
    if (make(rxClass)->dwgInFields(&in) != eOk) {
      std::fprintf(stderr, "%s: does not read back what it wrote, no seed\n", name.c_str());
      continue;
    }
    const std::string path = std::string(folder) + "/" + name + ".bin";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    const bool written = file && std::fwrite(input.data(), 1, input.size(), file) == input.size();
    if (!file || std::fclose(file) != 0 || !written) {
      std::fprintf(stderr, "cannot write %s\n", path.c_str());
      std::exit(1);
    }
    std::printf("%s%s\n", path.c_str(), sample != samples.end() ? " (from the drawing)" : "");
  }
  return true;
}

} // namespace objectfuzz
