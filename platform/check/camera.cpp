#include "platform/check/camera.h"

#include <sys/msg.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include "platform/gui_interface.h"

namespace platformcheck {
namespace {

constexpr int kSystemDriver = 7;
constexpr std::chrono::milliseconds kStep(1);   // between two looks at the queue
constexpr std::chrono::seconds kOurStart(30);   // of a recorder that we have started
constexpr std::chrono::seconds kTheirStart(2);  // of one that should run

using Clock = std::chrono::steady_clock;

}  // namespace

void Camera::Open() {
  mQueue = Timed("Gui_InitMessage()", Gui_InitMessage);
  Require(mQueue >= 0, Text("Gui_InitMessage() gave %d", mQueue));
  mSegment = Timed("Gui_InitSharedMemory()", Gui_InitSharedMemory);
  Require(mSegment >= 0, Text("Gui_InitSharedMemory() gave %d", mSegment));
  Timed("SysDrvInit(7)", [] { return SysDrvInit(kSystemDriver); });
}

int Camera::Command(int field, void* data, int length) {
  return Timed(Text("ControlSystemData(%d, data, %d)", field, length),
               [&] { return ControlSystemData(field, data, length); });
}

int Camera::Read(int offset, void* buffer, int length) {
  return Timed(Text("ShareMemReadByMid(%d, %d, buffer, %d)", mSegment, offset, length),
               [&] { return ShareMemReadByMid(mSegment, offset, buffer, length); });
}

int Camera::Write(int offset, void* data, int length) {
  return Timed(Text("ShareMemWriteByMid(%d, %d, %s, %d)", mSegment, offset, data ? "data" : "null", length),
               [&] { return ShareMemWriteByMid(mSegment, offset, data, length); });
}

void Camera::AwaitRecorder() {
  if (mOptions.ownsRecorder) mChannel.Ask(Order::Start);
  const auto limit = Clock::now() + (mOptions.ownsRecorder ? kOurStart : kTheirStart);
  do {
    if (Query(SFIELD_GET_ACC)) {
      mLongest = {};  // the waiting is no call of the row
      return;
    }
    if (mOptions.ownsRecorder && !mChannel.Ask(Order::Look)) throw Failure{"the recorder has ended"};
    Pass(50);
  } while (Clock::now() < limit);
  const std::string why = "no query of the ignition line (8665) was answered";
  if (mOptions.ownsRecorder) throw Failure{why};
  throw NotTried{why};
}

bool Camera::Send(const GUI_MSG_BUF& message) const {
  if (msgsnd(mQueue, &message, GUI_MSG_SIZE, IPC_NOWAIT) == 0) return true;
  Require(errno == EAGAIN, Text("msgsnd: %s", std::strerror(errno)));
  return false;
}

int Camera::Receive(long receiver, void* message, size_t room, int ms) const {
  const auto limit = Clock::now() + std::chrono::milliseconds(ms);
  for (;;) {
    const ssize_t size = msgrcv(mQueue, message, room, receiver, IPC_NOWAIT);
    if (size >= 0) return int(size);
    Require(errno == ENOMSG, Text("msgrcv: %s", std::strerror(errno)));
    if (Clock::now() >= limit) return 0;
    mChannel.Tell('c', "waiting for a message");
    std::this_thread::sleep_for(kStep);
  }
}

bool Camera::ReceiveFrom(int sender, GUI_MSG_BUF* message, int ms) const {
  const auto limit = Clock::now() + std::chrono::milliseconds(ms);
  do {
    if (Receive(GUI_ID, message, GUI_MSG_SIZE, ms) == GUI_MSG_SIZE && message->src == sender) return true;
  } while (Clock::now() < limit);
  return false;
}

void Camera::Order(platformcheck::Order order) {
  if (!mOptions.ownsRecorder) throw NotTried{"the recorder is not ours to hold or to end; give --recorder"};
  if (!mChannel.Ask(order)) throw NotTried{"the recorder could not be held, ended or started"};
}

void Camera::Pass(int ms) const {
  for (; ms > 0; ms -= 1000) {
    mChannel.Tell('c', "waiting");
    std::this_thread::sleep_for(std::chrono::milliseconds(std::min(ms, 1000)));
  }
}

}  // namespace platformcheck
