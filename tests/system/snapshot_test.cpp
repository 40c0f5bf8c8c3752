// The camera as it was: saved under a name, gone back to, removed. With the real bench and interface.
#include "bench/supervise/snapshots.h"

#include <sys/stat.h>

#include <QSignalSpy>
#include <QTemporaryDir>

#include "tests/system/camerarun.h"

class SnapshotTest : public CameraRun {
  Q_OBJECT

  BenchAnswer Ask(const QByteArray& what, const QByteArray& name) const {
    return mBench->Post("/api/snapshot", "{\"" + what + "\": \"" + name + "\"}");
  }
  QStringList Names() const {
    QStringList names;
    for (const QJsonValue& each : mBench->State("snapshots").toArray())
      names << each[QStringLiteral("name")].toString();
    return names;
  }
  bool IsIdle() const { return mBench->State("snapshotWork").isNull(); }
  bool Save(const QByteArray& name) const {
    return Ask("save", name).status == 200 && QTest::qWaitFor([this] { return IsIdle(); }, 60000) &&
           Names().contains(QString::fromLatin1(name));
  }
  // Until the interface is there again and has been told everything. `note`: how it ended.
  bool GoBack(const QByteArray& name,
              const QString& note = QStringLiteral("The camera is what it was in the snapshot.")) const {
    const qint64 since = mBench->LastEntry();
    if (Ask("restore", name).status != 200 ||
        !QTest::qWaitFor([&] { return !mBench->Find("note", note, since).isEmpty(); }, 60000))
      return false;
    const qint64 off = mBench->Find("note", note, since).value(QStringLiteral("number")).toInteger();
    const auto isTold = [&] { return !mBench->Find("event", QStringLiteral("RECV_ZEL_STATUS_SPEED"), off).isEmpty(); };
    return QTest::qWaitFor(isTold, 10000) &&
           QTest::qWaitFor([this] { return Screen() == QLatin1String("PREVIEW") && IsOverlayShown(); }, 10000);
  }
  QString Card() const { return mBench->Root() + QStringLiteral("/mnt/mmc"); }
  // Names, sizes and times of the recordings.
  QStringList Recordings() const {
    QStringList recordings;
    for (const QFileInfo& file : QDir(Card()).entryInfoList({QStringLiteral("*.avi")}, QDir::Files, QDir::Name))
      recordings << QStringLiteral("%1 %2 %3")
                        .arg(file.fileName())
                        .arg(file.size())
                        .arg(file.lastModified().toMSecsSinceEpoch());
    return recordings;
  }
  int Setting(const QString& key) const { return mBench->State("recorder/settings").toObject().value(key).toInt(-1); }

  static void Write(const QString& path, const QByteArray& bytes) {
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }
  static QByteArray Read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("nothing");
  }

private slots:
  void initTestCase() { QVERIFY(StartCamera()); }
  void cleanup() {
    for (const QString& name : mBench ? Names() : QStringList()) {
      QTRY_VERIFY_WITH_TIMEOUT(IsIdle(), 60000);
      QCOMPARE(Ask("remove", name.toUtf8()).status, 200);
    }
    if (mBench) QTRY_VERIFY_WITH_TIMEOUT(IsIdle(), 60000);
  }
  void cleanupTestCase() { mBench.reset(); }

  void theCameraIsWhatItWas() {
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":33})"));
    QVERIFY(mBench->Action(R"({"name":"battery","volts":12.9})"));
    QVERIFY(Do("rearUnplug"));
    QVERIFY(mBench->Action(R"({"name":"parkIn","minutesAgo":90})"));
    QVERIFY(mBench->Action(R"({"name":"impact","minutesAgo":30})"));
    QVERIFY(mBench->Action(R"({"name":"panelAskew","skew":1,"x":2,"y":3,"noise":0})"));
    const QStringList recordings = Recordings();
    const QJsonObject parking = mBench->State("recorder/parking").toObject();
    const int microphone = Setting(QStringLiteral("audiosetting/volume"));
    QVERIFY(Save("an evening 1"));
    const QJsonObject saved = mBench->State("snapshots").toArray().first().toObject();
    QCOMPARE(saved.keys().join(u' '), QStringLiteral("bytes name time"));
    QVERIFY(std::abs(saved[QStringLiteral("time")].toInteger() - QDateTime::currentMSecsSinceEpoch()) < 60000);
    QVERIFY(saved[QStringLiteral("bytes")].toInteger() > 1000000);

    QVERIFY(mBench->Action(R"({"name":"speed","kmh":99})"));
    QVERIFY(mBench->Action(R"({"name":"battery","volts":13.9})"));
    QVERIFY(Do("rearPlug") && Do("parkOut") && Do("closeReport") && Do("panelStraight"));
    QVERIFY(mBench->Action(R"({"name":"timeSkip","minutes":600})"));
    QVERIFY(Do("factoryReset"));
    QVERIFY(mBench->Action(R"({"name":"sdFull","recordings":3})"));
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("recorder/cardWork").isNull() && Recordings().size() < 20, 20000);

    const int starts = mBench->State("interface/starts").toInt();
    QVERIFY(GoBack("an evening 1"));
    QVERIFY(mBench->State("interface/starts").toInt() > starts);
    // What was recorded since it is there again is newer.
    const QStringList there = Recordings();
    for (const QString& recording : recordings) QVERIFY2(there.contains(recording), qPrintable(recording));
    QCOMPARE(mBench->State("recorder/speed").toInt(), 33);
    QCOMPARE(mBench->State("recorder/power/battery").toDouble(), 12.9);
    QCOMPARE(mBench->State("recorder/cameras/rearPlugged").toBool(), false);
    QCOMPARE(mBench->State("recorder/parking").toObject(), parking);
    QCOMPARE(mBench->State("recorder/clockOffset").toInt(), 0);
    QCOMPARE(mBench->State("panel/skew").toInt(), 1);
    QCOMPARE(Setting(QStringLiteral("audiosetting/volume")), microphone);
    QCOMPARE(QDir(mBench->Root() + QStringLiteral("/snapshots"))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("an evening 1")));

    // As often as one likes.
    QVERIFY(Do("parkOut") && Do("closeReport"));
    QVERIFY(GoBack("an evening 1"));
    QCOMPARE(mBench->State("recorder/parking").toObject(), parking);
    QVERIFY(Do("parkOut") && Do("closeReport") && Do("panelStraight") && Do("rearPlug"));
    QCOMPARE(Ask("remove", "an evening 1").status, 200);
    QTRY_COMPARE(Names(), QStringList());
    QTRY_VERIFY(!QFileInfo::exists(mBench->Root() + QStringLiteral("/snapshots/an evening 1")));
  }

  void whatCannotBeIsOneSentence_data() {
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<int>("status");
    const auto row = [](const QByteArray& request, int status) {
      QTest::newRow(request.left(60).constData()) << request << status;
    };
    row("{}", 400);
    row(R"({"save": 5})", 400);
    row(R"({"save": ""})", 400);
    row(R"({"save": "../x"})", 400);
    row(R"({"save": ".new"})", 400);
    row(R"({"save": "a/b"})", 400);
    row(R"({"save": " a"})", 400);
    row(R"({"save": "a "})", 400);
    row(R"({"save": "a\n"})", 400);
    row("{\"save\": \"\xc3\xa4\"}", 400);
    row("{\"save\": \"" + QByteArray(41, 'a') + "\"}", 400);
    row(R"({"save": "a", "remove": "b"})", 400);
    row(R"({"undo": "a"})", 400);
    row(R"({"restore": "nobody"})", 409);
    row(R"({"remove": "nobody"})", 409);
  }
  void whatCannotBeIsOneSentence() {
    QFETCH(QByteArray, request);
    QFETCH(int, status);
    const BenchAnswer answer = mBench->Post("/api/snapshot", request);
    QCOMPARE(answer.status, status);
    QVERIFY2(answer.Error().size() > 10 && answer.Error().endsWith(u'.'), answer.body.constData());
    QVERIFY(IsIdle() && Names().isEmpty());
  }

  void aSnapshotThatIsBrokenChangesNothing() {
    QVERIFY(Save(QByteArray(40, 'x')));
    QCOMPARE(Ask("save", QByteArray(40, 'x')).status, 409);
    const QString files = mBench->Root() + QStringLiteral("/snapshots/") + QString(40, u'x') + QStringLiteral("/files");
    const int starts = mBench->State("interface/starts").toInt();
    const qint64 since = mBench->LastEntry();
    QVERIFY(QFile::link(QStringLiteral("/etc/passwd"), files + QStringLiteral("/tmp/secret")));
    QCOMPARE(Ask("restore", QByteArray(40, 'x')).status, 200);
    QTRY_VERIFY(
        !mBench->Find("note", QStringLiteral("No snapshot can keep the symbolic link /tmp/secret."), since).isEmpty());
    QVERIFY(QDir(files).removeRecursively());
    QTRY_VERIFY(IsIdle());
    QCOMPARE(Ask("restore", QByteArray(40, 'x')).status, 200);
    QTRY_VERIFY(!mBench->Find("note", QStringLiteral("The snapshot has lost its files."), since).isEmpty());
    QTRY_VERIFY(IsIdle());
    QCOMPARE(mBench->State("interface/starts").toInt(), starts);
    QCOMPARE(Ask("remove", QByteArray(40, 'x')).status, 200);
    QTRY_COMPARE(Names(), QStringList());
  }

  // The camera is off already: what it has must not be lost.
  void aChangeThatFailsLeavesTheCameraAsItWas() {
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":5})"));
    QVERIFY(Save("before"));
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":77})"));
    const QStringList recordings = Recordings();
    Write(mBench->Root() + QStringLiteral("/snapshots/.gone"), "in the way");
    QVERIFY(GoBack("before", QStringLiteral("The root folder cannot be written: %1.").arg(mBench->Root())));
    QCOMPARE(mBench->State("recorder/speed").toInt(), 77);
    const QStringList there = Recordings();
    for (const QString& recording : recordings) QVERIFY2(there.contains(recording), qPrintable(recording));
    QVERIFY(QFile::remove(mBench->Root() + QStringLiteral("/snapshots/.gone")));
    QVERIFY(GoBack("before"));
    QCOMPARE(mBench->State("recorder/speed").toInt(), 5);
    QCOMPARE(Ask("remove", "before").status, 200);
    QTRY_COMPARE(Names(), QStringList());
  }

  void aLargeCardHoldsNobodyUp() {
    QVERIFY(mBench->Action(R"({"name":"sdFull","recordings":1000})"));
    QCOMPARE(Ask("save", "full").status, 409);  // not in the middle of that
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("recorder/cardWork").isNull(), 120000);
    QCOMPARE(Ask("save", "full").status, 200);
    QCOMPARE(Ask("save", "another").status, 409);
    qint64 longest = 0;
    int answers = 0;
    while (!IsIdle()) {
      QElapsedTimer clock;
      clock.start();
      QCOMPARE(mBench->Get("/api/click.wav").status, 200);
      longest = std::max(longest, clock.elapsed());
      ++answers;
    }
    qInfo("%d answers while 1000 recordings were saved, the slowest in %lld ms", answers,
          static_cast<long long>(longest));
    QVERIFY(answers > 0 && longest < 500);  // this machine has others to serve, too
    QCOMPARE(Names(), QStringList(QStringLiteral("full")));
    QVERIFY(mBench->Action(R"({"name":"sdFull","recordings":5})"));
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("recorder/cardWork").isNull() && Recordings().size() < 20, 120000);
    QVERIFY(GoBack("full"));
    QVERIFY(Recordings().size() >= 1000);
    QCOMPARE(Ask("remove", "full").status, 200);
    QTRY_COMPARE_WITH_TIMEOUT(Names(), QStringList(), 60000);
  }

  void thereAreTwentyAtMost() {
    QVERIFY(mBench->Action(R"({"name":"sdFull","recordings":5})"));
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("recorder/cardWork").isNull() && Recordings().size() < 20, 120000);
    for (int i = 0; i < 20; ++i) QVERIFY(Save("s" + QByteArray::number(i)));
    QCOMPARE(Ask("save", "s20").Error(), QStringLiteral("There are 20 snapshots already."));
    QCOMPARE(Names().size(), 20);
  }

  void aKeptRootKeepsThem() {
    const QTemporaryDir folder;
    const QStringList arguments{QStringLiteral("--root"), folder.filePath(QStringLiteral("r"))};
    mBench.reset();
    QVERIFY(StartCamera(arguments));
    QVERIFY(mBench->Action(R"({"name":"sdFull","recordings":5})"));
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("recorder/cardWork").isNull(), 60000);
    QVERIFY(mBench->Action(R"({"name":"speed","kmh":44})"));
    QVERIFY(Save("kept"));
    mBench.reset();
    // Others that are none.
    const QString snapshots = arguments[1] + QStringLiteral("/snapshots/");
    Write(snapshots + QStringLiteral("broken/camera.json"), "[1");
    Write(snapshots + QStringLiteral("large/camera.json"), QByteArray(2000000, ' '));
    QVERIFY(QFile::link(snapshots + QStringLiteral("kept"), snapshots + QStringLiteral("link")));
    QVERIFY(QDir().mkpath(snapshots + QStringLiteral("empty")));
    QVERIFY(StartCamera(arguments));
    QCOMPARE(Names(), QStringList(QStringLiteral("kept")));
    QCOMPARE(Ask("save", "empty").status, 409);
    QVERIFY(GoBack("kept"));
    QCOMPARE(mBench->State("recorder/speed").toInt(), 44);
    mBench.reset();
    // What is recorded begins with the camera, not with its snapshots; and it cannot go back.
    QVERIFY(StartCamera(arguments + QStringList{QStringLiteral("--record"), folder.filePath(QStringLiteral("f"))}));
    QCOMPARE(Ask("restore", "kept").status, 409);
    QVERIFY(Do("shock"));
    QVERIFY(!Read(folder.filePath(QStringLiteral("f"))).contains("snapshots"));
    mBench.reset();
  }

  void aBenchThatWasKilledHalfWayLosesNothing() {
    const QTemporaryDir root;
    const auto path = [&root](const char* below) { return root.path() + QLatin1String(below); };
    // Some of the files had gone, some had come.
    Write(path("/snapshots/.gone/mnt/mmc/rec0.avi"), "mine");
    Write(path("/snapshots/.gone/opt/led.zel"), "mine");
    Write(path("/snapshots/.coming/tmp/a"), "other");
    Write(path("/snapshots/.new/files/tmp/a"), "other");
    Write(path("/mnt/mmc/rec0.avi"), "other");
    Write(path("/tmp/a"), "mine");
    Write(path("/run/clock"), "mine");
    Snapshots::Recover(root.path());
    for (const char* file : {"/mnt/mmc/rec0.avi", "/opt/led.zel", "/tmp/a", "/run/clock"})
      QCOMPARE(Read(path(file)), QByteArray("mine"));
    QCOMPARE(QDir(path("/snapshots")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
  }
};

QTEST_GUILESS_MAIN(SnapshotTest)
#include "snapshot_test.moc"
