#pragma once

#include <array>

#include "gui/screen/longpress.h"
#include "gui/screen/tilescreen.h"
#include "gui/settings/config.h"

class QLabel;

/// Date, time and time zone of the recorder. Each step goes into the current settings at once; the clock itself is only
/// set after the confirmation. GUI thread.
class TimeLayout : public TileScreen {
  Q_OBJECT

public:
  enum Time_Type {
    Time_Year = 0,
    Time_Month = 1,
    Time_Day = 2,
    Time_AmPm = 3,
    Time_Hour = 4,
    Time_Minute = 5,
    Time_Gmt = 6,
    Time_Second = 7,
    Time_Max = 8,
  };
  static constexpr int kZones = 26;  ///< GMT-12 to GMT+13

  explicit TimeLayout(QWidget* parent);

  void MessageBoxHandler(int type, int x, int y, int messageId) override;

  /// The limits of a field of `time`; of the day those of its month.
  static int GetMinValue(Time_Type field);
  static int GetMaxValue(Time_Type field, const Date_Config& time);

  /// "GMT-12" .. "GMT-1", "0", "GMT+1" .. "GMT+13".
  static QString ZoneName(int index);

  /// The hour of the 24-hour clock.
  static int Hour24(const Date_Config& time);

public slots:
  /// The finger has left the panel.
  void touchReleaseEvent(bool released);

protected:
  void FillPage(Page& page) override;
  void TouchPage(int x, int y) override;
  QList<TouchArea> PageAreas() const override;
  void PressHome() override;
  void PressBack() override;

private:
  struct Field;
  static const Field kFields[];

  int& ValueOf(Time_Type field);
  void ProcessUp();
  void ProcessDown();
  void Step(int from, int to, int by);
  void UpdateLabels();
  void StoreTime();
  void SelectField(Time_Type field);
  void PressConfirm();
  void PressStep(int x, int y, void (TimeLayout::*step)());
  bool CompareTimeSetting();
  static void ResetFlag();

  Date_Config mCurTime;  // when the screen was opened
  Date_Config mTimeSet;  // as edited
  int mOldGmt;           // index of the zone when the screen was opened
  int mCurItem = Time_Year;
  int mOnlyGmt = 0;  // 1: only the zone was changed
  LongPress mLongPress;
  std::array<QLabel*, Time_Second> mLabels;
};
