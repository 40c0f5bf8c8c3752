#pragma once

#include <QProcessEnvironment>

/// Gives the interface the device's clock instead of this machine's, by Debian's libfaketime: only the wall clock.
/// Timers and waits go by the machine's monotonic clock, and files keep their times.
///
/// The library shares a semaphore and some memory between a program and its children; a program that is killed leaves
/// its own behind. So the bench makes them, one pair for each PLATFORM_KEY, and takes them away.
namespace fakeclock {

/// Adds to the environment of the next start what makes `program` read the device's clock below `root`. When the
/// library is not there for it, or does not reach it, nothing is added and one sentence says why: then the clock is
/// this machine's. A program of 32 bits it does not reach: it knows none of the calls that give such a one 64-bit
/// times.
QString Give(QProcessEnvironment* environment, const QString& root, const QString& program);

/// Makes the pair anew: a program that was killed may have held the semaphore.
bool Renew();

void Remove();

}  // namespace fakeclock
