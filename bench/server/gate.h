#pragma once

#include <QList>
#include <QTcpServer>

class QTcpSocket;

/// The door of the web server, on 127.0.0.1. A connection brings one request and has 10 s for everything. Only a
/// request that is whole, well-formed and allowed goes on to the server behind the door; this one answers all others.
/// The connection is closed after the answer, and after 3 s without a word. When 256 are open and one more comes, the
/// oldest that has not brought its whole request makes room; is there none, the new one is closed at once.
class Gate : public QTcpServer {
  Q_OBJECT

public:
  using QTcpServer::QTcpServer;

  /// No time limit for this connection any more.
  static void TakeTime(QTcpSocket* socket);

signals:
  /// A WebSocket is wanted; the request waits in the socket, which is the receiver's from now on.
  void WebSocketWanted(QTcpSocket* socket);

protected:
  void incomingConnection(qintptr descriptor) override;

private:
  bool MakeRoom();
  void Read(QTcpSocket* socket);
  void Refuse(QTcpSocket* socket, int status, const QString& error);

  QList<QTcpSocket*> mIncomplete;  // their request is not whole yet; the oldest first
};
