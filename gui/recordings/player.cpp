#include "gui/recordings/player.h"

#include <unistd.h>

#include <QFile>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <algorithm>

#include "gui/base/devicepath.h"
#include "gui/base/shell.h"
#include "gui/base/touchtime.h"
#include "gui/recordings/aviheader.h"
#include "gui/recordings/playfileinfo.h"
#include "gui/screen/label.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/page.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

template <>
BaseWidget* ScreenOf<PLAYER>(QWidget* parent, QObject* arg) {
  auto* what = qobject_cast<PlayFileInfo*>(arg);
  return what ? new Player(parent, what) : nullptr;
}

namespace {
constexpr int kControlMs = 5000;
constexpr int kLeaveMs = 1500;
constexpr useconds_t kStepPauseUs = 50000;

constexpr int kCameraDigit = 12;  // of "/mnt/mmc/rec0_20230101_123456.avi"

constexpr QRect kBarArea(QPoint(4, 201), QPoint(479, 261));
constexpr QRect kPlayKey(160, 262, 80, 58);
constexpr QPoint kBarPlace(3, 256), kFileNamePlate(79, 3), kPlayTimePlate(4, 218);
constexpr QPoint kProgressPlace(4, 257);
constexpr int kProgressWidth = 480, kProgressHeight = 4;
constexpr QColor kText(255, 255, 255), kAccent(64, 200, 224);
constexpr LabelRow kFileName{"mFileNameLabel", {112, 3, 360, 32}, 18, kText};
constexpr LabelRow kPlayTime{"mPlayTimeLabel", {37, 218, 92, 32}, 18, kText};
constexpr LabelRow kProgress{"mProgressBar", {kProgressPlace, QSize(0, kProgressHeight)}, 18, kText};

QString GetFileName(const QString& path) {
  return path.section(u'/', -1);
}
}  // namespace

struct Player::Key {
  QRect area;
  const char* name;
  void (Player::*press)();
};
const Player::Key Player::kKeys[] = {
    {QRect(QPoint(5, 4), QPoint(74, 62)), "home", &Player::PressHome},
    {QRect(QPoint(1, 263), QPoint(79, 319)), "older", &Player::PressOlder},
    {QRect(QPoint(81, 263), QPoint(159, 319)), "list", &Player::PressPreview},
    {QRect(QPoint(161, 263), QPoint(239, 319)), "play", &Player::PressPlay},
    {QRect(QPoint(241, 263), QPoint(319, 319)), "newer", &Player::PressNewer},
    {QRect(QPoint(321, 263), QPoint(399, 319)), "back", &Player::PressBack},
    {QRect(QPoint(401, 263), QPoint(479, 319)), "camera", &Player::PressCamera},
};

Player::Player(QWidget* parent, PlayFileInfo* info)
    : BaseWidget(parent),
      mTimDispControl(NewTimer("mTimDispControl", [this] { TimeoutDispControl(); })),
      mTimCurTimeProgress(NewTimer("mTimCurTimeProgress", [this] { TimeoutCurTimeProgress(); })) {
  const int list = info->GetListIndex();
  const int index = info->GetFileIndex();
  delete info;
  setAttribute(Qt::WA_OpaquePaintEvent);  // nothing needs to be painted below it
  SetPlayFile(list, index);
  InitLabel();
  Play();
}

void Player::InitLabel() {
  mFileNameLabel = AddLabel(this, kFileName);
  mPlayTimeLabel = AddLabel(this, kPlayTime);
  mProgressBar = AddLabel(this, kProgress);
  QPalette bar = mProgressBar->palette();
  bar.setColor(QPalette::Window, kAccent);
  mProgressBar->setPalette(bar);
  mProgressBar->setAttribute(Qt::WA_NoSystemBackground, false);
  mProgressBar->setAutoFillBackground(true);
  UpdateLabels();
}

void Player::SetPlayFile(int list, int index) {
  mCurBarIndex = mCurTime = 0;
  mCurListIndex = list;
  SetType(list);
  mCurPlayIndex = index;
  const RecordingFileManager* catalogue = gMainWindow->GetRecordingFileManager();
  mCurFileList = catalogue ? catalogue->GetFileItem(list) : nullptr;
  const bool known = mCurFileList && index >= 0 && index < mCurFileList->size();
  const FileItem item = known ? mCurFileList->at(index) : FileItem();
  mRecTime = item.recTime;
  mPlayFilePath = item.filePath;
  mPlayFileName = GetFileName(mPlayFilePath);
  mIsPlaying = true;
}

void Player::SetType(int list) {
  mOrderType = list / 2 % 2 == 0 ? ASCENDINGTYPE : DECENDINGTYPE;
  mCamMode = list % 2 == 0 ? FRONTTYPE : REARTYPE;
}

void Player::Play() {
  mPlayedSince = Now();
  if (mPlayFilePath.isEmpty())
    GetPlayStatus(STATUS_PLAY_OPEN_FAIL);
  else
    SendEvent(SEND_PLAY_VIDEO, 0, mPlayFilePath);
}

// ---- the bar of controls

void Player::onResume() {
  SetTimer(mTimDispControl, kControlMs);
}

void Player::onPause() {
  StopTimer(mTimDispControl);
  StopTimer(mTimCurTimeProgress);
}

void Player::ShowControl() {
  mIsShowControl = true;
  UpdateLabels();
  repaint();
  SetTimer(mTimDispControl, kControlMs);
}

void Player::HideControl() {
  StopTimer(mTimDispControl);
  mIsShowControl = false;
  UpdateLabels();
  repaint();
}

void Player::TimeoutDispControl() {
  HideControl();
}

void Player::UpdateLabels() {
  mFileNameLabel->setText(mPlayFileName);
  UpdateProgress();
  for (QLabel* label : {mFileNameLabel, mPlayTimeLabel, mProgressBar}) label->setVisible(mIsShowControl);
}

// ---- time and seek

QString Player::GetRecordTime(int seconds) {
  return QString::asprintf("%02d:%02d:%02d", 0, seconds / 60, seconds % 60);
}

void Player::UpdateProgress() {
  mPlayTimeLabel->setText(GetRecordTime(mCurTime));
  const qint64 width = mRecTime > 0 ? qint64{mCurTime} * kProgressWidth / mRecTime : 0;
  mCurBarIndex = int(std::clamp(width, qint64{0}, qint64{kProgressWidth}));
  mProgressBar->setGeometry(QRect(kProgressPlace, QSize(mCurBarIndex, kProgressHeight)));
}

// The label turns over at the whole second.
void Player::GetCurrentPlayTime(int ms) {
  ms = std::max(ms, 0);
  const int beyond = ms % 1000;
  mCurTime = ms / 1000 + (beyond != 0 ? 1 : 0);
  if (beyond != 0)
    SetTimer(mTimCurTimeProgress, 1000 - beyond);
  else
    UpdateProgress();
}

void Player::TimeoutCurTimeProgress() {
  mTimCurTimeProgress->stop();
  UpdateProgress();
}

int Player::ProgressIndexToTimeParsing(int x, int duration) {
  if (x < 1 || x > 479 || duration < 1) return -1;
  const double at = double(x) * duration / kProgressWidth;
  if (at > duration) return -1;
  return int(std::min(at * 1000, 2147483647.0));
}

// ---- status events

void Player::recvEvent(int event, int value) {
  if (mIsLeaving || gMainWindow->GetEventTime() < mPlayedSince) return;
  if (event == RECV_ZEL_STATUS_PLAY_CUR) GetCurrentPlayTime(value);
  if (event == RECV_ZEL_STATUS_PLAY_STATUS) GetPlayStatus(value);
}

void Player::LeaveAfter(PlayerEvent way, int ms) {
  mIsLeaving = true;
  SetEvent(way, ms);
}

void Player::GetPlayStatus(int status) {
  if (status == STATUS_PLAY_ERR || status == STATUS_PLAY_OPEN_FAIL || status == STATUS_PLAY_READ_FAIL) {
    PaintMessageBox(PLAY_FAIL, false, 0, kNoticeMs);
    LeaveAfter(PENTRY_FILELIST, kNoticeMs);
  } else if (status == STATUS_PLAY_END) {
    const int step = mOrderType == DECENDINGTYPE ? 1 : -1;
    if (PlayableFrom(mCurPlayIndex + step, step) >= 0) {
      ShowControl();
      PaintMessageBox(IS_NEXT_FILE_PLAY, false, 0, 0);
    } else {
      PaintMessageBox(LIST_PLAY_FINISH, false, 0, kNoticeMs);
      LeaveAfter(PENTRY_FILELIST, kNoticeMs);
    }
  }
}

void Player::TimeoutEvent() {
  BaseWidget::TimeoutEvent();
  switch (TakeEventId()) {
    case PENTRY_MENU:
      Jump(MAINMENU);
      break;
    case PENTRY_PREVIEW:
      Jump(PREVIEW);
      break;
    case PENTRY_FILELIST:
      Back();
      break;
    default:
      break;
  }
}

void Player::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != IS_NEXT_FILE_PLAY) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  DelMessageBox();
  if (button == MessageBox::Button::Right)
    Back();
  else
    StepNewer();
}

// ---- touches

void Player::touchEvent(int, int x, int y) {
  if (!mIsShowControl) {
    ShowControl();
    return;
  }
  SetTimer(mTimDispControl, kControlMs);
  for (const Key& key : kKeys) {
    if (!key.area.contains(x, y)) continue;
    PlayClick();
    const QPointer<Player> here(this);
    (this->*key.press)();
    if (here) TopHasChanged();  // one action at a time: what was touched meanwhile does not count
    return;
  }
  if (!kBarArea.contains(x, y)) {
    HideControl();
    return;
  }
  const int ms = ProgressIndexToTimeParsing(x, mRecTime);
  if (ms >= 0) SendEvent(SEND_SET_SEEK_PLAY, ms, QString());
}

QList<TouchArea> Player::KeyAreas() const {
  QList<TouchArea> areas;
  if (mIsShowControl) {
    for (const Key& key : kKeys) areas.append({key.area, QLatin1String(key.name)});
    areas.append({kBarArea, QStringLiteral("position")});
  }
  areas.append({rect(), QStringLiteral("beside")});
  return areas;
}

void Player::PressHome() {
  SendEvent(SEND_CONTROL_VIDEO, PLAY_STOP, QString());
  PaintMessageBox(VIDEO_REC_START, false, 0, 0);
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
  LeaveAfter(PENTRY_MENU, kLeaveMs);
  gMainWindow->SetParkingModeLcdOffTimer();
}

void Player::PressPreview() {
  PaintMessageBox(VIDEO_REC_START, false, 0, 0);
  SendEvent(SEND_CONTROL_VIDEO, PLAY_STOP, QString());
  gEnvirnmentSettings.AllGetSettingConfig();
  gEnvirnmentSettings.mSetting.time_set_flag = 0;
  gEnvirnmentSettings.mOldSetting.time_set_flag = 0;
  SendEvent(SEND_SET_ENTRY_PREVIEW, 0, QString());
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
  LeaveAfter(PENTRY_PREVIEW, kLeaveMs);
  gMainWindow->SetParkingModeLcdOffTimer();
}

void Player::PressPlay() {
  mIsPlaying = !mIsPlaying;
  repaint(kPlayKey);
  SendEvent(SEND_CONTROL_VIDEO, mIsPlaying ? PLAY_RESUME : PLAY_PAUSE, QString());
}

void Player::PressBack() {
  SendEvent(SEND_CONTROL_VIDEO, PLAY_STOP, QString());
  Back();
}

void Player::PressOlder() {
  usleep(kStepPauseUs);
  StepOlder();
}

void Player::PressNewer() {
  usleep(kStepPauseUs);
  StepNewer();
}

void Player::PressCamera() {
  ChangeCamPlayFile();
}

// ---- the neighbours in the list

// The first item from `index` on that is no stop marker; -1 when there is none.
int Player::PlayableFrom(int index, int step) const {
  if (!mCurFileList) return -1;
  for (; index >= 0 && index < mCurFileList->size(); index += step)
    if (!mCurFileList->at(index).recStopFlag) return index;
  return -1;
}

void Player::StepTo(int index) {
  SendEvent(SEND_CONTROL_VIDEO, PLAY_STOP, QString());
  StopTimer(mTimCurTimeProgress);
  SetPlayFile(mCurListIndex, index);
  ShowControl();
  Play();
}

void Player::NextPlayFile() {
  const int index = PlayableFrom(mCurPlayIndex + 1, 1);
  if (index >= 0)
    StepTo(index);
  else
    PaintMessageBox(mOrderType == DECENDINGTYPE ? NEXT_FILE_PLAY_NOT : PREV_FILE_PLAY_NOT, false, 0, kNoticeMs);
}

void Player::PrevPlayFile() {
  const int index = PlayableFrom(mCurPlayIndex - 1, -1);
  if (index >= 0)
    StepTo(index);
  else
    PaintMessageBox(mOrderType == DECENDINGTYPE ? PREV_FILE_PLAY_NOT : NEXT_FILE_PLAY_NOT, false, 0, kNoticeMs);
}

// The ascending lists run from the newest recording to the oldest.
void Player::StepOlder() {
  mOrderType == ASCENDINGTYPE ? NextPlayFile() : PrevPlayFile();
}

void Player::StepNewer() {
  mOrderType == ASCENDINGTYPE ? PrevPlayFile() : NextPlayFile();
}

void Player::ChangeCamPlayFile() {
  const CamModeType other = mCamMode == REARTYPE ? FRONTTYPE : REARTYPE;
  QString path = mPlayFilePath;
  if (path.size() > kCameraDigit) path[kCameraDigit] = other == REARTYPE ? u'1' : u'0';
  if (!QFile::exists(DevicePath(path))) {
    PaintMessageBox(other == REARTYPE ? NO_REAR_FILE : NO_FRONT_FILE, false, 0, kNoticeMs);
    return;
  }
  SendEvent(SEND_CONTROL_VIDEO, PLAY_STOP, QString());
  StopTimer(mTimCurTimeProgress);
  mRecTime = ReadAviSeconds(DevicePath(path));
  mCurTime = 0;
  mCamMode = other;
  mPlayFilePath = path;
  mPlayFileName = GetFileName(path);
  mIsPlaying = true;
  ShowControl();
  Play();
}

// ---- painting

void Player::paintEvent(QPaintEvent* event) {
  Page page(event->region());
  if (mIsShowControl) AddControl(page);
  const Color& trans = gColor.Trans;
  QPainter painter(this);
  page.Paint(painter, gMainWindow->GetIsLcdOff() ? QColor(Qt::black) : QColor(trans.r, trans.g, trans.b));
}

void Player::AddControl(Page& page) const {
  const std::pair<QPoint, QString> pictures[] = {
      {{4, 3}, gPlayer.Home.ReleaseImage},
      {{0, 262}, gPlayer.Prev.ReleaseImage},
      {{80, 262}, gPlayer.Preview.ReleaseImage},
      {kPlayKey.topLeft(), mIsPlaying ? gPlayer.Pause.ReleaseImage : gPlayer.Play.ReleaseImage},
      {{240, 262}, gPlayer.Next.ReleaseImage},
      {{320, 262}, gPlayer.Back.ReleaseImage},
      {{400, 262}, mCamMode == REARTYPE ? gPlayer.CameraRear.ReleaseImage : gPlayer.CameraFront.ReleaseImage},
      {kBarPlace, gPlayer.BarBg},
      {kFileNamePlate, gPlayer.FileNameBg},
      {kPlayTimePlate, gPlayer.PlayTimeBg},
  };
  for (const auto& [place, path] : pictures) page.Add(place, path);
}
