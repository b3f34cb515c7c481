#include "ToolPaths.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <unistd.h>
#include <vector>

std::string executableDirectory() {
  // readlink does not say whether it truncated; grow the buffer until the target fits.
  std::vector<char> buffer(256);
  for (;;) {
    const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (length < 0)
      throw std::runtime_error(std::string("cannot find the executable: /proc/self/exe: ") +
                               std::strerror(errno));
    if (static_cast<std::size_t>(length) < buffer.size()) {
      const std::string path(buffer.data(), static_cast<std::size_t>(length));
      const std::string::size_type slash = path.find_last_of('/');
      return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
    }
    buffer.resize(buffer.size() * 2);
  }
}

std::string defaultModulePath() {
  return executableDirectory() + "/CustEnts.tx";
}
