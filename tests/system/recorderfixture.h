#pragma once

#include <sys/msg.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QJsonDocument>
#include <QTest>
#include <QThread>
#include <QtEndian>
#include <cstring>

#include "gui/vocabulary/vocabulary.h"
#include "platform/Msg_Def.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"
#include "recorder/firmware/recorder.h"
#include "tests/fake/testroot.h"
#include "tests/system/patience.h"

inline const TestRoot root;
inline const key_t kKey = 0x45000000 + getpid();  // no other test program's
// The platform library reads it at its first call.
inline const bool keyIsSet = qputenv("PLATFORM_KEY", QByteArray::number(kKey));

inline constexpr int kHour = 3600000;

inline QByteArray Int(int value) {
  return QByteArray(reinterpret_cast<const char*>(&value), sizeof value);
}

template <typename Number>
void Put(QByteArray* bytes, int offset, Number value) {
  qToLittleEndian(value, bytes->data() + offset);
}

inline QByteArray Packet(quint32 field, quint32 length, const QByteArray& data) {
  QByteArray packet(8, '\0');
  Put(&packet, 0, field);
  Put(&packet, 4, length);
  return packet + data;
}

inline QByteArray Packet(quint32 field, const QByteArray& data) {
  return Packet(field, static_cast<quint32>(data.size()), data);
}

// A client of the command socket without manners.
class RawClient {
public:
  explicit RawClient(const QString& folder = root.Path(QString())) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = (folder + QStringLiteral("/run/recorder.sock")).toLocal8Bit();
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    mConnected = connect(mSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  ~RawClient() { close(mSocket); }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  bool IsConnected() const { return mConnected; }

  bool Send(const QByteArray& packet) {
    return send(mSocket, packet.constData(), static_cast<size_t>(packet.size()), MSG_NOSIGNAL | MSG_DONTWAIT) ==
           packet.size();
  }

  // The next answer, while the recorder works; null when the recorder closed the connection or says nothing for 5 s.
  QByteArray Take() {
    char bytes[4096];
    for (QDeadlineTimer limit(5000); !limit.hasExpired();) {
      QCoreApplication::processEvents();
      const ssize_t size = recv(mSocket, bytes, sizeof bytes, MSG_DONTWAIT);
      if (size > 0) return QByteArray(bytes, size);
      if (size == 0 || errno != EAGAIN) return {};
    }
    return {};
  }

  // The result of one request.
  int Ask(const QByteArray& packet) {
    if (!Send(packet)) return -1000;
    const QByteArray answer = Take();
    return answer.size() >= 8 ? qFromLittleEndian<qint32>(answer.constData()) : -1000;
  }

private:
  int mSocket = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  bool mConnected = false;
};

struct Event {
  int event;
  int value;
  bool operator==(const Event&) const = default;
};

/// A recorder below a root of its own, and the interface's end of queue, memory and socket.
class RecorderFixture : public QObject {
protected:
  std::unique_ptr<Recorder> mRecorder;
  QList<QJsonObject> mLog;
  int mRestarts = 0;
  QList<Event> mEvents;  // received and not yet looked for
  int mQueue = -1;
  int mSegment = -1;
  CameraSource mCameras;  // null: the recorder's own

  static Recorder::Delays Quick() { return {30, 30, 60, 60, 30, 200, 20}; }

  // Nothing ends by itself.
  static Recorder::Delays Endless() { return {kHour, kHour, kHour, kHour, kHour, kHour, kHour}; }

  bool Start(const Recorder::Delays& delays, QString* error) {
    mRecorder.reset();
    mRecorder = std::make_unique<Recorder>(root.Path(QString()));
    mRecorder->SetDelays(delays);
    if (mCameras) mRecorder->SetCameras(mCameras);
    connect(mRecorder.get(), &Recorder::Logged, this, [this](const QJsonObject& entry) { mLog << entry; });
    connect(mRecorder.get(), &Recorder::RestartWanted, this, [this] { ++mRestarts; });
    return mRecorder->Start(error);
  }

  void Start(const Recorder::Delays& delays = Quick()) {
    QString error;
    if (!Start(delays, &error)) qFatal("%s", qPrintable(error));
  }

  // One command by the platform library, from a thread of its own as it waits; the recorder works meanwhile.
  static int Ask(int field, QByteArray* data) {
    int result = 0;
    const std::unique_ptr<QThread> worker(
        QThread::create([&] { result = ControlSystemData(field, data->data(), static_cast<int>(data->size())); }));
    QEventLoop loop;
    connect(worker.get(), &QThread::finished, &loop, &QEventLoop::quit);
    worker->start();
    loop.exec();
    worker->wait();
    return result;
  }
  static int Ask(int field, QByteArray data) { return Ask(field, &data); }
  static int Ask(int field, int value) { return Ask(field, Int(value)); }

  // The next status message, as the interface gets it.
  bool Receive(GUI_MSG_BUF* message, int* value) const {
    *message = {};
    if (msgrcv(mQueue, message, GUI_MSG_SIZE, GUI_ID, IPC_NOWAIT) != GUI_MSG_SIZE) return false;
    return message->length >= 0 && message->length <= 4 &&
           ShareMemReadByMid(mSegment, message->offset, value, message->length) >= 0;
  }

  QList<Event>& Events() {
    GUI_MSG_BUF message;
    int value = 1;
    while (Receive(&message, &value)) mEvents << Event{message.cmd, value};
    return mEvents;
  }

  // Whether this event has come; forgets it then and what came before it.
  bool Came(int event, int value) {
    const qsizetype at = Events().indexOf(Event{event, value});
    if (at < 0) return false;
    mEvents.remove(0, at + 1);
    return true;
  }

  // The same for one that is on its way.
  bool Comes(int event, int value) {
    return QTest::qWaitFor([&] { return Came(event, value); }, kPatienceMs);
  }

  bool Do(const QString& name, const QJsonObject& arguments = {}) {
    QString error;
    const bool done = mRecorder->Do(name, arguments, &error);
    if (!done) qWarning("%s", qPrintable(error));
    return done;
  }

  QString Refusal(const QString& name, const QJsonObject& arguments = {}) {
    QString error;
    return mRecorder->Do(name, arguments, &error) ? QStringLiteral("done") : error;
  }

  QJsonObject State(const char* part) const { return mRecorder->State().value(QLatin1String(part)).toObject(); }

  // The last log entry of a kind.
  QJsonObject Last(const char* kind) const {
    for (auto entry = mLog.crbegin(); entry != mLog.crend(); ++entry)
      if (entry->value(QStringLiteral("kind")) == QLatin1String(kind)) return *entry;
    return {};
  }

  static bool IsSentence(const QString& text) {
    return text.size() > 10 && text.front().isUpper() && text.endsWith(u'.') && !text.contains(u'\n');
  }

  // A device that was never started, and its queue.
  void Prepare() {
    qputenv("PLATFORM_KEY", QByteArray::number(kKey));
    for (const char* folder : {"/tmp", "/mnt", "/opt/led.zel", "/run/clock"}) {
      const QString path = root.Path(QLatin1String(folder));
      QFile::remove(path);
      QDir(path).removeRecursively();
    }
    mQueue = Gui_InitMessage();
    mSegment = Gui_InitSharedMemory();
    QVERIFY(mQueue >= 0 && mSegment >= 0);
    mLog.clear();
    mEvents.clear();
    mRestarts = 0;
    mCameras = nullptr;
  }
};
