#pragma once

#include "bench/server/asker.h"
#include "bench/server/liveclient.h"

/// A client that reads server-sent events: what a page's WebSocket has as text messages.
class EventStream : public LiveClient {
  Q_OBJECT

public:
  /// Begins the answer to `asker`, who has not left.
  EventStream(const Asker& asker, Bench& bench, const Patience& patience);
  ~EventStream() override;

private:
  void Write(const QString& type, const QByteArray& message) override;
  qint64 Waiting() const override;
  void Ping() override;
  void GiveUp() override;

  QPointer<QTcpSocket> mSocket;  // null: it has left
};
