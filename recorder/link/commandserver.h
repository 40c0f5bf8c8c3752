#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>
#include <functional>
#include <map>
#include <memory>

namespace recorder {

/// The answering end of the command socket: a Unix SOCK_SEQPACKET socket, one request and one answer a packet.
///   request: u32 field, u32 length, the data; answer: i32 result, u32 length, the data; little-endian.
class CommandServer {
public:
  /// What a connection is remembered for.
  struct Client {
    bool greeted = false;  ///< the state was sent to it
  };
  struct Answer {
    int result = -1;
    QByteArray data;
  };
  using Handler = std::function<Answer(Client& client, quint32 field, const QByteArray& data)>;
  using Note = std::function<void(const QString& sentence)>;

  /// `handler` answers each whole request, `note` is told what else happens.
  CommandServer(Handler handler, Note note);
  ~CommandServer();
  CommandServer(const CommandServer&) = delete;
  CommandServer& operator=(const CommandServer&) = delete;

  /// Listens at `path`, in place of a socket that no one listens at any more. False, with one sentence in `error`, when
  /// somebody does or when it cannot.
  bool Listen(const QString& path, QString* error);

  int Connections() const { return static_cast<int>(mConnections.size()); }

private:
  struct Connection {
    Client client;
    std::unique_ptr<QSocketNotifier> notifier;
  };

  void Accept();
  void Serve(int socket);
  Answer AnswerOf(Client& client, const char* packet, qint64 size);
  void Close(int socket);

  Handler mHandler;
  Note mNote;
  QByteArray mPath;
  int mSocket = -1;
  std::unique_ptr<QSocketNotifier> mNotifier;
  std::map<int, Connection> mConnections;  // by socket
};

}  // namespace recorder
