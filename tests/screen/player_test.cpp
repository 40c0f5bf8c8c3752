#include "gui/recordings/player.h"

#include "gui/base/touchtime.h"
#include "gui/recordings/playfileinfo.h"
#include "tests/fake/cardfake.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class PlayerTest : public ScreenTest {
  Q_OBJECT

  static constexpr QPoint kHome{40, 33}, kBar{240, 230}, kOlder{40, 291}, kPreview{120, 291}, kPlay{200, 291},
      kNewer{280, 291}, kBack{360, 291}, kCamera{440, 291}, kElsewhere{240, 120};
  static constexpr char kClick[] = "sh aplay /opt/ipnc/voice/touch.wav &";

  static QString Name(int minute, char camera = '0') {
    return QString::asprintf("rec%c_20230101_12%02d00.avi", camera, minute);
  }
  static QString PlayOf(int minute, char camera = '0') {
    return QStringLiteral("SEND_PLAY_VIDEO 0 /mnt/mmc/") + Name(minute, camera);
  }
  static QString Line(const char* text) { return QLatin1String(text); }

  // `minutes` recordings of the front camera from 12:00, each of a minute, and the stop markers of `stops`.
  void Fill(int minutes, const QByteArray& stops = QByteArray()) {
    const qint64 start = QDateTime(QDate(2023, 1, 1), QTime(12, 0)).toSecsSinceEpoch();
    for (int i = 0; i < minutes; ++i) card::Put(root, Name(i), start + 60 * i, card::Avi(60));
    if (!stops.isEmpty()) root.Write(QStringLiteral("/mnt/mmc/Setup/record_stop.info"), stops);
  }
  void Scan() {
    mHost->catalogue = std::make_unique<RecordingFileManager>();
    mHost->catalogue->ReadFileList(QStringLiteral("/mnt/mmc/"));
  }
  Player* Open(int list, int index) {
    Scan();
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    mHost->Show(RECORDINGLIST, new BaseWidget(mHost.get()));
    HostFake::Clear();
    auto* player = mHost->Show(PLAYER, new Player(mHost.get(), new PlayFileInfo(nullptr, list, index)));
    mOpening = Asked();
    HostFake::Clear();
    return player;
  }
  void Tap(QPoint at) { ScreenTest::Tap(at.x(), at.y()); }
  static void Event(int event, int value) { TopScreen()->recvEvent(event, value); }
  static void Fire(const char* name) {
    QTimerEvent over(Timer(name)->timerId());
    QCoreApplication::sendEvent(Timer(name), &over);
  }
  static QString Time() { return Label("mPlayTimeLabel")->text(); }
  static int BarWidth() { return Label("mProgressBar")->width(); }
  static bool IsBarShown() { return Label("mFileNameLabel")->isVisible(); }

  QStringList mOpening;

private slots:
  void init() {
    StartHost();
    card::Clear(root);
    Fake().Clear();
  }
  void cleanup() { mHost.reset(); }

  // ---- start and look

  void itPlaysAtOnce() {
    Fill(3);
    Open(ALL_ASCENDING_FRONT, 0);
    QCOMPARE(mOpening, QStringList(PlayOf(2)));
    QCOMPARE(Label("mFileNameLabel")->text(), Name(2));
    QCOMPARE(Time(), Line("00:00:00"));
    QCOMPARE(BarWidth(), 0);
    QCOMPARE(Armed("mTimDispControl"), 5000);
    QVERIFY(IsBarShown());
  }
  void controlsAreDrawnOverTheVideo() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    const struct {
      QPoint at;
      const char* picture;
    } rows[] = {{{4, 3}, "player/home_normal.bmp"},
                {{0, 262}, "player/prev_normal.bmp"},
                {{80, 262}, "player/preview_normal.bmp"},
                {{160, 262}, "player/pause_normal.bmp"},
                {{240, 262}, "player/next_normal.bmp"},
                {{320, 262}, "player/back_normal.bmp"},
                {{400, 262}, "player/camera_front_normal.bmp"},
                {{3, 256}, "player/bar_bg.bmp"}};
    for (const auto& row : rows) QVERIFY2(IsDrawn(row.at, row.picture), row.picture);
    QVERIFY(IsPlain(QRect(0, 70, 480, 140), kKeyColour));
  }
  void hiddenControlsLeaveTheVideoAlone() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    Fire("mTimDispControl");
    QVERIFY(IsPlain(QRect(0, 0, 480, 320), kKeyColour));
    QCOMPARE(Armed("mTimDispControl"), -1);
  }
  void aDarkLcdStaysBlack() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    mHost->isLcdOff = true;
    Fire("mTimDispControl");
    QVERIFY(IsPlain(QRect(0, 0, 480, 320), Qt::black));
  }
  void listIndexGivesOrderAndCamera_data() {
    QTest::addColumn<int>("list");
    for (int list = 0; list < RECORDING_FILE_INDEX_MAX; ++list) QTest::addRow("%d", list) << list;
  }
  void listIndexGivesOrderAndCamera() {
    QFETCH(int, list);
    const qint64 at = QDateTime(QDate(2023, 1, 1), QTime(12, 0)).toSecsSinceEpoch();
    static constexpr const char* kPrefix[] = {"rec", "rec", "pmr", "evt", "ndf"};
    const QString prefix = QLatin1String(kPrefix[list / 4]);
    const QChar camera = list % 2 == 0 ? u'0' : u'1';
    for (int i = 0; i < 2; ++i)
      card::Put(root, prefix + camera + QString::asprintf("_20230101_120%d00.avi", i), at + 60 * i);
    Open(list, 0);
    const bool descending = list / 2 % 2 == 1;
    QCOMPARE(mOpening.size(), 1);
    QVERIFY(mOpening[0].contains(Line(descending ? "_120000" : "_120100")));
    QVERIFY(IsDrawn({400, 262}, camera == u'1' ? "player/camera_rear_normal.bmp" : "player/camera_front_normal.bmp"));
    // The left key goes to the older one, the right key to the newer one, in every order.
    Tap(descending ? kNewer : kOlder);
    QVERIFY(Asked().last().contains(Line(descending ? "_120100" : "_120000")));
  }
  void anItemThatIsNotThereFails_data() {
    QTest::addColumn<int>("list");
    QTest::addColumn<int>("index");
    QTest::newRow("past the end") << 0 << 3;
    QTest::newRow("negative") << 0 << -1;
    QTest::newRow("no such list") << 20 << 0;
    QTest::newRow("negative list") << -1 << 0;
    QTest::newRow("empty list") << int{PARKING_ASCENDING_FRONT} << 0;
  }
  void anItemThatIsNotThereFails() {
    QFETCH(int, list);
    QFETCH(int, index);
    Fill(3);
    Open(list, index);
    QCOMPARE(mOpening, QStringList());
    QCOMPARE(Box(), int{PLAY_FAIL});
    for (const QPoint key : {kOlder, kNewer, kBar, kCamera, kPlay}) Tap(key);
    QCOMPARE(Asked(), QStringList());
    Fire("mEventTimer");
    QCOMPARE(Asked(), QStringList(Line("back")));
  }
  void withoutACatalogueItFails() {
    mHost->Show(PLAYER, new Player(mHost.get(), new PlayFileInfo(nullptr, 0, 0)));
    QCOMPARE(Box(), int{PLAY_FAIL});
  }

  // ---- time

  void timeTexts_data() {
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << Line("00:00:00");
    QTest::newRow("59") << 59 << Line("00:00:59");
    QTest::newRow("60") << 60 << Line("00:01:00");
    QTest::newRow("61") << 61 << Line("00:01:01");
    QTest::newRow("75 minutes") << 75 * 60 << Line("00:75:00");
    QTest::newRow("100 minutes") << 100 * 60 + 7 << Line("00:100:07");
  }
  void timeTexts() {
    QFETCH(int, seconds);
    QFETCH(QString, text);
    QCOMPARE(Player::GetRecordTime(seconds), text);
  }
  void positionMovesLabelAndBar_data() {
    QTest::addColumn<int>("ms");
    QTest::addColumn<int>("wait");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::newRow("0") << 0 << -1 << Line("00:00:00") << 0;
    QTest::newRow("1 s") << 1000 << -1 << Line("00:00:01") << 8;
    QTest::newRow("1 ms") << 1 << 999 << Line("00:00:01") << 8;
    QTest::newRow("1001 ms") << 1001 << 999 << Line("00:00:02") << 16;
    QTest::newRow("1999 ms") << 1999 << 1 << Line("00:00:02") << 16;
    QTest::newRow("30 s") << 30000 << -1 << Line("00:00:30") << 240;
    QTest::newRow("59,999 ms") << 59999 << 1 << Line("00:01:00") << 480;
    QTest::newRow("61 s of 60") << 61000 << -1 << Line("00:01:01") << 480;
    QTest::newRow("negative") << -1 << -1 << Line("00:00:00") << 0;
    QTest::newRow("most negative") << INT_MIN << -1 << Line("00:00:00") << 0;
    QTest::newRow("most") << INT_MAX << 353 << Line("00:35791:24") << 480;
  }
  void positionMovesLabelAndBar() {
    QFETCH(int, ms);
    QFETCH(int, wait);
    QFETCH(QString, text);
    QFETCH(int, width);
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    Event(RECV_ZEL_STATUS_PLAY_CUR, ms);
    QCOMPARE(Armed("mTimCurTimeProgress"), wait);
    if (wait >= 0) {
      QCOMPARE(Time(), Line("00:00:00"));  // it turns over at the whole second
      Fire("mTimCurTimeProgress");
      QCOMPARE(Armed("mTimCurTimeProgress"), -1);
    }
    QCOMPARE(Time(), text);
    QCOMPARE(BarWidth(), width);
    QCOMPARE(Label("mProgressBar")->pos(), QPoint(4, 257));
    QCOMPARE(Label("mProgressBar")->height(), 4);
  }
  void withoutADurationTheBarStaysEmpty() {
    card::Put(root, Name(0), 1672574400, QByteArray("no video"));
    Open(ALL_ASCENDING_FRONT, 0);
    Event(RECV_ZEL_STATUS_PLAY_CUR, 30000);
    QCOMPARE(BarWidth(), 0);
    QCOMPARE(Time(), Line("00:00:30"));
    Tap(kBar);
    QCOMPARE(Asked(), QStringList());
  }

  // ---- seek

  void seekTimes_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("duration");
    QTest::addColumn<int>("ms");
    QTest::newRow("left of the bar") << 0 << 60 << -1;
    QTest::newRow("right of the bar") << 480 << 60 << -1;
    QTest::newRow("negative") << -5 << 60 << -1;
    QTest::newRow("no duration") << 240 << 0 << -1;
    QTest::newRow("negative duration") << 240 << -3 << -1;
    QTest::newRow("start") << 1 << 60 << 125;
    QTest::newRow("middle") << 240 << 60 << 30000;
    QTest::newRow("end") << 479 << 60 << 59875;
    QTest::newRow("1 s") << 240 << 1 << 500;
    QTest::newRow("truncated") << 1 << 7 << 14;
    QTest::newRow("longest") << 479 << INT_MAX << INT_MAX;
  }
  void seekTimes() {
    QFETCH(int, x);
    QFETCH(int, duration);
    QFETCH(int, ms);
    QCOMPARE(Player::ProgressIndexToTimeParsing(x, duration), ms);
  }
  void aTouchOfTheBarSeeks_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("bar", QRect(QPoint(4, 201), QPoint(479, 261)));
  }
  void aTouchOfTheBarSeeks() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    Tap(QPoint(x, y));
    const QString seek = QStringLiteral("SEND_SET_SEEK_PLAY %1").arg(x * 125);
    QCOMPARE(Asked(), hit ? QStringList(seek) : QStringList());
    QCOMPARE(IsBarShown(), hit);  // beside every key the controls are hidden
  }

  // ---- keys

  void keysHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("home", QRect(QPoint(5, 4), QPoint(74, 62)));
    for (int key = 0; key < 6; ++key) {
      const QRect area(QPoint(80 * key + 1, 263), QPoint(80 * key + 79, 319));
      for (const QPoint at : {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()})
        QTest::addRow("key %d in %d %d", key, at.x(), at.y()) << at.x() << at.y() << true;
      QTest::addRow("key %d left", key) << area.left() - 1 << 290 << false;
      QTest::addRow("key %d above", key) << area.center().x() << 262 << false;
    }
  }
  void keysHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    Fill(3);
    Open(ALL_ASCENDING_FRONT, 1);
    Tap(QPoint(x, y));
    QCOMPARE(Asked().contains(Line(kClick)), hit);
    if (!hit) QVERIFY(!IsBarShown());
  }
  void anyTouchKeepsTheControls() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    Timer("mTimDispControl")->stop();
    Tap(kPlay);
    QCOMPARE(Armed("mTimDispControl"), 5000);
  }
  void hiddenControlsComeBackAtATouchThatDoesNothingElse() {
    Fill(2);
    Open(ALL_ASCENDING_FRONT, 0);
    Tap(kElsewhere);
    QVERIFY(!IsBarShown());
    QCOMPARE(Armed("mTimDispControl"), -1);
    Tap(kOlder);
    QVERIFY(IsBarShown());
    QCOMPARE(Armed("mTimDispControl"), 5000);
    QCOMPARE(Asked(), QStringList());
  }
  void pauseAndResume() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    Tap(kPlay);
    QCOMPARE(Asked(), (QStringList{Line(kClick), Line("SEND_CONTROL_VIDEO 2")}));
    QVERIFY(IsDrawn({160, 262}, "player/play_normal.bmp"));
    HostFake::Clear();
    Tap(kPlay);
    QCOMPARE(Asked(), (QStringList{Line(kClick), Line("SEND_CONTROL_VIDEO 1")}));
    QVERIFY(IsDrawn({160, 262}, "player/pause_normal.bmp"));
  }
  void backGoesToTheList() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    Tap(kBack);
    QCOMPARE(Asked(), (QStringList{Line(kClick), Line("SEND_CONTROL_VIDEO 0"), Line("back")}));
  }
  void homeGoesToTheMenuAfterItsNotice() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    Tap(kHome);
    QCOMPARE(Asked(), (QStringList{Line(kClick), Line("SEND_CONTROL_VIDEO 0"), Line("SEND_VIDEO_REC_START 0"),
                                   Line("parking timer")}));
    QCOMPARE(Box(), int{VIDEO_REC_START});
    QCOMPARE(Armed("mEventTimer"), 1500);
    HostFake::Clear();
    Tap(kPlay);
    QCOMPARE(Asked(), QStringList());  // the box takes the touches
    Fire("mEventTimer");
    QCOMPARE(Asked(), QStringList(Line("jump MAINMENU")));
    QCOMPARE(TopId(), MAINMENU);
  }
  void previewKeyGoesToThePreviewAfterItsNotice() {
    Fill(1);
    gEnvirnmentSettings.mSetting.time_set_flag = 1;
    gEnvirnmentSettings.AllSetSettingConfig();
    Open(ALL_ASCENDING_FRONT, 0);
    Setting().volume = 77;  // an edit that was not saved
    Tap(kPreview);
    QStringList asked = Asked();
    asked.removeAll(Line("sh sync"));
    QCOMPARE(asked, (QStringList{Line(kClick), Line("SEND_CONTROL_VIDEO 0"), Line("SEND_SET_ENTRY_PREVIEW 0"),
                                 Line("SEND_VIDEO_REC_START 0"), Line("parking timer")}));
    QCOMPARE(Box(), int{VIDEO_REC_START});
    QVERIFY(Setting().volume != 77);
    QCOMPARE(Setting().time_set_flag, 0);
    QCOMPARE(Saved().time_set_flag, 0);
    QCOMPARE(Armed("mEventTimer"), 1500);
    HostFake::Clear();
    Fire("mEventTimer");
    QCOMPARE(Asked(), QStringList(Line("jump PREVIEW")));
    QCOMPARE(TopId(), PREVIEW);
  }

  // A recording that ends or fails while the driver is on his way out does not lead him elsewhere.
  void theWayOutThatWasChosenStays_data() {
    QTest::addColumn<bool>("home");
    QTest::addColumn<int>("status");
    for (const int status : {Player::STATUS_PLAY_ERR, Player::STATUS_PLAY_OPEN_FAIL, Player::STATUS_PLAY_READ_FAIL,
                             Player::STATUS_PLAY_END}) {
      QTest::addRow("home, status %d", status) << true << status;
      QTest::addRow("preview, status %d", status) << false << status;
    }
  }
  void theWayOutThatWasChosenStays() {
    QFETCH(bool, home);
    QFETCH(int, status);
    Fill(2);
    Open(ALL_ASCENDING_FRONT, 1);
    Tap(home ? kHome : kPreview);
    Event(RECV_ZEL_STATUS_PLAY_STATUS, status);
    QCOMPARE(Box(), int{VIDEO_REC_START});
    QCOMPARE(Armed("mEventTimer"), 1500);
    Fire("mEventTimer");
    QCOMPARE(TopId(), home ? MAINMENU : PREVIEW);
  }
  void errorsThatRepeatDoNotKeepTheDriverIn() {
    Fill(2);
    Open(ALL_ASCENDING_FRONT, 0);
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_ERR);
    Timer("mEventTimer")->start(700);  // some time later
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_ERR);
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_END);
    QCOMPARE(Armed("mEventTimer"), 700);
    QCOMPARE(Box(), int{PLAY_FAIL});
    Fire("mEventTimer");
    QCOMPARE(TopId(), RECORDINGLIST);
  }
  // What was told before the recorder had the new file is about the old one.
  void whatIsToldOfTheFileBeforeIsDropped_data() {
    QTest::addColumn<bool>("otherCamera");
    QTest::newRow("the next file") << false;
    QTest::newRow("the other camera's") << true;
  }
  void whatIsToldOfTheFileBeforeIsDropped() {
    QFETCH(bool, otherCamera);
    Fill(2);
    card::PutMany(root, 2, '1');
    Open(ALL_ASCENDING_FRONT, 0);
    mHost->eventTime = Now();  // received, but its turn comes after the step
    Tap(otherCamera ? kCamera : kOlder);
    QVERIFY(Asked().last().startsWith(QStringLiteral("SEND_PLAY_VIDEO")));
    Event(RECV_ZEL_STATUS_PLAY_CUR, 5000);
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_END);
    QCOMPARE(Time(), QStringLiteral("00:00:00"));
    QCOMPARE(Box(), -1);
    mHost->eventTime = Now();
    Event(RECV_ZEL_STATUS_PLAY_CUR, 5000);
    QCOMPARE(Time(), QStringLiteral("00:00:05"));
  }
  // One action at a time.
  void whatIsTouchedWhileAnActionRunsDoesNotCount() {
    Fill(3);
    Open(ALL_ASCENDING_FRONT, 0);
    const qint64 before = Now();
    Tap(kOlder);
    QVERIFY(!IsMeantForTop(before));
    QVERIFY(IsMeantForTop(Now()));
  }

  // ---- the neighbours

  void steppingGoesThroughTheList_data() {
    QTest::addColumn<bool>("descending");
    QTest::newRow("newest first") << false;
    QTest::newRow("oldest first") << true;
  }
  void steppingGoesThroughTheList() {
    QFETCH(bool, descending);
    Fill(4);
    Open(descending ? ALL_DECENDING_FRONT : ALL_ASCENDING_FRONT, descending ? 0 : 3);
    QCOMPARE(mOpening, QStringList(PlayOf(0)));
    for (int minute = 1; minute < 4; ++minute) {
      HostFake::Clear();
      Tap(kElsewhere);
      Tap(kElsewhere);
      Tap(kNewer);
      QCOMPARE(Asked(), (QStringList{Line(kClick), Line("sleep 50000"), Line("SEND_CONTROL_VIDEO 0"), PlayOf(minute)}));
      QCOMPARE(Label("mFileNameLabel")->text(), Name(minute));
      QVERIFY(IsBarShown());
      QCOMPARE(Armed("mTimDispControl"), 5000);
    }
    HostFake::Clear();
    Tap(kNewer);
    QCOMPARE(Asked(), (QStringList{Line(kClick), Line("sleep 50000")}));
    QCOMPARE(Box(), int{NEXT_FILE_PLAY_NOT});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    TopScreen()->TimeoutMessageBoxTimer();
    for (int minute = 2; minute >= 0; --minute) {
      Tap(kOlder);
      QCOMPARE(Asked().last(), PlayOf(minute));
    }
    Tap(kOlder);
    QCOMPARE(Box(), int{PREV_FILE_PLAY_NOT});
    QCOMPARE(Label("mFileNameLabel")->text(), Name(0));
  }
  void steppingSkipsStopMarkers_data() { steppingGoesThroughTheList_data(); }
  void steppingSkipsStopMarkers() {
    QFETCH(bool, descending);
    // Two before the first, two between the two, two after the last.
    Fill(2,
         "20230101_110000 a\n20230101_113000 a\n20230101_120001 a\n20230101_120030 a\n20230101_130000 a\n"
         "20230101_140000 a\n");
    Open(descending ? ALL_DECENDING_FRONT : ALL_ASCENDING_FRONT, descending ? 2 : 5);
    QCOMPARE(mOpening, QStringList(PlayOf(0)));
    Tap(kOlder);
    QCOMPARE(Box(), int{PREV_FILE_PLAY_NOT});
    TopScreen()->TimeoutMessageBoxTimer();
    Tap(kNewer);
    QCOMPARE(Asked().last(), PlayOf(1));
    Tap(kNewer);
    QCOMPARE(Box(), int{NEXT_FILE_PLAY_NOT});
    TopScreen()->TimeoutMessageBoxTimer();
    Tap(kOlder);  // the index has not moved onto the markers
    QCOMPARE(Asked().last(), PlayOf(0));
  }
  void aStepStartsAtZero() {
    Fill(2);
    Open(ALL_ASCENDING_FRONT, 0);
    Event(RECV_ZEL_STATUS_PLAY_CUR, 30500);
    Tap(kPlay);
    Tap(kOlder);
    QCOMPARE(Time(), Line("00:00:00"));
    QCOMPARE(BarWidth(), 0);
    QCOMPARE(Armed("mTimCurTimeProgress"), -1);
    QVERIFY(IsDrawn({160, 262}, "player/pause_normal.bmp"));  // it plays, whatever was paused
  }

  // ---- the end of a recording

  void atTheEndTheNextIsOffered_data() { steppingGoesThroughTheList_data(); }
  void atTheEndTheNextIsOffered() {
    QFETCH(bool, descending);
    Fill(3, "20230101_120030 20230101_120040\n");
    const int first = descending ? 0 : 3;
    Open(descending ? ALL_DECENDING_FRONT : ALL_ASCENDING_FRONT, first);
    Tap(kElsewhere);
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_END);
    QCOMPARE(Box(), int{IS_NEXT_FILE_PLAY});
    QCOMPARE(Armed("mMessageBoxTimer"), -1);
    QVERIFY(IsBarShown());
    Tap(kPlay);
    Tap(QPoint(240, 236));
    QCOMPARE(Asked(), QStringList());
    TapLeftButton();
    QCOMPARE(Asked(), (QStringList{Line("SEND_CONTROL_VIDEO 0"), PlayOf(1)}));
    QCOMPARE(Box(), -1);
    HostFake::Clear();
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_END);
    TapRightButton();
    QCOMPARE(Asked(), QStringList(Line("back")));
    QCOMPARE(TopId(), RECORDINGLIST);
  }
  void afterTheNewestTheListComesBack_data() { steppingGoesThroughTheList_data(); }
  void afterTheNewestTheListComesBack() {
    QFETCH(bool, descending);
    Fill(2, "20230101_130000 20230101_140000\n");  // a marker is no next recording
    Open(descending ? ALL_DECENDING_FRONT : ALL_ASCENDING_FRONT, 1);
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_END);
    QCOMPARE(Box(), int{LIST_PLAY_FINISH});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Armed("mEventTimer"), 2000);
    Fire("mEventTimer");
    QCOMPARE(Asked(), QStringList(Line("back")));
    QCOMPARE(TopId(), RECORDINGLIST);
  }
  void atTheFirstItemTheEndIsTheEnd() {
    Fill(2);
    Open(ALL_ASCENDING_FRONT, 0);
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_END);
    QCOMPARE(Box(), int{LIST_PLAY_FINISH});
  }
  void afterAnErrorTheListComesBack_data() {
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("fails");
    QTest::newRow("no error") << int{Player::STATUS_PLAY_NO_ERR} << false;
    QTest::newRow("error") << int{Player::STATUS_PLAY_ERR} << true;
    QTest::newRow("cannot be opened") << int{Player::STATUS_PLAY_OPEN_FAIL} << true;
    QTest::newRow("cannot be read") << int{Player::STATUS_PLAY_READ_FAIL} << true;
    QTest::newRow("unknown") << 5 << false;
    QTest::newRow("negative") << -1 << false;
  }
  void afterAnErrorTheListComesBack() {
    QFETCH(int, status);
    QFETCH(bool, fails);
    Fill(2);
    Open(ALL_ASCENDING_FRONT, 0);
    Event(RECV_ZEL_STATUS_PLAY_STATUS, status);
    QCOMPARE(Box(), fails ? int{PLAY_FAIL} : -1);
    QCOMPARE(Armed("mEventTimer"), fails ? 2000 : -1);
    if (!fails) return;
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    Fire("mEventTimer");
    QCOMPARE(TopId(), RECORDINGLIST);
  }

  // ---- the other camera

  void theOtherCamerasRecordingOfTheSameTime() {
    Fill(2);
    const qint64 at = QDateTime(QDate(2023, 1, 1), QTime(12, 1)).toSecsSinceEpoch();
    card::Put(root, Name(1, '1'), at, card::Avi(240, 4));
    card::Put(root, Name(0, '1'), at - 60, card::Avi(30));
    Open(ALL_ASCENDING_FRONT, 0);
    Event(RECV_ZEL_STATUS_PLAY_CUR, 30000);
    Tap(kPlay);
    HostFake::Clear();
    Tap(kCamera);
    QCOMPARE(Asked(), (QStringList{Line(kClick), Line("SEND_CONTROL_VIDEO 0"), PlayOf(1, '1')}));
    QCOMPARE(Label("mFileNameLabel")->text(), Name(1, '1'));
    QVERIFY(IsDrawn({400, 262}, "player/camera_rear_normal.bmp"));
    QVERIFY(IsDrawn({160, 262}, "player/pause_normal.bmp"));
    QCOMPARE(Time(), Line("00:00:00"));
    Event(RECV_ZEL_STATUS_PLAY_CUR, 30000);
    QCOMPARE(BarWidth(), 240);  // its own minute
    HostFake::Clear();
    Tap(kCamera);
    QCOMPARE(Asked(), (QStringList{Line(kClick), Line("SEND_CONTROL_VIDEO 0"), PlayOf(1)}));
    QVERIFY(IsDrawn({400, 262}, "player/camera_front_normal.bmp"));
    // Stepping goes on in the list that the driver came from.
    Tap(kCamera);
    Tap(kOlder);
    QCOMPARE(Asked().last(), PlayOf(0));
    QVERIFY(IsDrawn({400, 262}, "player/camera_front_normal.bmp"));
  }
  void withoutTheOtherCamerasFileItPlaysOn_data() {
    QTest::addColumn<int>("list");
    QTest::addColumn<int>("box");
    QTest::newRow("no rear file") << int{ALL_ASCENDING_FRONT} << int{NO_REAR_FILE};
    QTest::newRow("no front file") << int{ALL_ASCENDING_REAR} << int{NO_FRONT_FILE};
  }
  void withoutTheOtherCamerasFileItPlaysOn() {
    QFETCH(int, list);
    QFETCH(int, box);
    card::PutMany(root, 1, list == ALL_ASCENDING_FRONT ? '0' : '1');
    Open(list, 0);
    Tap(kCamera);
    QCOMPARE(Asked(), QStringList(Line(kClick)));
    QCOMPARE(Box(), box);
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    TopScreen()->TimeoutMessageBoxTimer();
    HostFake::Clear();
    Tap(kPlay);
    QCOMPARE(Asked().last(), Line("SEND_CONTROL_VIDEO 2"));  // it was still playing
  }
  void whenTheCardHasGoneNothingCrashes() {
    Fill(3);
    Open(ALL_ASCENDING_FRONT, 1);
    card::Clear(root);
    Tap(kCamera);
    QCOMPARE(Box(), int{NO_REAR_FILE});
    TopScreen()->TimeoutMessageBoxTimer();
    Tap(kOlder);
    QCOMPARE(Asked().last(), PlayOf(0));  // the recorder will say that it is not there
    Event(RECV_ZEL_STATUS_PLAY_STATUS, Player::STATUS_PLAY_OPEN_FAIL);
    QCOMPARE(Box(), int{PLAY_FAIL});
  }

  // ---- boxes and pauses

  void anEventsBoxHoldsTouchesBack() {
    Fill(2);
    Open(ALL_ASCENDING_FRONT, 0);
    TopScreen()->PaintMessageBox(R_MUTE_ON, true, 0, 2000);
    for (const QPoint key : {kHome, kBar, kOlder, kPreview, kPlay, kNewer, kBack, kCamera}) Tap(key);
    QCOMPARE(Asked(), QStringList());
  }
  void aCoveredPlayerHasNoTimers() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    Event(RECV_ZEL_STATUS_PLAY_CUR, 500);
    TopScreen()->onPause();
    QCOMPARE(Armed("mTimDispControl"), -1);
    QCOMPARE(Armed("mTimCurTimeProgress"), -1);
  }
  void anEventThatIsPendingEndsWithThePlayer() {
    Fill(1);
    Open(ALL_ASCENDING_FRONT, 0);
    TopScreen()->SetEvent(4711, 10);
    Fire("mEventTimer");
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(TopId(), PLAYER);
  }
};

QTEST_MAIN(PlayerTest)
#include "player_test.moc"
