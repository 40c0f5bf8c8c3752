#include "gui/setup/timelayout.h"

#include "gui/base/eventgate.h"
#include "tests/fake/boxwatch.h"
#include "tests/fake/screentest.h"

static TestRoot root;

namespace {
QDateTime gNow;
QDateTime Now() {
  return gNow;
}
}  // namespace

class TimeLayoutTest : public ScreenTest {
  Q_OBJECT

  using L = TimeLayout;
  static constexpr QRect kAreas[] = {{75, 69, 138, 48},  {250, 69, 76, 48},  {360, 69, 76, 48},  {117, 134, 96, 48},
                                     {250, 134, 76, 48}, {360, 134, 76, 48}, {250, 199, 218, 48}};
  static constexpr const char* kLabels[] = {"mYearLabel", "mMonthLabel",  "mDayLabel", "mAmPmLabel",
                                            "mHourLabel", "mMinuteLabel", "mGmtLabel"};
  static QString Click() { return QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &"); }

  void Open(QDateTime now = QDateTime(QDate(2026, 5, 8), QTime(13, 24))) {
    gNow = now;
    gClock = Now;
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    mHost->Show(TIMELAYOUT, new TimeLayout(mHost.get()));
    HostFake::Clear();
  }
  static void Select(int field) {
    const QPoint at = kAreas[field].center();
    Tap(at.x(), at.y());
  }
  static void Release() { Top<TimeLayout>()->touchReleaseEvent(true); }
  static void Up() {
    Tap(320, 290);
    Release();
  }
  static void Down() {
    Tap(160, 290);
    Release();
  }
  static void Confirm() { Tap(355, 30); }
  static QStringList Texts() {
    QStringList texts;
    for (const char* name : kLabels) texts << Label(name)->text();
    return texts;
  }
  static QString Text(int field) { return Texts().at(field); }

private slots:
  void init() {
    StartHost();
    gEnvirnmentSettings.AllSetSettingConfig();
  }
  void cleanup() {
    mHost.reset();
    gClock = QDateTime::currentDateTime;
  }

  // ---- what is shown

  void theClockIsShown_data() {
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QString>("half");
    QTest::addColumn<QString>("hour");
    const auto at = [](int hour) { return QDateTime(QDate(2026, 12, 31), QTime(hour, 5)); };
    QTest::newRow("0") << at(0) << QStringLiteral("오전") << QStringLiteral("12");
    QTest::newRow("1") << at(1) << QStringLiteral("오전") << QStringLiteral("01");
    QTest::newRow("11") << at(11) << QStringLiteral("오전") << QStringLiteral("11");
    QTest::newRow("12") << at(12) << QStringLiteral("오후") << QStringLiteral("12");
    QTest::newRow("13") << at(13) << QStringLiteral("오후") << QStringLiteral("01");
    QTest::newRow("23") << at(23) << QStringLiteral("오후") << QStringLiteral("11");
  }
  void theClockIsShown() {
    QFETCH(QDateTime, now);
    QFETCH(QString, half);
    QFETCH(QString, hour);
    Open(now);
    QCOMPARE(Texts(), (QStringList{QStringLiteral("2026"), QStringLiteral("12"), QStringLiteral("31"), half, hour,
                                   QStringLiteral("05"), QStringLiteral("0")}));
    for (const char* name : kLabels) {
      const QLabel* label = Label(name);
      QVERIFY(QFontMetrics(label->font()).horizontalAdvance(label->text()) <= label->width() - 4);
    }
  }
  void zoneNames() {
    QCOMPARE(L::ZoneName(0), QStringLiteral("GMT-12"));
    QCOMPARE(L::ZoneName(11), QStringLiteral("GMT-1"));
    QCOMPARE(L::ZoneName(12), QStringLiteral("0"));
    QCOMPARE(L::ZoneName(13), QStringLiteral("GMT+1"));
    QCOMPARE(L::ZoneName(21), QStringLiteral("GMT+9"));
    QCOMPARE(L::ZoneName(25), QStringLiteral("GMT+13"));
  }
  void aStrangeZoneIsShownAsTheNearest_data() {
    QTest::addColumn<int>("gmt");
    QTest::addColumn<QString>("text");
    QTest::newRow("-13") << -13 << QStringLiteral("GMT-12");
    QTest::newRow("14") << 14 << QStringLiteral("GMT+13");
    QTest::newRow("most") << INT_MAX << QStringLiteral("GMT+13");
    QTest::newRow("least") << INT_MIN << QStringLiteral("GMT-12");
    QTest::newRow("9") << 9 << QStringLiteral("GMT+9");
  }
  void aStrangeZoneIsShownAsTheNearest() {
    QFETCH(int, gmt);
    QFETCH(QString, text);
    Setting().gmt = gmt;
    Open();
    QCOMPARE(Text(L::Time_Gmt), text);
  }

  // ---- fields

  void fieldsHaveTheirAreas_data() {
    QTest::addColumn<int>("field");
    for (int field = 0; field < 7; ++field) QTest::addRow("%d", field) << field;
  }
  void fieldsHaveTheirAreas() {
    QFETCH(int, field);
    static constexpr const char* kSelected[] = {
        "timesetting/field_year_select.bmp",   "timesetting/field_number_select.bmp",
        "timesetting/field_number_select.bmp", "timesetting/field_ampm_select.bmp",
        "timesetting/field_number_select.bmp", "timesetting/field_number_select.bmp",
        "timesetting/field_gmt_select.bmp"};
    const QRect area = kAreas[field];
    const auto isSelected = [&] {  // its frame; the text stands in the middle
      const QImage picture = Picture(QLatin1String(kSelected[field])).toImage().convertToFormat(QImage::Format_RGB32);
      return Seen(QRect(area.topLeft() - QPoint(1, 1), QSize(picture.width(), 8))) ==
             picture.copy(0, 0, picture.width(), 8);
    };
    const int other = field == 0 ? 6 : 0;
    Open();
    for (const QPoint at : {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()}) {
      Select(other);
      HostFake::Clear();
      QVERIFY(!isSelected());
      Tap(at.x(), at.y());
      QVERIFY(isSelected());
      QCOMPARE(Asked(), QStringList(Click()));
    }
    Select(other);
    for (const QPoint at : {QPoint(area.left() - 1, area.center().y()), QPoint(area.right() + 1, area.center().y()),
                            QPoint(area.center().x(), area.top() - 1), QPoint(area.center().x(), area.bottom() + 1)}) {
      Tap(at.x(), at.y());
      QVERIFY(!isSelected());
    }
  }

  // ---- steps

  void limits_data() {
    QTest::addColumn<int>("field");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::newRow("year") << int{L::Time_Year} << 2000 << 2099;
    QTest::newRow("month") << int{L::Time_Month} << 1 << 12;
    QTest::newRow("day") << int{L::Time_Day} << 1 << 31;
    QTest::newRow("half") << int{L::Time_AmPm} << 0 << 1;
    QTest::newRow("hour") << int{L::Time_Hour} << 1 << 12;
    QTest::newRow("minute") << int{L::Time_Minute} << 0 << 59;
    QTest::newRow("zone") << int{L::Time_Gmt} << 0 << 25;
    QTest::newRow("second") << int{L::Time_Second} << 0 << 59;
  }
  void limits() {
    QFETCH(int, field);
    QFETCH(int, least);
    QFETCH(int, most);
    const Date_Config may{2026, 5, 8, 0, 1, 0, 0, 0};
    QCOMPARE(L::GetMinValue(L::Time_Type(field)), least);
    QCOMPARE(L::GetMaxValue(L::Time_Type(field), may), most);
  }
  void daysOfAMonth_data() {
    QTest::addColumn<int>("year");
    QTest::addColumn<int>("month");
    QTest::addColumn<int>("days");
    const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) QTest::addRow("2026/%d", month) << 2026 << month << days[month - 1];
    QTest::newRow("2000/2") << 2000 << 2 << 29;
    QTest::newRow("2024/2") << 2024 << 2 << 29;
    QTest::newRow("2096/2") << 2096 << 2 << 29;
    QTest::newRow("2100/2") << 2100 << 2 << 28;
  }
  void daysOfAMonth() {
    QFETCH(int, year);
    QFETCH(int, month);
    QFETCH(int, days);
    QCOMPARE(L::GetMaxValue(L::Time_Day, {year, month, 1, 0, 1, 0, 0, 0}), days);
  }
  void fieldsWrapAround_data() {
    QTest::addColumn<int>("field");
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QString>("up");  // one step up, then two down
    QTest::addColumn<QString>("down");
    const auto at = [](int y, int mo, int d, int h, int mi) { return QDateTime(QDate(y, mo, d), QTime(h, mi)); };
    const auto text = [](const char* words) { return QString::fromUtf8(words); };
    QTest::newRow("year up") << int{L::Time_Year} << at(2099, 5, 8, 1, 0) << text("2000") << text("2098");
    QTest::newRow("year down") << int{L::Time_Year} << at(2000, 5, 8, 1, 0) << text("2001") << text("2099");
    QTest::newRow("month up") << int{L::Time_Month} << at(2026, 12, 8, 1, 0) << text("01") << text("11");
    QTest::newRow("month down") << int{L::Time_Month} << at(2026, 1, 8, 1, 0) << text("02") << text("12");
    QTest::newRow("day up") << int{L::Time_Day} << at(2026, 2, 28, 1, 0) << text("01") << text("27");
    QTest::newRow("leap day up") << int{L::Time_Day} << at(2024, 2, 28, 1, 0) << text("29") << text("27");
    QTest::newRow("day down") << int{L::Time_Day} << at(2026, 4, 1, 1, 0) << text("02") << text("30");
    QTest::newRow("half") << int{L::Time_AmPm} << at(2026, 4, 1, 1, 0) << text("오후") << text("오후");
    QTest::newRow("hour up") << int{L::Time_Hour} << at(2026, 4, 1, 12, 0) << text("01") << text("11");
    QTest::newRow("hour down") << int{L::Time_Hour} << at(2026, 4, 1, 1, 0) << text("02") << text("12");
    QTest::newRow("minute up") << int{L::Time_Minute} << at(2026, 4, 1, 1, 59) << text("00") << text("58");
    QTest::newRow("minute down") << int{L::Time_Minute} << at(2026, 4, 1, 1, 0) << text("01") << text("59");
  }
  void fieldsWrapAround() {
    QFETCH(int, field);
    QFETCH(QDateTime, now);
    QFETCH(QString, up);
    QFETCH(QString, down);
    Open(now);
    Select(field);
    Up();
    QCOMPARE(Text(field), up);
    Down();
    Down();
    QCOMPARE(Text(field), down);
  }
  void theZoneGoesRound() {
    Setting().gmt = 13;
    Open();
    Select(L::Time_Gmt);
    Up();
    QCOMPARE(Text(L::Time_Gmt), QStringLiteral("GMT-12"));
    QCOMPARE(Setting().gmt, -12);
    Down();
    QCOMPARE(Setting().gmt, 13);
    for (int i = 0; i < 26; ++i) Down();
    QCOMPARE(Setting().gmt, 13);
  }
  void theDayStaysInItsMonth() {
    Open(QDateTime(QDate(2024, 1, 31), QTime(1, 0)));
    Select(L::Time_Month);
    Up();
    QCOMPARE(Text(L::Time_Day), QStringLiteral("29"));
    Select(L::Time_Year);
    Up();
    QCOMPARE(Text(L::Time_Day), QStringLiteral("28"));
    QCOMPARE(Setting().day, 28);
  }
  void aClockBesideTheYearsComesBack() {
    Open(QDateTime(QDate(1970, 1, 1), QTime(1, 0)));
    QCOMPARE(Text(L::Time_Year), QStringLiteral("1970"));
    Down();
    QCOMPARE(Text(L::Time_Year), QStringLiteral("2099"));
  }
  void aStepIsWrittenAtOnce_data() {
    QTest::addColumn<int>("hour");
    QTest::addColumn<int>("stored");
    for (int hour = 0; hour < 24; ++hour) QTest::addRow("%d", hour) << hour << hour;
  }
  void aStepIsWrittenAtOnce() {
    QFETCH(int, hour);
    QFETCH(int, stored);
    Setting().gmt = 9;
    Open(QDateTime(QDate(2026, 5, 8), QTime(hour, 24)));
    Select(L::Time_Minute);
    Up();
    QCOMPARE(Setting().year, 2026);
    QCOMPARE(Setting().month, 5);
    QCOMPARE(Setting().day, 8);
    QCOMPARE(Setting().hour, stored);
    QCOMPARE(Setting().min, 25);
    QCOMPARE(Setting().gmt, 9);
    QVERIFY(Asked().filter(QStringLiteral("SEND_")).isEmpty());
  }
  void stepKeysHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("down", QRect(QPoint(88, 265), QPoint(232, 310)));
    AddEdges("up", QRect(QPoint(248, 265), QPoint(392, 310)));
  }
  void stepKeysHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    Open();
    Tap(x, y);
    QCOMPARE(Text(L::Time_Year), !hit      ? QStringLiteral("2026")
                                 : x < 240 ? QStringLiteral("2025")
                                           : QStringLiteral("2027"));
  }
  void aHeldKeyStepsOn() {
    Open();
    mHost->isTouchReleased = false;
    Tap(320, 290);
    QCOMPARE(Text(L::Time_Year), QStringLiteral("2027"));
    QCOMPARE(Armed("mTimLongPress"), 500);
    for (int year = 2028; year < 2033; ++year) {
      QTimerEvent over(Timer("mTimLongPress")->timerId());
      QCoreApplication::sendEvent(Timer("mTimLongPress"), &over);
      QCOMPARE(Text(L::Time_Year), QString::number(year));
      QCOMPARE(Armed("mTimLongPress"), 70);
    }
    QCOMPARE(Asked(), QStringList(Click()));  // only the touch itself sounds
    Top<TimeLayout>()->touchReleaseEvent(false);
    QCOMPARE(Armed("mTimLongPress"), 70);
    Release();
    QCOMPARE(Armed("mTimLongPress"), -1);
    Tap(160, 290);
    QCOMPARE(Armed("mTimLongPress"), 500);
    QCOMPARE(Asked().size(), 2);
  }

  // A box is being shown while the finger comes and goes: both wait, and come in their order.
  void aReleaseComesAfterItsPress() {
    Open();
    mHost->isTouchReleased = false;  // the finger is down again already
    TimeLayout* screen = Top<TimeLayout>();
    std::function<void()> press = [&] {
      if (gEventGate.Enter(screen, press)) screen->Touch(TOUCH_PRESS, 320, 290);
    };
    QMetaObject::invokeMethod(screen, press, Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        screen, [screen] { screen->touchReleaseEvent(true); }, Qt::QueuedConnection);
    gEventGate.ProcessEvents();
    QCOMPARE(Text(L::Time_Year), QStringLiteral("2026"));
    QTRY_COMPARE(Text(L::Time_Year), QStringLiteral("2027"));
    QTRY_COMPARE(Armed("mTimLongPress"), -1);
    Tap(320, 290);  // a new press, not the old one held on
    QCOMPARE(Asked(), (QStringList{Click(), Click()}));
    QCOMPARE(Text(L::Time_Year), QStringLiteral("2028"));
  }

  // ---- leaving

  void leavingResetsTheFlag_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<QString>("asked");
    QTest::newRow("home") << 40 << QStringLiteral("jump PREVIEW");
    QTest::newRow("back") << 440 << QStringLiteral("back");
  }
  void leavingResetsTheFlag() {
    QFETCH(int, x);
    QFETCH(QString, asked);
    Open();
    gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Time_Set_Flag, 1);
    Saved().time_set_flag = 0;
    Tap(x, 30);
    QCOMPARE(Setting().time_set_flag, 0);
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Time_Set_Flag), 0);
    QCOMPARE(Asked().last(), asked);
  }
  void whatWasNotConfirmedIsSavedWithoutTheFlag() {
    Open();
    Select(L::Time_Minute);
    Up();
    Tap(40, 30);
    QCOMPARE(Box(), int{SETUP_SAVING});
    QVERIFY(Asked().contains(QStringLiteral("SEND_SETTING_COMPLETE 0")));
    QCOMPARE(int{gEnvirnmentSettings.mSetup_value.time_set_flag}, 0);
    QCOMPARE(int{gEnvirnmentSettings.mSetup_value.min}, 25);
  }
  void confirmHasItsArea_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("confirm", QRect(QPoint(311, 1), QPoint(399, 59)));
  }
  void confirmHasItsArea() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    Open();
    Tap(x, y);
    QCOMPARE(Box(), hit ? int{TIME_SAME} : -1);
    if (hit) QCOMPARE(Armed("mMessageBoxTimer"), 2000);
  }
  void aStepAndBackIsNoChange() {
    Open();
    Up();
    Down();
    Confirm();
    QCOMPARE(Box(), int{TIME_SAME});
  }
  void theConfirmationSetsTheClock_data() {
    QTest::addColumn<int>("field");
    QTest::addColumn<int>("flag");
    QTest::newRow("year") << int{L::Time_Year} << 1;
    QTest::newRow("month") << int{L::Time_Month} << 1;
    QTest::newRow("day") << int{L::Time_Day} << 1;
    QTest::newRow("half") << int{L::Time_AmPm} << 1;
    QTest::newRow("hour") << int{L::Time_Hour} << 1;
    QTest::newRow("minute") << int{L::Time_Minute} << 1;
    QTest::newRow("zone alone") << int{L::Time_Gmt} << 0;
  }
  void theConfirmationSetsTheClock() {
    QFETCH(int, field);
    QFETCH(int, flag);
    Open();
    Select(field);
    Up();
    const Setting_Config edited = Setting();
    HostFake::Clear();
    Confirm();
    QCOMPARE(Box(), int{TIME_CHANGE});
    QCOMPARE(Armed("mMessageBoxTimer"), -1);
    TapLeftButton();
    QStringList asked = Asked();
    asked.removeAll(QStringLiteral("sh sync"));
    QCOMPARE(asked, (QStringList{QStringLiteral("SEND_VIDEO_REC_STOP 2"), QStringLiteral("SEND_SETTING_COMPLETE 0")}));
    const Setup_Value& block = gEnvirnmentSettings.mSetup_value;
    QCOMPARE(int{block.time_set_flag}, flag);
    QCOMPARE(int{block.year}, edited.year);
    QCOMPARE(int{block.month}, edited.month);
    QCOMPARE(int{block.day}, edited.day);
    QCOMPARE(int{block.hour}, edited.hour);
    QCOMPARE(int{block.min}, edited.min);
    QCOMPARE(int{block.gmt_hour}, edited.gmt);
    QCOMPARE(Setting().time_set_flag, 0);  // once
  }
  void theSavingTakesThePlaceOfTheQuestion() {
    Open();
    Up();
    Confirm();
    QCoreApplication::processEvents();
    const BoxWatch watch;
    TapLeftButton();
    QCoreApplication::processEvents();
    QCOMPARE(Box(), int{SETUP_SAVING});
    QCOMPARE(watch.bare, 0);
  }
  void zoneAndTimeSetTheClock() {
    Open();
    Select(L::Time_Gmt);
    Up();
    Select(L::Time_Hour);
    Up();
    Confirm();
    TapLeftButton();
    QCOMPARE(int{gEnvirnmentSettings.mSetup_value.time_set_flag}, 1);
  }
  void notConfirmed() {
    Open();
    Up();
    Saved().time_set_flag = Setting().time_set_flag = 1;
    HostFake::Clear();
    Confirm();
    TapRightButton();
    QCOMPARE(Box(), -1);
    QVERIFY(Asked().filter(QStringLiteral("SEND_")).isEmpty());
    QCOMPARE(Setting().time_set_flag, 0);
    QCOMPARE(Saved().time_set_flag, 0);
    QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Time_Set_Flag), 0);
    QCOMPARE(TopId(), TIMELAYOUT);
  }
  void aBoxTakesTheTouches() {
    Open();
    Confirm();
    Up();
    Select(3);
    QCOMPARE(Text(L::Time_Year), QStringLiteral("2026"));
    QCOMPARE(Box(), int{TIME_SAME});
  }
};

QTEST_MAIN(TimeLayoutTest)
#include "timelayout_test.moc"
