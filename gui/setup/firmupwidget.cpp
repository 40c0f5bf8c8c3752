#include "gui/setup/firmupwidget.h"

#include <QPainter>
#include <QTimer>

#include "gui/base/devicepath.h"
#include "gui/base/globals.h"
#include "gui/base/picture.h"
#include "gui/screen/screenof.h"

SCREEN(FIRMUP, FirmUpWidget)

namespace {
constexpr int kBlinkMs = 500;
constexpr int kRunning = 1;  // gFirmupCount
constexpr QPoint kBarPlace(0, 262);
constexpr QColor kGround(38, 34, 35);

const char* PictureOfPhase() {
  switch (gFirmupCount) {
    case kRunning:
      return device::kUpdateRunsPicture;
    case 2:
      return device::kUpdateEndPicture;
    default:
      return device::kUpdateStartPicture;
  }
}
}  // namespace

FirmUpWidget::FirmUpWidget(QWidget* parent)
    : BaseWidget(parent),
      mTimer(NewTimer("mTimer", [this] { blinkRepaint(); })),
      mBg(Picture(QLatin1String(PictureOfPhase()))),
      mImg(Picture(QLatin1String(device::kUpdateBarPicture))) {
  setPalette(QPalette(kGround, kGround));
  setAutoFillBackground(true);
}

void FirmUpWidget::onResume() {
  SetTimer(mTimer, kBlinkMs);
}

void FirmUpWidget::onPause() {
  StopTimer(mTimer);
}

void FirmUpWidget::blinkRepaint() {
  StopTimer(mTimer);
  mIsShow = !mIsShow;
  update();
  SetTimer(mTimer, kBlinkMs);
}

void FirmUpWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.drawPixmap(0, 0, mBg);
  if (gFirmupCount == kRunning && !mIsShow) painter.drawPixmap(kBarPlace, mImg);
}
