#pragma once

#include <QList>
#include <QPoint>

#include "gui/screen/basewidget.h"

class QLabel;

/// The touch test: where the finger is, before and after the calibration, and the trail of it. GUI thread.
class TouchMotion : public BaseWidget {
  Q_OBJECT

public:
  static constexpr int kLongestTrail = 500;  ///< points

  explicit TouchMotion(QWidget* parent);
  /// The panel's presses go to the screens again, whichever way this one is left.
  ~TouchMotion() override;

  void touchEvent(int type, int x, int y) override;
  void recvEvent(int event, int value) override;

public slots:
  /// A point of the panel (bx, by) is (ax, ay) on the screen.
  void setCoord(int bx, int by, int ax, int ay);
  void touchMotionRecv(int, int, int, int) {}

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override { return {{rect(), QStringLiteral("anywhere")}}; }

private:
  QLabel* beforeComTitle;
  QLabel* afterComTile;
  QLabel* beforeCoord;
  QLabel* afterCoord;
  QString beforeCoordStr;
  QString afterCoordStr;
  QList<QPoint> mPointList;  // the latest ones, on the screen
};
