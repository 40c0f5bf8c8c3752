#pragma once

#include "gui/screen/basewidget.h"

class QLabel;

/// Shown while the firmware formats the card: tells the progress and the result, and goes back to recording. It has no
/// keys: nobody can leave a format. GUI thread.
class SDFormat : public BaseWidget {
  Q_OBJECT

public:
  /// Value of RECV_ZEL_STATUS_SD_FORMAT_RESULT.
  enum SDFORMAT_STATUS {
    ST_SDF_FAIL = 0,
    ST_SDF_SUCCESS = 1,
    ST_SDF_START = 2,
    ST_SDF_PROGRESS = 3,
    ST_SDF_SYS_RESET = 4,
    ST_SDF_END = 5,
  };

  explicit SDFormat(QWidget* parent);

  void recvEvent(int event, int value) override;

public slots:
  void TimeoutSDFormat();

protected:
  void paintEvent(QPaintEvent* event) override;

  int mLblIdx = 0;  ///< the state: 0 progress, 1 timed out (never entered), 2 success, 3 failure

private:
  void RecvSDFormatStatus(int status);
  void SetLabel(const QString& text, int px);
  void ResumeAfterSuccess();
  void ResumeAfterFailure();

  QLabel* mLblMsg;
  QLabel* mLblCaution;
  QTimer* mTimSDFormat;
};
