#include "gui/firmware/msgthread.h"

#include <dlfcn.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QMutex>
#include <QSemaphore>
#include <QTest>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>

#include "gui/base/globals.h"
#include "tests/system/patience.h"

namespace {
constexpr int kSegmentBytes = 16 * GUI_SLOT_SIZE;
constexpr int kSentinel = 777;  // a speed that is sent behind what is tested

/// Errors that the thread's next receptions get; then the queue's own answers.
QMutex scriptMutex;
QList<int> script;

int NextError() {
  const QMutexLocker lock(&scriptMutex);
  return script.isEmpty() ? 0 : script.takeFirst();
}

int ErrorsLeft() {
  const QMutexLocker lock(&scriptMutex);
  return int(script.size());
}

void SetScript(const QList<int>& errors) {
  const QMutexLocker lock(&scriptMutex);
  script = errors;
}

std::atomic<bool> waitsForAMessage = false;
std::atomic<bool> refusesReplies = false;
std::atomic<int> replyTries = 0;

std::atomic<int> losses = 0;  // of replies that were said
void CountLosses(QtMsgType, const QMessageLogContext&, const QString& line) {
  losses += line.startsWith(QLatin1String("link: "));
}
}  // namespace

// These two stand before the C library's for the whole test program.
extern "C" ssize_t msgrcv(int queue, void* message, size_t size, long type, int flags) {
  using Function = ssize_t (*)(int, void*, size_t, long, int);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "msgrcv"));
  const bool waits = (flags & IPC_NOWAIT) == 0;
  if (type == GUI_ID && waits) {
    if (const int error = NextError()) {
      errno = error;
      return -1;
    }
  }
  if (type == GUI_ID) waitsForAMessage = waits;
  return real(queue, message, size, type, flags);
}
extern "C" int msgsnd(int queue, const void* message, size_t size, int flags) {
  using Function = int (*)(int, const void*, size_t, int);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "msgsnd"));
  if (static_cast<const GUI_MSG_BUF*>(message)->src == GUI_ID) {
    ++replyTries;
    if (refusesReplies) {
      errno = EAGAIN;
      return -1;
    }
  }
  return real(queue, message, size, flags);
}

class MsgThreadTest : public QObject {
  Q_OBJECT

private:
  const key_t mKey = 0x44000000 + getpid();
  int mQueue = -1;
  char* mSegment = nullptr;
  std::unique_ptr<MsgThread> mLink;
  QStringList mTold;
  int mCell = 0;

  void Post(const GUI_MSG_BUF& message, int size = GUI_MSG_SIZE) {
    QVERIFY(QTest::qWaitFor([&] { return msgsnd(mQueue, &message, size_t(size), IPC_NOWAIT) == 0; }, kPatienceMs));
  }
  /// A message of sender 2 whose payload is `value`.
  GUI_MSG_BUF Message(int cmd, int value) {
    const int offset = mCell++ % (GUI_SLOT_SIZE / 4) * 4;
    std::memcpy(mSegment + offset, &value, sizeof value);
    return {GUI_ID, cmd, 2, 0, 4, offset, GUI_ACK_NO, GUI_RET_NORET};
  }
  void Send(int cmd, int value) { Post(Message(cmd, value)); }
  /// A speed whose sender waits for a reply.
  GUI_MSG_BUF Asking(int speed) {
    GUI_MSG_BUF message = Message(RECV_ZEL_STATUS_SPEED, speed);
    message.ack = GUI_ACK_YES;
    message.ret = GUI_RET_NODATA;
    return message;
  }

  /// Everything told for what was sent, once the link has come to the end of it.
  QStringList Told() {
    Send(RECV_ZEL_STATUS_SPEED, kSentinel);
    const QString last = QStringLiteral("24 %1").arg(kSentinel);
    if (!QTest::qWaitFor([&] { return mTold.contains(last); }, kPatienceMs)) return {"the link is deaf"};
    mTold.removeLast();
    return std::exchange(mTold, {});
  }
  static QString Event(int event, int value) { return QStringLiteral("%1 %2").arg(event).arg(value); }
  bool TakeReply(int id, GUI_MSG_BUF* reply) {
    return msgrcv(mQueue, reply, GUI_MSG_SIZE, id, IPC_NOWAIT) == GUI_MSG_SIZE;
  }
  bool AwaitReply(int id, GUI_MSG_BUF* reply) {
    return QTest::qWaitFor([&] { return TakeReply(id, reply); }, kPatienceMs);
  }
  bool IsAsleep() const {
    for (const QString& id : QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
      QFile state(QStringLiteral("/proc/self/task/%1/stat").arg(id));
      if (state.open(QIODevice::ReadOnly) && state.readAll().contains("(MsgThread) S ")) return true;
    }
    return false;
  }
  /// The reply to the next message finds a full queue.
  void FillQueueBeforeTheReply() {
    connect(
        mLink.get(), &MsgThread::msgEvent, mLink.get(),
        [this] {
          const GUI_MSG_BUF other{99, 0, 0, 0, 0, 0, 0, 0};
          while (msgsnd(mQueue, &other, GUI_MSG_SIZE, IPC_NOWAIT) == 0) {
          }
        },
        Qt::DirectConnection);
    const int before = replyTries;
    Post(Asking(5));
    QTRY_COMPARE(mTold, QStringList(Event(24, 5)));
    QTRY_VERIFY(replyTries > before);
  }

private slots:
  void initTestCase();
  void init();
  void cleanup();
  void cleanupTestCase();

  void everyStatusIsToldOrDropped_data();
  void everyStatusIsToldOrDropped();
  void aDroppedStatusIsStillAcknowledged_data();
  void aDroppedStatusIsStillAcknowledged();
  void aReplyIsSentOnlyWhenAskedFor_data();
  void aReplyIsSentOnlyWhenAskedFor();
  void aReplyWithDataNamesTheSendersSlot_data();
  void aReplyWithDataNamesTheSendersSlot();
  void theValueHasAsManyBytesAsThePayload_data();
  void theValueHasAsManyBytesAsThePayload();
  void aPayloadOutsideTheSegmentIsNotRead_data();
  void aPayloadOutsideTheSegmentIsNotRead();
  void aBurstIsToldInOrder();
  void aFloodWaitsForItsReceiver();
  void theLinkEndsWhileItsReceiverIsBusy();
  void aShortMessageIsDropped_data();
  void aShortMessageIsDropped();
  void aMessageForSomebodyElseIsLeftAlone();
  void aTooLongMessageEndsReception();
  void aMessageFromNobodyEndsReception_data();
  void aMessageFromNobodyEndsReception();
  void aRemovedQueueEndsReception();
  void onlyTheFourthErrorInARowEndsReception_data();
  void onlyTheFourthErrorInARowEndsReception();
  void aCardErrorIsRememberedBeforeItIsTold();
  void onlyHardwareError8AsksForAnotherCard_data();
  void onlyHardwareError8AsksForAnotherCard();
  void aReplyWaitsForRoomInTheQueue();
  void eventsArriveThroughAQueueThatIsFullOfThem();
  void aLinkWhoseReplyWaitsDoesNotSpin();
  void ofTooManyRepliesTheOldestAreLost();
  void theLinkEndsWhileItWaits();
  void theLinkEndsWhileAReplyWaits();
  void stepsOfAMessage();
};

void MsgThreadTest::initTestCase() {
  qputenv("PLATFORM_KEY", QByteArray::number(mKey));
}

void MsgThreadTest::init() {
  for (Relaxed<bool>* flag : {&gSdError, &gInitSdError, &gIsSdError}) *flag = false;
  gSdErrorValue = 0;
  SetScript({});
  refusesReplies = false;
  mLink = std::make_unique<MsgThread>(nullptr);
  mTold.clear();
  connect(mLink.get(), &MsgThread::msgEvent, this, [this](int event, int value) { mTold << Event(event, value); });
  mQueue = msgget(mKey, 0600);
  QVERIFY(mQueue >= 0);
  mSegment = static_cast<char*>(shmat(shmget(mKey + 1, kSegmentBytes, 0600), nullptr, 0));
  QVERIFY(mSegment != reinterpret_cast<char*>(-1));
}

void MsgThreadTest::cleanup() {
  mLink.reset();
  QCoreApplication::sendPostedEvents(this);  // what was told and not asked for is not the next test's
  shmdt(mSegment);
  msgctl(mQueue, IPC_RMID, nullptr);
}

void MsgThreadTest::cleanupTestCase() {
  shmctl(shmget(mKey + 1, 0, 0), IPC_RMID, nullptr);
}

// ---- what is told

void MsgThreadTest::everyStatusIsToldOrDropped_data() {
  QTest::addColumn<int>("status");
  QTest::addColumn<bool>("told");
  for (int status = 0; status <= 39; ++status) {
    const bool told = status != 0 && status != 20 && status != 32 && status != 39;
    QTest::addRow("%d %s", status, NameOf(RECV_ZEL_STATUS_EVENT(status))) << status << told;
  }
  for (int status : {-1, 40, 1000, INT_MAX, INT_MIN}) QTest::addRow("%d", status) << status << false;
}

void MsgThreadTest::everyStatusIsToldOrDropped() {
  QFETCH(int, status);
  QFETCH(bool, told);
  Send(status, -5);
  QCOMPARE(Told(), told ? QStringList(Event(status, -5)) : QStringList());
}

void MsgThreadTest::aDroppedStatusIsStillAcknowledged_data() {
  QTest::addColumn<int>("status");
  for (int status : {0, 20, 32, 39}) QTest::addRow("%d", status) << status;
}

void MsgThreadTest::aDroppedStatusIsStillAcknowledged() {
  QFETCH(int, status);
  Post({GUI_ID, status, 5, 123, 4, 40, GUI_ACK_YES, GUI_RET_NODATA});
  GUI_MSG_BUF reply{};
  QVERIFY(AwaitReply(5, &reply));
  QCOMPARE(reply.cmd, status);
  QCOMPARE(reply.src, int(GUI_ID));
  QCOMPARE(reply.shmid, 123);
  QCOMPARE(reply.length, 4);
  QCOMPARE(reply.offset, 40);
  QCOMPARE(reply.ack, int(GUI_ACK_YES));
  QCOMPARE(reply.ret, int(GUI_RET_NODATA));
  QCOMPARE(Told(), QStringList());
}

void MsgThreadTest::aReplyIsSentOnlyWhenAskedFor_data() {
  QTest::addColumn<int>("ack");
  QTest::addColumn<int>("ret");
  QTest::addColumn<bool>("replied");
  for (int ack : {0, 1, 2, -1})
    for (int ret : {0, 1, 2, 3, 4, -1})
      QTest::addRow("ack %d, ret %d", ack, ret) << ack << ret << (ack == 0 && ret != 1);
}

void MsgThreadTest::aReplyIsSentOnlyWhenAskedFor() {
  QFETCH(int, ack);
  QFETCH(int, ret);
  GUI_MSG_BUF message = Message(RECV_ZEL_STATUS_SPEED, 60);
  message.ack = ack;
  message.ret = ret;
  Post(message);
  QCOMPARE(Told(), QStringList(Event(24, 60)));
  GUI_MSG_BUF reply{};
  QTEST(TakeReply(2, &reply), "replied");
}

void MsgThreadTest::aReplyWithDataNamesTheSendersSlot_data() {
  QTest::addColumn<int>("sender");
  QTest::addColumn<int>("offset");
  QTest::newRow("first") << 2 << 0;
  QTest::newRow("second") << 3 << 12288;
  QTest::newRow("last of the segment") << 17 << 184320;
  QTest::newRow("beyond the segment") << 18 << 196608;
  QTest::newRow("last that an int can name") << 174764 << 174762 * 12288;
  QTest::newRow("no int can name it") << 174765 << 8;
  QTest::newRow("32 bits would name the first one") << 349528 << 8;
  QTest::newRow("the highest id") << INT_MAX << 8;
}

void MsgThreadTest::aReplyWithDataNamesTheSendersSlot() {
  QFETCH(int, sender);
  std::memset(mSegment, 0x5A, kSegmentBytes);
  const QByteArray before(mSegment, kSegmentBytes);
  Post({GUI_ID, RECV_ZEL_STATUS_SPEED, sender, 0, 4, 8, GUI_ACK_YES, GUI_RET_DATA});
  GUI_MSG_BUF reply{};
  QVERIFY(AwaitReply(sender, &reply));
  QTEST(reply.offset, "offset");
  QCOMPARE(reply.length, 4);
  QCOMPARE(reply.src, int(GUI_ID));
  QVERIFY(QByteArray(mSegment, kSegmentBytes) == before);  // the slot is named, not filled
}

void MsgThreadTest::theValueHasAsManyBytesAsThePayload_data() {
  QTest::addColumn<int>("length");
  QTest::addColumn<int>("value");
  QTest::newRow("0") << 0 << 1;
  QTest::newRow("1") << 1 << 0xF1;
  QTest::newRow("2") << 2 << 0xE2F1;
  QTest::newRow("3") << 3 << 0xD3E2F1;
  QTest::newRow("4") << 4 << int(0xC4D3E2F1);
  for (int length : {5, 8, 12288, 196608, 196609, INT_MAX}) QTest::addRow("%d", length) << length << int(0xC4D3E2F1);
  for (int length : {-1, -4, INT_MIN}) QTest::addRow("%d", length) << length << 1;
}

void MsgThreadTest::theValueHasAsManyBytesAsThePayload() {
  QFETCH(int, length);
  QFETCH(int, value);
  std::memcpy(mSegment, "\xF1\xE2\xD3\xC4\xB5\xA6\x97\x88", 8);
  Post({GUI_ID, RECV_ZEL_STATUS_VOLT_SET, 2, 0, length, 0, GUI_ACK_NO, GUI_RET_NORET});
  mCell = 2;
  QCOMPARE(Told(), QStringList(Event(34, value)));
}

void MsgThreadTest::aPayloadOutsideTheSegmentIsNotRead_data() {
  QTest::addColumn<int>("offset");
  QTest::addColumn<int>("value");
  QTest::newRow("last cell") << kSegmentBytes - 4 << 0x04030201;
  for (int offset : {kSegmentBytes - 3, kSegmentBytes, INT_MAX - 3, INT_MAX, -1, -4, INT_MIN})
    QTest::addRow("%d", offset) << offset << 1;
}

void MsgThreadTest::aPayloadOutsideTheSegmentIsNotRead() {
  QFETCH(int, offset);
  QFETCH(int, value);
  std::memcpy(mSegment + kSegmentBytes - 4, "\1\2\3\4", 4);
  Post({GUI_ID, RECV_ZEL_STATUS_VOLT_SET, 2, 0, 4, offset, GUI_ACK_NO, GUI_RET_NORET});
  QCOMPARE(Told(), QStringList(Event(34, value)));
}

void MsgThreadTest::aBurstIsToldInOrder() {
  QStringList expected;
  for (int i = 0; i < 2000; ++i) {
    const int event = i % 2 == 0 ? RECV_ZEL_STATUS_PLAY_CUR : RECV_ZEL_STATUS_SPEED;
    Send(event, 1000 + i);
    expected << Event(event, 1000 + i);
  }
  QCOMPARE(Told(), expected);
}

// Nobody handles events meanwhile: the rest stays in the queue, where it is nobody's memory and nobody's delay.
void MsgThreadTest::aFloodWaitsForItsReceiver() {
  constexpr int kAtOnce = 100, kSent = 350;
  QStringList expected;
  const auto waiting = [this] {
    msqid_ds queue{};
    return msgctl(mQueue, IPC_STAT, &queue) == 0 ? int(queue.msg_qnum) : -1;
  };
  for (int i = 0; i < kSent; ++i) {
    Send(RECV_ZEL_STATUS_SPEED, i);
    expected << Event(RECV_ZEL_STATUS_SPEED, i);
  }
  QElapsedTimer clock;
  for (clock.start(); waiting() > kSent - kAtOnce && clock.elapsed() < 5000;) QThread::msleep(1);
  QThread::msleep(50);
  QCOMPARE(waiting(), kSent - kAtOnce);
  QTRY_COMPARE(mTold.size(), expected.size());
  QCOMPARE(mTold, expected);
  mTold.clear();
}

void MsgThreadTest::theLinkEndsWhileItsReceiverIsBusy() {
  for (int i = 0; i < 350; ++i) Send(RECV_ZEL_STATUS_SPEED, i);
  QElapsedTimer clock;
  clock.start();
  mLink->End();
  QVERIFY(mLink->isFinished());
  QVERIFY(clock.elapsed() < 1000);  // it was not given up
}

// ---- what must not be in the queue

void MsgThreadTest::aShortMessageIsDropped_data() {
  QTest::addColumn<int>("size");
  for (int size : {0, 1, 4, 8, 24, 27}) QTest::addRow("%d bytes", size) << size;
}

void MsgThreadTest::aShortMessageIsDropped() {
  QFETCH(int, size);
  Send(RECV_ZEL_STATUS_NO_SD, 3);
  Post(Message(RECV_ZEL_STATUS_POWER_OFF, 9), size);
  Send(RECV_ZEL_STATUS_MUTE_ON, 4);
  QCOMPARE(Told(), QStringList({Event(5, 3), Event(12, 4)}));
}

void MsgThreadTest::aMessageForSomebodyElseIsLeftAlone() {
  GUI_MSG_BUF other = Message(RECV_ZEL_STATUS_POWER_OFF, 9);
  other.des = 2;
  Post(other);
  QCOMPARE(Told(), QStringList());
  GUI_MSG_BUF left{};
  QVERIFY(TakeReply(2, &left));
  QCOMPARE(left.cmd, 23);
}

void MsgThreadTest::aTooLongMessageEndsReception() {
  struct {
    GUI_MSG_BUF message;
    char more[8];
  } tooLong{Message(RECV_ZEL_STATUS_POWER_OFF, 9), {}};
  QCOMPARE(msgsnd(mQueue, &tooLong, GUI_MSG_SIZE + 8, IPC_NOWAIT), 0);
  QTRY_VERIFY(mLink->isFinished());
  QCOMPARE(mTold, QStringList());
}

void MsgThreadTest::aMessageFromNobodyEndsReception_data() {
  QTest::addColumn<int>("sender");
  for (int sender : {1, 0, -1, INT_MIN}) QTest::addRow("%d", sender) << sender;
}

void MsgThreadTest::aMessageFromNobodyEndsReception() {
  QFETCH(int, sender);
  GUI_MSG_BUF message = Message(RECV_ZEL_STATUS_POWER_OFF, 9);
  message.src = sender;
  message.ack = GUI_ACK_YES;
  message.ret = GUI_RET_NODATA;
  Post(message);
  QTRY_VERIFY(mLink->isFinished());
  QCoreApplication::processEvents();
  QCOMPARE(mTold, QStringList());
}

void MsgThreadTest::aRemovedQueueEndsReception() {
  QTRY_VERIFY(IsAsleep());
  msgctl(mQueue, IPC_RMID, nullptr);
  QTRY_VERIFY(mLink->isFinished());
}

void MsgThreadTest::onlyTheFourthErrorInARowEndsReception_data() {
  QTest::addColumn<QList<int>>("errors");
  QTest::addColumn<bool>("ends");
  QTest::newRow("three") << QList<int>{EINVAL, EACCES, EIDRM} << false;
  QTest::newRow("four") << QList<int>{EINVAL, EINVAL, EINVAL, EINVAL} << true;
  QTest::newRow("no message between") << QList<int>{EINVAL, EINVAL, EINVAL, ENOMSG, EINVAL, EINVAL, EINVAL} << false;
  QTest::newRow("no message, often") << QList<int>(10, ENOMSG) << false;
  QTest::newRow("signals") << QList<int>(10, EINTR) << false;
  QTest::newRow("signals between") << QList<int>{EINVAL, EINTR, EINVAL, EINTR, EINVAL, EINTR, EINVAL} << true;
}

void MsgThreadTest::onlyTheFourthErrorInARowEndsReception() {
  QFETCH(QList<int>, errors);
  QFETCH(bool, ends);
  QTRY_VERIFY(IsAsleep());  // the script is for the receptions after the next message
  SetScript(errors);
  Send(RECV_ZEL_STATUS_MUTE_ON, 1);
  QTRY_COMPARE(ErrorsLeft(), 0);
  if (ends) {
    QTRY_VERIFY(mLink->isFinished());
    return;
  }
  QCOMPARE(Told(), QStringList(Event(12, 1)));
  SetScript(errors);  // and the count begins anew after a message
  QCOMPARE(Told(), QStringList());
  QTRY_COMPARE(ErrorsLeft(), 0);
  QCOMPARE(Told(), QStringList());
}

// ---- the card

void MsgThreadTest::aCardErrorIsRememberedBeforeItIsTold() {
  bool remembered = false;
  connect(
      mLink.get(), &MsgThread::msgEvent, mLink.get(),
      [&](int event) { remembered |= event == 6 && gSdError && gInitSdError && gSdErrorValue == 1; },
      Qt::DirectConnection);
  Send(RECV_ZEL_STATUS_NO_SD, 1);
  QCOMPARE(Told(), QStringList(Event(5, 1)));
  QVERIFY(!gSdError && !gInitSdError && gSdErrorValue == 0);
  Send(RECV_ZEL_STATUS_SD_ERROR, 7);
  QCOMPARE(Told(), QStringList(Event(6, 7)));
  QVERIFY(remembered);
  QVERIFY(!gIsSdError);
}

void MsgThreadTest::onlyHardwareError8AsksForAnotherCard_data() {
  QTest::addColumn<int>("status");
  QTest::addColumn<int>("value");
  QTest::addColumn<bool>("asks");
  QTest::newRow("hardware error 8") << 8 << 8 << true;
  QTest::newRow("hardware error 7") << 8 << 7 << false;
  QTest::newRow("hardware error 18") << 8 << 18 << false;
  QTest::newRow("another status") << 9 << 8 << false;
}

void MsgThreadTest::onlyHardwareError8AsksForAnotherCard() {
  QFETCH(int, status);
  QFETCH(int, value);
  Send(status, value);
  QCOMPARE(Told(), QStringList(Event(status, value)));
  QTEST(bool(gIsSdError), "asks");
}

// ---- replies that wait, and the end

void MsgThreadTest::aReplyWaitsForRoomInTheQueue() {
  FillQueueBeforeTheReply();
  GUI_MSG_BUF message{};
  QVERIFY(!TakeReply(2, &message));
  QVERIFY(TakeReply(99, &message));
  QVERIFY(AwaitReply(2, &message));
}

// As after a time in which the interface stood still: there is no room for a reply, and only the link can make some.
void MsgThreadTest::eventsArriveThroughAQueueThatIsFullOfThem() {
  QSemaphore standsStill, goesOn;
  connect(
      mLink.get(), &MsgThread::msgEvent, mLink.get(),
      [&, first = true]() mutable {
        if (!first) return;
        first = false;
        standsStill.release();
        goesOn.acquire();
      },
      Qt::DirectConnection);
  QList<GUI_MSG_BUF> sent{Asking(0)};
  Post(sent.first());
  standsStill.acquire();
  for (;;) {
    const GUI_MSG_BUF next = Asking(int(sent.size()));
    if (msgsnd(mQueue, &next, GUI_MSG_SIZE, IPC_NOWAIT) != 0) break;
    sent << next;
  }
  msqid_ds state{};
  QCOMPARE(msgctl(mQueue, IPC_STAT, &state), 0);
  QVERIFY(state.__msg_cbytes + GUI_MSG_SIZE > state.msg_qbytes);
  goesOn.release();

  QTRY_COMPARE(mTold.size(), sent.size());
  for (int i = 0; i < sent.size(); ++i) QCOMPARE(mTold[i], Event(24, i));
  for (const GUI_MSG_BUF& message : sent) {
    GUI_MSG_BUF reply{};
    QVERIFY(AwaitReply(2, &reply));
    QCOMPARE(reply.offset, message.offset);
  }
  mTold.clear();
  Send(RECV_ZEL_STATUS_MUTE_ON, 1);
  QCOMPARE(Told(), QStringList(Event(12, 1)));
  QTRY_VERIFY(waitsForAMessage);
}

void MsgThreadTest::aLinkWhoseReplyWaitsDoesNotSpin() {
  FillQueueBeforeTheReply();
  QElapsedTimer clock;
  clock.start();
  const int before = replyTries;
  QTRY_VERIFY(replyTries - before >= 20);
  const int tries = replyTries - before;
  QVERIFY2(tries <= clock.elapsed() + 1, qPrintable(QString::number(tries)));
  GUI_MSG_BUF message{};
  QVERIFY(TakeReply(99, &message));
  QVERIFY(AwaitReply(2, &message));
  QTRY_VERIFY(waitsForAMessage);
}

void MsgThreadTest::ofTooManyRepliesTheOldestAreLost() {
  constexpr int kMost = 1000, kMore = 3;
  losses = 0;
  const QtMessageHandler before = qInstallMessageHandler(CountLosses);
  refusesReplies = true;
  QList<GUI_MSG_BUF> sent;
  for (int i = 0; i < kMost + kMore; ++i) {
    sent << Asking(i);
    Post(sent.last());
  }
  QTRY_COMPARE(mTold.size(), sent.size());
  refusesReplies = false;
  for (int i = kMore; i < sent.size(); ++i) {
    GUI_MSG_BUF reply{};
    QVERIFY(AwaitReply(2, &reply));
    QCOMPARE(reply.offset, sent[i].offset);
  }
  qInstallMessageHandler(before);
  QCOMPARE(losses, 1);
  GUI_MSG_BUF reply{};
  QVERIFY(!TakeReply(2, &reply));
}

void MsgThreadTest::theLinkEndsWhileItWaits() {
  QTRY_VERIFY(IsAsleep());
  mLink->End();
  QVERIFY(mLink->isFinished());
  mLink->End();
  QVERIFY(mLink->isFinished());
}

void MsgThreadTest::theLinkEndsWhileAReplyWaits() {
  FillQueueBeforeTheReply();
  mLink->End();
  QVERIFY(mLink->isFinished());
}

void MsgThreadTest::stepsOfAMessage() {
  QCOMPARE(mLink->recvFWMessage(RECV_ZEL_STATUS_RECORD_STOP, 3), int(GUI_RET_NODATA));
  QCOMPARE(mLink->recvFWMessage(RECV_ZEL_STATUS_RECORD_START, 3), int(GUI_RET_NODATA));
  QCOMPARE(mLink->recvFWMessage(0, 3), int(GUI_RET_NODATA));
  QCOMPARE(mLink->recvFWMessage(39, 3), int(GUI_RET_NODATA));
  QCOMPARE(mTold, QStringList(Event(20, 3)));
  for (int ret : {0, 1, 2, 3, 9}) {
    GUI_MSG_BUF message = Message(RECV_ZEL_STATUS_SPEED, 5);
    message.ret = ret;
    QCOMPARE(mLink->processMsg(&message), ret);
  }
}

QTEST_GUILESS_MAIN(MsgThreadTest)
#include "msgthread_test.moc"
