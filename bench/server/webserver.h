#pragma once

#include <QAbstractHttpServer>
#include <QHttpServerRequest>
#include <QMap>
#include <QWebSocketServer>
#include <functional>

#include "bench/camera/bench.h"
#include "bench/record/recordondemand.h"
#include "bench/record/replay.h"
#include "bench/record/secondbench.h"
#include "bench/server/asker.h"
#include "bench/server/gate.h"
#include "bench/server/live.h"

/// The bench's web server on 127.0.0.1: page, API and WebSocket, as docs/bench.md says. What Gate has let in is
/// well-formed, small, and of the bench's own page.
class WebServer : public QAbstractHttpServer {
  Q_OBJECT

public:
  /// `replay`: what this bench plays; null: nothing.
  WebServer(Bench& bench, RecordOnDemand& record, Replay* replay, QObject* parent = nullptr);

  /// `port` 0: a free one. False with one sentence in `error`.
  bool Listen(quint16 port, QString* error);

  quint16 Port() const { return mGate->serverPort(); }

protected:
  bool handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) override;
  void missingHandler(const QHttpServerRequest& request, QTcpSocket* socket) override;

private:
  struct Request;
  struct Endpoint;
  static const Endpoint kEndpoints[];

  void Serve(const Request& request);
  QByteArray PictureAt(const QString& path);
  Answer File(const QString& file, const QHttpServerRequest& request);
  Answer Picture(const QHttpServerRequest& request);
  Answer Log(const QHttpServerRequest& request);
  void Stream(const Request& request);
  bool MayWatch(QTcpSocket* socket);
  void WaitFor(const Request& request);
  Answer MakeGallery(const QHttpServerRequest& request);
  Answer Restart(const QHttpServerRequest& request);
  Answer Recording();
  void StartReplay(const Request& request);
  Reply StopReplay(const QHttpServerRequest& request);
  static void Take(const Request& request, const std::function<Reply(const QJsonObject&)>& act);
  void TakeWebSocket(QTcpSocket* socket);

  Bench& mBench;
  RecordOnDemand& mRecord;
  Replay* mReplay;
  SecondBench mSecondBench;
  Gate* mGate;                   // the server's child
  QWebSocketServer mWebSockets;  // its children are the connections of all that watch
  Live mLive;
  QMap<QString, Answer> mFiles;       // of the page and of the documents, by path
  QMap<QString, QByteArray> mPacked;  // those of them that were asked for packed
};
