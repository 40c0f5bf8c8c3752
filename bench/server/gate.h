#pragma once

#include <QTcpServer>

class QTcpSocket;

/// The door of the web server, on 127.0.0.1. A connection brings one request and has 10 s for everything. Only a
/// request that is whole, well-formed and allowed goes on to the server behind the door; this one answers all others.
/// The connection is closed after the answer. When 64 are open, one more is closed at once.
class Gate : public QTcpServer {
  Q_OBJECT

public:
  using QTcpServer::QTcpServer;

  /// Of refused requests: status and one sentence.
  static QByteArray Refusal(int status, const QString& error);

signals:
  /// A WebSocket is wanted; the request waits in the socket, which is the receiver's from now on.
  void WebSocketWanted(QTcpSocket* socket);

protected:
  void incomingConnection(qintptr descriptor) override;

private:
  void Read(QTcpSocket* socket);
  void Refuse(QTcpSocket* socket, int status, const QString& error);
};
