#pragma once

#include <QHttpServerResponder>
#include <QPointer>
#include <QTcpSocket>
#include <memory>

#include "bench/server/answer.h"

/// Who has sent a request and waits for its answer. It may leave meanwhile.
class Asker {
public:
  /// `isHead`: it wants no body.
  Asker(QHttpServerResponder responder, bool isHead);

  /// Once, at once or later; then the connection is closed. Nothing happens when it has left.
  void Answer(const ::Answer& answer) const;
  void Answer(const Reply& reply) const { Answer(::Answer::Of(reply)); }

  /// Once, in place of an answer: the head of one that goes on for as long as both sides like.
  void Begin(const QByteArray& type) const;

  /// From now on it may wait as long as it likes.
  void TakeTime() const;

  /// Its connection; null when it has left.
  QTcpSocket* Socket() const { return mSocket; }

private:
  void Write(const ::Answer& answer) const;

  std::shared_ptr<QHttpServerResponder> mResponder;  // good as long as the socket is
  QPointer<QTcpSocket> mSocket;
  bool mIsHead;
};
