#pragma once

#include <QProcessEnvironment>

/// Gives the interface the device's clock instead of this machine's, by Debian's libfaketime: only the wall clock.
/// Timers and waits go by the machine's monotonic clock, and files keep their times.
///
/// The library shares a semaphore and some memory between a program and its children; a program that is killed leaves
/// its own behind. So the bench makes them, one pair for each PLATFORM_KEY, and takes them away.
namespace fakeclock {

/// Adds to the environment of the next start what makes the library read the device's clock below `root`. Nothing when
/// it is not installed, or cannot be used: then the clock is this machine's.
void Give(QProcessEnvironment* environment, const QString& root);

/// Makes the pair anew: a program that was killed may have held the semaphore.
bool Renew();

void Remove();

}  // namespace fakeclock
