#pragma once

class BaseWidget;
class QTimer;

/// A key that acts again and again while the finger stays down: the screen gets its touch once more after 500 ms, and
/// then every `repeatMs`, as TOUCH_AUTO. It belongs to the screen. GUI thread.
class LongPress {
public:
  LongPress(BaseWidget& screen, int repeatMs);

  /// Such a key is touched at (x, y). True for the touch itself, false when it comes again.
  bool Touch(int x, int y);

  /// The finger has left the panel.
  void Release();

private:
  void TimeoutLongPress();

  BaseWidget& mScreen;
  QTimer* mTimLongPress;
  int mRepeatMs;
  bool mFirstTouchCall = true;
  int mLongPressCoordX = 0;
  int mLongPressCoordY = 0;
};
