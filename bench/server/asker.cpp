#include "bench/server/asker.h"

#include "bench/server/gate.h"

Asker::Asker(QHttpServerResponder responder, bool isHead)
    : mResponder(std::make_shared<QHttpServerResponder>(std::move(responder))),
      mSocket(mResponder->socket()),
      mIsHead(isHead) {}

void Asker::Answer(const ::Answer& answer) const {
  if (!mSocket || !mSocket->isOpen()) return;
  Write(answer);
  mSocket->disconnectFromHost();
}

void Asker::Begin(const QByteArray& type) const {
  ::Answer beginning{200, type};
  beginning.isEndless = true;
  if (mSocket && mSocket->isOpen()) Write(beginning);
}

void Asker::Write(const ::Answer& answer) const {
  mResponder->writeStatusLine(QHttpServerResponder::StatusCode(answer.status));
  for (const auto& [name, value] : answer.Headers()) mResponder->writeHeader(name, value);
  mResponder->writeBody(mIsHead ? QByteArray() : answer.body);
}

void Asker::TakeTime() const {
  if (mSocket) Gate::TakeTime(mSocket);
}
