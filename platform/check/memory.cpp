// The segment of the payloads.
#include <algorithm>
#include <climits>
#include <cstring>

#include "platform/check/demand.h"
#include "platform/gui_interface.h"

namespace platformcheck {
namespace {

/// The first slot as it was, put back in the end: it is the recorder's.
class KeptSlot {
public:
  explicit KeptSlot(Camera& camera) : mCamera(camera), mBytes(GUI_SLOT_SIZE) {
    mCamera.Read(0, mBytes.data(), GUI_SLOT_SIZE);
  }
  ~KeptSlot() { mCamera.Write(0, mBytes.data(), GUI_SLOT_SIZE); }
  KeptSlot(const KeptSlot&) = delete;
  KeptSlot& operator=(const KeptSlot&) = delete;

private:
  Camera& mCamera;
  std::vector<char> mBytes;
};

// Fills the slot with a pattern that begins with `first`.
std::vector<char> Fill(Camera& camera, int first) {
  std::vector<char> pattern(GUI_SLOT_SIZE);
  for (size_t i = 0; i < pattern.size(); ++i) pattern[i] = char(size_t(first) + i * 7 + i / 256);
  const int result = camera.Write(0, pattern.data(), GUI_SLOT_SIZE);
  Require(result >= 0, Text("the write of a whole slot gave %d", result));
  return pattern;
}

void IsKept(Camera& camera) {
  camera.Open();
  const KeptSlot slot(camera);
  for (int first = 0; first < 2; ++first) {
    const std::vector<char> pattern = Fill(camera, first);
    for (const int length : {4, 1, int{GUI_SLOT_SIZE}}) {
      std::vector<char> buffer(GUI_SLOT_SIZE, kUntouched);
      const int offset = GUI_SLOT_SIZE - length;
      const int result = camera.Read(offset, buffer.data(), length);
      Require(result >= 0, Text("%d bytes at %d: it gave %d", length, offset, result));
      Require(std::equal(buffer.begin(), buffer.begin() + length, pattern.begin() + offset),
              Text("%d bytes at %d are not what was written", length, offset));
    }
  }
}

void KeepsToTheLength(Camera& camera) {
  camera.Open();
  const KeptSlot slot(camera);
  Fill(camera, 0);
  for (const int length : {0, 1, 4, 100}) {
    std::vector<char> buffer(size_t(length) + kGround, kUntouched);
    camera.Read(0, buffer.data(), length);
    const auto behind =
        std::find_if(buffer.begin() + length, buffer.end(), [](char byte) { return byte != kUntouched; });
    Require(behind == buffer.end(),
            Text("a read of %d bytes changed byte %d of the buffer", length, int(behind - buffer.begin())));
  }
}

void RefusesWhatIsOutside(Camera& camera) {
  camera.Open();
  char buffer[4];
  const auto refuses = [&](int segment, int offset) {
    std::memset(buffer, kUntouched, sizeof buffer);
    const std::string what = Text("ShareMemReadByMid(%d, %d, buffer, 4)", segment, offset);
    const int result = camera.Timed(what, [&] { return ShareMemReadByMid(segment, offset, buffer, sizeof buffer); });
    Require(result < 0, Text("%s gave %d", what.c_str(), result));
    Require(std::count(buffer, buffer + sizeof buffer, kUntouched) == sizeof buffer,
            Text("%s wrote into the buffer", what.c_str()));
  };
  for (const int offset : {INT_MAX, INT_MAX - 3, INT_MAX / 2}) refuses(camera.Segment(), offset);
  refuses(-1, 0);
}

void AddressesWithoutData(Camera& camera) {
  camera.Open();
  const KeptSlot slot(camera);
  const std::vector<char> pattern = Fill(camera, 3);
  for (const int length : {0, 4, int{GUI_SLOT_SIZE}}) camera.Write(0, nullptr, length);
  std::vector<char> buffer(GUI_SLOT_SIZE);
  camera.Read(0, buffer.data(), GUI_SLOT_SIZE);
  Require(buffer == pattern, "the slot was changed");
}

}  // namespace

const std::vector<Demand>& MemoryDemands() {
  static const std::vector<Demand> demands = {
      {"memory-keeps",
       "What `ShareMemWriteByMid` puts into a slot `ShareMemReadByMid` reads there, up to all its 12288 bytes.",
       IsKept},
      {"memory-length",
       "`ShareMemReadByMid` writes `length` bytes into the buffer and not one more; with a length of 0 none.",
       KeepsToTheLength},
      {"memory-outside",
       "`ShareMemReadByMid` refuses a place outside the segment, and an id that is not its own, with a negative "
       "result, "
       "and leaves the buffer as it is.",
       RefusesWhatIsOutside},
      {"memory-null", "`ShareMemWriteByMid` with a null pointer changes nothing.", AddressesWithoutData},
  };
  return demands;
}

}  // namespace platformcheck
