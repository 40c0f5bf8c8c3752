#pragma once

#include <functional>
#include <limits>

#include "gui/base/globals.h"
#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/formatquestion.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/widgetmanager.h"
#include "tests/fake/platformfake.h"

/// A window for the tests of one screen, without the rules of the real one. What the screen asks of it is noted in the
/// list of the platform's fake, so that it stands in order with the shell commands and the sleeps:
///   "SEND_SET_VOLUME 2"   a command and its value; with a text: "SEND_PLAY_VIDEO 0 /mnt/mmc/a.avi"
///   "next PLAYER", "back", "jump PREVIEW"
///   "lcd on", "lcd off", "bright 2"
///   "idle timer", "no idle timer", "parking timer", "no parking timer"
/// The fake's `meanwhile` is called for these lines, too. The stack operations are done on gWidgetManager, so that
/// after "back" the screen is gone as on the camera.
class HostFake : public ScreenHost {
public:
  HostFake() {
    resize(480, 320);
    gMainWindow = this;
  }
  ~HostFake() override {
    takeCentralWidget();
    gWidgetManager.ResetStackedWidgetList();
    gMainWindow = nullptr;
  }

  /// What was asked of the window, the shell and the clock since the last Clear().
  static QStringList Asked() { return PlatformFake::Get().asked; }
  static void Clear() { PlatformFake::Get().Clear(); }

  /// Puts a screen on top of the stack and shows it. The stack owns it.
  template <typename Screen>
  Screen* Show(WidgetId id, Screen* screen) {
    BaseWidget* covered = gWidgetManager.GetCurrentWidget();
    gWidgetManager.NextWidget({id, screen});
    takeCentralWidget();
    if (covered) covered->onTopChanged();
    Install();
    return screen;
  }

  // What the screen is told; plain values that the test sets.
  bool isLcdOff = false;
  bool isParking = false;
  bool isLowVolCount = false;
  int countOfLowVolPowerOff = 31;
  bool isShowTouchMotion = false;
  bool isTouchMotionVer = false;
  bool isDetectRecording = false;
  int needTouchComp = 0;
  bool isTouchReleased = true;
  int intAnswer = 0;                                      ///< of the queries of an int
  float floatAnswer = 12.4F;                              ///< of the query of the voltage
  qint64 eventTime = std::numeric_limits<qint64>::max();  ///< when the status event was received
  std::unique_ptr<RecordingFileManager> catalogue;
  QObject* nextArg = nullptr;  ///< what the last "next" handed over
  /// Builds the screen that "next" asks for; without it nothing is built.
  std::function<BaseWidget*(WidgetId id, QObject* arg)> make;

  void SendEvent(Send_Event event, int value, QString text, int* out = nullptr) override {
    NoteCommand(event, value, text);
    if (out) *out = intAnswer;
  }
  void SendEvent(Send_Event event, int value, QString text, float* out) override {
    NoteCommand(event, value, text);
    if (out) *out = floatAnswer;
  }

  void LcdOn() override {
    Note(QStringLiteral("lcd on"));
    isLcdOff = false;
  }
  void LcdOff() override {
    Note(QStringLiteral("lcd off"));
    isLcdOff = true;
  }
  void SetLcdBright(int level) override { Note(QStringLiteral("bright %1").arg(level)); }
  bool GetIsLcdOff() const override { return isLcdOff; }
  void SetIsLcdOff(bool off) override { isLcdOff = off; }

  void SetGlobalEntryPreviewTimer() override { Note(QStringLiteral("idle timer")); }
  void StopGlobalEntryPreviewTimer() override { Note(QStringLiteral("no idle timer")); }
  void SetParkingModeLcdOffTimer() override { Note(QStringLiteral("parking timer")); }
  void StopParkingModeLcdOffTimer() override { Note(QStringLiteral("no parking timer")); }

  void SetIsPlayingVoice(bool playing) override { gIsPlayingVoice = playing; }
  FormatQuestion& GetFormatQuestion() override { return mFormatQuestion; }
  qint64 GetEventTime() const override { return eventTime; }
  bool GetIsIngParkingModeOn() const override { return isParking; }
  bool GetIsLowVolCount() const override { return isLowVolCount; }
  int GetCountOfLowVolPowerOff() const override { return countOfLowVolPowerOff; }
  bool GetIsCurrentShowTouchMotion() const override { return isShowTouchMotion; }
  void SetIsCurrentShowTouchMotion(bool shown) override { isShowTouchMotion = shown; }
  bool GetIsTouchMotionVer() const override { return isTouchMotionVer; }
  void SetIsTouchMotionVer(bool test) override { isTouchMotionVer = test; }
  bool GetIsDetectRecording() const override { return isDetectRecording; }
  void SetIsDetectRecording(bool recording) override { isDetectRecording = recording; }
  int GetNeedTouchComBeforeSDFormat() const override { return needTouchComp; }
  void SetNeedTouchComBeforeSDFormat(int state) override { needTouchComp = state; }
  bool GetTouchReleaseFlag() const override { return isTouchReleased; }
  RecordingFileManager* GetRecordingFileManager() const override { return catalogue.get(); }
  void SetRecordingFileManager(std::unique_ptr<RecordingFileManager> manager) override {
    catalogue = std::move(manager);
  }

  void StartWidget(WidgetId id, QObject* arg) override {
    Note(QStringLiteral("next %1").arg(QLatin1String(NameOf(id))));
    nextArg = arg;
    if (BaseWidget* screen = make ? make(id, arg) : nullptr) Show(id, screen);
  }
  void BackPressed() override {
    Note(QStringLiteral("back"));
    takeCentralWidget();
    gWidgetManager.PrevWidget();
    Install();
  }
  void Jumped(WidgetId id) override {
    Note(QStringLiteral("jump %1").arg(QLatin1String(NameOf(id))));
    takeCentralWidget();
    gWidgetManager.JumpWidget(id);
    Install();
  }

private:
  FormatQuestion mFormatQuestion{this};

  static void Note(const QString& line) {
    PlatformFake& fake = PlatformFake::Get();
    fake.asked << line;
    if (fake.meanwhile) fake.meanwhile(line);
  }
  static void NoteCommand(Send_Event event, int value, const QString& text) {
    Note(QStringLiteral("%1 %2 %3").arg(QLatin1String(NameOf(event))).arg(value).arg(text).trimmed());
  }
  void Install() {
    BaseWidget* screen = gWidgetManager.GetCurrentWidget();
    if (!screen) return;
    setCentralWidget(screen);
    screen->setGeometry(rect());
    screen->show();
  }
};
