#include <algorithm>
#include <cstring>

#include "gui/base/globals.h"
#include "gui/firmware/msgthread.h"
#include "tests/fake/platformfake.h"
#include "tests/fuzz/readers/reader.h"

namespace {
QList<std::pair<int, int>> gTold;  // events with their values

MsgThread& Link() {
  // There is no queue: its thread ends at once.
  static auto* const link = [] {
    auto* made = new MsgThread(nullptr);  // NOLINT: owned by the process
    QObject::connect(
        made, &MsgThread::msgEvent, made,
        [](int event, int value) {
          gTold.append({event, value});
        },
        Qt::DirectConnection);
    return made;
  }();
  return *link;
}
}  // namespace

// The bytes of a message, and behind them those of its payload.
void TakeMessages(const QByteArray& bytes) {
  GUI_MSG_BUF message{};
  std::memcpy(&message.cmd, bytes.constData(), size_t(std::min(qsizetype{GUI_MSG_SIZE}, bytes.size())));
  const GUI_MSG_BUF sent = message;
  const QByteArray payload = bytes.mid(GUI_MSG_SIZE);
  PlatformFake::Get().payload = payload;
  gSdError = false;
  gIsSdError = false;
  gTold.clear();
  REQUIRE(Link().processMsg(&message) == sent.ret);

  // The event once with its value: what there is of it, over 1.
  int value = 1;
  const int length = std::clamp(sent.length, 0, int(sizeof value));
  if (sent.offset >= 0 && length <= payload.size()) std::memcpy(&value, payload.constData(), size_t(length));
  const bool isEvent = sent.cmd >= 1 && sent.cmd <= 38 && sent.cmd != RECV_ZEL_STATUS_RECORD_STOP &&
                       sent.cmd != RECV_ZEL_STATUS_RECORD_START;
  REQUIRE(gTold == (isEvent ? QList{std::pair(sent.cmd, value)} : QList<std::pair<int, int>>()));
  REQUIRE(gSdError == (sent.cmd == RECV_ZEL_STATUS_SD_ERROR));
  REQUIRE(gIsSdError == (sent.cmd == RECV_ZEL_STATUS_HW_ERROR && value == 8));

  // A reply with data goes into the sender's slot; the rest of the message stays.
  const qint64 slot = (qint64{sent.src} - 2) * GUI_SLOT_SIZE;
  const bool hasSlot = sent.ret == GUI_RET_DATA && slot >= 0 && slot <= INT_MAX;
  REQUIRE(message.offset == (hasSlot ? slot : sent.offset));
  message.offset = sent.offset;
  REQUIRE(std::memcmp(&message, &sent, sizeof sent) == 0);
}
