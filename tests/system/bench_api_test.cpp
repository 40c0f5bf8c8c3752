// Holds the tables of docs/bench.md against a running bench with the real interface.
#include <QImage>
#include <QWebSocket>
#include <QtEndian>
#include <cmath>

#include "bench/supervise/languages.h"
#include "tests/system/benchrun.h"

namespace {
bool IsSentence(const QString& text) {
  return text.size() > 10 && text.endsWith(u'.') && !text.contains(u'\n');
}

// The headers of every answer.
bool KeepsOthersOut(const BenchAnswer& answer) {
  return answer.Header("Connection") == "close" && answer.Header("Cross-Origin-Resource-Policy") == "same-origin" &&
         answer.Header("Content-Security-Policy") == "frame-ancestors 'none'" &&
         answer.Header("X-Content-Type-Options") == "nosniff" && answer.Header("Cache-Control") == "no-store" &&
         answer.Header("Content-Length").toLongLong() >= answer.body.size();
}

QByteArray Compact(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// A page that watches: a WebSocket with what came over it.
class Page {
public:
  Page(const BenchRun& bench, const QByteArray& origin = {}) : mSocket(QString::fromLatin1(origin)) {
    QObject::connect(&mSocket, &QWebSocket::textMessageReceived, &mSocket, [this](const QString& text) {
      const QJsonObject message = QJsonDocument::fromJson(text.toUtf8()).object();
      messages << message;
      order << message.value(QStringLiteral("type")).toString();
    });
    QObject::connect(&mSocket, &QWebSocket::binaryMessageReceived, &mSocket, [this](const QByteArray& bytes) {
      order << QStringLiteral("picture");
      ++pictures;
      Draw(bytes);
    });
    mSocket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/ws").arg(bench.Port())));
  }

  bool IsOpen() const { return mSocket.isValid(); }
  bool IsClosed() const { return mSocket.state() == QAbstractSocket::UnconnectedState; }
  void Say(const QJsonObject& message) { mSocket.sendTextMessage(QString::fromUtf8(Compact(message))); }
  QWebSocket& Socket() { return mSocket; }

  /// The newest message of a type; empty: none.
  QJsonObject Newest(const char* type) const {
    for (auto message = messages.crbegin(); message != messages.crend(); ++message)
      if (message->value(QStringLiteral("type")) == QLatin1String(type)) return *message;
    return {};
  }

  QJsonObject State() const { return Newest("state").value(QStringLiteral("state")).toObject(); }

  /// The answer to what was said with this id; empty: none yet.
  QJsonObject AnswerTo(const QJsonValue& id) const {
    for (const QJsonObject& message : messages)
      if (message.value(QStringLiteral("type")) == QLatin1String("answer") && message.value(QStringLiteral("id")) == id)
        return message;
    return {};
  }

  QList<QJsonObject> messages;
  QStringList order;  // of everything that came, by type
  QImage lcd{480, 320, QImage::Format_RGBX8888};
  int pictures = 0;
  bool isBroken = false;  // a picture message was wrong
  int rectanglesOfLast = 0;
  bool wasLastWhole = false;

private:
  static int Word(const QByteArray& bytes, qsizetype at) { return qFromLittleEndian<quint16>(bytes.constData() + at); }

  void Draw(const QByteArray& bytes) {
    isBroken = isBroken || bytes.size() < 2;
    if (isBroken) return;
    rectanglesOfLast = Word(bytes, 0);
    isBroken = rectanglesOfLast < 1 || rectanglesOfLast > 600;
    qsizetype at = 2;
    for (int i = 0; i < rectanglesOfLast && !isBroken; ++i) {
      isBroken = at + 8 > bytes.size();
      if (isBroken) return;
      const QRect where(Word(bytes, at), Word(bytes, at + 2), Word(bytes, at + 4), Word(bytes, at + 6));
      at += 8;
      wasLastWhole = where == lcd.rect();
      isBroken = where.isEmpty() || !lcd.rect().contains(where) ||
                 at + qsizetype{4} * where.width() * where.height() > bytes.size();
      for (int y = where.top(); y <= where.bottom() && !isBroken; ++y, at += 4 * where.width())
        std::memcpy(lcd.scanLine(y) + 4 * where.left(), bytes.constData() + at, size_t(4 * where.width()));
    }
    isBroken = isBroken || at != bytes.size();
  }

  QWebSocket mSocket;
};
/// Who reads the server-sent events.
class Stream {
public:
  explicit Stream(const BenchRun& bench) {
    QObject::connect(&mSocket, &QTcpSocket::readyRead, &mSocket, [this] { Take(); });
    QObject::connect(&mSocket, &QTcpSocket::connected, &mSocket, [this, host = bench.Host()] {
      mSocket.write("GET /api/events HTTP/1.1\r\nHost: " + host + "\r\n\r\n");
    });
    mSocket.connectToHost(QStringLiteral("127.0.0.1"), bench.Port());
  }

  const BenchAnswer& Head() const { return mHead; }

  /// The newest message of a type; empty: none.
  QJsonObject Newest(const char* type) const { return mNewest.value(QLatin1String(type)); }

  QStringList types;  // of all messages
  bool isBroken = false;

private:
  void Take() {
    mBytes += mSocket.readAll();
    if (const qsizetype end = mBytes.indexOf("\r\n\r\n"); mHead.status == 0 && end >= 0) {
      mHead = {mBytes.mid(9, 3).toInt(), mBytes.left(end), {}};
      mBytes.remove(0, end + 4);
    }
    for (qsizetype end = 0; mHead.status != 0 && (end = mBytes.indexOf("\n\n")) >= 0; mBytes.remove(0, end + 2)) {
      const QList<QByteArray> lines = mBytes.left(end).split('\n');
      if (lines == QList<QByteArray>{":"}) continue;
      const QString type = QString::fromLatin1(lines[0]).remove(QStringLiteral("event: "));
      const QJsonObject message = QJsonDocument::fromJson(lines.last().mid(6)).object();
      isBroken |= lines.size() != 2 || !lines[0].startsWith("event: ") || !lines[1].startsWith("data: ") ||
                  message[QStringLiteral("type")] != type;
      types << type;
      mNewest[type] = message;
    }
  }

  QTcpSocket mSocket;
  QByteArray mBytes;
  BenchAnswer mHead;
  QMap<QString, QJsonObject> mNewest;
};
}  // namespace

class BenchApiTest : public QObject {
  Q_OBJECT

  std::unique_ptr<BenchRun> mBench;

  QImage Lcd(const QByteArray& target = "/api/lcd.png") const {
    return QImage::fromData(mBench->Get(target).body).convertToFormat(QImage::Format_RGBX8888);
  }

  // Whether the page shows what the API gives, now or soon. The next moment the interface may paint something new.
  bool Shows(const Page& page) const {
    return QTest::qWaitFor([&] { return page.lcd == Lcd(); }, kPatienceMs);
  }

  // Whether a page gets its WebSocket, now or soon.
  bool OpensSoon() const {
    return QTest::qWaitFor(
        [this] {
          Page page(*mBench);
          return QTest::qWaitFor([&page] { return page.pictures > 0; }, 500);
        },
        kPatienceMs);
  }

private slots:
  void initTestCase() {
    mBench = std::make_unique<BenchRun>();
    QVERIFY(mBench->IsUp());
  }
  void cleanupTestCase() { mBench.reset(); }

  void addressIsPrinted() {
    QCOMPARE(mBench->Line(), "Dash camera: http://127.0.0.1:" + QByteArray::number(mBench->Port()) + "/\n");
  }

  void endpoints_data() {
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("picture") << QByteArray("/api/lcd.png") << QByteArray("image/png");
    QTest::newRow("raw picture") << QByteArray("/api/lcd.png?raw=1") << QByteArray("image/png");
    QTest::newRow("state") << QByteArray("/api/state") << QByteArray("application/json");
    QTest::newRow("log") << QByteArray("/api/log") << QByteArray("application/json");
    QTest::newRow("log from") << QByteArray("/api/log?since=2") << QByteArray("application/json");
    QTest::newRow("actions") << QByteArray("/api/actions") << QByteArray("application/json");
    QTest::newRow("latency") << QByteArray("/api/latency") << QByteArray("application/json");
    QTest::newRow("wait") << QByteArray("/api/wait?screen=PREVIEW") << QByteArray("application/json");
    QTest::newRow("click") << QByteArray("/api/click.wav") << QByteArray("audio/wav");
    QTest::newRow("gallery") << QByteArray("/gallery") << QByteArray("text/html; charset=utf-8");
    const QDir page(QStringLiteral(SOURCE_DIR "/bench/web"));
    for (const QString& file : page.entryList(QDir::Files))
      QTest::newRow(qPrintable(file)) << '/' + file.toUtf8() << QByteArray();
    if (page.exists(QStringLiteral("index.html")))
      QTest::newRow("page") << QByteArray("/") << QByteArray("text/html; charset=utf-8");
  }

  void endpoints() {
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, type);
    const BenchAnswer answer = mBench->Get(target);
    QCOMPARE(answer.status, 200);
    QVERIFY(!answer.body.isEmpty());
    if (!type.isEmpty()) QCOMPARE(answer.Header("Content-Type"), type);
    QVERIFY(answer.Header("Content-Type") != "application/octet-stream");
    QVERIFY(answer.Header("Access-Control-Allow-Origin").isEmpty());
    QVERIFY(KeepsOthersOut(answer));
    // The same from the bench's own page, by each of its names.
    for (const char* host : {"127.0.0.1:", "localhost:", "[::1]:"}) {
      const QByteArray name = host + QByteArray::number(mBench->Port());
      QCOMPARE(mBench->Send("GET " + target + " HTTP/1.1\r\nHost: " + name + "\r\nOrigin: http://" + name + "\r\n\r\n")
                   .status,
               200);
    }
  }

  // Every one, and whatever they lead to.
  void documentsAreServed() {
    const auto page = [this](const QString& path) {
      const BenchAnswer answer = mBench->Get(path.toUtf8());
      if (answer.Header("Content-Type") != "text/html; charset=utf-8" || !KeepsOthersOut(answer)) return QString();
      return QString::fromUtf8(answer.body);
    };
    const QString index = page(QStringLiteral("/docs"));
    QStringList paths{QStringLiteral("/docs/readme"), QStringLiteral("/docs/changelog")};
    for (const QFileInfo& file : QDir(QStringLiteral(SOURCE_DIR "/docs")).entryInfoList({QStringLiteral("*.md")}))
      paths << QStringLiteral("/docs/") + file.baseName();
    QVERIFY(paths.size() > 5);
    static const QRegularExpression link(QStringLiteral("(?:href|src)=\"([^\"#]*)#?([^\"]*)\""));
    for (const QString& path : paths) {
      QVERIFY2(index.contains(QStringLiteral("<a href=\"%1\">").arg(path)), qPrintable(path));
      const QString text = page(path);
      QVERIFY2(text.contains(QLatin1String("<h1 id=")) && !text.contains(QLatin1String("|---")), qPrintable(path));
      for (const auto& found : link.globalMatch(text)) {
        if (!found.captured(1).startsWith(u'/')) continue;
        const BenchAnswer answer = mBench->Get(found.captured(1).toUtf8());
        QVERIFY2(answer.status == 200, qPrintable(path + u' ' + found.captured(0)));
        QVERIFY2(found.captured(2).isEmpty() || answer.body.contains("id=\"" + found.captured(2).toUtf8() + '"'),
                 qPrintable(path + u' ' + found.captured(0)));
      }
    }
    QVERIFY(page(QStringLiteral("/docs/bench")).contains(QLatin1String("<h2 id=\"the-card\">")));
    QVERIFY(page(QStringLiteral("/docs/readme")).contains(QLatin1String("src=\"/docs/preview.png\"")));
    for (const char* none : {"/docs/", "/docs/nothing", "/docs/bench.md", "/docs/index", "/index.html/"})
      QCOMPARE(mBench->Get(none).status, 404);
  }

  void refusals_data() {
    QTest::addColumn<QByteArray>("request");  // HOST stands for the bench's
    QTest::addColumn<int>("status");
    const auto get = [](const QByteArray& target) { return "GET " + target + " HTTP/1.1\r\nHost: HOST\r\n\r\n"; };
    const auto post = [](const QByteArray& target, const QByteArray& body, const QByteArray& headers = {}) {
      return "POST " + target + " HTTP/1.1\r\nHost: HOST\r\n" + headers +
             "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    };
    const auto row = [](const QByteArray& name, const QByteArray& request, int status) {
      QTest::newRow(name.constData()) << request << status;
    };
    row("no HTTP", "hello\r\n\r\n", 400);
    row("two requests at once", get("/api/state") + get("/api/state"), 400);
    row("WebSocket without an upgrade", get("/ws"), 400);
    row("raw=2", get("/api/lcd.png?raw=2"), 400);
    row("raw twice", get("/api/lcd.png?raw=1&raw=1"), 400);
    row("unknown query", get("/api/lcd.png?size=1"), 400);
    row("since=x", get("/api/log?since=x"), 400);
    row("since=-1", get("/api/log?since=-1"), 400);
    for (const QByteArray number : {"+1", "%2B1", "%201", "1%20", "0x1", "1.0", "1e1", "9223372036854775808"})
      row("since=" + number, get("/api/log?since=" + number), 400);
    row("raw=+1", get("/api/lcd.png?raw=+1"), 400);
    row("since without a number", get("/api/log?since"), 400);
    for (const QByteArray query : {"", "?", "?timeout=5", "?screen=", "?screen=NOWHERE", "?screen=preview", "?screen=1",
                                   "?box=", "?box=ALL", "?box=PREVIEW", "?screen=PREVIEW&screen=PREVIEW",
                                   "?screen=PREVIEW&timeout=0", "?screen=PREVIEW&timeout=60001",
                                   "?screen=PREVIEW&timeout=+5", "?screen=PREVIEW&timeout=", "?screen=PREVIEW&for=5"})
      row("wait " + query, get("/api/wait" + query), 400);
    row("events with a query", get("/api/events?since=1"), 400);
    row("restart with a body", post("/api/interface/restart", "{}"), 400);
    for (const QByteArray path : {"/api/touch", "/api/event", "/api/action"}) {
      row(path + " without a body", post(path, ""), 400);
      row(path + " broken", post(path, R"({"action": "tap")"), 400);
      row(path + " array", post(path, "[]"), 400);
      row(path + " number", post(path, "5"), 400);
      row(path + " no text", post(path, "{\"a\": \"\xff\xfe\"}"), 400);
      row(path + " deep", post(path, QByteArray(60000, '[')), 400);
      row(path + " empty", post(path, "{}"), 400);
      row(path + " too large", post(path, QByteArray(65537, ' ')), 413);
      row(path + " 4 bytes beyond 32 bits",
          "POST " + path + " HTTP/1.1\r\nHost: HOST\r\nContent-Length: 4294967300\r\n\r\n{  }", 413);
      row(path + " foreign Origin", post(path, "{}", "Origin: http://evil.example\r\n"), 403);
      row(path + " GET", get(path), 405);
    }
    for (const QByteArray body : {R"({"action":"poke","x":1,"y":1})",
                                  R"({"action":"tap","x":480,"y":1})",
                                  R"({"action":"tap","x":-1,"y":1})",
                                  R"({"action":"tap","x":1,"y":320})",
                                  R"({"action":"tap","x":1.5,"y":1})",
                                  R"({"action":"tap","x":"1","y":1})",
                                  R"({"action":"tap","x":1})",
                                  R"({"action":"tap","y":1})",
                                  R"({"action":"tap","x":1,"y":1,"ms":0})",
                                  R"({"action":"tap","x":1,"y":1,"ms":60001})",
                                  R"({"action":"press","x":1,"y":1,"ms":60})",
                                  R"({"action":"release","x":1,"y":1})",
                                  R"({"action":"tap","x":1,"y":1,"raw":1})",
                                  R"({"action":"path"})",
                                  R"({"action":"path","path":{}})",
                                  R"({"action":"path","path":[{"x":1,"y":1}]})",
                                  R"({"action":"path","path":[{"x":1,"y":1},{"x":9,"y":1}]})",
                                  R"({"action":"path","path":[{"x":1,"y":1},{"x":480,"y":1,"ms":9}]})",
                                  R"({"action":"path","path":[{"x":1,"y":1,"ms":0},{"x":9,"y":1,"ms":9}]})",
                                  R"({"action":"path","path":[{"x":1,"y":1,"ms":30001},{"x":9,"y":1,"ms":30000}]})",
                                  R"({"action":"path","path":[{"x":1,"y":1},{"x":9,"y":1,"ms":9,"z":1}]})",
                                  R"({"action":"path","path":[1,2]})",
                                  R"({"action":"path","path":[{"x":1,"y":1},{"x":9,"y":1,"ms":9}],"x":1})",
                                  R"({"action":"tap","x":1,"y":1,"path":[]})",
                                  R"({"action":"tap","x":512,"y":1,"raw":true})",
                                  R"({"action":"tap","x":1,"y":1,"z":1})",
                                  R"({"x":1,"y":1})"})
      row("touch " + body, post("/api/touch", body), 400);
    QByteArray points = R"({"x":1,"y":1})";
    for (int i = 0; i < 100; ++i) points += R"(,{"x":1,"y":1,"ms":1})";
    row("touch of 101 points", post("/api/touch", R"({"action":"path","path":[)" + points + "]}"), 400);
    for (const QByteArray body :
         {R"({"event":0})", R"({"event":39})", R"({"event":"11"})", R"({"event":11,"value":2147483648})",
          R"({"event":11,"value":0.5})", R"({"event":11,"more":1})", R"({"value":1})"})
      row("event " + body, post("/api/event", body), 400);
    for (const QByteArray body :
         {R"({"name":"fly"})", R"({"name":5})", R"({"name":""})", R"({"kmh":5})", R"({"name":"speed"})",
          R"({"name":"speed","kmh":301})", R"({"name":"speed","kmh":"60"})", R"({"name":"speed","kmh":60,"mph":40})",
          R"({"name":"gps","state":"lost"})", R"({"name":"recorderStop","now":true})", R"({"name":"impact"})",
          R"({"name":"language"})", R"({"name":"language","to":"tlh"})", R"({"name":"language","to":1})",
          R"({"name":"panelAskew","skew":1.5,"x":0,"y":0,"noise":0})"})
      row("action " + body, post("/api/action", body), 400);
    row("huge action", post("/api/action", "{\"name\":\"speed\",\"kmh\":\"" + QByteArray(2000, '6') + "\"}"), 400);
    row("chunks", "POST /api/touch HTTP/1.1\r\nHost: HOST\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n",
        400);

    row("no Host", "GET /api/state HTTP/1.1\r\n\r\n", 403);
    row("foreign Host", "GET /api/state HTTP/1.1\r\nHost: evil.example\r\n\r\n", 403);
    row("foreign Origin", "GET /api/state HTTP/1.1\r\nHost: HOST\r\nOrigin: http://evil.example\r\n\r\n", 403);
    row("foreign WebSocket",
        "GET /ws HTTP/1.1\r\nHost: HOST\r\nOrigin: http://evil.example\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
        "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n",
        403);

    for (const QByteArray path : {"/nothing", "/api", "/api/", "/api/touch/", "/../main.cpp", "/%2e%2e/main.cpp",
                                  "//api/state", "/index.html/", "/web/index.html", "/API/STATE"})
      row("no path " + path, get(path), 404);
    row("POST to nothing", post("/nothing", "{}"), 404);

    for (const QByteArray path : {"/api/state", "/api/log", "/api/lcd.png", "/api/actions", "/api/click.wav",
                                  "/api/wait", "/api/events", "/api/latency"})
      row("POST " + path, post(path, "{}"), 405);
    row("GET a restart", get("/api/interface/restart"), 405);
    row("GET a picture", get("/api/picture"), 405);
    row("picture of a foreign page", post("/api/picture", "BM", "Origin: http://evil.example\r\n"), 403);
    for (const QByteArray method : {"HEAD", "PUT", "DELETE", "OPTIONS", "PATCH"})
      for (const QByteArray path : {"/", "/api/state"})
        row(method + ' ' + path, method + ' ' + path + " HTTP/1.1\r\nHost: HOST\r\n\r\n", 405);
    row("HEAD of a foreign Host", "HEAD / HTTP/1.1\r\nHost: evil.example\r\n\r\n", 403);

    row("large head", "GET / HTTP/1.1\r\nHost: HOST\r\nX: " + QByteArray(20000, 'x') + "\r\n\r\n", 431);
  }

  void refusals() {
    QFETCH(QByteArray, request);
    QFETCH(int, status);
    const qint64 before = mBench->LastEntry();
    const BenchAnswer answer = mBench->Send(request.replace("HOST", mBench->Host()));
    QCOMPARE(answer.status, status);
    QVERIFY(KeepsOthersOut(answer));
    QCOMPARE(answer.Header("Allow"), QByteArray(status != 405 ? "" : request.startsWith("GET") ? "POST" : "GET"));
    if (request.startsWith("HEAD")) {
      QCOMPARE(answer.body, QByteArray());
    } else {
      QCOMPARE(answer.Json().size(), 1);
      QVERIFY2(IsSentence(answer.Error()), answer.body.constData());
    }
    for (const QJsonObject& entry : mBench->Log(before)) {
      const QString kind = entry.value(QStringLiteral("kind")).toString();
      QVERIFY(kind != QLatin1String("touch") && kind != QLatin1String("event"));
    }
  }

  // A request that comes in pieces is a request.
  void pageIsPackedForWhoTakesIt() {
    const auto page = [this](const QByteArray& more) {
      return mBench->Send("GET /bench.css HTTP/1.1\r\nHost: " + mBench->Host() + "\r\n" + more + "\r\n");
    };
    const BenchAnswer plain = page({}), packed = page("Accept-Encoding: gzip, deflate\r\n");
    QCOMPARE(plain.Header("Content-Encoding"), QByteArray());
    QCOMPARE(packed.Header("Content-Encoding"), QByteArray("deflate"));
    QVERIFY(packed.body.size() * 2 < plain.body.size());
    QByteArray length(sizeof(quint32), 0);
    qToBigEndian(static_cast<quint32>(plain.body.size()), length.data());
    QCOMPARE(qUncompress(length + packed.body), plain.body);
  }
  void slowRequestIsAnswered() {
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
    QVERIFY(socket.waitForConnected());
    for (const char byte :
         "POST /api/event HTTP/1.1\r\nHost: " + mBench->Host() + "\r\nContent-Length: 12\r\n\r\n{\"event\":24}") {
      socket.write(&byte, 1);
      QVERIFY(socket.waitForBytesWritten());
    }
    QVERIFY(socket.waitForReadyRead());
    QVERIFY(socket.readAll().startsWith("HTTP/1.1 200 OK\r\n"));
  }

  // Nobody waits long for who says nothing, but longer for who has begun.
  void silentConnectionIsClosed() {
    QTcpSocket silent, slow;
    for (QTcpSocket* socket : {&silent, &slow}) {
      socket->connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
      QVERIFY(socket->waitForConnected());
    }
    slow.write("GET ");
    QElapsedTimer clock;
    clock.start();
    QTRY_COMPARE(silent.state(), QAbstractSocket::UnconnectedState);
    QVERIFY2(clock.elapsed() > 2000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(slow.state(), QAbstractSocket::ConnectedState);
    slow.write("/api/state HTTP/1.1\r\nHost: " + mBench->Host() + "\r\n\r\n");
    QVERIFY(slow.waitForReadyRead());
    QVERIFY(slow.readAll().startsWith("HTTP/1.1 200 OK\r\n"));
  }

  void actionsAreDescribed() {
    const QJsonObject described = mBench->Get("/api/actions").Json();
    QStringList names;
    for (const QJsonValue& action : described[QStringLiteral("actions")].toArray()) {
      names << action[QStringLiteral("name")].toString();
      QVERIFY(!action[QStringLiteral("group")].toString().isEmpty());
      QVERIFY(!action[QStringLiteral("label")].toString().isEmpty());
      for (const QJsonValue& argument : action[QStringLiteral("arguments")].toArray()) {
        QVERIFY(argument[QStringLiteral("name")].isString());
        if (argument[QStringLiteral("choices")].isArray()) continue;
        for (const char* number : {"min", "max", "default"}) QVERIFY(argument[QLatin1String(number)].isDouble());
      }
    }
    QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), names.size());
    for (const char* name : {"speed", "panelAskew", "panelStraight", "interfaceRestart", "language", "interfaceKill",
                             "recorderRestart", "recorderStop", "recorderStart"})
      QVERIFY(names.contains(QLatin1String(name)));
    const QJsonObject language =
        described[QStringLiteral("actions")].toArray().at(names.indexOf(QLatin1String("language"))).toObject();
    QCOMPARE(language[QStringLiteral("arguments")].toArray(),
             QJsonArray({QJsonObject(
                 {{"name", "to"},
                  {"choices", QJsonArray::fromStringList(languages::Names().split(QStringLiteral(", ")))}})}));
    const QJsonArray events = described[QStringLiteral("events")].toArray();
    QCOMPARE(events.size(), 38);
    QCOMPARE(events[0][QStringLiteral("event")].toInt(), 1);
    QCOMPARE(events[0][QStringLiteral("name")].toString(), QStringLiteral("RECV_ZEL_STATUS_SYS_RESTART"));
    QCOMPARE(events[37][QStringLiteral("event")].toInt(), 38);
  }

  void stateHasItsMembers() {
    const QJsonObject state = mBench->State();
    QCOMPARE(
        state.keys().join(u' '),
        QStringLiteral(
            "areas armed boxes gallery interface lcd log panel record recorder replay replaying root scenario screen "
            "snapshotWork snapshots touch unavailable video"));
    QCOMPARE(state[QStringLiteral("screen")].toString(), QStringLiteral("PREVIEW"));
    QCOMPARE(state[QStringLiteral("boxes")].toObject().keys().join(u' '), QStringLiteral("event own"));
    QCOMPARE(state[QStringLiteral("interface")].toObject().keys().join(u' '),
             QStringLiteral("ended language running starts"));
    QCOMPARE(state[QStringLiteral("interface")][QStringLiteral("language")], QJsonValue(QStringLiteral("ko")));
    QCOMPARE(state[QStringLiteral("interface")][QStringLiteral("running")], QJsonValue(true));
    QCOMPARE(state[QStringLiteral("interface")][QStringLiteral("starts")], QJsonValue(1));
    QVERIFY(state[QStringLiteral("interface")][QStringLiteral("ended")].isNull());
    QCOMPARE(state[QStringLiteral("lcd")].toObject(),
             QJsonObject({{"width", 480}, {"height", 320}, {"live", true}, {"backlight", 100000}}));
    QCOMPARE(state[QStringLiteral("touch")].toObject(), QJsonObject({{"down", false}}));
    QCOMPARE(state[QStringLiteral("panel")].toObject(), QJsonObject({{"skew", 0}, {"x", 0}, {"y", 0}, {"noise", 0}}));
    QCOMPARE(state[QStringLiteral("recorder")][QStringLiteral("motion")].toObject(),
             QJsonObject({{"front", "ffff0fffffffffff"}, {"rear", "ffff0fffffffffff"}}));
    QCOMPARE(state[QStringLiteral("recorder")][QStringLiteral("frontLed")].toObject().keys().join(u' '),
             QStringLiteral("entries mode"));
    QCOMPARE(state[QStringLiteral("video")].toObject().keys().join(u' '),
             QStringLiteral("mirrored pipCorner playing rearAlive recording view"));
    QVERIFY(state[QStringLiteral("recorder")][QStringLiteral("settings")].isObject());
    QVERIFY(state[QStringLiteral("recorder")][QStringLiteral("setup")].isObject());
    QVERIFY(QFile::exists(state[QStringLiteral("root")].toString() + QStringLiteral("/tmp/config_init.ini")));
    QVERIFY(state[QStringLiteral("log")].toInteger() > 0);
  }

  // With the arguments of each that arms it, and as it is then.
  void whatIsArmedIsToldUntilItIsDisarmed_data() {
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QByteArray>("arguments");
    QTest::newRow("commands") << QByteArray("commandsFail") << QByteArray(R"({"number":1000})");
    QTest::newRow("formats") << QByteArray("sdFormatFails") << QByteArray(R"({"number":2})");
    QTest::newRow("a check") << QByteArray("sdCheckFinds") << QByteArray(R"({"fault":"5"})");
    QTest::newRow("no verdict") << QByteArray("voltageVerdict") << QByteArray(R"({"verdict":"no answer"})");
    QTest::newRow("no end of a voice") << QByteArray("voiceEndSuppress") << QByteArray(R"({"state":"on"})");
    QTest::newRow("the panel") << QByteArray("panelAskew") << QByteArray(R"({"noise":0,"skew":3,"x":0,"y":-5})");
  }
  void whatIsArmedIsToldUntilItIsDisarmed() {
    QFETCH(QByteArray, action);
    QFETCH(QByteArray, arguments);
    QCOMPARE(mBench->State("armed").toArray(), QJsonArray());
    QJsonObject request = QJsonDocument::fromJson(arguments).object();
    request.insert(QStringLiteral("name"), QString::fromLatin1(action));
    QVERIFY(mBench->Action(Compact(request)));
    const QJsonArray armed = mBench->State("armed").toArray();
    QCOMPARE(armed.size(), 1);
    QCOMPARE(armed[0][QStringLiteral("action")].toString(), QString::fromLatin1(action));
    const QJsonObject disarm = armed[0][QStringLiteral("disarm")].toObject();
    QCOMPARE(disarm.keys(), request.keys());
    // The interface asks of itself: some of them may have failed by now.
    if (action != "commandsFail") QCOMPARE(Compact(armed[0][QStringLiteral("arguments")].toObject()), arguments);
    QVERIFY(mBench->Action(Compact(disarm)));
    QCOMPARE(mBench->State("armed").toArray(), QJsonArray());
  }

  // What a button that is grey says is what its action would say.
  void whatCannotBeDoneNowIsTold() {
    const auto reason = [this](const QString& name) {
      return mBench->State("unavailable").toObject().value(name).toString();
    };
    const auto isRefused = [this, &reason](const QByteArray& request, const char* sentence) {
      const QString name = QJsonDocument::fromJson(request).object().value(QStringLiteral("name")).toString();
      const BenchAnswer answer = mBench->Post("/api/action", request);
      return answer.status >= 400 && answer.Error() == QLatin1String(sentence) && reason(name) == answer.Error();
    };
    QVERIFY(isRefused(R"({"name":"parkOut"})", "The car is not parked."));
    QVERIFY(isRefused(R"({"name":"recorderStart"})", "The recorder is running."));
    QCOMPARE(reason(QStringLiteral("parkIn")), QString());
    QVERIFY(mBench->Action(R"({"name":"parkIn"})"));
    QVERIFY(isRefused(R"({"name":"parkIn"})", "The car is parked."));
    QVERIFY(isRefused(R"({"name":"report","kind":"3 levels"})", "The car is parked."));
    QVERIFY(isRefused(R"({"name":"shock"})", "The car is parked."));
    QCOMPARE(reason(QStringLiteral("parkOut")), QString());
    QVERIFY(mBench->Action(R"({"name":"parkOut"})"));
    QVERIFY(mBench->Action(R"({"name":"closeReport"})"));
    QVERIFY(mBench->Action(R"({"name":"sdOut"})"));
    QVERIFY(isRefused(R"({"name":"sdFull","recordings":5})", "There is no card."));
    QVERIFY(isRefused(R"({"name":"sdCorrupt","how":"cut"})", "There is no card."));
    QVERIFY(isRefused(R"({"name":"shock"})", "Nothing is being recorded."));
    QVERIFY(mBench->Action(R"({"name":"sdIn"})"));
    QVERIFY(mBench->Action(R"({"name":"recorderStop"})"));
    QVERIFY(isRefused(R"({"name":"speed","kmh":5})", "The recorder is stopped."));
    QVERIFY(isRefused(R"({"name":"recorderStop"})", "The recorder is stopped."));
    QCOMPARE(reason(QStringLiteral("recorderStart")) + reason(QStringLiteral("language")), QString());
    QVERIFY(mBench->Action(R"({"name":"recorderStart"})"));
    QTRY_COMPARE(mBench->State("recorder/connections"), QJsonValue(1));
  }

  void logHasNoGaps() {
    const QList<QJsonObject> entries = mBench->Log();
    qint64 number = 0;
    for (const QJsonObject& entry : entries) {
      QCOMPARE(entry[QStringLiteral("number")].toInteger(), ++number);
      QVERIFY(entry[QStringLiteral("time")].toDouble() > 1.6e12);
      QVERIFY(entry[QStringLiteral("kind")].isString());
      QVERIFY(!entry[QStringLiteral("name")].toString().isEmpty());
    }
    QCOMPARE(mBench->Log(number - 3).first()[QStringLiteral("number")].toInteger(), number - 2);
    QVERIFY(mBench->Log(number + 1000).isEmpty());
  }

  void commandIsLogged() {
    const QJsonObject entry = mBench->Find("command", QStringLiteral("SFIELD_GET_VOLTAGE"));
    QCOMPARE(entry[QStringLiteral("field")].toInt(), 8659);
    QCOMPARE(entry[QStringLiteral("result")].toInt(), 0);
    QVERIFY(entry[QStringLiteral("answer")].isDouble());
  }

  void whatTheRecorderSaysIsLogged() {
    const qint64 before = mBench->LastEntry();
    QVERIFY(mBench->Action(R"({"name":"shock"})"));
    const QJsonObject said = mBench->Find("voice", QStringLiteral("Impact detected."), before);
    QCOMPARE(said.keys().join(u' '), QStringLiteral("kind name number time"));
  }

  void touchIsLoggedAsThePanelGivesIt_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::newRow("left top") << 0 << 0;
    QTest::newRow("right bottom") << 479 << 319;
    QTest::newRow("middle") << 240 << 160;
  }

  void touchIsLoggedAsThePanelGivesIt() {
    QFETCH(int, x);
    QFETCH(int, y);
    const qint64 before = mBench->LastEntry();
    QCOMPARE(mBench->Post("/api/touch", Compact({{"action", "press"}, {"x", x}, {"y", y}})).body,
             QByteArray("{\"ok\":true}"));
    QCOMPARE(mBench->State("touch/down"), QJsonValue(true));
    QCOMPARE(mBench->Post("/api/touch", R"({"action":"press","x":200,"y":100})").status, 200);
    QCOMPARE(mBench->Post("/api/touch", R"({"action":"release"})").status, 200);
    QCOMPARE(mBench->State("touch/down"), QJsonValue(false));
    const QJsonObject press = mBench->Find("touch", QStringLiteral("press"), before);
    QCOMPARE(press[QStringLiteral("x")].toInt(), x);
    QCOMPARE(press[QStringLiteral("y")].toInt(), y);
    const double rawX = press[QStringLiteral("rawX")].toDouble(), rawY = press[QStringLiteral("rawY")].toDouble();
    QVERIFY(std::abs(-1.0638298 * rawY + 499.57446 - x) <= 1);
    QVERIFY(std::abs(0.012088975 * rawY + 1.1363636 * rawX - 24.76789 - y) <= 1);
    QCOMPARE(mBench->Find("touch", QStringLiteral("move"), before)[QStringLiteral("x")].toInt(), 200);
    const QJsonObject release = mBench->Find("touch", QStringLiteral("release"), before);
    QVERIFY(!release.isEmpty() && !release.contains(QStringLiteral("x")));
  }

  void rawTouchKeepsThePanelsUnits() {
    const qint64 before = mBench->LastEntry();
    QCOMPARE(mBench->Post("/api/touch", R"({"action":"tap","x":511,"y":0,"raw":true,"ms":1})").status, 200);
    QTRY_VERIFY(!mBench->Find("touch", QStringLiteral("release"), before).isEmpty());
    const QJsonObject press = mBench->Find("touch", QStringLiteral("press"), before);
    QCOMPARE(press[QStringLiteral("rawX")].toInt(), 511);
    QCOMPARE(press[QStringLiteral("rawY")].toInt(), 0);
    QVERIFY(!press.contains(QStringLiteral("x")));
  }

  // In straight lines, through every point, in its time.
  void fingerFollowsAPath() {
    const qint64 before = mBench->LastEntry();
    QCOMPARE(
        mBench
            ->Post("/api/touch", R"({"action":"path","path":[{"x":100,"y":300,"ms":100},{"x":100,"y":310,"ms":100},)"
                                 R"({"x":400,"y":310,"ms":300},{"x":400,"y":310,"ms":200}]})")
            .body,
        QByteArray("{\"ok\":true}"));
    QCOMPARE(mBench->State("touch/down"), QJsonValue(true));
    QTRY_VERIFY(!mBench->Find("touch", QStringLiteral("release"), before).isEmpty());
    QList<QJsonObject> touches;
    for (const QJsonObject& entry : mBench->Log(before))
      if (entry[QStringLiteral("kind")] == QLatin1String("touch")) touches << entry;
    QCOMPARE(touches.first()[QStringLiteral("name")].toString(), QStringLiteral("press"));
    QVERIFY(touches.size() > 12 && touches.size() < 30);
    const auto time = [&touches](qsizetype i) { return touches[i][QStringLiteral("time")].toInteger(); };
    const auto at = [&touches](qsizetype i) {
      return QPoint(touches[i][QStringLiteral("x")].toInt(), touches[i][QStringLiteral("y")].toInt());
    };
    const qsizetype release = touches.size() - 1;
    QCOMPARE(at(0), QPoint(100, 300));
    QCOMPARE(at(release - 1), QPoint(400, 310));
    QVERIFY(time(1) - time(0) >= 100);  // it rests
    bool hasTurned = false;
    for (qsizetype i = 1; i < release; ++i) {
      QCOMPARE(touches[i][QStringLiteral("name")].toString(), QStringLiteral("move"));
      QVERIFY(at(i).x() >= at(i - 1).x() && at(i).y() >= at(i - 1).y() && at(i) != at(i - 1));
      QVERIFY(at(i).x() == 100 || at(i).y() == 310);
      hasTurned |= at(i) == QPoint(100, 310);
    }
    QVERIFY(hasTurned);
    // It rests and holds: a move that a busy machine makes late is no reason to end later.
    QVERIFY2(time(release) - time(0) >= 699 && time(release) - time(0) < 2000,
             qPrintable(QString::number(time(release) - time(0))));
  }

  void anyOtherTouchEndsAPath_data() {
    QTest::addColumn<QByteArray>("touch");
    QTest::addColumn<QString>("names");
    QTest::newRow("tap") << QByteArray(R"({"action":"tap","x":1,"y":310,"ms":1})") << "press release press release";
    QTest::newRow("press") << QByteArray(R"({"action":"press","x":1,"y":310})") << "press release press";
    QTest::newRow("release") << QByteArray(R"({"action":"release"})") << "press release";
    QTest::newRow("path") << QByteArray(R"({"action":"path","path":[{"x":1,"y":310},{"x":1,"y":310,"ms":1}]})")
                          << "press release press release";
  }

  void anyOtherTouchEndsAPath() {
    QFETCH(QByteArray, touch);
    QFETCH(QString, names);
    const qint64 before = mBench->LastEntry();
    const auto done = [&] {
      QStringList all;
      for (const QJsonObject& entry : mBench->Log(before))
        if (entry[QStringLiteral("kind")] == QLatin1String("touch")) all << entry[QStringLiteral("name")].toString();
      return all.join(u' ');
    };
    QCOMPARE(
        mBench->Post("/api/touch", R"({"action":"path","path":[{"x":1,"y":310},{"x":1,"y":310,"ms":60000}]})").status,
        200);
    QCOMPARE(mBench->Post("/api/touch", touch).status, 200);
    QTRY_COMPARE(done(), names);
    QCOMPARE(mBench->Post("/api/touch", R"({"action":"release"})").status, 200);
    QCOMPARE(mBench->State("touch/down"), QJsonValue(false));
  }

  // The view key: the picture of the other camera, its command in the log, the click.
  void tapWorksTheInterface() {
    Page page(*mBench);
    QTRY_VERIFY(page.pictures > 0);
    const QJsonValue view = mBench->State("video/view");
    const auto tapUntil = [&](const auto& done) {
      return QTest::qWaitFor(
          [&] {
            mBench->Post("/api/touch", R"({"action":"tap","x":40,"y":30,"ms":20})");
            return QTest::qWaitFor(done, 400);
          },
          kPatienceMs);
    };
    QVERIFY(tapUntil([&] { return mBench->State("video/view") != view; }));
    QTRY_VERIFY(!page.Newest("click").isEmpty());
    QTRY_VERIFY(!mBench->Find("shell", QStringLiteral("aplay /opt/ipnc/voice/touch.wav")).isEmpty());
    QTRY_COMPARE(page.State()[QStringLiteral("video")], mBench->State("video"));
  }

  // Without asking again: it comes when it comes.
  void waitIsAnsweredWhenTheBoxIsUp() {
    const auto wait = [this](QTcpSocket* socket, const QByteArray& query) {
      socket->connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
      socket->write("GET /api/wait?" + query + " HTTP/1.1\r\nHost: " + mBench->Host() + "\r\n\r\n");
      return socket->waitForBytesWritten(kPatienceMs);
    };
    const auto answered = [](QTcpSocket* socket) {
      QByteArray bytes = socket->readAll();
      while (socket->waitForReadyRead(kPatienceMs)) bytes += socket->readAll();  // until it is closed
      return QJsonDocument::fromJson(bytes.mid(bytes.indexOf("\r\n\r\n") + 4)).object();
    };
    QCOMPARE(mBench->Get("/api/wait?box=none&screen=PREVIEW").status, 200);
    QTcpSocket box, both, other;
    QVERIFY(wait(&box, "box=R_HW_ERROR") && wait(&both, "screen=PREVIEW&box=R_HW_ERROR"));
    QVERIFY(wait(&other, "screen=MAINMENU&box=R_HW_ERROR&timeout=2000"));
    {
      QTcpSocket leaves;
      QVERIFY(wait(&leaves, "box=R_HW_ERROR"));
    }
    QCOMPARE(mBench->State("boxes/event"), QJsonValue());  // and they have been read
    QVERIFY(!box.waitForReadyRead(200) && !both.waitForReadyRead(0));
    QCOMPARE(mBench->Post("/api/event", R"({"event":8,"value":3})").status, 200);
    QVERIFY(box.waitForReadyRead(kPatienceMs) && both.waitForReadyRead(kPatienceMs));
    for (QTcpSocket* socket : {&box, &both}) {
      const QJsonObject answer = answered(socket);
      QCOMPARE(answer.keys().join(u' '), QStringLiteral("boxes ok screen"));
      QCOMPARE(answer[QStringLiteral("screen")], QJsonValue(QStringLiteral("PREVIEW")));
      QCOMPARE(answer[QStringLiteral("boxes")][QStringLiteral("event")][QStringLiteral("name")],
               QJsonValue(QStringLiteral("R_HW_ERROR")));
      QVERIFY(answer[QStringLiteral("boxes")][QStringLiteral("own")].isNull());
    }
    QVERIFY(other.waitForReadyRead(kPatienceMs));
    QVERIFY(IsSentence(answered(&other)[QStringLiteral("error")].toString()));
  }

  // Of a real tap: first without anybody who watches, then with a page, which is told when it asks.
  void latencyOfATouchIsMeasured() {
    const auto latency = [this] { return mBench->Get("/api/latency").Json(); };
    const auto last = [&latency](const char* what) { return latency()[QStringLiteral("last")][QLatin1String(what)]; };
    const auto tapUntil = [&](const auto& done) {
      return QTest::qWaitFor(
          [&] {
            mBench->Post("/api/touch", R"({"action":"tap","x":40,"y":30,"ms":20})");
            return QTest::qWaitFor(done, 900);
          },
          10000);
    };
    const int touches = latency()[QStringLiteral("touches")].toInt();
    QVERIFY(tapUntil([&] { return last("command").isDouble(); }));
    QVERIFY(last("command").toDouble() > 0 && last("command").toDouble() <= 1000);
    QVERIFY(last("pixels").isNull());
    QVERIFY(latency()[QStringLiteral("touches")].toInt() > touches);
    QCOMPARE(latency()[QStringLiteral("command")].toObject().keys().join(u' '), QStringLiteral("max median p95 p99"));
    Page page(*mBench);
    QTRY_VERIFY(page.pictures > 0);
    QVERIFY(tapUntil([&] { return last("pixels").isDouble() && last("command").isDouble(); }));
    QVERIFY(last("pixels").toDouble() > 0 && last("pixels").toDouble() <= 1000);
    QTRY_VERIFY(latency()[QStringLiteral("pictures")].toInt() > 0 && latency()[QStringLiteral("bytes")].toInt() > 0);
    QVERIFY(page.Newest("latency").isEmpty());
    page.Say({{"type", "latency"}, {"on", true}, {"id", 1}});
    QTRY_VERIFY(!page.Newest("latency").isEmpty());
    QCOMPARE(page.Newest("latency")[QStringLiteral("last")], latency()[QStringLiteral("last")]);
    QCOMPARE(page.Newest("latency").keys().join(u' '),
             QStringLiteral("bytes command last pictures pixels touches type"));
  }

  // A status event shows its box; the state names it.
  void eventShowsItsBox() {
    QCOMPARE(mBench->Post("/api/event", R"({"event":8,"value":3})").body, QByteArray("{\"ok\":true}"));
    const QJsonObject entry = mBench->Find("event", QStringLiteral("RECV_ZEL_STATUS_HW_ERROR"));
    QCOMPARE(entry[QStringLiteral("event")].toInt(), 8);
    QCOMPARE(entry[QStringLiteral("value")].toInt(), 3);
    QCOMPARE(entry[QStringLiteral("result")].toInt(), 0);
    QTRY_COMPARE(mBench->State("boxes/event/name"), QJsonValue(QStringLiteral("R_HW_ERROR")));
    QVERIFY(mBench->State("boxes/event/id").isDouble());
    QVERIFY(mBench->Find("screen", QStringLiteral("screen PREVIEW"))[QStringLiteral("number")].toInt() > 0);
  }

  void waitInVainSaysWhatIsThere() {
    const BenchAnswer answer = mBench->Get("/api/wait?screen=MAINMENU&timeout=1");
    QCOMPARE(answer.status, 408);
    QVERIFY2(answer.Error().startsWith(QLatin1String("The screen is PREVIEW and ")), qPrintable(answer.Error()));
    QVERIFY(KeepsOthersOut(answer));
  }

  // The 10 s of any other request are none of it.
  void waitMayTakeLongerThanARequest() {
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
    socket.write("GET /api/wait?screen=MAINMENU&timeout=11000 HTTP/1.1\r\nHost: " + mBench->Host() + "\r\n\r\n");
    QVERIFY(socket.waitForReadyRead(20000));
    QVERIFY(socket.readAll().startsWith("HTTP/1.1 408 "));
  }

  void actionIsDoneAndLogged() {
    QCOMPARE(mBench->Post("/api/action", R"({"name":"speed","kmh":87})").body, QByteArray("{\"ok\":true}"));
    const QJsonObject entry = mBench->Find("action", QStringLiteral("speed"));
    QCOMPARE(entry[QStringLiteral("arguments")].toObject(), QJsonObject({{"kmh", 87}}));
    QCOMPARE(entry[QStringLiteral("result")].toInt(), 0);
    QCOMPARE(mBench->State("recorder/speed"), QJsonValue(87));
    QCOMPARE(mBench->Post("/api/action", R"({"name":"speed","kmh":999})").status, 400);
    const QJsonObject refused = mBench->Find("action", QStringLiteral("speed"));
    QCOMPARE(refused[QStringLiteral("result")].toInt(), -1);
    QVERIFY(IsSentence(refused[QStringLiteral("error")].toString()));
  }

  void rawPictureHasTheKeyColour() {
    const QImage raw = Lcd("/api/lcd.png?raw=1"), seen = Lcd();
    QCOMPARE(raw.size(), QSize(480, 320));
    QCOMPARE(seen.size(), QSize(480, 320));
    int keyed = 0, left = 0;
    for (int y = 0; y < 320; ++y) {
      for (int x = 0; x < 480; ++x) {
        keyed += raw.pixel(x, y) == qRgb(255, 0, 8);
        left += seen.pixel(x, y) == qRgb(255, 0, 8);
      }
    }
    QVERIFY(keyed > 0);
    QCOMPARE(left, 0);
  }

  void stoppedRecorderIsSaid() {
    QVERIFY(mBench->Action(R"({"name":"recorderStop"})"));
    QVERIFY(mBench->State("video").isNull());
    QVERIFY(mBench->State("recorder").isNull());
    for (const auto& [path, body] : {std::pair<QByteArray, QByteArray>{"/api/event", R"({"event":24,"value":5})"},
                                     {"/api/action", R"({"name":"speed","kmh":5})"},
                                     {"/api/action", R"({"name":"recorderStop"})"}}) {
      const BenchAnswer answer = mBench->Post(path, body);
      QCOMPARE(answer.status, 409);
      QVERIFY(IsSentence(answer.Error()));
    }
    QVERIFY(mBench->Action(R"({"name":"recorderStart"})"));
    QCOMPARE(mBench->Post("/api/action", R"({"name":"recorderStart"})").status, 409);
    QVERIFY(mBench->State("video").isObject());
    QTRY_COMPARE(mBench->State("recorder/connections"), QJsonValue(1));  // the interface is back
  }

  // ---- the WebSocket

  void pageGetsEverythingAtOnce() {
    Page page(*mBench, mBench->Host().prepend("http://"));
    QTRY_VERIFY(page.pictures > 0 && page.messages.size() >= 2);
    QCOMPARE(page.order[0], QStringLiteral("state"));
    QCOMPARE(page.order[1], QStringLiteral("log"));
    QVERIFY(page.State().contains(QStringLiteral("boxes")));
    const QJsonArray entries = page.Newest("log")[QStringLiteral("entries")].toArray();
    QVERIFY(!entries.isEmpty() && entries.size() <= 200);
    QCOMPARE(
        entries.first()[QStringLiteral("number")].toInteger() - entries.last()[QStringLiteral("number")].toInteger(),
        qint64(entries.size() - 1));
    QVERIFY(!page.isBroken);
  }

  // The same messages, as server-sent events.
  void eventsAreTheMessagesOfTheWebSocket() {
    Page page(*mBench);
    Stream stream(*mBench);
    QTRY_VERIFY(!stream.Newest("log").isEmpty() && !page.Newest("log").isEmpty());
    QVERIFY(KeepsOthersOut(stream.Head()));
    QCOMPARE(stream.Head().status, 200);
    QCOMPARE(stream.Head().Header("Content-Type"), QByteArray("text/event-stream"));
    QVERIFY(stream.Head().Header("Content-Length").isEmpty());
    QCOMPARE(stream.types.mid(0, 2), QStringList({QStringLiteral("state"), QStringLiteral("log")}));
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":61})"));
    const auto speed = [](const QJsonObject& message) {
      return message[QStringLiteral("state")][QStringLiteral("recorder")][QStringLiteral("speed")].toInt();
    };
    QTRY_COMPARE(speed(stream.Newest("state")), 61);
    QTRY_VERIFY(stream.Newest("log")[QStringLiteral("entries")][0][QStringLiteral("number")].toInteger() ==
                mBench->LastEntry());
    QTRY_COMPARE(Compact(stream.Newest("log")), Compact(page.Newest("log")));
    QVERIFY(QTest::qWaitFor(
        [&] {
          mBench->Post("/api/touch", R"({"action":"tap","x":40,"y":30,"ms":20})");
          return QTest::qWaitFor([&] { return !stream.Newest("click").isEmpty(); }, 400);
        },
        kPatienceMs));
    QVERIFY(!stream.isBroken);
  }

  // The picture put together from all the changes is the picture that the API gives.
  void picturesAddUp() {
    Page page(*mBench);
    QTRY_VERIFY(page.pictures > 0);
    QVERIFY(page.wasLastWhole || page.pictures > 1);
    QVERIFY(mBench->Action(R"({"name":"recorderStop"})"));  // no video: the picture rests
    QVERIFY(Shows(page));
    const int before = page.pictures;
    QVERIFY(mBench->Action(R"({"name":"recorderStart"})"));
    QTRY_VERIFY(page.pictures > before + 3);
    QVERIFY(mBench->Action(R"({"name":"recorderStop"})"));
    QVERIFY(Shows(page));
    QVERIFY(mBench->Action(R"({"name":"recorderStart"})"));
    QVERIFY(!page.isBroken);
  }

  void everyMessageIsAnswered_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("status");
    QTest::newRow("event") << QByteArray(R"({"type":"event","id":1,"event":24,"value":3})") << 200;
    QTest::newRow("action") << QByteArray(R"({"type":"action","id":1,"name":"gps","state":"fix"})") << 200;
    QTest::newRow("touch") << QByteArray(R"({"type":"touch","id":1,"action":"release"})") << 200;
    QTest::newRow("watch") << QByteArray(R"({"type":"watch","id":1,"on":true})") << 200;
    QTest::newRow("latency") << QByteArray(R"({"type":"latency","id":1,"on":true})") << 200;
    QTest::newRow("bad latency") << QByteArray(R"({"type":"latency","id":1,"on":"yes"})") << 400;
    QTest::newRow("unknown type") << QByteArray(R"({"type":"dance","id":1})") << 400;
    QTest::newRow("no type") << QByteArray(R"({"id":1})") << 400;
    QTest::newRow("bad event") << QByteArray(R"({"type":"event","id":1,"event":0})") << 400;
    QTest::newRow("bad action") << QByteArray(R"({"type":"action","id":1,"name":"fly"})") << 400;
    QTest::newRow("bad touch") << QByteArray(R"({"type":"touch","id":1,"action":"tap","x":480,"y":0})") << 400;
    QTest::newRow("bad watch") << QByteArray(R"({"type":"watch","id":1})") << 400;
    QTest::newRow("bad on") << QByteArray(R"({"type":"watch","id":1,"on":1})") << 400;
  }

  void everyMessageIsAnswered() {
    QFETCH(QByteArray, text);
    QFETCH(int, status);
    Page page(*mBench);
    QTRY_VERIFY(page.IsOpen());
    page.Socket().sendTextMessage(QString::fromUtf8(text));
    QTRY_VERIFY(!page.AnswerTo(1).isEmpty());
    const QJsonObject answer = page.AnswerTo(1);
    QCOMPARE(answer[QStringLiteral("ok")].toBool(), status == 200);
    if (status == 200) return;
    QCOMPARE(answer[QStringLiteral("status")].toInt(), status);
    QVERIFY(IsSentence(answer[QStringLiteral("error")].toString()));
  }

  void messagesWithoutAGoodIdAreAnsweredWithNull() {
    Page page(*mBench);
    QTRY_VERIFY(page.IsOpen());
    for (const char* text :
         {"", "hello", "[]", "5", R"({"type":"watch","on":true})", R"({"type":"watch","on":true,"id":"x"})",
          R"({"type":"watch","on":true,"id":1.5})", R"({"type":"watch","on":true,"id":1e300})"})
      page.Socket().sendTextMessage(QString::fromLatin1(text));
    page.Say({{"type", "watch"}, {"on", true}, {"id", 7}});
    QTRY_VERIFY(!page.AnswerTo(7).isEmpty());
    QList<bool> good;
    for (const QJsonObject& message : page.messages)
      if (message[QStringLiteral("type")] == QLatin1String("answer") && message[QStringLiteral("id")].isNull())
        good << message[QStringLiteral("ok")].toBool();
    QCOMPARE(good, QList<bool>({false, false, false, false, true, false, false, false}));
  }

  void binaryMessageClosesTheConnection() {
    Page page(*mBench);
    QTRY_VERIFY(page.IsOpen());
    page.Socket().sendBinaryMessage("hello");
    QTRY_VERIFY(page.IsClosed());
  }

  void largeMessageClosesTheConnection() {
    Page page(*mBench);
    QTRY_VERIFY(page.IsOpen());
    page.Socket().sendTextMessage(QString(70000, u' '));
    QTRY_VERIFY(page.IsClosed());
    QCOMPARE(mBench->Get("/api/state").status, 200);
  }

  void foreignPageGetsNoWebSocket() {
    Page page(*mBench, "http://evil.example");
    QTRY_VERIFY(page.IsClosed());
    QVERIFY(page.messages.isEmpty() && page.pictures == 0);
  }

  void pageInTheBackgroundGetsNoPictures() {
    Page page(*mBench);
    QTRY_VERIFY(page.pictures > 2);  // the video moves
    page.Say({{"type", "watch"}, {"on", false}, {"id", 1}});
    QTRY_VERIFY(!page.AnswerTo(1).isEmpty());
    const int before = page.pictures;
    const qsizetype states = page.order.count(QStringLiteral("state"));
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":12})"));
    QTRY_VERIFY(page.order.count(QStringLiteral("state")) > states);
    QCOMPARE(page.pictures, before);
    page.Say({{"type", "watch"}, {"on", true}, {"id", 2}});
    QTRY_VERIFY(page.pictures > before);
    const qsizetype answer = page.order.lastIndexOf(QStringLiteral("answer"));
    QVERIFY(page.order.indexOf(QStringLiteral("picture"), answer) >= 0);
    QVERIFY(!page.isBroken);
  }

  void changesComeByThemselves() {
    Page page(*mBench);
    QTRY_VERIFY(!page.State().isEmpty());
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":33})"));
    QTRY_COMPARE(page.State()[QStringLiteral("recorder")][QStringLiteral("speed")].toInt(), 33);
    const auto hasSpeed = [&page] {
      for (const QJsonValue& entry : page.Newest("log")[QStringLiteral("entries")].toArray())
        if (entry[QStringLiteral("name")] == QLatin1String("speed")) return true;
      return false;
    };
    QTRY_VERIFY(hasSpeed());
  }

  void fingerOfAPageThatLeavesIsLifted() {
    {
      Page page(*mBench);
      QTRY_VERIFY(page.IsOpen());
      page.Say({{"type", "touch"}, {"action", "press"}, {"x", 240}, {"y", 160}, {"id", 1}});
      QTRY_VERIFY(page.AnswerTo(1)[QStringLiteral("ok")].toBool());
      QCOMPARE(mBench->State("touch/down"), QJsonValue(true));
    }
    QTRY_COMPARE(mBench->State("touch/down"), QJsonValue(false));
  }

  // A page that takes nothing holds nobody up and gets no backlog: what it missed comes at once.
  void laggingPageGetsNoBacklog() {
    QTcpSocket slow;
    slow.setReadBufferSize(1);
    slow.connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
    QVERIFY(slow.waitForConnected());
    slow.write("GET /ws HTTP/1.1\r\nHost: " + mBench->Host() +
               "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
               "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
    Page quick(*mBench);
    QTRY_VERIFY(quick.pictures > 0);
    QVERIFY(mBench->Action(R"({"name":"recorderStop"})"));  // no video: only the brightness changes, everywhere
    constexpr int kChanges = 20;
    for (int i = kChanges; i >= 0; --i) {
      QFile backlight(mBench->Root() + QStringLiteral("/proc/pwm/pwm0"));
      QVERIFY(backlight.open(QIODevice::WriteOnly));
      backlight.write(QByteArray::number(100000 - 1000 * i));
      backlight.close();
      QTRY_COMPARE(mBench->State("lcd/backlight"), QJsonValue(100000 - 1000 * i));
      QVERIFY(Shows(quick));
    }
    qint64 taken = 0;
    slow.setReadBufferSize(0);
    while (slow.bytesAvailable() > 0 || slow.waitForReadyRead(200)) taken += slow.readAll().size();
    constexpr qint64 kPicture = 480 * 320 * 4;
    QVERIFY2(taken > 2 * kPicture && taken < 5 * kPicture, qPrintable(QString::number(taken)));
    QVERIFY(mBench->Action(R"({"name":"recorderStart"})"));
    QVERIFY(slow.waitForReadyRead());
  }

  // More pages than the bench takes are turned away; it goes on with the others.
  void tooManyPagesAreTurnedAway() {
    std::vector<std::unique_ptr<Page>> pages;
    Stream first(*mBench), second(*mBench);  // they count, too
    QTRY_VERIFY(!first.Newest("log").isEmpty() && !second.Newest("log").isEmpty());
    for (int i = 0; i < 20; ++i) pages.push_back(std::make_unique<Page>(*mBench));
    const auto open = [&pages] {
      return std::count_if(pages.begin(), pages.end(), [](const auto& page) { return page->IsOpen(); });
    };
    const auto closed = [&pages] {
      return std::count_if(pages.begin(), pages.end(), [](const auto& page) { return page->IsClosed(); });
    };
    QTRY_COMPARE(open() + closed(), 20);
    QCOMPARE(open(), 14);
    QCOMPARE(mBench->Get("/api/events").status, 409);
    const BenchAnswer refused = mBench->Get("/ws",
                                            "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                                            "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n");
    QCOMPARE(refused.status, 409);
    QVERIFY(KeepsOthersOut(refused) && IsSentence(refused.Error()));
    QCOMPARE(mBench->Get("/api/state").status, 200);
    pages.clear();
    QVERIFY(OpensSoon());
  }

  // More than can be open at once, one after the other.
  void pagesThatLeftAreForgotten() {
    for (int i = 0; i < 70; ++i) {
      Page page(*mBench);
      QTRY_VERIFY(page.IsOpen());
    }
    QCOMPARE(mBench->Get("/api/state").status, 200);
    QVERIFY(OpensSoon());
  }

  // Connections that ask nothing are not waited for, and the bench takes no more of them than it can hold.
  void idleConnectionsHoldNobodyUp() {
    std::vector<std::unique_ptr<QTcpSocket>> idle;
    for (int i = 0; i < 300; ++i) {
      idle.push_back(std::make_unique<QTcpSocket>());
      idle.back()->connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
      QVERIFY(idle.back()->waitForConnected());
    }
    const auto open = [&idle] {
      return std::count_if(idle.begin(), idle.end(),
                           [](const auto& socket) { return socket->state() == QAbstractSocket::ConnectedState; });
    };
    QTRY_VERIFY(open() <= 256);
    for (int i = 0; i < 3; ++i) QCOMPARE(mBench->Get("/api/state").status, 200);  // the oldest make room
    QTRY_VERIFY(open() < 256);
  }

  // Requests for a WebSocket that come to nothing leave nothing behind.
  void brokenHandshakesAreForgotten() {
    const QByteArray key = "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n";
    for (int i = 0; i < 20; ++i) {
      QVERIFY(mBench->Get("/ws", "Upgrade: websocket\r\n" + key).status != 101);  // no Connection: Upgrade
      QCOMPARE(mBench->Get("/ws", "Upgrade: websocket\r\nConnection: Upgrade\r\n").status, 400);
    }
    QVERIFY(OpensSoon());
  }
};

QTEST_GUILESS_MAIN(BenchApiTest)
#include "bench_api_test.moc"
