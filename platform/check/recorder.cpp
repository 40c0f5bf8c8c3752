// A recorder that is silent, late, gone and back.
#include <algorithm>

#include "platform/check/demand.h"
#include "platform/gui_interface.h"

namespace platformcheck {
namespace {

// Nothing is answered now: every call fails, and the quickest one in time.
void FailInTime(Camera& camera) {
  Milliseconds shortest = Milliseconds::max();
  for (int i = 0; i < kTries; ++i) {
    int value = 0;
    const int field = i == 0 ? SFIELD_SET_LCD_BRIGHT : SFIELD_GET_ACC;
    const int result = camera.Command(field, &value, sizeof value);
    Require(result < 0, Text("field %d gave %d", field, result));
    shortest = std::min(shortest, camera.Last());
  }
  Require(shortest.count() <= kLimitMs + kSlackMs, Text("it took %.0f ms", shortest.count()));
}

void SilenceIsLimited(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  camera.Order(Order::Stop);
  FailInTime(camera);
}

// The answer to the first query comes when nobody waits for it any more.
void LateAnswersAreDropped(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  for (int i = 0; i < kTries; ++i) {
    const auto before = camera.Query(SFIELD_GET_ACC);
    camera.Order(Order::Stop);
    const auto volts = camera.Query(SFIELD_GET_VOLTAGE);
    camera.Order(Order::Continue);
    Require(!volts, "a recorder that is held answered");
    auto after = camera.Query(SFIELD_GET_ACC);
    for (int j = 0; j < 2 * kTries && !after; ++j) after = camera.Query(SFIELD_GET_ACC);
    Require(after.has_value(), "no query is answered after a late answer");
    Require(!before || after == before,
            Text("the ignition line was %d, then %d (%#x)", *before, *after, unsigned(*after)));
  }
}

void TheGoneAreMissed(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  camera.Order(Order::Kill);
  FailInTime(camera);
}

void TheReturnedAreFound(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  for (int i = 0; i < 2; ++i) {
    camera.Order(Order::Kill);
    int value = 0;
    camera.Command(SFIELD_SET_LCD_BRIGHT, &value, sizeof value);
    camera.Order(Order::Start);
    camera.AwaitRecorder();
  }
}

void TheQueueOutlivesThem(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  camera.Order(Order::Kill);
  camera.Order(Order::Start);
  camera.AwaitRecorder();
  GUI_MSG_BUF message{};
  message.des = GUI_ID;
  message.src = kOurSender;
  message.ack = GUI_ACK_NO;
  message.ret = GUI_RET_NORET;
  Require(camera.Send(message), "the queue is full");  // and fails when it is no more
  const int queue = camera.Timed("Gui_InitMessage()", Gui_InitMessage);
  Require(queue == camera.Queue(), Text("the queue was %d and is %d", camera.Queue(), queue));
}

}  // namespace

const std::vector<Demand>& RecorderDemands() {
  static const std::vector<Demand> demands = {
      {"silence-limited", "A command that the recorder does not answer gives a negative result after 500 ms at most.",
       SilenceIsLimited},
      {"late-dropped", "An answer that comes too late is never taken for the answer to another command.",
       LateAnswersAreDropped},
      {"gone-missed", "A command to a recorder that has ended gives a negative result after 500 ms at most.",
       TheGoneAreMissed},
      {"back-found", "A recorder that was started again is found by the next commands of the same interface.",
       TheReturnedAreFound},
      {"back-heard",
       "The queue outlives the recorder: an interface that waits on it hears the one that was started again.",
       TheQueueOutlivesThem},
  };
  return demands;
}

std::vector<Demand> Demands() {
  std::vector<Demand> all;
  for (const auto* demands :
       {&CallDemands(), &MemoryDemands(), &QueueDemands(), &EventDemands(), &CommandDemands(), &RecorderDemands()})
    all.insert(all.end(), demands->begin(), demands->end());
  return all;
}

}  // namespace platformcheck
