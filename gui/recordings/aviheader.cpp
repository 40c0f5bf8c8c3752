#include "gui/recordings/aviheader.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

namespace {
// Offsets in the file, bytes. The main header has a size of its own; all that follows is counted from its end.
constexpr int kListAt = 12;
constexpr int kMainSizeAt = 28;
constexpr int kMainAt = 32;
constexpr int kRateAfterMain = 44;
constexpr int kLengthAfterMain = 52;
constexpr int kEndAfterMain = 56;

constexpr int kUsualMainBytes = 56;
constexpr int kUsualEnd = kMainAt + kUsualMainBytes + kEndAfterMain;
}  // namespace

ssize_t ReadAt(int file, char* bytes, size_t count, off_t at) {
  size_t got = 0;
  while (got < count) {
    const ssize_t more = pread(file, bytes + got, count - got, at + off_t(got));
    if (more == 0) break;
    if (more > 0)
      got += size_t(more);
    else if (errno != EINTR)
      return -1;
  }
  return ssize_t(got);
}

std::optional<int> ReadAviSeconds(int file) {
  char head[kUsualEnd];
  const ssize_t got = ReadAt(file, head, sizeof head, 0);
  if (got < kMainAt || std::memcmp(head, "RIFF", 4) != 0 || std::memcmp(head + kListAt, "LIST", 4) != 0) return {};
  const auto mainBytes = qFromLittleEndian<quint32>(head + kMainSizeAt);
  char* stream = head + kMainAt + kRateAfterMain;
  const int streamBytes = kEndAfterMain - kRateAfterMain;
  if (mainBytes <= kUsualMainBytes) {
    if (got < ssize_t(kMainAt + mainBytes + kEndAfterMain)) return {};
    stream += mainBytes;
  } else if (ReadAt(file, stream, streamBytes, off_t{kMainAt} + mainBytes + kRateAfterMain) != streamBytes) {
    return {};
  }
  const auto rate = qFromLittleEndian<quint32>(stream);
  const auto length = qFromLittleEndian<quint32>(stream + kLengthAfterMain - kRateAfterMain);
  return rate == 0 ? 0 : int(std::min(length / rate, quint32{INT_MAX}));
}

int ReadAviSeconds(const QString& path) {
  const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (file < 0) return 0;
  const int seconds = ReadAviSeconds(file).value_or(0);
  close(file);
  return seconds;
}
