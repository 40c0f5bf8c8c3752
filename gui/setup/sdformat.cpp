#include "gui/setup/sdformat.h"

#include <QLabel>
#include <QPainter>
#include <QTimer>

#include "gui/base/globals.h"
#include "gui/base/language.h"
#include "gui/base/picture.h"
#include "gui/screen/label.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/settings.h"

SCREEN(SDFORMAT, SDFormat)

namespace {
constexpr int kStateMs = 2000;
constexpr LabelRow kMessage{"mLblMsg", {20, 126, 440, 110}, 19, {255, 255, 255}, Qt::AlignHCenter, true};
constexpr LabelRow kCaution{"mLblCaution", {20, 262, 440, 36}, 18, {255, 184, 28}, Qt::AlignHCenter};
}  // namespace

SDFormat::SDFormat(QWidget* parent)
    : BaseWidget(parent),
      mLblMsg(AddLabel(this, kMessage)),
      mLblCaution(AddLabel(this, kCaution, Text::tr("포맷 중에는 전원을 끄지 마십시오."))),
      mTimSDFormat(NewTimer("mTimSDFormat", [this] { TimeoutSDFormat(); })) {
  SetTimer(mTimSDFormat, kStateMs);
}

void SDFormat::SetLabel(const QString& text, int px) {
  QFont face = mLblMsg->font();
  face.setPixelSize(px);
  mLblMsg->setFont(face);
  mLblMsg->setText(text);
}

void SDFormat::recvEvent(int event, int value) {
  if (event == RECV_ZEL_STATUS_SD_FORMAT_RESULT) RecvSDFormatStatus(value);
}

void SDFormat::RecvSDFormatStatus(int status) {
  if (status != ST_SDF_SUCCESS && status != ST_SDF_FAIL) return;
  mLblCaution->hide();  // the format is over
  if (status == ST_SDF_FAIL && gInitSdError) {
    // The card failed at the start, too: it must be exchanged, and the message stays.
    StopTimer(mTimSDFormat);
    SetLabel(Text::tr("SD카드 포맷에 실패하였습니다.\nSD카드 교체가 필요합니다."), 22);
    mLblIdx = 2;
    gInitSdError = false;
    return;
  }
  if (status == ST_SDF_SUCCESS)
    SetLabel(Text::tr("포맷이 완료되었습니다.\n영상 녹화를 시작합니다."), 22);
  else
    SetLabel(Text::tr("SD카드 포맷에 실패하였습니다."), 27);
  mLblIdx = status == ST_SDF_SUCCESS ? 2 : 3;
  SetTimer(mTimSDFormat, kStateMs);
}

void SDFormat::TimeoutSDFormat() {
  mTimSDFormat->stop();
  switch (mLblIdx) {
    case 0:
      SetLabel(Text::tr("SD카드 포맷을 \r\n 진행 중입니다."), 33);
      break;
    case 1:
      SetLabel(Text::tr("시간이 초과되었습니다\n 재시도해주십시요"), 33);
      mLblIdx = 3;
      SetTimer(mTimSDFormat, kStateMs);
      break;
    case 2:
      ResumeAfterSuccess();
      break;
    default:
      ResumeAfterFailure();
  }
}

// A change of resolution or frame rate has waited for the format.
void SDFormat::ResumeAfterSuccess() {
  if (gEnvirnmentSettings.compareSettingValue()) {
    gEnvirnmentSettings.settingSetup();
    gEnvirnmentSettings.AllSetSettingConfig();
    SendEvent(SEND_SETTING_COMPLETE, 0, QString());
    // Applied once: the next block must not set the clock back.
    gEnvirnmentSettings.mSetting.time_set_flag = 0;
    gEnvirnmentSettings.mOldSetting.time_set_flag = 0;
    gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Time_Set_Flag, 0);
  } else {
    SendEvent(SEND_SET_ENTRY_PREVIEW, 0, QString());
  }
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
  Jump(PREVIEW);
}

void SDFormat::ResumeAfterFailure() {
  mLblIdx = 0;
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
  gMainWindow->SetParkingModeLcdOffTimer();
  Back();
}

void SDFormat::paintEvent(QPaintEvent*) {
  QPainter(this).drawPixmap(0, 0, Picture(QStringLiteral("sdformat/bg.bmp")));
}
