#pragma once

#include <functional>
#include <memory>

#include "gui/base/relaxed.h"
#include "gui/base/touchtime.h"
#include "gui/screen/formatquestion.h"
#include "gui/screen/screenhost.h"

class BaseWidget;
class MsgThread;
class QTimer;
class RecordingFileManager;
class TouchThread;

/// The window: it takes every touch and every status event first, applies the rules that hold on every screen
/// (backlight, idle return to the preview, low-voltage countdown, recording that must go on), and hands them to the
/// screen on top. GUI thread.
class MainWindow : public ScreenHost {
  Q_OBJECT

public:
  explicit MainWindow(QWidget* parent);
  /// Ends both worker threads and deletes every screen.
  ~MainWindow() override;

  void SendEvent(Send_Event event, int value, QString text, int* out = nullptr) override;
  void SendEvent(Send_Event event, int value, QString text, float* out) override;

  void LcdOn() override;
  void LcdOff() override;
  void SetLcdBright(int level) override;
  bool GetIsLcdOff() const override { return mIsLcdOff; }
  void SetIsLcdOff(bool off) override { mIsLcdOff = off; }

  void SetGlobalEntryPreviewTimer() override;
  void StopGlobalEntryPreviewTimer() override;
  void SetParkingModeLcdOffTimer() override;
  void StopParkingModeLcdOffTimer() override;
  void SetIsPlayingVoice(bool playing) override;

  FormatQuestion& GetFormatQuestion() override { return mFormatQuestion; }
  qint64 GetEventTime() const override { return mEventTime; }
  bool GetStartLcdAutoModeFlag() const { return mStartLcdAutoMode; }
  void SetStartLcdAutoModeFlag(bool start) { mStartLcdAutoMode = start; }
  bool GetIsLowVolCount() const override { return mIsLowVolCount; }
  void SetIsLowVolCount(bool counting) { mIsLowVolCount = counting; }
  bool GetIsIngParkingModeOn() const override { return mIsIngParkingModeOn; }
  void SetIsIngParkingModeOn(bool parking) { mIsIngParkingModeOn = parking; }
  int GetCountOfLowVolPowerOff() const override { return mCountOfLowVolPowerOff; }
  void SetCountOfLowVolPowerOff(int seconds) { mCountOfLowVolPowerOff = seconds; }
  bool GetIsCurrentShowTouchMotion() const override { return mIsCurrentShowTouchMotion; }
  void SetIsCurrentShowTouchMotion(bool shown) override { mIsCurrentShowTouchMotion = shown; }
  bool GetIsTouchMotionVer() const override { return mIsTouchMotionVer; }
  void SetIsTouchMotionVer(bool test) override { mIsTouchMotionVer = test; }
  bool GetIsDetectRecording() const override { return mIsDetectRecording; }
  void SetIsDetectRecording(bool recording) override { mIsDetectRecording = recording; }
  int GetNeedTouchComBeforeSDFormat() const override { return mNeedTouchCompBeforeSDFormat; }
  void SetNeedTouchComBeforeSDFormat(int state) override { mNeedTouchCompBeforeSDFormat = state; }
  bool GetTouchReleaseFlag() const override;
  RecordingFileManager* GetRecordingFileManager() const override { return mRecFileManager.get(); }
  void SetRecordingFileManager(std::unique_ptr<RecordingFileManager> manager) override;
  TouchThread* GetTouchThread() const { return mTouchThread; }

  void SetEvent(int eventId, int ms);  ///< the follow-up of one event; replaces the one that is pending
  static bool IsCalibration();         ///< true when there is no pointer calibration file
  static void InitSetCustomImageFile();
  void InitSend2FirmMotionSettingValue();
  void SetRecvMessageBox(int messageId, int value, int timeoutMs);
  void SetLowVolCount(int on);  ///< 1 starts the power-off countdown, anything else ends it

  /// A touch that the reader saw at `seen` and tells in a way of its own: `toScreen` is called unless the touch was for
  /// what has gone, wakes the LCD, or is taken by a box. (x, y) is its place on the screen.
  void PanelEvent(int x, int y, qint64 seen, std::function<void()> toScreen);

public slots:
  /// `received`, `seen`: when the worker thread had it; see Now().
  void recvEvent(int event, int value, qint64 received = Now());
  void touchEvent(int type, int x, int y, qint64 seen = Now());
  void StartWidget(WidgetId id, QObject* arg) override;
  void BackPressed() override;
  void Jumped(WidgetId id) override;
  void TimeoutLcdAutoMode();
  void TimeoutParkingModeLcdOff();
  void TimeoutEventTimer();
  void TimeoutIdleReturn();
  void TimeoutSystemRecStart();
  void TimeoutLowVolPowerOffCount();
  void TimeoutPlayingVoice();

signals:
  void previewEnable(bool on);
  void lowvolSignals(int on);

protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

private:
  void InitTimer();
  void InitMsgQ();
  void InitTouch();
  struct EventRule;
  static const EventRule kEventRules[];
  bool TakeVoicePlayEnd();
  void ShowHardwareError(int value);
  void TakeGps(int value);
  void EnterParkingMode(int value);
  void LeaveParkingMode(int value);
  void TakeCountOfCamera(int value);
  void TakeRearCamera(int);
  void LoseRearCamera(int);
  void LoseFrontLed(int);
  void TakeAccSupport(int value);
  void TakeLcdKey(int value);
  void ForceFrontView();
  bool IsParkingLcdOffAllowed() const;
  void RestartParkingModeLcdOff();
  void RecvShortKeyEvent(int value);
  void SetBacklight(int pwm);
  void ResumeRecording();
  void TakeScreen();
  void Install();
  void TellTopHasChanged();
  void ApplyBackground();

  WidgetId mPrevWidgeId = UNKNOWN;
  WidgetId mCurWidgetId = UNKNOWN;
  bool mStartLcdAutoMode = false;
  bool mIsIngParkingModeOn = false;
  bool mIsLcdOff = false;
  QTimer* mTimLcdAutoMode = nullptr;
  QTimer* mTimParkingModeLcdOff = nullptr;
  QTimer* mTimEventTimer = nullptr;
  QTimer* mTimIdleReturn = nullptr;  // after the notice of the idle return
  QTimer* mTimSystemRecStart = nullptr;
  QTimer* mTimLowVolPowerOffCount = nullptr;
  QTimer* mTimPlayingVoice = nullptr;  // ends a voice prompt whose end was never reported
  int mEventId = -1;
  bool mIsLowVolCount = false;
  int mCountOfLowVolPowerOff = 31;
  Relaxed<bool> mIsCurrentShowTouchMotion = false;
  Relaxed<bool> mIsTouchMotionVer = false;
  bool mIsDetectRecording = false;
  bool mIsRecordingStopped = false;  // the latest command to the recording was to stop, or to format its card
  bool mIsBacklightOut = false;      // the latest backlight value written was 0
  bool mIsLcdValueKnown = false;     // gRecvLcdValue is the recorder's
  qint64 mEventTime = 0;
  FormatQuestion mFormatQuestion{this};
  int mNeedTouchCompBeforeSDFormat = 0;
  std::unique_ptr<RecordingFileManager> mRecFileManager;
  TouchThread* mTouchThread = nullptr;
  MsgThread* mMsgThread = nullptr;
};
