#include <sys/stat.h>

#include <QAbstractHttpServer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWebSocketServer>
#include <QtEndian>

#include "bench/panel/finger.h"
#include "bench/panel/touchpanel.h"
#include "bench/server/clicksound.h"
#include "bench/server/eventstream.h"
#include "bench/server/latency.h"
#include "bench/server/pageclient.h"
#include "bench/server/requesthead.h"
#include "bench/supervise/rootfolder.h"
#include "bench/supervise/screenreport.h"
#include "bench/supervise/shellwatch.h"
#include "recorder/service/eventlog.h"
#include "recorder/service/members.h"
#include "tests/system/patience.h"

namespace {
constexpr quint16 kPort = 8480;
const QByteArray kHandshake = "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n";

QByteArray Request(const QByteArray& requestLine, const QByteArray& headers = {}) {
  return requestLine + " HTTP/1.1\r\nHost: 127.0.0.1:8480\r\n" + headers + "\r\n";
}

bool IsSentence(const QString& text) {
  return text.size() > 10 && text.endsWith(u'.') && !text.contains(u'\n');
}
/// Answers everything with events.
class StreamServer : public QAbstractHttpServer {
public:
  StreamServer(Bench& bench, const LiveClient::Patience& patience) : mBench(bench), mPatience(patience) {}

  std::vector<std::unique_ptr<EventStream>> streams;

protected:
  bool handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) override {
    streams.push_back(std::make_unique<EventStream>(Asker(makeResponder(request, socket), false), mBench, mPatience));
    return true;
  }
  void missingHandler(const QHttpServerRequest&, QTcpSocket*) override {}

private:
  Bench& mBench;
  LiveClient::Patience mPatience;
};
}  // namespace

class BenchPartsTest : public QObject {
  Q_OBJECT

private slots:
  void headsAreJudged_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("status");  // 0: not whole yet, 200: good
    const auto row = [](const char* name, const QByteArray& bytes, int status) {
      QTest::newRow(name) << bytes << status;
    };
    row("plain", Request("GET /"), 200);
    row("with a query", Request("GET /api/lcd.png?raw=1"), 200);
    row("old", "GET / HTTP/1.0\r\nHost: localhost:8480\r\n\r\n", 200);
    row("localhost", "GET / HTTP/1.1\r\nHost: LocalHost:8480\r\n\r\n", 200);
    row("by number 6", "GET / HTTP/1.1\r\nhost:[::1]:8480\r\n\r\n", 200);
    row("own page", Request("GET /", "Origin: http://localhost:8480\r\n"), 200);
    row("whole body", Request("POST /api/touch", "Content-Length: 65536\r\n"), 200);
    row("WebSocket", Request("GET /ws", "Upgrade: WebSocket\r\nConnection: Upgrade\r\n" + kHandshake), 200);
    row("WebSocket without a key", Request("GET /ws", "Upgrade: websocket\r\nSec-WebSocket-Version: 13\r\n"), 400);
    row("WebSocket with a short key",
        Request("GET /ws", "Upgrade: websocket\r\nSec-WebSocket-Version: 13\r\nSec-WebSocket-Key: x\r\n"), 400);
    row("WebSocket of another version",
        Request("GET /ws", "Upgrade: websocket\r\nSec-WebSocket-Version: 8\r\nSec-WebSocket-Key: x\r\n"), 400);
    row("unknown path", Request("GET /../../etc/passwd"), 200);

    row("nothing", "", 0);
    row("half a line", "GET / HT", 0);
    row("half a head", "GET / HTTP/1.1\r\nHost: 127.0.0.1:8480\r\n", 0);
    row("longest half", "GET / HTTP/1.1\r\nX: " + QByteArray(16 * 1024 - 20, 'x'), 0);

    row("no HTTP", "hello\r\n", 400);
    row("no HTTP, no return", "hello\n", 400);
    row("another protocol", "\x16\x03\x01\x02\n", 400);
    row("HTTP/2", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", 400);
    row("unknown method", Request("BREW /"), 400);
    row("CONNECT", Request("CONNECT /"), 400);
    row("no path", Request("GET"), 400);
    row("address of a proxy", Request("GET http://127.0.0.1:8480/"), 400);
    row("blank in the path", Request("GET /a b"), 400);
    row("control in the path", Request(QByteArray("GET /a\0b", 8)), 400);
    row("header without a colon", Request("GET /", "Hello\r\n"), 400);
    row("header without a name", Request("GET /", ": x\r\n"), 400);
    row("header with a blank name", Request("GET /", "A b: x\r\n"), 400);
    row("folded header", Request("GET /", "A: x\r\n y\r\n"), 400);
    row("control in a header", Request("GET /", "A: \x01\r\n"), 400);
    row("line break in a header", Request("GET /", "A: x\ny\r\n"), 400);
    row("length in letters", Request("POST /", "Content-Length: ten\r\n"), 400);
    row("negative length", Request("POST /", "Content-Length: -1\r\n"), 400);
    row("signed length", Request("POST /", "Content-Length: +1\r\n"), 400);
    row("huge length", Request("POST /", "Content-Length: 99999999999999999999\r\n"), 400);
    row("two lengths", Request("POST /", "Content-Length: 1\r\nContent-Length: 1\r\n"), 400);
    row("chunks", Request("POST /", "Transfer-Encoding: chunked\r\n"), 400);
    row("upgrade elsewhere", Request("GET /", "Upgrade: websocket\r\n"), 400);
    row("upgrade with a query", Request("GET /ws?x", "Upgrade: websocket\r\n"), 400);
    row("upgrade to something else", Request("GET /ws", "Upgrade: h2c\r\n"), 400);
    row("upgrade of a POST", Request("POST /ws", "Upgrade: websocket\r\n"), 400);
    row("upgrade with a body", Request("GET /ws", "Upgrade: websocket\r\nContent-Length: 1\r\n"), 400);

    row("no Host", "GET / HTTP/1.1\r\n\r\n", 403);
    row("two Hosts", Request("GET /", "Host: 127.0.0.1:8480\r\n"), 403);
    row("foreign Host", "GET / HTTP/1.1\r\nHost: evil.example:8480\r\n\r\n", 403);
    row("another port", "GET / HTTP/1.1\r\nHost: 127.0.0.1:8481\r\n\r\n", 403);
    row("no port", "GET / HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n", 403);
    row("Host that begins well", "GET / HTTP/1.1\r\nHost: 127.0.0.1:8480.evil.example\r\n\r\n", 403);
    row("foreign Origin", Request("GET /", "Origin: http://evil.example\r\n"), 403);
    row("Origin of another port", Request("GET /", "Origin: http://127.0.0.1:80\r\n"), 403);
    row("Origin of a file", Request("POST /api/touch", "Origin: null\r\n"), 403);
    row("empty Origin", Request("GET /", "Origin:\r\n"), 403);
    row("https Origin", Request("GET /", "Origin: https://127.0.0.1:8480\r\n"), 403);
    row("Origin that begins well", Request("GET /", "Origin: http://127.0.0.1:8480.evil.example\r\n"), 403);
    row("two Origins", Request("GET /", "Origin: http://127.0.0.1:8480\r\nOrigin: http://evil.example\r\n"), 403);
    row("WebSocket from elsewhere", Request("GET /ws", "Upgrade: websocket\r\nOrigin: http://evil.example\r\n"), 403);

    row("large body", Request("POST /api/touch", "Content-Length: 65537\r\n"), 413);
    row("largest picture", Request("POST /api/picture", "Content-Length: 8388608\r\n"), 200);
    row("picture too large", Request("POST /api/picture", "Content-Length: 8388609\r\n"), 413);
    row("picture elsewhere", Request("POST /api/pictures", "Content-Length: 65537\r\n"), 413);
    row("large head", Request("GET /", "X: " + QByteArray(16 * 1024, 'x') + "\r\n"), 431);
    row("long path", Request("GET /" + QByteArray(16 * 1024, 'x')), 431);
    row("endless line", QByteArray(16 * 1024, 'x'), 431);
  }

  void headsAreJudged() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, status);
    const RequestHead head = RequestHead::Read(bytes, kPort);
    switch (status) {
      case 0:
        QCOMPARE(head.state, RequestHead::State::Incomplete);
        break;
      case 200:
        QCOMPARE(head.state, RequestHead::State::Good);
        QCOMPARE(head.size, bytes.size());
        break;
      default:
        QCOMPARE(head.state, RequestHead::State::Refused);
        QCOMPARE(head.status, status);
        QVERIFY(IsSentence(head.error));
    }
  }

  // A browser leaves HTTP's own port out.
  void portEightyMayBeLeftOut() {
    QCOMPARE(RequestHead::Read("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nOrigin: http://127.0.0.1\r\n\r\n", 80).state,
             RequestHead::State::Good);
  }

  // Whatever the place at which it is cut, a good head is only not whole yet.
  void goodHeadIsNeverRefusedEarly() {
    const QByteArray bytes = Request("POST /api/touch", "Content-Length: 2\r\nOrigin: http://127.0.0.1:8480\r\n");
    for (qsizetype size = 0; size < bytes.size(); ++size)
      QCOMPARE(RequestHead::Read(bytes.left(size), kPort).state, RequestHead::State::Incomplete);
    const RequestHead head = RequestHead::Read(bytes + "{}", kPort);
    QCOMPARE(head.size, bytes.size());
    QCOMPARE(head.body, 2);
  }

  void logKeepsTheNewest2000() {
    EventLog log;
    QCOMPARE(log.Last(), 0);
    QVERIFY(log.Since(0, 10).isEmpty());
    for (int i = 1; i <= 2003; ++i) log.Add("note", QString::number(i));
    const QJsonArray all = log.Since(0, EventLog::kMost);
    QCOMPARE(all.size(), 2000);
    for (int i = 0; i < 2000; ++i) {
      QCOMPARE(all[i][QStringLiteral("number")].toInt(), 2003 - i);
      QCOMPARE(all[i][QStringLiteral("name")].toString(), QString::number(2003 - i));
    }
    QCOMPARE(log.Since(2001, EventLog::kMost).size(), 2);
    QCOMPARE(log.Since(0, 5).last()[QStringLiteral("number")].toInt(), 1999);
    QVERIFY(log.Since(2003, EventLog::kMost).isEmpty());
    QVERIFY(log.Since(9007199254740991, EventLog::kMost).isEmpty());
  }

  void linesOfTheInterface_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("isReport");
    for (const char* line : {"screen PREVIEW", "box own 77 SELECT_NDF_FILE", "box event none", "box own 3 "})
      QTest::newRow(line) << QString::fromLatin1(line) << true;
    for (const char* line : {"", "screen", "screen preview", "screen A B", "box own", "box third none", "box own x Y",
                             "box own 123456 Y", "a screen PREVIEW", "screen PREVIEW\nscreen MAINMENU"})
      QTest::newRow(line) << QString::fromLatin1(line) << false;
  }

  void linesOfTheInterface() {
    QFETCH(QString, line);
    QFETCH(bool, isReport);
    QCOMPARE(ScreenReport().Take(line), isReport);
  }

  void reportKnowsScreenAndBoxes() {
    ScreenReport report;
    QVERIFY(report.Screen().isEmpty());
    QVERIFY(report.Boxes()[QStringLiteral("own")].isNull());
    report.Take(QStringLiteral("screen PREVIEW"));
    report.Take(QStringLiteral("box own 77 SELECT_NDF_FILE"));
    QCOMPARE(report.Screen(), QStringLiteral("PREVIEW"));
    QCOMPARE(report.Boxes()[QStringLiteral("own")][QStringLiteral("id")].toInt(), 77);
    QCOMPARE(report.Boxes()[QStringLiteral("own")][QStringLiteral("name")].toString(),
             QStringLiteral("SELECT_NDF_FILE"));
    QVERIFY(report.Boxes()[QStringLiteral("event")].isNull());
    report.Take(QStringLiteral("box own none"));
    QVERIFY(report.Boxes()[QStringLiteral("own")].isNull());
    report.Forget();
    QVERIFY(report.Screen().isEmpty());
  }

  void membersAreChecked() {
    const QJsonObject object{{"x", 5},      {"half", 0.5}, {"huge", 1e300},
                             {"text", "5"}, {"yes", true}, {"null", QJsonValue()}};
    const auto errorOf = [&object](const std::function<void(Members&)>& read) {
      Members members(object);
      read(members);
      const QString error = members.Error();
      return error.section(u' ', 0, 0);  // the name
    };
    QCOMPARE(errorOf([](Members& m) { m.Whole("x", 6, 9); }), QStringLiteral("\"x\""));
    QCOMPARE(errorOf([](Members& m) { m.Whole("half", 0, 9); }), QStringLiteral("\"half\""));
    QCOMPARE(errorOf([](Members& m) { m.Whole("huge", INT_MIN, INT_MAX); }), QStringLiteral("\"huge\""));
    QCOMPARE(errorOf([](Members& m) { m.Whole("text", 0, 9); }), QStringLiteral("\"text\""));
    QCOMPARE(errorOf([](Members& m) { m.Whole("null", 0, 9, 3); }), QStringLiteral("\"null\""));
    QCOMPARE(errorOf([](Members& m) { m.Whole("missing", 0, 9); }), QStringLiteral("\"missing\""));
    QCOMPARE(errorOf([](Members& m) { m.Flag("x", false); }), QStringLiteral("\"x\""));
    QCOMPARE(errorOf([](Members& m) { m.Flag("missing"); }), QStringLiteral("\"missing\""));
    QCOMPARE(errorOf([](Members& m) { m.Text("x"); }), QStringLiteral("\"x\""));
    QCOMPARE(errorOf([](Members& m) { m.Choice("text", {"4", "6"}); }), QStringLiteral("\"text\""));
    Members members(object);
    QCOMPARE(members.Whole("x", 5, 5), 5);
    QCOMPARE(members.Whole("missing", 0, 9, 3), 3);
    QCOMPARE(members.Flag("yes"), true);
    QCOMPARE(members.Text("text"), QStringLiteral("5"));
    QCOMPARE(members.Error(), QStringLiteral("There is no member \"half\" here."));
    members.TakeRest();
    QVERIFY(members.Error().isEmpty());
    // One sentence on one line, whatever it is called.
    const Members odd(QJsonObject{{QStringLiteral("a\n b"), 1}});
    QCOMPARE(odd.Error(), QStringLiteral("There is no member \"a b\" here."));
  }

  void clickIsAShortWaveFile() {
    const QByteArray wav = ClickSound();
    QVERIFY(wav.startsWith("RIFF"));
    QCOMPARE(wav.mid(8, 8), QByteArray("WAVEfmt "));
    QCOMPARE(qFromLittleEndian<quint32>(wav.constData() + 4), quint32(wav.size() - 8));
    QCOMPARE(qFromLittleEndian<quint32>(wav.constData() + 40), quint32(wav.size() - 44));
  }

  void tapIsAFreshPressAndARelease() {
    const QTemporaryDir folder;
    TouchPanel panel;
    EventLog log;
    Finger finger(panel, log);
    QString error;
    QVERIFY(panel.Open(folder.filePath(QStringLiteral("event0")), &error));
    QVERIFY(finger.Press({10, 20}, this).IsGood());
    QVERIFY(finger.Press({11, 20}, this).IsGood());
    QVERIFY(finger.Tap({100, 200}, 1, this).IsGood());
    QTRY_VERIFY(!finger.IsDown());
    QStringList names;
    for (const QJsonValue& entry : log.Since(0, 10)) names.prepend(entry[QStringLiteral("name")].toString());
    QCOMPARE(names.join(u' '), QStringLiteral("press move release press release"));
    QVERIFY(finger.Release().IsGood());  // it is up
    QCOMPARE(log.Last(), 5);
  }

  void fingerIsLiftedWhenItsOwnerLeaves() {
    const QTemporaryDir folder;
    TouchPanel panel;
    EventLog log;
    Finger finger(panel, log);
    QString error;
    QVERIFY(panel.Open(folder.filePath(QStringLiteral("event0")), &error));
    QObject other;
    finger.Press({10, 20}, this);
    finger.Leave(&other);
    QVERIFY(finger.IsDown());
    finger.Leave(this);
    QVERIFY(!finger.IsDown());
  }

  // Nobody reads: no call waits, and the answer says so.
  void unreadPanelIsSaid() {
    const QTemporaryDir folder;
    TouchPanel panel;
    EventLog log;
    Finger finger(panel, log);
    QString error;
    QVERIFY(panel.Open(folder.filePath(QStringLiteral("event0")), &error));
    Reply reply;
    for (int i = 0; i < 5000 && reply.IsGood(); ++i) reply = finger.Press({i % 480, 100}, this);
    QCOMPARE(reply.status, 409);
    QVERIFY(IsSentence(reply.error));
    QVERIFY(finger.IsDown());
    finger.StartAfresh();
    QVERIFY(!finger.IsDown());
    QVERIFY(finger.Press({1, 1}, this).IsGood());
  }

  // A page that has stalled takes nothing and answers no ping; it gives its place to another one.
  void pageThatAnswersNoPingIsGivenUp() {
    constexpr LiveClient::Patience kPatience{20, 200};
    RootFolder folder;
    Bench bench(QString(), folder, QStringLiteral("ko"));
    QWebSocketServer server(QStringLiteral("test"), QWebSocketServer::NonSecureMode);
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QTcpSocket stalled;
    stalled.connectToHost(server.serverAddress(), server.serverPort());
    QVERIFY(stalled.waitForConnected());
    stalled.write(Request("GET /ws", "Upgrade: websocket\r\nConnection: Upgrade\r\n" + kHandshake));
    QTRY_VERIFY(server.hasPendingConnections());
    PageClient asleep(std::unique_ptr<QWebSocket>(server.nextPendingConnection()), bench, kPatience);
    QWebSocket page;
    page.open(server.serverUrl());
    QTRY_VERIFY(server.hasPendingConnections());
    PageClient awake(std::unique_ptr<QWebSocket>(server.nextPendingConnection()), bench, kPatience);
    QSignalSpy left(&asleep, &PageClient::Left), leftToo(&awake, &PageClient::Left);
    QElapsedTimer clock;
    clock.start();
    QTRY_COMPARE(left.size(), 1);
    QVERIFY2(clock.elapsed() >= 100, qPrintable(QString::number(clock.elapsed())));
    QTest::qWait(2 * kPatience.silence);
    QVERIFY(leftToo.isEmpty() && page.isValid());
  }

  // A reader of events is asked nothing: that it takes what comes is its sign of life.
  void readerOfEventsThatTakesNothingIsGivenUp() {
    constexpr LiveClient::Patience kPatience{20, 200};
    RootFolder folder;
    Bench bench(QString(), folder, QStringLiteral("ko"));
    StreamServer server(bench, kPatience);
    const quint16 port = server.listen(QHostAddress::LocalHost);
    QTcpSocket stalled, awake;
    stalled.setReadBufferSize(1);
    QByteArray taken;
    connect(&awake, &QTcpSocket::readyRead, this, [&] { taken += awake.readAll(); });
    for (QTcpSocket* socket : {&stalled, &awake}) {
      const size_t before = server.streams.size();
      socket->connectToHost(QHostAddress::LocalHost, port);
      QVERIFY(socket->waitForConnected());
      socket->write(Request("GET /api/events"));
      QTRY_COMPARE(server.streams.size(), before + 1);
    }
    QSignalSpy left(server.streams[0].get(), &LiveClient::Left), leftToo(server.streams[1].get(), &LiveClient::Left);
    QTRY_VERIFY(taken.contains("\r\n\r\n:\n\n:\n\n"));  // kept alive
    QVERIFY(left.isEmpty());
    const QString much(100000, u'x');
    const auto keepsUp = [&server] { return server.streams[0]->KeepsUp(); };
    int sent = 0;
    while (sent < 1000 && QTest::qWaitFor(keepsUp, 100))
      server.streams[0]->SendNews({{"much", much}, {"sent", ++sent}});
    QVERIFY(!keepsUp());
    QTRY_COMPARE(left.size(), 1);
    QVERIFY(leftToo.isEmpty() && awake.state() == QAbstractSocket::ConnectedState);
  }

  void latencyIsThatOfTheFirstCommand() {
    RootFolder folder;
    Bench bench(QString(), folder, QStringLiteral("ko"));
    Latency latency(bench);
    const auto add = [&bench](const char* kind, const char* name, const QJsonValue& answer = QJsonValue::Undefined) {
      QJsonObject entry{{"kind", kind}, {"name", name}};
      if (!answer.isUndefined()) entry.insert(QStringLiteral("answer"), answer);
      bench.Log().Add(entry);
    };
    const auto last = [&latency] { return latency.Describe()[QStringLiteral("last")][QStringLiteral("command")]; };
    add("command", "before");
    QVERIFY(last().isNull());
    QCOMPARE(latency.Describe()[QStringLiteral("command")], QJsonValue());
    add("touch", "press");
    add("command", "query", 5);
    QVERIFY(last().isNull());
    QTest::qWait(20);
    add("command", "first");
    const QJsonValue first = last();
    QVERIFY2(first.toDouble() >= 20 && first.toDouble() < 1000, qPrintable(QString::number(first.toDouble())));
    QTest::qWait(2);
    add("touch", "release");
    add("command", "second");
    QCOMPARE(last(), first);
    emit bench.Lcd().Drawn();
    QVERIFY(latency.Describe()[QStringLiteral("last")][QStringLiteral("pixels")].toDouble() >= first.toDouble());
    for (int i = 0; i < 99; ++i) {
      add("touch", "press");
      add("command", "at once");
    }
    const QJsonObject all = latency.Describe()[QStringLiteral("command")].toObject();
    QCOMPARE(latency.Describe()[QStringLiteral("touches")], QJsonValue(100));
    QCOMPARE(all[QStringLiteral("max")], first);
    for (const char* rank : {"median", "p95", "p99"}) QVERIFY(all[QLatin1String(rank)].toDouble() < first.toDouble());
    for (int i = 0; i < 1000; ++i) add("touch", "press");
    QCOMPARE(latency.Describe()[QStringLiteral("touches")], QJsonValue(1000));
    QVERIFY(last().isNull() && latency.Describe()[QStringLiteral("command")].isNull());
    QTest::qWait(1010);
    add("command", "too late");
    QVERIFY(last().isNull());
  }

  void everyRootHasItsOwnKey() {
    const QTemporaryDir folder;
    QString error;
    RootFolder first;
    QVERIFY(first.Choose(folder.path(), &error) && first.Take(&error));
    QVERIFY(!first.IsFresh());
    RootFolder other;
    QVERIFY(other.Choose(QString(), &error) && other.Take(&error));
    QVERIFY(other.IsFresh());
    QVERIFY(other.Path() != first.Path());
    QVERIFY(other.PlatformKey() != first.PlatformKey());
    QVERIFY(QDir(other.Path()).removeRecursively());
  }

  void badRootsAreRefused_data() {
    QTest::addColumn<QString>("folder");
    QTest::newRow("the machine's own") << QStringLiteral("/");
    QTest::newRow("no folder") << QStringLiteral("/dev/null");
    QTest::newRow("a colon") << QDir::tempPath() + QStringLiteral("/bench:root");
    QTest::newRow("too long") << QDir::tempPath() + u'/' + QString(90, u'x');
  }

  void badRootsAreRefused() {
    QFETCH(QString, folder);
    RootFolder root;
    QString error;
    QVERIFY(!root.Choose(folder, &error) || !root.Take(&error));
    QVERIFY(IsSentence(error));
    if (folder.size() > 10) QDir().rmdir(folder);
  }

  void shellIsHeard() {
    const QTemporaryDir folder;
    RootFolder root;
    QString error;
    QVERIFY(root.Choose(folder.path(), &error) && root.Take(&error));
    QVERIFY(root.Furnish(folder.path(), &error));
    ShellWatch shell(root.Path());
    QVERIFY(shell.Open(&error));
    QSignalSpy asked(&shell, &ShellWatch::Asked), clicked(&shell, &ShellWatch::Clicked),
        dimmed(&shell, &ShellWatch::BacklightChanged);
    qputenv("DASHCAM_ROOT", root.Path().toUtf8());
    const auto run = [&root](const QString& command) {
      return std::system(qPrintable(QStringLiteral("PATH=%1/bin:$PATH; %2").arg(root.Path(), command)));
    };
    const auto next = [&asked] { return asked.takeFirst().first().toString(); };

    QCOMPARE(run(QStringLiteral("sync")), 0);
    QTRY_COMPARE(asked.size(), 1);
    QCOMPARE(next(), QStringLiteral("sync"));

    QCOMPARE(run(QStringLiteral("aplay %1/opt/ipnc/voice/touch.wav &").arg(root.Path())), 0);
    QTRY_COMPARE(clicked.size(), 1);
    QCOMPARE(next(), QStringLiteral("aplay /opt/ipnc/voice/touch.wav"));

    QCOMPARE(run(QStringLiteral("aplay /tmp/other.wav; echo 1 > %1/proc/sys/vm/drop_caches").arg(root.Path())), 0);
    QTRY_COMPARE(asked.size(), 2);
    QCOMPARE(clicked.size(), 1);
    asked.clear();

    QCOMPARE(run(QStringLiteral("echo 40000 > %1/proc/pwm/pwm0").arg(root.Path())), 0);
    QTRY_COMPARE(dimmed.size(), 1);
    QCOMPARE(shell.Backlight(), 40000);
    QCOMPARE(next(), QStringLiteral("echo 40000 > /proc/pwm/pwm0"));

    // What no camera would take.
    QCOMPARE(run(QStringLiteral("echo 999999 > %1/proc/pwm/pwm0").arg(root.Path())), 0);
    QTRY_COMPARE(shell.Backlight(), 100000);
    QCOMPARE(run(QStringLiteral("echo bright > %1/proc/pwm/pwm0").arg(root.Path())), 0);
    QTRY_COMPARE(asked.size(), 2);
    QCOMPARE(shell.Backlight(), 100000);
    QCOMPARE(run(QStringLiteral("echo -5 > %1/proc/pwm/pwm0").arg(root.Path())), 0);
    QTRY_COMPARE(shell.Backlight(), 0);
  }
};

QTEST_GUILESS_MAIN(BenchPartsTest)
#include "bench_parts_test.moc"
