// The calls that open, register and switch something.
#include <sys/msg.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "platform/check/demand.h"
#include "platform/devmgr_interface.h"
#include "platform/gui_interface.h"

namespace platformcheck {
namespace {

constexpr int kDeviceManagerClient = 2;
constexpr int kLcdEnableLine = 46;

struct Call {
  const char* what;
  std::function<int()> make;
};

int SetThresholds() {
  int thresholds[4] = {10, 20, 30, 0};
  return DevMgr_Control(DEV_SET_GSENSOR_THRESHOLD, thresholds, sizeof thresholds);
}

int StartMonitoring() {
  int periods[4] = {1000000, 200000, 300000, 500000};
  return DevMgr_Control(DEV_START_MONITORING, periods, sizeof periods);
}

const Call kOpening[] = {{"Gui_InitMessage()", Gui_InitMessage}, {"Gui_InitSharedMemory()", Gui_InitSharedMemory}};
const Call kDriver[] = {{"SysDrvInit(7)", [] { return SysDrvInit(7); }}};
const Call kDevices[] = {{"DevMgr_RegClient(2)", [] { return DevMgr_RegClient(kDeviceManagerClient); }},
                         {"DevMgr_Control(DEV_SET_GSENSOR_THRESHOLD, data, 16)", SetThresholds},
                         {"DevMgr_Control(DEV_START_MONITORING, data, 16)", StartMonitoring}};
const Call kLcdLine[] = {{"ipnc_gio_write(46, 0)", [] { return ipnc_gio_write(kLcdEnableLine, 0); }},
                         {"ipnc_gio_write(46, 1)", [] { return ipnc_gio_write(kLcdEnableLine, 1); }}};

template <size_t n>
void Succeed(Camera& camera, const Call (&calls)[n]) {
  for (const Call& call : calls) {
    const int result = camera.Timed(call.what, call.make);
    Require(result >= 0, Text("%s gave %d", call.what, result));
  }
}

void QueueOpens(Camera& camera) {
  const int queue = camera.Timed("Gui_InitMessage()", Gui_InitMessage);
  Require(queue >= 0, Text("it gave %d", queue));
  msqid_ds state{};
  Require(msgctl(queue, IPC_STAT, &state) == 0,
          Text("it gave %d, and msgctl says of that: %s", queue, std::strerror(errno)));
  Require((state.msg_perm.mode & 0600) == 0600, Text("its mode is %o", state.msg_perm.mode));
}

void SegmentOpens(Camera& camera) {
  const int segment = camera.Timed("Gui_InitSharedMemory()", Gui_InitSharedMemory);
  Require(segment >= 0, Text("it gave %d", segment));
}

// The queue of another process that has just started; negative without one.
int QueueOfAnotherProcess(Camera& camera) {
  int ends[2];
  Require(pipe(ends) == 0, std::strerror(errno));
  const pid_t other = fork();
  if (other == 0) {
    const int queue = Gui_InitMessage();
    _exit(write(ends[1], &queue, sizeof queue) == sizeof queue ? 0 : 1);
  }
  close(ends[1]);
  int queue = -1;
  camera.Timed("Gui_InitMessage() in another process",
               [&] { return read(ends[0], &queue, sizeof queue) > 0 ? 0 : -1; });
  close(ends[0]);
  if (other > 0) waitpid(other, nullptr, 0);
  return queue;
}

void QueueStays(Camera& camera) {
  const int others = QueueOfAnotherProcess(camera);
  for (int call = 1; call <= 2; ++call) {
    const int queue = camera.Timed("Gui_InitMessage()", Gui_InitMessage);
    Require(queue == others, Text("call %d gave %d, another process had %d", call, queue, others));
  }
}

void DriverOpens(Camera& camera) {
  Succeed(camera, kDriver);
}

void DevicesRegister(Camera& camera) {
  Succeed(camera, kDevices);
}

void LcdLineSwitches(Camera& camera) {
  Succeed(camera, kLcdLine);
}

template <size_t n>
void TakeNoLonger(Camera& camera, const Call (&calls)[n]) {
  for (const Call& call : calls) {
    Milliseconds shortest = Milliseconds::max();
    for (int i = 0; i < kTries; ++i) {
      camera.Timed(call.what, call.make);
      shortest = std::min(shortest, camera.Last());
    }
    Require(shortest.count() <= kLimitMs + kSlackMs, Text("%s took %.0f ms", call.what, shortest.count()));
  }
}

void CallsAreQuick(Camera& camera) {
  TakeNoLonger(camera, kOpening);
  TakeNoLonger(camera, kDriver);
  TakeNoLonger(camera, kDevices);
  TakeNoLonger(camera, kLcdLine);
}

}  // namespace

const std::vector<Demand>& CallDemands() {
  static const std::vector<Demand> demands = {
      {"queue-opens",
       "`Gui_InitMessage` gives the id of a System V message queue, 0 or more, that the process may read and write.",
       QueueOpens},
      {"queue-stays",
       "Each call of `Gui_InitMessage`, in every process, gives the same queue: an interface that was started again "
       "hears the same recorder.",
       QueueStays},
      {"segment-opens", "`Gui_InitSharedMemory` gives the id of the segment, 0 or more.", SegmentOpens},
      {"driver-opens", "`SysDrvInit(7)` gives 0 or more.", DriverOpens},
      {"devices-register",
       "`DevMgr_RegClient(2)` and `DevMgr_Control` with 16 bytes of thresholds and of periods give 0 or more.",
       DevicesRegister},
      {"lcd-line", "`ipnc_gio_write(46, 0)` and `ipnc_gio_write(46, 1)` give 0 or more.", LcdLineSwitches},
      {"calls-quick", "Each of these calls takes 500 ms at most.", CallsAreQuick},
  };
  return demands;
}

}  // namespace platformcheck
