#pragma once

#include <memory>

#include "gui/screen/basewidget.h"
#include "gui/settings/config.h"

class PFileInfo;
class QLabel;
class QPainter;

/// The labels of the preview.
enum Label_Type {
  Label_Clock = 0,
  Label_Version = 1,
  Label_Voltage = 2,
  Label_GpsSpeed = 3,
  Label_LowVoltage_Count = 4,
};

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
  void TimeoutEvent() override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;
  void RecvMessageBoxHandler(int type, int x, int y, int messageId) override;
  void DelRecvMessageBox() override;

  void ShowPreview();
  void HidePreview();
  void LcdOff();
  void LcdOn();
  void SetLcdOffTimer();  ///< LCD off after 10, 30 or 60 s without a touch, by lcd_auto_off
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

private:
  struct HotKey;
  static const HotKey kHotKeys[];

  void InitTimer();
  void InitLabel();
  QLabel* SetLabel(Label_Type type);
  void PaintTouchTestOrSeachingPfileInfo();
  void ResumeChecks();
  bool ShowParkingReport();

  bool IsCurrentScreen() const;
  bool IsParkedWithParkingMode() const;
  bool IsDetectFileKeyShown() const;
  bool IsStandingBoxShown() const;
  QRect DetectFileKeyRect() const;

  void ShowAwake();
  void ArmTouchWait();
  void ArmTimers();
  void Notice(MessageBox_Id id);
  void ShowStandingBox(MessageBox_Id id, int value);
  void ShowLabel(QLabel* label, bool shown);
  void UpdateSpeedLabel();
  void PaintPlates(QPainter& painter, const QRect& exposed);

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
  int mIsUpdateMinute = 0;
  QString mStrTime;
  QString mStrVoltage;
  QString mStrLowVolCount;
  bool mEnableView = true;
  int mReturnVolume = 1;
  int mTouchComStartCount = 0;
  bool mInitOnResume = false;
  bool mIsDetectRecording = false;
  bool mIsDetectRecordingBlink = false;
  bool mPrepareReacamRecordingDelay = false;
  bool mDispPFileInfo = false;
  float mShownVoltage = 0;  // of mMainVolLabel
  int mSpeed = 0;           // km/h, of the last speed event
};
