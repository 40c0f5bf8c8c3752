#include "gui/app/mainwindow.h"

#include <QCloseEvent>
#include <QFile>
#include <QPalette>
#include <QTimer>
#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>

#include "gui/app/screenfactory.h"
#include "gui/base/atomicfile.h"
#include "gui/base/devicepath.h"
#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/base/shell.h"
#include "gui/firmware/msgthread.h"
#include "gui/led/ledfilemanager.h"
#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/areareport.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/clock.h"
#include "gui/screen/diagnostics.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/touch/touchthread.h"

namespace {
constexpr int kVoiceMs = 10000;  // a voice prompt whose end is never reported
constexpr int kParkingLcdOffMs = 8000;
constexpr int kIdleReturnMs = 600000;
constexpr int kLowVolSeconds = 31;
constexpr int kHwErrorSdCard = 8;  // shown by the preview alone

constexpr std::array kBacklight = {10000, 50000, 100000};  // PWM by lcd_bright 0..2
constexpr int kBrightAutomatic = 3;
constexpr qsizetype kLargestPicture = qsizetype{16} * 1024 * 1024;  // bytes; one of the LCD's size has 460,000
constexpr int kNoAnswer = std::numeric_limits<int>::min();

bool IsCurrent(std::initializer_list<WidgetId> ids) {
  return std::find(ids.begin(), ids.end(), gWidgetManager.GetCurWidgetId()) != ids.end();
}

// The screens on which parking never switches the LCD off.
bool KeepsLcdOn() {
  return IsCurrent({RECORDINGLIST, PLAYER, SDFORMAT, TOUCHTEST, TOUCHCOMP});
}
}  // namespace

// What the window does for a status event before the screen gets it: `apply`, then the notice.
struct MainWindow::EventRule {
  RECV_ZEL_STATUS_EVENT event;
  std::optional<MessageBox_Id> notice = {};  // for 2 s
  void (MainWindow::*apply)(int value) = nullptr;
};
const MainWindow::EventRule MainWindow::kEventRules[] = {
    {RECV_ZEL_STATUS_SYS_RESTART, R_SYS_RESTART},
    {RECV_ZEL_STATUS_NEED_REARCAM, R_NEED_REARCAM},
    {RECV_ZEL_STATUS_LCD_OFF, R_LCD_OFF},
    {RECV_ZEL_STATUS_SYS_EXIT, R_SYS_EXIT},
    {RECV_ZEL_STATUS_NO_SD, R_NO_SD},
    {RECV_ZEL_STATUS_SD_FORMAT_INF, R_SD_FORMAT_INF},
    {RECV_ZEL_STATUS_HW_ERROR, {}, &MainWindow::ShowHardwareError},
    {RECV_ZEL_STATUS_REARCAM_ERROR, R_REARCAM_ERROR},
    {RECV_ZEL_STATUS_RTC_ERROR, R_RTC_ERROR},
    {RECV_ZEL_STATUS_GPS_CONNECT, {}, &MainWindow::TakeGps},
    {RECV_ZEL_STATUS_MUTE_ON, R_MUTE_ON},
    {RECV_ZEL_STATUS_MUTE_OFF, R_MUTE_OFF},
    {RECV_ZEL_STATUS_PARK_MODE_IN, {}, &MainWindow::EnterParkingMode},
    {RECV_ZEL_STATUS_PARK_MODE_OUT, {}, &MainWindow::LeaveParkingMode},
    {RECV_ZEL_STATUS_UNDER_VOLTAGE, R_UNDER_VOLTAGE},
    {RECV_ZEL_STATUS_NORMAL_VOLTAGE, R_NORMAL_VOLTAGE},
    {RECV_ZEL_STATUS_OVER_TEMP, R_OVER_TEMP},
    {RECV_ZEL_STATUS_NORMAL_TEMP, R_NORMAL_TEMP},
    {RECV_ZEL_STATUS_ACC_VOICE, R_ACC_VOICE},
    {RECV_ZEL_STATUS_POWER_OFF, R_POWER_OFF},
    {RECV_ZEL_STATUS_REARCAM_CONNECT, R_REARCAM_CONNECT, &MainWindow::TakeRearCamera},
    {RECV_ZEL_STATUS_LCD_KEY, {}, &MainWindow::TakeLcdKey},
    {RECV_ZEL_STATUS_CAM_CNT, {}, &MainWindow::TakeCountOfCamera},
    {RECV_ZEL_STATUS_FRONTLED_ERROR, R_FRONTLED_ERROR, &MainWindow::LoseFrontLed},
    {RECV_ZEL_STATUS_REARCAM_DISCONNECT, R_REARCAM_DISCONNECT, &MainWindow::LoseRearCamera},
    {RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, {}, &MainWindow::SetLowVolCount},
    {RECV_ZEL_STATUS_ACC_SUPPORT, {}, &MainWindow::TakeAccSupport},
};

MainWindow::MainWindow(QWidget* parent) : ScreenHost(parent) {
  resize(gLcd.Width, gLcd.Height);
  gMainWindow = this;
  IsCalibration();
  InitTimer();
  InitMsgQ();
  InitTouch();
  gLedFileManager.ReadLedFile();
  SetLcdBright(gEnvirnmentSettings.mSetting.lcd_bright);
  InitSetCustomImageFile();
  setWindowFlags(Qt::FramelessWindowHint);
  RunShell(QStringLiteral("echo 1 > %1").arg(ShellPath(device::kDropCaches)));
  AreaReport::Begin(this);
  StartWidget(PREVIEW, nullptr);
}

MainWindow::~MainWindow() {
  takeCentralWidget();
  gWidgetManager.ResetStackedWidgetList();
  mMsgThread->End();
  mTouchThread->End();
  gMainWindow = nullptr;
}

void MainWindow::InitTimer() {
  const struct {
    QTimer** timer;
    const char* name;
    void (MainWindow::*slot)();
  } timers[] = {
      {&mTimLcdAutoMode, "mTimLcdAutoMode", &MainWindow::TimeoutLcdAutoMode},
      {&mTimParkingModeLcdOff, "mTimParkingModeLcdOff", &MainWindow::TimeoutParkingModeLcdOff},
      {&mTimEventTimer, "mTimEventTimer", &MainWindow::TimeoutEventTimer},
      {&mTimIdleReturn, "mTimIdleReturn", &MainWindow::TimeoutIdleReturn},
      {&mTimSystemRecStart, "mTimSystemRecStart", &MainWindow::TimeoutSystemRecStart},
      {&mTimLowVolPowerOffCount, "mTimLowVolPowerOffCount", &MainWindow::TimeoutLowVolPowerOffCount},
      {&mTimPlayingVoice, "mTimPlayingVoice", &MainWindow::TimeoutPlayingVoice},
  };
  for (const auto& row : timers)
    *row.timer = BaseWidget::NewTimer(this, row.name, [this, slot = row.slot] { (this->*slot)(); });
}

void MainWindow::InitMsgQ() {
  mMsgThread = new MsgThread(this);
  connect(mMsgThread, &MsgThread::msgEvent, this, &MainWindow::recvEvent);
}

void MainWindow::InitTouch() {
  mTouchThread = new TouchThread(this);
  connect(mTouchThread, &TouchThread::pressEvent, this, &MainWindow::touchEvent);
  connect(mTouchThread, &TouchThread::autoEvent, this, &MainWindow::touchEvent);
  connect(mTouchThread, &TouchThread::releaseEvent, this, &MainWindow::touchEvent);
}

bool MainWindow::IsCalibration() {
  return !QFile(DevicePath(device::kPointerCalibration)).open(QIODevice::ReadOnly);
}

void MainWindow::InitSetCustomImageFile() {
  const QString copy = DevicePath(device::kCustomPicture);
  QByteArray picture;
  const FileRead read = ReadFile(DevicePath(device::kCustomPictureOnCard), kLargestPicture + 1, &picture);
  if (read == FileRead::Missing) return;
  if (read == FileRead::Whole && picture.size() <= kLargestPicture && !QFile::exists(copy))
    WriteAtomically(copy, picture);
  SyncFiles();
}

void MainWindow::InitSend2FirmMotionSettingValue() {
  if (QFile::exists(DevicePath(device::kTestModeMarker))) return;
  SendEvent(SEND_MOTION_SETTING_FRONT, 0, QString());
  SendEvent(SEND_MOTION_SETTING_REAR, 0, QString());
}

void MainWindow::SendEvent(Send_Event event, int value, QString text, int* out) {
  if (event == SEND_VIDEO_REC_STOP || event == SEND_SET_SYSTEM_SD_FORMAT) mIsRecordingStopped = true;
  if (event == SEND_VIDEO_REC_START) mIsRecordingStopped = false;
  mMsgThread->sendEvent(event, value, text, out, nullptr);
}

void MainWindow::SendEvent(Send_Event event, int value, QString text, float* out) {
  mMsgThread->sendEvent(event, value, text, nullptr, out);
}

void MainWindow::SetRecordingFileManager(std::unique_ptr<RecordingFileManager> manager) {
  mRecFileManager = std::move(manager);
}

bool MainWindow::GetTouchReleaseFlag() const {
  return mTouchThread->GetIsRelease();
}

// ---- the screen stack

void MainWindow::StartWidget(WidgetId id, QObject* arg) {
  if (id == TOUCHCOMP || id == TOUCHTEST) {  // what is to be touched there must be seen
    LcdOn();
    StopParkingModeLcdOffTimer();
  }
  BaseWidget* screen = MakeScreen(id, this, arg);
  if (!screen) return;
  BaseWidget* covered = gWidgetManager.GetCurrentWidget();
  gWidgetManager.NextWidget({id, screen});
  TakeScreen();
  if (covered) covered->onTopChanged();
  Install();
}

void MainWindow::BackPressed() {
  TakeScreen();
  gWidgetManager.PrevWidget();
  Install();
}

void MainWindow::Jumped(WidgetId id) {
  TakeScreen();
  gWidgetManager.JumpWidget(id);
  Install();
}

// Takes the screen that is shown out of the window, else Qt would delete it with the next one. It is hidden expressly:
// setCentralWidget shows by way of the event loop, and a screen without a parent would come up as a window of its own.
void MainWindow::TakeScreen() {
  if (QWidget* screen = takeCentralWidget()) screen->hide();
}

// Shows the top of the stack. A camera without a screen would be dead: then there is the preview again.
void MainWindow::Install() {
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (!screen) {
    StartWidget(PREVIEW, nullptr);
    return;
  }
  screen->setParent(this);
  setCentralWidget(screen);
  ApplyBackground();
  screen->setVisible(!mIsLcdOff);
  TellTopHasChanged();
  ReportTop();
  if (IsCurrent({PREVIEW})) ResumeRecording();
}

void MainWindow::TellTopHasChanged() {
  TopHasChanged();
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->onTopChanged();
}

// Whichever way leads back to the live picture: a camera that shows it records.
void MainWindow::ResumeRecording() {
  if (mIsRecordingStopped) SendEvent(SEND_VIDEO_REC_START, 0, QString());
}

// ---- status events

namespace {
// What the pictures of the screens tell of the camera.
struct SharedFlags {
  bool isParking;
  int gps = gIsConnectGps;
  int cameras = gCountOfCamera;
  int display = gEnvirnmentSettings.mSetting.display;
  int frontLed = gInitFrontLed;
  bool acc = gIsAccVer;
  bool operator==(const SharedFlags&) const = default;
};
}  // namespace

void MainWindow::recvEvent(int event, int value, qint64 received) {
  if (!gEventGate.Enter(this, [this, event, value, received] { recvEvent(event, value, received); })) return;
  mEventTime = received;
  if (event == RECV_ZEL_STATUS_VOICE_PLAY_END && TakeVoicePlayEnd()) return;
  const SharedFlags before{mIsIngParkingModeOn};
  for (const EventRule& rule : kEventRules) {
    if (rule.event != event) continue;
    if (rule.apply) (this->*rule.apply)(value);
    if (rule.notice) SetRecvMessageBox(*rule.notice, value, kNoticeMs);
  }
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->recvEvent(event, value);
  if (SharedFlags{mIsIngParkingModeOn} == before) return;
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->update();
}

// True when the event ends here: recording restarts, and the screen that waited for it has gone.
bool MainWindow::TakeVoicePlayEnd() {
  SetIsPlayingVoice(false);
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (screen && screen->GetRestartRecStartFlag()) {
    screen->TimeoutRestartRecStart();
    return true;
  }
  mFormatQuestion.Start();
  return false;
}

void MainWindow::SetIsPlayingVoice(bool playing) {
  gIsPlayingVoice = playing;
  if (playing)
    BaseWidget::SetTimer(mTimPlayingVoice, kVoiceMs);
  else
    mTimPlayingVoice->stop();
}

void MainWindow::TimeoutPlayingVoice() {
  SetIsPlayingVoice(false);
}

void MainWindow::ShowHardwareError(int value) {
  if (value != kHwErrorSdCard) SetRecvMessageBox(R_HW_ERROR, value, 0);
}

void MainWindow::TakeGps(int value) {
  gIsConnectGps = value;
}

void MainWindow::EnterParkingMode(int value) {
  if (mIsIngParkingModeOn) return;
  mIsIngParkingModeOn = true;
  if (gEnvirnmentSettings.mSetting.parking_mode_on != 0) SetRecvMessageBox(R_PARK_MODE_IN, value, kNoticeMs);
  SetEvent(RECV_ZEL_STATUS_PARK_MODE_IN, kNoticeMs);
}

void MainWindow::LeaveParkingMode(int value) {
  if (!mIsIngParkingModeOn) return;
  mIsIngParkingModeOn = false;
  if (gEnvirnmentSettings.mSetting.parking_mode_on != 0) SetRecvMessageBox(R_PARK_MODE_OUT, value, kNoticeMs);
  SetEvent(RECV_ZEL_STATUS_PARK_MODE_OUT, kNoticeMs);
}

void MainWindow::TakeRearCamera(int) {
  gCountOfCamera = 2;
}

void MainWindow::LoseRearCamera(int) {
  gCountOfCamera = 1;
  SetEvent(RECV_ZEL_STATUS_REARCAM_DISCONNECT, kNoticeMs);
}

void MainWindow::LoseFrontLed(int) {
  gInitFrontLed = 0;
}

void MainWindow::TakeAccSupport(int value) {
  gIsAccVer = value != 0;
}

void MainWindow::TakeCountOfCamera(int value) {
  gCountOfCamera = value;
  if (value != 1 || gEnvirnmentSettings.mSetting.display == 1) return;
  gEnvirnmentSettings.mSetting.display = 1;
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Display, 1);
}

void MainWindow::SetRecvMessageBox(int messageId, int value, int timeoutMs) {
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (!screen) return;
  if (IsCurrent({SCREENSAVER}))
    screen->Back();
  else if (mIsLcdOff)
    LcdOn();
  screen = gWidgetManager.GetCurrentWidget();
  if (screen && IsCurrent({PFILEGRAPH})) screen->Back();

  if (IsCurrent({PREVIEW})) {
    emit previewEnable(true);
    gEventGate.ProcessEvents();
  }
  screen = gWidgetManager.GetCurrentWidget();
  if (!screen) return;
  // The preview shows the end of parking itself: as the parking report, or as this box when there is none.
  if (!(IsCurrent({PREVIEW}) && messageId == R_PARK_MODE_OUT)) {
    screen->PaintMessageBox(messageId, true, value, timeoutMs);
    gEventGate.ProcessEvents();
  }
  RestartParkingModeLcdOff();
}

// ---- touches

void MainWindow::touchEvent(int type, int x, int y, qint64 seen) {
  if (!gEventGate.Enter(this, [this, type, x, y, seen] { touchEvent(type, x, y, seen); })) return;
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (!screen || gIsPlayingVoice || mIsDetectRecording || !IsMeantForTop(seen)) return;
  if (!KeepsLcdOn()) SetParkingModeLcdOffTimer();
  if (!IsCurrent({PREVIEW, SCREENSAVER, PFILEGRAPH})) SetGlobalEntryPreviewTimer();
  if (mIsLcdOff)
    LcdOn();
  else if (IsCurrent({SCREENSAVER}))
    screen->Back();
  else
    screen->Touch(type, x, y);
}

void MainWindow::PanelEvent(int x, int y, qint64 seen, std::function<void()> toScreen) {
  if (!gEventGate.Enter(this, [this, x, y, seen, toScreen] { PanelEvent(x, y, seen, toScreen); })) return;
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (!screen || !IsMeantForTop(seen)) return;
  if (mIsLcdOff)
    LcdOn();
  else if (!screen->TakenByBox(TOUCH_PRESS, x, y))
    toScreen();
}

// ---- LCD

void MainWindow::TakeLcdKey(int value) {
  if (!mIsTouchMotionVer && !IsCurrent({MOTIONSETTING, TOUCHCOMP}) && !mIsDetectRecording) RecvShortKeyEvent(value);
}

void MainWindow::RecvShortKeyEvent(int) {
  if (!IsCurrent({SDFORMAT})) PlayClickAndWait();
  if (mIsLcdOff)
    LcdOn();
  else
    LcdOff();
}

void MainWindow::SetBacklight(int pwm) {
  mIsBacklightOut = pwm == 0;
  WriteBacklight(pwm);
}

void MainWindow::LcdOff() {
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (screen && IsCurrent({SCREENSAVER})) {
    screen->Back();
    screen = gWidgetManager.GetCurrentWidget();
  }
  if (mIsLcdOff) return;
  SetBacklight(0);
  mIsLcdOff = true;
  ApplyBackground();
  repaint();
  if (screen) screen->setVisible(false);
  TellTopHasChanged();
}

void MainWindow::LcdOn() {
  if (mIsLcdOff) {
    mIsLcdOff = false;
    ApplyBackground();
    repaint();
    SetLcdBright(gEnvirnmentSettings.mSetting.lcd_bright);
    if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->setVisible(true);
    TellTopHasChanged();
  }
  RestartParkingModeLcdOff();
}

void MainWindow::SetLcdBright(int level) {
  if (level == kBrightAutomatic) {
    mStartLcdAutoMode = true;
    TimeoutLcdAutoMode();
    return;
  }
  const bool known = level >= 0 && level < int{kBacklight.size()};
  SetBacklight(kBacklight[known ? level : 1]);
}

void MainWindow::TimeoutLcdAutoMode() {
  mTimLcdAutoMode->stop();
  if (mIsLcdOff || gEnvirnmentSettings.mSetting.lcd_bright != kBrightAutomatic) return;
  int value = kNoAnswer;
  SendEvent(SEND_GET_LCD_AUTO_VALUE, 0, QString(), &value);
  gOldRecvLcdValue = gRecvLcdValue;
  if (value != kNoAnswer) {
    gRecvLcdValue = value;
    mIsLcdValueKnown = true;
  }
  if (mIsLcdValueKnown) {
    if (gRecvLcdValue != gOldRecvLcdValue || mStartLcdAutoMode) SetBacklight(gRecvLcdValue);
    mStartLcdAutoMode = false;
  } else if (mIsBacklightOut) {
    SetBacklight(kBacklight[1]);  // an LCD that was dark: it must be seen before the recorder has told how bright
  }
  BaseWidget::SetTimer(mTimLcdAutoMode, kSecondMs);
}

bool MainWindow::IsParkingLcdOffAllowed() const {
  return mIsIngParkingModeOn && !mIsLowVolCount && !mIsDetectRecording;
}

void MainWindow::SetParkingModeLcdOffTimer() {
  if (IsParkingLcdOffAllowed()) BaseWidget::SetTimer(mTimParkingModeLcdOff, kParkingLcdOffMs);
}

void MainWindow::RestartParkingModeLcdOff() {
  if (!KeepsLcdOn()) SetParkingModeLcdOffTimer();
}

void MainWindow::StopParkingModeLcdOffTimer() {
  mTimParkingModeLcdOff->stop();
}

void MainWindow::TimeoutParkingModeLcdOff() {
  mTimParkingModeLcdOff->stop();
  if (mIsIngParkingModeOn && !KeepsLcdOn()) LcdOff();
}

// ---- delayed follow-ups

void MainWindow::SetEvent(int eventId, int ms) {
  mEventId = eventId;
  BaseWidget::SetTimer(mTimEventTimer, ms);
}

void MainWindow::TimeoutEventTimer() {
  mTimEventTimer->stop();
  const Setting_Config& setting = gEnvirnmentSettings.mSetting;
  switch (std::exchange(mEventId, -1)) {
    case RECV_ZEL_STATUS_PARK_MODE_IN:
      if (!mIsIngParkingModeOn) break;
      if (IsParkingLcdOffAllowed()) TimeoutParkingModeLcdOff();
      if (setting.rear_cam_power == 0 && setting.parking_mode_on != 0) ForceFrontView();
      break;
    case RECV_ZEL_STATUS_PARK_MODE_OUT:
      if (mIsIngParkingModeOn) break;
      mTimParkingModeLcdOff->stop();
      if (mIsLcdOff) LcdOn();
      break;
    case RECV_ZEL_STATUS_REARCAM_DISCONNECT:
      ForceFrontView();
      break;
    default:
      break;
  }
}

// The rear picture has gone: unless the front picture is shown alone already, it is from now on.
void MainWindow::ForceFrontView() {
  if (gEnvirnmentSettings.mSetting.display == 1) return;
  gEnvirnmentSettings.mSetting.display = 1;
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Display, 1);
  SendEvent(SEND_SWITCH_DISPLAY, 1, QString());
  repaint();
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->repaint();
}

void MainWindow::SetGlobalEntryPreviewTimer() {
  BaseWidget::SetTimer(mTimSystemRecStart, kIdleReturnMs);
}

void MainWindow::StopGlobalEntryPreviewTimer() {
  mTimSystemRecStart->stop();
}

void MainWindow::TimeoutSystemRecStart() {
  mTimSystemRecStart->stop();
  FormatQuestion::Forget();
  g_bIsPrevWidgetParkingSetting = false;
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) {
    screen->PaintMessageBox(ENTRY_PREVIEW, false, 0, kNoticeMs);
    gEventGate.ProcessEvents();
  }
  gEnvirnmentSettings.AllGetSettingConfig();
  SendEvent(SEND_SET_ENTRY_PREVIEW, 0, QString());
  if (IsCurrent({RECORDINGLIST, PLAYER})) SendEvent(SEND_VIDEO_REC_START, 0, QString());
  BaseWidget::SetTimer(mTimIdleReturn, kNoticeMs);
}

void MainWindow::TimeoutIdleReturn() {
  mTimIdleReturn->stop();
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->Jump(PREVIEW);
}

// ---- low-voltage countdown

void MainWindow::SetLowVolCount(int on) {
  mCountOfLowVolPowerOff = kLowVolSeconds;
  mIsLowVolCount = on == 1;
  if (mIsLowVolCount) {
    BaseWidget* screen = gWidgetManager.GetCurrentWidget();
    if (screen && IsCurrent({SCREENSAVER}))
      screen->Back();
    else if (mIsLcdOff)
      LcdOn();
    if (mIsIngParkingModeOn) mTimParkingModeLcdOff->stop();
    TimeoutLowVolPowerOffCount();
    return;
  }
  mTimLowVolPowerOffCount->stop();
  if (IsCurrent({PREVIEW})) emit lowvolSignals(0);
  SetParkingModeLcdOffTimer();
}

void MainWindow::TimeoutLowVolPowerOffCount() {
  mTimLowVolPowerOffCount->stop();
  if (--mCountOfLowVolPowerOff < 1) {
    SetLowVolCount(0);
    return;
  }
  if (IsCurrent({PREVIEW})) emit lowvolSignals(1);
  BaseWidget::SetTimer(mTimLowVolPowerOffCount, kSecondMs);
}

// ---- painting

// Black while the LCD is off; the colour that video shows through behind the preview; else whatever it was, because
// every other screen paints its whole page.
void MainWindow::ApplyBackground() {
  if (!mIsLcdOff && !IsCurrent({PREVIEW, UNKNOWN})) return;
  const QColor colour = mIsLcdOff ? QColor(Qt::black) : QColor(gColor.Trans.r, gColor.Trans.g, gColor.Trans.b);
  QPalette ground = palette();
  ground.setBrush(QPalette::All, backgroundRole(), colour);
  setPalette(ground);
  setAutoFillBackground(true);
}

void MainWindow::paintEvent(QPaintEvent*) {
  ApplyBackground();
}

bool MainWindow::event(QEvent* event) {
  return QMainWindow::event(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
}  // the camera has no desktop to go back to
