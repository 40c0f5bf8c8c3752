#include "gui/touch/paneldevice.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <utility>

namespace {
constexpr int kMost = 511;
constexpr int kRecordBytes = 16;    // of the camera's 32-bit kernel, and of everything that is no device
constexpr int kAfterTimeBytes = 8;  // type, code and value
// A device that appears, gets its rights, goes or is replaced; a folder that goes.
constexpr std::uint32_t kChange =
    IN_CREATE | IN_ATTRIB | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

bool IsSet(const unsigned long* bits, int bit) {
  constexpr int kBits = sizeof(long) * CHAR_BIT;
  return (bits[bit / kBits] >> (bit % kBits) & 1) != 0;
}
}  // namespace

int InPanelUnits(int value, AxisRange range) {
  if (range.most <= range.least || (range.least == 0 && range.most == kMost)) return value;
  const std::int64_t span = std::int64_t{range.most} - range.least;
  const std::int64_t above = std::int64_t{std::clamp(value, range.least, range.most)} - range.least;
  return int((above * kMost + span / 2) / span);
}

PanelDevice::PanelDevice(const std::string& path) : mChanges(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  std::error_code noFolder;
  mPath = std::filesystem::absolute(path, noFolder);
  Watch();
  Open();
}

PanelDevice::~PanelDevice() {
  Close();
  if (mChanges >= 0) close(mChanges);
}

// Does not wait for a FIFO's writer; who waits for its File() does.
bool PanelDevice::Open() {
  Close();
  mFile = open(mPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (mFile < 0 || fstat(mFile, &mStatus) != 0 || S_ISDIR(mStatus.st_mode)) {
    Close();
    return false;
  }
  mSize = S_ISCHR(mStatus.st_mode) ? int(sizeof(input_event)) : kRecordBytes;
  AskKernel();
  return true;
}

void PanelDevice::Close() {
  if (mFile >= 0) close(mFile);
  mFile = -1;
  mFilled = 0;
}

// The folder; as long as it is missing, the nearest one above it, where what is missing will appear.
void PanelDevice::Watch() {
  std::vector<std::filesystem::path> folders;  // the device's own first
  for (auto folder = mPath.parent_path();; folder = folder.parent_path()) {
    folders.push_back(folder);
    if (folder == folder.parent_path()) break;
  }
  std::size_t at = 0;
  int watch = -1;
  while (at < folders.size() && (watch = inotify_add_watch(mChanges, folders[at].c_str(), kChange)) < 0) ++at;
  // One that has appeared since is told no more.
  for (int below = 0; at > 0; watch = below, --at) {
    below = inotify_add_watch(mChanges, folders[at - 1].c_str(), kChange);
    if (below < 0) break;
    inotify_rm_watch(mChanges, watch);
  }
  if (mWatch >= 0 && mWatch != watch) inotify_rm_watch(mChanges, mWatch);
  mWatch = watch;
}

bool PanelDevice::TakeChange() {
  char events[4096];
  while (read(mChanges, events, sizeof events) > 0) {
  }
  Watch();
  struct stat now {};
  if (stat(mPath.c_str(), &now) != 0) return false;  // one that is open may still speak
  const bool isSame = now.st_dev == mStatus.st_dev && now.st_ino == mStatus.st_ino && now.st_rdev == mStatus.st_rdev;
  if (mFile >= 0 && isSame) return false;
  return Open();
}

PanelDevice::Got PanelDevice::Read(PanelRecord* record) {
  const ssize_t bytes = read(mFile, mRecord + mFilled, size_t(mSize - mFilled));
  if (bytes < 0 && (errno == EINTR || errno == EAGAIN)) return Got::Nothing;
  if (bytes == 0 && S_ISREG(mStatus.st_mode)) return Got::End;
  if (bytes <= 0) {
    const bool isBack = bytes == 0 ? S_ISFIFO(mStatus.st_mode) : errno != ENODEV;
    if (isBack)
      Open();  // the next writer may come, or the next reading succeed
    else
      Close();
    return Got::Gone;
  }
  mFilled += int(bytes);
  if (mFilled < mSize) return Got::Nothing;
  mFilled = 0;
  const char* const at = mRecord + mSize - kAfterTimeBytes;
  std::uint16_t typeAndCode[2];
  std::int32_t value = 0;
  std::memcpy(typeAndCode, at, sizeof typeAndCode);
  std::memcpy(&value, at + sizeof typeAndCode, sizeof value);
  *record = {typeAndCode[0], typeAndCode[1], value};
  return Translate(record) ? Got::Record : Got::Nothing;
}

// Ranges, the last position, and whether there is a pressure. What is no device of the kernel's input knows nothing of
// them: it is as the camera's panel.
void PanelDevice::AskKernel() {
  mX = mY = mPressure = {};
  mHasPressure = true;
  mIsKeyDown = mWasKeyDown = false;
  mStart.clear();
  unsigned long axes[ABS_CNT / (sizeof(long) * CHAR_BIT) + 1] = {};
  if (!S_ISCHR(mStatus.st_mode) || ioctl(mFile, EVIOCGBIT(EV_ABS, sizeof axes), axes) < 0) return;
  mHasPressure = IsSet(axes, ABS_PRESSURE);
  for (const auto& [axis, range] :
       {std::pair(ABS_X, &mX), std::pair(ABS_Y, &mY), std::pair(ABS_PRESSURE, &mPressure)}) {
    input_absinfo known{};
    if (!IsSet(axes, axis) || ioctl(mFile, EVIOCGABS(axis), &known) < 0) continue;
    *range = {known.minimum, known.maximum};
    if (axis != ABS_PRESSURE) mStart.push_back({EV_ABS, axis, InPanelUnits(known.value, *range)});
  }
}

// Into what the camera's panel would have told. False when it would have told nothing.
bool PanelDevice::Translate(PanelRecord* record) {
  auto& [type, code, value] = *record;
  if (type == EV_ABS && code == ABS_X) value = InPanelUnits(value, mX);
  if (type == EV_ABS && code == ABS_Y) value = InPanelUnits(value, mY);
  if (type == EV_ABS && code == ABS_PRESSURE) {
    const bool isLight = value > mPressure.least && mPressure.least < mPressure.most;  // and not to be taken for none
    value = InPanelUnits(value, mPressure);
    if (isLight && value == 0) value = 1;
  }
  if (mHasPressure) return true;
  if (type == EV_KEY && code == BTN_TOUCH) mIsKeyDown = value != 0;
  if (type != EV_SYN || code != SYN_REPORT) return type == EV_ABS;
  // A report is whole, and with it the position that belongs to the touch.
  const bool wasDown = std::exchange(mWasKeyDown, mIsKeyDown);
  *record = {EV_ABS, ABS_PRESSURE, mIsKeyDown ? 1 : 0};
  return mIsKeyDown || wasDown;
}
