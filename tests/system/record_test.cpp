// Recordings of use that a page begins, ends and takes home; their replay. With the real bench and interface.
#include "bench/record/recordfile.h"

#include <QBuffer>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "tests/system/camerarun.h"

class RecordTest : public CameraRun {
  Q_OBJECT

  QTemporaryDir mFolder;

  BenchAnswer Record(bool on) const {
    return mBench->Post("/api/record", on ? QByteArray("{\"on\": true}") : QByteArray("{\"on\": false}"));
  }
  // A recording has begun, and the interface is there again.
  bool Begin() const {
    const int starts = mBench->State("interface/starts").toInt();
    if (Record(true).status != 200) return false;
    const auto isUp = [&] {
      return mBench->State("interface/starts").toInt() > starts && mBench->State("recorder/connections").toInt() == 1 &&
             Screen() == QLatin1String("PREVIEW") && IsOverlayShown();
    };
    return QTest::qWaitFor(isUp, 15000);
  }
  // The exit code and what is said.
  std::pair<int, QString> Replay(const QByteArray& recording) const {
    QFile file(mFolder.filePath(QStringLiteral("taken.jsonl")));
    if (!file.open(QIODevice::WriteOnly) || file.write(recording) != recording.size()) return {-1, {}};
    file.close();
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"),
                  {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--replay"), file.fileName(),
                   QStringLiteral("--fast")});
    return {process.waitForFinished(120000) ? process.exitCode() : -1, QString::fromUtf8(process.readAll())};
  }

private slots:
  void initTestCase() { QVERIFY(StartCamera()); }
  void cleanupTestCase() { mBench.reset(); }

  void whatIsNotRecordedCannotBeTaken() {
    QVERIFY(mBench->State().contains(QStringLiteral("record")) && mBench->State("record").isNull());
    QCOMPARE(mBench->Get("/api/recording").status, 404);
    QCOMPARE(Record(false).status, 409);
    for (const char* body : {"{}", "{\"on\": 1}", "{\"on\": true, \"file\": \"/tmp/x\"}", "[]", "on"})
      QCOMPARE(mBench->Post("/api/record", body).status, 400);
    QVERIFY(mBench->State("record").isNull());
  }

  // It begins with what the camera has by now.
  void whatIsDoneIsTheSameAgain() {
    QVERIFY(mBench->Action(R"({"name":"sdFull","recordings":7})"));
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("recorder/cardWork").isNull(), 20000);
    QVERIFY(mBench->Action(R"({"name":"language","to":"en"})"));
    QVERIFY(Begin());
    QCOMPARE(Record(true).status, 409);
    QCOMPARE(mBench->Post("/api/snapshot", R"({"restore":"x"})").status, 409);
    QCOMPARE(mBench->Get("/api/recording").status, 404);  // nobody has done anything
    QCOMPARE(mBench->State("record/on").toBool(), true);
    QCOMPARE(mBench->State("record/inputs").toInt(), 0);
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":42})"));
    OpenMenu();
    QVERIFY(Tap({80, 125}));
    QTRY_COMPARE(OwnBox(), QStringLiteral("ENTRY_FILELIST"));
    QVERIFY(Tap({140, 236}));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("RECORDINGLIST"), 10000);
    QVERIFY(mBench->Action(R"({"name":"rearUnplug"})"));
    const QByteArray meanwhile = mBench->Get("/api/recording").body;
    QVERIFY(meanwhile.endsWith('\n') && meanwhile.size() <= mBench->State("record/bytes").toInteger());
    QCOMPARE(Record(false).status, 200);
    const QJsonObject state = mBench->State("record").toObject();
    QCOMPARE(state.keys().join(u' '), QStringLiteral("bytes inputs on seconds"));
    QCOMPARE(state[QStringLiteral("on")].toBool(), false);
    QVERIFY(state[QStringLiteral("inputs")].toInt() >= 8);  // each tap is two of them
    const BenchAnswer taken = mBench->Get("/api/recording");
    QCOMPARE(taken.status, 200);
    QCOMPARE(taken.Header("Content-Disposition"), QByteArray("attachment; filename=\"dashcam-recording.jsonl\""));
    QCOMPARE(taken.body.size(), state[QStringLiteral("bytes")].toInteger());
    QVERIFY(taken.body.startsWith(meanwhile));
    // What comes afterwards is not in it.
    QVERIFY(mBench->Action(R"({"name":"rearPlug"})"));
    QCOMPARE(mBench->Get("/api/recording").body, taken.body);
    const auto [code, said] = Replay(taken.body);
    QVERIFY2(code == 0 && said.contains(QStringLiteral(": no difference.")), qPrintable(said));
    // One that was begun, and not ended, too.
    const auto [before, alsoSaid] = Replay(meanwhile);
    QVERIFY2(before == 0, qPrintable(alsoSaid));
  }

  void aRecordingWithoutInputIsNone() {
    QVERIFY(Begin());
    QCOMPARE(Record(false).status, 200);
    QVERIFY(mBench->State("record").isNull());
    QCOMPARE(mBench->Get("/api/recording").status, 404);
  }

  void itEndsBeforeItIsTooLarge() {
    QVERIFY(Begin());
    QImage noise(480, 320, QImage::Format_RGB32);
    for (int y = 0; y < noise.height(); ++y)
      QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(noise.scanLine(y)), noise.width());
    QBuffer png;
    noise.save(&png, "PNG");
    const QString ended = QStringLiteral("The recording has 64 MiB: it has ended.");
    for (int i = 0; i < 200 && mBench->State("record/on").toBool(); ++i)
      QVERIFY(mBench->Post("/api/picture", png.data()).status == 200);
    QVERIFY(!mBench->Find("note", ended).isEmpty());
    const qint64 bytes = mBench->State("record/bytes").toInteger();
    QVERIFY(bytes > (60 << 20) && bytes < (64 << 20));
    QCOMPARE(mBench->Get("/api/recording").body.size(), bytes);
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(mBench->Root() + QStringLiteral("/run/recording.jsonl"), &error), qPrintable(error));
    QCOMPARE(recording.entries.constLast().kind, RecordEntry::Kind::End);
    QCOMPARE(Record(false).status, 409);
    QTRY_COMPARE_WITH_TIMEOUT(mBench->State("recorder/connections").toInt(), 1, 15000);
  }

  void whoRecordsAlreadyDoesNotTwice() {
    mBench.reset();
    QVERIFY(StartCamera({QStringLiteral("--record"), mFolder.filePath(QStringLiteral("own.jsonl"))}));
    QCOMPARE(Record(true).status, 409);
    QCOMPARE(Record(false).status, 409);
    QVERIFY(mBench->State("record").isNull());
    mBench.reset();
    mBench = std::make_unique<BenchRun>(
        QStringList{QStringLiteral("--replay"), QStringLiteral(SOURCE_DIR "/tests/system/recordings/option.jsonl")});
    QVERIFY(mBench->IsUp());
    QCOMPARE(Record(true).status, 409);
  }
};

QTEST_GUILESS_MAIN(RecordTest)
#include "record_test.moc"
