// The status queue and the segment of its payloads.
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <mutex>
#include <system_error>

#include "platform/Msg_Def.h"
#include "platform/gui_interface.h"

namespace {

constexpr std::uint32_t kDefaultKey = 0x44434755;
constexpr int kSlots = 16;
constexpr int kSegmentBytes = kSlots * GUI_SLOT_SIZE;
constexpr int kMode = 0600;

/// The attached segment: initialised in one thread, read in another.
struct Segment {
  std::mutex mutex;
  int mid = -1;  // none
  char* address = nullptr;
};
Segment gSegment;

int Refuse(const char* what, int error) {
  std::fprintf(stderr, "platform: %s: %s\n", what, std::generic_category().message(error).c_str());
  return -error;
}

/// The key of the queue; the segment's is the next one. 0, after a line on the standard error, when the environment
/// names none. 0 and 0xFFFFFFFF are none: they, or the key after them, would ask for a private queue or segment.
std::uint32_t Key() {
  const char* text = std::getenv("PLATFORM_KEY");
  if (!text) return kDefaultKey;
  const bool hex = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* end = text + std::strlen(text);
  std::uint32_t key = 0;
  const auto [stop, error] = std::from_chars(hex ? text + 2 : text, end, key, hex ? 16 : 10);
  if (error == std::errc() && stop == end && key != 0 && key != std::numeric_limits<std::uint32_t>::max()) return key;
  std::fprintf(stderr, "platform: PLATFORM_KEY is no number from 1 to 0xFFFFFFFE: %s\n", text);
  return 0;
}

// Takes out what an earlier run left: only as much as there is now, because a sender that never stops must not keep the
// interface here.
void Purge(int queue, msgqnum_t waiting) {
  GUI_MSG_BUF message;
  while (waiting-- > 0 && msgrcv(queue, &message, GUI_MSG_SIZE, 0, IPC_NOWAIT | MSG_NOERROR) >= 0) {
  }
}

int Attach(int mid) {
  void* address = shmat(mid, nullptr, 0);
  if (address == reinterpret_cast<void*>(-1)) return Refuse("shared memory", errno);
  if (gSegment.address) shmdt(gSegment.address);
  gSegment.address = static_cast<char*>(address);
  gSegment.mid = mid;
  return mid;
}

/// Where `length` bytes at `offset` are, or null when they are not all inside the segment.
char* Place(int mid, int offset, int length) {
  if (mid < 0 || mid != gSegment.mid || offset < 0 || length < 0) return nullptr;
  if (std::int64_t{offset} + length > kSegmentBytes) return nullptr;
  return gSegment.address + offset;
}

}  // namespace

int Gui_InitMessage() {
  const std::uint32_t key = Key();
  if (key == 0) return -EINVAL;
  const int queue = msgget(key_t(key), IPC_CREAT | kMode);
  msqid_ds state{};
  if (queue < 0 || msgctl(queue, IPC_STAT, &state) < 0) return Refuse("status queue", errno);
  if (state.msg_perm.uid != geteuid()) return Refuse("status queue of another user", EACCES);
  Purge(queue, state.msg_qnum);
  return queue;
}

int Gui_InitSharedMemory() {
  const std::uint32_t key = Key();
  if (key == 0) return -EINVAL;
  const std::lock_guard lock(gSegment.mutex);
  const int mid = shmget(key_t(key + 1), kSegmentBytes, IPC_CREAT | kMode);
  shmid_ds state{};
  // EINVAL: there is one, and it is smaller.
  if (mid < 0 || shmctl(mid, IPC_STAT, &state) < 0) return Refuse("shared memory", errno);
  if (state.shm_segsz != kSegmentBytes) return Refuse("shared memory of another size", EINVAL);
  if (state.shm_perm.uid != geteuid()) return Refuse("shared memory of another user", EACCES);
  return mid == gSegment.mid ? mid : Attach(mid);
}

int ShareMemReadByMid(int mid, int offset, void* buffer, int length) {
  const std::lock_guard lock(gSegment.mutex);
  const char* place = Place(mid, offset, length);
  if (!place || !buffer) return -EINVAL;
  std::memcpy(buffer, place, size_t(length));
  return 0;
}

int ShareMemWriteByMid(int mid, int offset, void* data, int length) {
  const std::lock_guard lock(gSegment.mutex);
  char* place = Place(mid, offset, length);
  if (!place) return -EINVAL;
  if (data) std::memcpy(place, data, size_t(length));
  return 0;
}
