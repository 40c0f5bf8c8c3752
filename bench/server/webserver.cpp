#include "bench/server/webserver.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QHttpServerResponder>
#include <QImage>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QUrlQuery>

#include "bench/server/clicksound.h"

using Method = QHttpServerRequest::Method;

struct WebServer::Endpoint {
  const char* path;
  Method method;
  Answer (*serve)(WebServer& server, const QHttpServerRequest& request);
};

const WebServer::Endpoint WebServer::kEndpoints[] = {
    {"/ws", Method::Get,
     [](WebServer&, const QHttpServerRequest&) {
       return Of(Reply::Bad(QStringLiteral("This is for WebSockets: the request must ask for an upgrade.")));
     }},
    {"/api/lcd.png", Method::Get,
     [](WebServer& server, const QHttpServerRequest& request) { return server.Picture(request); }},
    {"/api/state", Method::Get,
     [](WebServer& server, const QHttpServerRequest&) { return Json(server.mBench.State()); }},
    {"/api/log", Method::Get, [](WebServer& server, const QHttpServerRequest& request) { return server.Log(request); }},
    {"/api/actions", Method::Get, [](WebServer&, const QHttpServerRequest&) { return Json(Bench::Actions()); }},
    {"/api/click.wav", Method::Get,
     [](WebServer&, const QHttpServerRequest&) {
       return Answer{200, "audio/wav", ClickSound()};
     }},
    {"/api/touch", Method::Post,
     [](WebServer& server, const QHttpServerRequest& request) {
       return server.Take(request,
                          [](Bench& bench, const QJsonObject& object) { return bench.Touch(object, nullptr); });
     }},
    {"/api/event", Method::Post,
     [](WebServer& server, const QHttpServerRequest& request) {
       return server.Take(request, [](Bench& bench, const QJsonObject& object) { return bench.Event(object); });
     }},
    {"/api/action", Method::Post,
     [](WebServer& server, const QHttpServerRequest& request) {
       return server.Take(request, [](Bench& bench, const QJsonObject& object) { return bench.Action(object); });
     }},
    {"/api/picture", Method::Post,
     [](WebServer& server, const QHttpServerRequest& request) { return Of(server.mBench.OwnPicture(request.body())); }},
    {"/api/interface/restart", Method::Post,
     [](WebServer& server, const QHttpServerRequest& request) { return server.Restart(request); }},
};

namespace {
constexpr char kPage[] = ":/web";        // the folder bench/web, put into the program when it was built
constexpr int kSendBuffer = 128 * 1024;  // bytes
constexpr int kMostWebSockets = 16;

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

QMap<QString, QByteArray> PageFiles() {
  QMap<QString, QByteArray> files;
  const QDir folder{QLatin1String(kPage)};
  for (const QString& name : folder.entryList(QDir::Files)) {
    QFile file(folder.filePath(name));
    if (file.open(QIODevice::ReadOnly)) files[u'/' + name] = file.readAll();
  }
  return files;
}

// The query: only what `known` names, each once, and only whole numbers. False: it is wrong.
bool ReadQuery(const QHttpServerRequest& request, const QString& known, qint64* number) {
  const auto items = request.query().queryItems();
  if (items.isEmpty()) return !request.url().hasQuery() || request.url().query().isEmpty();
  bool good = false;
  *number = items[0].second.toLongLong(&good);
  return good && *number >= 0 && items.size() == 1 && items[0].first == known;
}
}  // namespace

WebServer::WebServer(Bench& bench, QObject* parent)
    : QAbstractHttpServer(parent),
      mBench(bench),
      mGate(new Gate(this)),
      mWebSockets(QStringLiteral("dashcam-bench"), QWebSocketServer::NonSecureMode),
      mLive(bench),
      mFiles(PageFiles()) {
  connect(mGate, &Gate::WebSocketWanted, this, &WebServer::TakeWebSocket);
  connect(&mWebSockets, &QWebSocketServer::newConnection, this, [this] {
    while (mWebSockets.hasPendingConnections())
      mLive.Add(std::unique_ptr<QWebSocket>(mWebSockets.nextPendingConnection()));
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
  const Answer answer = AnswerTo(request);
  makeResponder(request, socket)
      .write(answer.body,
             {{"Content-Type", answer.type},
              {"Connection", "close"},
              {"Cache-Control", "no-store"},
              {"X-Content-Type-Options", "nosniff"},
              // No page from elsewhere shows any of it, not even as a picture or in a frame.
              {"Cross-Origin-Resource-Policy", "same-origin"},
              {"Content-Security-Policy", "frame-ancestors 'none'"}},
             QHttpServerResponder::StatusCode(answer.status));
  return true;
}

// Never called: every request is answered above.
void WebServer::missingHandler(const QHttpServerRequest&, QTcpSocket*) {}

WebServer::Answer WebServer::Json(const QJsonObject& object) {
  return {200, "application/json", QJsonDocument(object).toJson(QJsonDocument::Compact)};
}

WebServer::Answer WebServer::Of(const Reply& reply) {
  Answer answer = Json(reply.IsGood() ? QJsonObject{{QStringLiteral("ok"), true}}
                                      : QJsonObject{{QStringLiteral("error"), reply.error}});
  answer.status = reply.status;
  return answer;
}

WebServer::Answer WebServer::AnswerTo(const QHttpServerRequest& request) {
  const QString path = request.url().path();
  const QString file = path == QLatin1String("/") ? QStringLiteral("/index.html") : path;
  const bool isFile = mFiles.contains(file);
  if (isFile && request.method() == Method::Get) return {200, TypeOf(file), mFiles.value(file)};
  const auto* endpoint = std::find_if(std::begin(kEndpoints), std::end(kEndpoints),
                                      [&path](const Endpoint& each) { return path == QLatin1String(each.path); });
  if (endpoint == std::end(kEndpoints) && !isFile) return Of({404, QStringLiteral("There is nothing at this path.")});
  const bool isPost = !isFile && endpoint->method == Method::Post;
  if (isFile || endpoint->method != request.method())
    return Of(
        {405, QStringLiteral("This path takes %1 only.").arg(isPost ? QStringLiteral("POST") : QStringLiteral("GET"))});
  return endpoint->serve(*this, request);
}

WebServer::Answer WebServer::Picture(const QHttpServerRequest& request) {
  qint64 raw = 0;
  if (!ReadQuery(request, QStringLiteral("raw"), &raw) || raw > 1)
    return Of(Reply::Bad(QStringLiteral("The query must be raw=1 or nothing.")));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  (raw == 1 ? mBench.Lcd().Raw() : mBench.Lcd().Now()).save(&buffer, "PNG");
  return {200, "image/png", bytes};
}

WebServer::Answer WebServer::Log(const QHttpServerRequest& request) {
  qint64 since = 0;
  if (!ReadQuery(request, QStringLiteral("since"), &since))
    return Of(Reply::Bad(QStringLiteral("The query must be since= and a whole number, or nothing.")));
  return Json({{QStringLiteral("last"), mBench.Log().Last()},
               {QStringLiteral("entries"), mBench.Log().Since(since, EventLog::kMost)}});
}

WebServer::Answer WebServer::Restart(const QHttpServerRequest& request) {
  if (!request.body().isEmpty()) return Of(Reply::Bad(QStringLiteral("This takes no body.")));
  return Of(mBench.Action({{QStringLiteral("name"), QStringLiteral("interfaceRestart")}}));
}

WebServer::Answer WebServer::Take(const QHttpServerRequest& request,
                                  Reply (*act)(Bench& bench, const QJsonObject& object)) {
  const QJsonDocument document = QJsonDocument::fromJson(request.body());
  if (!document.isObject()) return Of(Reply::Bad(QStringLiteral("The body is no JSON object.")));
  return Of(act(mBench, document.object()));
}

void WebServer::TakeWebSocket(QTcpSocket* socket) {
  if (mWebSockets.findChildren<QTcpSocket*>(Qt::FindDirectChildrenOnly).size() >= kMostWebSockets) {
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    socket->readAll();
    socket->write(Gate::Refusal(409, QStringLiteral("Too many pages watch the bench.")));
    return socket->disconnectFromHost();
  }
  // A page that lags is noticed soon: not much is on its way in the system.
  socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, kSendBuffer);
  socket->setParent(&mWebSockets);
  mWebSockets.handleConnection(socket);
}
