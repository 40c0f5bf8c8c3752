// Recordings of use: what the camera does is the same when it is used in the same way, and what is not is told.
#include "bench/record/recordfile.h"

#include <QBuffer>
#include <QImage>
#include <QTcpServer>
#include <QTemporaryDir>

#include "tests/system/camerarun.h"

using Kind = RecordEntry::Kind;

namespace {
constexpr int kPatience = 120000;  // ms of a replay: a busy machine

/// What a replay has said.
struct Replayed {
  int code = -1;  ///< its exit code; -1: it did not end, or crashed
  QStringList lines;
  QString error;

  QString Summary() const { return lines.isEmpty() ? error : lines.constLast(); }
  bool Says(const QString& text) const {
    return std::any_of(lines.begin(), lines.end(), [&text](const QString& line) { return line.contains(text); });
  }
};

/// The bench until it ends by itself.
Replayed RunToItsEnd(const QStringList& arguments) {
  QProcess process;
  process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });  // a test that is killed leaves none
  process.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"),
                QStringList{QStringLiteral("--port"), QStringLiteral("0")} + arguments);
  const bool hasEnded = process.waitForFinished(kPatience) && process.exitStatus() == QProcess::NormalExit;
  Replayed replayed{hasEnded ? process.exitCode() : -1, {}, QString::fromUtf8(process.readAllStandardError())};
  const QStringList lines = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
  for (const QString& line : lines)
    if (!line.startsWith(QLatin1String("Dash camera: "))) replayed.lines << line;
  return replayed;
}

Replayed Replay(const QString& file, const QStringList& others = {}) {
  return RunToItsEnd(QStringList{QStringLiteral("--replay"), file, QStringLiteral("--fast")} + others);
}

bool WriteRecording(const QString& path, const RecordFile& recording) {
  QFile file(path);
  bool good = file.open(QIODevice::WriteOnly) && file.write(recording.FirstLine()) > 0;
  for (const RecordEntry& entry : recording.entries) good = good && file.write(entry.Line()) > 0;
  return good;
}

QByteArray Bytes(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool IsSentence(const QString& text) {
  return text.size() > 10 && text.endsWith(QLatin1String(".\n")) && text.count(u'\n') == 1;
}
}  // namespace

class ReplayTest : public CameraRun {
  Q_OBJECT

  QTemporaryDir mFolder;

  QString File(const char* name) const { return mFolder.filePath(QLatin1String(name)); }
  static QString Kept(const QString& name) {
    return QStringLiteral(SOURCE_DIR "/tests/system/recordings/%1.jsonl").arg(name);
  }
  /// The bench as it was asked to end.
  void End() {
    mBench->Process().terminate();
    QVERIFY(mBench->Process().waitForFinished(10000));
    QCOMPARE(mBench->Process().exitCode(), 0);
  }
  static qsizetype Count(const RecordFile& recording, Kind kind) {
    return std::count_if(recording.entries.begin(), recording.entries.end(),
                         [kind](const RecordEntry& entry) { return entry.kind == kind; });
  }
  void OpenMenu() {
    QVERIFY(Tap({265, 33}));
    QTRY_COMPARE(Screen(), QStringLiteral("MAINMENU"));
  }
  void OpenList() {
    OpenMenu();
    QVERIFY(Tap({80, 125}));
    QTRY_COMPARE(OwnBox(), QStringLiteral("ENTRY_FILELIST"));
    QVERIFY(Tap({140, 236}));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("RECORDINGLIST"), 10000);
  }
  static void IsTheSameAgain(const QString& name) {
    const Replayed replayed = Replay(Kept(name));
    QVERIFY2(replayed.code == 0, qPrintable(replayed.lines.join(u'\n') + replayed.error));
    QCOMPARE(replayed.lines.size(), 1);
    QVERIFY2(replayed.Summary().endsWith(QLatin1String(": no difference.")), qPrintable(replayed.Summary()));
  }

private slots:
  void cleanup() { mBench.reset(); }

  void realUseIsTheSameAgain_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("an option is changed") << QStringLiteral("option");
    QTest::newRow("recordings are browsed and played") << QStringLiteral("browse");
  }
  void realUseIsTheSameAgain() {
    QFETCH(QString, name);
    IsTheSameAgain(name);
  }
  // A drive, a parking and its report.
  void anotherTimeIsTheSameAgain() { IsTheSameAgain(QStringLiteral("parking")); }

  // ---- what differs

  void whatDiffersIsTold() {
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(Kept(QStringLiteral("option")), &error), qPrintable(error));
    int presses = 0;
    bool hasCommand = false;
    for (qsizetype i = 0; i < recording.entries.size(); ++i) {
      RecordEntry& entry = recording.entries[i];
      const QString name = entry.body.value(QStringLiteral("name")).toString();
      if (name == QStringLiteral("SFIELD_VIDEO_REC_STOP")) {
        entry.body.insert(QStringLiteral("value"), 7);
        hasCommand = true;
      }
      if (name == QStringLiteral("SFIELD_VIDEO_REC_START")) recording.entries.removeAt(i--);
      QJsonObject seen = entry.Seen();
      if (entry.kind == Kind::Touch && !seen.isEmpty() && ++presses == 2) {
        QByteArray picture = QByteArray::fromBase64(seen.value(QStringLiteral("picture")).toString().toLatin1());
        picture[3 * 13] = char(picture[3 * 13] ^ 1);  // the second square of the second row
        seen.insert(QStringLiteral("picture"), QString::fromLatin1(picture.toBase64()));
        entry.body.insert(QStringLiteral("seen"), seen);
      }
    }
    QVERIFY(hasCommand && presses > 3);
    QVERIFY(WriteRecording(File("changed.jsonl"), recording));
    const QString folder = File("differences");
    const Replayed replayed = Replay(File("changed.jsonl"), {QStringLiteral("--differences"), folder});
    QCOMPARE(replayed.code, 1);
    const QString said = replayed.lines.join(u'\n');
    QVERIFY2(replayed.Says(QStringLiteral("Before input 3, press at 80, 255")), qPrintable(said));
    QVERIFY2(replayed.Says(QStringLiteral(": the picture differs at x 40 to 79, y 40 to 79.")), qPrintable(said));
    QVERIFY2(replayed.Says(QStringLiteral(": the command SFIELD_VIDEO_REC_STOP 7 did not come.")), qPrintable(said));
    QVERIFY2(replayed.Says(QStringLiteral(": the command SFIELD_VIDEO_REC_STOP 2 came, and was not recorded.")),
             qPrintable(said));
    QVERIFY2(replayed.Says(QStringLiteral(": the command SFIELD_VIDEO_REC_START 0 came, and was not recorded.")),
             qPrintable(said));
    QVERIFY2(replayed.Summary().endsWith(QLatin1String(": 4 differences.")), qPrintable(said));
    QCOMPARE(QDir(folder).entryList(QDir::Files),
             (QStringList{QStringLiteral("before-input-3-expected.png"), QStringLiteral("before-input-3.png")}));
    QCOMPARE(QImage(folder + QStringLiteral("/before-input-3.png")).size(), QSize(480, 320));
  }
  void aReplayThatIsRecordedIsTheNewRecording() {
    RecordFile before, again;
    QString error;
    QVERIFY(before.Read(Kept(QStringLiteral("option")), &error));
    QCOMPARE(Replay(Kept(QStringLiteral("option")), {QStringLiteral("--record"), File("again.jsonl")}).code, 0);
    QVERIFY2(again.Read(File("again.jsonl"), &error), qPrintable(error));
    QCOMPARE(again.clock, before.clock);
    QCOMPARE(again.seed, before.seed);
    for (const Kind kind : {Kind::Touch, Kind::Stored, Kind::Screen, Kind::End})
      QCOMPARE(Count(again, kind), Count(before, kind));
    const auto pictures = [](const RecordFile& recording) {
      return std::count_if(recording.entries.begin(), recording.entries.end(),
                           [](const RecordEntry& entry) { return entry.Seen().contains(QStringLiteral("picture")); });
    };
    QCOMPARE(pictures(again), pictures(before));
    // Its inputs have the times of the person, not those of the replay.
    const auto last = [](const RecordFile& recording) {
      return std::find_if(recording.entries.rbegin(), recording.entries.rend(),
                          [](const RecordEntry& entry) { return entry.IsInput(); })
          ->ms;
    };
    QVERIFY(std::abs(last(again) - last(before)) < 1000);
  }
  // Whatever this bench's own would be.
  void aReplayBeginsInTheLanguageOfItsRecording_data() {
    QTest::addColumn<QString>("language");
    QTest::newRow("Korean") << "ko";
    QTest::newRow("English") << "en";
  }
  void aReplayBeginsInTheLanguageOfItsRecording() {
    QFETCH(QString, language);
    RecordFile recording;
    QString error;
    QVERIFY(recording.Read(Kept(QStringLiteral("option")), &error));
    recording.language = language;
    QVERIFY(WriteRecording(File("language.jsonl"), recording));
    qputenv("DASHCAM_LANGUAGE", language == QLatin1String("ko") ? "en" : "ko");
    mBench = std::make_unique<BenchRun>(QStringList{QStringLiteral("--replay"), File("language.jsonl")});
    qunsetenv("DASHCAM_LANGUAGE");
    QVERIFY(mBench->IsUp());
    QCOMPARE(mBench->State("interface/language").toString(), language);
    QCOMPARE(BenchRun::LanguageOf(mBench->Root()), language);
  }
  void anotherLanguageIsReplayed() {
    QVERIFY(StartCamera(
        {QStringLiteral("--language"), QStringLiteral("en"), QStringLiteral("--record"), File("languages.jsonl")}));
    const qint64 since = mBench->LastEntry();
    QVERIFY(mBench->Action("{\"name\": \"language\", \"to\": \"ko\"}"));
    QTRY_VERIFY_WITH_TIMEOUT(!mBench->Find("event", QStringLiteral("RECV_ZEL_STATUS_SPEED"), since).isEmpty(), 10000);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
    QTRY_VERIFY(IsOverlayShown());
    OpenMenu();
    End();
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(File("languages.jsonl"), &error), qPrintable(error));
    QCOMPARE(recording.language, QStringLiteral("en"));
    QCOMPARE(Count(recording, Kind::Action), 1);
    const Replayed replayed = Replay(File("languages.jsonl"));
    QVERIFY2(replayed.code == 0, qPrintable(replayed.lines.join(u'\n') + replayed.error));
  }
  void whileItPlaysNobodyElseGivesInput() {
    mBench = std::make_unique<BenchRun>(QStringList{QStringLiteral("--replay"), Kept(QStringLiteral("option"))});
    QVERIFY(mBench->IsUp());
    for (const auto& [path, body] : {std::pair("/api/touch", "{\"action\": \"tap\", \"x\": 1, \"y\": 1}"),
                                     {"/api/event", "{\"event\": 24}"},
                                     {"/api/action", "{\"name\": \"shock\"}"},
                                     {"/api/interface/restart", ""}})
      QCOMPARE(mBench->Post(path, body).status, 409);
    QVERIFY(mBench->Get("/api/lcd.png").status == 200);
    mBench->Process().terminate();
    QVERIFY(mBench->Process().waitForFinished(10000));
    QCOMPARE(mBench->Process().exitCode(), 1);  // before its end
  }

  // ---- what is recorded

  void aKillLosesNothing() {
    QVERIFY(StartCamera({QStringLiteral("--record"), File("killed.jsonl")}));
    QVERIFY(mBench->Action("{\"name\": \"speed\", \"kmh\": 43}"));
    QVERIFY(Event(24, 12));
    OpenMenu();
    mBench->Process().kill();
    QVERIFY(mBench->Process().waitForFinished(kPatienceMs));
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(File("killed.jsonl"), &error), qPrintable(error));
    QCOMPARE(Count(recording, Kind::End), 0);
    QCOMPARE(Count(recording, Kind::Action), 1);
    QCOMPARE(Count(recording, Kind::Event), 1);
    QVERIFY(Count(recording, Kind::Touch) >= 1);
    QVERIFY(std::any_of(recording.entries.begin(), recording.entries.end(), [](const RecordEntry& entry) {
      return entry.Essence() == QStringLiteral("the line \"screen MAINMENU\"");
    }));
    const Replayed replayed = Replay(File("killed.jsonl"));
    QVERIFY2(replayed.code == 0, qPrintable(replayed.lines.join(u'\n') + replayed.error));
  }
  void aNightThatPassesIsTheSameAgain() {
    QVERIFY(StartCamera({QStringLiteral("--record"), File("night.jsonl")}));
    QVERIFY(mBench->Action("{\"name\": \"timeSpeed\", \"speed\": \"60\"}"));
    QVERIFY(Do("parkIn"));
    QTRY_VERIFY(mBench->State("recorder/clockOffset").toInt() >= 120);
    QTRY_COMPARE_WITH_TIMEOUT(mBench->State("lcd/backlight").toInt(), 0, 15000);  // so it stays
    QVERIFY(mBench->Action("{\"name\": \"timeSkip\", \"minutes\": 480}"));
    QVERIFY(Do("impact"));
    QVERIFY(mBench->Action("{\"name\": \"timeSpeed\", \"speed\": \"1\"}"));
    QVERIFY(Do("parkOut"));
    QTRY_VERIFY(Screen() != QLatin1String("PREVIEW"));  // the report, with its times
    QVERIFY(Do("closeReport"));
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
    End();
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(File("night.jsonl"), &error), qPrintable(error));
    QVERIFY(Count(recording, Kind::Stored) > 2);  // what the time that passed has left
    const Replayed replayed = Replay(File("night.jsonl"));
    QVERIFY2(replayed.code == 0, qPrintable(replayed.lines.join(u'\n') + replayed.error));
  }
  void everyWayOfInputIsRecorded() {
    QFile scenario(File("scenario.jsonl"));
    QVERIFY(scenario.open(QIODevice::WriteOnly));
    scenario.write(
        "{\"ms\": 500, \"event\": 24, \"value\": 12}\n{\"ms\": 600, \"action\": \"gps\", \"state\": \"searching\"}\n"
        "{\"ms\": 2500, \"touch\": {\"x\": 265, \"y\": 33}}\n");
    scenario.close();
    QVERIFY(StartCamera(
        {QStringLiteral("--scenario"), scenario.fileName(), QStringLiteral("--record"), File("all.jsonl")}));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("MAINMENU"), 10000);
    QCOMPARE(mBench->Post("/api/touch", "{\"action\": \"press\", \"x\": 300, \"y\": 300, \"raw\": true}").status, 200);
    QCOMPARE(mBench->Post("/api/touch", "{\"action\": \"press\", \"x\": 310, \"y\": 300, \"raw\": true}").status, 200);
    QCOMPARE(mBench->Post("/api/touch", "{\"action\": \"release\"}").status, 200);
    QBuffer png;
    QImage(48, 32, QImage::Format_RGB32).save(&png, "PNG");
    // Each time until it is there again and has been told everything.
    for (const auto& [path, body] :
         {std::pair<QByteArray, QByteArray>("/api/picture", png.data()), {"/api/interface/restart", ""}}) {
      const qint64 since = mBench->LastEntry();
      QCOMPARE(mBench->Post(path, body).status, 200);
      QTRY_VERIFY_WITH_TIMEOUT(!mBench->Find("event", QStringLiteral("RECV_ZEL_STATUS_SPEED"), since).isEmpty(), 10000);
      QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
      QTRY_VERIFY(IsOverlayShown());
    }
    End();
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(File("all.jsonl"), &error), qPrintable(error));
    QCOMPARE(Count(recording, Kind::Event), 1);
    QCOMPARE(Count(recording, Kind::Action), 2);
    QCOMPARE(Count(recording, Kind::Picture), 1);
    QCOMPARE(Count(recording, Kind::Touch), 5);
    QCOMPARE(Count(recording, Kind::End), 1);
    const Replayed replayed = Replay(File("all.jsonl"));
    QVERIFY2(replayed.code == 0, qPrintable(replayed.lines.join(u'\n') + replayed.error));
  }
  // The work of a colleague, or of the day before: it is replaced by something, and never by nothing.
  // A gesture is its moves.
  void aPathIsThereAgain() {
    const auto touches = [this](const char* name) {
      RecordFile recording;
      QString error;
      if (!recording.Read(File(name), &error)) qWarning("%s", qPrintable(error));
      QList<RecordEntry> found;
      for (const RecordEntry& entry : recording.entries)
        if (entry.kind == Kind::Touch) found << entry;
      return found;
    };
    QVERIFY(StartCamera({QStringLiteral("--record"), File("path.jsonl")}));
    QCOMPARE(
        mBench->Post("/api/touch", R"({"action":"path","path":[{"x":20,"y":310},{"x":420,"y":310,"ms":2000}]})").status,
        200);
    QTRY_VERIFY(!mBench->Find("touch", QStringLiteral("release")).isEmpty());
    End();
    const Replayed replayed = Replay(File("path.jsonl"), {QStringLiteral("--record"), File("path-again.jsonl")});
    QVERIFY2(replayed.code == 0, qPrintable(replayed.lines.join(u'\n') + replayed.error));
    const QList<RecordEntry> before = touches("path.jsonl"), again = touches("path-again.jsonl");
    QVERIFY(before.size() > 50);
    QCOMPARE(again.size(), before.size());
    for (qsizetype i = 0; i < before.size(); ++i) QCOMPARE(again[i].Request(), before[i].Request());
  }
  void anOlderRecordingIsLeftAlone_data() {
    QTest::addColumn<QString>("others");
    QTest::addColumn<QString>("says");
    QTest::newRow("it is there") << QStringLiteral("--port 0") << QStringLiteral("is there already");
    QTest::newRow("the port is taken") << QStringLiteral("--force --port %1") << QStringLiteral("cannot be used");
    QTest::newRow("there is no such scenario")
        << QStringLiteral("--force --scenario /nowhere") << QStringLiteral("/nowhere");
  }
  void anOlderRecordingIsLeftAlone() {
    QFETCH(QString, others);
    QFETCH(QString, says);
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress::LocalHost));
    const QString file = File("older.jsonl");
    QFile::remove(file);
    QVERIFY(QFile::copy(Kept(QStringLiteral("option")), file));
    const Replayed ended =
        RunToItsEnd(QStringList{QStringLiteral("--record"), file} +
                    others.replace(QLatin1String("%1"), QString::number(taken.serverPort())).split(u' '));
    QCOMPARE(ended.code, 1);
    QVERIFY2(IsSentence(ended.error) && ended.error.contains(says), qPrintable(ended.error));
    QCOMPARE(Bytes(file), Bytes(Kept(QStringLiteral("option"))));
    QVERIFY(!QFile::exists(file + QStringLiteral(".part")));
  }
  void anOlderRecordingIsReplacedByAnInput() {
    const QString file = File("replaced.jsonl"), older = Kept(QStringLiteral("option"));
    QVERIFY(QFile::copy(older, file));
    const QStringList options{QStringLiteral("--record"), file, QStringLiteral("--force")};
    QVERIFY(StartCamera(options));
    QVERIFY(QFile::exists(file + QStringLiteral(".part")));
    End();
    QCOMPARE(Bytes(file), Bytes(older));
    QVERIFY(!QFile::exists(file + QStringLiteral(".part")));

    QVERIFY(StartCamera(options));
    QVERIFY(Event(24, 12));
    QVERIFY(!QFile::exists(file + QStringLiteral(".part")));
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(file, &error), qPrintable(error));
    QCOMPARE(Count(recording, Kind::Event), 1);
    QCOMPARE(Count(recording, Kind::Touch), 0);
  }
  // What was pressed as soon as it was there is pressed as soon as it is there, and not before.
  void aHastyDriverIsFollowed() {
    QVERIFY(StartCamera({QStringLiteral("--record"), File("calm.jsonl")}));
    OpenList();
    QVERIFY(Tap({430, 30}));
    QTRY_COMPARE(Screen(), QStringLiteral("MAINMENU"));
    End();
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(File("calm.jsonl"), &error), qPrintable(error));
    for (RecordEntry& entry : recording.entries) {
      entry.ms = 0;
      if (entry.kind == Kind::Touch) entry.body.remove(QStringLiteral("seen"));
    }
    QVERIFY(WriteRecording(File("hasty.jsonl"), recording));
    const Replayed replayed = Replay(File("hasty.jsonl"));
    QVERIFY2(replayed.code == 0, qPrintable(replayed.lines.join(u'\n') + replayed.error));
  }
  // A card with recordings, another clock, a panel that is mounted askew: the second run begins with them.
  void aKeptRootIsThereAgain() {
    const QStringList root{QStringLiteral("--root"), File("root")};
    QVERIFY(StartCamera(root));
    QVERIFY(mBench->Action("{\"name\": \"clock\", \"to\": \"leap day\"}"));
    QVERIFY(mBench->Action("{\"name\": \"panelAskew\", \"skew\": 0, \"x\": -10, \"y\": 0, \"noise\": 2}"));
    QVERIFY(mBench->Action("{\"name\": \"sdFull\", \"recordings\": 30}"));
    QTRY_VERIFY(mBench->State("recorder/cardWork").isNull());
    End();
    QVERIFY(StartCamera(root + QStringList{QStringLiteral("--record"), File("kept.jsonl")}));
    OpenList();
    End();
    RecordFile recording;
    QString error;
    QVERIFY2(recording.Read(File("kept.jsonl"), &error), qPrintable(error));
    QVERIFY(recording.root.value(QStringLiteral("card")).toArray().size() >= 30);
    const Replayed replayed = Replay(File("kept.jsonl"));
    QVERIFY2(replayed.code == 0, qPrintable(replayed.lines.join(u'\n') + replayed.error));
  }

  // ---- what is refused

  void whatCannotBeIsOneSentence_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    const auto row = [](const char* name, const QString& arguments, int code) {
      QTest::newRow(name) << arguments.split(u' ') << code;
    };
    const QString good = Kept(QStringLiteral("option"));
    row("no such recording", QStringLiteral("--replay /nowhere/use.jsonl"), 2);
    row("no recording", QStringLiteral("--replay " SOURCE_DIR "/README.md"), 2);
    row("another root", QStringLiteral("--replay %1 --root %2").arg(good, File("other")), 2);
    row("another language", QStringLiteral("--replay %1 --language ko").arg(good), 2);
    row("a scenario, too", QStringLiteral("--replay %1 --scenario %1").arg(good), 2);
    row("fast without a replay", QStringLiteral("--fast"), 2);
    row("differences without a replay", QStringLiteral("--differences /tmp"), 2);
    row("force without a record", QStringLiteral("--force"), 2);
    row("a record with the name of a folder", QStringLiteral("--force --record /tmp"), 1);
    row("a record that cannot be written", QStringLiteral("--record /nowhere/use.jsonl"), 1);
  }
  void whatCannotBeIsOneSentence() {
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    const Replayed replayed = RunToItsEnd(arguments);
    QCOMPARE(replayed.code, code);
    QVERIFY2(IsSentence(replayed.error) && replayed.lines.isEmpty(), qPrintable(replayed.error));
  }
  // Whoever hands it in as a report believes that it shows something.
  void aRecordingWithoutInputIsRefused() {
    RecordFile recording;
    QString error;
    QVERIFY(recording.Read(Kept(QStringLiteral("option")), &error));
    recording.entries.removeIf([](const RecordEntry& entry) { return entry.IsInput(); });
    QVERIFY(WriteRecording(File("idle.jsonl"), recording));
    const Replayed replayed = Replay(File("idle.jsonl"));
    QCOMPARE(replayed.code, 2);
    QVERIFY2(IsSentence(replayed.error) && replayed.error.contains(QLatin1String("no input")),
             qPrintable(replayed.error));
  }
  void aRootStateThatReachesOutIsRefused() {
    RecordFile recording;
    QString error;
    QVERIFY(recording.Read(Kept(QStringLiteral("option")), &error));
    const QJsonObject file{{QStringLiteral("path"), QStringLiteral("/../../outside")},
                           {QStringLiteral("data"), QStringLiteral("aGVsbG8=")}};
    recording.root = {{QStringLiteral("state"), QStringLiteral("kept")}, {QStringLiteral("files"), QJsonArray{file}}};
    QVERIFY(WriteRecording(File("hostile.jsonl"), recording));
    const Replayed replayed = Replay(File("hostile.jsonl"));
    QCOMPARE(replayed.code, 2);
    QVERIFY2(IsSentence(replayed.error), qPrintable(replayed.error));
  }
};

QTEST_GUILESS_MAIN(ReplayTest)
#include "replay_test.moc"
