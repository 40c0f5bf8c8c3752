#include "gui/live/screensaver.h"

#include <QFile>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "gui/base/devicepath.h"
#include "gui/base/globals.h"
#include "gui/base/language.h"
#include "gui/base/picture.h"
#include "gui/screen/clock.h"
#include "gui/screen/label.h"
#include "gui/screen/screenof.h"
#include "gui/settings/settings.h"

SCREEN(SCREENSAVER, ScreenSaver)

namespace {
constexpr int kOwnPicture = 3;  // lcd_wait_dis

constexpr char kSpeakerOff[] = "screensaver/status_voice_off.bmp";
constexpr const char* kSpeaker[] = {"screensaver/status_voice_low.bmp", "screensaver/status_voice_common.bmp",
                                    "screensaver/status_voice_high.bmp", kSpeakerOff};  // by spk_volume
constexpr char kGpsDisconnected[] = "screensaver/status_gps_disconnect4.bmp";
constexpr const char* kGps[] = {kGpsDisconnected, "screensaver/status_gps_error4.bmp",
                                "screensaver/status_gps_connect4.bmp"};  // by gIsConnectGps

constexpr QPoint kSpeakerPlace(16, 250), kMicPlace(88, 250), kGpsPlace(160, 250), kVoltPlace(312, 250),
    kApmPlace(32, 116);
constexpr QColor kGround(38, 34, 35);
constexpr QSize kScreen(480, 320);

constexpr QColor kInk(0, 0, 0);
constexpr LabelRow kDate{"mLblDate", {36, 26, 220, 40}, 30, kInk};
constexpr LabelRow kDay{"mLblDay", {304, 26, 140, 40}, 30, kInk, Qt::AlignRight};
constexpr LabelRow kTime{"mLblTime", {124, 72, 324, 150}, 120, kInk, Qt::AlignHCenter, true};
constexpr LabelRow kVolt{"mLblVolt", {356, 250, 104, 56}, 28, kInk, Qt::AlignHCenter};

constexpr const char* kDays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};

template <int N>
QPixmap PictureOf(const char* const (&table)[N], int value, const char* otherwise) {
  return Picture(QLatin1String(value >= 0 && value < N ? table[value] : otherwise));
}

QString CustomPicture() {
  return QLatin1String(device::kCustomPicture);
}

// The user's picture as large as the screen can show it whole.
QPixmap FittingCustomPicture() {
  QPixmap picture = Picture(CustomPicture());
  if (picture.isNull() || picture.size() == kScreen) return picture;
  return picture.scaled(kScreen, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}
}  // namespace

ScreenSaver::ScreenSaver(QWidget* parent)
    : BaseWidget(parent), mTimScreenSaver(NewTimer("mTimScreenSaver", [this] { SlotSec(); })) {
  setAttribute(Qt::WA_OpaquePaintEvent);  // nothing needs to be painted below it
  InitLabel();
}

void ScreenSaver::InitLabel() {
  mLblDate = AddLabel(this, kDate);
  mLblDay = AddLabel(this, kDay);
  mLblTime = AddLabel(this, kTime);
  mLblVolt = AddLabel(this, kVolt);
  for (QLabel* label : {mLblDate, mLblDay, mLblTime, mLblVolt})
    label->setStyleSheet(QStringLiteral("QLabel {background:transparent;color:rgb(0,0,0);}"));
}

bool ScreenSaver::IsNotExistCustomImageFile() {
  return gEnvirnmentSettings.mSetting.lcd_wait_dis == kOwnPicture && !QFile::exists(DevicePath(CustomPicture()));
}

bool ScreenSaver::IsCustomPicture() const {
  return gEnvirnmentSettings.mSetting.lcd_wait_dis == kOwnPicture && !mIsNotExistsCustomImageFile;
}

void ScreenSaver::onResume() {
  mIsNotExistsCustomImageFile = IsNotExistCustomImageFile();
  const bool custom = IsCustomPicture();
  for (QLabel* label : {mLblDate, mLblDay, mLblTime, mLblVolt}) label->setVisible(!custom);
  if (custom)
    InitImageLoad();
  else
    SlotSec();
}

void ScreenSaver::onPause() {
  StopTimer(mTimScreenSaver);
}

void ScreenSaver::touchEvent(int, int, int) {}
void ScreenSaver::MessageBoxHandler(int, int, int, int) {}

// The picture that tells the connection is not a second late.
void ScreenSaver::recvEvent(int event, int) {
  if (event == RECV_ZEL_STATUS_GPS_CONNECT) InitImageLoad();
}

void ScreenSaver::SlotSec() {
  mTimScreenSaver->stop();
  SendEvent(SEND_GET_VOLTAGE, 0, QString(), &gRecvVoltage);
  SetCurTimeAndVolStr();
  InitImageLoad();
  SetTimer(mTimScreenSaver, kSecondMs);
}

void ScreenSaver::SetDefalutTime() {
  mTimeSet = DefaultTime();
}

QString ScreenSaver::TransformDate(const QString& dayName) {
  const auto* const day =
      std::ranges::find(kDays, dayName.left(3), [](const char* name) { return QLatin1String(name); });
  return day == std::end(kDays) ? QString() : DateLocale().dayName(int(day - kDays) + 1);
}

// A label whose text stays the same is not painted again.
void ScreenSaver::SetCurTimeAndVolStr() {
  mTimeSet = ReadClock();
  if (ChkTimeError(mTimeSet) != 0) SetDefalutTime();
  mCurTime = ConvTime12H(mTimeSet);
  mIsAM = mCurTime.Apm == AM;
  mStrTime = QString::asprintf("%02d:%02d", mCurTime.Hour, mCurTime.Minute);
  mStrVoltage = std::isfinite(gRecvVoltage) ? QString::asprintf("%3.1fv", double{gRecvVoltage}) : QString();
  const QDate date(mCurTime.Year, mCurTime.Month, mCurTime.Day);
  mStrDate = DateLocale().toString(date, Text::tr("yyyy.MM.dd"));
  mLblDate->setText(mStrDate);
  mLblDay->setText(TransformDate(date.toString(QStringLiteral("ddd"))));
  mLblTime->setText(mStrTime);
  mLblVolt->setText(mStrVoltage);
}

void ScreenSaver::SetImage(QPixmap& image, QPoint place, const QPixmap& picture) {
  if (image.cacheKey() == picture.cacheKey()) return;
  update(QRect(place, image.size().expandedTo(picture.size())));
  image = picture;
}

void ScreenSaver::InitImageLoad() {
  if (IsCustomPicture()) {
    SetImage(mBg, {0, 0}, FittingCustomPicture());
    return;
  }
  const Setting_Config& setting = gEnvirnmentSettings.mSetting;
  SetImage(mBg, {0, 0}, Picture(QStringLiteral("screensaver/status_time_sign_bg.bmp")));
  SetImage(mImgSpeaker, kSpeakerPlace,
           setting.buzer_flag == 1 ? Picture(kSpeakerOff) : PictureOf(kSpeaker, setting.spk_volume, kSpeakerOff));
  SetImage(mImgMic, kMicPlace,
           setting.volume != 0 ? Picture(QStringLiteral("screensaver/status_mic_on.bmp"))
                               : Picture(QStringLiteral("screensaver/status_mic_off.bmp")));
  SetImage(mImgGps, kGpsPlace, PictureOf(kGps, gIsConnectGps, kGpsDisconnected));
  SetImage(mImgVolt, kVoltPlace, Picture(QStringLiteral("screensaver/status_voltage_text_bg.bmp")));
  SetImage(mImgAPM, kApmPlace,
           mIsAM ? Picture(QStringLiteral("screensaver/status_time_am.bmp"))
                 : Picture(QStringLiteral("screensaver/status_time_pm.bmp")));
}

void ScreenSaver::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (mBg.size() != kScreen || mBg.hasAlpha()) painter.fillRect(event->rect(), kGround);
  if (IsCustomPicture()) {
    painter.drawPixmap((kScreen.width() - mBg.width()) / 2, (kScreen.height() - mBg.height()) / 2, mBg);
    return;
  }
  painter.drawPixmap(event->rect(), mBg, event->rect());
  painter.drawPixmap(kSpeakerPlace, mImgSpeaker);
  painter.drawPixmap(kMicPlace, mImgMic);
  painter.drawPixmap(kGpsPlace, mImgGps);
  painter.drawPixmap(kVoltPlace, mImgVolt);
  painter.drawPixmap(kApmPlace, mImgAPM);
}
