#include "gui/setup/timelayout.h"

#include <QDate>
#include <QLabel>
#include <algorithm>

#include "gui/base/eventgate.h"
#include "gui/base/language.h"
#include "gui/base/shell.h"
#include "gui/screen/clock.h"
#include "gui/screen/label.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/page.h"
#include "gui/screen/screenof.h"
#include "gui/settings/settings.h"

SCREEN(TIMELAYOUT, TimeLayout)

namespace {
constexpr int kRepeatMs = 70;
constexpr int kZeroZone = 12;  // index

constexpr QPoint kConfirm(310, 0), kDown(87, 264), kUp(247, 264);
constexpr QRect kConfirmArea(QPoint(311, 1), QPoint(399, 59));
constexpr QRect kDownArea(QPoint(88, 265), QPoint(232, 310)), kUpArea(QPoint(248, 265), QPoint(392, 310));
}  // namespace

struct TimeLayout::Field {
  Time_Type type;
  const char* name;  // of its label
  QRect picture;
  const Button_Config* key;  // the pressed one is that of the selected field
  int Date_Config::*value;
};
const TimeLayout::Field TimeLayout::kFields[] = {
    {Time_Year, "mYearLabel", {74, 68, 139, 49}, &gTimeSet.Year, &Date_Config::Year},
    {Time_Month, "mMonthLabel", {249, 68, 77, 49}, &gTimeSet.Number, &Date_Config::Month},
    {Time_Day, "mDayLabel", {359, 68, 77, 49}, &gTimeSet.Number, &Date_Config::Day},
    {Time_AmPm, "mAmPmLabel", {116, 133, 97, 49}, &gTimeSet.AmPm, &Date_Config::Apm},
    {Time_Hour, "mHourLabel", {249, 133, 77, 49}, &gTimeSet.Number, &Date_Config::Hour},
    {Time_Minute, "mMinuteLabel", {359, 133, 77, 49}, &gTimeSet.Number, &Date_Config::Minute},
    {Time_Gmt, "mGmtLabel", {249, 198, 219, 49}, &gTimeSet.Gmt, &Date_Config::gmt},
};

TimeLayout::TimeLayout(QWidget* parent)
    : TileScreen(parent, gTimeSet.Title, {}),
      mCurTime(ConvTime12H(ReadClock())),
      mOldGmt(int(std::clamp(qint64{gEnvirnmentSettings.mSetting.gmt} + kZeroZone, qint64{0}, qint64{kZones - 1}))),
      mLongPress(*this, kRepeatMs) {
  mCurTime.gmt = mOldGmt;
  mTimeSet = mCurTime;
  for (const Field& field : kFields)
    mLabels[size_t(field.type)] =
        AddLabel(this, {field.name, field.picture.adjusted(0, 0, 0, -1), 26, {255, 255, 255}, Qt::AlignHCenter, true});
  UpdateLabels();
}

// ---- values

int TimeLayout::GetMinValue(Time_Type field) {
  static constexpr int kLeast[] = {2000, 1, 1, 0, 1, 0, 0, 0};
  return kLeast[field];
}

int TimeLayout::GetMaxValue(Time_Type field, const Date_Config& time) {
  static constexpr int kMost[] = {2099, 12, 31, 1, 12, 59, kZones - 1, 59};
  return field == Time_Day ? QDate(time.Year, time.Month, 1).daysInMonth() : kMost[field];
}

QString TimeLayout::ZoneName(int index) {
  const int hours = index - kZeroZone;
  return hours == 0 ? QStringLiteral("0") : QString::asprintf("GMT%+d", hours);
}

int TimeLayout::Hour24(const Date_Config& time) {
  return time.Hour % 12 + (time.Apm == PM ? 12 : 0);
}

int& TimeLayout::ValueOf(Time_Type field) {
  return mTimeSet.*kFields[field].value;
}

void TimeLayout::ProcessUp() {
  const auto field = Time_Type(mCurItem);
  Step(GetMaxValue(field, mTimeSet), GetMinValue(field), 1);
}

void TimeLayout::ProcessDown() {
  const auto field = Time_Type(mCurItem);
  Step(GetMinValue(field), GetMaxValue(field, mTimeSet), -1);
}

// One step, and from the limit `from` to the limit `to`.
void TimeLayout::Step(int from, int to, int by) {
  int& value = ValueOf(Time_Type(mCurItem));
  value = (value - from) * by >= 0 ? to : value + by;
  if (mCurItem == Time_Year || mCurItem == Time_Month)
    mTimeSet.Day = std::min(mTimeSet.Day, GetMaxValue(Time_Day, mTimeSet));
  StoreTime();
  UpdateLabels();
  repaint();
}

void TimeLayout::StoreTime() {
  Setting_Config& setting = gEnvirnmentSettings.mSetting;
  setting.year = mTimeSet.Year;
  setting.month = mTimeSet.Month;
  setting.day = mTimeSet.Day;
  setting.hour = Hour24(mTimeSet);
  setting.min = mTimeSet.Minute;
  setting.gmt = mTimeSet.gmt - kZeroZone;
}

bool TimeLayout::CompareTimeSetting() {
  const auto moment = [](const Date_Config& time) {
    return std::array{time.Year, time.Month, time.Day, Hour24(time), time.Minute};
  };
  const bool timeChanged = moment(mTimeSet) != moment(mCurTime);
  const bool zoneChanged = mTimeSet.gmt != mOldGmt;
  mOnlyGmt = zoneChanged && !timeChanged ? 1 : 0;
  return timeChanged || zoneChanged;
}

// ---- touches

QList<TouchArea> TimeLayout::PageAreas() const {
  QList<TouchArea> areas{
      {kConfirmArea, QStringLiteral("confirm")}, {kDownArea, QStringLiteral("down")}, {kUpArea, QStringLiteral("up")}};
  for (const Field& field : kFields) areas.append({field.picture.adjusted(1, 1, 0, 0), QLatin1String(field.name)});
  return areas;
}

void TimeLayout::TouchPage(int x, int y) {
  for (const Field& field : kFields)
    if (field.picture.adjusted(1, 1, 0, 0).contains(x, y)) return SelectField(field.type);
  if (kConfirmArea.contains(x, y)) PressConfirm();
  if (kDownArea.contains(x, y)) PressStep(x, y, &TimeLayout::ProcessDown);
  if (kUpArea.contains(x, y)) PressStep(x, y, &TimeLayout::ProcessUp);
}

void TimeLayout::SelectField(Time_Type field) {
  PlayClick();
  mCurItem = field;
  repaint();
}

void TimeLayout::PressStep(int x, int y, void (TimeLayout::*step)()) {
  if (mLongPress.Touch(x, y)) PlayClick();
  (this->*step)();
}

void TimeLayout::touchReleaseEvent(bool released) {
  if (!gEventGate.Enter(this, [this, released] { touchReleaseEvent(released); })) return;
  if (released) mLongPress.Release();
}

void TimeLayout::ResetFlag() {
  gEnvirnmentSettings.mSetting.time_set_flag = 0;
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Time_Set_Flag, 0);
}

void TimeLayout::PressHome() {
  ResetFlag();
  EntryPreview();
}

void TimeLayout::PressBack() {
  ResetFlag();
  Back();
}

void TimeLayout::PressConfirm() {
  if (CompareTimeSetting())
    PaintMessageBox(TIME_CHANGE, false, 0, 0);
  else
    PaintMessageBox(TIME_SAME, false, 0, kNoticeMs);
}

void TimeLayout::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != TIME_CHANGE) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  if (button == MessageBox::Button::Right) {
    DelMessageBox();
    mOnlyGmt = 0;
    gEnvirnmentSettings.mOldSetting.time_set_flag = 0;
    ResetFlag();
    return;
  }
  gEnvirnmentSettings.AllGetSettingConfig();
  gEnvirnmentSettings.mSetting.time_set_flag = mOnlyGmt ? 0 : 1;
  StoreTime();
  EntryPreview();
}

// ---- painting

void TimeLayout::UpdateLabels() {
  for (const Field& field : kFields) {
    const int value = mTimeSet.*field.value;
    mLabels[size_t(field.type)]->setText(field.type == Time_Gmt ? ZoneName(value)
                                         : field.type == Time_AmPm
                                             ? (value == AM ? DateLocale().amText() : DateLocale().pmText())
                                             : QString::asprintf("%02d", value));
  }
}

void TimeLayout::FillPage(Page& page) {
  page.Add(kPage, gTimeSet.Bg);
  for (const Field& field : kFields)
    page.Add(field.picture.topLeft(), field.type == mCurItem ? field.key->PressImage : field.key->ReleaseImage);
  page.Add(kDown, gTimeSet.Down.ReleaseImage);
  page.Add(kUp, gTimeSet.Up.ReleaseImage);
  page.Add(kConfirm, gTimeSet.Confirm.ReleaseImage);
}
