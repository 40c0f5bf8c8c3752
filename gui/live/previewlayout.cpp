#include "gui/live/previewlayout.h"

#include <QFile>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "gui/base/devicepath.h"
#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/base/language.h"
#include "gui/base/shell.h"
#include "gui/parking/pfileinfo.h"
#include "gui/screen/clock.h"
#include "gui/screen/label.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/page.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/settings.h"

SCREEN(PREVIEW, PreviewLayout)

namespace {
constexpr int kOverlayMs = 5000;
constexpr int kHiddenEntryMs = 3000;
constexpr int kHiddenEntryTaps = 3;  // counted before the one that opens: five taps in all
constexpr int kDetectStartMs = 2000;
constexpr int kDetectBlinkMs = 500;
constexpr int kRearCameraDelayMs = 10000;
constexpr int kCheckMs = 2000;
constexpr int kTouchCompMs = 1000;
constexpr int kLcdOffMs[] = {0, 10000, 30000, 60000};  // by lcd_auto_off; any other value: never
constexpr float kVoltageStep = 0.05F;                  // volts; a smaller move is not shown

// The start-up touch test, gTouchTestStage.
enum { kStageNone = 0, kStageCheck = 1, kStageCheckShown = 2, kStageDone = 3, kStageTestOnly = 100 };

constexpr QSize kKeySize(71, 60);
constexpr QPoint kViewKey(4, 3), kMicKey(79, 3), kRearKey(154, 3), kMenuKey(229, 3), kLowerLeft(4, 66),
    kLowerRight(79, 66);
constexpr QRect kOfView(kViewKey, QPoint(149, 125));  // the keys that another view changes

// The view that is shown: 0 both, 1 front, 2 rear; a stored value that is none of these shows the front.
int View() {
  const int display = gEnvirnmentSettings.mSetting.display;
  return display == 0 || display == 2 ? display : 1;
}

// The LCD goes off so long after the last touch; 0: never.
int LcdOffMs() {
  const int choice = gEnvirnmentSettings.mSetting.lcd_auto_off;
  return choice >= 0 && choice < int(std::size(kLcdOffMs)) ? kLcdOffMs[choice] : 0;
}

int NextOf(int value, int count) {
  return ((value + 1) % count + count) % count;
}

constexpr QColor kBlack(12, 10, 11);  // on the yellow plate

QString ViewPicture() {
  const ViewStatus_Config& view = gPreview.Status.View;
  return View() == 0 ? view.Pip : View() == 2 ? view.Rear : view.Front;
}

QString MovingPipPicture() {
  const MovingPip_Config& pip = gPreview.Status.movingPip;
  const QString pictures[] = {pip.rightBottom, pip.rightTop, pip.leftTop, pip.leftBottom};
  const int corner = gEnvirnmentSettings.mMovingPip;
  return pictures[corner >= 0 && corner < 4 ? corner : 0];
}

QString RearCameraPicture() {
  const RearCamRecording_Config& rear = gPreview.Status.rearCamRecording;
  const bool on = gEnvirnmentSettings.mSetting.rear_cam_power != 0;
  if (gCountOfCamera == 1) return on ? rear.On_dis : rear.Off_dis;
  return on ? rear.On : rear.Off;
}
}  // namespace

// A status text and the plate below it: text over video needs an opaque ground, and the plate is there only while its
// text is.
struct PreviewLayout::PlatedLabel {
  QLabel* PreviewLayout::*label;
  const char* name;
  QRect box;
  int FontSize_Config::*size;
  bool isWarning;  // bold and black on yellow; the others have the configured ink
  QPoint plate;
  QString (*picture)();
};

const PreviewLayout::PlatedLabel PreviewLayout::kLabels[] = {
    {&PreviewLayout::mClockLabel, "mClockLabel", QRect(38, 284, 192, 32), &FontSize_Config::PreviewUser, false,
     QPoint(4, 284), [] { return gPreview.Time.Bg; }},
    {&PreviewLayout::mGpsSpeedLabel, "mGpsSpeedLabel", QRect(270, 284, 84, 32), &FontSize_Config::PreviewUser, false,
     QPoint(238, 284), [] { return gPreview.GpsSpeed.Bg; }},
    {&PreviewLayout::mMainVolLabel, "mMainVolLabel", QRect(394, 284, 78, 32), &FontSize_Config::PreviewUser, false,
     QPoint(362, 284), [] { return gPreview.Voltage.Bg; }},
    {&PreviewLayout::mLowVolCountLabel, "mLowVolCountLabel", QRect(380, 4, 92, 40), &FontSize_Config::PreviewDebug,
     true, QPoint(342, 4), [] { return QStringLiteral("preview/status_lowvol_bg.bmp"); }},
};

struct PreviewLayout::HotKey {
  QRect area;
  const char* name;
  void (PreviewLayout::*press)();
};

const PreviewLayout::HotKey PreviewLayout::kHotKeys[] = {
    {QRect(QPoint(5, 4), QPoint(74, 62)), "view", &PreviewLayout::PressView},
    {QRect(QPoint(80, 4), QPoint(149, 62)), "microphone", &PreviewLayout::PressMicrophone},
    {QRect(QPoint(230, 4), QPoint(299, 62)), "menu", &PreviewLayout::PressMenu},
    {QRect(QPoint(5, 67), QPoint(74, 125)), "lower left", &PreviewLayout::PressLowerLeft},
    {QRect(QPoint(80, 67), QPoint(149, 125)), "lower right", &PreviewLayout::PressLowerRight},
    {QRect(QPoint(155, 4), QPoint(224, 62)), "rear camera", &PreviewLayout::PressRearCamera},
};

PreviewLayout::PreviewLayout(QWidget* parent) : BaseWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);  // nothing needs to be painted below it
  InitTimer();
  InitLabel();
  InitTime();
  PaintTouchTestOrSeachingPfileInfo();
}

PreviewLayout::~PreviewLayout() = default;

void PreviewLayout::InitTimer() {
  mSecTimer = NewTimer("mSecTimer", [this] { SlotSec(); });
  mTimPaintTouchTest = NewTimer("mTimPaintTouchTest", [this] { TimeoutPaintTouchTest(); });
  mTimSeachingPfileInfo = NewTimer("mTimSeachingPfileInfo", [this] { TimeoutSeachingPfilInfo(); });
  mTimNeedTouchComp = NewTimer("mTimNeedTouchComp", [this] { TimeoutNeedTouchComp(); });
  mTimLcdOff = NewTimer("mTimLcdOff", [this] { TimeoutLcdOff(); });
  mTimTouchWait = NewTimer("mTimTouchWait", [this] { TimeoutTouchWait(); });
  mTouchEntryTimer = NewTimer("mTouchEntryTimer", [this] { TimeoutTouchEntry(); });
  mDetectRecordingTimer = NewTimer("mDetectRecordingTimer", [this] { TimeoutDetectRecording(); });
  mPrepareRearcamRecordingTimer =
      NewTimer("mPrepareRearcamRecordingTimer", [this] { TimeoutPrepareRearcamRecording(); });
}

void PreviewLayout::InitLabel() {
  const Color& text = gColor.PreviewText;
  for (const PlatedLabel& row : kLabels)
    this->*row.label =
        AddLabel(this, {row.name, row.box, gFont.Size.*row.size,
                        row.isWarning ? kBlack : QColor(text.r, text.g, text.b), Qt::AlignLeft, row.isWarning});
  for (QLabel* label : {mGpsSpeedLabel, mMainVolLabel, mLowVolCountLabel}) label->hide();
}

// ---- overlay and LCD

// Not while the driver cannot see or answer what the overlay carries: a box that stays until it is answered keeps the
// overlay, and a recording that is made by hand keeps the key that tells it.
bool PreviewLayout::MayDelaysRun() const {
  return IsCurrentScreen() && !gMainWindow->GetIsLcdOff() && !IsStandingBoxShown() && !mIsDetectRecording;
}

// The one place that starts and ends the two delays: whether they run follows from the state. One that runs goes on.
void PreviewLayout::RunDelays() {
  const auto run = [](QTimer* timer, int ms) {
    if (ms == 0)
      StopTimer(timer);
    else if (!timer->isActive())
      SetTimer(timer, ms);
  };
  const bool may = MayDelaysRun();
  run(mTimTouchWait, may && mEnableView ? kOverlayMs : 0);
  run(mTimLcdOff, may ? LcdOffMs() : 0);
}

void PreviewLayout::RestartDelays() {
  StopTimer(mTimTouchWait);
  StopTimer(mTimLcdOff);
  RunDelays();
}

void PreviewLayout::Touched() {
  RestartDelays();
}

void PreviewLayout::onTopChanged() {
  RunDelays();
}

void PreviewLayout::ShowPreview() {
  if (!IsCurrentScreen()) return;  // a covered screen would open a window of its own
  mEnableView = true;
  setVisible(!gMainWindow->GetIsLcdOff());  // a dark LCD stays dark: the countdown goes on behind it
  StopTimer(mTimTouchWait);
  RunDelays();
}

void PreviewLayout::HidePreview() {
  mEnableView = false;
  setVisible(false);
  RunDelays();
}

void PreviewLayout::previewEnabled(bool on) {
  if (on)
    ShowPreview();
  else
    HidePreview();
}

void PreviewLayout::LcdOff() {
  if (gMainWindow->GetIsLcdOff()) return;
  gMainWindow->LcdOff();
}

void PreviewLayout::LcdOn() {
  if (!gMainWindow->GetIsLcdOff()) return;
  gMainWindow->LcdOn();
}

void PreviewLayout::ShowAwake() {
  LcdOn();
  ShowPreview();
}

void PreviewLayout::TimeoutTouchWait() {
  mTimTouchWait->stop();
  if (MayDelaysRun()) HidePreview();
}

void PreviewLayout::TimeoutLcdOff() {
  mTimLcdOff->stop();
  if (!MayDelaysRun() || LcdOffMs() == 0) return;
  if (gEnvirnmentSettings.mSetting.lcd_wait_dis == 0) {
    LcdOff();
    return;
  }
  ShowPreview();
  Next(SCREENSAVER);
}

void PreviewLayout::onResume() {
  GetSystemVoltage();
  SetCurTimeAndVolStr();
  UpdateSpeedLabel();
  SetLowVolPowerOffCountLabel(gMainWindow->GetIsLowVolCount());
  SetTimer(mSecTimer, kSecondMs);
  if (!mIsDetectRecording) ShowPreview();
  RestartDelays();
  gMainWindow->StopGlobalEntryPreviewTimer();
  if ((IsParkedWithParkingMode() && gEnvirnmentSettings.mSetting.rear_cam_power == 0) || gCountOfCamera == 1)
    ForceFrontView();
  ResumeChecks();
}

// What the touch calibration or the touch test, if one was shown, leaves to be done.
void PreviewLayout::ResumeChecks() {
  if (gMainWindow->GetNeedTouchComBeforeSDFormat() == 2) {
    gMainWindow->SetNeedTouchComBeforeSDFormat(0);
    SendEvent(SEND_SET_TOUCH_COM_END, 0, QString());
    // From the event loop: another screen cannot be opened while this one is being shown.
    if (std::exchange(mDispPFileInfo, false)) SetTimer(mTimSeachingPfileInfo, 0);
  } else if (gTouchTestStage == kStageCheck) {
    gTouchTestStage = kStageCheckShown;
  } else if (gTouchTestStage == kStageCheckShown) {
    gTouchTestStage = kStageDone;
    PaintTouchTestOrSeachingPfileInfo();
  }
}

void PreviewLayout::onPause() {
  StopTimer(mSecTimer);
  RunDelays();
}

// ---- checks at the start

void PreviewLayout::PaintTouchTestOrSeachingPfileInfo() {
  const auto exists = [](const char* path) { return QFile::exists(DevicePath(QLatin1String(path))); };
  const bool updated = exists(device::kUpdateMarker);
  const bool updated2 = exists(device::kUpdateMarker2);
  if (exists(device::kTouchCheckMarker) && gTouchTestStage == kStageNone && (updated || updated2)) {
    gEnvirnmentSettings.mTouchValue.Store(kFactoryTouchValue);
    gTouchTestStage = kStageCheck;
    SetTimer(mTimPaintTouchTest, kCheckMs);
  } else if (exists(device::kTouchTestMarker) && gTouchTestStage == kStageNone) {
    gTouchTestStage = kStageTestOnly;
    SetTimer(mTimPaintTouchTest, kCheckMs);
  } else if (updated || updated2) {
    mDispPFileInfo = !updated;
    SetTimer(mTimNeedTouchComp, kTouchCompMs);
  } else if (gSdError) {
    gSdError = false;
    ShowStandingBox(R_SD_ERROR_NEET_FORMAT, 0);
  } else if (gIsSdError) {
    gIsSdError = false;
    ShowStandingBox(R_SD_CARD_EXCHANGE_NEED, 0);
  } else {
    SetTimer(mTimSeachingPfileInfo, kCheckMs);
  }
}

void PreviewLayout::TimeoutPaintTouchTest() {
  mTimPaintTouchTest->stop();
  if (!IsCurrentScreen()) {
    SetTimer(mTimPaintTouchTest, kCheckMs);  // after the screen that the user has opened meanwhile
    return;
  }
  gMainWindow->SetIsCurrentShowTouchMotion(true);
  gMainWindow->SetIsTouchMotionVer(true);
  ShowAwake();
  Next(TOUCHTEST);
}

void PreviewLayout::TimeoutNeedTouchComp() {
  mTimNeedTouchComp->stop();
  if (!IsCurrentScreen()) {
    SetTimer(mTimNeedTouchComp, kTouchCompMs);
    return;
  }
  gMainWindow->SetNeedTouchComBeforeSDFormat(1);
  Next(TOUCHCOMP);
}

void PreviewLayout::TimeoutSeachingPfilInfo() {
  mTimSeachingPfileInfo->stop();
  if (!IsCurrentScreen()) {
    SetTimer(mTimSeachingPfileInfo, kCheckMs);
    return;
  }
  ShowParkingReport();
}

bool PreviewLayout::SetPfileInfo() {
  pFile = std::make_unique<PFileInfo>();
  return pFile->openDataFile(DevicePath(QLatin1String(device::kParkingReport)));
}

// False when there is no report to show.
bool PreviewLayout::ShowParkingReport() {
  if (!SetPfileInfo()) {
    pFile.reset();
    return false;
  }
  ShowAwake();
  Next(PFILEGRAPH, pFile.get());
  return true;
}

// ---- status texts

void PreviewLayout::GetSystemVoltage() {
  SendEvent(SEND_GET_VOLTAGE, 0, QString(), &gRecvVoltage);
}

void PreviewLayout::InitTime() {
  mTimeSet = ReadClock();
  CopyTimeSet();
}

void PreviewLayout::CopyTimeSet() {
  mCurTime = mTimeSet;
}

void PreviewLayout::SetDefaultTime() {
  mCurTime = DefaultTime();
}

void PreviewLayout::GoTime() {
  mTimeSet = ReadClock();
  CopyTimeSet();
}

void PreviewLayout::SetCurTimeAndVolStr() {
  GoTime();
  if (ChkTimeError(mCurTime) != 0) SetDefaultTime();
  mStrTime = QString::asprintf("%04d/%02d/%02d", mCurTime.Year, mCurTime.Month, mCurTime.Day) + QLatin1String("  ") +
             QString::asprintf("%02d:%02d ", mCurTime.Hour, mCurTime.Minute);
  if (mClockLabel->text() != mStrTime) mClockLabel->setText(mStrTime);
  UpdateVoltageLabel();
}

// Nothing until the recorder has told it; afterwards the last value that it told.
void PreviewLayout::UpdateVoltageLabel() {
  ShowLabel(mMainVolLabel, std::isfinite(gRecvVoltage));
  if (!std::isfinite(gRecvVoltage) || std::abs(gRecvVoltage - mShownVoltage) <= kVoltageStep) return;
  mShownVoltage = gRecvVoltage;
  mStrVoltage = QString::asprintf("%3.1fv", double{gRecvVoltage});
  mMainVolLabel->setText(mStrVoltage);
}

void PreviewLayout::SetLowVolPowerOffCountStr() {
  mStrLowVolCount = Text::tr("차단%n", nullptr, gMainWindow->GetCountOfLowVolPowerOff());
  mLowVolCountLabel->setText(mStrLowVolCount);
}

void PreviewLayout::SetLowVolPowerOffCountLabel(bool shown) {
  if (shown) SetLowVolPowerOffCountStr();
  ShowLabel(mLowVolCountLabel, shown);
}

void PreviewLayout::UpdateSpeedLabel() {
  mGpsSpeedLabel->setText(QString::asprintf("%d km/h", mSpeed));
  ShowLabel(mGpsSpeedLabel, gEnvirnmentSettings.mSetting.gps_speed_display != 1 && gIsConnectGps == 2);
}

// The label, and with it the plate below it.
void PreviewLayout::ShowLabel(QLabel* label, bool shown) {
  if (shown != label->isHidden()) return;
  label->setVisible(shown);
  update();
}

void PreviewLayout::SlotSec() {
  mSecTimer->stop();
  GetSystemVoltage();
  SetCurTimeAndVolStr();
  SetTimer(mSecTimer, kSecondMs);
}

void PreviewLayout::lowvolRecv(int on) {
  if (on == 1) ShowPreview();
  SetLowVolPowerOffCountLabel(on == 1);
  RestartDelays();
}

// ---- touches

void PreviewLayout::touchEvent(int, int x, int y) {
  if (mIsDetectRecording) return;
  if (gMainWindow->GetIsLcdOff()) {
    LcdOn();
    return;
  }
  if (!mEnableView) {
    ShowPreview();
    CountingTouchEntryProcess();
    return;
  }
  for (const HotKey& key : kHotKeys) {
    if (!key.area.contains(x, y)) continue;
    (this->*key.press)();
    return;
  }
  PressElsewhere();
}

// A touch beside the keys counts: five of them open the calibration.
QList<TouchArea> PreviewLayout::KeyAreas() const {
  if (mIsDetectRecording) return {};
  QList<TouchArea> areas;
  if (mEnableView)
    for (const HotKey& key : kHotKeys) areas.append({key.area, QLatin1String(key.name)});
  areas.append({rect(), QStringLiteral("beside")});
  return areas;
}

void PreviewLayout::Notice(MessageBox_Id id) {
  PaintMessageBox(id, false, 0, kNoticeMs);
}

bool PreviewLayout::IsParkedWithParkingMode() const {
  return gMainWindow->GetIsIngParkingModeOn() && gEnvirnmentSettings.mSetting.parking_mode_on != 0;
}

void PreviewLayout::SwitchView(int display) {
  gEnvirnmentSettings.mSetting.display = display;
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Display, display);
}

void PreviewLayout::ForceFrontView() {
  if (gEnvirnmentSettings.mSetting.display == 1) return;
  SwitchView(1);
  SendEvent(SEND_SWITCH_DISPLAY, 1, QString());
  repaint();
}

void PreviewLayout::PressView() {
  if (gCountOfCamera == 1) {
    PlayClick();
    Notice(DISCONNECT_REARCAM);
    return;
  }
  if (IsParkedWithParkingMode() && gEnvirnmentSettings.mSetting.rear_cam_power == 0) {
    PlayClick();
    Notice(REAR_CAM_POWER_OFF_MSG);
    return;
  }
  const int next = NextOf(View(), 3);
  gEnvirnmentSettings.mSetting.display = next;
  repaint(kOfView);  // it is seen before the file is written
  SwitchView(next);
  PlayClick();
  SendEvent(SEND_SWITCH_DISPLAY, next, QString());
}

void PreviewLayout::PressMicrophone() {
  PlayClick();
  const int volume = gEnvirnmentSettings.mSetting.volume;
  if (volume != 0) {
    gReturnVolume = volume;
    Notice(VOLUME_OFF);
  } else {
    Notice(VOLUME_ON);
  }
  mReturnVolume = gReturnVolume;
  const int next = volume != 0 ? 0 : mReturnVolume;
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Volume, next);
  repaint();
  SendEvent(SEND_SET_VOLUME, next, QString());
}

void PreviewLayout::PressMenu() {
  gMainWindow->SetGlobalEntryPreviewTimer();
  gEnvirnmentSettings.mSetting.time_set_flag = 0;
  gEnvirnmentSettings.mOldSetting.time_set_flag = 0;
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Time_Set_Flag, 0);
  Next(MAINMENU);
}

void PreviewLayout::PressLowerLeft() {
  if (View() == 1)
    PressDetectFile();
  else if (View() == 2)
    Step(gEnvirnmentSettings.mMirroring, 2, Set_Cfg_Mirroring, SEND_SET_MIRRORING);
  else
    Step(gEnvirnmentSettings.mMovingPip, 4, Set_Cfg_MovingPip, SEND_SET_MOVING_PIP);
}

void PreviewLayout::PressLowerRight() {
  if (View() == 1)
    PressElsewhere();
  else
    PressDetectFile();
}

void PreviewLayout::Step(int& value, int count, Setting_Id setting, Send_Event command) {
  value = NextOf(value, count);
  PlayClick();
  repaint(QRect(kLowerLeft, kKeySize));
  const QPointer<PreviewLayout> here(this);
  gEventGate.ProcessEvents();
  if (!here) return;
  gEnvirnmentSettings.SetSettingConfig(setting, value);
  SendEvent(command, value, QString());
}

void PreviewLayout::PressRearCamera() {
  PlayClick();
  if (gCountOfCamera == 1)
    Notice(DISCONNECT_REARCAM);
  else if (!IsParkedWithParkingMode())
    Notice(REARCAM_SETTING_WARNING_ACC);
  else
    SwitchRearCamera(gEnvirnmentSettings.mSetting.rear_cam_power == 0);
}

void PreviewLayout::SwitchRearCamera(bool on) {
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_RearCamPower, on ? 1 : 0);
  if (!on) ForceFrontView();
  Notice(on ? REAR_CAM_RECORD_START : REAR_CAM_RECORD_STOP);
  repaint();
  SendEvent(SEND_SET_REARCAM_ONOFF, on ? 1 : 0, QString());
  if (!on) return;
  mPrepareReacamRecordingDelay = true;
  SetTimer(mPrepareRearcamRecordingTimer, kRearCameraDelayMs);
}

void PreviewLayout::TimeoutPrepareRearcamRecording() {
  mPrepareRearcamRecordingTimer->stop();
  mPrepareReacamRecordingDelay = false;
}

void PreviewLayout::PressElsewhere() {
  TimeoutTouchWait();
  CountingTouchEntryProcess();
}

// Five taps beside the keys within 3 s of the first open the touch calibration: for a panel that hits no key any more.
void PreviewLayout::CountingTouchEntryProcess() {
  if (!mTouchEntryTimer->isActive()) {
    mTouchComStartCount = 0;
    SetTimer(mTouchEntryTimer, kHiddenEntryMs);
    return;
  }
  if (mTouchComStartCount < kHiddenEntryTaps) {
    ++mTouchComStartCount;
    return;
  }
  StopTimer(mTouchEntryTimer);
  mTouchComStartCount = 0;
  ShowPreview();
  Notice(HIDDEN_TOUCH_COM_ENTRY);
  SetEvent(HIDDEN_TOUCH_COM_ENTRY, kNoticeMs);
}

void PreviewLayout::TimeoutTouchEntry() {
  mTouchEntryTimer->stop();
}

void PreviewLayout::TimeoutEvent() {
  BaseWidget::TimeoutEvent();
  if (TakeEventId() == HIDDEN_TOUCH_COM_ENTRY && IsCurrentScreen()) Next(TOUCHCOMP);
}

// ---- manual event recording

bool PreviewLayout::IsExistNdfFile() {
  return QFile::exists(DevicePath(QLatin1String(device::kManualEventMarker)));
}

bool PreviewLayout::IsDetectFileKeyShown() const {
  if (gEnvirnmentSettings.mSetting.protect_file == 0) return false;
  return mIsDetectRecording || !gMainWindow->GetIsIngParkingModeOn();
}

QRect PreviewLayout::DetectFileKeyRect() const {
  return {View() == 1 ? kLowerLeft : kLowerRight, kKeySize};
}

void PreviewLayout::PressDetectFile() {
  if (gEnvirnmentSettings.mSetting.protect_file == 0 || gMainWindow->GetIsIngParkingModeOn()) return;
  if (mPrepareReacamRecordingDelay) {
    Notice(PREPARING_RECAM_RECORDING);
    return;
  }
  Notice(SELECT_NDF_FILE);
  SendEvent(SEND_SET_CURRENT_RECORDING_FILE_DETECT, 0, QString());
  TimeoutDetectRecording();
}

void PreviewLayout::TimeoutDetectRecording() {
  mDetectRecordingTimer->stop();
  if (!mIsDetectRecording) {
    mIsDetectRecording = true;
    gMainWindow->SetIsDetectRecording(true);
    gMainWindow->StopParkingModeLcdOffTimer();
    RunDelays();
    SetTimer(mDetectRecordingTimer, kDetectStartMs);
    repaint();
  } else if (IsExistNdfFile()) {
    mIsDetectRecordingBlink = !mIsDetectRecordingBlink;
    repaint(DetectFileKeyRect());
    SetTimer(mDetectRecordingTimer, kDetectBlinkMs);
  } else {
    FinishDetectRecording();
  }
}

void PreviewLayout::FinishDetectRecording() {
  mIsDetectRecording = false;
  mIsDetectRecordingBlink = false;
  gMainWindow->SetIsDetectRecording(false);
  gMainWindow->SetParkingModeLcdOffTimer();
  Notice(FINISH_MANUAL_RECORDING);
  ShowPreview();
  RestartDelays();
  repaint();
}

// ---- status events and boxes

void PreviewLayout::recvEvent(int event, int value) {
  switch (event) {
    case RECV_ZEL_STATUS_SD_ERROR:
      if (!gSdError) break;
      gSdError = false;
      ShowStandingBox(R_SD_ERROR_NEET_FORMAT, value);
      break;
    case RECV_ZEL_STATUS_HW_ERROR:
      if (!gIsSdError || (value != 8 && value != 18)) break;
      gIsSdError = false;
      ShowStandingBox(value == 8 ? R_SD_CARD_EXCHANGE_NEED : R_HW_ERROR, value);
      break;
    case RECV_ZEL_STATUS_PARK_MODE_OUT:
      if (gEnvirnmentSettings.mSetting.parking_mode_on == 0) break;
      if (!ShowParkingReport()) PaintMessageBox(R_PARK_MODE_OUT, true, value, kNoticeMs);
      break;
    case RECV_ZEL_STATUS_LCD_KEY:
      if (!gMainWindow->GetIsTouchMotionVer()) break;
      gMainWindow->SetIsCurrentShowTouchMotion(true);
      Next(TOUCHTEST);
      break;
    case RECV_ZEL_STATUS_SPEED:
      mSpeed = value;
      UpdateSpeedLabel();
      break;
    case RECV_ZEL_STATUS_GPS_CONNECT:
      UpdateSpeedLabel();
      break;
    default:
      break;
  }
}

// A box of the event slot that stays until it is answered.
void PreviewLayout::ShowStandingBox(MessageBox_Id id, int value) {
  ShowAwake();
  PaintMessageBox(id, true, value, 0);
}

void PreviewLayout::MessageBoxHandler(int, int, int, int) {}

void PreviewLayout::RecvMessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != R_SD_ERROR_NEET_FORMAT) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  DelRecvMessageBox();
  if (button == MessageBox::Button::Right) return;
  SendEvent(SEND_SET_SYSTEM_SD_FORMAT, 0, QString());
  Next(SDFORMAT);
}

// ---- painting

void PreviewLayout::paintEvent(QPaintEvent* event) {
  Page page(event->region());
  page.Add(kViewKey, ViewPicture());
  page.Add(kMicKey, gEnvirnmentSettings.mSetting.volume != 0 ? gPreview.Status.Mic.On : gPreview.Status.Mic.Off);
  page.Add(kRearKey, RearCameraPicture());
  page.Add(kMenuKey, gPopMenu.Menu.Image.Image[0].ReleaseImage);
  if (View() == 2)
    page.Add(kLowerLeft,
             gEnvirnmentSettings.mMirroring == 0 ? gPreview.Status.mirror.def : gPreview.Status.mirror.mirroring);
  if (View() == 0) page.Add(kLowerLeft, MovingPipPicture());
  if (IsDetectFileKeyShown())
    page.Add(DetectFileKeyRect().topLeft(), mIsDetectRecording && mIsDetectRecordingBlink
                                                ? gPreview.Status.protectFile.disableImage
                                                : gPreview.Status.protectFile.normalImage);
  for (const PlatedLabel& row : kLabels)
    if (!(this->*row.label)->isHidden()) page.Add(row.plate, row.picture());
  const Color& trans = gColor.Trans;
  QPainter painter(this);
  page.Paint(painter, gMainWindow->GetIsLcdOff() ? QColor(Qt::black) : QColor(trans.r, trans.g, trans.b));
}
