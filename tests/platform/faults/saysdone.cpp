// Calls every command done.
#include <algorithm>

#include "platform/sysctrl.h"
#include "tests/platform/faults/next.h"

int ControlSystemData(int field, void* data, int length) {
  return std::max(Next<decltype(ControlSystemData)>("ControlSystemData")(field, data, length), 0);
}
