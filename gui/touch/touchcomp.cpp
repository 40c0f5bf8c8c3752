#include "gui/touch/touchcomp.h"

#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "gui/base/eventgate.h"
#include "gui/base/language.h"
#include "gui/base/picture.h"
#include "gui/base/shell.h"
#include "gui/screen/label.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/touch/calibrationfit.h"

SCREEN(TOUCHCOMP, TouchComp)

namespace {
constexpr int kNeededHits = 7;
constexpr int kMostFailures = 3;           // before the last attempt
constexpr int kReachX = 40, kReachY = 35;  // of a target, from its middle; bounds included
constexpr double kFarthest = 1e6;

constexpr char kStartText[] =
    QT_TRANSLATE_NOOP("Text", "좌표보정을 시작합니다.\r\n표시되는 지점을 눌러주시기 바랍니다.");
constexpr char kConfirmText[] =
    QT_TRANSLATE_NOOP("Text", "보정 결과를 확인하기 위해 표시지점을\r\n한번더 눌러주시기 바랍니다.");

constexpr QPoint kCommentPanel(20, 72), kCountPanel(160, 200);
constexpr QColor kInk(0, 0, 0);
constexpr LabelRow kComment{"lblComment", {24, 72, 432, 50}, 19, kInk, Qt::AlignHCenter};
constexpr LabelRow kCount{"lblComment2", {160, 200, 160, 44}, 20, kInk, Qt::AlignHCenter};

// Truncated; a map that is far off, or that comes to no number, does not overflow.
int Pixel(double value) {
  return std::isnan(value) ? int(kFarthest) : int(std::clamp(value, -kFarthest, kFarthest));
}
}  // namespace

TouchComp::TouchComp(QWidget* parent)
    : BaseWidget(parent),
      mEntry{gEnvirnmentSettings.mTouchValue.Load(), std::to_array(gEnvirnmentSettings.inputX),
             std::to_array(gEnvirnmentSettings.inputY)},
      lblComment(AddLabel(this, kComment)),
      lblComment2(AddLabel(this, kCount)) {
  for (QLabel* label : {lblComment, lblComment2})
    label->setStyleSheet(QStringLiteral("QLabel {background:transparent;color:rgb(0,0,0);}"));
  SetComment(Text::tr(kStartText));
}

TouchComp::~TouchComp() {
  if (!mResultSuccess) RestoreEntry();
}

void TouchComp::SetComment(const QString& text) {
  lblComment->setText(text);
  ShowTarget();
}

void TouchComp::ShowTarget() {
  lblComment2->setText(QStringLiteral("%1 / %2").arg(nTouchCnt + 1).arg(kTargets));
  repaint();
}

void TouchComp::RestoreEntry() {
  gEnvirnmentSettings.mTouchValue.Store(mEntry.touch);
  std::ranges::copy(mEntry.inputX, gEnvirnmentSettings.inputX);
  std::ranges::copy(mEntry.inputY, gEnvirnmentSettings.inputY);
}

// ---- touches

void TouchComp::MessageBoxHandler(int, int, int, int) {
  if (std::exchange(mCurrentShowEscapeMessage, false)) DelMessageBox();
}

void TouchComp::settingTouchPanel(int panelX, int panelY) {
  PlayClick();
  if (mConfirmTc)
    Verify(panelX, panelY);
  else
    Collect(panelX, panelY);
}

void TouchComp::Collect(int panelX, int panelY) {
  Touch_Panel_X[size_t(nTouchCnt)] = panelX;
  Touch_Panel_Y[size_t(nTouchCnt)] = panelY;
  if (++nTouchCnt < kTargets) {
    ShowTarget();
    return;
  }
  OperationNpointTouchCompensation(kTargets);
  nTouchCnt = 0;
  mConfirmTc = true;
  SetComment(Text::tr(kConfirmText));
}

// The map of the first n touches. Touches that give none leave it as it is: the second pass shows that it does not fit.
void TouchComp::OperationNpointTouchCompensation(int n) {
  Touch_Value touch{};
  if (FitTouch(Touch_Panel_X.data(), Touch_Panel_Y.data(), kTouchTargetX, kTouchTargetY, n, &touch))
    gEnvirnmentSettings.mTouchValue.Store(touch);
}

void TouchComp::setValue(int panelX, int panelY) {
  const Touch_Value touch = gEnvirnmentSettings.mTouchValue.Load();
  x = Pixel(panelX * touch.alphaX + panelY * touch.betaX + touch.deltaX);
  y = Pixel(panelX * touch.alphaY + panelY * touch.betaY + touch.deltaY);
}

void TouchComp::Verify(int panelX, int panelY) {
  setValue(panelX, panelY);
  gEnvirnmentSettings.inputX[nTouchCnt] = x;
  gEnvirnmentSettings.inputY[nTouchCnt] = y;
  const bool hit =
      std::abs(x - kTouchTargetX[nTouchCnt]) <= kReachX && std::abs(y - kTouchTargetY[nTouchCnt]) <= kReachY;
  if (hit) ++mSuccessCount;
  if (++nTouchCnt < kTargets)
    ShowTarget();
  else
    EndVerification();
}

void TouchComp::ResetPass() {
  mSuccessCount = 0;
  mConfirmTc = false;
  nTouchCnt = 0;
}

void TouchComp::EndVerification() {
  mResultSuccess = mSuccessCount >= kNeededHits;
  ResetPass();
  update();
  if (mResultSuccess) {
    gEnvirnmentSettings.SettingTouchValue(false);
    gEnvirnmentSettings.SettingTouchTuningValue(false);
    Tell(TOUCH_COM_SUCCESS);
    return;
  }
  const bool last = mComFailCount == kMostFailures;
  if (last)
    RestoreEntry();
  else
    ++mComFailCount;
  SetComment(Text::tr(kStartText));
  Tell(last ? TOUCH_COM_FAIL : TOUCH_COM_FAIL_RETRY);
}

void TouchComp::Tell(int messageId) {
  PaintMessageBox(messageId, false, 0, kNoticeMs);
  const QPointer<TouchComp> here(this);
  gEventGate.ProcessEvents();
  if (here) SetEvent(messageId, kNoticeMs);
}

// ---- leaving

void TouchComp::TimeoutEvent() {
  BaseWidget::TimeoutEvent();
  const int event = TakeEventId();
  if (event == TOUCH_COM_SUCCESS || event == TOUCH_COM_FAIL) Leave();
}

void TouchComp::Leave() {
  gMainWindow->SetParkingModeLcdOffTimer();
  if (gMainWindow->GetNeedTouchComBeforeSDFormat() == 1) gMainWindow->SetNeedTouchComBeforeSDFormat(2);
  Back();
}

// The device's power key: once asks, twice leaves.
void TouchComp::recvEvent(int event, int) {
  if (event != RECV_ZEL_STATUS_LCD_KEY) return;
  if (mCurrentShowEscapeMessage) {
    Leave();
    return;
  }
  mCurrentShowEscapeMessage = true;
  PaintMessageBox(TOUCH_COM_ESCAPE, false, 0, 0);
}

// ---- painting

void TouchComp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.drawPixmap(0, 0, Picture(QStringLiteral("touchcompensation/touch_compensation_bg.bmp")));
  painter.drawPixmap(kCommentPanel, Picture(QStringLiteral("touchcompensation/touch_compensation_text_bg.bmp")));
  painter.drawPixmap(kCountPanel, Picture(QStringLiteral("touchcompensation/touch_compensation_text_bg3.bmp")));
  painter.drawPixmap(kTouchTargetX[nTouchCnt] - kReachX, kTouchTargetY[nTouchCnt] - kReachY,
                     Picture(QStringLiteral("touchcompensation/touch_compensation_icon_1_normal_ex.bmp")));
}
