// Whose a touch is: of every screen, with every question it asks, under and over what the recorder reports.
#include <algorithm>

#include "gui/app/screenfactory.h"
#include "gui/recordings/playfileinfo.h"
#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/messagebox.h"
#include "gui/touch/touchthread.h"
#include "tests/fake/cardfake.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

class TouchOwnerTest : public WindowTest {
  Q_OBJECT

private:
  enum Report { Standing, Timed };
  static constexpr int kNone = -1;
  static constexpr int kNotice = ENTRY_PREVIEW;
  static constexpr QPoint kBeside{240, 120}, kLeft{140, 236}, kRight{340, 236}, kOutside{40, 30};
  static constexpr QPoint kTouches[] = {kBeside, kLeft, kRight, kOutside};

  // The questions that a screen asks besides the one for a format of the card.
  static constexpr std::pair<WidgetId, MessageBox_Id> kQuestions[] = {
      {MAINMENU, ENTRY_FILELIST},
      {MAINMENU2, MOTION_SETTING_ENTRY},
      {PARKINGSETTING, MOTION_SETTING_ENTRY},
      {BLACKBOXMANAGEMENT, USER_DATA_INIT},
      {BLACKBOXMANAGEMENT, INITIALIZE_RESET_RES_NEED_FORMAT},
      {BLACKBOXMANAGEMENT, INITIALIZE_RESET_FPS_NEED_FORMAT},
      {SDMANAGEMENT, SD_FORMAT_CONFIRM},
      {SDMANAGEMENT, SD_CARD_CHECK_MSG},
      {SDMANAGEMENT, R_SD_ERROR_NEET_FORMAT},
      {VOLTAGECOMPENSATION, IS_BEFORE_VOLCOM_START},
      {VOLTAGECOMPENSATION, IS_AFTER_VOLCOM_START},
      {TIMELAYOUT, TIME_CHANGE},
      {TOUCHCOMP, TOUCH_COM_ESCAPE},
      {MOTIONSETTING, MOTION_SETTING_APPLY},
      {MOTIONSETTING, MOTION_SETTING_TO_MENU},
      {NUMBERSETLAYOUT, IS_INPUT_NUMBER_SAVE},
      {LEDFILELIST, LED_FILE_UPDATE_SAVE},
      {LEDFILELIST, LED_FILE_UPDATE_DELETE},
      {LEDFILELIST, SECURITY_LED_CHECKED},
      {PLAYER, IS_NEXT_FILE_PLAY},
  };
  // The ways out of the settings, which ask for a format after another resolution or frame rate.
  static constexpr WidgetId kAskForFormat[] = {
      MAINMENU,      MAINMENU2,  BLACKBOXMANAGEMENT, SDMANAGEMENT,           DRIVINGSETTING,  PARKINGSETTING,
      AUDIOSETTING,  LCDSETTING, FILEDELMETHOD,      LOWVOLDETECTIONSETTING, POWERCUTSETTING, FILEMANAGEMENT,
      MOTIONSETTING, TIMELAYOUT, FRONTLED,           NUMBERSETLAYOUT,        LEDFILELIST,     RECORDINGLIST};
  static constexpr int kFormats[] = {RESOLUTION_SETTING_CHANGE_NEED_FORMAT, FRAME_SETTING_CHANGE_NEED_FORMAT,
                                     RES_FRAME_SETTING_CHANGE_NEED_FORMAT};
  static int FormatOf(int box) {  // 0: the box asks for none
    const auto* found = std::find(std::begin(kFormats), std::end(kFormats), box);
    return found == std::end(kFormats) ? 0 : int(found - std::begin(kFormats)) + 1;
  }
  // These two have no keys: nobody can leave them.
  static bool HasKeys(WidgetId screen) { return screen != SDFORMAT && screen != FIRMUP; }

  // The camera with a screen open, and with all that the screens need.
  void Open(WidgetId screen) {
    Stop();
    QByteArray patterns("\x03\0\0\1", 4);
    for (const char* name : {"Security LED", "Korvo Black", "pattern"})
      patterns += '\0' + QByteArray(name).leftJustified(20, '\0') + QByteArray(134, '\0');
    root.Write(QStringLiteral("/opt/led.zel"), patterns);
    Start(root);
    Setting().led_mode = Setting().drv_shock_lvl = 1;
    gEnvirnmentSettings.mOldSetting = Setting();
    auto recordings = std::make_unique<RecordingFileManager>();
    recordings->ReadFileList(QStringLiteral("/mnt/mmc/"));
    mWindow->SetRecordingFileManager(std::move(recordings));
    mWindow->StartWidget(screen, screen == PLAYER ? new PlayFileInfo(nullptr, 0, 1) : nullptr);
    QCOMPARE(TopId(), screen);
  }
  void Ask(int box) {
    if (box == TOUCH_COM_ESCAPE) {
      mWindow->recvEvent(RECV_ZEL_STATUS_LCD_KEY, 0);
    } else if (const int format = FormatOf(box)) {
      Setting().resolution = format & 1;
      Setting().fps = format >> 1;
      if (TopId() == RECORDINGLIST)
        TouchAt(kOutside);  // its home key
      else
        Top()->EntryPreview();
    } else if (box != kNone) {
      Top()->PaintMessageBox(box, false, 0, 0);
    }
    QCOMPARE(OwnBox(), box);
  }
  void Tell(Report report) {
    mWindow->recvEvent(report == Standing ? RECV_ZEL_STATUS_HW_ERROR : RECV_ZEL_STATUS_MUTE_ON, 1);
    QCOMPARE(EventBox(), report == Standing ? int{R_HW_ERROR} : int{R_MUTE_ON});
    // However slowly the test runs.
    if (report == Timed) Top()->findChild<QTimer*>(QStringLiteral("mRecvMessageBoxTimer"))->start(3600000);
  }
  // As the reader tells it.
  void TouchAt(QPoint at) {
    TouchThread* reader = mWindow->GetTouchThread();
    if (TopId() == TOUCHCOMP)
      emit reader->inputTouchPanel(at.x(), at.y(), Now());
    else if (TopId() == TOUCHTEST)
      emit reader->touchMotionPanel(at.x(), at.y(), at.x(), at.y(), Now());
    else
      emit reader->pressEvent(TOUCH_PRESS, at.x(), at.y(), Now());
    QCoreApplication::processEvents();
  }

  // What a touch can change.
  struct Seen {
    WidgetId screen;
    int ownBox;
    QByteArray settings;
    QImage page;  // without its boxes
    QStringList asked;
    bool operator==(const Seen&) const = default;
  };
  static Seen Look() {
    const QList<MessageBox*> boxes = Top()->findChildren<MessageBox*>();
    for (MessageBox* box : boxes) box->hide();
    const QImage page = Top()->grab().toImage();
    for (MessageBox* box : boxes) box->show();
    return {TopId(), OwnBox(), {reinterpret_cast<const char*>(&Setting()), sizeof(Setting_Config)}, page, Asked()};
  }

private slots:
  void initTestCase() { card::PutMany(root, 12); }
  void cleanup() { Stop(); }

  void aTouchIsOfTheBoxOnTop_data() {
    QTest::addColumn<int>("screen");
    QTest::addColumn<int>("box");
    for (const ScreenRow& row : Screens()) {
      if (row.id == PREVIEW || row.id == SCREENSAVER || row.id == PFILEGRAPH)
        continue;  // the window has rules for them
      const auto add = [&row](const char* name, int box) {
        QTest::addRow("%s, %s", NameOf(row.id), name) << int(row.id) << box;
      };
      add("nothing", kNone);
      add("a notice", kNotice);
      for (const auto& [screen, question] : kQuestions)
        if (screen == row.id) add(NameOf(question), question);
      if (std::find(std::begin(kAskForFormat), std::end(kAskForFormat), row.id) != std::end(kAskForFormat))
        for (const int question : kFormats) add(NameOf(MessageBox_Id(question)), question);
    }
  }
  void aTouchIsOfTheBoxOnTop() {
    QFETCH(int, screen);
    QFETCH(int, box);
    bool screenReacts = false;
    for (const QPoint at : kTouches) {
      // Without a report it is the screen's or its box's: what comes then comes under a report, too.
      Open(WidgetId(screen));
      Ask(box);
      Fake().asked.clear();
      const Seen before = Look();
      TouchAt(at);
      const Seen answered = Look();
      const bool isButton = at == kLeft || at == kRight;
      if (box == kNone)
        screenReacts |= answered != before;
      else
        QCOMPARE(answered != before, box == TOUCH_COM_ESCAPE || (box != kNotice && isButton));

      // The report's box is on top.
      Open(WidgetId(screen));
      Ask(box);
      for (const Report report : {Timed, Standing}) {
        Tell(report);
        Fake().asked.clear();
        const Seen covered = Look();
        TouchAt(at);
        QVERIFY(Look() == covered);
        QCOMPARE(EventBox(), report == Standing ? kNone : int{R_MUTE_ON});
      }
      TouchAt(at);
      QCOMPARE(TopId(), answered.screen);
      QCOMPARE(OwnBox(), answered.ownBox);
      QCOMPARE(Asked(), answered.asked);

      // The screen's own box is.
      for (const Report report : {Timed, Standing}) {
        if (box == kNone) continue;
        Open(WidgetId(screen));
        Ask(box);
        Tell(report);
        Top()->PaintMessageBox(box, false, 0, 0);
        Fake().asked.clear();
        TouchAt(at);
        QCOMPARE(TopId(), answered.screen);
        QCOMPARE(OwnBox(), answered.ownBox);
        QCOMPARE(Asked(), answered.asked);
        if (TopId() == screen) QCOMPARE(EventBox(), report == Standing ? int{R_HW_ERROR} : int{R_MUTE_ON});
      }
    }
    if (box == kNone) QCOMPARE(screenReacts, HasKeys(WidgetId(screen)));
  }

  // What the interface tells of itself is what a finger finds.
  void whatATouchHitsIsToldBeforehand_data() {
    QTest::addColumn<int>("screen");
    for (const ScreenRow& row : Screens())
      if (row.id != PFILEGRAPH) QTest::newRow(NameOf(row.id)) << int(row.id);  // it is shown with a report alone
  }
  void whatATouchHitsIsToldBeforehand() {
    QFETCH(int, screen);
    Open(WidgetId(screen));
    const QList<TouchArea> areas = Top()->TouchAreas();
    QCOMPARE(areas.isEmpty(), !HasKeys(WidgetId(screen)));
    QList<QPoint> places;
    for (int x = 5; x < 480; x += 25)
      for (int y = 5; y < 320; y += 25) places << QPoint(x, y);
    for (const auto& [area, name] : areas) {
      QVERIFY2(Top()->rect().contains(area) && !name.isEmpty(), qPrintable(name));
      places << area.topLeft() - QPoint(1, 0) << area.topLeft() - QPoint(0, 1) << area.bottomRight() + QPoint(1, 0)
             << area.bottomRight() + QPoint(0, 1);
    }
    Fake().asked.clear();
    const Seen before = Look();
    for (const QPoint at : places) {
      const auto isHit = [at](const TouchArea& touch) { return touch.area.contains(at); };
      if (!Top()->rect().contains(at) || std::any_of(areas.begin(), areas.end(), isHit)) continue;
      TouchAt(at);
      QVERIFY2(Look() == before, qPrintable(QStringLiteral("%1 %2").arg(at.x()).arg(at.y())));
    }
    for (const auto& [area, name] : areas) {
      if (name == QLatin1String("beside") || name == QLatin1String("delete")) continue;  // of the preview; of no digit
      for (const QPoint at : {area.topLeft(), area.bottomRight()}) {
        Open(WidgetId(screen));
        Fake().asked.clear();
        const Seen untouched = Look();
        TouchAt(at);
        QVERIFY2(Look() != untouched, qPrintable(name));
      }
    }
  }
  void theButtonsOfAQuestionAreToldAlone() {
    const auto told = [] {
      QStringList names;
      for (const TouchArea& touch : Top()->TouchAreas()) names << touch.name;
      return names;
    };
    Open(MAINMENU);
    QVERIFY(told().contains(QStringLiteral("mainmenu/play_list_normal.bmp")));
    Ask(ENTRY_FILELIST);
    QCOMPARE(told(), (QStringList{"yes", "no"}));
    QVERIFY(Top()->TouchAreas()[0].area.contains(kLeft));
    QVERIFY(Top()->TouchAreas()[1].area.contains(kRight));
    Tell(Timed);
    QCOMPARE(told(), QStringList());
    Tell(Standing);
    QCOMPARE(told(), QStringList{"box"});
    mWindow->LcdOff();
    QCOMPARE(told(), QStringList{"lcd"});
  }

  void aTapOnANoticeNeverFormatsTheCard_data() {
    QTest::addColumn<int>("screen");
    QTest::addColumn<int>("question");
    for (const WidgetId screen : kAskForFormat)
      for (const int question : kFormats) QTest::addRow("%s, %d", NameOf(screen), question) << int(screen) << question;
  }
  void aTapOnANoticeNeverFormatsTheCard() {
    QFETCH(int, screen);
    QFETCH(int, question);
    Open(WidgetId(screen));
    Ask(question);
    Tell(Standing);
    Fake().asked.clear();
    TouchAt(kLeft);
    QCOMPARE(EventBox(), kNone);
    QCOMPARE(OwnBox(), question);
    QCOMPARE(Fake().Commands(), QStringList());
    TouchAt(kLeft);
    const bool isList = screen == RECORDINGLIST;  // it has stopped recording itself already
    QCOMPARE(Fake().Commands().value(0), isList ? QStringLiteral("8612 %1").arg(FormatOf(question)) : "8620 3");
    QCOMPARE(OwnBox(), isList ? kNone : int{VIDEO_REC_STOP});
    QCOMPARE(TopId(), isList ? SDFORMAT : WidgetId(screen));
  }
};

QTEST_MAIN(TouchOwnerTest)
#include "touchowner_test.moc"
