#pragma once

#include <array>
#include <iterator>

#include "gui/screen/basewidget.h"
#include "gui/settings/settings.h"

class QLabel;

/// The touch calibration: nine targets are touched, the map from panel to screen is fitted, and nine more touches tell
/// whether it fits: seven of them must hit. Four attempts; then the saved map counts again. GUI thread.
class TouchComp : public BaseWidget {
  Q_OBJECT

public:
  static constexpr int kTargets = std::size(kTouchTargetX);

  explicit TouchComp(QWidget* parent);
  /// A map that was not accepted goes with the screen, whichever way that is left.
  ~TouchComp() override;

  void recvEvent(int event, int value) override;
  void TimeoutEvent() override;

public slots:
  /// The finger has touched the panel there; raw values, 0..511.
  void settingTouchPanel(int panelX, int panelY);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void setValue(int panelX, int panelY);
  void OperationNpointTouchCompensation(int n);
  void Collect(int panelX, int panelY);
  void Verify(int panelX, int panelY);
  void EndVerification();
  void ResetPass();
  void ReloadSaved();
  void Leave();
  void Tell(int messageId);
  void SetComment(const QString& text);

  int nTouchCnt = 0;  // the next target
  QLabel* lblComment;
  QLabel* lblComment2;
  std::array<int, kTargets> Touch_Panel_X{};
  std::array<int, kTargets> Touch_Panel_Y{};
  int x = 0;  // latest touch of the second pass, on the screen
  int y = 0;
  bool mConfirmTc = false;  // the second pass
  bool mResultSuccess = false;
  int mSuccessCount = 0;  // hits of the second pass
  int mComFailCount = 0;
  bool mCurrentShowEscapeMessage = false;
};
