#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include "recorder/hub.h"

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

  /// Starts the countdown, at whose end the recorder says power off; or stops it. False when the queue is full.
  bool Count(bool on);

  bool Counting() const { return mPowerOff.isActive(); }
  QJsonObject State() const;

private:
  Hub& mHub;
  double mBattery = 12.34;
  QElapsedTimer mClock;
  QTimer mPowerOff;
};

}  // namespace recorder
