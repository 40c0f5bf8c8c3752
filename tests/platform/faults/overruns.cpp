// Ends a path by zero behind the data.
#include "platform/sysctrl.h"
#include "tests/platform/faults/next.h"

int ControlSystemData(int field, void* data, int length) {
  const int result = Next<decltype(ControlSystemData)>("ControlSystemData")(field, data, length);
  if (field == SFIELD_PLAY_VIDEO) static_cast<char*>(data)[length] = '\0';
  return result;
}
