#pragma once

#include <sys/msg.h>

#include <cstdlib>
#include <thread>

#include "platform/Msg_Def.h"

/// A message with room for more than it should have.
struct LongMessage {
  GUI_MSG_BUF message;
  char more[64];
};

/// Another queue than the recorder's, to which its messages are handed on as `spoil` leaves them; it gives their size.
/// The queue has the key after those of the recorder's queue and segment; the test removes it.
inline int Relay(int recorders, int (*spoil)(GUI_MSG_BUF*)) {
  const key_t key = key_t(std::strtoul(std::getenv("PLATFORM_KEY"), nullptr, 10) + 2);
  const int interfaces = msgget(key, IPC_CREAT | 0600);
  std::thread([=] {
    LongMessage buffer{};
    while (msgrcv(recorders, &buffer, GUI_MSG_SIZE, GUI_ID, 0) >= 0) {
      const int size = spoil(&buffer.message);
      msgsnd(interfaces, &buffer, size_t(size), 0);
    }
  }).detach();
  return interfaces;
}
