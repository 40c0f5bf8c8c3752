#include "bench/server/gate.h"

#include <sys/socket.h>

#include <QTcpSocket>
#include <QTimer>
#include <algorithm>

#include "bench/server/answer.h"
#include "bench/server/requesthead.h"

namespace {
constexpr int kPatience = 10000;  // milliseconds for a request and its answer
constexpr int kSilence = 3000;    // for its first byte
constexpr int kMostOpen = 256;    // requests under way

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

void Gate::incomingConnection(qintptr descriptor) {
  const bool hasRoom = MakeRoom();
  auto* socket = new QTcpSocket(this);
  if (!socket->setSocketDescriptor(descriptor) || !hasRoom) return delete socket;
  mIncomplete << socket;
  connect(socket, &QObject::destroyed, this, [this, socket] { mIncomplete.removeOne(socket); });
  socket->setReadBufferSize(RequestHead::kMost + RequestHead::kMostBody + 1);
  connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
  connect(socket, &QTcpSocket::readyRead, this, [this, socket] { Read(socket); });
  auto* patience = new QTimer(socket);
  patience->setSingleShot(true);
  patience->callOnTimeout(socket, [socket] { socket->abort(); });
  connect(
      socket, &QTcpSocket::readyRead, patience, [patience] { patience->start(kPatience); }, Qt::SingleShotConnection);
  patience->start(kSilence);
}

// Who only keeps connections open keeps nobody out.
bool Gate::MakeRoom() {
  if (findChildren<QTcpSocket*>(Qt::FindDirectChildrenOnly).size() < kMostOpen) return true;
  if (mIncomplete.isEmpty()) return false;
  delete mIncomplete.takeFirst();
  return true;
}

void Gate::TakeTime(QTcpSocket* socket) {
  delete socket->findChild<QTimer*>();
}

void Gate::Read(QTcpSocket* socket) {
  const RequestHead head = RequestHead::Read(socket->peek(RequestHead::kMost), serverPort());
  if (head.state == RequestHead::State::Refused) return Refuse(socket, head.status, head.error);
  if (head.state == RequestHead::State::Incomplete) return;
  const qint64 size = head.size + head.body;
  socket->setReadBufferSize(std::max<qint64>(socket->readBufferSize(), size + 1));
  if (socket->bytesAvailable() < size) return;
  mIncomplete.removeOne(socket);
  if (socket->bytesAvailable() > size)
    return Refuse(socket, 400, QStringLiteral("There is more than one request on the connection."));
  disconnect(socket, &QTcpSocket::readyRead, this, nullptr);
  if (head.isUpgrade) {
    TakeTime(socket);
    disconnect(socket, nullptr, socket, nullptr);
    emit WebSocketWanted(socket);
    return;
  }
  addPendingConnection(socket);
  emit socket->readyRead();  // the server reads the request and answers it
  disconnect(socket, &QTcpSocket::readyRead, nullptr, nullptr);
  // What comes before its answer is thrown away: unread, the other side's end would not be noticed.
  connect(socket, &QTcpSocket::readyRead, socket, [socket] { socket->readAll(); });
}

void Gate::Refuse(QTcpSocket* socket, int status, const QString& error) {
  mIncomplete.removeOne(socket);
  disconnect(socket, &QTcpSocket::readyRead, this, nullptr);
  const bool isHead = socket->peek(5) == "HEAD ";
  socket->write(Answer::Of({status, error}).Bytes(isHead));
  Linger(socket);
}
