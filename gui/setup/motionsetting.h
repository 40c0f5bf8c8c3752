#pragma once

#include <array>
#include <cstdint>

#include "gui/screen/basewidget.h"

/// Where the picture of a camera is watched for motion while parked: 8 × 6 cells over the live video. The power key
/// ends it. GUI thread.
class MotionSetting : public BaseWidget {
  Q_OBJECT

public:
  static constexpr int kColumns = 8, kRows = 6, kCells = kColumns * kRows;

  explicit MotionSetting(QWidget* parent);

  void touchEvent(int type, int x, int y) override;
  void recvEvent(int event, int value) override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;
  void TimeoutEvent() override;

  /// `value` with one bit, 0..63, set or cleared; that bit as 0 or 1.
  static std::uint64_t setBit(std::uint64_t value, int bitIndex, int on);
  static int getAbit(std::uint64_t value, int bitIndex);
  /// The 64 digits of `value`, the highest first. Valid until the next call.
  static const char* ulongToBinary(std::uint64_t value);

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override;

private:
  static int CellAt(int x, int y);
  void Toggle(int cell);
  void Apply();
  void SetGlobalMotionSettingValue();

  const bool mFront;                 // the camera that was chosen; an event may switch the view meanwhile
  std::uint64_t MotionSettingValue;  // cell i is bit 47 - i: set where motion counts
  std::array<bool, kCells> checkMotionDisble{};
};
