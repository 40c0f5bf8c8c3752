#pragma once

#include <limits>
#include <memory>

#include "gui/screen/basewidget.h"
#include "gui/settings/config.h"

class PFileInfo;
class QLabel;
class QPainter;

/// The home screen: hot keys and status texts over the live picture, which shows through the key colour. It hides
/// itself after 5 s without a touch; then the window's ground alone is shown. It also makes the checks at the start.
class PreviewLayout : public BaseWidget {
  Q_OBJECT

public:
  explicit PreviewLayout(QWidget* parent);
  ~PreviewLayout() override;

  void touchEvent(int type, int x, int y) override;
  void recvEvent(int event, int value) override;
  void onResume() override;
  void onPause() override;
  void onTopChanged() override;
  void TimeoutEvent() override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;
  void RecvMessageBoxHandler(int type, int x, int y, int messageId) override;

  void ShowPreview();
  void HidePreview();
  void LcdOff();
  void LcdOn();
  static bool IsExistNdfFile();
  bool SetPfileInfo();  ///< reads the parking report; false when there is none
  void GetSystemVoltage();
  void SetCurTimeAndVolStr();
  void SetLowVolPowerOffCountStr();
  void SetLowVolPowerOffCountLabel(bool shown);

  void InitTime();
  void GoTime();
  void CopyTimeSet();
  void SetDefaultTime();

public slots:
  void previewEnabled(bool on);
  void lowvolRecv(int on);  ///< the low-voltage countdown: 1 = it runs, 0 = it has ended
  void SlotSec();
  void TimeoutPaintTouchTest();
  void TimeoutSeachingPfilInfo();
  void TimeoutNeedTouchComp();
  void TimeoutLcdOff();
  void TimeoutTouchWait();
  void TimeoutTouchEntry();
  void TimeoutDetectRecording();
  void TimeoutPrepareRearcamRecording();

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override;
  void Touched() override;

private:
  struct HotKey;
  static const HotKey kHotKeys[];
  struct PlatedLabel;
  static const PlatedLabel kLabels[];

  void InitTimer();
  void InitLabel();
  void PaintTouchTestOrSeachingPfileInfo();
  void ResumeChecks();
  bool ShowParkingReport();

  bool IsParkedWithParkingMode() const;
  bool IsDetectFileKeyShown() const;
  QRect DetectFileKeyRect() const;

  void ShowAwake();
  bool MayDelaysRun() const;
  void RunDelays();
  void RestartDelays();
  void Notice(MessageBox_Id id);
  void ShowStandingBox(MessageBox_Id id, int value);
  void ShowLabel(QLabel* label, bool shown);
  void UpdateSpeedLabel();
  void UpdateVoltageLabel();

  void SwitchView(int display);
  void ForceFrontView();
  void SwitchRearCamera(bool on);
  void Step(int& value, int count, Setting_Id setting, Send_Event command);
  void FinishDetectRecording();
  void CountingTouchEntryProcess();

  void PressView();
  void PressMicrophone();
  void PressRearCamera();
  void PressMenu();
  void PressLowerLeft();
  void PressLowerRight();
  void PressDetectFile();
  void PressElsewhere();

  Date_Config mCurTime{};
  Date_Config mTimeSet{};
  QLabel* mClockLabel = nullptr;
  QLabel* mGpsSpeedLabel = nullptr;
  QLabel* mMainVolLabel = nullptr;
  QLabel* mLowVolCountLabel = nullptr;
  QTimer* mSecTimer = nullptr;
  QTimer* mTimPaintTouchTest = nullptr;
  QTimer* mTimSeachingPfileInfo = nullptr;
  QTimer* mTimNeedTouchComp = nullptr;
  QTimer* mTimLcdOff = nullptr;
  QTimer* mTimTouchWait = nullptr;
  QTimer* mTouchEntryTimer = nullptr;
  QTimer* mDetectRecordingTimer = nullptr;
  QTimer* mPrepareRearcamRecordingTimer = nullptr;
  std::unique_ptr<PFileInfo> pFile;
  QString mStrTime;
  QString mStrVoltage;
  QString mStrLowVolCount;
  bool mEnableView = true;
  int mReturnVolume = 1;
  int mTouchComStartCount = 0;
  bool mIsDetectRecording = false;
  bool mIsDetectRecordingBlink = false;
  bool mPrepareReacamRecordingDelay = false;
  bool mDispPFileInfo = false;
  float mShownVoltage = std::numeric_limits<float>::quiet_NaN();  // of mMainVolLabel; not a number while it shows none
  int mSpeed = 0;                                                 // km/h, of the last speed event
};
