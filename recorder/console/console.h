#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QLocalServer>
#include <QObject>
#include <QTimer>
#include <memory>
#include <vector>

#include "recorder/console/linesocket.h"
#include "recorder/firmware/recorder.h"
#include "recorder/service/eventlog.h"

/// The recorder's commands for people and scripts, on a Unix socket: what they say, and what they get, is in
/// docs/bench.md.
class Console : public QObject {
  Q_OBJECT

public:
  /// `recorder` outlives it. `root`: of the state.
  Console(Recorder& recorder, const QString& root);

  /// Listens at `path`, in place of a socket that no one listens at any more; only this user may come. False, with one
  /// sentence in `error`, when somebody does or when it cannot.
  bool Listen(const QString& path, QString* error);

private:
  struct Client {
    std::unique_ptr<LineSocket> socket;
    bool isWatching = false;
    QJsonObject state;  // that was sent last
    qint64 log = 0;     // the newest entry that was sent
  };
  struct Request {
    const char* type;
    Reply (Console::*act)(Client& client, const QJsonObject& members, QJsonObject* more);
  };
  static const Request kRequests[];

  void Connect();
  void Note(const QString& sentence) { mLog.Add("note", sentence); }
  void Accept();
  void Remove(const LineSocket* socket);
  void Take(Client& client, const QByteArray& line);
  Reply Event(Client& client, const QJsonObject& members, QJsonObject* more);
  Reply Action(Client& client, const QJsonObject& members, QJsonObject* more);
  Reply Scenario(Client& client, const QJsonObject& members, QJsonObject* more);
  Reply TellState(Client& client, const QJsonObject& members, QJsonObject* more);
  Reply TellLog(Client& client, const QJsonObject& members, QJsonObject* more);
  Reply TellActions(Client& client, const QJsonObject& members, QJsonObject* more);
  Reply Watch(Client& client, const QJsonObject& members, QJsonObject* more);
  QJsonObject State() const;
  void NewsCame();
  void SendNews();

  Recorder& mRecorder;
  QString mRoot;
  EventLog mLog;
  QLocalServer mServer;
  std::vector<std::unique_ptr<Client>> mClients;
  QTimer mNews;  // to the next state and log
  QElapsedTimer mSinceNews;
};
