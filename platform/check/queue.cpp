// The status queue, with messages of our own: whoever has its id may send.
#include <sys/msg.h>

#include <algorithm>
#include <cstring>

#include "platform/check/demand.h"

namespace platformcheck {
namespace {

constexpr int kSpeed = 24;       // a status event without consequences
constexpr int kLeastRoom = 100;  // messages
constexpr int kMostRoom = 5000;  // that are tried
constexpr int kWaitMs = 2000;    // for a message that is in the queue
constexpr int kBusyMs = 200;     // an interface that paints

GUI_MSG_BUF Message(int number, GUI_ACK ack = GUI_ACK_NO, GUI_RET ret = GUI_RET_NORET) {
  GUI_MSG_BUF message{};
  message.des = GUI_ID;
  message.cmd = kSpeed;
  message.src = kOurSender;
  message.shmid = number;  // nobody uses it
  message.length = sizeof(int);
  message.offset = 4 * (number % 3000);
  message.ack = ack;
  message.ret = ret;
  return message;
}

bool AreSame(const GUI_MSG_BUF& a, const GUI_MSG_BUF& b) {
  return a.des == b.des && std::memcmp(&a.cmd, &b.cmd, GUI_MSG_SIZE) == 0;
}

// Sends until the queue is full. The number of the next message.
int SendUntilFull(Camera& camera, int number) {
  const int end = number + kMostRoom;
  while (number < end && camera.Send(Message(number))) ++number;
  return number;
}

void Take(Camera& camera, int number) {
  GUI_MSG_BUF message{};
  Require(camera.ReceiveFrom(kOurSender, &message, kWaitMs), Text("message %d has not come", number));
  Require(AreSame(message, Message(number)),
          Text("in place of message %d came one of number %d, cmd %d, ack %d, ret %d", number, message.shmid,
               message.cmd, message.ack, message.ret));
}

void Carries(Camera& camera) {
  camera.Open();
  for (int number = 0; number < 40; ++number) {
    Require(camera.Send(Message(number)), "an empty queue takes no message");
    Take(camera, number);
  }
}

void HasRoom(Camera& camera) {
  camera.Open();
  const int room = SendUntilFull(camera, 0);
  camera.Note(room < kMostRoom ? Text("It holds %d messages.", room) : Text("It holds %d messages or more.", room));
  GUI_MSG_BUF message{};
  while (camera.ReceiveFrom(kOurSender, &message, 0)) {
  }
  Require(room >= kLeastRoom, Text("it holds %d", room));
}

void KeepsAFlood(Camera& camera) {
  camera.Open();
  int number = 0;
  for (int wave = 0; wave < 5; ++wave) {
    const int end = SendUntilFull(camera, number);
    camera.Pass(kBusyMs);
    for (; number < end; ++number) Take(camera, number);
  }
  camera.Note(Text("%d messages.", number));
}

void CarriesReplies(Camera& camera) {
  camera.Open();
  int number = 0;
  for (const GUI_RET ret : {GUI_RET_NODATA, GUI_RET_DATA}) {
    Require(camera.Send(Message(++number, GUI_ACK_YES, ret)), "an empty queue takes no message");
    GUI_MSG_BUF message{};
    Require(camera.ReceiveFrom(kOurSender, &message, kWaitMs), "a message that wants a reply has not come");
    Require(AreSame(message, Message(number, GUI_ACK_YES, ret)), "a message that wants a reply has changed");
    // As the interface replies.
    message.des = message.src;
    message.src = GUI_ID;
    if (ret == GUI_RET_DATA) {
      message.offset = (kOurSender - 2) * GUI_SLOT_SIZE;
      camera.Write(message.offset, nullptr, message.length);
    }
    Require(camera.Send(message), "an empty queue takes no reply");
    GUI_MSG_BUF other{};
    Require(!camera.ReceiveFrom(GUI_ID, &other, 0), "the reply came to the interface");
    GUI_MSG_BUF reply{};
    Require(camera.Receive(kOurSender, &reply, GUI_MSG_SIZE, kWaitMs) == GUI_MSG_SIZE, "the reply has not come");
    Require(AreSame(reply, message), "the reply has changed");
  }
}

}  // namespace

const std::vector<Demand>& QueueDemands() {
  static const std::vector<Demand> demands = {
      {"queue-carries", "A message comes out of the queue as it was put in, 28 bytes behind its type.", Carries},
      {"queue-room", "The queue holds at least 100 messages: so many may come while a picture is painted.", HasRoom},
      {"queue-flood", "No message of a flood is lost, doubled or overtaken.", KeepsAFlood},
      {"queue-replies",
       "A reply waits in the queue until the sender whose id is its type fetches it, and never comes to the interface.",
       CarriesReplies},
  };
  return demands;
}

}  // namespace platformcheck
