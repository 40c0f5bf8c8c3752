#include "perf/stage.h"

#include <sys/msg.h>

#include <QDir>
#include <QSemaphore>
#include <QThread>
#include <cerrno>

#include "perf/fail.h"
#include "platform/Msg_Def.h"
#include "recorder/firmware/recorder.h"

namespace {
constexpr QRect kClock(38, 284, 192, 32), kVoltage(394, 284, 78, 32);
constexpr int kRestMs = 60;
constexpr int kClearMs = 100;  // the machine clears up after a program that was killed
constexpr int kRecorderId = 2;
}  // namespace

/// The recorder in a thread of its own, so that it answers while this one looks at the screen. It records nothing.
class RecorderThread : public QThread {
public:
  explicit RecorderThread(const QString& root) : mRoot(root) {
    start();
    mIsReady.acquire();
  }
  ~RecorderThread() override {
    quit();
    wait();
    Recorder::RemoveTransport();
  }

protected:
  void run() override {
    Recorder recorder(mRoot);
    recorder.FollowReplay();
    QString error;
    if (!recorder.Start(&error)) Fail(error);
    mIsReady.release();
    exec();
  }

private:
  QString mRoot;
  QSemaphore mIsReady;
};

Stage::Stage() {
  QString error;
  if (!mRoot.Choose(QString(), &error) || !mRoot.Take(&error) ||
      !mRoot.Furnish(QStringLiteral(BINARY_DIR "/pictures"), &error))
    Fail(error);
  qputenv("PLATFORM_KEY", QByteArray::number(QueueKey()));
  qputenv("DASHCAM_ROOT", mRoot.Path().toLocal8Bit());
  QDir().mkpath(Path("/run"));
  mScreen = std::make_unique<Screen>(Path("/run"));
  if (!mPanel.Open(Path("/dev/input/event0"), &error)) Fail(error);
  mRecorder = std::make_unique<RecorderThread>(mRoot.Path());
  mQueue = msgget(key_t(QueueKey()), 0);
  mEnvironment = QProcessEnvironment::systemEnvironment();
  mEnvironment.insert(QStringLiteral("DISPLAY"), mScreen->Display());
  mEnvironment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
  mEnvironment.insert(QStringLiteral("PATH"), Path("/bin:") + mEnvironment.value(QStringLiteral("PATH")));
}

Stage::~Stage() {
  mRecorder.reset();
  mScreen.reset();
  QDir(mRoot.Path()).removeRecursively();
}

void Stage::Clear() {
  mScreen->WaitUntilEmpty();
  QThread::msleep(kClearMs);
  mPanel.Drain();
  GUI_MSG_BUF message{};
  while (msgrcv(mQueue, &message, GUI_MSG_SIZE, 0, IPC_NOWAIT | MSG_NOERROR) >= 0) {
  }
}

std::unique_ptr<Program> Stage::Start(const QString& program, const QStringList& arguments) {
  return std::make_unique<Program>(program, arguments, mEnvironment);
}

std::unique_ptr<Program> Stage::StartInterface(const QString& program) {
  Clear();
  std::unique_ptr<Program> gui = Start(program);
  mScreen->Until([this] { return IsPreviewThere(); }, [] {});
  mScreen->Settle(500);
  return gui;
}

bool Stage::IsPreviewThere() const {
  const auto isWhite = [](quint32 pixel) { return pixel > 0xE0E0E0; };
  return mScreen->Pixel(6, 5) == 0x141112 && mScreen->Has(kClock, isWhite) && mScreen->Has(kVoltage, isWhite);
}

void Stage::Press(QPoint at) {
  QString error;
  if (!mPanel.Press(at.x(), at.y(), &error)) Fail(error);
}

void Stage::Release() {
  QString error;
  if (!mPanel.Release(&error)) Fail(error);
}

void Stage::Tap(QPoint at) {
  mScreen->UntilChanged(Screen::kAll, [&] { Press(at); });
  mScreen->Settle(kRestMs);
  Release();
  QThread::msleep(kRestMs);
}

void Stage::Send(RECV_ZEL_STATUS_EVENT event) {
  const GUI_MSG_BUF message{GUI_ID, event, kRecorderId, 0, 0, 0, GUI_ACK_NO, GUI_RET_NORET};
  if (msgsnd(mQueue, &message, GUI_MSG_SIZE, IPC_NOWAIT) != 0) Fail("the status queue takes nothing");
}
