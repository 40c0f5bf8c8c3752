// A driver in the menus: recordings, the card, and the settings, on the real camera with the simulated recorder.
#include <cmath>

#include "tests/system/camerarun.h"

class DriverTest : public CameraRun {
  Q_OBJECT

  static constexpr QPoint kHome{40, 30}, kYes{140, 236}, kNo{340, 236};
  static constexpr QPoint kTile11{80, 125}, kTile12{240, 125}, kTile13{400, 125}, kTile21{80, 255};
  static constexpr QRect kRoad{120, 80, 240, 110};  // of the player: no control stands there

  int Card(const QString& name) const {
    return int(QDir(mBench->Root() + QStringLiteral("/mnt/mmc")).entryList({name}, QDir::Files).size());
  }
  QList<int> Values(const char* command) const {
    QList<int> values;
    for (const QJsonObject& entry : mBench->Log(mSince))
      if (entry.value(QStringLiteral("name")) == QLatin1String(command))
        values << entry.value(QStringLiteral("value")).toInt();
    return values;
  }
  QStringList Played() const {
    QStringList names;
    for (const QJsonObject& entry : mBench->Log(mSince))
      if (entry.value(QStringLiteral("name")) == QStringLiteral("SFIELD_PLAY_VIDEO"))
        names << QString::fromLatin1(
                     QByteArray::fromHex(entry.value(QStringLiteral("data")).toString().toLatin1()).constData())
                     .section(u'/', -1);
    return names;
  }
  int LastPosition() const {
    return mBench->Find("event", QStringLiteral("RECV_ZEL_STATUS_PLAY_CUR"), mSince)
        .value(QStringLiteral("value"))
        .toInt(-1);
  }
  // Of two pictures of the road: how far they are apart, 0..255.
  static double Difference(const QImage& one, const QImage& other) {
    double sum = 0;
    for (int y = 0; y < one.height(); ++y)
      for (int x = 0; x < one.width(); ++x) sum += std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y)));
    return sum / one.width() / one.height();
  }

  void OpenList() {
    OpenMenu();
    QVERIFY(Tap(kTile11));
    QTRY_COMPARE(OwnBox(), QStringLiteral("ENTRY_FILELIST"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("RECORDINGLIST"), 10000);
  }
  void OpenCardMenu() {
    OpenMenu();
    QVERIFY(Tap(kTile13));
    QTRY_COMPARE(Screen(), QStringLiteral("SDMANAGEMENT"));
  }

private slots:
  void initTestCase() { QVERIFY(StartCamera()); }
  void cleanupTestCase() { mBench.reset(); }
  void init() { AwaitPreview(); }

  // ---- recordings

  void noLeavesTheListAlone() {
    OpenMenu();
    QVERIFY(Tap(kTile11));
    QTRY_COMPARE(OwnBox(), QStringLiteral("ENTRY_FILELIST"));
    QVERIFY(Tap(kNo));
    QTRY_COMPARE(OwnBox(), QString());
    QVERIFY(!IsCommanded("SFIELD_VIDEO_REC_STOP"));
    QVERIFY(Tap(kHome));
  }
  void aSecondYesDoesNotHitTheList() {
    OpenMenu();
    QVERIFY(Tap(kTile11));
    QTRY_COMPARE(OwnBox(), QStringLiteral("ENTRY_FILELIST"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE(OwnBox(), QStringLiteral("LOADING_FILELIST"));
    QVERIFY(Tap({100, 230}));  // of the list it would be a row
    QTRY_COMPARE(Screen(), QStringLiteral("RECORDINGLIST"));
    QTest::qWait(500);
    QCOMPARE(Screen(), QStringLiteral("RECORDINGLIST"));
    QVERIFY(Played().isEmpty());
    QVERIFY(Tap(kHome));
  }
  void recordingsAreBrowsedAndPlayed() {
    mBench.reset();  // of a new card it is known what is on it: below the latest recording there are long ones
    QVERIFY(StartCamera());
    mSince = 0;
    OpenList();
    QCOMPARE(Values("SFIELD_VIDEO_REC_STOP"), QList<int>{1});
    QVERIFY(!mBench->State("recorder/recording").toBool());

    // Pages and toggles change the rows.
    QImage before = Drawn();
    for (const QPoint key :
         {QPoint(440, 242), QPoint(440, 294), QPoint(440, 138), QPoint(150, 30), QPoint(265, 30), QPoint(355, 30)}) {
      QVERIFY(Tap(key));
      QTRY_VERIFY(Drawn() != before);
      before = Drawn();
    }
    for (int i = 0; i < 4; ++i) QVERIFY(Tap({150, 30}));  // all kinds again
    QVERIFY(Tap({265, 30}) && Tap({355, 30}));            // front, the newest first

    // The second recording of the card is one with a twin; the first one may have been cut off by the list.
    QVERIFY(Tap({200, 138}));
    QTRY_COMPARE(Screen(), QStringLiteral("PLAYER"));
    QTRY_COMPARE(Played().size(), 1);
    QVERIFY(Played()[0].mid(3, 1) == u'0');
    QTRY_VERIFY(LastPosition() >= 1000);
    const QImage front = Seen().copy(kRoad);
    QCOMPARE(mBench->State("video/playing").toBool(), true);
    for (int x = 0; x < front.width(); ++x) QVERIFY(front.pixel(x, 30) != qRgb(255, 0, 8));

    // Seek, pause, resume.
    QVERIFY(Tap({240, 230}));
    QTRY_VERIFY(IsCommanded("SFIELD_SET_SEEK_PLAY"));
    const int target = Values("SFIELD_SET_SEEK_PLAY").last();
    QVERIFY(target >= 1000);
    QTRY_VERIFY(LastPosition() >= target - 500);
    QVERIFY(Tap({200, 290}));
    QTRY_COMPARE(Values("SFIELD_CONTROL_VIDEO"), QList<int>{2});
    const QImage paused = Seen().copy(kRoad);
    QTest::qWait(400);  // longer than between two pictures
    QCOMPARE(Seen().copy(kRoad), paused);
    QVERIFY(Tap({200, 290}));
    QTRY_COMPARE(Values("SFIELD_CONTROL_VIDEO"), (QList<int>{2, 1}));
    QTRY_VERIFY(Seen().copy(kRoad) != paused);

    // The other camera shows another road.
    QVERIFY(Tap({440, 290}));
    QTRY_COMPARE(Played().size(), 2);
    QCOMPARE(Played()[1], QString(Played()[0]).replace(3, 1, u'1'));
    QTRY_VERIFY(Difference(Seen().copy(kRoad), front) > 20);

    // The older one, and the newer one again: of the list that it came from.
    QVERIFY(Tap({40, 290}));
    QTRY_COMPARE(Played().size(), 3);
    QVERIFY(Played()[2].mid(3, 1) == u'0' && Played()[2].mid(5) < Played()[0].mid(5));
    QVERIFY(Tap({280, 290}));
    QTRY_COMPARE(Played().size(), 4);
    QCOMPARE(Played()[3], Played()[0]);

    // To its end: the next one?
    QVERIFY(Tap({478, 230}));
    QTRY_COMPARE_WITH_TIMEOUT(OwnBox(), QStringLiteral("IS_NEXT_FILE_PLAY"), 10000);
    QVERIFY(Tap(kYes));
    QTRY_COMPARE(Played().size(), 5);
    QVERIFY(Played()[4].mid(5) > Played()[0].mid(5));

    QVERIFY(Tap({360, 290}));
    QTRY_COMPARE(Screen(), QStringLiteral("RECORDINGLIST"));
    QCOMPARE(Values("SFIELD_CONTROL_VIDEO").last(), 0);
    QVERIFY(Tap(kHome));
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
    QVERIFY(IsCommanded("SFIELD_VIDEO_REC_START"));
    QVERIFY(mBench->State("recorder/recording").toBool());
  }
  void aBrokenRecordingIsToldAndTheListComesBack() {
    QVERIFY(mBench->Action("{\"name\": \"sdCorrupt\", \"how\": \"scribbled\"}"));
    OpenList();
    const QStringList scribbled = Played();
    // The newest whole one before this list was opened: the second or the first row.
    for (const int y : {138, 86}) {
      if (OwnBox().isEmpty() && Screen() == QStringLiteral("RECORDINGLIST")) QVERIFY(Tap({200, y}));
      QTRY_VERIFY(Screen() == QStringLiteral("PLAYER") || !OwnBox().isEmpty());
      for (int wait = 0; wait < 20 && OwnBox().isEmpty(); ++wait) QTest::qWait(100);
      if (OwnBox() == QStringLiteral("PLAY_FAIL")) break;
      QVERIFY(Tap({360, 290}));
      QTRY_COMPARE(Screen(), QStringLiteral("RECORDINGLIST"));
    }
    QCOMPARE(OwnBox(), QStringLiteral("PLAY_FAIL"));
    QTRY_COMPARE(Screen(), QStringLiteral("RECORDINGLIST"));
    QVERIFY(Tap({440, 30}));
    QTRY_COMPARE(Screen(), QStringLiteral("MAINMENU"));
    QVERIFY(IsCommanded("SFIELD_VIDEO_REC_START"));
    QVERIFY(Tap(kHome));
  }
  void theScenarioBrowsesByItself() {
    const QString scenario = QStringLiteral(SOURCE_DIR "/recorder/scenarios/browse.jsonl");
    mBench.reset();
    QVERIFY(StartCamera({QStringLiteral("--scenario"), scenario}));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("RECORDINGLIST"), 15000);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PLAYER"), 25000);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 25000);
    mSince = 0;
    QCOMPARE(Played().size(), 3);  // the recording, the older one, the other camera
    QCOMPARE(Values("SFIELD_CONTROL_VIDEO").mid(0, 2), (QList<int>{2, 1}));
    QVERIFY(IsCommanded("SFIELD_SET_SEEK_PLAY"));
    QCOMPARE(mBench->State("recorder/recording").toBool(), true);
  }

  // ---- the card

  void theCardIsCheckedAndFound_data() {
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("good") << QByteArray("0");
    QTest::newRow("faulty") << QByteArray("5");
  }
  void theCardIsCheckedAndFound() {
    QFETCH(QByteArray, fault);
    QVERIFY(mBench->Action("{\"name\": \"sdCheckFinds\", \"fault\": \"" + fault + "\"}"));
    OpenCardMenu();
    QVERIFY(Tap(kTile12));
    QTRY_COMPARE(OwnBox(), QStringLiteral("SD_CARD_CHECK_MSG"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE(OwnBox(), QStringLiteral("VIDEO_REC_STOP"));
    QTRY_COMPARE_WITH_TIMEOUT(OwnBox(), QStringLiteral("SD_CARD_CHECK_ING"), 10000);
    QTRY_COMPARE_WITH_TIMEOUT(
        OwnBox(),
        fault == "0" ? QStringLiteral("SD_CARD_CHECK_COMPLETE_VALID") : QStringLiteral("R_SD_ERROR_NEET_FORMAT"),
        10000);
    if (fault != "0") QVERIFY(Tap(kNo));
    QTRY_VERIFY(mBench->State("recorder/recording").toBool());
    QTRY_COMPARE(OwnBox(), QString());
    QVERIFY(Tap(kHome));
  }
  void aFormatThatFailsKeepsTheRecordings() {
    QVERIFY(Do("sdFormatFails"));
    const int before = Card(QStringLiteral("*.avi"));
    QVERIFY(before > 300);
    OpenCardMenu();
    QVERIFY(Tap(kTile11));
    QTRY_COMPARE(OwnBox(), QStringLiteral("SD_FORMAT_CONFIRM"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("SDFORMAT"), 10000);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("SDMANAGEMENT"), 15000);
    QVERIFY(Card(QStringLiteral("*.avi")) >= before);
    QTRY_VERIFY(mBench->State("recorder/recording").toBool());
    QVERIFY(Tap(kHome));
  }
  void aFormatEmptiesTheCard() {
    OpenCardMenu();
    QVERIFY(Tap(kTile11));
    QTRY_COMPARE(OwnBox(), QStringLiteral("SD_FORMAT_CONFIRM"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("SDFORMAT"), 10000);
    QVERIFY(Tap({240, 160}));  // nobody can leave
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 15000);
    QCOMPARE(Values("SFIELD_SET_SYSTEM_SD_FORMAT"), QList<int>{0});
    QVERIFY(Card(QStringLiteral("*.avi")) <= 2);  // but for a recording that ends just now
    QVERIFY(mBench->State("recorder/recording").toBool());
    QVERIFY(QFile::exists(mBench->Root() + QStringLiteral("/mnt/mmc/Setup/.format_time")));
  }
  void withoutACardTheListIsEmpty() {
    QVERIFY(Do("sdOut"));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_NO_SD"));
    QTRY_COMPARE_WITH_TIMEOUT(EventBox(), QString(), kBoxMs);
    OpenList();
    const QImage empty = Drawn().copy(0, 60, 400, 260);
    for (int y = 0; y < empty.height(); ++y)
      for (int x = 0; x < empty.width(); ++x) QCOMPARE(empty.pixel(x, y), qRgb(38, 34, 35));
    QVERIFY(Do("sdIn"));
    QVERIFY(Tap(kHome));
  }

  // ---- the settings

  void oneLevelIsChangedAppliedAndKept() {
    OpenMenu();
    QVERIFY(Tap(kTile21));
    QTRY_COMPARE(Screen(), QStringLiteral("DRIVINGSETTING"));
    const QRect tile(0, 190, 160, 130);
    const QImage old = Drawn().copy(tile);
    QVERIFY(Tap(kTile21));
    QTRY_VERIFY(Drawn().copy(tile) != old);
    const QImage chosen = Drawn().copy(tile);
    QVERIFY(Tap(kHome));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 20000);
    // Stop, the block, start: in this order.
    QStringList order;
    for (const QJsonObject& entry : mBench->Log(mSince)) {
      const QString name = entry.value(QStringLiteral("name")).toString();
      if (name == QStringLiteral("SFIELD_VIDEO_REC_STOP") || name == QStringLiteral("SFIELD_SET_SETUP_COMPLETE") ||
          name == QStringLiteral("SFIELD_VIDEO_REC_START"))
        order << name;
    }
    QCOMPARE(order, (QStringList{"SFIELD_VIDEO_REC_STOP", "SFIELD_SET_SETUP_COMPLETE", "SFIELD_VIDEO_REC_START"}));
    QCOMPARE(Values("SFIELD_VIDEO_REC_STOP"), QList<int>{2});

    // And after both have been started again.
    const int starts = mBench->State("interface/starts").toInt();
    QVERIFY(Do("recorderRestart"));
    QCOMPARE(mBench->Post("/api/interface/restart", "").status, 200);
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("interface/starts").toInt() > starts, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
    QTRY_VERIFY(IsOverlayShown());  // a touch before the first picture would only hide it
    OpenMenu();
    QVERIFY(Tap(kTile21));
    QTRY_COMPARE(Screen(), QStringLiteral("DRIVINGSETTING"));
    QTRY_COMPARE(Drawn().copy(tile), chosen);
    QVERIFY(Tap(kHome));
  }
  void theClockIsTheOneThatTheDriverSets() {
    ShowOverlay();
    const QRect clock(34, 284, 200, 32);
    const QImage before = Drawn().copy(clock);
    OpenMenu();
    QVERIFY(Tap({400, 255}));
    QTRY_COMPARE(Screen(), QStringLiteral("BLACKBOXMANAGEMENT"));
    QVERIFY(Tap(kTile13));
    QTRY_COMPARE(Screen(), QStringLiteral("TIMELAYOUT"));
    QVERIFY(Tap({320, 290}));  // a year on
    QVERIFY(Tap({355, 30}));
    QTRY_COMPARE(OwnBox(), QStringLiteral("TIME_CHANGE"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 20000);
    const double days = mBench->State("recorder/clockOffset").toDouble() / 86400;
    QVERIFY2(days > 364.9 && days < 366.1, qPrintable(QString::number(days)));
    QTRY_VERIFY(Drawn().copy(clock) != before);
    QTRY_VERIFY_WITH_TIMEOUT(Card(QDate::currentDate().addYears(1).toString(QStringLiteral("'rec0_'yyyy'*.avi'"))) > 0,
                             30000);  // the recorder goes by the same clock
    QVERIFY(mBench->Action("{\"name\": \"clock\", \"to\": \"real\"}"));
  }
  void anotherResolutionAsksForAFormat() {
    OpenMenu();
    QVERIFY(Tap(kTile21));
    QTRY_COMPARE(Screen(), QStringLiteral("DRIVINGSETTING"));
    QVERIFY(Tap(kTile11) && Tap(kTile12));
    QVERIFY(Tap(kHome));
    QTRY_COMPARE(OwnBox(), QStringLiteral("RES_FRAME_SETTING_CHANGE_NEED_FORMAT"));
    QVERIFY(Tap(kNo));
    QTRY_COMPARE(OwnBox(), QString());
    QCOMPARE(Screen(), QStringLiteral("DRIVINGSETTING"));
    QVERIFY(!IsCommanded("SFIELD_SET_SETUP_COMPLETE"));
    QVERIFY(Tap(kHome));
    QTRY_COMPARE(OwnBox(), QStringLiteral("RES_FRAME_SETTING_CHANGE_NEED_FORMAT"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("SDFORMAT"), 15000);
    QCOMPARE(Values("SFIELD_SET_SYSTEM_SD_FORMAT"), QList<int>{3});
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 15000);
    QVERIFY(IsCommanded("SFIELD_SET_SETUP_COMPLETE"));
    QCOMPARE(mBench->State("recorder/setup/resolution").toInt(), 1);
    QCOMPARE(mBench->State("recorder/setup/fps").toInt(), 1);
  }
};

QTEST_GUILESS_MAIN(DriverTest)
#include "driver_test.moc"
