// Every option of the option screens, through its whole cycle, and the tiles beside them.

#include "gui/base/eventgate.h"
#include "gui/parking/pfileinfo.h"
#include "gui/setup/audiosetting.h"
#include "gui/setup/drivingsetting.h"
#include "gui/setup/filedeletemethod.h"
#include "gui/setup/lcdsetting.h"
#include "gui/setup/lowvoldetectionsetting.h"
#include "gui/setup/parkingsetting.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class OptionsTest : public ScreenTest {
  Q_OBJECT

  struct Row {
    WidgetId screen;
    int row, column;
    int Setting_Config::*field;
    Setting_Id id;
    int event;  // -1: none
    QList<int> values;
    QStringList pictures;
    bool sound = true;
    bool holdsVoices = false;
  };
  static QList<Row> Rows() {
    const auto names = [](const char* folder, std::initializer_list<const char*> list) {
      QStringList paths;
      for (const char* name : list)
        paths << QStringLiteral("%1/%2_normal.bmp").arg(QLatin1String(folder), QLatin1String(name));
      return paths;
    };
    using S = Setting_Config;
    return {
        {DRIVINGSETTING,
         1,
         1,
         &S::resolution,
         Set_Cfg_Resolution,
         SEND_SET_RESOLUTION,
         {0, 1},
         names("drivingsetting", {"resolution_fhd", "resolution_hd"})},
        {DRIVINGSETTING,
         1,
         2,
         &S::fps,
         Set_Cfg_Fps,
         SEND_SET_FPS,
         {0, 1},
         names("drivingsetting", {"frame_30", "frame_15"})},
        {DRIVINGSETTING,
         1,
         3,
         &S::drv_rec_brightness,
         Set_Cfg_Gain,
         SEND_SET_GAIN,
         {0, 1, 2},
         names("drivingsetting", {"brightness_front_common", "brightness_front_brightly", "brightness_front_suv"})},
        {DRIVINGSETTING,
         2,
         1,
         &S::drv_shock_lvl,
         Set_Cfg_Gsensor_Trg_lvl,
         SEND_SET_GSENSOR_TRG_LVL,
         {0, 1, 2, 3},
         names("drivingsetting",
               {"driving_event_off", "driving_event_insensitive", "driving_event_common", "driving_event_sensitive"})},
        {DRIVINGSETTING,
         2,
         2,
         &S::gps_speed_display,
         Set_Cfg_Gps_Speed_Display,
         SEND_SET_GPS_SPEED_DISPLAY,
         {0, 1},
         names("drivingsetting", {"speed_display_on", "speed_display_off"})},
        {PARKINGSETTING,
         1,
         1,
         &S::parking_mode_on,
         Set_Cfg_Parking_Mode_On,
         SEND_SET_PARKING_MODE_ON,
         {0, 1, 2},
         names("parkingsetting", {"parking_mode_off", "parking_mode_event", "parking_mode_motion"}),
         true,
         true},
        {PARKINGSETTING,
         1,
         2,
         &S::park_shock_lvl,
         Set_Cfg_Park_lvl,
         SEND_SET_PARK_LVL,
         {0, 1, 2},
         names("parkingsetting", {"parking_event_insensitive", "parking_event_common", "parking_event_sensitive"}),
         true,
         true},
        {PARKINGSETTING,
         1,
         3,
         &S::motion_lvl,
         Set_Cfg_Motion_lvl,
         SEND_SET_MOTION_LVL,
         {0, 1, 2},
         names("parkingsetting", {"parking_motion_insensitive", "parking_motion_common", "parking_motion_sensitive"}),
         true,
         true},
        {PARKINGSETTING,
         2,
         3,
         &S::park_entry_lvl,
         Set_Cfg_Chk_Park_lvl,
         SEND_CHK_PARK_LVL,
         {0, 1, 2},
         names("parkingsetting", {"parking_entry_insensitive", "parking_entry_common", "parking_entry_sensitive"}),
         true,
         true},
        {AUDIOSETTING,
         1,
         2,
         &S::volume,
         Set_Cfg_Volume,
         SEND_SET_VOLUME,
         {0, 1, 2, 3},
         names("audiosetting", {"mic_off", "mic_low", "mic_common", "mic_high"}),
         false},
        {AUDIOSETTING,
         1,
         3,
         &S::event_buzer,
         Set_Cfg_Event_Buzer,
         SEND_SET_EVENT_BUZER,
         {0, 1},
         names("audiosetting", {"event_alarm_off", "event_alarm_on"}),
         true,
         true},
        {AUDIOSETTING,
         2,
         1,
         &S::acc_volume,
         Set_Cfg_Acc_Volume,
         SEND_SET_ACC_VOLUME,
         {0, 1},
         names("audiosetting", {"accident_blackspot_alarm_off", "accident_blackspot_alarm_on"}),
         true,
         true},
        {LCDSETTING,
         1,
         1,
         &S::lcd_auto_off,
         Set_Cfg_Lcd_Auto_Off,
         SEND_LCD_AUTO_OFF,
         {1, 2, 3, 4},
         names("lcdsetting", {"lcd_second_10", "lcd_second_30", "lcd_second_60", "lcd_second_continuous"})},
        {LCDSETTING,
         1,
         2,
         &S::lcd_bright,
         Set_Cfg_Lcd_Bright,
         SEND_LCD_BRIGHT,
         {0, 1, 2, 3},
         names("lcdsetting",
               {"lcd_brightness_darkly", "lcd_brightness_common", "lcd_brightness_brightly", "lcd_brightness_auto"})},
        {LCDSETTING,
         1,
         3,
         &S::lcd_wait_dis,
         Set_Cfg_Lcd_Wait_Dis,
         SEND_LCD_WAIT_DIS,
         {0, 1, 2, 3},
         names("lcdsetting", {"screensaver_off", "screensaver_on_a", "screensaver_on_b", "screensaver_on_c"})},
        {FILEDELMETHOD,
         1,
         1,
         &S::efile_del_method,
         Set_Cfg_Efile_Del_Method,
         -1,
         {0, 1},
         names("filedeletsetting", {"delete_type", "delete_time"})},
        {FILEDELMETHOD,
         1,
         3,
         &S::protect_file,
         Set_Cfg_ProtectFile,
         -1,
         {0, 10, 20, 30},
         names("filedeletsetting", {"protectfile_setting_0", "protectfile_setting_10", "protectfile_setting_20",
                                    "protectfile_setting_30"})},
        {LOWVOLDETECTIONSETTING,
         1,
         2,
         &S::power_cut_time,
         Set_Cfg_Power_Cur_Time,
         SEND_SET_POWER_CUT_TIME,
         {0, 1, 2, 3, 4, 5},
         names("lowvoldetectionsetting", {"cutoff_time_off", "cutoff_time_12", "cutoff_time_24", "cutoff_time_48",
                                          "cutoff_time_03", "cutoff_time_06"}),
         true,
         true},
    };
  }
  static QRect TileOf(int row, int column) { return {160 * (column - 1), 60 + 130 * (row - 1), 160, 130}; }
  static void TapTile(int row, int column) {
    const QPoint at = TileOf(row, column).center();
    Tap(at.x(), at.y());
  }
  static QString Command(int event, int value) {
    return QStringLiteral("%1 %2").arg(QLatin1String(NameOf(Send_Event(event)))).arg(value);
  }
  static QString Click() { return QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &"); }

  void Open(WidgetId id) {
    if (id == DRIVINGSETTING) mHost->Show(id, new DrivingSetting(mHost.get()));
    if (id == PARKINGSETTING) mHost->Show(id, new ParkingSetting(mHost.get()));
    if (id == AUDIOSETTING) mHost->Show(id, new AudioSetting(mHost.get()));
    if (id == LCDSETTING) mHost->Show(id, new LcdSetting(mHost.get()));
    if (id == FILEDELMETHOD) mHost->Show(id, new FileDeleteMethod(mHost.get()));
    if (id == LOWVOLDETECTIONSETTING) mHost->Show(id, new LowVolDetectionSetting(mHost.get()));
    QCoreApplication::processEvents();
    HostFake::Clear();
  }
  static void AddOptions() {
    QTest::addColumn<int>("option");
    const QList<Row> rows = Rows();
    for (int i = 0; i < rows.size(); ++i)
      QTest::addRow("%s %d,%d", NameOf(rows[i].screen), rows[i].row, rows[i].column) << i;
  }

private slots:
  void init() {
    StartHost();
    Setting().parking_mode_on = Setting().drv_shock_lvl = 1;
    gIsPlayingVoice = gIsAccVer = g_bIsPrevWidgetParkingSetting = false;
    root.Remove(QStringLiteral("/tmp/.info.bin"));
  }
  void cleanup() {
    mHost.reset();
    gIsPlayingVoice = false;
  }

  // ---- the cycle that all options share

  void everyValueIsShown_data() { AddOptions(); }
  void everyValueIsShown() {
    QFETCH(int, option);
    const Row row = Rows()[option];
    Open(row.screen);
    for (int i = 0; i < row.values.size(); ++i) {
      Setting().*row.field = row.values[i];
      QVERIFY2(IsDrawn(TileOf(row.row, row.column).topLeft(), row.pictures[i]), qPrintable(row.pictures[i]));
    }
  }
  void aValueBesideTheTableIsShownAsTheNearest_data() { AddOptions(); }
  void aValueBesideTheTableIsShownAsTheNearest() {
    QFETCH(int, option);
    const Row row = Rows()[option];
    Open(row.screen);
    for (const int value : {row.values.last() + 1000, INT_MAX}) {
      Setting().*row.field = value;
      QVERIFY(IsDrawn(TileOf(row.row, row.column).topLeft(), row.pictures.last()));
    }
    for (const int value : {-1000, INT_MIN}) {
      Setting().*row.field = value;
      QVERIFY(IsDrawn(TileOf(row.row, row.column).topLeft(), row.pictures.first()));
    }
  }
  void aTouchMovesOnStoresAndSends_data() { AddOptions(); }
  void aTouchMovesOnStoresAndSends() {
    QFETCH(int, option);
    const Row row = Rows()[option];
    Open(row.screen);
    Setting().*row.field = row.values.first();
    for (int i = 1; i <= row.values.size(); ++i) {
      const int value = row.values[i % row.values.size()];
      HostFake::Clear();
      gIsPlayingVoice = false;
      bool heldAtTheClick = false;
      bool heldAtTheCommand = false;
      Fake().meanwhile = [&](const QString& line) {
        if (line == Click()) heldAtTheClick = gIsPlayingVoice;
        if (line == Command(row.event, value)) heldAtTheCommand = gIsPlayingVoice;
      };
      TapTile(row.row, row.column);
      Fake().meanwhile = nullptr;
      QCOMPARE(Setting().*row.field, value);
      QCOMPARE(Asked().contains(Click()), row.sound);
      QCOMPARE(row.event < 0 ? Asked().filter(QStringLiteral("SEND_")) : Asked().filter(Command(row.event, value)),
               row.event < 0 ? QStringList() : QStringList(Command(row.event, value)));
      QVERIFY(IsDrawn(TileOf(row.row, row.column).topLeft(), row.pictures[i % row.values.size()]));
      QCOMPARE(Box(), -1);
      if (!row.sound) continue;  // the microphone has a rule of its own
      QCOMPARE(heldAtTheClick, row.holdsVoices);
      if (row.event >= 0) QCOMPARE(heldAtTheCommand, row.holdsVoices);
      QVERIFY(!gIsPlayingVoice);
    }
  }
  void aTouchAfterAStrangeValueGivesAGoodOne_data() { AddOptions(); }
  void aTouchAfterAStrangeValueGivesAGoodOne() {
    QFETCH(int, option);
    const Row row = Rows()[option];
    Open(row.screen);
    for (const int strange : {INT_MIN, INT_MIN + 1, -1000, -1, 0, 7, 99, 1000, INT_MAX - 1, INT_MAX}) {
      Setting().*row.field = strange;
      TapTile(row.row, row.column);
      QVERIFY2(row.values.contains(Setting().*row.field), qPrintable(QString::number(strange)));
    }
  }
  void anOptionIsAsItWasLeftWhenTheScreenIsOpenedAgain() {
    Open(DRIVINGSETTING);
    TapTile(1, 3);
    mHost->BackPressed();
    Open(DRIVINGSETTING);
    QVERIFY(IsDrawn(TileOf(1, 3).topLeft(), "drivingsetting/brightness_front_brightly_normal.bmp"));
  }
  void onlyTheTilesThatChangeArePainted_data() {
    QTest::addColumn<int>("option");
    const QList<Row> rows = Rows();
    for (int i = 0; i < rows.size(); ++i)
      if (rows[i].screen != FILEDELMETHOD)  // there the tile beside changes, too
        QTest::addRow("%s %d,%d", NameOf(rows[i].screen), rows[i].row, rows[i].column) << i;
  }
  void onlyTheTilesThatChangeArePainted() {
    QFETCH(int, option);
    const Row row = Rows()[option];
    Open(row.screen);
    const QRegion painted = PaintedBy([&] { TapTile(row.row, row.column); });
    QRegion wanted = TileOf(row.row, row.column);
    if (row.screen == LCDSETTING && row.column == 1) wanted += TileOf(1, 3);
    QCOMPARE(painted, wanted);
  }

  // ---- the shares that follow

  void sharesAfterTheImpactLevel_data() {
    QTest::addColumn<int>("old");
    QTest::addColumn<int>("parking");
    QTest::addColumn<QList<int>>("shares");  // normal, event, parking, method
    const QList<int> before{20, 20, 60, 0};
    for (const int parking : {1, 2}) {
      QTest::addRow("off to on, parking %d", parking) << 0 << parking << QList<int>{40, 30, 30, 0};
      QTest::addRow("to off, parking %d", parking) << 3 << parking << QList<int>{50, 0, 50, 0};
    }
    QTest::newRow("off to on, no parking") << 0 << 0 << QList<int>{50, 50, 0, 0};
    QTest::newRow("to off, no parking") << 3 << 0 << QList<int>{20, 20, 60, 1};
    for (const int parking : {0, 1, 2}) {
      QTest::addRow("1 to 2, parking %d", parking) << 1 << parking << before;
      QTest::addRow("2 to 3, parking %d", parking) << 2 << parking << before;
    }
  }
  void sharesAfterTheImpactLevel() {
    QFETCH(int, old);
    QFETCH(int, parking);
    QFETCH(QList<int>, shares);
    Open(DRIVINGSETTING);
    SetShares(old, parking);
    TapTile(2, 1);
    QCOMPARE(Shares(), shares);
    QCOMPARE(Asked().filter(QStringLiteral("SEND_")).size(), 1);
  }
  void sharesAfterTheParkingMode_data() {
    QTest::addColumn<int>("old");
    QTest::addColumn<int>("impacts");
    QTest::addColumn<QList<int>>("shares");
    for (const int impacts : {1, 2, 3}) {
      QTest::addRow("off to event, impacts %d", impacts) << 0 << impacts << QList<int>{40, 30, 30, 0};
      QTest::addRow("to off, impacts %d", impacts) << 2 << impacts << QList<int>{50, 50, 0, 0};
    }
    QTest::newRow("off to event, no impacts") << 0 << 0 << QList<int>{50, 0, 50, 0};
    QTest::newRow("to off, no impacts") << 2 << 0 << QList<int>{20, 20, 60, 1};
    QTest::newRow("event to motion") << 1 << 1 << QList<int>{20, 20, 60, 0};
    QTest::newRow("event to motion, no impacts") << 1 << 0 << QList<int>{20, 20, 60, 0};
  }
  void sharesAfterTheParkingMode() {
    QFETCH(int, old);
    QFETCH(int, impacts);
    QFETCH(QList<int>, shares);
    Open(PARKINGSETTING);
    SetShares(impacts, old);
    TapTile(1, 1);
    QCOMPARE(Shares(), shares);
    QCOMPARE(Asked().filter(QStringLiteral("SEND_")).size(), 1);
  }

  // ---- parking

  void parkingTiles() {
    Open(PARKINGSETTING);
    QVERIFY(IsDrawn({0, 190}, "parkingsetting/low_vol_setting_normal.bmp"));
    QVERIFY(IsDrawn({160, 190}, "parkingsetting/motion_setting_normal.bmp"));
    TapTile(2, 1);
    QCOMPARE(Asked(), QStringList(QStringLiteral("next LOWVOLDETECTIONSETTING")));  // and no sound
    HostFake::Clear();
    TapTile(2, 2);
    QCOMPARE(Box(), int{MOTION_SETTING_ENTRY});
    TapRightButton();
    QCOMPARE(Asked(),
             (QStringList{QStringLiteral("SEND_SWITCH_DISP_FOR_MOTION 2"), QStringLiteral("next MOTIONSETTING")}));
    HostFake::Clear();
    gCountOfCamera = 1;
    TapTile(2, 2);
    TapRightButton();
    QCOMPARE(Box(), int{MOTION_SETTING_ENTRY_NOT_REAR});
  }
  void theReportTakesThePlaceOfTheEntryOption() {
    gIsAccVer = true;
    Open(PARKINGSETTING);
    QVERIFY(IsDrawn({320, 190}, "parkingsetting/parking_recording_info_normal.bmp"));
    TapTile(2, 3);
    QCOMPARE(Box(), int{NOT_PARKING_MODE_RECORD_INFO});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QVERIFY(!g_bIsPrevWidgetParkingSetting);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Setting().park_entry_lvl, 0);
  }
  void theReportIsOpenedFromHere() {
    gIsAccVer = true;
    const qint32 words[] = {1, 1000, 2000, 0, 0, 0};
    root.Write(QStringLiteral("/tmp/.info.bin"), QByteArray(reinterpret_cast<const char*>(words), sizeof words));
    Open(PARKINGSETTING);
    TapTile(2, 3);
    QCOMPARE(Asked(), QStringList(QStringLiteral("next PFILEGRAPH")));
    QVERIFY(qobject_cast<PFileInfo*>(mHost->nextArg));
    QVERIFY(g_bIsPrevWidgetParkingSetting);
    TapTile(2, 3);  // read anew each time
    QCOMPARE(Asked().size(), 2);
    g_bIsPrevWidgetParkingSetting = false;
  }
  void whileParkedThereIsNoReport() {
    gIsAccVer = true;
    mHost->isParking = true;
    Open(PARKINGSETTING);
    QVERIFY(IsDrawn({320, 190}, "parkingsetting/parking_recording_info_dis.bmp"));
    TapTile(2, 3);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Box(), -1);
  }

  // ---- audio

  void theGuidanceGoesLowCommonHighOff() {
    Open(AUDIOSETTING);
    const struct {
      int level;
      bool off;
      const char* picture;
      QStringList asked;
    } steps[] = {
        {1, false, "audiosetting/voice_common_normal.bmp", {Command(SEND_SET_SPK_VOLUME, 1)}},
        {2, false, "audiosetting/voice_high_normal.bmp", {Command(SEND_SET_SPK_VOLUME, 2)}},
        {2,
         true,
         "audiosetting/voice_off_normal.bmp",
         {Command(SEND_SET_BUZER_FLAG, 1), Command(SEND_SET_SPK_VOLUME, 2)}},
        {0,
         false,
         "audiosetting/voice_low_normal.bmp",
         {Command(SEND_SET_BUZER_FLAG, 0), Command(SEND_SET_SPK_VOLUME, 0)}},
        {1, false, "audiosetting/voice_common_normal.bmp", {Command(SEND_SET_SPK_VOLUME, 1)}},
    };
    QVERIFY(IsDrawn({0, 60}, "audiosetting/voice_low_normal.bmp"));
    for (const auto& step : steps) {
      HostFake::Clear();
      gIsPlayingVoice = false;
      TapTile(1, 1);
      QCOMPARE(Asked(), step.asked);  // and no click: the recorder speaks
      QCOMPARE(Setting().spk_volume, step.level);
      QCOMPARE(Setting().buzer_flag, int{step.off});
      QVERIFY(IsDrawn({0, 60}, step.picture));
      QVERIFY(gIsPlayingVoice);  // until the recorder tells the end
    }
  }
  void anUnknownLevelOfTheGuidance() {
    Open(AUDIOSETTING);
    for (const int level : {3, 99, -7, INT_MAX, INT_MIN}) {
      Setting().spk_volume = level;
      QVERIFY(IsDrawn({0, 60}, level < 0 ? "audiosetting/voice_low_normal.bmp" : "audiosetting/voice_high_normal.bmp"));
    }
    Setting().spk_volume = 3;
    TapTile(1, 1);
    QCOMPARE(Setting().spk_volume, 0);
  }
  void theMicrophoneIsRemembered_data() {
    QTest::addColumn<int>("old");
    QTest::addColumn<int>("back");
    QTest::addColumn<bool>("voice");
    QTest::newRow("off to low") << 0 << 1 << true;
    QTest::newRow("low to common") << 1 << 2 << false;
    QTest::newRow("common to high") << 2 << 3 << false;
    QTest::newRow("high to off") << 3 << 1 << true;
  }
  void theMicrophoneIsRemembered() {
    QFETCH(int, old);
    QFETCH(int, back);
    QFETCH(bool, voice);
    Open(AUDIOSETTING);
    Setting().volume = old;
    TapTile(1, 2);
    QCOMPARE(gReturnVolume, back);
    QCOMPARE(gIsPlayingVoice, voice);
  }

  // ---- LCD

  void alwaysOnSwitchesTheScreenSaverOff() {
    Setting().lcd_auto_off = 3;
    Setting().lcd_wait_dis = 2;
    Open(LCDSETTING);
    TapTile(1, 1);
    QCOMPARE(Asked(), (QStringList{Click(), Command(SEND_LCD_WAIT_DIS, 0), Command(SEND_LCD_AUTO_OFF, 4)}));
    QCOMPARE(Setting().lcd_wait_dis, 0);
    QVERIFY(IsDrawn({320, 60}, "lcdsetting/screensaver_off_normal.bmp"));
  }
  void theLcdsDelayGoesOnFromAnyValue_data() {
    QTest::addColumn<int>("old");
    QTest::addColumn<int>("value");
    const std::pair<int, int> steps[] = {{0, 1}, {1, 2}, {2, 3},  {3, 4},  {4, 1},  {5, 1},       {6, 2},
                                         {7, 3}, {9, 1}, {-1, 1}, {-2, 4}, {-7, 4}, {INT_MAX, 3}, {INT_MIN, 3}};
    for (const auto& [old, value] : steps) QTest::addRow("%d", old) << old << value;
  }
  void theLcdsDelayGoesOnFromAnyValue() {
    QFETCH(int, old);
    QFETCH(int, value);
    Open(LCDSETTING);
    Setting().lcd_auto_off = old;
    TapTile(1, 1);
    QCOMPARE(Setting().lcd_auto_off, value);
    QVERIFY(Asked().contains(Command(SEND_LCD_AUTO_OFF, value)));
    const char* const pictures[] = {"lcdsetting/lcd_second_10_normal.bmp", "lcdsetting/lcd_second_30_normal.bmp",
                                    "lcdsetting/lcd_second_60_normal.bmp",
                                    "lcdsetting/lcd_second_continuous_normal.bmp"};
    QVERIFY(IsDrawn({0, 60}, pictures[value - 1]));
  }
  void brightnessIsSeenAtOnce() {
    Setting().lcd_bright = 1;
    Open(LCDSETTING);
    TapTile(1, 2);
    QCOMPARE(Asked(), (QStringList{Click(), Command(SEND_LCD_BRIGHT, 2), QStringLiteral("bright 2")}));
  }
  void anLcdThatIsAlwaysOnHasNoScreenSaver() {
    Setting().lcd_auto_off = 4;
    Setting().lcd_wait_dis = 2;  // left over
    Open(LCDSETTING);
    TapTile(1, 3);
    QCOMPARE(Box(), int{NOT_ON_SCREEN_SAVER});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Setting().lcd_wait_dis, 0);
    QCOMPARE(Asked(), (QStringList{Click(), Command(SEND_LCD_WAIT_DIS, 0)}));
  }

  // ---- deletion

  void withOneKindOfRecordingsDeletionIsByTime() {
    Setting().parking_mode_on = Setting().drv_shock_lvl = 0;
    Open(FILEDELMETHOD);
    TapTile(1, 1);
    QCOMPARE(Box(), int{NO_MEMORY_SETTING});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Setting().efile_del_method, 1);
    QCOMPARE(Asked(), QStringList());  // not even a click
  }
  void withParkingsOrImpactsDeletionIsAChoice() {
    Setting().drv_shock_lvl = 0;
    Open(FILEDELMETHOD);
    TapTile(1, 1);
    QCOMPARE(Box(), -1);
    Setting().drv_shock_lvl = 1;
    Setting().parking_mode_on = 0;
    TapTile(1, 1);
    QCOMPARE(Box(), -1);
    QCOMPARE(Setting().efile_del_method, 0);
  }
  void sharesAreOfferedWhileDeletionIsByType() {
    Open(FILEDELMETHOD);
    QVERIFY(IsDrawn({160, 60}, "filedeletsetting/delete_memory_normal.bmp"));
    TapTile(1, 2);
    QCOMPARE(Asked(), QStringList(QStringLiteral("next FILEMANAGEMENT")));
    HostFake::Clear();
    TapTile(1, 1);
    QVERIFY(IsDrawn({160, 60}, "filedeletsetting/delete_memory_disabled.bmp"));
    HostFake::Clear();
    TapTile(1, 2);
    QCOMPARE(Asked(), QStringList());
  }

  // ---- low voltage

  void lowVoltageTiles() {
    Open(LOWVOLDETECTIONSETTING);
    QVERIFY(IsDrawn({0, 60}, "lowvoldetectionsetting/power_cut.bmp"));
    QVERIFY(IsDrawn({320, 60}, "lowvoldetectionsetting/vol_compensation_dis.bmp"));
    TapTile(1, 3);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Box(), -1);
    TapTile(1, 1);
    QCOMPARE(Asked(), QStringList(QStringLiteral("next POWERCUTSETTING")));
    HostFake::Clear();
    gNeedVolCom = true;
    QVERIFY(IsDrawn({320, 60}, "lowvoldetectionsetting/vol_compensation.bmp"));
    TapTile(1, 3);
    QCOMPARE(Asked(), QStringList(QStringLiteral("SEND_VOLTAGE_COMPENSATION 0")));
    QCOMPARE(Box(), int{VOL_COMPENSATION_START});
    QCOMPARE(Armed("mEventTimer"), 2000);
    HostFake::Clear();
    TopScreen()->TimeoutEvent();
    QCOMPARE(Asked(), QStringList(QStringLiteral("next VOLTAGECOMPENSATION")));
    TopScreen()->TimeoutEvent();
    QCOMPARE(Asked().size(), 1);
  }

  // ---- leaving

  void leavingByHomeAppliesWhatWasChanged() {
    Open(DRIVINGSETTING);
    TapTile(2, 1);
    HostFake::Clear();
    Tap(40, 30);
    QStringList asked = Asked();
    asked.removeAll(QStringLiteral("sh sync"));
    QCOMPARE(asked, (QStringList{QStringLiteral("SEND_VIDEO_REC_STOP 2"), QStringLiteral("SEND_SETTING_COMPLETE 0")}));
    QCOMPARE(Box(), int{SETUP_SAVING});
    QVERIFY(TopScreen()->GetRestartRecStartFlag());
  }
  void leavingByHomeAsksBeforeAFormat() {
    Open(DRIVINGSETTING);
    TapTile(1, 1);
    HostFake::Clear();
    Tap(40, 30);
    QCOMPARE(Box(), int{RESOLUTION_SETTING_CHANGE_NEED_FORMAT});
    QCOMPARE(gNeedFormatFlag, 1);
    QCOMPARE(Asked(), QStringList());
    gNeedFormatFlag = 0;
  }
  void titles() {
    const std::pair<WidgetId, const char*> titles[] = {
        {DRIVINGSETTING, "drivingsetting/title.bmp"},  {PARKINGSETTING, "parkingsetting/title.bmp"},
        {AUDIOSETTING, "audiosetting/title.bmp"},      {LCDSETTING, "lcdsetting/title.bmp"},
        {FILEDELMETHOD, "filedeletsetting/title.bmp"}, {LOWVOLDETECTIONSETTING, "lowvoldetectionsetting/title.bmp"}};
    for (const auto& [id, title] : titles) {
      Open(id);
      QVERIFY2(IsDrawn({80, 0}, title), title);
      QVERIFY(IsDrawn({0, 0}, "common/home_normal.bmp"));
      QVERIFY(IsDrawn({400, 0}, "common/back_normal.bmp"));
    }
  }

private:
  static void SetShares(int impacts, int parking) {
    Setting().drv_shock_lvl = impacts;
    Setting().parking_mode_on = parking;
    Setting().n_file_rate = Setting().e_file_rate = 20;
    Setting().p_file_rate = 60;
    Setting().efile_del_method = 0;
  }
  static QList<int> Shares() {
    return {Setting().n_file_rate, Setting().e_file_rate, Setting().p_file_rate, Setting().efile_del_method};
  }
};

QTEST_MAIN(OptionsTest)
#include "options_test.moc"
