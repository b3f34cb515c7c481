// Runs a harness without libFuzzer: every file of the folders (or the files) given on the
// command line goes through LLVMFuzzerTestOneInput once, in name order. The tests replay the
// stored corpus and every crash input ever found this way, so a fault that a fuzzer found once
// stays fixed. A harness reports a broken rule by aborting, which fails the program.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);
// Optional, as for libFuzzer: run once before the first input.
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> inputsOf(const fs::path& path) {
  std::vector<fs::path> files;
  if (fs::is_directory(path)) {
    for (const fs::directory_entry& entry : fs::directory_iterator(path))
      if (entry.is_regular_file() && entry.path().filename().string()[0] != '.')
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
  } else if (fs::is_regular_file(path)) {
    files.push_back(path);
  }
  return files;
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s FOLDER|FILE...\n", argv[0]);
    return 2;
  }
  if (LLVMFuzzerInitialize)
    LLVMFuzzerInitialize(&argc, &argv);
  std::size_t replayed = 0;
  for (int i = 1; i < argc; ++i) {
    // A folder that does not exist holds nothing to replay: a harness without crashes has no
    // crash folder.
    const std::vector<fs::path> files = inputsOf(argv[i]);
    for (const fs::path& file : files) {
      std::printf("%s\n", file.c_str());
      std::fflush(stdout); // the name is out before a failing input stops the program
      std::ifstream stream(file, std::ios::binary);
      const std::vector<char> bytes((std::istreambuf_iterator<char>(stream)),
                                    std::istreambuf_iterator<char>());
      if (!stream.good() && !stream.eof()) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return 1;
      }
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%s: %zu inputs\n", argv[i], files.size());
    replayed += files.size();
  }
  if (replayed == 0) {
    std::fprintf(stderr, "no input found\n");
    return 1;
  }
  std::printf("replayed %zu inputs\n", replayed);
  return 0;
}
