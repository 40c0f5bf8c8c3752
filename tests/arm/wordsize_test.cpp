// A 32-bit interface beside a recorder of this machine: the kernel and the emulator convert the type word of the
// messages.
#include <signal.h>
#include <sys/prctl.h>

#include <QFileInfo>
#include <QProcess>

#include "tests/system/recorderfixture.h"

namespace {
constexpr int kStartMs = 180000;  // emulated, on a busy machine
constexpr int kWaitMs = 30000;
constexpr int kSender = 17;

/// The interface for armhf: of the preset `board`, or of the one that has everything.
QString Interface() {
  for (const char* preset : {"board", "armhf"}) {
    const QString program = QStringLiteral(SOURCE_DIR "/build/%1/gui/dashcam-gui").arg(QLatin1String(preset));
    if (QFile::exists(program)) return program;
  }
  return {};
}
}  // namespace

class WordSizeTest : public RecorderFixture {
  Q_OBJECT

  QProcess mInterface;
  QByteArray mSaid;

  bool HasSaid(const char* line) {
    mSaid += mInterface.readAllStandardError();
    return mSaid.contains(line);
  }
  bool Says(const char* line, int ms = kWaitMs) {
    return QTest::qWaitFor([&] { return HasSaid(line) || mInterface.state() == QProcess::NotRunning; }, ms) &&
           HasSaid(line);
  }

  bool IsLogged(const char* name) const {
    return std::any_of(mLog.cbegin(), mLog.cend(), [name](const QJsonObject& entry) {
      return entry.value("name") == QLatin1String(name) && entry.value("result").toInt(-1) >= 0;
    });
  }

  bool Send(int event, int number, GUI_RET ret) const {
    int value = number;
    GUI_MSG_BUF message{};
    message.des = GUI_ID;
    message.cmd = event;
    message.src = kSender;
    message.length = sizeof value;
    message.offset = (kSender - 2) * GUI_SLOT_SIZE + 4 * number;
    message.ack = GUI_ACK_YES;
    message.ret = ret;
    return ShareMemWriteByMid(mSegment, message.offset, &value, sizeof value) == 0 &&
           msgsnd(mQueue, &message, GUI_MSG_SIZE, 0) == 0;
  }

private slots:
  void initTestCase() {
    QVERIFY(keyIsSet);
    QVERIFY2(!Interface().isEmpty(), "build the interface first: cmake --preset board && cmake --build --preset board");
    QFile program(Interface());
    QVERIFY(program.open(QIODevice::ReadOnly));
    QCOMPARE(program.read(5), QByteArray("\x7f"
                                         "ELF\x01"));  // 32-bit

    Prepare();
    Start(Endless());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_FORCE_STDERR_LOGGING", "1");
    mInterface.setProcessEnvironment(environment);
    mInterface.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    mInterface.start("qemu-arm-static", {"-L", SOURCE_DIR "/build/sysroot/armhf", Interface()});
    QVERIFY2(Says("screen PREVIEW\n", kStartMs), mSaid.constData());
  }
  void cleanupTestCase() {
    mInterface.kill();
    mInterface.waitForFinished();
    mRecorder.reset();
    Recorder::RemoveTransport();
  }

  void commandsAreAnswered() {
    QTRY_VERIFY_WITH_TIMEOUT(IsLogged("SFIELD_GET_VOLTAGE"), kWaitMs);
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_REARCAM_DISCONNECT, 1));  // the front picture is wanted then
    QTRY_VERIFY_WITH_TIMEOUT(IsLogged("SFIELD_SET_VIEWFRONT"), kWaitMs);
  }

  void aStatusShowsItsBox() {
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_RTC_ERROR, 1));
    QVERIFY2(Says("box event 95 R_RTC_ERROR\n"), mSaid.constData());
  }
  void theValueOfAStatusCounts() {
    mSaid.clear();
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_HW_ERROR, 8));  // the card: the preview shows it, no box
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_MUTE_ON, 1));
    QVERIFY2(Says("R_MUTE_ON\n"), mSaid.constData());
    QVERIFY2(!HasSaid("R_HW_ERROR"), mSaid.constData());
    QVERIFY(mRecorder->SendStatus(RECV_ZEL_STATUS_HW_ERROR, 3));
    QVERIFY2(Says("R_HW_ERROR\n"), mSaid.constData());
  }

  void aWantedReplyComes_data() {
    QTest::addColumn<int>("ret");
    QTest::newRow("without data") << int{GUI_RET_NODATA};
    QTest::newRow("with data") << int{GUI_RET_DATA};
  }
  void aWantedReplyComes() {
    QFETCH(int, ret);
    constexpr int kMessages = 100;
    for (int number = 0; number < kMessages; ++number) QVERIFY(Send(RECV_ZEL_STATUS_SPEED, number, GUI_RET(ret)));
    for (int number = 0; number < kMessages; ++number) {
      GUI_MSG_BUF reply{};
      ssize_t size = -1;
      const auto fetch = [&] { return (size = msgrcv(mQueue, &reply, GUI_MSG_SIZE, kSender, IPC_NOWAIT)) >= 0; };
      QVERIFY(QTest::qWaitFor(fetch, kWaitMs));
      QCOMPARE(int(size), int{GUI_MSG_SIZE});
      QCOMPARE(reply.des, long{kSender});
      QCOMPARE(reply.src, int{GUI_ID});
      QCOMPARE(reply.cmd, int{RECV_ZEL_STATUS_SPEED});
      QCOMPARE(reply.ret, ret);
      const int slot = (kSender - 2) * GUI_SLOT_SIZE;
      QCOMPARE(reply.offset, ret == GUI_RET_DATA ? slot : slot + 4 * number);
    }
  }
};

QTEST_GUILESS_MAIN(WordSizeTest)
#include "wordsize_test.moc"
