// The recorder's own status messages, as they come.
#include <climits>
#include <cstring>

#include "platform/check/demand.h"

namespace platformcheck {
namespace {

constexpr size_t kEnough = 4;     // messages
constexpr int kReplyMs = 1000;    // a sender's, to fetch its reply
constexpr int kLastStatus = 38;   // 1 and this: the status events
constexpr size_t kRoom = 4096;    // for a message that is larger than it should be
constexpr int kLargestValue = 4;  // bytes that the interface reads of a payload

struct Event {
  int size;
  GUI_MSG_BUF message;
};

// What the recorder sends by itself, and when it is asked for the voltage for the first time; the row is not tried when
// that is nothing.
std::vector<Event> Listen(Camera& camera) {
  camera.Open();
  camera.AwaitRecorder();
  camera.Query<float>(SFIELD_GET_VOLTAGE);
  std::vector<Event> events;
  const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(camera.Given().listenMs);
  while (events.size() < kEnough && std::chrono::steady_clock::now() < limit) {
    struct {
      long type;
      char bytes[kRoom];
    } received{};
    const int size = camera.Receive(GUI_ID, &received, kRoom, 100);
    if (size == 0) continue;
    events.push_back({size, {}});
    std::memcpy(&events.back().message, &received, sizeof(long) + GUI_MSG_SIZE);
  }
  if (events.empty()) throw NotTried{Text("no status message came in %d ms", camera.Given().listenMs)};
  camera.Note(Text("%zu messages.", events.size()));
  return events;
}

void HaveTheSize(Camera& camera) {
  for (const Event& event : Listen(camera)) Require(event.size == GUI_MSG_SIZE, Text("one has %d bytes", event.size));
}

void HaveASender(Camera& camera) {
  for (const Event& event : Listen(camera))
    Require(event.message.src > GUI_ID, Text("event %d comes from %d", event.message.cmd, event.message.src));
}

void AreEvents(Camera& camera) {
  for (const auto& [size, message] : Listen(camera)) {
    Require(message.cmd >= 1 && message.cmd <= kLastStatus, Text("there is no event %d", message.cmd));
    Require(message.ack == GUI_ACK_YES || message.ack == GUI_ACK_NO,
            Text("event %d has ack %d", message.cmd, message.ack));
    Require(message.ret >= GUI_RET_NORET && message.ret <= GUI_RET_DATA,
            Text("event %d has ret %d", message.cmd, message.ret));
  }
}

void HaveTheirPayload(Camera& camera) {
  for (const auto& [size, message] : Listen(camera)) {
    Require(message.length == 0 || message.length == kLargestValue,
            Text("event %d has a payload of %d bytes", message.cmd, message.length));
    int value = 0;
    const int result = camera.Read(message.offset, &value, message.length);
    Require(result >= 0,
            Text("the payload of event %d, %d bytes at %d: %d", message.cmd, message.length, message.offset, result));
  }
}

void FetchTheirReplies(Camera& camera) {
  int wanted = 0;
  for (const Event& event : Listen(camera)) {
    GUI_MSG_BUF message = event.message;
    if (message.ack != GUI_ACK_YES || message.ret == GUI_RET_NORET || message.src <= GUI_ID) continue;
    ++wanted;
    message.des = message.src;
    message.src = GUI_ID;
    Require(camera.Send(message), "there is no room for a reply");
    camera.Pass(kReplyMs);
    GUI_MSG_BUF left{};
    Require(camera.Receive(message.des, &left, GUI_MSG_SIZE, 0) == 0,
            Text("the reply to event %d was still in the queue after %d ms", message.cmd, kReplyMs));
  }
  if (wanted == 0) throw NotTried{"no message wanted a reply"};
}

}  // namespace

const std::vector<Demand>& EventDemands() {
  static const std::vector<Demand> demands = {
      {"event-size", "A status message has 28 bytes behind its type: a longer one ends reception for good.",
       HaveTheSize},
      {"event-sender", "Its sender's id is 2 or more: one below 2 ends reception for good.", HaveASender},
      {"event-fields", "Its `cmd` is 1 to 38, its `ack` 0 or 1, its `ret` 1 to 3.", AreEvents},
      {"event-payload", "Its payload has 4 bytes or none, which `ShareMemReadByMid` reads at its `offset`.",
       HaveTheirPayload},
      {"event-replies", "A reply that a sender has wanted is fetched within a second: those that stay fill the queue.",
       FetchTheirReplies},
  };
  return demands;
}

}  // namespace platformcheck
