#include "bench/server/webserver.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QTcpSocket>
#include <functional>
#include <limits>

#include "bench/server/clicksound.h"
#include "bench/server/eventstream.h"
#include "bench/server/gallerypage.h"
#include "bench/server/pageclient.h"
#include "bench/server/query.h"
#include "bench/server/wait.h"
#include "recorder/service/members.h"

using Method = QHttpServerRequest::Method;

struct WebServer::Request {
  const QHttpServerRequest& http;  // until it is served
  Asker asker;
};

struct WebServer::Endpoint {
  const char* path;
  Method method;
  void (*serve)(WebServer& server, const Request& request);  // answers it, or sees to it that it is answered
};

namespace {
constexpr char kNoReplay[] = "This bench replays no recording.";
}  // namespace

const WebServer::Endpoint WebServer::kEndpoints[] = {
    {"/ws", Method::Get,
     [](WebServer&, const Request& request) {
       request.asker.Answer(Reply::Bad(QStringLiteral("This is for WebSockets: the request must ask for an upgrade.")));
     }},
    {"/api/lcd.png", Method::Get,
     [](WebServer& server, const Request& request) { request.asker.Answer(server.Picture(request.http)); }},
    {"/api/state", Method::Get,
     [](WebServer& server, const Request& request) { request.asker.Answer(Answer::Json(server.mBench.State())); }},
    {"/api/log", Method::Get,
     [](WebServer& server, const Request& request) { request.asker.Answer(server.Log(request.http)); }},
    {"/api/actions", Method::Get,
     [](WebServer&, const Request& request) { request.asker.Answer(Answer::Json(Bench::Actions())); }},
    {"/api/scenarios", Method::Get,
     [](WebServer&, const Request& request) {
       Answer answer;
       answer.body = QJsonDocument(Bench::Scenarios()).toJson(QJsonDocument::Compact);
       request.asker.Answer(answer);
     }},
    {"/api/click.wav", Method::Get,
     [](WebServer&, const Request& request) {
       request.asker.Answer({200, "audio/wav", ClickSound()});
     }},
    {"/api/events", Method::Get, [](WebServer& server, const Request& request) { server.Stream(request); }},
    {"/api/latency", Method::Get,
     [](WebServer& server, const Request& request) { request.asker.Answer(Answer::Json(server.mLive.Described())); }},
    {"/api/wait", Method::Get, [](WebServer& server, const Request& request) { server.WaitFor(request); }},
    {"/gallery", Method::Get,
     [](WebServer& server, const Request& request) {
       const QByteArray page = server.mBench.Gallery().Page();
       request.asker.Answer({200, "text/html; charset=utf-8", page.isEmpty() ? QByteArray(kGalleryPage) : page});
     }},
    {"/api/gallery", Method::Post,
     [](WebServer& server, const Request& request) { request.asker.Answer(server.MakeGallery(request.http)); }},
    {"/api/touch", Method::Post,
     [](WebServer& server, const Request& request) {
       Take(request, [&server](const QJsonObject& object) { return server.mBench.Touch(object, nullptr); });
     }},
    {"/api/event", Method::Post,
     [](WebServer& server, const Request& request) {
       Take(request, [&server](const QJsonObject& object) { return server.mBench.Event(object); });
     }},
    {"/api/action", Method::Post,
     [](WebServer& server, const Request& request) {
       Take(request, [&server](const QJsonObject& object) { return server.mBench.Action(object); });
     }},
    {"/api/picture", Method::Post,
     [](WebServer& server, const Request& request) {
       server.mBench.OwnPicture(request.http.body(),
                                [asker = request.asker](const Reply& reply) { asker.Answer(reply); });
     }},
    {"/api/record", Method::Post,
     [](WebServer& server, const Request& request) {
       Take(request, [&server](const QJsonObject& object) { return server.mRecord.Take(object); });
     }},
    {"/api/recording", Method::Get,
     [](WebServer& server, const Request& request) { request.asker.Answer(server.Recording()); }},
    {"/api/scenario", Method::Post,
     [](WebServer& server, const Request& request) {
       Take(request, [&server](const QJsonObject& object) { return server.mBench.Scenario(object); });
     }},
    {"/api/snapshot", Method::Post,
     [](WebServer& server, const Request& request) {
       Take(request, [&server](const QJsonObject& object) { return server.mBench.Snapshot(object); });
     }},
    {"/api/interface/restart", Method::Post,
     [](WebServer& server, const Request& request) { request.asker.Answer(server.Restart(request.http)); }},
    {"/api/replay", Method::Post, [](WebServer& server, const Request& request) { server.StartReplay(request); }},
    {"/api/replay/stop", Method::Post,
     [](WebServer& server, const Request& request) { request.asker.Answer(server.StopReplay(request.http)); }},
    {"/api/replay/control", Method::Post,
     [](WebServer& server, const Request& request) {
       if (!server.mReplay) return request.asker.Answer(Reply::NotNow(QLatin1String(kNoReplay)));
       Take(request, [&server](const QJsonObject& object) { return server.mReplay->Control(object); });
     }},
};

namespace {
constexpr char kDeflate[] = "deflate";  // as zlib packs
constexpr char kGalleryFolder[] = "/gallery/";
constexpr int kSendBuffer = 128 * 1024;  // bytes
constexpr int kMostWatching = 16;

constexpr std::pair<const char*, const char*> kTypes[] = {{"html", "text/html; charset=utf-8"},
                                                          {"js", "text/javascript; charset=utf-8"},
                                                          {"css", "text/css; charset=utf-8"},
                                                          {"svg", "image/svg+xml"},
                                                          {"png", "image/png"},
                                                          {"ico", "image/vnd.microsoft.icon"},
                                                          {"webmanifest", "application/manifest+json"}};

QByteArray TypeOf(const QString& file) {
  for (const auto& [suffix, type] : kTypes)
    if (file.endsWith(u'.' + QLatin1String(suffix))) return type;
  return "application/octet-stream";
}

// What was put into the program when it was built, by path: the page and the documents.
QMap<QString, Answer> Files() {
  QMap<QString, Answer> files;
  const auto add = [&files](const QString& path, const QString& name) {
    QFile file(name);
    if (file.open(QIODevice::ReadOnly)) files[path] = {200, TypeOf(name), file.readAll()};
  };
  for (const QFileInfo& file : QDir(QStringLiteral(":/web")).entryInfoList(QDir::Files))
    add(u'/' + file.fileName(), file.filePath());
  for (const QFileInfo& file : QDir(QStringLiteral(":/docs")).entryInfoList(QDir::Files))
    add(QStringLiteral("/docs/") + (file.suffix() == QLatin1String("html") ? file.baseName() : file.fileName()),
        file.filePath());
  files[QStringLiteral("/")] = files.value(QStringLiteral("/index.html"));
  files[QStringLiteral("/docs")] = files.take(QStringLiteral("/docs/index"));
  return files;
}

Reply TooManyWatch() {
  return Reply::NotNow(QStringLiteral("Too many pages watch the bench."));
}

Reply TwiceInQuery() {
  return Reply::Bad(QStringLiteral("The query says the same thing twice."));
}

// The whole number `name` of the query, 0 unless it is there. Nothing else may be.
Reply ReadNumber(const QHttpServerRequest& request, const char* name, int most, int* number) {
  QJsonObject query;
  if (!ReadQuery(request.url(), &query)) return TwiceInQuery();
  Members members(query);
  *number = members.Whole(name, 0, most, 0);
  const QString error = members.Error();
  return error.isEmpty() ? Reply() : Reply::Bad(error);
}
}  // namespace

WebServer::WebServer(Bench& bench, RecordOnDemand& record, Replay* replay, QObject* parent)
    : QAbstractHttpServer(parent),
      mBench(bench),
      mRecord(record),
      mReplay(replay),
      mSecondBench(bench.Root("/run/replay")),
      mGate(new Gate(this)),
      mWebSockets(QStringLiteral("dashcam-bench"), QWebSocketServer::NonSecureMode),
      mLive(bench),
      mFiles(Files()) {
  mBench.TellAlso(QStringLiteral("replay"), [this] { return mSecondBench.State(); });
  mBench.TellAlso(QStringLiteral("replaying"),
                  [this] { return mReplay ? QJsonValue(mReplay->State()) : QJsonValue(); });
  connect(&mSecondBench, &SecondBench::Changed, &mBench, &Bench::StateChanged);
  connect(mGate, &Gate::WebSocketWanted, this, &WebServer::TakeWebSocket);
  connect(&mWebSockets, &QWebSocketServer::newConnection, this, [this] {
    while (mWebSockets.hasPendingConnections())
      mLive.Add(std::make_unique<PageClient>(std::unique_ptr<QWebSocket>(mWebSockets.nextPendingConnection()), mBench,
                                             LiveClient::Patience()));
  });
}

bool WebServer::Listen(quint16 port, QString* error) {
  if (!mGate->listen(QHostAddress::LocalHost, port)) {
    *error = QStringLiteral("Port %1 of 127.0.0.1 cannot be used: %2.").arg(port).arg(mGate->errorString());
    return false;
  }
  bind(mGate);
  return true;
}

bool WebServer::handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) {
  Serve({request, Asker(makeResponder(request, socket), request.method() == Method::Head)});
  return true;
}

// Never called: every request is answered above.
void WebServer::missingHandler(const QHttpServerRequest&, QTcpSocket*) {}

void WebServer::Serve(const Request& request) {
  const QString path = request.http.url().path();
  const bool isFile = mFiles.contains(path);
  const auto* endpoint = std::find_if(std::begin(kEndpoints), std::end(kEndpoints),
                                      [&path](const Endpoint& each) { return path == QLatin1String(each.path); });
  const QByteArray picture = PictureAt(path);
  const bool isFixed = isFile || !picture.isEmpty();  // read only
  if (endpoint == std::end(kEndpoints) && !isFixed)
    return request.asker.Answer(Reply{404, QStringLiteral("There is nothing at this path.")});
  const Method method = isFixed ? Method::Get : endpoint->method;
  if (request.http.method() != method) {
    const char* name = method == Method::Post ? "POST" : "GET";
    Answer refusal = Answer::Of({405, QStringLiteral("This path takes %1 only.").arg(QLatin1String(name))});
    refusal.allow = name;
    return request.asker.Answer(refusal);
  }
  if (isFile) return request.asker.Answer(File(path, request.http));
  if (!picture.isEmpty()) return request.asker.Answer({200, "image/png", picture});
  endpoint->serve(*this, request);
}

// Of the gallery, or of what a replay found different; empty: there is none at this path.
QByteArray WebServer::PictureAt(const QString& path) {
  if (path.startsWith(QLatin1String(kGalleryFolder)))
    return mBench.Gallery().Picture(path.mid(qstrlen(kGalleryFolder)));
  QFile png(mSecondBench.Picture(path));
  return !png.fileName().isEmpty() && png.open(QIODevice::ReadOnly) ? png.readAll() : QByteArray();
}

Answer WebServer::File(const QString& file, const QHttpServerRequest& request) {
  Answer answer = mFiles.value(file);
  if (!request.value("Accept-Encoding").contains(kDeflate)) return answer;
  if (!mPacked.contains(file)) mPacked[file] = qCompress(answer.body, 9).mid(sizeof(quint32));  // without its length
  answer.body = mPacked.value(file);
  answer.encoding = kDeflate;
  return answer;
}

Answer WebServer::Picture(const QHttpServerRequest& request) {
  int raw = 0;
  if (const Reply reply = ReadNumber(request, "raw", 1, &raw); !reply.IsGood()) return Answer::Of(reply);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  (raw == 1 ? mBench.Lcd().Raw() : mBench.Lcd().Now()).save(&buffer, "PNG");
  return {200, "image/png", bytes};
}

Answer WebServer::Log(const QHttpServerRequest& request) {
  int since = 0;
  if (const Reply reply = ReadNumber(request, "since", std::numeric_limits<int>::max(), &since); !reply.IsGood())
    return Answer::Of(reply);
  return Answer::Json({{QStringLiteral("last"), mBench.Log().Last()},
                       {QStringLiteral("entries"), mBench.Log().Since(since, EventLog::kMost)}});
}

void WebServer::WaitFor(const Request& request) {
  QJsonObject query;
  Wait::Wish wish;
  const Reply reply = ReadQuery(request.http.url(), &query) ? Wait::Take(query, &wish) : TwiceInQuery();
  if (!reply.IsGood()) return request.asker.Answer(reply);
  new Wait(mBench, wish, request.asker);
}

void WebServer::Stream(const Request& request) {
  QJsonObject query;
  const QString error = ReadQuery(request.http.url(), &query) ? Members(query).Error() : TwiceInQuery().error;
  if (!error.isEmpty()) return request.asker.Answer(Reply::Bad(error));
  if (!MayWatch(request.asker.Socket())) return request.asker.Answer(TooManyWatch());
  mLive.Add(std::make_unique<EventStream>(request.asker, mBench, LiveClient::Patience()));
}

Answer WebServer::Recording() {
  const QByteArray file = mRecord.File();
  if (file.isEmpty()) return Answer::Of({404, QStringLiteral("There is no recording with an input.")});
  Answer answer{200, "application/jsonl", file};
  answer.file = "dashcam-recording.jsonl";
  return answer;
}

Answer WebServer::MakeGallery(const QHttpServerRequest& request) {
  if (!request.body().isEmpty()) return Answer::Of(Reply::Bad(QStringLiteral("This takes no body.")));
  QString error;
  return Answer::Of(mBench.Gallery().Start(&error) ? Reply() : Reply::NotNow(error));
}

Answer WebServer::Restart(const QHttpServerRequest& request) {
  if (!request.body().isEmpty()) return Answer::Of(Reply::Bad(QStringLiteral("This takes no body.")));
  return Answer::Of(mBench.Action({{QStringLiteral("name"), QStringLiteral("interfaceRestart")}}));
}

void WebServer::StartReplay(const Request& request) {
  int fast = 0;
  if (const Reply reply = ReadNumber(request.http, "fast", 1, &fast); !reply.IsGood())
    return request.asker.Answer(reply);
  if (mReplay) return request.asker.Answer(Reply::NotNow(QStringLiteral("This bench replays a recording itself.")));
  mSecondBench.Start(request.http.body(), fast == 1,
                     [asker = request.asker](const Reply& reply) { asker.Answer(reply); });
}

Reply WebServer::StopReplay(const QHttpServerRequest& request) {
  return request.body().isEmpty() ? mSecondBench.Stop() : Reply::Bad(QStringLiteral("This takes no body."));
}

void WebServer::Take(const Request& request, const std::function<Reply(const QJsonObject&)>& act) {
  const QJsonDocument document = QJsonDocument::fromJson(request.http.body());
  request.asker.Answer(document.isObject() ? act(document.object())
                                           : Reply::Bad(QStringLiteral("The body is no JSON object.")));
}

// A place for it, among those that watch, unless there are as many as may be.
bool WebServer::MayWatch(QTcpSocket* socket) {
  if (mWebSockets.findChildren<QTcpSocket*>(Qt::FindDirectChildrenOnly).size() >= kMostWatching) return false;
  // One that lags is noticed soon: not much is on its way in the system.
  socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, kSendBuffer);
  socket->setParent(&mWebSockets);
  return true;
}

void WebServer::TakeWebSocket(QTcpSocket* socket) {
  if (MayWatch(socket)) return mWebSockets.handleConnection(socket);
  connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
  socket->readAll();
  socket->write(Answer::Of(TooManyWatch()).Bytes(false));
  socket->disconnectFromHost();
}
