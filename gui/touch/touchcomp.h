#pragma once

#include <array>
#include <iterator>

#include "gui/screen/basewidget.h"
#include "gui/settings/settings.h"

class QLabel;

/// The touch calibration: nine targets are touched, the map from panel to screen is fitted, and nine more touches tell
/// whether it fits: seven of them must hit. Four attempts. Whichever way it is left without success, the map that it
/// was opened with counts again. GUI thread.
class TouchComp : public BaseWidget {
  Q_OBJECT

public:
  static constexpr int kTargets = std::size(kTouchTargetX);

  explicit TouchComp(QWidget* parent);
  ~TouchComp() override;

  void recvEvent(int event, int value) override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;
  void TimeoutEvent() override;

public slots:
  /// The finger has touched the panel there, and no box has taken it; raw values, 0..511.
  void settingTouchPanel(int panelX, int panelY);

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override { return {{rect(), QStringLiteral("anywhere")}}; }

private:
  void setValue(int panelX, int panelY);
  void OperationNpointTouchCompensation(int n);
  void Collect(int panelX, int panelY);
  void Verify(int panelX, int panelY);
  void EndVerification();
  void ResetPass();
  void RestoreEntry();
  void Leave();
  void Tell(int messageId);
  void SetComment(const QString& text);
  void ShowTarget();

  /// The map and the table of its last check, as they were when the screen was opened.
  struct Entry {
    Touch_Value touch;
    std::array<int, kTargets> inputX, inputY;
  };
  const Entry mEntry;
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
