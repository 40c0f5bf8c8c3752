#pragma once

#include <QMainWindow>
#include <QString>
#include <memory>

#include "gui/vocabulary/vocabulary.h"

class FormatQuestion;
class RecordingFileManager;

/// The window as the screens, the touch reader and the screen base see it. MainWindow is the only one; tests have their
/// own. GUI thread, but for the flags that the touch reader asks for (GetIsCurrentShowTouchMotion,
/// GetIsTouchMotionVer).
class ScreenHost : public QMainWindow {
  Q_OBJECT

public:
  using QMainWindow::QMainWindow;

  /// A command to the recorder; `value` and `text` as the command table says, `out` for the queries.
  virtual void SendEvent(Send_Event event, int value, QString text, int* out = nullptr) = 0;
  virtual void SendEvent(Send_Event event, int value, QString text, float* out) = 0;

  // The LCD: its backlight, and what is shown while it is off.
  virtual void LcdOn() = 0;
  virtual void LcdOff() = 0;
  virtual void SetLcdBright(int level) = 0;  ///< 0..2 fixed, 3 automatic
  virtual bool GetIsLcdOff() const = 0;
  virtual void SetIsLcdOff(bool off) = 0;

  // Delayed global actions.
  virtual void SetGlobalEntryPreviewTimer() = 0;  ///< back to the preview after 10 minutes without a touch
  virtual void StopGlobalEntryPreviewTimer() = 0;
  virtual void SetParkingModeLcdOffTimer() = 0;  ///< LCD off 8 s after the last touch while parked
  virtual void StopParkingModeLcdOffTimer() = 0;

  /// A voice prompt begins that holds touches back until its end is reported, for 10 s at most; or it has ended.
  virtual void SetIsPlayingVoice(bool playing) = 0;

  // State that screens read or set.
  virtual FormatQuestion& GetFormatQuestion() = 0;
  virtual qint64 GetEventTime() const = 0;  ///< when the status event that is handled was received; see Now()
  virtual bool GetIsIngParkingModeOn() const = 0;
  virtual bool GetIsLowVolCount() const = 0;
  virtual int GetCountOfLowVolPowerOff() const = 0;  ///< seconds, 31..1
  virtual bool GetIsCurrentShowTouchMotion() const = 0;
  virtual void SetIsCurrentShowTouchMotion(bool shown) = 0;
  virtual bool GetIsTouchMotionVer() const = 0;
  virtual void SetIsTouchMotionVer(bool test) = 0;
  virtual bool GetIsDetectRecording() const = 0;
  virtual void SetIsDetectRecording(bool recording) = 0;
  virtual int GetNeedTouchComBeforeSDFormat() const = 0;  ///< 0 none, 1 calibration wanted, 2 calibration done
  virtual void SetNeedTouchComBeforeSDFormat(int state) = 0;
  virtual bool GetTouchReleaseFlag() const = 0;  ///< no finger is down

  // The catalogue of recordings: built anew when the driver opens the list; null before that.
  virtual RecordingFileManager* GetRecordingFileManager() const = 0;
  virtual void SetRecordingFileManager(std::unique_ptr<RecordingFileManager> manager) = 0;

public slots:
  /// Builds the screen of `id` and shows it on top; an id without a screen changes nothing.
  virtual void StartWidget(WidgetId id, QObject* arg) = 0;
  /// Deletes the top screen and shows the one below.
  virtual void BackPressed() = 0;
  /// Deletes the screens above the lowest one of `id` and shows that.
  virtual void Jumped(WidgetId id) = 0;

signals:
  /// Told by a step that holds the GUI thread up for long, once a second or so: it goes on.
  void longStepGoesOn();
};

/// The one window; null before it is built.
extern ScreenHost* gMainWindow;
