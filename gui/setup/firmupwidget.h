#pragma once

#include <QPixmap>

#include "gui/screen/basewidget.h"

/// The picture of a firmware update, full screen: gFirmupCount says which, when the screen is made. While the update
/// runs, a bar blinks over it. It has no keys. GUI thread.
class FirmUpWidget : public BaseWidget {
  Q_OBJECT

public:
  explicit FirmUpWidget(QWidget* parent);

  void onResume() override;
  void onPause() override;

public slots:
  void blinkRepaint();

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QTimer* mTimer;
  bool mIsShow = false;  // the bar's turn to be away
  QPixmap mBg;
  QPixmap mImg;  // the bar
};
