// Has the fault that a row of the check must find: the environment's FAULT names the row.
#include <sys/msg.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "platform/devmgr_interface.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"
#include "tests/platform/faults/next.h"
#include "tests/platform/faults/relay.h"

namespace {

constexpr useconds_t kTooLong = 700000;

bool Has(const char* fault) {
  const char* given = std::getenv("FAULT");
  return given && std::strcmp(given, fault) == 0;
}

int Spoil(GUI_MSG_BUF* message) {
  if (Has("event-sender")) message->src = 0;
  if (Has("event-fields")) message->ack = 7;
  if (Has("event-payload")) message->offset = INT_MAX / 2;
  if (Has("event-replies")) {
    message->ack = GUI_ACK_YES;
    message->ret = GUI_RET_NODATA;
  }
  return Has("event-size") ? GUI_MSG_SIZE + 12 : GUI_MSG_SIZE;
}

bool Sleeps(pid_t thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string number, name, state;
  return file >> number >> name >> state && state == "S";
}

// Takes what comes for `receiver`; changes and returns it, or keeps it. Waits for it already when this returns: so it
// is the first.
void Steal(int queue, long receiver, bool returns) {
  static std::atomic<pid_t> thief = 0;
  std::thread([=] {
    GUI_MSG_BUF message{};
    thief = gettid();
    while (msgrcv(queue, &message, GUI_MSG_SIZE, receiver, 0) >= 0) {
      ++message.cmd;
      if (returns) msgsnd(queue, &message, GUI_MSG_SIZE, 0);
      usleep(1000);
    }
  }).detach();
  while (thief == 0 || !Sleeps(thief)) usleep(100);
}

}  // namespace

int Gui_InitMessage() {
  static int calls = 0;
  const int queue = Next<decltype(Gui_InitMessage)>("Gui_InitMessage")();
  if (Has("queue-opens")) return -1;
  if (Has("queue-stays") && ++calls > 1) return queue + 1;
  if (Has("queue-carries")) Steal(queue, GUI_ID, true);
  if (Has("queue-replies")) Steal(queue, 17, false);
  if (Has("queue-room")) {
    msqid_ds state{};
    msgctl(queue, IPC_STAT, &state);
    state.msg_qbytes = 50 * GUI_MSG_SIZE;
    msgctl(queue, IPC_SET, &state);
  }
  for (const char* fault : {"event-size", "event-sender", "event-fields", "event-payload", "event-replies"})
    if (Has(fault)) return Relay(queue, Spoil);
  return queue;
}

int Gui_InitSharedMemory() {
  return Has("segment-opens") ? -1 : Next<decltype(Gui_InitSharedMemory)>("Gui_InitSharedMemory")();
}

int ShareMemReadByMid(int mid, int offset, void* buffer, int length) {
  const int result = Next<decltype(ShareMemReadByMid)>("ShareMemReadByMid")(mid, offset, buffer, length);
  if (Has("memory-keeps") && length > 0) ++*static_cast<char*>(buffer);
  if (Has("memory-length") && length < 100) static_cast<char*>(buffer)[length] = '\0';
  return Has("memory-outside") ? 0 : result;
}

int ShareMemWriteByMid(int mid, int offset, void* data, int length) {
  std::vector<char> zeros(size_t(length) + 1);
  if (Has("memory-null") && !data) data = zeros.data();
  return Next<decltype(ShareMemWriteByMid)>("ShareMemWriteByMid")(mid, offset, data, length);
}

int SysDrvInit(int) {
  if (Has("calls-quick")) usleep(kTooLong);
  return Has("driver-opens") ? -1 : 0;
}

int DevMgr_Control(int, void*, int) {
  return Has("devices-register") ? -1 : 0;
}

int ipnc_gio_write(int, int value) {
  return Has("lcd-line") && value == 1 ? -1 : 0;
}

int ControlSystemData(int field, void* data, int length) {
  static int calls = 0;
  static bool hasFailed = false;
  std::vector<char> copy(static_cast<char*>(data), static_cast<char*>(data) + length);
  if (Has("command-quick") && field == SFIELD_SET_VIEWREAR) usleep(kTooLong);
  if (Has("command-carried") && field == SFIELD_SET_LCD_BRIGHT) return -EINVAL;
  if (Has("command-receiving") && ++calls > 2) return -EBUSY;
  if (Has("refusal-over") && hasFailed) return -EBUSY;
  const auto next = Next<decltype(ControlSystemData)>("ControlSystemData");
  const int result = next(field, Has("query-answered") ? copy.data() : data, length);
  hasFailed = result < 0;
  if (Has("command-length") && field == SFIELD_PLAY_VIDEO) static_cast<char*>(data)[length] = '\0';
  if (Has("query-volts") && field == SFIELD_GET_VOLTAGE) *static_cast<int*>(data) = 12;
  return Has("refusal-told") ? std::max(result, 0) : result;
}
