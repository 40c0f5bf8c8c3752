#include "recorder/console/linesocket.h"

#include <QJsonDocument>

#include "recorder/service/requests.h"

LineSocket::LineSocket(std::unique_ptr<QLocalSocket> socket) : mSocket(std::move(socket)) {
  mSocket->setReadBufferSize(kLongest + 1);
  connect(mSocket.get(), &QLocalSocket::readyRead, this, &LineSocket::Read);
  connect(mSocket.get(), &QLocalSocket::disconnected, this, [this] {
    Read();  // what it sent before it left
    emit Left();
  });
}

LineSocket::~LineSocket() {
  mSocket->disconnect(this);
}

void LineSocket::Read() {
  while (mSocket->canReadLine()) {
    const QByteArray line = mSocket->readLine().trimmed();
    if (!line.isEmpty()) emit Came(line);
  }
  if (mSocket->bytesAvailable() > kLongest) Refuse(413, QStringLiteral("A line has at most %1 bytes.").arg(kLongest));
}

void LineSocket::Send(const QJsonObject& message) {
  if (mSocket->state() != QLocalSocket::ConnectedState) return;
  if (mSocket->bytesToWrite() > kMostWaiting) return mSocket->abort();
  mSocket->write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
  mSocket->flush();
}

void LineSocket::Refuse(int status, const QString& error) {
  Send(requests::Refusal({status, error}));
  mSocket->abort();
}
