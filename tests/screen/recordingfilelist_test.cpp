#include "gui/recordings/recordingfilelist.h"

#include <QPointer>

#include "gui/base/eventgate.h"
#include "gui/recordings/playfileinfo.h"
#include "gui/recordings/recordingfileitem.h"
#include "tests/fake/cardfake.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class RecordingFileListTest : public ScreenTest {
  Q_OBJECT

  void Scan() {
    mHost->catalogue = std::make_unique<RecordingFileManager>();
    mHost->catalogue->ReadFileList(QStringLiteral("/mnt/mmc/"));
  }
  void Open() {
    Scan();
    mHost->Show(RECORDINGLIST, new RecordingFileList(mHost.get()));
    HostFake::Clear();
  }
  void OpenOf(int count) {
    card::PutMany(root, count);
    Open();
  }
  // One recording of every kind and camera, the kinds in the order of the list, and a stop marker.
  void OpenMixed() {
    qint64 at = QDateTime(QDate(2023, 1, 1), QTime(12, 0)).toSecsSinceEpoch();
    for (const char* prefix : {"rec", "pmr", "evt", "ndf"})
      for (const char* camera : {"0", "1"}) {
        const QString time = QDateTime::fromSecsSinceEpoch(at).toString(QStringLiteral("yyyyMMdd_HHmmss"));
        card::Put(root, QLatin1String(prefix) + QLatin1String(camera) + u'_' + time + QStringLiteral(".avi"), at);
        at += 60;
      }
    root.Write(QStringLiteral("/mnt/mmc/Setup/record_stop.info"), "20230101_235900 20230102_070000\n");
    Open();
  }

  static int Page() { return Label("mCurPageNumberLabel")->text().toInt(); }
  static int Pages() { return Label("mAllPageNumberLabel")->text().toInt(); }
  static QStringList Rows() {
    QStringList rows;
    for (const auto* row : TopScreen()->findChildren<RecordingFileItem*>())
      rows << row->findChild<QLabel*>(QStringLiteral("mFileNameLabel"))->text();
    return rows;
  }
  static void TapRow(int row) { Tap(200, 60 + 52 * row + 26); }
  static constexpr QPoint kJumpUp{440, 86}, kUp{440, 138}, kDown{440, 242}, kJumpDown{440, 294};
  static void Tap(QPoint at) {
    ScreenTest::Tap(at.x(), at.y());
    Top<RecordingFileList>()->touchReleaseEvent(true);
  }
  using ScreenTest::Tap;

private slots:
  void init() {
    StartHost();
    card::Clear(root);
  }
  void cleanup() { mHost.reset(); }

  // ---- pages

  void pagesOfAList_data() {
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("pages");
    QTest::addColumn<int>("jump");
    QTest::newRow("0") << 0 << 0 << 2;
    QTest::newRow("1") << 1 << 1 << 2;
    QTest::newRow("5") << 5 << 1 << 2;
    QTest::newRow("6") << 6 << 2 << 2;
    QTest::newRow("95") << 95 << 19 << 2;
    QTest::newRow("96") << 96 << 20 << 4;
    QTest::newRow("100") << 100 << 20 << 4;
    QTest::newRow("145") << 145 << 29 << 4;
    QTest::newRow("146") << 146 << 30 << 6;
    QTest::newRow("250") << 250 << 50 << 10;
    QTest::newRow("251") << 251 << 51 << 10;
  }
  void pagesOfAList() {
    QFETCH(int, items);
    QFETCH(int, pages);
    QFETCH(int, jump);
    OpenOf(items);
    QCOMPARE(Pages(), pages);
    QCOMPARE(Page(), pages > 0 ? 1 : 0);
    // Down by jumps, and each time one page up and down again.
    for (int page = 1; page < pages;) {
      Tap(kJumpDown);
      page = std::min(page + jump, pages);
      QCOMPARE(Page(), page);
      Tap(kUp);
      QCOMPARE(Page(), page - 1);
      Tap(kDown);
      QCOMPARE(Page(), page);
    }
    Tap(kDown);
    Tap(kJumpDown);
    QCOMPARE(Page(), pages);
    for (int page = pages; page > 1;) {
      Tap(kJumpUp);
      page = std::max(page - jump, 1);
      QCOMPARE(Page(), page);
    }
    Tap(kUp);
    Tap(kJumpUp);
    QCOMPARE(Page(), pages > 0 ? 1 : 0);
    QCOMPARE(Asked(), QStringList());  // and all that without a sound
  }
  // A finger that comes and goes while a box is being shown.
  void aReleaseNeverOvertakesItsPress() {
    OpenOf(60);
    TopScreen()->PaintMessageBox(VIDEO_REC_START, false, 0, 2000);
    QPointer<RecordingFileList> list(Top<RecordingFileList>());
    const auto press = [list] { list->Touch(TOUCH_PRESS, 440, 242); };
    QMetaObject::invokeMethod(
        list,
        [list, press] {
          if (gEventGate.Enter(list, press)) press();
        },
        Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        list, [list] { list->touchReleaseEvent(true); }, Qt::QueuedConnection);
    gEventGate.ProcessEvents();
    TopScreen()->DelMessageBox();
    QCOMPARE(Label("mCurPageNumberLabel")->text(), QStringLiteral("1"));
    QTRY_COMPARE(Label("mCurPageNumberLabel")->text(), QStringLiteral("2"));
    QTRY_COMPARE(Armed("mTimLongPress"), -1);
  }
  void theRemainderIsLogged() {
    static QStringList said;
    said.clear();
    card::PutMany(root, 7);
    Scan();
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) { said << line; });
    mHost->Show(RECORDINGLIST, new RecordingFileList(mHost.get()));
    qInstallMessageHandler(before);
    QVERIFY(said.contains(QStringLiteral("remainder = 2")));
    QVERIFY(said.contains(QStringLiteral("mAllPage = 2")));
  }
  void keysAreGreyAtTheirEnd_data() {
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("scrolls");
    QTest::addColumn<bool>("top");
    QTest::addColumn<bool>("end");
    QTest::newRow("empty") << 0 << 0 << true << true;
    QTest::newRow("one page") << 5 << 0 << true << true;
    QTest::newRow("first") << 11 << 0 << true << false;
    QTest::newRow("middle") << 11 << 1 << false << false;
    QTest::newRow("last") << 11 << 2 << false << true;
  }
  void keysAreGreyAtTheirEnd() {
    QFETCH(int, items);
    QFETCH(int, scrolls);
    QFETCH(bool, top);
    QFETCH(bool, end);
    OpenOf(items);
    for (int i = 0; i < scrolls; ++i) Tap(kDown);
    QVERIFY(IsDrawn({400, 60}, top ? "filelist/page_scrollup_dis.bmp" : "filelist/page_scrollup_normal.bmp"));
    QVERIFY(IsDrawn({400, 112}, top ? "filelist/file_scrollup_dis.bmp" : "filelist/file_scrollup_normal.bmp"));
    QVERIFY(IsDrawn({400, 216}, end ? "filelist/file_scrolldown_dis.bmp" : "filelist/file_scrolldown_normal.bmp"));
    QVERIFY(IsDrawn({400, 268}, end ? "filelist/page_scrolldown_dis.bmp" : "filelist/page_scrolldown_normal.bmp"));
    QCOMPARE(Top<RecordingFileList>()->GetIsEndOfListUp(), top);
    QCOMPARE(Top<RecordingFileList>()->GetIsEndOfListDown(), end);
  }
  void scrollKeysHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    QTest::addColumn<int>("page");
    const struct {
      const char* name;
      QRect area;
      int page;
    } keys[] = {{"jump up", QRect(QPoint(401, 61), QPoint(479, 111)), 6},
                {"up", QRect(QPoint(401, 113), QPoint(479, 163)), 9},
                {"down", QRect(QPoint(401, 217), QPoint(479, 267)), 11},
                {"jump down", QRect(QPoint(401, 269), QPoint(479, 319)), 14}};
    for (const auto& key : keys) {
      for (const QPoint at : {key.area.topLeft(), key.area.topRight(), key.area.bottomLeft(), key.area.bottomRight()})
        QTest::addRow("%s %d %d", key.name, at.x(), at.y()) << at.x() << at.y() << true << key.page;
      QTest::addRow("%s left", key.name) << 400 << key.area.center().y() << false << 10;
      QTest::addRow("%s above", key.name) << 440 << key.area.top() - 1 << false << 10;
    }
    for (int y = 164; y <= 216; y += 4) QTest::addRow("numbers %d", y) << 440 << y << false << 10;
  }
  void scrollKeysHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, page);
    OpenOf(125);
    for (int i = 0; i < 9; ++i) Tap(kDown);
    Tap(QPoint(x, y));
    QCOMPARE(Page(), page);
  }
  void rowsShowTheItemsOfThePage() {
    OpenOf(7);
    QCOMPARE(Rows(), (QStringList{QStringLiteral("2023-01-01 12:06:00"), QStringLiteral("2023-01-01 12:05:00"),
                                  QStringLiteral("2023-01-01 12:04:00"), QStringLiteral("2023-01-01 12:03:00"),
                                  QStringLiteral("2023-01-01 12:02:00")}));
    for (int row = 0; row < 5; ++row) QVERIFY(IsDrawn({8, 63 + 52 * row}, "filelist/normal_file_normal.bmp"));
    Tap(kDown);
    QCOMPARE(Rows(),
             (QStringList{QStringLiteral("2023-01-01 12:01:00"), QStringLiteral("2023-01-01 12:00:00"), {}, {}, {}}));
    QVERIFY(IsPlain(QRect(0, 164, 400, 156), kGround));
  }
  void aListThatIsAbsentIsEmpty() {
    mHost->Show(RECORDINGLIST, new RecordingFileList(mHost.get()));  // there is not even a catalogue
    QCOMPARE(Pages(), 0);
    QCOMPARE(Page(), 0);
    for (int row = 0; row < 5; ++row) TapRow(row);
    for (const QPoint key : {kJumpUp, kUp, kDown, kJumpDown}) Tap(key);
    for (int toggle : {150, 265, 355}) Tap(toggle, 30);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Page(), 0);
    QVERIFY(IsPlain(QRect(0, 60, 400, 260), kGround));
  }

  // ---- a key that is held

  void aHeldKeyScrollsOn() {
    OpenOf(125);
    mHost->isTouchReleased = false;
    ScreenTest::Tap(440, 242);
    QCOMPARE(Page(), 2);
    QCOMPARE(Armed("mTimLongPress"), 500);
    for (int page = 3; page <= 10; ++page) {
      QTimerEvent over(Timer("mTimLongPress")->timerId());
      QCoreApplication::sendEvent(Timer("mTimLongPress"), &over);
      QCOMPARE(Page(), page);
      QCOMPARE(Armed("mTimLongPress"), 10);
    }
    // The finger leaves the panel between two steps.
    mHost->isTouchReleased = true;
    QTimerEvent over(Timer("mTimLongPress")->timerId());
    QCoreApplication::sendEvent(Timer("mTimLongPress"), &over);
    QCOMPARE(Page(), 10);
    QCOMPARE(Armed("mTimLongPress"), -1);
  }
  void leavingThePanelEndsTheHold() {
    OpenOf(125);
    mHost->isTouchReleased = false;
    ScreenTest::Tap(440, 242);
    Top<RecordingFileList>()->touchReleaseEvent(false);
    QCOMPARE(Armed("mTimLongPress"), 500);
    Top<RecordingFileList>()->touchReleaseEvent(true);
    QCOMPARE(Armed("mTimLongPress"), -1);
    ScreenTest::Tap(440, 138);
    QCOMPARE(Armed("mTimLongPress"), 500);
  }

  // ---- toggles

  void theCatalogueKnowsTheListThatIsShown() {
    OpenMixed();
    const RecordingFileManager& catalogue = *mHost->catalogue;
    QVERIFY(catalogue.GetCurItem());
    QCOMPARE(catalogue.GetCurItem(), catalogue.GetFileItem(ALL_ASCENDING_FRONT));
    const std::pair<int, int> steps[] = {{265, ALL_ASCENDING_REAR},     // the camera
                                         {355, ALL_DECENDING_REAR},     // the order
                                         {150, NORMAL_DECENDING_REAR},  // the kind
                                         {265, NORMAL_DECENDING_FRONT}};
    for (const auto& [toggle, index] : steps) {
      Tap(toggle, 30);
      QCOMPARE(catalogue.GetCurItem(), catalogue.GetFileItem(index));
    }
  }
  void kindToggleGoesRound() {
    OpenMixed();
    const char* const pictures[] = {"filelist/title_entire_normal.bmp", "filelist/title_normal_normal.bmp",
                                    "filelist/title_parking_normal.bmp", "filelist/title_event_normal.bmp",
                                    "filelist/title_ndf_normal.bmp"};
    const char* const icons[] = {"filelist/rec_file_stop_normal.bmp", "filelist/normal_file_normal.bmp",
                                 "filelist/parking_file_normal.bmp", "filelist/event_file_normal.bmp",
                                 "filelist/ndf_file_normal.bmp"};
    for (int kind = 0; kind < 6; ++kind) {
      QVERIFY2(IsDrawn({80, 0}, pictures[kind % 5]), pictures[kind % 5]);
      QVERIFY2(IsDrawn({8, 63}, icons[kind % 5]), icons[kind % 5]);
      QCOMPARE(Rows().filter(QStringLiteral("2023")).size(), kind % 5 == 0 ? 5 : 1);
      Tap(150, 30);
    }
  }
  void cameraAndOrderToggles() {
    OpenMixed();
    QVERIFY(IsDrawn({220, 0}, "filelist/front_file_normal.bmp"));
    QVERIFY(IsDrawn({310, 0}, "filelist/ascending_order_normal.bmp"));
    QCOMPARE(Rows().at(1), QStringLiteral("2023-01-01 12:06:00"));  // the newest of the front, below the marker
    Tap(265, 30);
    QVERIFY(IsDrawn({220, 0}, "filelist/rear_file_normal.bmp"));
    QCOMPARE(Rows().at(1), QStringLiteral("2023-01-01 12:07:00"));
    Tap(355, 30);
    QVERIFY(IsDrawn({310, 0}, "filelist/descending_order_normal.bmp"));
    QCOMPARE(Rows().at(0), QStringLiteral("2023-01-01 12:01:00"));
    Tap(265, 30);
    QCOMPARE(Rows().at(0), QStringLiteral("2023-01-01 12:00:00"));
    Tap(355, 30);
    QCOMPARE(Rows().at(1), QStringLiteral("2023-01-01 12:06:00"));
    QCOMPARE(Asked(), QStringList());
  }
  void aToggleStartsOnTheFirstPage() {
    OpenOf(30);
    Tap(kJumpDown);
    Tap(355, 30);
    QCOMPARE(Page(), 1);
    QCOMPARE(Rows().at(0), QStringLiteral("2023-01-01 12:00:00"));
  }
  void headerKeysHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    QTest::addColumn<QPoint>("place");
    QTest::addColumn<QString>("after");
    const struct {
      QRect area;
      QPoint place;
      const char* after;
    } keys[] = {{QRect(QPoint(81, 1), QPoint(219, 59)), {80, 0}, "filelist/title_normal_normal.bmp"},
                {QRect(QPoint(221, 1), QPoint(309, 59)), {220, 0}, "filelist/rear_file_normal.bmp"},
                {QRect(QPoint(311, 1), QPoint(399, 59)), {310, 0}, "filelist/descending_order_normal.bmp"}};
    for (const auto& key : keys) {
      const QRect& a = key.area;
      for (const QPoint at : {a.topLeft(), a.topRight(), a.bottomLeft(), a.bottomRight()})
        QTest::addRow("in %d %d", at.x(), at.y()) << at.x() << at.y() << true << key.place << QString(key.after);
      for (const QPoint at :
           {QPoint(a.left() - 1, 30), QPoint(a.right() + 1, 30), QPoint(a.center().x(), 0), QPoint(a.center().x(), 60)})
        QTest::addRow("out %d %d of %d", at.x(), at.y(), a.left())
            << at.x() << at.y() << false << key.place << QString(key.after);
    }
  }
  void headerKeysHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    QFETCH(QPoint, place);
    QFETCH(QString, after);
    OpenOf(3);
    Tap(x, y);
    QCOMPARE(IsDrawn(place, after), hit);
  }

  // ---- rows

  void textOfARow_data() {
    QTest::addColumn<bool>("marker");
    QTest::addColumn<QString>("end");
    QTest::addColumn<QString>("text");
    QTest::newRow("recording") << false << QString() << QStringLiteral("2023-01-01 12:34:56");
    QTest::newRow("marker") << true << QStringLiteral("20230101_130000")
                            << QStringLiteral("2023-01-01 12:34:56~13:00:00");
    QTest::newRow("marker without an end") << true << QString() << QStringLiteral("2023-01-01 12:34:56~");
    QTest::newRow("marker without a time")
        << true << QStringLiteral("20230101") << QStringLiteral("2023-01-01 12:34:56~");
    QTest::newRow("marker with a short time")
        << true << QStringLiteral("20230101_1300") << QStringLiteral("2023-01-01 12:34:56~13:00");
    QTest::newRow("markup") << true << QStringLiteral("1_<h1>a</h1>")
                            << QStringLiteral("2023-01-01 12:34:56~<h:1>:a</h1>");
  }
  void textOfARow() {
    QFETCH(bool, marker);
    QFETCH(QString, end);
    QFETCH(QString, text);
    FileItem item;
    item.fileName = QStringLiteral("2023-01-01 12:34:56");
    item.recStopFlag = marker;
    item.recStopData = end;
    QCOMPARE(RecordingFileItem::SettingListFileName(item), text);
  }
  void textIsNeverLaidOutAsMarkup() {
    OpenOf(1);
    for (const QLabel* label : TopScreen()->findChildren<QLabel*>()) QCOMPARE(label->textFormat(), Qt::PlainText);
  }
  void theLongestTextFitsItsRow() {
    OpenMixed();
    const QLabel* label = Label("mFileNameLabel");
    QCOMPARE(label->text(), QStringLiteral("2023-01-01 23:59:00~07:00:00"));
    QVERIFY(QFontMetrics(label->font()).horizontalAdvance(label->text()) <= label->width());
  }
  void aRowKeepsItsItemWhenTheListHasGone() {
    OpenOf(2);
    mHost->catalogue.reset();
    QVERIFY(IsDrawn({8, 63}, "filelist/normal_file_normal.bmp"));
  }
  void aRowPlays_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("row");
    for (int row = 0; row < 5; ++row) {
      const int top = 61 + 52 * row;
      for (const QPoint at : {QPoint(1, top), QPoint(399, top), QPoint(1, top + 50), QPoint(399, top + 50)})
        QTest::addRow("row %d at %d %d", row, at.x(), at.y()) << at.x() << at.y() << row;
      QTest::addRow("line above row %d", row) << 200 << top - 1 << -1;
      QTest::addRow("left of row %d", row) << 0 << top + 20 << -1;
      QTest::addRow("right of row %d", row) << 400 << top + 20 << -1;
    }
  }
  void aRowPlays() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, row);
    OpenOf(12);
    Tap(kDown);
    HostFake::Clear();
    Tap(x, y);
    if (row < 0) {
      QVERIFY(!Asked().contains(QStringLiteral("next PLAYER")));
      return;
    }
    QCOMPARE(Asked(),
             (QStringList{QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &"), QStringLiteral("next PLAYER")}));
    const auto* what = qobject_cast<PlayFileInfo*>(mHost->nextArg);
    QVERIFY(what);
    QCOMPARE(what->GetListIndex(), int{ALL_ASCENDING_FRONT});
    QCOMPARE(what->GetFileIndex(), 5 + row);
    delete what;
  }
  void theChosenListIsPlayed() {
    OpenMixed();
    Tap(150, 30);  // normal
    Tap(265, 30);  // rear
    Tap(355, 30);  // the oldest first
    TapRow(0);
    const auto* what = qobject_cast<PlayFileInfo*>(mHost->nextArg);
    QVERIFY(what);
    QCOMPARE(what->GetListIndex(), int{NORMAL_DECENDING_REAR});
    QCOMPARE(what->GetFileIndex(), 0);
    delete what;
  }
  void anEmptyRowAndAStopMarkerDoNotPlay() {
    OpenMixed();
    TapRow(0);
    QVERIFY(Rows().at(0).contains(u'~'));
    Tap(150, 30);
    for (int row = 1; row < 5; ++row) TapRow(row);
    QCOMPARE(Asked(), QStringList());
  }

  // ---- leaving

  void backGoesBackToRecording() {
    OpenOf(1);
    int box = -1;
    Fake().meanwhile = [&box](const QString& line) {
      if (line.startsWith(QLatin1String("SEND_VIDEO_REC_START"))) box = Box();
    };
    Tap(440, 30);
    Fake().meanwhile = nullptr;
    QCOMPARE(box, int{VIDEO_REC_START});
    QCOMPARE(Asked(), (QStringList{QStringLiteral("SEND_VIDEO_REC_START 0"), QStringLiteral("parking timer"),
                                   QStringLiteral("back")}));
  }
  void homeWithoutAChange() {
    OpenOf(1);
    Setting().time_set_flag = Saved().time_set_flag = 1;
    int box = -1;
    Fake().meanwhile = [&box](const QString& line) {
      if (line.startsWith(QLatin1String("SEND_VIDEO_REC_START"))) box = Box();
    };
    Tap(40, 30);
    Fake().meanwhile = nullptr;
    QCOMPARE(box, int{VIDEO_REC_START});
    QCOMPARE(Asked(), (QStringList{QStringLiteral("SEND_VIDEO_REC_START 0"), QStringLiteral("parking timer"),
                                   QStringLiteral("jump PREVIEW")}));
    QCOMPARE(Setting().time_set_flag, 0);
    QCOMPARE(Saved().time_set_flag, 0);
  }
  void homeSavesWhatWasChanged() {
    OpenOf(1);
    Setting().motion_lvl = 1 - Saved().motion_lvl;
    int box = -1;
    Fake().meanwhile = [&box](const QString& line) {
      if (line.startsWith(QLatin1String("SEND_SETTING_COMPLETE"))) box = Box();
    };
    Tap(40, 30);
    Fake().meanwhile = nullptr;
    QCOMPARE(box, int{SETUP_SAVING});
    QStringList asked = Asked();
    asked.removeAll(QStringLiteral("sh sync"));
    QCOMPARE(asked, (QStringList{QStringLiteral("SEND_SETTING_COMPLETE 0"), QStringLiteral("SEND_VIDEO_REC_START 0"),
                                 QStringLiteral("parking timer"), QStringLiteral("jump PREVIEW")}));
    QCOMPARE(Saved().motion_lvl, 1);
  }
  void homeAsksBeforeAFormat_data() {
    QTest::addColumn<bool>("resolution");
    QTest::addColumn<bool>("fps");
    QTest::addColumn<int>("box");
    QTest::addColumn<int>("format");
    QTest::newRow("resolution") << true << false << int{RESOLUTION_SETTING_CHANGE_NEED_FORMAT} << 1;
    QTest::newRow("frame rate") << false << true << int{FRAME_SETTING_CHANGE_NEED_FORMAT} << 2;
    QTest::newRow("both") << true << true << int{RES_FRAME_SETTING_CHANGE_NEED_FORMAT} << 3;
  }
  void homeAsksBeforeAFormat() {
    QFETCH(bool, resolution);
    QFETCH(bool, fps);
    QFETCH(int, box);
    QFETCH(int, format);
    OpenOf(1);
    Setting().resolution += resolution;
    Setting().fps += fps;
    Tap(40, 30);
    QCOMPARE(Box(), box);
    QCOMPARE(Asked(), QStringList());
    Tap(40, 30);  // the keys below are covered
    TapRow(0);
    QCOMPARE(Box(), box);
    TapRightButton();
    QCOMPARE(Box(), -1);
    QCOMPARE(Asked(), QStringList());
    Tap(40, 30);
    TapLeftButton();
    QCOMPARE(Asked(), (QStringList{QStringLiteral("no parking timer"),
                                   QStringLiteral("SEND_SET_SYSTEM_SD_FORMAT %1").arg(format),
                                   QStringLiteral("next SDFORMAT")}));
    QCOMPARE(Box(), -1);
  }
  void anEventsBoxHoldsTouchesBack() {
    OpenOf(12);
    TopScreen()->PaintMessageBox(R_MUTE_ON, true, 0, 2000);
    Tap(kDown);
    TapRow(0);
    Tap(40, 30);
    QCOMPARE(Page(), 1);
    QCOMPARE(Asked(), QStringList());
  }
};

QTEST_MAIN(RecordingFileListTest)
#include "recordingfilelist_test.moc"
