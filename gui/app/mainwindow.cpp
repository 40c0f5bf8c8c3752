#include "gui/app/mainwindow.h"

#include <QCloseEvent>
#include <QFile>
#include <QPalette>
#include <QTimer>
#include <algorithm>
#include <array>
#include <utility>

#include "gui/app/screenfactory.h"
#include "gui/base/devicepath.h"
#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/base/shell.h"
#include "gui/firmware/msgthread.h"
#include "gui/led/ledfilemanager.h"
#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/diagnostics.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "gui/touch/touchthread.h"

namespace {
constexpr int kNoticeMs = 2000;
constexpr int kVoiceMs = 10000;  // every wait for the end of a voice prompt gives up after this
constexpr int kSecondMs = 1000;
constexpr int kParkingLcdOffMs = 8000;
constexpr int kIdleReturnMs = 600000;
constexpr int kLowVolSeconds = 31;
constexpr int kStop = 3;  // SEND_VIDEO_REC_STOP: the card is about to be formatted

constexpr std::array kBacklight = {10000, 50000, 100000};  // PWM by lcd_bright 0..2
constexpr int kBrightAutomatic = 3;

// What the window shows for a status event, before the screen gets it.
struct Notice {
  RECV_ZEL_STATUS_EVENT event;
  MessageBox_Id message;
  int timeoutMs;
};
constexpr Notice kNotices[] = {
    {RECV_ZEL_STATUS_SYS_RESTART, R_SYS_RESTART, kNoticeMs},
    {RECV_ZEL_STATUS_NEED_REARCAM, R_NEED_REARCAM, kNoticeMs},
    {RECV_ZEL_STATUS_LCD_OFF, R_LCD_OFF, kNoticeMs},
    {RECV_ZEL_STATUS_SYS_EXIT, R_SYS_EXIT, kNoticeMs},
    {RECV_ZEL_STATUS_NO_SD, R_NO_SD, kNoticeMs},
    {RECV_ZEL_STATUS_SD_FORMAT_INF, R_SD_FORMAT_INF, kNoticeMs},
    {RECV_ZEL_STATUS_HW_ERROR, R_HW_ERROR, 0},
    {RECV_ZEL_STATUS_REARCAM_ERROR, R_REARCAM_ERROR, kNoticeMs},
    {RECV_ZEL_STATUS_RTC_ERROR, R_RTC_ERROR, kNoticeMs},
    {RECV_ZEL_STATUS_MUTE_ON, R_MUTE_ON, kNoticeMs},
    {RECV_ZEL_STATUS_MUTE_OFF, R_MUTE_OFF, kNoticeMs},
    {RECV_ZEL_STATUS_UNDER_VOLTAGE, R_UNDER_VOLTAGE, kNoticeMs},
    {RECV_ZEL_STATUS_NORMAL_VOLTAGE, R_NORMAL_VOLTAGE, kNoticeMs},
    {RECV_ZEL_STATUS_OVER_TEMP, R_OVER_TEMP, kNoticeMs},
    {RECV_ZEL_STATUS_NORMAL_TEMP, R_NORMAL_TEMP, kNoticeMs},
    {RECV_ZEL_STATUS_ACC_VOICE, R_ACC_VOICE, kNoticeMs},
    {RECV_ZEL_STATUS_POWER_OFF, R_POWER_OFF, kNoticeMs},
    {RECV_ZEL_STATUS_REARCAM_CONNECT, R_REARCAM_CONNECT, kNoticeMs},
    {RECV_ZEL_STATUS_FRONTLED_ERROR, R_FRONTLED_ERROR, kNoticeMs},
    {RECV_ZEL_STATUS_REARCAM_DISCONNECT, R_REARCAM_DISCONNECT, kNoticeMs},
};
constexpr int kHwErrorSdCard = 8;  // shown by the preview alone

bool IsCurrent(std::initializer_list<WidgetId> ids) {
  return std::find(ids.begin(), ids.end(), gWidgetManager.GetCurWidgetId()) != ids.end();
}

// The screens on which parking never switches the LCD off.
bool KeepsLcdOn() {
  return IsCurrent({RECORDINGLIST, PLAYER, SDFORMAT, TOUCHTEST, TOUCHCOMP});
}
}  // namespace

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
      {&mTimSystemRecStart, "mTimSystemRecStart", &MainWindow::TimeoutSystemRecStart},
      {&mTimLowVolPowerOffCount, "mTimLowVolPowerOffCount", &MainWindow::TimeoutLowVolPowerOffCount},
  };
  for (const auto& row : timers) {
    auto* timer = *row.timer = new QTimer(this);
    timer->setObjectName(QLatin1String(row.name));
    connect(timer, &QTimer::timeout, this, [this, timer, slot = row.slot] {
      if (gEventGate.Enter(timer)) (this->*slot)();
    });
  }
  mTimPlayingVoice = new QTimer(this);
  mTimPlayingVoice->setObjectName(QStringLiteral("mTimPlayingVoice"));
  mTimPlayingVoice->setSingleShot(true);
  connect(mTimPlayingVoice, &QTimer::timeout, this, [] { gIsPlayingVoice = false; });
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
  const QString onCard = DevicePath(device::kCustomPictureOnCard);
  if (!QFile::exists(onCard)) return;
  QFile::copy(onCard, DevicePath(device::kCustomPicture));
  SyncFiles();
}

void MainWindow::InitSend2FirmMotionSettingValue() {
  if (QFile::exists(DevicePath(device::kTestModeMarker))) return;
  SendEvent(SEND_MOTION_SETTING_FRONT, 0, QString());
  SendEvent(SEND_MOTION_SETTING_REAR, 0, QString());
}

void MainWindow::SendEvent(Send_Event event, int value, QString text, int* out) {
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

// ---------------------------------------------------------------------------------------------------- the screen stack

void MainWindow::StartWidget(WidgetId id, QObject* arg) {
  BaseWidget* screen = MakeScreen(id, this, arg);
  if (!screen) return;
  TakeScreen();
  gWidgetManager.NextWidget({id, screen});
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
  ReportTop();
}

// ------------------------------------------------------------------------------------------------------- status events

void MainWindow::recvEvent(int event, int value) {
  if (!gEventGate.Enter(EventGate::Kind::Event, this, [this, event, value] { recvEvent(event, value); })) return;
  if (event == RECV_ZEL_STATUS_VOICE_PLAY_END && TakeVoicePlayEnd()) return;
  HandleEvent(event, value);
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->recvEvent(event, value);
}

void MainWindow::HandleEvent(int event, int value) {
  switch (event) {
    case RECV_ZEL_STATUS_GPS_CONNECT:
      gIsConnectGps = value;
      break;
    case RECV_ZEL_STATUS_PARK_MODE_IN:
      EnterParkingMode(value);
      break;
    case RECV_ZEL_STATUS_PARK_MODE_OUT:
      LeaveParkingMode(value);
      break;
    case RECV_ZEL_STATUS_REARCAM_CONNECT:
      gCountOfCamera = 2;
      break;
    case RECV_ZEL_STATUS_LCD_KEY:
      if (!mIsTouchMotionVer && !IsCurrent({MOTIONSETTING, TOUCHCOMP}) && !mIsDetectRecording) RecvShortKeyEvent(value);
      break;
    case RECV_ZEL_STATUS_CAM_CNT:
      TakeCountOfCamera(value);
      break;
    case RECV_ZEL_STATUS_FRONTLED_ERROR:
      gInitFrontLed = 0;
      break;
    case RECV_ZEL_STATUS_REARCAM_DISCONNECT:
      gCountOfCamera = 1;
      break;
    case RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT:
      SetLowVolCount(value);
      break;
    case RECV_ZEL_STATUS_ACC_SUPPORT:
      gIsAccVer = value != 0;
      break;
    default:
      break;
  }
  for (const Notice& notice : kNotices)
    if (notice.event == event && !(event == RECV_ZEL_STATUS_HW_ERROR && value == kHwErrorSdCard))
      SetRecvMessageBox(notice.message, value, notice.timeoutMs);
  if (event == RECV_ZEL_STATUS_REARCAM_DISCONNECT) SetEvent(event, kNoticeMs);
}

// True when the event ends here: recording restarts, and the screen that waited for it has gone.
bool MainWindow::TakeVoicePlayEnd() {
  gIsPlayingVoice = false;
  mTimPlayingVoice->stop();
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (screen && screen->GetRestartRecStartFlag()) {
    screen->TimeoutRestartRecStart();
    return true;
  }
  if (mStartSDFormat) StartFormat();
  return false;
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

void MainWindow::TakeCountOfCamera(int value) {
  gCountOfCamera = value;
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->update();  // its keys tell
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

// ------------------------------------------------------------------------------------------------------------- touches

void MainWindow::touchEvent(int type, int x, int y) {
  if (!gEventGate.Enter(EventGate::Kind::Touch, this, [this, type, x, y] { touchEvent(type, x, y); })) return;
  if (gIsPlayingVoice && !mTimPlayingVoice->isActive()) mTimPlayingVoice->start(kVoiceMs);
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (!screen || gIsPlayingVoice || mIsDetectRecording) return;
  if (!KeepsLcdOn()) SetParkingModeLcdOffTimer();
  if (!IsCurrent({PREVIEW, SCREENSAVER, PFILEGRAPH})) SetGlobalEntryPreviewTimer();
  if (mIsLcdOff) {
    LcdOn();
    return;
  }
  if (IsCurrent({SCREENSAVER})) {
    screen->Back();
    return;
  }
  if (AnswerFormatQuestion(screen, x, y) || screen->CloseStandingRecvBox()) return;
  screen->touchEvent(type, x, y);
}

// The question for an SD format after a change of resolution or frame rate. True when the touch was for it.
bool MainWindow::AnswerFormatQuestion(BaseWidget* screen, int x, int y) {
  if (mStartSDFormat) return true;  // answered; the format starts when the voice prompt ends
  if (gNeedFormatFlag == 0 || !screen->GetShowMessageBoxFlag()) return false;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::Left) {
    screen->DelMessageBox();
    mStartSDFormat = true;
    screen->PaintMessageBox(VIDEO_REC_STOP, false, 0, 0);
    gEventGate.ProcessEvents();
    SetEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, kVoiceMs);
    SendEvent(SEND_VIDEO_REC_STOP, kStop, QString());
  } else if (button == MessageBox::Button::Right) {
    gNeedFormatFlag = 0;
    screen->DelMessageBox();
  }
  return true;
}

void MainWindow::StartFormat() {
  mTimParkingModeLcdOff->stop();
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (screen) screen->DelMessageBox();
  mStartSDFormat = false;
  SendEvent(SEND_SET_SYSTEM_SD_FORMAT, gNeedFormatFlag, QString());
  gNeedFormatFlag = 0;
  if (screen) screen->Next(SDFORMAT);
}

// ----------------------------------------------------------------------------------------------------------------- LCD

void MainWindow::RecvShortKeyEvent(int) {
  if (!IsCurrent({SDFORMAT})) gEventGate.Block([] { PlayClickAndWait(); });
  if (mIsLcdOff)
    LcdOn();
  else
    LcdOff();
}

void MainWindow::LcdOff() {
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (screen && IsCurrent({SCREENSAVER})) {
    screen->Back();
    screen = gWidgetManager.GetCurrentWidget();
  }
  if (mIsLcdOff) return;
  WriteBacklight(0);
  mIsLcdOff = true;
  ApplyBackground();
  repaint();
  if (screen) screen->setVisible(false);
}

void MainWindow::LcdOn() {
  if (mIsLcdOff) {
    mIsLcdOff = false;
    ApplyBackground();
    repaint();
    SetLcdBright(gEnvirnmentSettings.mSetting.lcd_bright);
    if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->setVisible(true);
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
  WriteBacklight(kBacklight[known ? level : 1]);
}

void MainWindow::TimeoutLcdAutoMode() {
  mTimLcdAutoMode->stop();
  if (mIsLcdOff || gEnvirnmentSettings.mSetting.lcd_bright != kBrightAutomatic) return;
  gOldRecvLcdValue = gRecvLcdValue;
  SendEvent(SEND_GET_LCD_AUTO_VALUE, 0, QString(), &gRecvLcdValue);
  if (gRecvLcdValue != gOldRecvLcdValue || mStartLcdAutoMode) WriteBacklight(gRecvLcdValue);
  mStartLcdAutoMode = false;
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

// ---------------------------------------------------------------------------------------------------- delayed
// follow-ups

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
    case ENTRY_PREVIEW:
      if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->Jump(PREVIEW);
      break;
    case RECV_ZEL_STATUS_VOICE_PLAY_END:
      if (mStartSDFormat) StartFormat();
      break;
    default:
      break;
  }
  // Another follow-up took the place of the one for the format: until that begins no touch counts.
  if (mStartSDFormat) SetEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, kVoiceMs);
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
  gNeedFormatFlag = 0;
  g_bIsPrevWidgetParkingSetting = false;
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) {
    screen->PaintMessageBox(ENTRY_PREVIEW, false, 0, kNoticeMs);
    gEventGate.ProcessEvents();
  }
  gEnvirnmentSettings.AllGetSettingConfig();
  SendEvent(SEND_SET_ENTRY_PREVIEW, 0, QString());
  if (IsCurrent({RECORDINGLIST, PLAYER})) SendEvent(SEND_VIDEO_REC_START, 0, QString());
  SetEvent(ENTRY_PREVIEW, kNoticeMs);
}

// ------------------------------------------------------------------------------------------------ low-voltage
// countdown

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

// -------------------------------------------------------------------------------------------------------------
// painting

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
