#include "bench/server/eventstream.h"

EventStream::EventStream(const Asker& asker, Bench& bench, const Patience& patience)
    : LiveClient(bench, patience), mSocket(asker.Socket()) {
  asker.TakeTime();
  asker.Begin("text/event-stream");
  connect(mSocket, &QTcpSocket::disconnected, this, &EventStream::Left);
}

EventStream::~EventStream() {
  if (!mSocket) return;
  mSocket->disconnect(this);
  mSocket->abort();
}

void EventStream::Write(const QString& type, const QByteArray& message) {
  if (mSocket) mSocket->write("event: " + type.toLatin1() + "\ndata: " + message + "\n\n");
}

qint64 EventStream::Waiting() const {
  return mSocket ? mSocket->bytesToWrite() : 0;
}

// A comment. That what came before has been taken is the sign.
void EventStream::Ping() {
  if (!KeepsUp() || !mSocket) return;
  Lives();
  mSocket->write(":\n\n");
}

void EventStream::GiveUp() {
  if (mSocket) mSocket->abort();
}
