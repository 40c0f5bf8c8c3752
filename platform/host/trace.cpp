#include "platform/host/trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace platformhost {
namespace {

std::string Hex(const void* data, int length) {
  static constexpr char kDigits[] = "0123456789abcdef";
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::string hex;
  for (int i = 0; bytes && i < length; ++i) {
    hex += kDigits[bytes[i] >> 4];
    hex += kDigits[bytes[i] & 15];
  }
  return hex;
}

// O_APPEND and a single write keep the lines of several processes whole. O_NONBLOCK: the file may be a FIFO that nobody
// reads.
bool Append(const char* file, const std::string& line) {
  const int fd = open(file, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600);
  if (fd < 0) return false;
  const bool written = write(fd, line.data(), line.size()) == ssize_t(line.size());
  close(fd);
  return written;
}

}  // namespace

Trace::Trace(int field, const void* data, int length) : mFile(std::getenv("PLATFORM_TRACE")) {
  if (!mFile || !*mFile) return;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  mLine = "{\"ms\": " + std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()) +
          ", \"field\": " + std::to_string(field) + ", \"length\": " + std::to_string(length) + ", \"data\": \"" +
          Hex(data, length) + "\", \"result\": ";
}

void Trace::Write(int result) const {
  if (mLine.empty() || Append(mFile, mLine + std::to_string(result) + "}\n")) return;
  static std::atomic<bool> said = false;
  if (said.exchange(true)) return;
  std::fprintf(stderr, "platform: PLATFORM_TRACE: %s: %s\n", mFile, std::generic_category().message(errno).c_str());
}

}  // namespace platformhost
