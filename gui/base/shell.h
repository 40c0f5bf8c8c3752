#pragma once

#include <QString>

/// Says on the diagnostic output, one line each, which of the commands that are asked of the shell are missing, and the
/// shell itself. It looks for their files and runs nothing.
void CheckShell();

/// Runs a shell command with system() and waits for it. Its result is nobody's business: device work either happens or
/// not.
void RunShell(const QString& command);

/// "sync": what was written reaches the card.
void SyncFiles();

/// The key click, in the background.
void PlayClick();

/// The key click of the LCD key: blocks until the sound has played.
void PlayClickAndWait();

/// The backlight's PWM value, 0 (dark) to 100000.
void WriteBacklight(int pwm);
