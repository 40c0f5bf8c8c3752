#include "gui/touch/touchmotion.h"

#include <QLabel>
#include <QPainter>

#include "gui/base/language.h"
#include "gui/screen/label.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"

SCREEN(TOUCHTEST, TouchMotion)

namespace {
constexpr int kDot = 4;  // pixels
constexpr QColor kText(255, 255, 255), kText2(200, 194, 196), kAccent(64, 200, 224);
constexpr LabelRow kBeforeTitle{"beforeComTitle", {16, 12, 200, 24}, 18, kText2};
constexpr LabelRow kAfterTitle{"afterComTile", {256, 12, 200, 24}, 18, kText2};
constexpr LabelRow kBefore{"beforeCoord", {16, 40, 220, 32}, 24, kText};
constexpr LabelRow kAfter{"afterCoord", {256, 40, 220, 32}, 24, kText};

QString CoordText(int x, int y) {
  return QString::asprintf("X: %d Y: %d", x, y);
}
}  // namespace

TouchMotion::TouchMotion(QWidget* parent)
    : BaseWidget(parent),
      beforeComTitle(AddLabel(this, kBeforeTitle, Text::tr("보정 전"))),
      afterComTile(AddLabel(this, kAfterTitle, Text::tr("보정 후"))),
      beforeCoord(AddLabel(this, kBefore)),
      afterCoord(AddLabel(this, kAfter)) {}

TouchMotion::~TouchMotion() {
  gMainWindow->SetIsCurrentShowTouchMotion(false);
}

void TouchMotion::touchEvent(int, int x, int y) {
  setCoord(x, y, x, y);
}

void TouchMotion::setCoord(int bx, int by, int ax, int ay) {
  beforeCoordStr = CoordText(bx, by);
  afterCoordStr = CoordText(ax, ay);
  beforeCoord->setText(beforeCoordStr);
  afterCoord->setText(afterCoordStr);
  mPointList.append({ax, ay});
  if (mPointList.size() > kLongestTrail) mPointList.removeFirst();
  update();
}

void TouchMotion::recvEvent(int event, int) {
  if (event != RECV_ZEL_STATUS_LCD_KEY) return;
  gMainWindow->SetParkingModeLcdOffTimer();
  gMainWindow->SetIsCurrentShowTouchMotion(false);
  Back();
}

void TouchMotion::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor(gColor.Bg.r, gColor.Bg.g, gColor.Bg.b));
  for (const QPoint& point : std::as_const(mPointList))
    painter.fillRect(point.x() - kDot / 2, point.y() - kDot / 2, kDot, kDot, kAccent);
}
