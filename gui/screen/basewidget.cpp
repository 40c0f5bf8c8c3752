#include "gui/screen/basewidget.h"

#include <unistd.h>

#include <QTimer>
#include <utility>

#include "gui/base/eventgate.h"
#include "gui/base/touchtime.h"
#include "gui/screen/diagnostics.h"
#include "gui/screen/formatquestion.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/messagecatalogue.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/widgetmanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

namespace {
constexpr int kRestartFallbackMs = 10000;
constexpr useconds_t kRecordingStartUs = 1000000;

void RepaintCurrentScreen() {
  if (BaseWidget* screen = gWidgetManager.GetCurrentWidget()) screen->repaint();
}
}  // namespace

BaseWidget::BaseWidget(QWidget* parent)
    : QWidget(parent),
      mMessageBoxTimer(NewTimer("mMessageBoxTimer", [this] { TimeoutMessageBoxTimer(); })),
      mRecvMessageBoxTimer(NewTimer("mRecvMessageBoxTimer", [this] { TimeoutRecvMessageBoxTimer(); })),
      mEventTimer(NewTimer("mEventTimer", [this] { TimeoutEvent(); })),
      mTimRestartRecStart(NewTimer("mTimRestartRecStart", [this] { TimeoutRestartRecStart(); })) {
  resize(gLcd.Width, gLcd.Height);
  connect(this, &BaseWidget::nextWidget, gMainWindow, &ScreenHost::StartWidget);
  connect(this, &BaseWidget::backWidget, gMainWindow, &ScreenHost::BackPressed);
  connect(this, &BaseWidget::jumpWidget, gMainWindow, &ScreenHost::Jumped);
}

BaseWidget::~BaseWidget() {
  qDebug("BaseWidget Destroy");
}

void BaseWidget::touchEvent(int, int, int) {}
void BaseWidget::recvEvent(int, int) {}
void BaseWidget::onResume() {}
void BaseWidget::onPause() {}
void BaseWidget::MessageBoxHandler(int, int, int, int) {}
void BaseWidget::RecvMessageBoxHandler(int, int, int, int) {}
void BaseWidget::paintEvent(QPaintEvent*) {}
void BaseWidget::showEvent(QShowEvent*) {
  onResume();
}
void BaseWidget::hideEvent(QHideEvent*) {
  onPause();
}

void BaseWidget::Next(WidgetId id, QObject* arg) {
  emit nextWidget(id, arg);
}
void BaseWidget::Back() {
  emit backWidget();
}
void BaseWidget::Jump(WidgetId id) {
  emit jumpWidget(id);
}

void BaseWidget::SendEvent(Send_Event event, int value, const QString& text, int* out) {
  gMainWindow->SendEvent(event, value, text, out);
}

void BaseWidget::SendEvent(Send_Event event, int value, const QString& text, float* out) {
  gMainWindow->SendEvent(event, value, text, out);
}

// Precise: Qt's other timers come up to a twentieth of their time too early or too late.
QTimer* BaseWidget::NewTimer(QObject* owner, const char* name, std::function<void()> slot) {
  auto* timer = new QTimer(owner);
  timer->setObjectName(QLatin1String(name));
  timer->setTimerType(Qt::PreciseTimer);
  connect(timer, &QTimer::timeout, owner, [timer, slot = std::move(slot)] {
    if (gEventGate.Enter(timer)) slot();
  });
  return timer;
}

void BaseWidget::SetTimer(QTimer* timer, int ms) {
  timer->stop();
  timer->setInterval(ms);
  timer->start();
}

void BaseWidget::StopTimer(QTimer* timer) {
  timer->stop();
}

void BaseWidget::SetEvent(int eventId, int ms) {
  mEventId = eventId;
  SetTimer(mEventTimer, ms);
}

int BaseWidget::TakeEventId() {
  return std::exchange(mEventId, -1);
}

void BaseWidget::TimeoutEvent() {
  mEventTimer->stop();
}

void BaseWidget::PaintMessageBox(int messageId, bool recv, int value, int timeoutMs) {
  (recv ? mRecvMessageId : mMessageId) = messageId;
  // What an id without numbers shows: a notice of one centred line.
  int kind = 0, a = 0, b = 0, c = 2, d = 24;
  const QString text = GetMessageBoxString(messageId, &kind, &a, &b, &c, &d, value);
  mMessageBoxType = kind;
  (recv ? mRecvMessageText : mMessageText) = text;
  ShowMessageBox(kind, a, b, text, recv, c, d);
  QTimer* timer = recv ? mRecvMessageBoxTimer : mMessageBoxTimer;
  if (timeoutMs < 1)
    StopTimer(timer);
  else
    SetTimer(timer, timeoutMs);
  mIsRecvBoxOnTop = recv;
  ReportBoxes();
}

void BaseWidget::ShowMessageBox(int kind, int a, int b, const QString& text, bool recv, int c, int d) {
  (recv ? mIsShowRecvMessageBox : mIsShowMessageBox) = true;
  MessageBox*& box = recv ? mRecvMessageBox : mMessageBox;
  if (box)
    box->SettingMessageBox(kind, a, b, text, c, d);
  else
    box = new MessageBox(this, kind, a, b, text, c, d);
  box->show();
  box->raise();              // labels of the screen may have been made after the box
  if (recv) box->repaint();  // what the recorder tells is seen at once
}

void BaseWidget::DelMessageBox() {
  if (!mMessageBox) return;
  mMessageBoxTimer->stop();
  delete std::exchange(mMessageBox, nullptr);
  mMessageId = -1;
  mIsShowMessageBox = false;
  ReportBoxes();
  RepaintCurrentScreen();
}

void BaseWidget::DelRecvMessageBox() {
  if (!mRecvMessageBox) return;
  mRecvMessageBoxTimer->stop();
  delete std::exchange(mRecvMessageBox, nullptr);
  mRecvMessageId = -1;
  mIsShowRecvMessageBox = false;
  ReportBoxes();
  RepaintCurrentScreen();
}

// A box that is there already may be reported over and over: a touch of it still counts.
void BaseWidget::ReportBoxes() {
  const Box top = TopBox();
  const QString text = top == Box::None ? QString() : top == Box::Event ? mRecvMessageText : mMessageText;
  if ((top != mTopBox || text != mTopText) && IsCurrentScreen()) TopHasChanged();
  mTopBox = top;
  mTopText = text;
  ReportTop();
  onTopChanged();
}

bool BaseWidget::IsCurrentScreen() const {
  return gWidgetManager.GetCurrentWidget() == this;
}

bool BaseWidget::IsStandingBoxShown() const {
  return (mIsShowRecvMessageBox && !mRecvMessageBoxTimer->isActive()) ||
         (mIsShowMessageBox && !mMessageBoxTimer->isActive());
}

void BaseWidget::TimeoutMessageBoxTimer() {
  mMessageBoxTimer->stop();
  DelMessageBox();
}

void BaseWidget::TimeoutRecvMessageBoxTimer() {
  mRecvMessageBoxTimer->stop();
  DelRecvMessageBox();
}

// ---- touches

// What cannot be seen takes no touch.
BaseWidget::Box BaseWidget::TopBox() const {
  if (isHidden()) return Box::None;
  if (mIsShowRecvMessageBox && (mIsRecvBoxOnTop || !mIsShowMessageBox)) return Box::Event;
  return mIsShowMessageBox ? Box::Own : Box::None;
}

void BaseWidget::Touch(int type, int x, int y) {
  Touched();
  if (!TakenByBox(type, x, y)) touchEvent(type, x, y);
}

bool BaseWidget::TakenByBox(int type, int x, int y) {
  const Box box = TopBox();
  if (box == Box::None || type == TOUCH_AUTO) return box != Box::None;
  if (box == Box::Event) {
    if (mRecvMessageBoxTimer->isActive()) return true;
    if (mRecvMessageBox->HasButtons())
      RecvMessageBoxHandler(type, x, y, mRecvMessageId);
    else
      DelRecvMessageBox();
  } else if (FormatQuestion::IsUp(*this)) {
    gMainWindow->GetFormatQuestion().Answer(*this, x, y);
  } else {
    MessageBoxHandler(type, x, y, mMessageId);
  }
  return true;
}

QList<TouchArea> BaseWidget::TouchAreas() const {
  if (isHidden()) return {{rect(), QStringLiteral("lcd")}};
  const Box box = TopBox();
  if (box == Box::None) return KeyAreas();
  const MessageBox& top = *(box == Box::Event ? mRecvMessageBox : mMessageBox);
  if (box == Box::Event && mRecvMessageBoxTimer->isActive()) return {};
  if (top.HasButtons()) return top.ButtonAreas();
  if (box == Box::Event) return {{rect(), QStringLiteral("box")}};
  return {};
}

// ---- the way out of the settings

void BaseWidget::EntryPreview() {
  FormatQuestion::Forget();
  if (!gEnvirnmentSettings.compareSettingValue()) {
    Jump(PREVIEW);
    return;
  }
  if (const int need = FormatQuestion::Need(); need != 0) {
    gMainWindow->GetFormatQuestion().Ask(*this, need);
    return;
  }
  mRestartRecStart = true;
  PaintMessageBox(SETUP_SAVING, false, 0, 0);
  SaveAndRestartRecording();
}

void BaseWidget::SaveAndRestartRecording() {
  gEventGate.ProcessEvents();
  SendEvent(SEND_VIDEO_REC_STOP, 2, QString());
  gEnvirnmentSettings.settingSetup();
  gEnvirnmentSettings.AllSetSettingConfig();
  SendEvent(SEND_SETTING_COMPLETE, 0, QString());
  gEnvirnmentSettings.mSetting.time_set_flag = 0;
  gEnvirnmentSettings.mOldSetting.time_set_flag = 0;
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Time_Set_Flag, 0);
  gEnvirnmentSettings.Log();
  gEnvirnmentSettings.FirmLog();
  SetTimer(mTimRestartRecStart, kRestartFallbackMs);
}

void BaseWidget::TimeoutRestartRecStart() {
  mTimRestartRecStart->stop();
  mRestartRecStart = false;
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
  usleep(kRecordingStartUs);  // recording is under way before the preview returns
  DelMessageBox();
  Jump(PREVIEW);
}
