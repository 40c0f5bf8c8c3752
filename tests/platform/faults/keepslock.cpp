// Keeps its lock when a call has failed.
#include <mutex>

#include "platform/sysctrl.h"
#include "tests/platform/faults/next.h"

namespace {
std::mutex lock;
}

int ControlSystemData(int field, void* data, int length) {
  lock.lock();
  const int result = Next<decltype(ControlSystemData)>("ControlSystemData")(field, data, length);
  if (result < 0) return result;
  lock.unlock();
  return result;
}
