#pragma once

#include <QtGlobal>

/// When a touch was made, and since when the driver has seen what it could be meant for.

/// Nanoseconds of a clock that only runs forwards, the same for all threads. Any thread.
qint64 Now();

/// What is on top has changed: another screen, a box that came or went, the LCD that went on or off. GUI thread.
void TopHasChanged();

/// False for a touch that the reader saw before the latest change: it was meant for what was shown then. GUI thread.
bool IsMeantForTop(qint64 seen);
