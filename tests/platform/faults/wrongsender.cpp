// Hands the recorder's messages on as if they were the interface's own.
#include <sys/msg.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "platform/Msg_Def.h"
#include "platform/gui_interface.h"
#include "tests/platform/faults/next.h"

int Gui_InitMessage() {
  const int recorders = Next<decltype(Gui_InitMessage)>("Gui_InitMessage")();
  // The key after those of the queue and the segment; the test removes this queue.
  static const int interfaces =
      msgget(key_t(std::strtoul(std::getenv("PLATFORM_KEY"), nullptr, 10) + 2), IPC_CREAT | 0600);
  std::thread([recorders] {
    GUI_MSG_BUF message{};
    while (msgrcv(recorders, &message, GUI_MSG_SIZE, GUI_ID, 0) >= 0) {
      message.src = GUI_ID;
      msgsnd(interfaces, &message, GUI_MSG_SIZE, 0);
    }
  }).detach();
  return interfaces;
}
