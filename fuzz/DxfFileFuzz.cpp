// Feeds arbitrary bytes to the DXF reader as a drawing file. Every input must end in an error
// that names what is wrong, or in a database; never a crash, a hang or an unbounded
// allocation. The bytes go through a file because the reader takes a path, as it does for
// drawings a user opens.

#include "DbDatabase.h"
#include "DbDxfFile.h"
#include "RxDictionary.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

// One file per process, so parallel fuzzing jobs in one directory do not share it.
const std::string& inputPath() {
  static const std::string path = "/tmp/custents-dxf-fuzz-" + std::to_string(::getpid()) + ".dxf";
  return path;
}

bool writeFile(const std::string& path, const std::uint8_t* bytes, std::size_t size) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (!file)
    return false;
  const bool written = size == 0 || std::fwrite(bytes, 1, size, file) == size;
  return std::fclose(file) == 0 && written;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const bool initialised = [] {
    odInitialize();
    return true;
  }();
  (void)initialised;

  const std::string& path = inputPath();
  if (!writeFile(path, bytes, size))
    std::abort(); // the harness itself cannot work: stop rather than report nothing

  OdDbDatabasePtr db;
  OdString error;
  std::vector<OdString> notes;
  const OdResult result = odDbReadDxf(OdString(path.c_str()), db, &error, &notes);

  // The reader's contract: a database exactly when it succeeds, and a message when it fails.
  if ((result == eOk) == db.isNull())
    std::abort();
  if (result != eOk && error.isEmpty())
    std::abort();
  return 0;
}
