/* The smallest platform library: a vendor's beginning. -DLACKS_MESSAGE and -DNEEDS_OTHER make it a faulty one. */
#include "platform/Msg_Def.h"
#include "platform/devmgr_interface.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"

#ifdef NEEDS_OTHER
int OtherLibrary(void);
#else
static int OtherLibrary(void) {
  return -1;
}
#endif

#ifndef LACKS_MESSAGE
int Gui_InitMessage(void) {
  return -1;
}
#endif

int Gui_InitSharedMemory(void) {
  return -1;
}

int ShareMemReadByMid(int mid, int offset, void* buffer, int length) {
  return mid < 0 || offset < 0 || !buffer || length < 0 ? -1 : 0;
}

int ShareMemWriteByMid(int mid, int offset, void* data, int length) {
  return mid < 0 || offset < 0 || !data || length < 0 ? -1 : 0;
}

int SysDrvInit(int id) {
  return id;
}

int ControlSystemData(int field, void* data, int length) {
  return field == SFIELD_REG_CLIENT && data && length == 1 ? 0 : OtherLibrary();
}

int ipnc_gio_write(int line, int value) {
  return line < 0 || value < 0 ? -1 : 0;
}

int DevMgr_RegClient(int id) {
  return id;
}

int DevMgr_Control(int request, void* data, int length) {
  return request < DEV_MAX && data && length >= 0 ? 0 : -1;
}
