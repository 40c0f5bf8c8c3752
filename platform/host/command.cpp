// Commands to the recorder, over a Unix socket.
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

#include "platform/host/trace.h"
#include "platform/sysctrl.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLimit(500);  // of a whole call
constexpr size_t kHeader = 8;
constexpr size_t kLargestPacket = 4096;
constexpr size_t kMostData = kLargestPacket - kHeader;

/// A request or an answer: two little-endian words, the second one the length of the data behind them.
struct Packet {
  std::array<unsigned char, kLargestPacket> bytes;
  size_t size = 0;

  std::uint32_t Word(size_t at) const {
    return bytes[at] | std::uint32_t{bytes[at + 1]} << 8 | std::uint32_t{bytes[at + 2]} << 16 |
           std::uint32_t{bytes[at + 3]} << 24;
  }
  void SetWord(size_t at, std::uint32_t word) {
    for (size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<unsigned char>(word >> (8 * i));
  }
};

/// The connection to the recorder, kept from one request to the next. It is closed as soon as anything on it fails:
/// what arrives late is never taken for the answer of the next request. Errors are negative errno values.
class Connection {
public:
  /// Sends the request and gives its answer, which is one for a request of `mostData` bytes. 0 or an error.
  int Ask(const Packet& request, size_t mostData, Packet* answer, Clock::time_point deadline);

private:
  bool IsUsable() const;
  int Open();
  int Send(const Packet& request, Clock::time_point deadline) const;
  int Receive(Packet* answer, Clock::time_point deadline) const;
  int Wait(short events, Clock::time_point deadline) const;
  void Close();

  int mSocket = -1;
};

/// The caller's turn on the connection: one request at a time.
class Turn {
public:
  explicit Turn(Clock::time_point deadline) {
    std::unique_lock lock(sMutex);
    mHas = sFree.wait_until(lock, deadline, [] { return !sTaken; });
    if (mHas) sTaken = true;
  }
  ~Turn() {
    if (!mHas) return;
    const std::lock_guard lock(sMutex);
    sTaken = false;
    sFree.notify_one();
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  /// False: the deadline came first.
  explicit operator bool() const { return mHas; }

private:
  inline static std::mutex sMutex;
  inline static std::condition_variable sFree;
  inline static bool sTaken = false;

  bool mHas = false;
};

Connection gConnection;  // of whose turn it is

int Connection::Ask(const Packet& request, size_t mostData, Packet* answer, Clock::time_point deadline) {
  if (!IsUsable()) {
    Close();
    if (const int error = Open()) return error;
  }
  int error = Send(request, deadline);
  if (!error) error = Receive(answer, deadline);
  if (!error &&
      (answer->size < kHeader || answer->size > kHeader + mostData || answer->Word(4) != answer->size - kHeader))
    error = -EPROTO;
  if (error) Close();
  return error;
}

// Nothing waits on a connection at rest. The recorder's end does when it was restarted, and so do answers that nobody
// asked for.
bool Connection::IsUsable() const {
  char byte;
  return mSocket >= 0 && recv(mSocket, &byte, sizeof byte, MSG_PEEK | MSG_DONTWAIT) < 0 && errno == EAGAIN;
}

// A Unix socket is connected at once or not at all: nobody listens, or more wait there than the listener takes.
int Connection::Open() {
  const char* root = std::getenv("DASHCAM_ROOT");
  const std::string path = std::string(root ? root : "") + "/run/recorder.sock";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return -ENAMETOOLONG;
  path.copy(address.sun_path, path.size());
  // Not for the shell commands that the interface starts.
  mSocket = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (mSocket < 0) return -errno;
  if (connect(mSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return 0;
  const int error = -errno;
  Close();
  return error;
}

int Connection::Send(const Packet& request, Clock::time_point deadline) const {
  for (;;) {
    if (send(mSocket, request.bytes.data(), request.size, MSG_NOSIGNAL) >= 0) return 0;  // packets go whole
    if (errno == EINTR) continue;
    if (errno != EAGAIN) return -errno;
    if (const int error = Wait(POLLOUT, deadline)) return error;
  }
}

int Connection::Receive(Packet* answer, Clock::time_point deadline) const {
  for (;;) {
    if (const int error = Wait(POLLIN, deadline)) return error;
    // With MSG_TRUNC the whole size of a packet that is too large.
    const ssize_t size = recv(mSocket, answer->bytes.data(), answer->bytes.size(), MSG_TRUNC);
    if (size == 0) return -ECONNRESET;
    if (size > 0) {
      answer->size = size_t(size);
      return 0;
    }
    if (errno != EINTR && errno != EAGAIN) return -errno;
  }
}

int Connection::Wait(short events, Clock::time_point deadline) const {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return -ETIMEDOUT;
    pollfd waiting{mSocket, events, 0};
    const int ready = poll(&waiting, 1, int(left));
    if (ready > 0) return 0;
    if (ready < 0 && errno != EINTR) return -errno;
  }
}

void Connection::Close() {
  if (mSocket >= 0) close(mSocket);
  mSocket = -1;
}

/// The recorder's result, or a negative errno value. The data is good for `length` bytes and changed by nothing but the
/// answer to a request that succeeded.
int Command(std::uint32_t field, unsigned char* data, size_t length) {
  const Clock::time_point deadline = Clock::now() + kLimit;
  Packet request;
  request.SetWord(0, field);
  request.SetWord(4, std::uint32_t(length));
  std::copy_n(data, length, request.bytes.begin() + kHeader);
  request.size = kHeader + length;

  const Turn turn(deadline);
  if (!turn) return -ETIMEDOUT;
  Packet answer;
  if (const int error = gConnection.Ask(request, length, &answer, deadline)) return error;
  const auto result = static_cast<std::int32_t>(answer.Word(0));
  if (result >= 0) std::copy_n(answer.bytes.cbegin() + kHeader, answer.Word(4), data);
  return result;
}

}  // namespace

int ControlSystemData(int field, void* data, int length) {
  const bool possible = field >= 0 && length >= 0 && size_t(length) <= kMostData && (data || length == 0);
  const platformhost::Trace trace(field, possible ? data : nullptr, length);
  const int result =
      possible ? Command(std::uint32_t(field), static_cast<unsigned char*>(data), size_t(length)) : -EINVAL;
  trace.Write(result);
  return result;
}
