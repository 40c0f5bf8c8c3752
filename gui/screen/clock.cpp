#include "gui/screen/clock.h"

#include "gui/base/globals.h"

Date_Config ReadClock() {
  const QDateTime now = gClock();
  Date_Config time{};
  now.date().getDate(&time.Year, &time.Month, &time.Day);
  time.Hour = now.time().hour();
  time.Minute = now.time().minute();
  time.Second = now.time().second();
  return time;
}

int ChkTimeError(const Date_Config& time) {
  const auto outside = [](int value, int least, int most) { return value < least || value > most; };
  return outside(time.Year, 0, 2099) || outside(time.Month, 1, 12) || outside(time.Day, 1, 31) ||
                 outside(time.Hour, 0, 23) || outside(time.Minute, 0, 59) || outside(time.Second, 0, 59)
             ? 1
             : 0;
}

Date_Config DefaultTime() {
  Date_Config time{};
  time.Year = 2012;
  time.Month = 1;
  time.Day = 1;
  return time;
}

Date_Config ConvTime12H(const Date_Config& time) {
  Date_Config converted = time;
  converted.Apm = time.Hour < 12 ? AM : PM;
  converted.Hour = time.Hour % 12 == 0 ? 12 : time.Hour % 12;
  return converted;
}
