// Commands to a recorder that runs.
#include <sys/msg.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <thread>

#include "platform/check/demand.h"

namespace platformcheck {
namespace {

constexpr int kNobodysField = 1;
constexpr float kMostVolts = 100;

// The data of a command, with ground behind it.
std::vector<char> DataOf(const Command& command) {
  std::vector<char> data(size_t(command.bytes) + kGround, kUntouched);
  std::fill_n(data.begin(), command.bytes, '\0');
  std::memcpy(data.data(), &command.value, std::min(sizeof command.value, size_t(command.bytes)));
  if (command.field == SFIELD_PLAY_VIDEO) std::strcpy(data.data(), "/mnt/mmc/none.avi");
  if (command.field == SFIELD_SET_SETUP_COMPLETE) data[19] = char(200);  // the model
  return data;
}

bool IsSent(const Camera& camera, const Command& command) {
  return command.kind != CommandKind::Erase || camera.Given().erases;
}

void AreCarriedOut(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  std::string refused;
  for (const Command& command : kCommands) {
    if (!IsSent(camera, command)) {
      camera.Note(Text("%d %-41s %3d bytes  left out: give --erase", command.field, command.name, command.bytes));
      continue;
    }
    const bool mayBeRefused = command.kind == CommandKind::State || command.kind == CommandKind::Erase;
    int result = -1;
    for (int i = 0; i < kTries && result < 0; ++i) {
      result = camera.Command(command.field, DataOf(command).data(), command.bytes);
      if (mayBeRefused) break;
    }
    camera.Note(Text("%d %-41s %3d bytes  result %d  %.1f ms", command.field, command.name, command.bytes, result,
                     camera.Last().count()));
    if (result < 0 && !mayBeRefused) refused += Text(" %d (%d)", command.field, result);
  }
  Require(refused.empty(), "refused:" + refused);
}

void AnswersAreQuick(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  for (const Command& command : kCommands) {
    if (!IsSent(camera, command)) continue;
    Milliseconds shortest = Milliseconds::max();
    for (int i = 0; i < kTries && shortest.count() > kLimitMs; ++i) {
      camera.Command(command.field, DataOf(command).data(), command.bytes);
      shortest = std::min(shortest, camera.Last());
    }
    Require(shortest.count() <= kLimitMs + kSlackMs, Text("%d took %.0f ms", command.field, shortest.count()));
  }
}

void KeepToTheLength(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  for (const Command& command : kCommands) {
    if (!IsSent(camera, command)) continue;
    std::vector<char> data = DataOf(command);
    camera.Command(command.field, data.data(), command.bytes);
    const auto behind =
        std::find_if(data.begin() + command.bytes, data.end(), [](char byte) { return byte != kUntouched; });
    Require(behind == data.end(),
            Text("%d with %d bytes changed byte %d", command.field, command.bytes, int(behind - data.begin())));
  }
}

void QueriesAreAnswered(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  for (const Command& command : kCommands) {
    if (command.kind != CommandKind::Query) continue;
    for (const unsigned ground : {0xA5A5A5A5U, 0x5A5A5A5AU}) {
      unsigned answer = ground;
      int result = -1;
      for (int i = 0; i < kTries && result < 0; ++i) result = camera.Command(command.field, &answer, sizeof answer);
      Require(result >= 0, Text("%d gave %d", command.field, result));
      Require(answer != ground, Text("%d left its 4 bytes as they were", command.field));
    }
  }
}

void VoltageIsAFloat(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  const auto volts = camera.Query<float>(SFIELD_GET_VOLTAGE);
  Require(volts.has_value(), "it failed");
  camera.Note(Text("%.2f V.", double(*volts)));
  Require(*volts == 0 || (std::isnormal(*volts) && *volts > 0 && *volts < kMostVolts),
          Text("%g volts", double(*volts)));
}

void RefusalsAreTold(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  int value = 0;
  const int result = camera.Command(kNobodysField, &value, sizeof value);
  Require(result < 0, Text("field %d, which is nobody's, gave %d", kNobodysField, result));
}

void FailuresLeaveNothing(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  for (int i = 0; i < kTries; ++i) {
    int value = 0;
    camera.Command(kNobodysField, &value, sizeof value);
    bool isAnswered = false;
    for (int j = 0; j < kTries && !isAnswered; ++j) isAnswered = camera.Query(SFIELD_GET_ACC).has_value();
    Require(isAnswered, "no query is answered after one that failed");
  }
}

// The interface's second thread waits in msgrcv all the time.
void AreAnsweredWhileReceiving(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  std::thread receiver([&camera] {
    GUI_MSG_BUF message{};
    while (message.src != kOurSender &&
           (msgrcv(camera.Queue(), &message, GUI_MSG_SIZE, GUI_ID, MSG_NOERROR) >= 0 || errno == EINTR)) {
    }
  });
  int answered = 0;
  for (int i = 0; i < 2 * kTries; ++i) answered += camera.Query(SFIELD_GET_ACC) ? 1 : 0;
  GUI_MSG_BUF message{};
  message.des = GUI_ID;
  message.src = kOurSender;
  message.ack = GUI_ACK_NO;
  message.ret = GUI_RET_NORET;
  while (!camera.Send(message)) camera.Pass(1);
  receiver.join();
  Require(answered >= kTries, Text("%d of %d queries were answered", answered, 2 * kTries));
}

}  // namespace

const std::vector<Demand>& CommandDemands() {
  static const std::vector<Demand> demands = {
      {"command-carried", "Every command that the table below calls always possible gives 0 or more.", AreCarriedOut},
      {"command-quick", "A command takes 500 ms at most: the screen stands still meanwhile.", AnswersAreQuick},
      {"command-length", "`ControlSystemData` writes nothing behind the `length` bytes of the data.", KeepToTheLength},
      {"query-answered", "A query is answered in place: its 4 bytes are the answer when the result is 0 or more.",
       QueriesAreAnswered},
      {"query-volts", "The voltage, 8659, is a 4-byte float, in volts.", VoltageIsAFloat},
      {"refusal-told", "What the recorder does not carry out gives a negative result.", RefusalsAreTold},
      {"refusal-over", "A call that has failed leaves nothing behind: the next one is answered.", FailuresLeaveNothing},
      {"command-receiving", "Commands are answered while another thread waits in `msgrcv`.", AreAnsweredWhileReceiving},
  };
  return demands;
}

}  // namespace platformcheck
