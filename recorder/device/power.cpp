#include "recorder/device/power.h"

#include <array>
#include <cmath>

namespace recorder {
namespace {

constexpr double kSwing = 0.12;  // volts
constexpr double kPi = 3.14159265358979;
constexpr double kFull12 = 12.34;
constexpr double kCutOff12 = 11.5;
constexpr double kCutOff24 = 23.0;
constexpr std::array kLcdValues{60000, 48000, 72000, 35000, 90000};

}  // namespace

Power::Power(Hub& hub) : mHub(hub) {
  mClock.start();
  mPowerOff.setSingleShot(true);
  mPowerOff.callOnTimeout([this] {
    mHub.sink.Send(RECV_ZEL_STATUS_POWER_OFF);
    emit mHub.sink.StateChanged();
  });
  mTellVerdict.setSingleShot(true);
  mTellVerdict.callOnTimeout(
      [this] { mHub.sink.Send(RECV_ZEL_STATUS_VOLT_SET, mVerdict == Verdict::Success ? 1 : 0); });
}

void Power::Compensate(int step) {
  if (step == 0) mMeasuredBefore = mMeasuredAfter = false;
  if (step == 2) mMeasuredBefore = true;
  if (step == 4) mMeasuredAfter = true;
  if (!mMeasuredBefore || !mMeasuredAfter) return;
  mMeasuredBefore = mMeasuredAfter = false;
  if (mVerdict != Verdict::None) mTellVerdict.start(mHub.delays.verdict);
}

bool Power::SetType(bool is24) {
  mHub.settings.Set(Set_Cfg_Power_Cut_lvl_Type, is24 ? 1 : 0);
  return SetBattery(is24 ? 2 * kFull12 : kFull12);
}

float Power::Volts() const {
  const double swings = static_cast<double>(mClock.elapsed()) / mHub.delays.drift;
  return static_cast<float>(mBattery + kSwing * std::sin(2 * kPi * swings));
}

int Power::LcdValue() const {
  return kLcdValues[static_cast<size_t>(mClock.elapsed() / mHub.delays.lcdStep) % kLcdValues.size()];
}

bool Power::IsLow() const {
  return mBattery < (mHub.settings.Get(Set_Cfg_Power_Cut_lvl_Type) == 1 ? kCutOff24 : kCutOff12);
}

bool Power::SetBattery(double volts) {
  const bool wasLow = IsLow();
  mBattery = volts;
  return IsLow() == wasLow || Count(!wasLow);
}

void Power::Remember(double volts) {
  mBattery = volts;
  if (IsLow()) mPowerOff.start(mHub.delays.powerOff);
}

bool Power::Count(bool on) {
  if (on)
    mPowerOff.start(mHub.delays.powerOff);
  else
    mPowerOff.stop();
  return mHub.sink.Send(RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT, on);
}

QJsonObject Power::State() const {
  return {{QStringLiteral("battery"), mBattery},
          {QStringLiteral("volts"), std::round(Volts() * 1000.0) / 1000.0},
          {QStringLiteral("lcdValue"), LcdValue()},
          {QStringLiteral("counting"), Counting()}};
}

}  // namespace recorder
