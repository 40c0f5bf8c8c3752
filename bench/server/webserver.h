#pragma once

#include <QAbstractHttpServer>
#include <QHttpServerRequest>
#include <QMap>
#include <QWebSocketServer>

#include "bench/camera/bench.h"
#include "bench/server/gate.h"
#include "bench/server/live.h"

/// The bench's web server on 127.0.0.1: page, API and WebSocket, as docs/bench.md says. What Gate has let in is
/// well-formed, small, and of the bench's own page.
class WebServer : public QAbstractHttpServer {
  Q_OBJECT

public:
  explicit WebServer(Bench& bench, QObject* parent = nullptr);

  /// `port` 0: a free one. False with one sentence in `error`.
  bool Listen(quint16 port, QString* error);

  quint16 Port() const { return mGate->serverPort(); }

protected:
  bool handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) override;
  void missingHandler(const QHttpServerRequest& request, QTcpSocket* socket) override;

private:
  struct Answer {
    int status = 200;
    QByteArray type;
    QByteArray body;
  };
  struct Endpoint;
  static const Endpoint kEndpoints[];

  static Answer Json(const QJsonObject& object);
  static Answer Of(const Reply& reply);
  Answer AnswerTo(const QHttpServerRequest& request);
  Answer Picture(const QHttpServerRequest& request);
  Answer Log(const QHttpServerRequest& request);
  Answer Restart(const QHttpServerRequest& request);
  Answer Take(const QHttpServerRequest& request, Reply (*act)(Bench& bench, const QJsonObject& object));
  void TakeWebSocket(QTcpSocket* socket);

  Bench& mBench;
  Gate* mGate;  // the server's child
  QWebSocketServer mWebSockets;
  Live mLive;
  QMap<QString, QByteArray> mFiles;  // of the page, by path
};
