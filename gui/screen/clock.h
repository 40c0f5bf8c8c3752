#pragma once

#include "gui/settings/config.h"

inline constexpr int kSecondMs = 1000;

/// The clock rules of the screens. Hours of Date_Config are 0..23 in 24-hour form; in 12-hour form 1..12 with Apm.

/// Half of the day, Date_Config::Apm.
enum { AM = 0, PM = 1 };

/// Date and time, both of one moment.
Date_Config ReadClock();

/// 1 when a field is out of range: year 0..2099, month 1..12, day 1..31, hour 0..23, minute and second 0..59.
int ChkTimeError(const Date_Config& time);

/// 2012/01/01 00:00:00: what is shown instead of a broken clock.
Date_Config DefaultTime();

/// 24-hour to 12-hour form: 0 is 12 AM, 12 is 12 PM.
Date_Config ConvTime12H(const Date_Config& time);
