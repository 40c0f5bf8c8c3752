// What the menus share, and what each tile of theirs does.
#include "gui/app/screenfactory.h"
#include "gui/base/eventgate.h"
#include "gui/setup/blackboxmanagement.h"
#include "gui/setup/mainmenu.h"
#include "gui/setup/mainmenu2.h"
#include "gui/setup/sdmanagement.h"
#include "tests/fake/boxwatch.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class MenusTest : public ScreenTest {
  Q_OBJECT

  struct TileRow {
    WidgetId menu;
    int row, column;
    const char* picture;
    const char* asked;  // of the window; several lines are separated by "; "
    int box;            // -1: none
  };
  // clang-format off
  static constexpr TileRow kTiles[] = {
      {MAINMENU, 1, 1, "mainmenu/play_list_normal.bmp", "", ENTRY_FILELIST},
      {MAINMENU, 1, 2, "mainmenu/filedelete_setting_normal.bmp", "next FILEDELMETHOD", -1},
      {MAINMENU, 1, 3, "mainmenu/sd_management_normal.bmp", "next SDMANAGEMENT", -1},
      {MAINMENU, 2, 1, "mainmenu/driving_setting_normal.bmp", "next DRIVINGSETTING", -1},
      {MAINMENU, 2, 2, "mainmenu/parking_setting_normal.bmp", "next PARKINGSETTING", -1},
      {MAINMENU, 2, 3, "mainmenu/black box_management_normal.bmp", "next BLACKBOXMANAGEMENT", -1},
      {MAINMENU2, 1, 1, "mainmenu2/audio_setting_normal.bmp", "next AUDIOSETTING", -1},
      {MAINMENU2, 1, 2, "mainmenu2/filedelete_setting_normal.bmp", "next FILEDELMETHOD", -1},
      {MAINMENU2, 1, 3, "mainmenu2/time_setting_normal.bmp", "next TIMELAYOUT", -1},
      {MAINMENU2, 2, 1, "mainmenu2/touch_compensation_normal.bmp", "no parking timer; next TOUCHCOMP", -1},
      {MAINMENU2, 2, 2, "mainmenu2/motion_setting_normal.bmp", "", MOTION_SETTING_ENTRY},
      {MAINMENU2, 2, 3, "mainmenu2/voltage_compensation_dis.bmp", "", -1},
      {BLACKBOXMANAGEMENT, 1, 1, "blackboxmanagement/lcd_setting_normal.bmp", "next LCDSETTING", -1},
      {BLACKBOXMANAGEMENT, 1, 2, "blackboxmanagement/led_setting_normal.bmp", "next FRONTLED", -1},
      {BLACKBOXMANAGEMENT, 1, 3, "blackboxmanagement/time_setting_normal.bmp", "next TIMELAYOUT", -1},
      {BLACKBOXMANAGEMENT, 2, 1, "blackboxmanagement/touch_compensation_normal.bmp", "no parking timer; next TOUCHCOMP", -1},
      {BLACKBOXMANAGEMENT, 2, 2, "blackboxmanagement/audio_setting_normal.bmp", "next AUDIOSETTING", -1},
      {BLACKBOXMANAGEMENT, 2, 3, "blackboxmanagement/initialize_normal.bmp", "", USER_DATA_INIT},
      {SDMANAGEMENT, 1, 1, "sdmanagement/sd_format_nomal_2.bmp", "", SD_FORMAT_CONFIRM},
      {SDMANAGEMENT, 1, 2, "sdmanagement/sd_check_nomal_2.bmp", "", SD_CARD_CHECK_MSG},
  };
  // clang-format on
  struct Menu {
    WidgetId id;
    const char* title;
  };
  static constexpr Menu kMenus[] = {{MAINMENU, "mainmenu/title.bmp"},
                                    {MAINMENU2, "mainmenu2/title.bmp"},
                                    {BLACKBOXMANAGEMENT, "blackboxmanagement/title.bmp"},
                                    {SDMANAGEMENT, "sdmanagement/title.bmp"}};

  static QRect PictureOf(int row, int column) { return {160 * (column - 1), 60 + 130 * (row - 1), 160, 130}; }

  void Open(WidgetId menu) {
    for (const ScreenRow& row : Screens())
      if (row.id == menu) mHost->Show(menu, row.make(mHost.get(), nullptr));
    HostFake::Clear();
  }
  static void AddMenus() {
    QTest::addColumn<int>("menu");
    for (const Menu& menu : kMenus) QTest::newRow(NameOf(menu.id)) << int(menu.id);
  }
  void AddTiles() {
    QTest::addColumn<int>("tile");
    for (size_t i = 0; i < std::size(kTiles); ++i)
      QTest::addRow("%s %d,%d", NameOf(kTiles[i].menu), kTiles[i].row, kTiles[i].column) << int(i);
  }

private slots:
  void init() {
    StartHost();
    root.Remove(QStringLiteral("/mnt/mmc/Setup/.format_time"));
  }
  void cleanup() { mHost.reset(); }

  // ---- header and grid

  void headerAndTitleAreDrawn_data() { AddMenus(); }
  void headerAndTitleAreDrawn() {
    QFETCH(int, menu);
    Open(WidgetId(menu));
    QVERIFY(IsDrawn({0, 0}, "common/home_normal.bmp"));
    const auto row = std::find_if(std::begin(kMenus), std::end(kMenus), [menu](const Menu& m) { return m.id == menu; });
    const QImage title = Picture(QLatin1String(row->title)).toImage().convertToFormat(QImage::Format_RGB32);
    const QRect left(0, 0, 200, 60);  // the version stands on the rest
    QCOMPARE(Seen(left.translated(80, 0)), title.copy(left));
    QCOMPARE(IsDrawn({400, 0}, "common/back_normal.bmp"), menu != MAINMENU);
  }
  void homeLeavesForThePreview_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("home", QRect(QPoint(1, 1), QPoint(79, 59)));
  }
  void homeLeavesForThePreview() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    for (const auto& [menu, title] : kMenus) {
      Open(menu);
      Tap(x, y);
      QCOMPARE(Asked(), hit ? QStringList(QStringLiteral("jump PREVIEW")) : QStringList());
      if (!hit) mHost->BackPressed();
    }
  }
  void backGoesBackButOnTheFirstMenu_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("back", QRect(QPoint(401, 1), QPoint(479, 59)));
  }
  void backGoesBackButOnTheFirstMenu() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    for (const auto& [menu, title] : kMenus) {
      Open(menu);
      Tap(x, y);
      QCOMPARE(Asked(), hit && menu != MAINMENU ? QStringList(QStringLiteral("back")) : QStringList());
      if (!hit || menu == MAINMENU) mHost->BackPressed();
    }
  }
  void linesBetweenTheTilesAreInert_data() { AddMenus(); }
  void linesBetweenTheTilesAreInert() {
    QFETCH(int, menu);
    Open(WidgetId(menu));
    for (const int x : {0, 160, 320})
      for (int y = 61; y < 320; ++y) Tap(x, y);
    for (const int y : {0, 60, 190})
      for (int x = 0; x < 480; ++x) Tap(x, y);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Box(), -1);
  }
  void aPlaceWithoutATileIsInert_data() { AddMenus(); }
  void aPlaceWithoutATileIsInert() {
    QFETCH(int, menu);
    Open(WidgetId(menu));
    QList<QRect> free;
    for (const int row : {1, 2})
      for (const int column : {1, 2, 3}) free << PictureOf(row, column);
    for (const TileRow& tile : kTiles)
      if (tile.menu == menu) free.removeOne(PictureOf(tile.row, tile.column));
    for (QLabel* label : TopScreen()->findChildren<QLabel*>()) label->hide();  // a text of its own may stand there
    for (const QRect& place : free) {
      Tap(place.center().x(), place.center().y());
      QCOMPARE(Box(), -1);
      QVERIFY(IsPlain(place, kGround));
    }
    QCOMPARE(Asked(), QStringList());
  }

  // ---- the tiles

  void tileIsDrawnInItsPlace_data() { AddTiles(); }
  void tileIsDrawnInItsPlace() {
    QFETCH(int, tile);
    const TileRow& row = kTiles[tile];
    Open(row.menu);
    QVERIFY(IsDrawn(PictureOf(row.row, row.column).topLeft(), row.picture));
  }
  void tileDoesWhatItSays_data() {
    QTest::addColumn<int>("tile");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    for (size_t i = 0; i < std::size(kTiles); ++i) {
      const TileRow& row = kTiles[i];
      const QRect area = PictureOf(row.row, row.column).adjusted(1, 1, 0, 0);
      for (const QPoint at : {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight(), area.center()})
        QTest::addRow("%s %d,%d at %d %d", NameOf(row.menu), row.row, row.column, at.x(), at.y())
            << int(i) << at.x() << at.y();
    }
  }
  void tileDoesWhatItSays() {
    QFETCH(int, tile);
    QFETCH(int, x);
    QFETCH(int, y);
    const TileRow& row = kTiles[tile];
    Open(row.menu);
    Tap(x, y);
    QCOMPARE(Asked().join(QStringLiteral("; ")), QLatin1String(row.asked));
    QCOMPARE(Box(), row.box);
    if (row.box >= 0) QCOMPARE(Armed("mMessageBoxTimer"), -1);  // it stays until it is answered
  }
  void tileIsInertWhileABoxIsUp_data() { AddTiles(); }
  void tileIsInertWhileABoxIsUp() {
    QFETCH(int, tile);
    const QPoint at = PictureOf(kTiles[tile].row, kTiles[tile].column).topLeft() + QPoint(2, 2);
    Open(kTiles[tile].menu);
    TopScreen()->PaintMessageBox(VIDEO_REC_STOP, false, 0, 0);
    Tap(at.x(), at.y());
    QCOMPARE(Box(), int{VIDEO_REC_STOP});
    TopScreen()->DelMessageBox();
    TopScreen()->PaintMessageBox(R_MUTE_ON, true, 0, 2000);
    Tap(at.x(), at.y());
    QCOMPARE(Box(), -1);
    QCOMPARE(Asked(), QStringList());
  }
  void theRightButtonClosesAQuestionAndNothingElseDoes_data() {
    QTest::addColumn<int>("tile");
    for (size_t i = 0; i < std::size(kTiles); ++i)
      if (kTiles[i].box >= 0 && kTiles[i].box != MOTION_SETTING_ENTRY)
        QTest::addRow("%s %d,%d", NameOf(kTiles[i].menu), kTiles[i].row, kTiles[i].column) << int(i);
  }
  void theRightButtonClosesAQuestionAndNothingElseDoes() {
    QFETCH(int, tile);
    Open(kTiles[tile].menu);
    const QPoint at = PictureOf(kTiles[tile].row, kTiles[tile].column).center();
    Tap(at.x(), at.y());
    for (const QPoint beside : {QPoint(55, 236), QPoint(230, 236), QPoint(250, 236), QPoint(425, 236), QPoint(140, 213),
                                QPoint(140, 260), QPoint(340, 213), QPoint(340, 260)}) {
      Tap(beside.x(), beside.y());
      QCOMPARE(Box(), kTiles[tile].box);
    }
    Tap(251, 214);
    QCOMPARE(Box(), -1);
    QCOMPARE(Asked(), QStringList());
  }

  // ---- the first menu

  void versionIsThatOfTheSettings_data() {
    QTest::addColumn<int>("menu");
    QTest::newRow("MAINMENU") << int(MAINMENU);
    QTest::newRow("MAINMENU2") << int(MAINMENU2);
  }
  void versionIsThatOfTheSettings() {
    QFETCH(int, menu);
    Setting().major_ver = 1;
    Setting().minor_ver = 20;
    Setting().minor_ver2 = 3;
    Open(WidgetId(menu));
    QCOMPARE(Label("mFwVerLabel")->text(), QStringLiteral("FW Ver.1.20.3"));
    QCOMPARE(Label("mFwVerLabel")->geometry(), QRect(305, 41, 80, 13));
    QCOMPARE(Label("mFwVerLabel")->palette().color(QPalette::WindowText), QColor(177, 177, 177));
    QVERIFY(QFontMetrics(Label("mFwVerLabel")->font()).horizontalAdvance(Label("mFwVerLabel")->text()) <= 80);
  }
  void aLongVersionIsWhole_data() {
    QTest::addColumn<QList<int>>("version");
    QTest::addColumn<int>("px");
    QTest::newRow("1.2.3") << QList<int>{1, 2, 3} << 11;
    QTest::newRow("10.10.10") << QList<int>{10, 10, 10} << 11;  // narrower
    QTest::newRow("99.99.99") << QList<int>{99, 99, 99} << 11;
    QTest::newRow("100.100.10") << QList<int>{100, 100, 10} << 10;  // and smaller
    QTest::newRow("255.255.255") << QList<int>{255, 255, 255} << 9;
  }
  void aLongVersionIsWhole() {
    QFETCH(QList<int>, version);
    QFETCH(int, px);
    Setting().major_ver = version[0];
    Setting().minor_ver = version[1];
    Setting().minor_ver2 = version[2];
    const auto ink = [](QLabel* label) {  // where its letters are
      QImage seen(label->size(), QImage::Format_RGB32);
      seen.fill(Qt::black);
      label->render(&seen, {}, {}, QWidget::DrawChildren);
      QRect found;
      for (int y = 0; y < seen.height(); ++y)
        for (int x = 0; x < seen.width(); ++x)
          if (qGray(seen.pixel(x, y)) > 90) found |= QRect(x, y, 1, 1);
      return found;
    };
    for (const WidgetId menu : {MAINMENU, MAINMENU2}) {
      Open(menu);
      QLabel* label = Label("mFwVerLabel");
      QCOMPARE(label->text(), QString::asprintf("FW Ver.%d.%d.%d", version[0], version[1], version[2]));
      QCOMPARE(label->font().pixelSize(), px);
      QVERIFY(label->font().stretch() == QFont::AnyStretch || label->font().stretch() >= 88);
      const QRect shown = ink(label);
      label->resize(300, 40);
      QVERIFY(shown.width() > 40);
      QCOMPARE(shown.size(), ink(label).size());
    }
  }
  void daysSinceTheFormat_data() {
    QTest::addColumn<QDateTime>("then");
    QTest::addColumn<int>("days");
    const QDateTime now(QDate(2026, 5, 8), QTime(13, 0));
    QTest::newRow("2 hours ago") << now.addSecs(-2 * 3600) << 0;
    QTest::newRow("just after midnight") << QDateTime(QDate(2026, 5, 8), QTime(0, 0)) << 0;
    QTest::newRow("just before midnight") << QDateTime(QDate(2026, 5, 7), QTime(23, 59, 59)) << 1;
    QTest::newRow("23 hours ago") << now.addSecs(-23 * 3600) << 1;
    QTest::newRow("30 hours ago") << now.addSecs(-30 * 3600) << 1;
    QTest::newRow("47 hours ago") << now.addSecs(-47 * 3600) << 1;
    QTest::newRow("48 hours ago") << now.addSecs(-48 * 3600) << 2;
    QTest::newRow("12 days ago") << now.addDays(-12) << 12;
    QTest::newRow("in an hour") << now.addSecs(3600) << 0;
    QTest::newRow("tomorrow") << now.addDays(1) << 1;  // a clock that was set back
  }
  void daysSinceTheFormat() {
    QFETCH(QDateTime, then);
    QFETCH(int, days);
    const QDateTime now(QDate(2026, 5, 8), QTime(13, 0));
    QCOMPARE(MainMenu::DaysBetween(then.toSecsSinceEpoch(), now.toSecsSinceEpoch()), days);
  }
  void withoutADayFileNoDayIsShown() {
    Open(MAINMENU);
    QCOMPARE(MainMenu::GetSinceDayOfSdFormat(), -1);
    QCOMPARE(Label("mSdFormatDayLabel")->text(), QString());
  }
  void theDaysAreShownWheneverTheMenuComesBack() {
    Open(MAINMENU);
    root.Write(QStringLiteral("/mnt/mmc/Setup/.format_time"), QByteArray());
    mHost->Show(SDMANAGEMENT, new SdManagement(mHost.get()));
    gClock = [] { return QDateTime::currentDateTime().addDays(12); };
    mHost->BackPressed();
    QCOMPARE(Label("mSdFormatDayLabel")->text(), QStringLiteral("포맷 후 12일"));
    QCOMPARE(Label("mSdFormatDayLabel")->geometry(), QRect(320, 70, 158, 43));
    // The day of the format leaves it as it is.
    gClock = QDateTime::currentDateTime;
    mHost->Show(SDMANAGEMENT, new SdManagement(mHost.get()));
    mHost->BackPressed();
    QCOMPARE(Label("mSdFormatDayLabel")->text(), QStringLiteral("포맷 후 12일"));
  }
  void onTheDayOfTheFormatTheLabelIsEmpty() {
    root.Write(QStringLiteral("/mnt/mmc/Setup/.format_time"), QByteArray("whatever"));
    Open(MAINMENU);
    QCOMPARE(MainMenu::GetSinceDayOfSdFormat(), 0);
    QCOMPARE(Label("mSdFormatDayLabel")->text(), QString());
  }
  void theListStopsRecordingWaitsAndReadsTheCard() {
    root.Write(QStringLiteral("/mnt/mmc/rec0_20230101_123456.avi"), QByteArray(100, 'x'));
    Open(MAINMENU);
    Tap(80, 125);
    bool loading = false;
    Fake().meanwhile = [&](const QString& line) {
      if (line == QLatin1String("sleep 1000000")) loading = Box() == LOADING_FILELIST;
    };
    TapLeftButton();
    Fake().meanwhile = nullptr;
    QVERIFY(loading);
    QCOMPARE(Asked(), (QStringList{QStringLiteral("no parking timer"), QStringLiteral("SEND_VIDEO_REC_STOP 1"),
                                   QStringLiteral("sleep 1000000"), QStringLiteral("next RECORDINGLIST")}));
    QCOMPARE(Box(), -1);
    QVERIFY(mHost->catalogue);
    QVERIFY(mHost->catalogue->GetFileItem(ALL_ASCENDING_FRONT));
    QCOMPARE(mHost->catalogue->GetFileItem(ALL_ASCENDING_FRONT)->size(), 1);
    root.Remove(QStringLiteral("/mnt/mmc/rec0_20230101_123456.avi"));
  }
  void theListIsReadAnewEachTime() {
    Open(MAINMENU);
    Tap(80, 125);
    TapLeftButton();
    QVERIFY(!mHost->catalogue->GetFileItem(ALL_ASCENDING_FRONT));
    root.Write(QStringLiteral("/mnt/mmc/rec0_20230101_123456.avi"), QByteArray());
    Tap(80, 125);
    TapLeftButton();
    QVERIFY(mHost->catalogue->GetFileItem(ALL_ASCENDING_FRONT));
    root.Remove(QStringLiteral("/mnt/mmc/rec0_20230101_123456.avi"));
  }

  // ---- the second menu

  void theFrontCamerasAreas() {
    Open(MAINMENU2);
    Tap(240, 255);
    TapLeftButton();
    QCOMPARE(Asked(),
             (QStringList{QStringLiteral("SEND_SWITCH_DISP_FOR_MOTION 1"), QStringLiteral("next MOTIONSETTING")}));
    QCOMPARE(Box(), -1);
    QCOMPARE(Setting().display, 1);
  }
  void theRearCamerasAreas() {
    Open(MAINMENU2);
    Tap(240, 255);
    TapRightButton();
    QCOMPARE(Asked(),
             (QStringList{QStringLiteral("SEND_SWITCH_DISP_FOR_MOTION 2"), QStringLiteral("next MOTIONSETTING")}));
    QCOMPARE(Setting().display, 2);
  }
  void theRearCamerasAreasNeedARearCamera() {
    gCountOfCamera = 1;
    Open(MAINMENU2);
    Tap(240, 255);
    TapRightButton();
    QCOMPARE(Asked(), QStringList(QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &")));
    QCOMPARE(Box(), int{MOTION_SETTING_ENTRY_NOT_REAR});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Setting().display, 0);
  }
  void theRefusalTakesThePlaceOfTheQuestion_data() {
    QTest::addColumn<int>("cameras");
    QTest::addColumn<int>("refusal");
    QTest::newRow("no rear camera") << 1 << int{MOTION_SETTING_ENTRY_NOT_REAR};
    QTest::newRow("it is off") << 2 << int{REAR_CAM_POWER_OFF_MSG};
  }
  void theRefusalTakesThePlaceOfTheQuestion() {
    QFETCH(int, cameras);
    QFETCH(int, refusal);
    gCountOfCamera = cameras;
    Setting().rear_cam_power = 0;
    mHost->isParking = true;
    Open(MAINMENU2);
    Tap(240, 255);
    QCoreApplication::processEvents();
    const BoxWatch watch;
    TapRightButton();
    QCOMPARE(Box(), refusal);
    QCOMPARE(watch.bare, 0);
  }
  void theRearCameraIsOffWhileParked_data() {
    QTest::addColumn<int>("power");
    QTest::addColumn<bool>("parked");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("refused");
    QTest::newRow("off, parked") << 0 << true << 1 << true;
    QTest::newRow("off, driving") << 0 << false << 1 << false;
    QTest::newRow("off, parked without parking mode") << 0 << true << 0 << false;
    QTest::newRow("on, parked") << 1 << true << 1 << false;
  }
  void theRearCameraIsOffWhileParked() {
    QFETCH(int, power);
    QFETCH(bool, parked);
    QFETCH(int, mode);
    QFETCH(bool, refused);
    Setting().rear_cam_power = power;
    Setting().parking_mode_on = mode;
    mHost->isParking = parked;
    Open(MAINMENU2);
    Tap(240, 255);
    TapRightButton();
    QCOMPARE(Box(), refused ? int{REAR_CAM_POWER_OFF_MSG} : -1);
    QCOMPARE(Asked().last(),
             refused ? QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &") : QStringLiteral("next MOTIONSETTING"));
  }
  void voltageCompensationStartsAfterItsNotice() {
    gNeedVolCom = true;
    Open(MAINMENU2);
    QVERIFY(IsDrawn({320, 190}, "mainmenu2/voltage_compensation_normal.bmp"));
    Tap(400, 255);
    QCOMPARE(Asked(), QStringList(QStringLiteral("SEND_VOLTAGE_COMPENSATION 0")));
    QCOMPARE(Box(), int{VOL_COMPENSATION_START});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Armed("mEventTimer"), 2000);
    HostFake::Clear();
    TopScreen()->TimeoutEvent();
    QCOMPARE(Asked(), QStringList(QStringLiteral("next VOLTAGECOMPENSATION")));
    QCOMPARE(Armed("mEventTimer"), -1);
    TopScreen()->TimeoutEvent();  // nothing is pending any more
    QCOMPARE(Asked().size(), 1);
  }
  void anotherPendingEventOpensNothing() {
    Open(MAINMENU2);
    TopScreen()->SetEvent(4711, 100);
    TopScreen()->TimeoutEvent();
    QCOMPARE(Asked(), QStringList());
  }

  // ---- the device menu

  void withoutALedUnitItsTileRefuses() {
    gInitFrontLed = 0;
    Open(BLACKBOXMANAGEMENT);
    Tap(240, 125);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Box(), int{FRONTLED_ERROR});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
  }
  void resettingTheSettings_data() {
    QTest::addColumn<int>("resolution");
    QTest::addColumn<int>("fps");
    QTest::addColumn<int>("warning");
    QTest::newRow("defaults") << 0 << 0 << -1;
    QTest::newRow("HD") << 1 << 0 << int{INITIALIZE_RESET_RES_NEED_FORMAT};
    QTest::newRow("15 fps") << 0 << 1 << int{INITIALIZE_RESET_FPS_NEED_FORMAT};
    QTest::newRow("both") << 1 << 1 << int{INITIALIZE_RESET_RES_NEED_FORMAT};
  }
  void resettingTheSettings() {
    QFETCH(int, resolution);
    QFETCH(int, fps);
    QFETCH(int, warning);
    Open(BLACKBOXMANAGEMENT);
    Setting().resolution = Setting().fps = 1 - resolution;  // what is edited but not applied does not matter
    Saved().resolution = resolution;
    Saved().fps = fps;
    Tap(400, 255);
    TapLeftButton();
    QCOMPARE(Box(), warning);
    if (warning >= 0) {
      QCOMPARE(Asked(), QStringList());
      TapRightButton();
      QCOMPARE(Box(), -1);
      QCOMPARE(Asked(), QStringList());
      Tap(400, 255);
      TapLeftButton();
      TapLeftButton();
    }
    QCOMPARE(Box(), -1);
    QCOMPARE(Asked(), QStringList(QStringLiteral("SEND_SET_USER_DATA_INIT 0")));
  }

  void theWarningTakesThePlaceOfTheQuestion() {
    Open(BLACKBOXMANAGEMENT);
    Saved().fps = 1;
    Tap(400, 255);
    QCoreApplication::processEvents();
    const BoxWatch watch;
    TapLeftButton();
    QCoreApplication::processEvents();
    QCOMPARE(Box(), int{INITIALIZE_RESET_FPS_NEED_FORMAT});
    QCOMPARE(watch.bare, 0);
  }
  // The recorder may take its time: nobody shall touch the question once more.
  void theQuestionHasGoneWhenTheResetIsSent() {
    Open(BLACKBOXMANAGEMENT);
    Tap(400, 255);
    QCoreApplication::processEvents();
    const BoxWatch watch;
    int painted = 0;
    Fake().meanwhile = [&](const QString&) { painted = watch.bare; };
    TapLeftButton();
    Fake().meanwhile = nullptr;
    QVERIFY(painted > 0);
  }

  // ---- the card menu

  void formattingWaitsForTheVoice_data() {
    QTest::addColumn<bool>("told");
    QTest::newRow("its end is told") << true;
    QTest::newRow("its end is never told") << false;
  }
  void formattingWaitsForTheVoice() {
    QFETCH(bool, told);
    Open(SDMANAGEMENT);
    Tap(80, 125);
    TapLeftButton();
    QCOMPARE(Asked(), (QStringList{QStringLiteral("no parking timer"), QStringLiteral("SEND_VIDEO_REC_STOP 3")}));
    QCOMPARE(Box(), int{VIDEO_REC_STOP});
    QCOMPARE(Armed("mTimVoiceEnd"), 10000);
    Tap(80, 125);
    TapLeftButton();  // nobody can hurry it
    HostFake::Clear();
    if (told)
      TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0);
    else
      Top<SdManagement>()->TimeoutVoiceEnd();
    QCOMPARE(Asked(), (QStringList{QStringLiteral("SEND_SET_SYSTEM_SD_FORMAT 0"), QStringLiteral("next SDFORMAT")}));
    QCOMPARE(Box(), -1);
    QCOMPARE(Armed("mTimVoiceEnd"), -1);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0);  // too late
    QCOMPARE(Asked().size(), 2);
  }
  void checkingWaitsForTheVoice_data() { formattingWaitsForTheVoice_data(); }
  void checkingWaitsForTheVoice() {
    QFETCH(bool, told);
    Open(SDMANAGEMENT);
    Tap(240, 125);
    TapLeftButton();
    QCOMPARE(Asked(), (QStringList{QStringLiteral("no parking timer"), QStringLiteral("SEND_VIDEO_REC_STOP 3")}));
    HostFake::Clear();
    if (told)
      TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0);
    else
      Top<SdManagement>()->TimeoutVoiceEnd();
    QCOMPARE(Asked(), QStringList(QStringLiteral("SEND_SET_SD_CHECK 0")));
    QCOMPARE(Box(), int{SD_CARD_CHECK_ING});
    QCOMPARE(Armed("mMessageBoxTimer"), -1);
    QCOMPARE(Armed("mTimVoiceEnd"), -1);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0);
    QCOMPARE(Asked().size(), 1);
    QCOMPARE(Box(), int{SD_CARD_CHECK_ING});
  }
  void fromTheQuestionToTheVerdictThereIsABox_data() {
    QTest::addColumn<int>("fault");
    QTest::newRow("good") << 0;
    QTest::newRow("faulty") << 5;
  }
  void fromTheQuestionToTheVerdictThereIsABox() {
    QFETCH(int, fault);
    Open(SDMANAGEMENT);
    Tap(240, 125);
    QCoreApplication::processEvents();
    const BoxWatch watch;
    TapLeftButton();
    QCoreApplication::processEvents();
    QCOMPARE(Box(), int{VIDEO_REC_STOP});
    TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0);
    QCoreApplication::processEvents();
    QCOMPARE(Box(), int{SD_CARD_CHECK_ING});
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, fault);
    QCoreApplication::processEvents();
    QCOMPARE(Box(), fault == 0 ? int{SD_CARD_CHECK_COMPLETE_VALID} : int{R_SD_ERROR_NEET_FORMAT});
    QCOMPARE(watch.bare, 0);
  }
  void theEndOfAVoiceThatNobodyWaitsForDoesNothing() {
    Open(SDMANAGEMENT);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0);
    Top<SdManagement>()->TimeoutVoiceEnd();
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Box(), -1);
  }
  void aGoodCardGoesBackToRecording() {
    Open(SDMANAGEMENT);
    Tap(240, 125);
    TapLeftButton();
    TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0);
    HostFake::Clear();
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, 0);
    QCOMPARE(Asked(), (QStringList{QStringLiteral("parking timer"), QStringLiteral("SEND_VIDEO_REC_START 0")}));
    QCOMPARE(Box(), int{SD_CARD_CHECK_COMPLETE_VALID});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
  }
  void aFaultyCardAsksForAFormat_data() {
    QTest::addColumn<int>("fault");
    QTest::addColumn<bool>("yes");
    for (const int fault : {1, 5, 7, -1}) {
      QTest::addRow("%d, yes", fault) << fault << true;
      QTest::addRow("%d, no", fault) << fault << false;
    }
  }
  void aFaultyCardAsksForAFormat() {
    QFETCH(int, fault);
    QFETCH(bool, yes);
    Open(SDMANAGEMENT);
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, fault);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Box(), int{R_SD_ERROR_NEET_FORMAT});
    QVERIFY(!TopScreen()->GetShowRecvMessageBoxFlag());
    Tap(yes ? 140 : 340, 236);
    QCOMPARE(Box(), -1);
    QCOMPARE(Asked(),
             yes ? (QStringList{QStringLiteral("SEND_SET_SYSTEM_SD_FORMAT 0"), QStringLiteral("next SDFORMAT")})
                 : (QStringList{QStringLiteral("parking timer"), QStringLiteral("SEND_VIDEO_REC_START 0")}));
  }
  // Otherwise a second format would begin behind the one that the driver asks for then.
  void aLateAnswerEndsNothingElse_data() {
    QTest::addColumn<QPoint>("tile");
    QTest::addColumn<int>("fault");
    for (const int fault : {0, 5}) {
      QTest::addRow("format, %d", fault) << QPoint(80, 125) << fault;
      QTest::addRow("check, %d", fault) << QPoint(240, 125) << fault;
    }
  }
  void aLateAnswerEndsNothingElse() {
    QFETCH(QPoint, tile);
    QFETCH(int, fault);
    Open(SDMANAGEMENT);
    Tap(tile.x(), tile.y());
    TapLeftButton();
    HostFake::Clear();
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, fault);
    QCOMPARE(Box(), int{VIDEO_REC_STOP});
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Armed("mTimVoiceEnd"), 10000);
  }
  // Otherwise recording would begin in the middle of the format that the driver asks for then.
  void aLateAnswerDoesNotEndASave() {
    Open(SDMANAGEMENT);
    ++Setting().drv_shock_lvl;
    Tap(40, 30);
    QCOMPARE(Box(), int{SETUP_SAVING});
    HostFake::Clear();
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, 5);
    QCOMPARE(Box(), int{SETUP_SAVING});
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Armed("mTimRestartRecStart"), 10000);
  }
  void theFaultIsNamed_data() {
    QTest::addColumn<int>("fault");
    QTest::newRow("5") << 5;
    QTest::newRow("7") << 7;
  }
  void theFaultIsNamed() {
    QFETCH(int, fault);
    Open(SDMANAGEMENT);
    const auto text = [] {
      QString lines;
      for (const QLabel* label : TopScreen()->findChildren<QLabel*>()) lines += label->text() + u'|';
      return lines;
    };
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, 1);
    const QString usual = text();
    TopScreen()->recvEvent(RECV_ZEL_STATUS_SD_CHECK, fault);
    QVERIFY(text() != usual);
  }
  void theStopIsSentBeforeAFormatThatComesAtOnce() {
    Open(SDMANAGEMENT);
    Tap(80, 125);
    // The end of an older voice is told while the box is being shown.
    QMetaObject::invokeMethod(
        mHost.get(),
        [] {
          if (gEventGate.Enter(TopScreen(), [] { TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0); }))
            TopScreen()->recvEvent(RECV_ZEL_STATUS_VOICE_PLAY_END, 0);
        },
        Qt::QueuedConnection);
    TapLeftButton();
    QCoreApplication::processEvents();
    QTRY_COMPARE(Asked(),
                 (QStringList{QStringLiteral("no parking timer"), QStringLiteral("SEND_VIDEO_REC_STOP 3"),
                              QStringLiteral("SEND_SET_SYSTEM_SD_FORMAT 0"), QStringLiteral("next SDFORMAT")}));
  }
};

QTEST_MAIN(MenusTest)
#include "menus_test.moc"
