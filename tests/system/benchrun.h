#pragma once

#include <signal.h>
#include <sys/prctl.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpSocket>
#include <QTest>

#include "tests/system/patience.h"

/// What the bench answered to one request.
struct BenchAnswer {
  int status = 0;  ///< 0: no answer
  QByteArray head;
  QByteArray body;

  QJsonObject Json() const { return QJsonDocument::fromJson(body).object(); }
  QString Error() const { return Json().value(QStringLiteral("error")).toString(); }

  /// A header's value; empty without it.
  QByteArray Header(const QByteArray& name) const {
    for (const QByteArray& line : head.split('\n'))
      if (line.toLower().startsWith(name.toLower() + ':')) return line.mid(name.size() + 1).trimmed();
    return {};
  }
};

/// One run of the real bench with the real interface, as a script uses it. It is killed when the object goes.
class BenchRun {
public:
  explicit BenchRun(const QStringList& arguments = {}) {
    mProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    mProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });  // a test that is killed leaves none
    mProcess.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"),
                   QStringList{QStringLiteral("--port"), QStringLiteral("0")} + arguments);
  }
  ~BenchRun() {
    if (mProcess.state() == QProcess::NotRunning) return;
    mProcess.terminate();
    if (!mProcess.waitForFinished(kPatienceMs)) mProcess.kill();
    mProcess.waitForFinished(kPatienceMs);
  }
  BenchRun(const BenchRun&) = delete;
  BenchRun& operator=(const BenchRun&) = delete;

  /// Waits for the line with the address: the interface has shown its first screen.
  bool IsUp() {
    for (QElapsedTimer clock = Started(); clock.elapsed() < 20000 && !mProcess.canReadLine();)
      if (mProcess.waitForReadyRead(100) || mProcess.state() == QProcess::Running)
        continue;
      else
        break;
    mLine = mProcess.readLine();
    mPort = QString::fromLatin1(mLine).section(u':', 3).remove(u'/').trimmed().toUShort();
    if (mPort != 0) mRoot = State().value(QStringLiteral("root")).toString();
    return mPort != 0;
  }

  QByteArray Line() const { return mLine; }
  quint16 Port() const { return mPort; }
  QString Root() const { return mRoot; }
  QProcess& Process() { return mProcess; }
  QByteArray Host() const { return "127.0.0.1:" + QByteArray::number(mPort); }

  /// Sends bytes on a connection of its own and takes everything until the bench closes it.
  BenchAnswer Send(const QByteArray& request) const {
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), mPort);
    if (!socket.waitForConnected(kPatienceMs)) return {};
    socket.write(request);
    QByteArray bytes;
    while (socket.waitForReadyRead(kPatienceMs)) bytes += socket.readAll();
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0 || socket.state() != QAbstractSocket::UnconnectedState) return {};
    return {bytes.mid(9, 3).toInt(), bytes.left(end), bytes.mid(end + 4)};
  }

  BenchAnswer Get(const QByteArray& target, const QByteArray& headers = {}) const {
    return Send("GET " + target + " HTTP/1.1\r\nHost: " + Host() + "\r\n" + headers + "\r\n");
  }

  BenchAnswer Post(const QByteArray& target, const QByteArray& body, const QByteArray& headers = {}) const {
    return Send("POST " + target + " HTTP/1.1\r\nHost: " + Host() +
                "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body);
  }

  QJsonObject State() const { return Get("/api/state").Json(); }

  /// A member of the state, "interface/starts".
  QJsonValue State(const char* path) const {
    QJsonValue value = State();
    for (const QString& name : QString::fromLatin1(path).split(u'/')) value = value.toObject().value(name);
    return value;
  }

  /// The entries of the log above `since`, oldest first.
  QList<QJsonObject> Log(qint64 since = 0) const {
    QList<QJsonObject> entries;
    const QJsonArray array =
        Get("/api/log?since=" + QByteArray::number(since)).Json().value(QStringLiteral("entries")).toArray();
    for (const QJsonValue& entry : array) entries.prepend(entry.toObject());
    return entries;
  }

  qint64 LastEntry() const { return State("log").toInteger(); }

  /// The newest entry above `since` of this kind and name; empty: none.
  QJsonObject Find(const char* kind, const QString& name, qint64 since = 0) const {
    QJsonObject found;
    for (const QJsonObject& entry : Log(since))
      if (entry.value(QStringLiteral("kind")) == QLatin1String(kind) && entry.value(QStringLiteral("name")) == name)
        found = entry;
    return found;
  }

  bool Action(const QByteArray& json) const { return Post("/api/action", json).status == 200; }

  /// The living processes that this bench has started, and their children: they know its root.
  static QList<int> ProcessesOf(const QString& root, const QByteArray& name = {}) {
    QList<int> processes;
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
      const int process = entry.toInt();
      if (process == 0 || process == QCoreApplication::applicationPid()) continue;
      const QByteArray command = Read(entry, "cmdline");
      if (!command.contains(root.toUtf8()) && !Read(entry, "environ").contains("DASHCAM_ROOT=" + root.toUtf8() + '\0'))
        continue;
      if (name.isEmpty() || Read(entry, "comm").trimmed() == name) processes << process;
    }
    return processes;
  }

  /// The process of this name that the bench itself has started, not what that one forks; 0: none.
  int Child(const QByteArray& name) const {
    for (const int process : ProcessesOf(mRoot, name)) {
      const QByteArray stat =
          Read(QString::number(process), "stat");  // "7 (name) S 6 ...", the name with anything in it
      if (stat.mid(stat.lastIndexOf(')') + 4).split(' ').first().toLongLong() == mProcess.processId()) return process;
    }
    return 0;
  }

  /// The key of its status queue, as its interface knows it; 0 without an interface.
  static int KeyOf(const QString& root) { return VariableOf(root, "PLATFORM_KEY").toInt(); }

  /// The number of its X server's display.
  static QString DisplayOf(const QString& root) { return QString::fromLatin1(VariableOf(root, "DISPLAY").mid(1)); }

  /// The language that its interface was started in.
  static QString LanguageOf(const QString& root) { return QString::fromLatin1(VariableOf(root, "DASHCAM_LANGUAGE")); }

private:
  // Of its interface's environment.
  static QByteArray VariableOf(const QString& root, const QByteArray& name) {
    for (const int process : ProcessesOf(root, "dashcam-gui"))
      for (const QByteArray& variable : Read(QString::number(process), "environ").split('\0'))
        if (variable.startsWith(name + '=')) return variable.mid(name.size() + 1);
    return {};
  }

  static QByteArray Read(const QString& process, const char* file) {
    QFile proc(QStringLiteral("/proc/%1/%2").arg(process, QLatin1String(file)));
    return proc.open(QIODevice::ReadOnly) ? proc.readAll() : QByteArray();
  }

  static QElapsedTimer Started() {
    QElapsedTimer clock;
    clock.start();
    return clock;
  }

  QProcess mProcess;
  QByteArray mLine;
  quint16 mPort = 0;
  QString mRoot;
};
