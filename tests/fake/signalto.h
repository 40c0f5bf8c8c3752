#pragma once

#include <signal.h>

/// kill() for one process. 0 and less mean groups to it, the one of the tests and who started them among them: such a
/// number, of a process that was not found or could not be forked, is refused. False also when there is no such
/// process.
inline bool SignalTo(pid_t process, int number) {
  return process > 0 && kill(process, number) == 0;
}
