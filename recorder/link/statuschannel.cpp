#include "recorder/link/statuschannel.h"

#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/Msg_Def.h"

namespace recorder {
namespace {

constexpr int kSender = 2;  // the first id that owns a slot
constexpr int kSlots = 16;
constexpr int kSlot = (kSender - 2) * GUI_SLOT_SIZE;
constexpr int kCellSize = sizeof(int);
// Each event has a cell of its own, used again when the ring comes round. A queue of the usual 16384 bytes holds 585
// messages, far fewer than the cells: the value of a message that still waits is never overwritten.
constexpr int kCells = GUI_SLOT_SIZE / kCellSize;

// The key of the queue; the segment's is the next one. 0 when the environment names none that can be used.
key_t PlatformKey() {
  if (!qEnvironmentVariableIsSet("PLATFORM_KEY")) return 0x44434755;
  const QString text = qEnvironmentVariable("PLATFORM_KEY");
  const bool hex = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
  bool good = false;
  const uint key = text.toUInt(&good, hex ? 16 : 10);
  return good && key + 1 != 0 ? static_cast<key_t>(key) : 0;
}

key_t SegmentKey() {
  return static_cast<key_t>(static_cast<uint>(PlatformKey()) + 1);
}

QString Refusal(const char* what) {
  return QStringLiteral("%1: %2.").arg(QLatin1String(what), QString::fromLocal8Bit(std::strerror(errno)));
}

}  // namespace

StatusChannel::~StatusChannel() {
  if (mSegment) shmdt(mSegment);
}

bool StatusChannel::Open(QString* error) {
  if (PlatformKey() == 0) {
    *error = QStringLiteral("PLATFORM_KEY is no number from 1 to 0xFFFFFFFE.");
    return false;
  }
  if (!OpenQueue(error) || !OpenSegment(error)) return false;
  // What waits is of an earlier run, or was never meant for this one. Only as many as there are: a sender that never
  // stops does not hold us here.
  GUI_MSG_BUF message;
  for (int waiting = Waiting(); waiting > 0; --waiting)
    msgrcv(mQueue, &message, GUI_MSG_SIZE, 0, IPC_NOWAIT | MSG_NOERROR);
  return true;
}

bool StatusChannel::OpenQueue(QString* error) {
  mQueue = msgget(PlatformKey(), IPC_CREAT | 0600);
  msqid_ds state{};
  if (mQueue < 0 || msgctl(mQueue, IPC_STAT, &state) < 0) {
    *error = Refusal("The status queue cannot be opened");
    return false;
  }
  if (state.msg_perm.uid == geteuid()) return true;
  *error = QStringLiteral("The status queue is another user's.");
  return false;
}

bool StatusChannel::OpenSegment(QString* error) {
  const int segment = shmget(SegmentKey(), kSlots * GUI_SLOT_SIZE, IPC_CREAT | 0600);
  shmid_ds state{};
  if (segment < 0 || shmctl(segment, IPC_STAT, &state) < 0) {
    *error = Refusal("The shared memory of the status messages cannot be opened");
    return false;
  }
  if (state.shm_perm.uid != geteuid()) {
    *error = QStringLiteral("The shared memory of the status messages is another user's.");
    return false;
  }
  if (state.shm_segsz != kSlots * GUI_SLOT_SIZE) {  // the interface would refuse it
    *error =
        QStringLiteral("The shared memory of the status messages has another size: %1 bytes.").arg(state.shm_segsz);
    return false;
  }
  void* address = shmat(segment, nullptr, 0);
  if (address == reinterpret_cast<void*>(-1)) {
    *error = Refusal("The shared memory of the status messages cannot be attached");
    return false;
  }
  mSegment = static_cast<char*>(address);
  return true;
}

bool StatusChannel::Send(int event, int value) {
  if (!mSegment) return false;
  const int offset = kSlot + mCell * kCellSize;
  std::memcpy(mSegment + offset, &value, sizeof value);
  GUI_MSG_BUF message{};
  message.des = GUI_ID;
  message.cmd = event;
  message.src = kSender;
  message.length = kCellSize;
  message.offset = offset;
  // No reply is asked for: nothing of ours can ever fill the queue from the other side.
  message.ack = GUI_ACK_NO;
  message.ret = GUI_RET_NORET;
  int result = msgsnd(mQueue, &message, GUI_MSG_SIZE, IPC_NOWAIT);
  if (result < 0 && (errno == EIDRM || errno == EINVAL)) {  // somebody removed the queue
    QString error;
    if (OpenQueue(&error)) result = msgsnd(mQueue, &message, GUI_MSG_SIZE, IPC_NOWAIT);
  }
  if (result < 0) return false;
  mCell = (mCell + 1) % kCells;
  return true;
}

int StatusChannel::Waiting() const {
  msqid_ds state{};
  return mQueue >= 0 && msgctl(mQueue, IPC_STAT, &state) == 0 ? static_cast<int>(state.msg_qnum) : 0;
}

void StatusChannel::Remove() {
  if (PlatformKey() == 0) return;
  const int queue = msgget(PlatformKey(), 0);
  if (queue >= 0) msgctl(queue, IPC_RMID, nullptr);
  const int segment = shmget(SegmentKey(), 0, 0);
  if (segment >= 0) shmctl(segment, IPC_RMID, nullptr);
}

}  // namespace recorder
