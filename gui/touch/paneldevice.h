#pragma once

#include <linux/input.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

/// The least and the greatest value of one axis, as its device says.
struct AxisRange {
  int least = 0;
  int most = 511;
};

/// A value of an axis in units of the camera's panel, 0..511. One of that very range, or of a range that is none, stays
/// as it is.
int InPanelUnits(int value, AxisRange range);

struct PanelRecord {
  int type = 0;
  int code = 0;
  int value = 0;
};

/// The touch panel's device: a character device of this machine's kernel, or a file or FIFO of camera records. It may
/// come, go, and be another one at any time; whoever waits for File() and Changes() notices.
class PanelDevice {
public:
  enum class Got {
    Record,
    Nothing,
    Gone,  ///< the device, or a FIFO's writer; another one may come
    End,   ///< of a plain file: nothing will come any more
  };

  /// Opens it, if it is there.
  explicit PanelDevice(const std::string& path);
  ~PanelDevice();
  PanelDevice(const PanelDevice&) = delete;
  PanelDevice& operator=(const PanelDevice&) = delete;

  /// Readable when there is something to Read(); -1 while there is no device.
  int File() const { return mFile; }

  /// Readable when the folder has changed: then TakeChange() is to be called.
  int Changes() const { return mChanges; }

  /// True when it is another device from now on.
  bool TakeChange();

  /// Takes what there is of a record, at most one.
  Got Read(PanelRecord* record);

  /// Where the finger was at last, as far as the device knows it when it is opened: the kernel tells only what changes.
  const std::vector<PanelRecord>& Start() const { return mStart; }

private:
  bool Open();
  void Close();
  void Watch();
  void AskKernel();
  bool Translate(PanelRecord* record);

  std::filesystem::path mPath;
  int mChanges = -1;  // an inotify
  int mWatch = -1;    // of it, on a folder

  int mFile = -1;
  struct stat mStatus {};
  int mSize = 0;  // of a record, bytes
  char mRecord[sizeof(input_event)] = {};
  int mFilled = 0;

  AxisRange mX, mY, mPressure;
  bool mHasPressure = true;
  bool mIsKeyDown = false, mWasKeyDown = false;  // BTN_TOUCH of a device without pressure: now, and at its last report
  std::vector<PanelRecord> mStart;
};
