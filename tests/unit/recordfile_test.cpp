// What a recording of use is read as, and what of it a replay compares.
#include "bench/record/recordfile.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

#include "bench/record/recordpicture.h"
#include "bench/record/recordroot.h"

using Kind = RecordEntry::Kind;

namespace {
// With the quotes of JSON.
QByteArray Json(const char* text) {
  return QByteArray(text).replace('\'', '"');
}

const QByteArray kFirst =
    Json("{'version': 1, 'seed': 7, 'clock': '2026-11-21T08:18:19.155', 'root': {'state': 'fresh'}}");
const QByteArray kPress = Json("{'ms': 10, 'kind': 'touch', 'request': {'action': 'press', 'x': 1, 'y': 2}}");
const QByteArray kCommand =
    Json("{'ms': 20, 'kind': 'command', 'name': 'SFIELD_SET_VIEWREAR', 'value': 0, 'result': 0}");

bool IsSentence(const QString& text) {
  return text.size() > 10 && text.endsWith(u'.') && !text.contains(u'\n');
}

QJsonObject Object(const QByteArray& json) {
  return QJsonDocument::fromJson(json).object();
}

QString EssenceOf(const QByteArray& log) {
  const auto entry = RecordEntry::OfLog(Object(log));
  return entry ? entry->Essence() : QStringLiteral("nothing");
}

// A recording on a card of 1000 ms; with other members in place of these.
QJsonObject Clip(const QJsonObject& others = {}) {
  QJsonObject clip =
      Object(Json("{'name': 'rec0_20261121_081819.avi', 'trailer': '00005e00', 'ms': 1000, 'bytes': 0, 'changed': "
                  "'20261121_081829.000'}"));
  for (auto other = others.begin(); other != others.end(); ++other) clip.insert(other.key(), other.value());
  return clip;
}

QByteArray WithRoot(const QByteArray& root) {
  return QByteArray(kFirst).replace(Json("{'state': 'fresh'}"), root);
}

QByteArray WithFile(const QByteArray& path, const QByteArray& data = "aGVsbG8=") {
  return Json("{'state': 'kept', 'files': [{'path': '") + path + Json("', 'data': '") + data + Json("'}]}");
}
}  // namespace

class RecordFileTest : public QObject {
  Q_OBJECT

  QTemporaryDir mFolder;

  QString Written(const QByteArray& bytes) const {
    QFile file(mFolder.filePath(QStringLiteral("use.jsonl")));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName() : QString();
  }

private slots:
  void aRecordingIsRead() {
    RecordFile file;
    QString error;
    QVERIFY2(
        file.Read(Written(kFirst + '\n' + kPress + '\n' + kCommand + '\n' + Json("{'ms': 20, 'kind': 'end'}") + '\n'),
                  &error),
        qPrintable(error));
    QCOMPARE(file.seed, 7U);
    QCOMPARE(file.clock, QDateTime(QDate(2026, 11, 21), QTime(8, 18, 19, 155)));
    QCOMPARE(file.entries.size(), 3);
    QVERIFY(file.entries[0].IsInput() && !file.entries[1].IsInput());
    QCOMPARE(file.entries[0].ms, 10);
    QCOMPARE(file.entries[0].Request(), Object(Json("{'action': 'press', 'x': 1, 'y': 2}")));
    QCOMPARE(file.entries[1].kind, Kind::Command);
    QCOMPARE(file.entries[2].kind, Kind::End);
  }
  void whatIsWrittenIsReadAgain() {
    RecordFile file, again;
    file.seed = 4000000000U;
    file.clock = QDateTime(QDate(2028, 2, 28), QTime(23, 59, 50, 1));
    file.language = QStringLiteral("en");
    file.root = recordroot::Describe(mFolder.path(), true);
    const RecordEntry entry{Kind::Action, 5, Object(Json("{'request': {'name': 'shock'}}"))};
    QString error;
    QVERIFY2(again.Read(Written(file.FirstLine() + entry.Line()), &error), qPrintable(error));
    QCOMPARE(again.seed, file.seed);
    QCOMPARE(again.clock, file.clock);
    QCOMPARE(again.language, file.language);
    QCOMPARE(again.root, file.root);
    QCOMPARE(again.entries.size(), 1);
    QCOMPARE(again.entries[0].Line(), entry.Line());
  }
  void anOlderRecordingIsKorean() {
    RecordFile file;
    file.language = QStringLiteral("en");
    QString error;
    QVERIFY2(file.Read(Written(kFirst + '\n'), &error), qPrintable(error));
    QCOMPARE(file.language, QStringLiteral("ko"));
  }
  void aLineThatWasCutOffIsLeftOut() {
    const QByteArray whole = kFirst + '\n' + kPress + '\n';
    for (qsizetype cut = 0; cut < kCommand.size(); ++cut) {
      RecordFile file;
      QString error;
      QVERIFY2(file.Read(Written(whole + kCommand.left(cut)), &error), qPrintable(error));
      QCOMPARE(file.entries.size(), 1);
    }
  }

  void aBadFileIsRefused_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("line");
    const auto first = [](const char* name, const QByteArray& line) {
      QTest::newRow(name) << line + '\n' << QStringLiteral("Line 1 ");
    };
    const auto second = [](const char* name, const QByteArray& line) {
      QTest::newRow(name) << kFirst + '\n' + line + '\n' << QStringLiteral("Line 2 ");
    };
    first("nothing", "");
    first("no JSON", "hello");
    first("no object", "[1]");
    first("another version", QByteArray(kFirst).replace("\"version\": 1", "\"version\": 2"));
    first("version as text", QByteArray(kFirst).replace("\"version\": 1", "\"version\": \"1\""));
    first("no seed", QByteArray(kFirst).replace("seed", "sead"));
    first("negative seed", QByteArray(kFirst).replace("\"seed\": 7", "\"seed\": -1"));
    first("seed too large", QByteArray(kFirst).replace("\"seed\": 7", "\"seed\": 4294967296"));
    first("seed with a fraction", QByteArray(kFirst).replace("\"seed\": 7", "\"seed\": 1.5"));
    first("no date", QByteArray(kFirst).replace("2026-11-21", "2026-02-31"));
    first("a date too early", QByteArray(kFirst).replace("2026-", "1969-"));
    first("a date too late", QByteArray(kFirst).replace("2026-", "2200-"));
    first("no root", WithRoot("7"));
    for (const char* language : {"'tlh'", "''", "1", "null"})
      first(language, QByteArray(kFirst).replace("\"seed\"", Json("'language': ") + Json(language) + ", \"seed\""));
    second("no JSON", "{\"ms\": 1");
    second("no object", "[]");
    second("empty", "");
    second("no time", Json("{'kind': 'screen', 'name': 'screen PREVIEW'}"));
    second("negative time", Json("{'ms': -1, 'kind': 'screen', 'name': 'screen PREVIEW'}"));
    second("a time with a fraction", Json("{'ms': 1.5, 'kind': 'screen', 'name': 'screen PREVIEW'}"));
    second("more than a week", Json("{'ms': 604800001, 'kind': 'screen', 'name': 'screen PREVIEW'}"));
    second("no kind", Json("{'ms': 1, 'name': 'screen PREVIEW'}"));
    second("unknown kind", Json("{'ms': 1, 'kind': 'shout', 'name': 'screen PREVIEW'}"));
    second("touch without a request", Json("{'ms': 1, 'kind': 'touch'}"));
    second("action without a request", Json("{'ms': 1, 'kind': 'action', 'request': 'shock'}"));
    second("command without a name", Json("{'ms': 1, 'kind': 'command', 'value': 1}"));
    second("nothing stored", Json("{'ms': 1, 'kind': 'stored', 'stored': []}"));
    second("seen is no object", Json("{'ms': 1, 'kind': 'end', 'seen': 5}"));
    second("picture is no digest", Json("{'ms': 1, 'kind': 'end', 'seen': {'picture': 'AAAA'}}"));
    second("too long", Json("{'ms': 1, 'kind': 'remark', 'name': '") + QByteArray(3 << 20, 'x') + Json("'}"));
    QTest::newRow("time goes back") << kFirst + '\n' + kCommand + '\n' + kPress + '\n' << QStringLiteral("Line 3 ");
    QTest::newRow("after the end") << kFirst + '\n' + Json("{'ms': 1, 'kind': 'end'}") + '\n' + kPress + '\n'
                                   << QStringLiteral("Line 3 ");
  }
  void aBadFileIsRefused() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, line);
    RecordFile file;
    QString error;
    QVERIFY(!file.Read(Written(bytes), &error));
    QVERIFY2(IsSentence(error) && error.startsWith(line), qPrintable(error));
  }
  void aFileThatIsNotThereIsRefused() {
    RecordFile file;
    QString error;
    QVERIFY(!file.Read(mFolder.filePath(QStringLiteral("none")), &error));
    QVERIFY2(IsSentence(error), qPrintable(error));
    QVERIFY(!file.Read(mFolder.path(), &error));
  }

  // ---- what is compared

  void ofTheLogThisIsCompared_data() {
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("essence");
    QTest::newRow("command") << QByteArray(
                                    Json("{'kind': 'command', 'name': 'SFIELD_SET_VIEWREAR', 'value': 3, 'result': 0}"))
                             << QStringLiteral("the command SFIELD_SET_VIEWREAR 3");
    QTest::newRow("command that failed")
        << Json("{'kind': 'command', 'name': 'SFIELD_SET_VIEWREAR', 'value': 3, 'result': -1}")
        << QStringLiteral("the command SFIELD_SET_VIEWREAR 3, result -1");
    QTest::newRow("command with data")
        << Json("{'kind': 'command', 'name': 'SFIELD_PLAY_VIDEO', 'data': '2f6d', 'result': 0}")
        << QStringLiteral("the command SFIELD_PLAY_VIDEO 2f6d");
    QTest::newRow("event") << QByteArray(
                                  Json("{'kind': 'event', 'name': 'RECV_ZEL_STATUS_SPEED', 'event': 24, 'value': 12}"))
                           << QStringLiteral("the event RECV_ZEL_STATUS_SPEED 12");
    QTest::newRow("screen") << Json("{'kind': 'screen', 'name': 'box own none'}")
                            << QStringLiteral("the line \"box own none\"");
    for (const char* name : {"SFIELD_GET_VOLTAGE", "SFIELD_GET_AUTO_LCD_VALUE"})
      QTest::newRow(name) << Json("{'kind': 'command', 'result': 0, 'answer': 12.3, 'name': '") + name + Json("'}")
                          << QString();
    QTest::newRow("position") << Json("{'kind': 'event', 'name': 'RECV_ZEL_STATUS_PLAY_CUR', 'value': 2000}")
                              << QString();
    QTest::newRow("note") << Json("{'kind': 'note', 'name': 'The recorder has ended.'}") << QString();
    QTest::newRow("diagnostic") << Json("{'kind': 'diagnostic', 'name': 'screen?'}") << QString();
    QTest::newRow("shell") << Json("{'kind': 'shell', 'name': 'sync'}") << QString();
    QTest::newRow("voice") << Json("{'kind': 'voice', 'name': 'Recording starts.'}") << QString();
    QTest::newRow("action: told by others") << Json("{'kind': 'action', 'name': 'shock'}") << QStringLiteral("nothing");
  }
  void ofTheLogThisIsCompared() {
    QFETCH(QByteArray, log);
    QFETCH(QString, essence);
    QCOMPARE(EssenceOf(log), essence);
  }
  void theClockOfASetupBlockCountsOnlyWhenItWasSet() {
    const auto essence = [](char flag, char minute) {
      QByteArray block(129, 'x');
      block[20] = flag;
      block[26] = minute;
      return EssenceOf(Json("{'kind': 'command', 'name': 'SFIELD_SET_SETUP_COMPLETE', 'result': 0, 'data': '") +
                       block.toHex() + Json("'}"));
    };
    QCOMPARE(essence(0, 5), essence(0, 6));
    QVERIFY(essence(1, 5) != essence(1, 6));
    QVERIFY(essence(0, 5) != essence(1, 5));
  }
  void aTouchOfTheLogIsGivenAgainWhereItWas() {
    const auto request = [](const QByteArray& log) {
      return RecordEntry::OfLog(Object(log)).value_or(RecordEntry()).Request();
    };
    QCOMPARE(request(Json("{'kind': 'touch', 'name': 'press', 'x': 5, 'y': 6, 'rawX': 100, 'rawY': 200}")),
             Object(Json("{'action': 'press', 'x': 5, 'y': 6}")));
    QCOMPARE(request(Json("{'kind': 'touch', 'name': 'move', 'rawX': 100, 'rawY': 200}")),
             Object(Json("{'action': 'press', 'x': 100, 'y': 200, 'raw': true}")));
    QCOMPARE(request(Json("{'kind': 'touch', 'name': 'release'}")), Object(Json("{'action': 'release'}")));
  }

  // ---- pictures

  void aPictureTellsWhereItDiffers() {
    QImage picture(480, 320, QImage::Format_RGB32);
    picture.fill(qRgb(38, 34, 35));
    const QString digest = recordpicture::Digest(picture, QStringLiteral("MAINMENU"));
    QVERIFY(recordpicture::IsDigest(digest));
    QCOMPARE(recordpicture::Difference(digest, digest), QString());
    picture.setPixel(85, 45, qRgb(38, 34, 36));
    picture.setPixel(479, 319, qRgb(38, 34, 36));
    QCOMPARE(recordpicture::Difference(digest, recordpicture::Digest(picture, QStringLiteral("MAINMENU"))),
             QStringLiteral("x 80 to 479, y 40 to 319"));
  }
  void whatFollowsTheTimeIsNoDifference_data() {
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QPoint>("at");
    QTest::newRow("clock") << QStringLiteral("PREVIEW") << QPoint(60, 300);
    QTest::newRow("voltage") << QStringLiteral("PREVIEW") << QPoint(400, 300);
    QTest::newRow("countdown") << QStringLiteral("PREVIEW") << QPoint(390, 10);
    QTest::newRow("screen saver's date") << QStringLiteral("SCREENSAVER") << QPoint(40, 30);
    QTest::newRow("its weekday") << QStringLiteral("SCREENSAVER") << QPoint(310, 30);
    QTest::newRow("its time") << QStringLiteral("SCREENSAVER") << QPoint(200, 100);
    QTest::newRow("its voltage") << QStringLiteral("SCREENSAVER") << QPoint(400, 260);
    QTest::newRow("position") << QStringLiteral("PLAYER") << QPoint(100, 230);
  }
  void whatFollowsTheTimeIsNoDifference() {
    QFETCH(QString, screen);
    QFETCH(QPoint, at);
    QImage picture(480, 320, QImage::Format_RGB32);
    picture.fill(Qt::black);
    const QString digest = recordpicture::Digest(picture, screen);
    const QString other = recordpicture::Digest(picture, QStringLiteral("MAINMENU"));
    picture.setPixel(at, qRgb(255, 255, 255));
    QCOMPARE(recordpicture::Digest(picture, screen), digest);
    QVERIFY(recordpicture::Digest(picture, QStringLiteral("MAINMENU")) != other);
  }

  // ---- the root

  void aBadRootStateIsRefused_data() {
    QTest::addColumn<QByteArray>("root");
    const auto card = [](const QJsonObject& clip) {
      return Json("{'state': 'kept', 'card': [") + QJsonDocument(clip).toJson() + "]}";
    };
    QTest::newRow("no state") << Json("{'files': []}");
    QTest::newRow("unknown state") << Json("{'state': 'old'}");
    for (const char* path : {"", "/", "opt/x", "../x", "/../x", "/..", "/opt/../../x", "/opt//x", "/opt/x/", "/./x",
                             "/opt/\\u0000x", "/bin/sh", "/dev/input/event0", "/proc/x", "/run/shell", "/run/../bin/x",
                             "/usr/local/x", "/opt/gui/images/x"})
      QTest::newRow(path[0] ? path : "no path") << WithFile(path);
    QTest::newRow("path too long") << WithFile("/" + QByteArray(200, 'x'));
    QTest::newRow("file too large") << WithFile("/opt/x", QByteArray(512 * 1024 + 1, 'x').toBase64());
    QByteArray files, all;
    for (int i = 0; i < 201; ++i) files += (i ? "," : "") + Json("{'path': '/opt/x', 'data': ''}");
    for (int i = 0; i < 5; ++i)
      all +=
          (i ? "," : "") + Json("{'path': '/opt/x', 'data': '") + QByteArray(500 * 1024, 'x').toBase64() + Json("'}");
    QTest::newRow("too many files") << Json("{'state': 'kept', 'files': [") + files + "]}";
    QTest::newRow("too much in all") << Json("{'state': 'kept', 'files': [") + all + "]}";
    for (const char* name : {"", "x", "/rec0_20261121_081819.avi", "../c0_20261121_081819.avi",
                             "rec2_20261121_081819.avi", "rec0_20261121_081819.avi\n", "rec0_20261121_081819.av"})
      QTest::newRow(QByteArray("recording ") + QByteArray(name).toHex()) << card(Clip({{"name", name}}));
    QTest::newRow("trailer too long") << card(Clip({{"trailer", "0000005e00"}}));
    QTest::newRow("no trailer") << card(Clip({{"trailer", QJsonValue()}}));
    QTest::newRow("longer than any") << card(Clip({{"ms", 60001}}));
    QTest::newRow("negative length") << card(Clip({{"ms", -1}}));
    QTest::newRow("too large") << card(Clip({{"bytes", (1 << 20) + 1}}));
    QTest::newRow("no date") << card(Clip({{"changed", "yesterday"}}));
    QJsonArray many;
    for (int i = 0; i < 403; ++i) many.append(Clip());
    QTest::newRow("too many recordings") << Json("{'state': 'kept', 'card': ") + QJsonDocument(many).toJson() + "}";
  }
  void aBadRootStateIsRefused() {
    QFETCH(QByteArray, root);
    QString error;
    QVERIFY(!recordroot::Check(Object(root), &error));
    QVERIFY2(IsSentence(error), qPrintable(error));
  }
  void aKeptRootIsMadeAgain() {
    const QTemporaryDir from, to;
    const auto put = [&](const char* path, const QByteArray& bytes) {
      const QString file = from.path() + QLatin1String(path);
      QDir().mkpath(QFileInfo(file).path());
      QFile out(file);
      QVERIFY(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
    };
    put("/tmp/config_init.ini", "[view]\n");
    put("/run/clock", "+3600\n");
    put("/run/panel", "5 -30 50 1\n");
    put("/run/bench.lock", "");
    put("/bin/aplay", "#!/bin/sh\n");
    put("/mnt/nand/large", QByteArray(600 * 1024, 'x'));
    put("/mnt/mmc.out/touch.txt", "");
    put("/mnt/mmc.out/Setup/.format_time", "");
    put("/mnt/mmc.out/rec0_20261121_081819.avi", QByteArray(1000, '#'));
    const QJsonObject root = recordroot::Describe(from.path(), false);
    QString error;
    QVERIFY2(recordroot::Check(root, &error), qPrintable(error));
    QVERIFY2(recordroot::Restore(root, to.path(), &error), qPrintable(error));
    const auto has = [&to](const char* path) { return QFile::exists(to.path() + QLatin1String(path)); };
    for (const char* path : {"/tmp/config_init.ini", "/run/clock", "/run/panel", "/mnt/mmc/touch.txt",
                             "/mnt/mmc/Setup/.format_time", "/mnt/mmc/rec0_20261121_081819.avi"})
      QVERIFY2(has(path), path);
    for (const char* path : {"/run/bench.lock", "/bin/aplay", "/mnt/nand/large", "/mnt/mmc.out"})
      QVERIFY2(!has(path), path);
    QFile panel(to.path() + QStringLiteral("/run/panel"));
    QVERIFY(panel.open(QIODevice::ReadOnly));
    QCOMPARE(panel.readAll(), QByteArray("5 -30 50 1\n"));
    QCOMPARE(QFileInfo(to.path() + QStringLiteral("/mnt/mmc/rec0_20261121_081819.avi")).size(), 1000);
    QCOMPARE(root.value(QStringLiteral("left")).toArray(), QJsonArray{QStringLiteral("/mnt/nand/large")});
  }
};

QTEST_GUILESS_MAIN(RecordFileTest)
#include "recordfile_test.moc"
