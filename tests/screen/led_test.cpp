// The front LED: display mode, keypad and list.
#include <QDir>
#include <algorithm>

#include "gui/led/frontled.h"
#include "gui/led/ledfileitem.h"
#include "gui/led/ledfilelist.h"
#include "gui/led/numbersetlayout.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class LedTest : public ScreenTest {
  Q_OBJECT

  static constexpr char kFile[] = "/opt/led.zel";
  static QString Line(const char* text) { return QLatin1String(text); }
  static QString Click() { return Line("sh aplay /opt/ipnc/voice/touch.wav &"); }

  // `count` entries, of which the ticked ones are shown.
  static void WriteList(int count, const QList<int>& shown = {}, int mode = 1) {
    QByteArray file(1, char(count));
    file += QByteArray("\0\0", 2) + char(mode);
    for (int i = 0; i < count; ++i) {
      const QByteArray name = i == 0   ? QByteArray("Security LED")
                              : i == 1 ? QByteArray("Korvo Black")
                                       : "pattern " + QByteArray::number(i);
      file += char(shown.contains(i)) + name.leftJustified(20, '\0') + QByteArray(134, '\0');
    }
    root.Write(kFile, file);
    gLedFileManager = LedFileManager();
    gLedFileManager.ReadLedFile();
  }
  void OpenMode(int mode) {
    Setting().led_mode = mode;
    mHost->Show(FRONTLED, new FrontLed(mHost.get()));
    HostFake::Clear();
  }
  void OpenKeypad() {
    mHost->Show(NUMBERSETLAYOUT, new NumberSetLayout(mHost.get()));
    HostFake::Clear();
  }
  void OpenList() {
    mHost->Show(LEDFILELIST, new LedFileList(mHost.get()));
    HostFake::Clear();
  }
  static void Key(int digit) {
    const int place = (digit + 9) % 10;
    Tap(40 + 80 * (place % 5), 185 + 90 * (place / 5));
  }
  static void Delete() { Tap(440, 230); }
  static void Save() { Tap(440, 100); }
  static void Type(const char* digits) {
    for (; *digits; ++digits) Key(*digits - '0');
  }
  static QString Number() { return Label("mInputNumLabel")->text(); }
  static void Tick(int row) { Tap(370, 60 + 52 * row + 25); }
  static void Scroll(int y) {
    Tap(440, y);
    Top<LedFileList>()->touchReleaseEvent(true);
  }
  static bool IsTicked(int row) { return IsDrawn({351, 65 + 52 * row}, "filelist/list_checked_normal.bmp"); }
  static QStringList Names() {
    QStringList names;
    for (const auto* label : TopScreen()->findChildren<QLabel*>(QStringLiteral("mNameLabel"))) names << label->text();
    return names;
  }
  static QByteArray Shown() {  // of the file: 0 and 1
    const QByteArray file = root.Read(kFile);
    QByteArray shown;
    for (qsizetype at = 4; at < file.size(); at += 155) shown += char('0' + file[at]);
    return shown;
  }
  static void Fire(const char* name) {
    QTimerEvent over(Timer(name)->timerId());
    QCoreApplication::sendEvent(Timer(name), &over);
  }

private slots:
  void init() {
    StartHost();
    QDir(root.Path(QStringLiteral("/"))).mkpath(QStringLiteral("opt"));
    WriteList(8);
  }
  void cleanup() { mHost.reset(); }

  // ---- the display mode

  void modeTiles() {
    OpenMode(1);
    QVERIFY(IsDrawn({80, 0}, "ledsetting/title.bmp"));
    QVERIFY(IsDrawn({0, 60}, "ledsetting/led_number_save_normal.bmp"));
    QVERIFY(IsDrawn({160, 60}, "ledsetting/led_filelist_normal.bmp"));
    Tap(80, 125);
    QCOMPARE(Asked(), QStringList(Line("next NUMBERSETLAYOUT")));
    HostFake::Clear();
    Tap(240, 125);
    QCOMPARE(Asked(), QStringList(Line("next LEDFILELIST")));
  }
  void theModeGoesRound() {
    OpenMode(0);
    const char* const pictures[] = {"ledsetting/led_setting_off_normal.bmp",
                                    "ledsetting/led_setting_sequential_normal.bmp",
                                    "ledsetting/led_setting_random_normal.bmp"};
    for (int mode = 1; mode <= 3; ++mode) {
      HostFake::Clear();
      Tap(400, 125);
      QCOMPARE(Setting().led_mode, mode % 3);
      QCOMPARE(gEnvirnmentSettings.GetSettingConfig(Set_Cfg_Setting_Change), mode % 3);
      QCOMPARE(Asked(), (QStringList{Click(), QStringLiteral("SEND_SET_LED_MODE %1").arg(mode % 3)}));
      QVERIFY(IsDrawn({320, 60}, pictures[mode % 3]));
    }
  }
  void aListThatCannotBeOpened() {
    OpenMode(0);
    Tap(240, 125);
    QCOMPARE(Box(), int{LED_LIST_NOT_ENTRY});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    TopScreen()->TimeoutMessageBoxTimer();
    Setting().led_mode = 1;
    gLedFileManager.setExistsLedFileFlag(false);
    Tap(240, 125);
    QCOMPARE(Box(), int{NOTHING_LED_FILE});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Asked(), QStringList());
  }

  // ---- the keypad

  void hyphens_data() {
    QTest::addColumn<QString>("digits");
    QTest::addColumn<QString>("text");
    const auto add = [](const char* digits, const char* text) { QTest::newRow(digits) << Line(digits) << Line(text); };
    QTest::newRow("none") << QString() << QString();
    add("0", "0");
    add("02", "02");
    add("021", "02-1");
    add("0212", "02-12");
    add("0212345", "02-12345");
    add("02123456", "02-12-3456");
    add("0212345678", "02-1234-5678");
    add("02123456789012", "02-12345678-9012");
    add("010", "010");
    add("0101", "010-1");
    add("0101234", "010-1234");
    add("01012345", "010-1-2345");
    add("01012345678", "010-1234-5678");
    add("01012345678901", "010-1234567-8901");
    add("1", "1");
    add("1234", "1234");
    add("12345", "1234-5");
    add("15881234", "1588-1234");
    add("158812345", "1588-12345");
    add("15881234567890", "1588-1234567890");
    add("00", "00");
    add("000", "000");
    add("0001", "000-1");
  }
  void hyphens() {
    QFETCH(QString, digits);
    QFETCH(QString, text);
    QCOMPARE(NumberSetLayout::Hyphenated(digits), text);
    OpenKeypad();
    Type(digits.toLatin1().constData());
    QCOMPARE(Number(), text);
    QVERIFY(QFontMetrics(Label("mInputNumLabel")->font()).horizontalAdvance(Number()) <= 364);
  }
  void keysHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<QString>("after");  // of "5"
    for (int place = 0; place < 10; ++place) {
      const QRect area(QPoint(80 * (place % 5) + 1, place < 5 ? 141 : 231),
                       QPoint(80 * (place % 5) + 79, place < 5 ? 229 : 319));
      for (const QPoint at : {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()})
        QTest::addRow("%d at %d %d", (place + 1) % 10, at.x(), at.y())
            << at.x() << at.y() << QStringLiteral("5%1").arg((place + 1) % 10);
      QTest::addRow("line above place %d", place) << area.center().x() << area.top() - 1 << Line("5");
      QTest::addRow("line left of place %d", place) << area.left() - 1 << area.center().y() << Line("5");
    }
    for (const QPoint at : {QPoint(401, 141), QPoint(479, 141), QPoint(401, 319), QPoint(479, 319), QPoint(440, 230)})
      QTest::addRow("delete at %d %d", at.x(), at.y()) << at.x() << at.y() << QString();
    QTest::newRow("above delete") << 440 << 140 << Line("5");
    QTest::newRow("left of delete") << 400 << 230 << Line("5");
  }
  void keysHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(QString, after);
    OpenKeypad();
    Key(5);
    Tap(x, y);
    QCOMPARE(Number(), after);
  }
  void theFifteenthDigitIsIgnoredWithoutASound() {
    OpenKeypad();
    Type("12345678901234");
    QCOMPARE(Asked().size(), 14);
    const QString number = Number();
    Key(5);
    QCOMPARE(Asked().size(), 14);
    QCOMPARE(Number(), number);
    Delete();
    QCOMPARE(Asked().size(), 15);
    Key(9);
    QCOMPARE(Number(), Line("1234-5678901239"));
  }
  void deletingNothingMakesNoSound() {
    OpenKeypad();
    Delete();
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(Number(), QString());
  }
  void nothingIsNotSaved() {
    OpenKeypad();
    Save();
    QCOMPARE(Box(), int{INVALID_INPUT_NUMBER});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Armed("mEventTimer"), 2000);
  }
  void saveHasItsArea_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("save", QRect(QPoint(411, 70), QPoint(469, 128)));
  }
  void saveHasItsArea() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    OpenKeypad();
    Tap(x, y);
    QCOMPARE(Box() >= 0, hit);
  }
  void withAFullListTheNumberIsForgotten() {
    WriteList(20);
    OpenKeypad();
    Type("12");
    Save();
    QCOMPARE(Box(), int{LED_LIST_EXCESS});
    QCOMPARE(Armed("mMessageBoxTimer"), 2500);
    QCOMPARE(Armed("mEventTimer"), 2500);
    Fire("mEventTimer");
    QCOMPARE(Number(), QString());
  }
  void withoutAListTheNumberIsForgotten() {
    gLedFileManager = LedFileManager();
    OpenKeypad();
    Type("12");
    Save();
    QCOMPARE(Box(), int{FILE_SAVE_FAIL});
    QCOMPARE(Armed("mEventTimer"), 2000);
    Fire("mEventTimer");
    QCOMPARE(Number(), QString());
  }
  void aNumberIsSavedAndTold() {
    OpenKeypad();
    Type("01012345678");
    HostFake::Clear();
    Save();
    QCOMPARE(Box(), int{IS_INPUT_NUMBER_SAVE});
    TapRightButton();
    QCOMPARE(Box(), -1);
    QCOMPARE(Number(), Line("010-1234-5678"));
    Save();
    TapLeftButton();
    QCOMPARE(Asked(), (QStringList{Line("sh sync"), Line("SEND_LED_FILE_UPDATE 0")}));
    QCOMPARE(Box(), int{FILE_SAVE});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(root.Read(kFile).size(), 4 + 155 * 9);
    QVERIFY(root.Read(kFile).mid(4 + 155 * 8 + 1).startsWith("010-1234-5678"));
    Fire("mEventTimer");
    QCOMPARE(Number(), QString());
  }
  void aNumberThatCannotBeSavedStays() {
    OpenKeypad();
    Type("12");
    Save();
    root.Remove(kFile);
    HostFake::Clear();
    TapLeftButton();
    QCOMPARE(Box(), int{FILE_SAVE_FAIL});
    QCOMPARE(Armed("mMessageBoxTimer"), 2000);
    QCOMPARE(Armed("mEventTimer"), -1);
    QCOMPARE(Number(), Line("12"));
    QVERIFY(Asked().filter(Line("SEND_")).isEmpty());
  }
  void anotherEventForgetsNothing() {
    OpenKeypad();
    Type("12");
    TopScreen()->SetEvent(4711, 10);
    Fire("mEventTimer");
    QCOMPARE(Number(), Line("12"));
  }

  // ---- the list

  void rowsOfTheList() {
    WriteList(8, {2, 4});
    OpenList();
    QCOMPARE(Names(), (QStringList{Line("Security LED"), Line("Korvo Black"), Line("pattern 2"), Line("pattern 3"),
                                   Line("pattern 4")}));
    for (int row = 0; row < 5; ++row) QCOMPARE(IsTicked(row), row == 2 || row == 4);
    QVERIFY(IsDrawn({8, 63}, "filelist/orderlist_sign_basic_normal.bmp"));
    QVERIFY(IsDrawn({8, 63 + 104}, "filelist/orderlist_sign_sequential_normal.bmp"));
    QVERIFY(IsDrawn({80, 0}, "filelist/title_ledlist_normal.bmp"));
    QVERIFY(IsDrawn({220, 0}, "filelist/list_delete_normal.bmp"));
    QVERIFY(IsDrawn({310, 0}, "filelist/list_save_normal.bmp"));
    Scroll(242);
    QCOMPARE(Names(), (QStringList{Line("pattern 5"), Line("pattern 6"), Line("pattern 7"), {}, {}}));
    QVERIFY(IsPlain(QRect(0, 216, 400, 104), kGround));
  }
  void koreanNames() {
    Led_File_Item item;
    item.nickName = QString::fromLatin1("\xb9\xae\xb1\xb8 1");
    QCOMPARE(LedFileItem::NameOf(item), QStringLiteral("문구 1"));
  }
  void aLongNameIsElided() {
    QByteArray file("\x02\0\0\0", 4);
    for (int i = 0; i < 2; ++i) file += '\0' + QByteArray(20, 'W') + QByteArray(134, '\0');
    root.Write(kFile, file);
    gLedFileManager = LedFileManager();
    gLedFileManager.ReadLedFile();
    OpenList();
    const QLabel* label = Label("mNameLabel");
    QVERIFY(label->text().endsWith(QChar(0x2026)));
    QVERIFY(QFontMetrics(label->font()).horizontalAdvance(label->text()) <= label->width());
    QCOMPARE(label->textFormat(), Qt::PlainText);
  }
  void checkBoxesHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("row");
    for (int row = 1; row < 5; ++row) {
      const int top = 61 + 52 * row;
      for (const QPoint at : {QPoint(351, top), QPoint(390, top), QPoint(351, top + 48), QPoint(390, top + 48)})
        QTest::addRow("row %d at %d %d", row, at.x(), at.y()) << at.x() << at.y() << row;
      QTest::addRow("left of row %d", row) << 350 << top + 20 << -1;
      QTest::addRow("right of row %d", row) << 391 << top + 20 << -1;
      QTest::addRow("above row %d", row) << 370 << top - 1 << -1;
      QTest::addRow("below row %d", row) << 370 << top + 49 << -1;
    }
  }
  void checkBoxesHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, row);
    OpenList();
    Tap(x, y);
    for (int i = 0; i < 5; ++i) QCOMPARE(IsTicked(i), i == row);
  }
  void rowsPastTheEndAreIgnored() {
    WriteList(3);
    OpenList();
    Tick(3);
    Tick(4);
    QCOMPARE(Asked(), QStringList());
    Tap(355, 30);
    QCOMPARE(Box(), int{NOTHING_CHECKED_LED_FILE});
  }
  void theSecurityPatternExcludesTheOthers() {
    OpenList();
    Tick(0);
    QVERIFY(IsTicked(0));
    for (int row = 1; row < 5; ++row) {
      Tick(row);
      QVERIFY(!IsTicked(row));
    }
    const auto labels = TopScreen()->findChildren<QLabel*>(QStringLiteral("mNameLabel"));
    QCOMPARE(labels[0]->palette().color(QPalette::WindowText), QColor(Qt::white));
    for (int row = 1; row < 5; ++row)
      QCOMPARE(labels[row]->palette().color(QPalette::WindowText), QColor(156, 156, 156));
    Scroll(242);
    QCOMPARE(Names()[0], Line("Security LED"));
    Tick(0);
    QCOMPARE(labels[1]->palette().color(QPalette::WindowText), QColor(Qt::white));
    Scroll(242);
    QCOMPARE(Names()[0], Line("pattern 5"));
  }
  void aRowHasTheConfiguredLook() {
    gFont.Size.List = 15;
    gColor.PreviewText = {64, 200, 224};
    OpenList();
    const auto ink = [] { return Label("mNameLabel")->palette().color(QPalette::WindowText); };
    QCOMPARE(Label("mNameLabel")->font().pixelSize(), 15);
    QCOMPARE(ink(), QColor(64, 200, 224));
    Tick(0);
    Tick(0);  // locked, and not any more
    for (const auto* label : TopScreen()->findChildren<QLabel*>(Line("mNameLabel")))
      QCOMPARE(label->palette().color(QPalette::WindowText), QColor(64, 200, 224));
  }
  void theLowestKeyEndsWithTheScreen() {
    WriteList(20);
    OpenList();
    Scroll(320);  // as the reader tells a touch of the panel's edge
    QCOMPARE(Names()[0], Line("Security LED"));
    QCOMPARE(Asked(), QStringList());
    Scroll(319);
    QCOMPARE(Names()[0], Line("pattern 10"));
  }
  void theSecondPageHasItsOwnTicks() {
    OpenList();
    Scroll(242);
    Tick(1);
    QVERIFY(IsTicked(1));
    Scroll(138);
    QVERIFY(!IsTicked(1));
  }
  void aScrollKeySoundsOnceAndOnlyWhenItScrolls() {
    OpenList();
    Tap(440, 138);  // at the top
    QCOMPARE(Asked(), QStringList());
    Top<LedFileList>()->touchReleaseEvent(true);
    mHost->isTouchReleased = false;
    Tap(440, 242);
    QCOMPARE(Asked(), QStringList(Click()));
    QCOMPARE(Armed("mTimLongPress"), 500);
    Fire("mTimLongPress");
    QCOMPARE(Armed("mTimLongPress"), 100);
    QCOMPARE(Asked().size(), 1);
    Top<LedFileList>()->touchReleaseEvent(false);
    QCOMPARE(Armed("mTimLongPress"), 100);
    Top<LedFileList>()->touchReleaseEvent(true);
    QCOMPARE(Armed("mTimLongPress"), -1);
  }
  void pages_data() {
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("pages");
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("5") << 5 << 1;
    QTest::newRow("6") << 6 << 2;
    QTest::newRow("20") << 20 << 4;
  }
  void pages() {
    QFETCH(int, entries);
    QFETCH(int, pages);
    WriteList(entries);
    OpenList();
    QCOMPARE(Label("mAllPageNumberLabel")->text().toInt(), pages);
    QCOMPARE(Label("mCurPageNumberLabel")->text().toInt(), 1);
  }
  void ticksOfAnotherVisitAreForgotten() {
    OpenList();
    Tick(1);
    Tick(2);
    mHost->BackPressed();
    OpenList();
    QVERIFY(!IsTicked(1) && !IsTicked(2));
    Tick(3);
    Tap(265, 30);
    QCOMPARE(Box(), int{LED_FILE_UPDATE_DELETE});  // the brand's tick, too
  }

  // ---- saving and deleting

  void whatIsRefused_data() {
    QTest::addColumn<QList<int>>("ticks");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("box");
    QTest::newRow("delete nothing") << QList<int>{} << 265 << int{NOTHING_CHECKED_LED_FILE};
    QTest::newRow("save nothing") << QList<int>{} << 355 << int{NOTHING_CHECKED_LED_FILE};
    QTest::newRow("delete the security pattern") << QList<int>{0} << 265 << int{NOT_DELETE_SECURITY_LED};
    QTest::newRow("delete the brand's") << QList<int>{1, 3} << 265 << int{NOT_DELETE_KORVO_BLACK};
  }
  void whatIsRefused() {
    QFETCH(QList<int>, ticks);
    QFETCH(int, x);
    QFETCH(int, box);
    OpenList();
    for (const int row : ticks) Tick(row);
    Tap(x, 30);
    QCOMPARE(Box(), box);
    QCOMPARE(Armed("mMessageBoxTimer"), 1500);
    QCOMPARE(Asked(), QStringList());
  }
  void headerKeysHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("delete", QRect(QPoint(221, 1), QPoint(309, 59)));
    AddEdges("save", QRect(QPoint(311, 1), QPoint(399, 59)));
  }
  void headerKeysHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    OpenList();
    Tap(x, y);
    QCOMPARE(Box() == NOTHING_CHECKED_LED_FILE, hit);
  }
  void ticksAreSaved() {
    OpenList();
    Tick(1);
    Tick(3);
    Tap(355, 30);
    QCOMPARE(Box(), int{LED_FILE_UPDATE_SAVE});
    const QList<QLabel*> labels = TopScreen()->findChildren<QLabel*>();
    QVERIFY(std::any_of(labels.begin(), labels.end(),
                        [](const QLabel* label) { return label->text().startsWith(QStringLiteral("2개")); }));
    TapRightButton();
    QCOMPARE(Box(), -1);
    QCOMPARE(Shown(), QByteArray("00000000"));
    Tap(355, 30);
    int saving = -1;
    Fake().meanwhile = [&saving](const QString& line) {
      if (line == Line("sh sync")) saving = Box();
    };
    TapLeftButton();
    Fake().meanwhile = nullptr;
    QCOMPARE(saving, int{FILE_SAVING});
    QCOMPARE(Asked(), (QStringList{Line("sh sync"), Line("SEND_LED_FILE_UPDATE 0")}));
    QCOMPARE(Box(), int{FILE_SAVE});
    QCOMPARE(Armed("mMessageBoxTimer"), 1500);
    QCOMPARE(Shown(), QByteArray("01010000"));
    TopScreen()->TimeoutMessageBoxTimer();
    QVERIFY(IsDrawn({8, 63 + 52}, "filelist/orderlist_sign_sequential_normal.bmp"));
  }
  void theSecurityPatternIsSavedAlone() {
    WriteList(8, {3});
    OpenList();
    Tick(0);
    Tap(355, 30);
    QCOMPARE(Box(), int{SECURITY_LED_CHECKED});
    TapLeftButton();
    QCOMPARE(Box(), int{FILE_SAVE});
    QCOMPARE(Shown().left(1), QByteArray("1"));
  }
  void tickedPatternsAreDeleted() {
    OpenList();
    Tick(2);
    Tick(4);
    Tap(265, 30);
    QCOMPARE(Box(), int{LED_FILE_UPDATE_DELETE});
    TapLeftButton();
    QCOMPARE(Asked(), (QStringList{Line("sh sync"), Line("SEND_LED_FILE_UPDATE 0")}));
    QCOMPARE(Box(), int{FILE_DELETE});
    QCOMPARE(Names(), (QStringList{Line("Security LED"), Line("Korvo Black"), Line("pattern 3"), Line("pattern 5"),
                                   Line("pattern 6")}));
    QCOMPARE(root.Read(kFile).size(), 4 + 155 * 6);
  }
  void aWriteThatFailsIsTold() {
    OpenList();
    Tick(2);
    root.Remove(kFile);
    Tap(355, 30);
    TapLeftButton();
    QCOMPARE(Box(), int{FILE_SAVE_FAIL});
    QCOMPARE(Armed("mMessageBoxTimer"), 1500);
    QVERIFY(Asked().filter(Line("SEND_")).isEmpty());
  }
  void homeAndBack() {
    OpenList();
    Tap(440, 30);
    QCOMPARE(Asked(), QStringList(Line("back")));
    OpenList();
    Tap(40, 30);
    QCOMPARE(Asked(), QStringList(Line("jump PREVIEW")));
  }
};

QTEST_MAIN(LedTest)
#include "led_test.moc"
