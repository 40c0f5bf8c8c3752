#pragma once

#include <QThread>
#include <QTime>
#include <array>

#include "gui/base/relaxed.h"

class PanelDevice;
class QTimer;
class ScreenHost;

/// A point of the touch panel.
struct TP_POINT {
  int x = 0;
  int y = 0;
};

/// The panel values at the edges of the screen.
struct TP_COMP {
  TP_POINT stOffset;
  TP_POINT stEnd;
};

/// The touch panel's reader. It tells one press for each contact, and a release only to the screens that want one. Its
/// thread reads the input device, now or whenever there is one; the signals are emitted there. All the rest belongs to
/// the GUI thread.
class TouchThread : public QThread {
  Q_OBJECT

public:
  /// Starts the thread at once. `window` owns it, and is asked for its flags by the thread.
  explicit TouchThread(ScreenHost* window);
  ~TouchThread() override;

  /// Ends the thread, within a second.
  void End();

  /// One record of the input device: its type, code and value. Called by the thread.
  void Take(int type, int code, int value);

  /// Maps a panel point to the screen, by the calibration of the settings, into new_x and new_y.
  void setValue(int panelX, int panelY);

  // The mapping by two edges alone, which the thread does not use.
  void setXValue(int value);
  void setYValue(int value);

  bool GetIsRelease() const { return mIsRelease; }  ///< no finger is down; any thread
  void resetRelease() {}
  void resetAuto();
  void setReleaseDelayTimer();
  void setLongPressTimer(int ms);
  /// Tells TOUCH_AUTO at the latest point after `ms`, and every 500 ms from then on.
  void setLongPressEventTimer(int ms);
  void setTouchPanel(int panelX, int panelY);  ///< emits inputTouchPanel

public slots:
  void relTimeout();
  void autoTimeout();
  /// Tap `nIdx` (1..4, in order) of the learning of the two edges: top left, top right, bottom left, bottom right.
  void PressPoint(int nIdx, int panelX, int panelY);
  void timeoutLongPress() {}
  void timeoutLongPressEvent();
  void timeoutReleaseDelay() {}

signals:
  // `seen`: when the thread had it; see Now().
  /// Finger down (TOUCH_PRESS) or long press (TOUCH_AUTO), on the screen.
  void pressEvent(int type, int x, int y, qint64 seen);
  void autoEvent(int type, int x, int y, qint64 seen);
  void releaseEvent(int type, int x, int y, qint64 seen);
  void inputTouchPanel(int x, int y,
                       qint64 seen);  ///< finger down while the calibration is shown; panel values, 0..511
  void touchMotionPanel(int rawX, int rawY, int x, int y, qint64 seen);  ///< every sample while the touch test is shown
  void sendReleaseEvent(bool released);                                  ///< finger up, to the recorded list
  void sendTimeLayoutReleaseEvent(bool released);                        ///< finger up, to the time setting
  void sendLedListLayoutReleaseEvent(bool released);                     ///< finger up, to the LED list
  void errorEvent(int error);

protected:
  void run() override;

  QTimer* timAuto;
  QTimer* timPress;
  QTimer* timRelease;
  QTimer* timLongPress;
  QTimer* timLongPressEvent;
  QTimer* timReleaseDelay;
  int statTouch = 0;
  Relaxed<int> x = 0;  // latest sample of the panel, turned as the panel is mounted
  Relaxed<int> y = 0;
  Relaxed<int> new_x = 0;  // on the screen
  Relaxed<int> new_y = 0;
  int nOldIdx = 0;
  std::array<TP_POINT, 5> arMeasuredPoint{};  // 1..4
  TP_COMP stComp{{25, 12}, {300, 234}};
  QTime t;  // null

private:
  void TakeStart(const PanelDevice& device);
  void Lift();
  void Press();
  void Release();

  ScreenHost* mMainWindow;
  Relaxed<bool> mIsRelease = true;

  int mEndSignal;  // an eventfd: readable once the thread has to end
};
