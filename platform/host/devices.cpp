// The calls that reach for hardware: a machine that is no camera has none, so they only tell right from wrong.
#include <cerrno>

#include "platform/devmgr_interface.h"
#include "platform/sysctrl.h"

int SysDrvInit(int id) {
  return id < 0 ? -EINVAL : 0;
}

int ipnc_gio_write(int line, int value) {
  return line < 0 || value < 0 || value > 1 ? -EINVAL : 0;
}

int DevMgr_RegClient(int id) {
  return id < 0 ? -EINVAL : 0;
}

int DevMgr_Control(int request, void* data, int length) {
  const bool known = request >= DEV_REG_CLIENT && request < DEV_MAX;
  return !known || length < 0 || (!data && length > 0) ? -EINVAL : 0;
}
