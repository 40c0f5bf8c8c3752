#include "gui/screen/formatquestion.h"

#include <QTimer>
#include <utility>

#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/screen/basewidget.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/settings.h"

namespace {
constexpr int kVoiceMs = 10000;  // a voice prompt whose end is never reported
constexpr int kStop = 3;         // SEND_VIDEO_REC_STOP: the card is about to be formatted
constexpr int kQuestions[] = {SETUP_SAVING, RESOLUTION_SETTING_CHANGE_NEED_FORMAT, FRAME_SETTING_CHANGE_NEED_FORMAT,
                              RES_FRAME_SETTING_CHANGE_NEED_FORMAT};
}  // namespace

FormatQuestion::FormatQuestion(QObject* parent)
    : QObject(parent), mTimFormatStart(BaseWidget::NewTimer(parent, "mTimFormatStart", [this] { Start(); })) {}

int FormatQuestion::Need() {
  const Setting_Config& edited = gEnvirnmentSettings.mSetting;
  const Setting_Config& saved = gEnvirnmentSettings.mOldSetting;
  return (edited.resolution != saved.resolution ? 1 : 0) + (edited.fps != saved.fps ? 2 : 0);
}

int FormatQuestion::MessageOf(int need) {
  return kQuestions[need];
}

void FormatQuestion::Ask(BaseWidget& screen, int need) {
  gNeedFormatFlag = need;
  screen.PaintMessageBox(MessageOf(need), false, 0, 0);
}

void FormatQuestion::Forget() {
  gNeedFormatFlag = 0;
}

bool FormatQuestion::IsUp(const BaseWidget& screen) {
  return gNeedFormatFlag != 0 && screen.GetMessageId() == MessageOf(gNeedFormatFlag);
}

void FormatQuestion::Answer(BaseWidget& screen, int x, int y) {
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::Right) {
    Forget();
    screen.DelMessageBox();
  }
  if (button != MessageBox::Button::Left) return;
  mStartSDFormat = true;
  screen.PaintMessageBox(VIDEO_REC_STOP, false, 0, 0);
  gEventGate.ProcessEvents();
  BaseWidget::SetTimer(mTimFormatStart, kVoiceMs);
  gMainWindow->SendEvent(SEND_VIDEO_REC_STOP, kStop, QString());
}

void FormatQuestion::Start() {
  mTimFormatStart->stop();
  if (!std::exchange(mStartSDFormat, false)) return;
  gMainWindow->StopParkingModeLcdOffTimer();
  BaseWidget* screen = gWidgetManager.GetCurrentWidget();
  if (screen) screen->DelMessageBox();
  gMainWindow->SendEvent(SEND_SET_SYSTEM_SD_FORMAT, std::exchange(gNeedFormatFlag, 0), QString());
  if (screen) screen->Next(SDFORMAT);
}
