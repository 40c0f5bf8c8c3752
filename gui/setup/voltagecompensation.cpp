#include "gui/setup/voltagecompensation.h"

#include <QTimer>

#include "gui/base/picture.h"
#include "gui/base/shell.h"
#include "gui/screen/clock.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/page.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"

SCREEN(VOLTAGECOMPENSATION, VoltageCompensation)

namespace {
constexpr int kShortNoticeMs = 1500;
constexpr int kResultMs = 2000;
constexpr int kVerdictMs = 5000;
constexpr int kMeasurement = 10;  // seconds

constexpr QPoint kProgressGround(36, 116), kProgress(40, 120);
constexpr int kPixelsPerSecond = 40;
}  // namespace

constexpr VoltageCompensation::Tile VoltageCompensation::kTiles[] = {
    {2, 1,
     Action{gVoltageCompensation.Before, Press<&VoltageCompensation::PressBefore>,
            Is<&VoltageCompensation::IsBeforeOffered>}},
    {2, 3,
     Action{gVoltageCompensation.After, Press<&VoltageCompensation::PressAfter>,
            Is<&VoltageCompensation::IsAfterOffered>}},
};

VoltageCompensation::VoltageCompensation(QWidget* parent)
    : TileScreen(parent, gVoltageCompensation.Title, kTiles),
      timLoadingProgress(NewTimer("timLoadingProgress", [this] { TimeoutLoadingProgress(); })),
      timRecvResult(NewTimer("timRecvResult", [this] { TimeoutRecvResult(); })) {}

// ---- touches

void VoltageCompensation::touchEvent(int type, int x, int y) {
  if (!isLoadingVoltageCompensation) TileScreen::touchEvent(type, x, y);
}

QList<TouchArea> VoltageCompensation::KeyAreas() const {
  return isLoadingVoltageCompensation ? QList<TouchArea>() : TileScreen::KeyAreas();
}

void VoltageCompensation::PressHome() {
  Jump(PREVIEW);
}

// A measurement that is done or under way is not offered.
bool VoltageCompensation::IsBeforeOffered() const {
  return !isCompletedBeforeCheck && !(isLoadingVoltageCompensation && mVolComFlag == MeasuringBefore);
}

bool VoltageCompensation::IsAfterOffered() const {
  return !isCompletedAfterCheck && !(isLoadingVoltageCompensation && mVolComFlag == MeasuringAfter);
}

void VoltageCompensation::PressBefore() {
  PlayClick();
  PaintMessageBox(IS_BEFORE_VOLCOM_START, false, 0, 0);
}

void VoltageCompensation::PressAfter() {
  PlayClick();
  PaintMessageBox(IS_AFTER_VOLCOM_START, false, 0, 0);
}

void VoltageCompensation::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != IS_BEFORE_VOLCOM_START && messageId != IS_AFTER_VOLCOM_START) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  if (button == MessageBox::Button::Right) {
    DelMessageBox();
    return;
  }
  const int start = messageId == IS_BEFORE_VOLCOM_START ? BEFORE_VOLCOM_START : AFTER_VOLCOM_START;
  PaintMessageBox(start, false, 0, kShortNoticeMs);
  SetEvent(start, kShortNoticeMs);
}

void VoltageCompensation::TimeoutEvent() {
  TileScreen::TimeoutEvent();
  switch (TakeEventId()) {
    case BEFORE_VOLCOM_START:
      Measure(MeasuringBefore);
      break;
    case AFTER_VOLCOM_START:
      Measure(MeasuringAfter);
      break;
    case VOLCOM_RESULT_SUCCESS:
    case VOLCOM_RESULT_FAIL:
      Back();
      break;
    default:
      break;
  }
}

// ---- measurements

void VoltageCompensation::Measure(Step step) {
  mVolComFlag = step;
  SendEvent(SEND_VOLTAGE_COMPENSATION, step, QString());
  loadingCount = 0;
  isLoadingVoltageCompensation = true;
  repaint();
  SetTimer(timLoadingProgress, kSecondMs);
}

void VoltageCompensation::TimeoutLoadingProgress() {
  timLoadingProgress->stop();
  if (loadingCount < kMeasurement) {
    ++loadingCount;
    repaint();
    SetTimer(timLoadingProgress, kSecondMs);
    return;
  }
  EndMeasurement();
}

void VoltageCompensation::EndMeasurement() {
  const bool before = mVolComFlag == MeasuringBefore;
  (before ? isCompletedBeforeCheck : isCompletedAfterCheck) = true;
  const bool both = isCompletedBeforeCheck && isCompletedAfterCheck;
  if (both)
    PaintMessageBox(VOLCOM_ALL_COMPLETE, false, 0, 0);
  else
    PaintMessageBox(before ? VOLCOM_COMPLETE_BEFORE : VOLCOM_COMPLETE_AFTER, false, 0, kShortNoticeMs);
  mVolComFlag = before ? BeforeDone : AfterDone;
  SendEvent(SEND_VOLTAGE_COMPENSATION, mVolComFlag, QString());
  loadingCount = -1;
  isLoadingVoltageCompensation = false;
  repaint();
  if (both) SetTimer(timRecvResult, kVerdictMs);
}

// ---- the verdict

void VoltageCompensation::recvEvent(int event, int value) {
  if (event != RECV_ZEL_STATUS_VOLT_SET) return;
  volComResult = value;
  if (volComResult == 0 || volComResult == 1)
    ShowVerdict(volComResult == 1 ? VOLCOM_RESULT_SUCCESS : VOLCOM_RESULT_FAIL);
  else
    EscapeVolComMenu();
  SetEvent(VOLCOM_RESULT_SUCCESS, kResultMs);
}

void VoltageCompensation::TimeoutRecvResult() {
  ShowVerdict(VOLCOM_RESULT_FAIL);
}

void VoltageCompensation::ShowVerdict(int messageId) {
  StopTimer(timRecvResult);
  PaintMessageBox(messageId, false, 0, kResultMs);
}

void VoltageCompensation::EscapeVolComMenu() {
  StopTimer(timRecvResult);
  DelMessageBox();
}

// ---- painting

void VoltageCompensation::FillPage(Page& page) {
  page.Add(kPage, gVoltageCompensation.Bg);
  page.Add(kProgressGround, gVoltageCompensation.ProgressBg);
  if (loadingCount <= 0) return;
  const QPixmap progressEna = Picture(gVoltageCompensation.Progress);
  page.Add(QRect(kProgress, QSize(kPixelsPerSecond * loadingCount, progressEna.height())), progressEna);
}
