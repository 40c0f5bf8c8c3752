#pragma once

#include "gui/screen/tilescreen.h"

/// Two measurements of ten seconds, before and after the engine is started, in either order; then the firmware tells
/// whether it could calibrate its voltage. GUI thread.
class VoltageCompensation : public TileScreen {
  Q_OBJECT

public:
  explicit VoltageCompensation(QWidget* parent);

  void touchEvent(int type, int x, int y) override;
  void recvEvent(int event, int value) override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;
  void TimeoutEvent() override;

public slots:
  void TimeoutLoadingProgress();
  void TimeoutRecvResult();

protected:
  void FillPage(Page& page) override;
  void PressHome() override;
  QList<TouchArea> KeyAreas() const override;

private:
  /// mVolComFlag: the step, and the value of SEND_VOLTAGE_COMPENSATION.
  enum Step { None = 0, MeasuringBefore = 1, BeforeDone = 2, MeasuringAfter = 3, AfterDone = 4 };
  static const Tile kTiles[];

  bool IsBeforeOffered() const;
  bool IsAfterOffered() const;
  void PressBefore();
  void PressAfter();
  void Measure(Step step);
  void EndMeasurement();
  void ShowVerdict(int messageId);
  void EscapeVolComMenu();

  QTimer* timLoadingProgress;
  QTimer* timRecvResult;
  bool isLoadingVoltageCompensation = false;
  int loadingCount = -1;  // seconds; -1: no measurement
  bool isCompletedBeforeCheck = false;
  bool isCompletedAfterCheck = false;
  int volComResult = 0;
  int mVolComFlag = None;
};
