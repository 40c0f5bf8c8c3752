#pragma once

#include <QPixmap>
#include <vector>

#include "gui/screen/basewidget.h"

class PFileInfo;
class QLabel;

/// The parking report: the impact and motion recordings of one parking period as lines along its time. It leaves after
/// 30 s by itself, unless it was opened from the parking settings. GUI thread.
class PFileSimpleGraph : public BaseWidget {
  Q_OBJECT

public:
  /// Takes all it shows out of `info`, which is not kept.
  PFileSimpleGraph(QWidget* parent, const PFileInfo* info);
  ~PFileSimpleGraph() override;

  void touchEvent(int type, int x, int y) override;
  void recvEvent(int event, int value) override;

public slots:
  void TimeoutWidget();

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override;

private:
  void settingPfileInfo(const PFileInfo& info);
  void setString(const PFileInfo& info);
  void initLabel();

  QPixmap mBg;
  QPixmap mOkButton;
  std::vector<int> mEventLines;   // x of the impacts, each once, rising
  std::vector<int> mMotionLines;  // the same of the motions
  QString mStrEvent;
  QString mStrMotion;
  QString mStrStart;
  QString mStrEnd;
  QString mStrLowVoltage;  // empty when the period ended normally
  QTimer* mTimWidget;
};
