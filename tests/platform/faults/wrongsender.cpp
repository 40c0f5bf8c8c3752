// Hands the recorder's messages on as if they were the interface's own.
#include "platform/gui_interface.h"
#include "tests/platform/faults/next.h"
#include "tests/platform/faults/relay.h"

int Gui_InitMessage() {
  return Relay(Next<decltype(Gui_InitMessage)>("Gui_InitMessage")(), [](GUI_MSG_BUF* message) {
    message->src = GUI_ID;
    return int{GUI_MSG_SIZE};
  });
}
