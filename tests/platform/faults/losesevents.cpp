// Throws the oldest messages away when more than 64 wait.
#include <sys/msg.h>
#include <unistd.h>

#include <thread>

#include "platform/Msg_Def.h"
#include "platform/gui_interface.h"
#include "tests/platform/faults/next.h"

int Gui_InitMessage() {
  constexpr msgqnum_t kMost = 64;
  const int queue = Next<decltype(Gui_InitMessage)>("Gui_InitMessage")();
  std::thread([queue] {
    msqid_ds state{};
    GUI_MSG_BUF message{};
    while (msgctl(queue, IPC_STAT, &state) == 0)
      if (state.msg_qnum <= kMost || msgrcv(queue, &message, GUI_MSG_SIZE, 0, IPC_NOWAIT) < 0) usleep(1000);
  }).detach();
  return queue;
}
