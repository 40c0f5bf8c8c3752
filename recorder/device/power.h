#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include "recorder/base/hub.h"

namespace recorder {

/// The battery, the countdown to the power-off, and the automatic backlight.
class Power {
public:
  explicit Power(Hub& hub);

  /// The supply voltage now: what the slider says, in a slow swing of +-0.12 V.
  float Volts() const;

  /// The PWM value of the automatic backlight now; it changes from time to time.
  int LcdValue() const;

  /// Moves the battery, volts. Going below the cut-off of the battery's type (11.5 V, 23 V) starts the countdown,
  /// coming back stops it. False when the queue is full.
  bool SetBattery(double volts);

  /// The same without telling.
  void Remember(double volts);
  double Battery() const { return mBattery; }

  /// Starts the countdown, at whose end the recorder says power off; or stops it. False when the queue is full.
  bool Count(bool on);

  /// A step of the voltage compensation: 0 begins it, 2 and 4 end the measurements before and after the start of the
  /// engine. After both the verdict is told.
  void Compensate(int step);

  /// What the next verdicts are.
  enum class Verdict { Success, Failure, None };
  void SetVerdict(Verdict verdict) { mVerdict = verdict; }
  Verdict NextVerdict() const { return mVerdict; }

  /// Another battery, of 12 or 24 V; its voltage is that of a full one. The interface learns of it at its next start.
  /// False when the queue is full.
  bool SetType(bool is24);

  bool Counting() const { return mPowerOff.isActive(); }
  QJsonObject State() const;

private:
  bool IsLow() const;

  Hub& mHub;
  double mBattery = 12.34;
  QElapsedTimer mClock;
  QTimer mPowerOff;
  QTimer mTellVerdict;
  Verdict mVerdict = Verdict::Success;
  bool mMeasuredBefore = false;
  bool mMeasuredAfter = false;
};

}  // namespace recorder
