// A recording of use that is sent to the bench: a second bench replays it, and the first one tells what that says.
#include <QTemporaryDir>

#include "bench/record/recordfile.h"
#include "tests/system/camerarun.h"

using Kind = RecordEntry::Kind;

namespace {
constexpr int kPatience = 60000;  // ms of a fast replay: a busy machine

QByteArray Kept(const char* name) {
  QFile file(QStringLiteral(SOURCE_DIR "/tests/system/recordings/%1.jsonl").arg(QLatin1String(name)));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The recording with another picture before its second press.
QByteArray Changed(const QByteArray& recording) {
  QByteArray changed;
  int presses = 0;
  for (const QByteArray& line : recording.split('\n')) {
    QJsonObject entry = QJsonDocument::fromJson(line).object();
    QJsonObject seen = entry.value(QStringLiteral("seen")).toObject();
    if (entry.value(QStringLiteral("kind")) == QStringLiteral("touch") && !seen.isEmpty() && ++presses == 2) {
      QByteArray picture = QByteArray::fromBase64(seen.value(QStringLiteral("picture")).toString().toLatin1());
      picture[3 * 13] = char(picture[3 * 13] ^ 1);  // the second square of the second row
      seen.insert(QStringLiteral("picture"), QString::fromLatin1(picture.toBase64()));
      entry.insert(QStringLiteral("seen"), seen);
      changed += QJsonDocument(entry).toJson(QJsonDocument::Compact) + '\n';
    } else if (!line.isEmpty()) {
      changed += line + '\n';
    }
  }
  return changed;
}

bool IsSentence(const QString& text) {
  return text.size() > 10 && text.endsWith(u'.') && !text.contains(u'\n');
}
}  // namespace

class SecondBenchTest : public CameraRun {
  Q_OBJECT

  QJsonObject Replay() const { return mBench->State("replay").toObject(); }
  bool IsRunning() const { return Replay().value(QStringLiteral("running")).toBool(); }
  QString Address() const { return Replay().value(QStringLiteral("address")).toString(); }
  QString Summary() const { return Replay().value(QStringLiteral("summary")).toString(); }
  bool HasEnded() const {
    return QTest::qWaitFor([this] { return !IsRunning(); }, kPatience);
  }
  bool IsUp() const {
    return QTest::qWaitFor([this] { return !Address().isEmpty() || !IsRunning(); }, kPatience) && !Address().isEmpty();
  }
  // Benches that replay below the root of this one.
  QList<int> Seconds() const { return BenchRun::ProcessesOf(mBench->Root() + QStringLiteral("/run/replay")); }

  // Another bench at this address.
  static BenchAnswer Ask(const QString& address, const QByteArray& method, const QByteArray& path,
                         const QByteArray& body = {}) {
    QTcpSocket socket;
    const QByteArray host = address.section(u'/', 2, 2).toLatin1();
    socket.connectToHost(QStringLiteral("127.0.0.1"), host.split(':').last().toUShort());
    if (!socket.waitForConnected(kPatienceMs)) return {};
    socket.write(method + ' ' + path + " HTTP/1.1\r\nHost: " + host +
                 "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    QByteArray bytes;
    while (socket.waitForReadyRead(kPatienceMs)) bytes += socket.readAll();
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    return {bytes.mid(9, 3).toInt(), bytes.left(end), bytes.mid(end + 4)};
  }
  static QJsonObject Replaying(const QString& address) {
    return Ask(address, "GET", "/api/state").Json().value(QStringLiteral("replaying")).toObject();
  }
  static int Control(const QString& address, const QByteArray& body) {
    return Ask(address, "POST", "/api/replay/control", body).status;
  }

private slots:
  void init() { QVERIFY(mBench || StartCamera()); }
  void cleanup() {
    if (mBench && IsRunning()) QCOMPARE(mBench->Post("/api/replay/stop", "").status, 200);
    QVERIFY(!mBench || HasEnded());
  }
  void cleanupTestCase() { mBench.reset(); }

  void whatIsNoRecordingIsRefused_data() {
    QTest::addColumn<QByteArray>("recording");
    QTest::addColumn<int>("status");
    const QByteArray good = Kept("option");
    const auto row = [](const char* name, const QByteArray& recording, int status = 400) {
      QTest::newRow(name) << recording << status;
    };
    row("nothing", "");
    row("text", "A recording.\n");
    row("another version", QByteArray(good).replace("\"version\":1", "\"version\":2"));
    row("no input", good.left(good.indexOf('\n') + 1));
    row("damaged", good + "{\n");
    row("a root that reaches out",
        good.left(good.indexOf('\n'))
                .replace(R"({"state":"fresh"})", R"({"state":"kept","files":[{"path":"/../x","data":""}]})") +
            good.mid(good.indexOf('\n')));
    row("as large as it may be", QByteArray(8 << 20, ' '));
    row("too large", QByteArray((8 << 20) + 1, ' '), 413);
  }
  void whatIsNoRecordingIsRefused() {
    QFETCH(QByteArray, recording);
    QFETCH(int, status);
    const BenchAnswer answer = mBench->Post("/api/replay", recording);
    QCOMPARE(answer.status, status);
    QVERIFY2(IsSentence(answer.Error()) && !answer.Error().contains(mBench->Root()), qPrintable(answer.Error()));
    QVERIFY(mBench->State("replay").isNull());
    for (const QByteArray query : {"?fast=2", "?fast", "?slow=1", "?fast=1&fast=1"})
      QCOMPARE(mBench->Post("/api/replay" + query, Kept("option")).status, 400);
  }

  void itIsReplayedAndWhatDiffersIsTold() {
    QVERIFY(mBench->State("replaying").isNull());
    QCOMPARE(mBench->Post("/api/replay?fast=1", Kept("option")).status, 200);
    QVERIFY(IsRunning() && IsUp());
    QCOMPARE(Ask(Address(), "GET", "/").status, 200);
    QVERIFY(HasEnded());
    QVERIFY2(Summary().endsWith(QLatin1String(": no difference.")), qPrintable(Summary()));
    QCOMPARE(Replay().value(QStringLiteral("differences")).toArray(), QJsonArray());
    QCOMPARE(Replay().value(QStringLiteral("pictures")).toArray(), QJsonArray());

    QCOMPARE(mBench->Post("/api/replay?fast=1", Changed(Kept("option"))).status, 200);
    QVERIFY(HasEnded());
    QVERIFY2(Summary().endsWith(QLatin1String(": 1 difference.")), qPrintable(Summary()));
    const QJsonArray differences = Replay().value(QStringLiteral("differences")).toArray();
    QCOMPARE(differences.size(), 1);
    QVERIFY(differences[0].toString().startsWith(QLatin1String("Before input 3, press at 80, 255")));
    QVERIFY(IsSentence(differences[0].toString()));
    const QJsonArray pictures = Replay().value(QStringLiteral("pictures")).toArray();
    QCOMPARE(pictures,
             (QJsonArray{QJsonObject{{QStringLiteral("drawn"), QStringLiteral("api/replay/3.png")},
                                     {QStringLiteral("expected"), QStringLiteral("api/replay/3-expected.png")}}}));
    const QImage drawn = QImage::fromData(mBench->Get("/api/replay/3.png").body, "PNG");
    const QImage expected = QImage::fromData(mBench->Get("/api/replay/3-expected.png").body, "PNG");
    QCOMPARE(drawn.size(), QSize(480, 320));
    // The square that differs is not known, and nothing else is another one.
    for (int y = 0; y < 320; ++y)
      for (int x = 0; x < 480; ++x)
        QCOMPARE(expected.pixelColor(x, y),
                 QRect(40, 40, 40, 40).contains(x, y) ? QColor(128, 128, 128) : drawn.pixelColor(x, y));
    QCOMPARE(mBench->Get("/api/replay/3.png").Header("Content-Type"), QByteArray("image/png"));
    for (const QByteArray path : {"/api/replay/2.png", "/api/replay/03.png", "/api/replay/3", "/api/replay/",
                                  "/api/replay/../replay/3.png", "/api/replay/%33.png/", "/api/replay/sent.jsonl"})
      QVERIFY2(mBench->Get(path).status == 404, path.constData());
    QCOMPARE(mBench->Post("/api/replay/3.png", "").status, 405);
    QCOMPARE(mBench->Get("/api/replay").status, 405);
  }
  void aSecondOneReplacesTheFirst() {
    QCOMPARE(mBench->Post("/api/replay", Kept("parking")).status, 200);
    QVERIFY(IsUp());
    const QString first = Address();
    // What is refused ends nothing.
    QCOMPARE(mBench->Post("/api/replay", "{}\n").status, 400);
    QCOMPARE(Address(), first);
    QCOMPARE(mBench->Post("/api/replay?fast=1", Kept("option")).status, 200);
    QVERIFY(IsRunning());
    QCOMPARE(Replay().value(QStringLiteral("address")), QJsonValue());
    QVERIFY(IsUp());
    QVERIFY(Address() != first);
    QCOMPARE(Ask(first, "GET", "/api/state").status, 0);
    QVERIFY(HasEnded());
    QVERIFY2(Summary().endsWith(QLatin1String(": no difference.")), qPrintable(Summary()));
  }
  void itIsStopped() {
    QCOMPARE(mBench->Post("/api/replay/stop", "").status, 409);
    QCOMPARE(mBench->Post("/api/replay", Kept("option")).status, 200);
    QVERIFY(IsUp());
    QCOMPARE(mBench->Post("/api/replay/stop", "{}").status, 400);
    QCOMPARE(mBench->Post("/api/replay/stop", "").status, 200);
    QVERIFY(HasEnded());
    QCOMPARE(Summary(), QStringLiteral("The replay was ended before its end."));
    QCOMPARE(mBench->Post("/api/replay/stop", "").status, 409);
    QTRY_COMPARE(Seconds(), QList<int>());
  }
  void whoIsHastyGetsTheLastOne() {
    const QByteArray good = Kept("option");
    for (int i = 0; i < 3; ++i) QCOMPARE(mBench->Post("/api/replay", good).status, 200);
    QCOMPARE(mBench->Post("/api/replay/stop", "").status, 200);
    QVERIFY(HasEnded());
    QTRY_COMPARE(Seconds(), QList<int>());
    QCOMPARE(Replay().value(QStringLiteral("address")), QJsonValue());
    for (int i = 0; i < 3; ++i) QCOMPARE(mBench->Post("/api/replay?fast=1", good).status, 200);
    QVERIFY(HasEnded());
    QVERIFY2(Summary().endsWith(QLatin1String(": no difference.")), qPrintable(Summary()));
  }
  void itEndsWithTheBench_data() {
    QTest::addColumn<bool>("isKilled");
    QTest::newRow("ended") << false;
    QTest::newRow("killed") << true;
  }
  void itEndsWithTheBench() {
    QFETCH(bool, isKilled);
    QCOMPARE(mBench->Post("/api/replay", Kept("option")).status, 200);
    QVERIFY(IsUp());
    const QString root = mBench->Root(),
                  second = Ask(Address(), "GET", "/api/state").Json().value(QStringLiteral("root")).toString();
    QVERIFY(QFile::exists(second) && !Seconds().isEmpty());
    if (isKilled)
      mBench->Process().kill();
    else
      mBench->Process().terminate();
    QVERIFY(mBench->Process().waitForFinished(10000));
    mBench.reset();
    QTRY_COMPARE_WITH_TIMEOUT(BenchRun::ProcessesOf(root) + BenchRun::ProcessesOf(second), QList<int>(), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(root) && !QFile::exists(second), 10000);
  }

  void itIsPausedAndGoesOnStepByStep() {
    QCOMPARE(mBench->Post("/api/replay", Kept("option")).status, 200);
    QVERIFY(IsUp());
    const QString address = Address();
    QCOMPARE(Control(address, R"({"pause":true})"), 200);
    QTRY_VERIFY(Replaying(address).value(QStringLiteral("paused")).toBool());
    const QJsonObject at = Replaying(address);
    const int next = at.value(QStringLiteral("next")).toInt(), of = at.value(QStringLiteral("of")).toInt();
    QVERIFY(next >= 1 && next < of);
    QVERIFY(at.value(QStringLiteral("ms")).toInt() > 0);
    // A step is one input, and what the finger does until it is up.
    QCOMPARE(Control(address, R"({"step":true})"), 200);
    QTRY_VERIFY_WITH_TIMEOUT(Replaying(address).value(QStringLiteral("paused")).toBool() &&
                                 Replaying(address).value(QStringLiteral("next")).toInt() > next,
                             20000);
    QVERIFY(Replaying(address).value(QStringLiteral("next")).toInt() <= next + 2);
    QVERIFY(!Ask(address, "GET", "/api/state").Json()[QStringLiteral("touch")][QStringLiteral("down")].toBool());
    // It waits for longer than an input is waited for in vain.
    const int held = Replaying(address).value(QStringLiteral("next")).toInt();
    QVERIFY(!QTest::qWaitFor(
        [&] {
          return Replaying(address).value(QStringLiteral("next")).toInt() != held ||
                 !Replay().value(QStringLiteral("differences")).toArray().isEmpty();
        },
        16000));
    QCOMPARE(Control(address, R"({"pause":false})"), 200);
    QVERIFY(!Replaying(address).value(QStringLiteral("paused")).toBool());
    QVERIFY(HasEnded());
    QVERIFY2(Summary().endsWith(QLatin1String(": no difference.")), qPrintable(QJsonDocument(Replay()).toJson()));
  }
  // A large one takes a second or two to read; meanwhile everybody is answered.
  void whileARecordingIsReadTheBenchAnswers() {
    QByteArray large = Kept("option");
    large.truncate(large.lastIndexOf('\n', large.size() - 2) + 1);
    const QByteArray last = "{\"kind\":\"remark\",\"ms\":86400000,\"name\":\"\",\"of\":\"note\"}\n";
    large += last.repeated(((8 << 20) - large.size()) / last.size());
    // Both lack their last byte, until both are there: the second one comes while the first is read.
    QTcpSocket socket, another;
    const auto begin = [this](QTcpSocket* to, const QByteArray& body) {
      to->connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
      QVERIFY(to->waitForConnected(kPatienceMs));
      to->write("POST /api/replay HTTP/1.1\r\nHost: " + mBench->Host() +
                "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body.chopped(1));
      while (to->bytesToWrite() > 0) QVERIFY(to->waitForBytesWritten(kPatienceMs));
    };
    begin(&socket, large);
    begin(&another, "x");
    QTest::qWait(100);
    for (QTcpSocket* to : {&socket, &another}) {
      to->write("\n");
      to->flush();
    }
    QVERIFY(another.waitForReadyRead(10000));
    QVERIFY(another.readAll().contains("Another recording is being read."));
    QVERIFY(socket.waitForReadyRead(10000));
    QVERIFY(socket.readAll().startsWith("HTTP/1.1 200 OK"));
  }

  void whatControlsNothingIsRefused() {
    QCOMPARE(mBench->Post("/api/replay/control", R"({"pause":true})").status, 409);
    QCOMPARE(mBench->Post("/api/replay", Kept("option")).status, 200);
    QVERIFY(IsUp());
    for (const QByteArray body : {"", "[]", "{}", R"({"pause":1})", R"({"step":false})",
                                  R"({"pause":true,"step":true})", R"({"pause":true,"more":1})", R"({"run":true})"}) {
      const BenchAnswer answer = Ask(Address(), "POST", "/api/replay/control", body);
      QVERIFY2(answer.status == 400 && IsSentence(answer.Error()), body.constData());
    }
    // A bench that replays starts no other one.
    QCOMPARE(Ask(Address(), "POST", "/api/replay", "{}").status, 409);
  }
};

QTEST_GUILESS_MAIN(SecondBenchTest)
#include "secondbench_test.moc"
