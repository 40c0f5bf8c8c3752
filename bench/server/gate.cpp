#include "bench/server/gate.h"

#include <sys/socket.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>

#include "bench/server/requesthead.h"

namespace {
constexpr int kPatience = 10000;  // milliseconds for a request and its answer
constexpr int kMostOpen = 64;     // requests under way

// What is still on its way is thrown away until the other side has read the answer and closes: with unread bytes
// here, the system would break the connection and the answer could be lost.
void Linger(QTcpSocket* socket) {
  QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] { socket->readAll(); });
  socket->readAll();
  const auto finish = [socket] {
    if (socket->bytesToWrite() == 0) shutdown(static_cast<int>(socket->socketDescriptor()), SHUT_WR);
  };
  QObject::connect(socket, &QTcpSocket::bytesWritten, socket, finish);
  finish();
}
}  // namespace

QByteArray Gate::Refusal(int status, const QString& error) {
  const char* reason = "Bad Request";
  if (status == 403) reason = "Forbidden";
  if (status == 409) reason = "Conflict";
  if (status == 413) reason = "Payload Too Large";
  if (status == 431) reason = "Request Header Fields Too Large";
  const QByteArray body = QJsonDocument(QJsonObject{{QStringLiteral("error"), error}}).toJson(QJsonDocument::Compact);
  return "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason +
         "\r\nContent-Type: application/json\r\nX-Content-Type-Options: nosniff\r\nConnection: "
         "close\r\nContent-Length: " +
         QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

void Gate::incomingConnection(qintptr descriptor) {
  auto* socket = new QTcpSocket(this);
  const bool isOneTooMany = findChildren<QTcpSocket*>(Qt::FindDirectChildrenOnly).size() > kMostOpen;
  if (!socket->setSocketDescriptor(descriptor) || isOneTooMany) return delete socket;
  socket->setReadBufferSize(RequestHead::kMost + RequestHead::kMostBody + 1);
  connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
  connect(socket, &QTcpSocket::readyRead, this, [this, socket] { Read(socket); });
  auto* patience = new QTimer(socket);
  patience->setSingleShot(true);
  patience->callOnTimeout(socket, [socket] { socket->abort(); });
  patience->start(kPatience);
}

void Gate::Read(QTcpSocket* socket) {
  const RequestHead head = RequestHead::Read(socket->peek(RequestHead::kMost), serverPort());
  if (head.state == RequestHead::State::Refused) return Refuse(socket, head.status, head.error);
  if (head.state == RequestHead::State::Incomplete) return;
  const qint64 size = head.size + head.body;
  socket->setReadBufferSize(std::max<qint64>(socket->readBufferSize(), size + 1));
  if (socket->bytesAvailable() < size) return;
  if (socket->bytesAvailable() > size)
    return Refuse(socket, 400, QStringLiteral("There is more than one request on the connection."));
  disconnect(socket, &QTcpSocket::readyRead, this, nullptr);
  if (head.isUpgrade) {
    delete socket->findChild<QTimer*>();
    disconnect(socket, nullptr, socket, nullptr);
    emit WebSocketWanted(socket);
    return;
  }
  addPendingConnection(socket);
  emit socket->readyRead();  // the server reads the request and answers it
  disconnect(socket, &QTcpSocket::readyRead, nullptr, nullptr);
  socket->disconnectFromHost();
}

void Gate::Refuse(QTcpSocket* socket, int status, const QString& error) {
  disconnect(socket, &QTcpSocket::readyRead, this, nullptr);
  socket->write(Refusal(status, error));
  Linger(socket);
}
