// Waits for ever for a recorder that does not answer.
#include <unistd.h>

#include <cerrno>

#include "platform/sysctrl.h"
#include "tests/platform/faults/next.h"

int ControlSystemData(int field, void* data, int length) {
  const int result = Next<decltype(ControlSystemData)>("ControlSystemData")(field, data, length);
  while (result == -ETIMEDOUT) pause();
  return result;
}
