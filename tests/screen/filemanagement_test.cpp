#include "gui/setup/filemanagement.h"

#include "tests/fake/screentest.h"

static TestRoot root;

class FileManagementTest : public ScreenTest {
  Q_OBJECT

  enum { Both, NoParking, NoImpacts, Neither };

  void Open(int recorded, int event, int normal, int parking) {
    Setting().drv_shock_lvl = recorded == NoImpacts || recorded == Neither ? 0 : 2;
    Setting().parking_mode_on = recorded == NoParking || recorded == Neither ? 0 : 1;
    Setting().e_file_rate = event;
    Setting().n_file_rate = normal;
    Setting().p_file_rate = parking;
    mHost->Show(FILEMANAGEMENT, new FileManagement(mHost.get()));
    HostFake::Clear();
  }
  static QList<int> Stored() { return {Setting().e_file_rate, Setting().n_file_rate, Setting().p_file_rate}; }
  static QList<int> Shown() {
    const auto percent = [](const char* name) { return Label(name)->text().section(u' ', 0, 0).toInt(); };
    return {percent("lblEvtNum"), percent("lblNormalNum"), percent("lblParkNum")};
  }
  static bool IsHandleAt(int boundary, bool selected) {
    return IsDrawn({boundary + 2, 161},
                   selected ? "filemanagement/handle_select.bmp" : "filemanagement/handle_normal.bmp");
  }
  static void Minus() { Tap(160, 275); }
  static void Plus() { Tap(320, 275); }
  static QString Click() { return QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &"); }

private slots:
  void init() { StartHost(); }
  void cleanup() { mHost.reset(); }

  void sharesSuitTheMode_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QList<int>>("shares");
    QTest::addColumn<bool>("suits");
    const auto add = [](const char* name, int mode, QList<int> shares, bool suits) {
      QTest::newRow(name) << mode << shares << suits;
    };
    const int all = FileManagement::FM_MODE_EVT_N_PARK, events = FileManagement::FM_MODE_EVT_N,
              parkings = FileManagement::FM_MODE_PARK_N, none = FileManagement::FM_MODE_NUM;
    add("all", all, {30, 40, 30}, true);
    add("all, least", all, {10, 10, 80}, true);
    add("all, event too small", all, {9, 41, 50}, false);
    add("all, normal too small", all, {50, 0, 50}, false);
    add("all, parking too small", all, {50, 50, 0}, false);
    add("all, 90 together", all, {30, 30, 30}, false);
    add("all, 110 together", all, {40, 40, 30}, false);
    add("all, far beyond", all, {1000, -950, 50}, false);
    add("events", events, {50, 50, 0}, true);
    add("events, whatever parking", events, {50, 50, 77}, true);
    add("events, of three", events, {40, 30, 30}, false);
    add("events, too small", events, {5, 95, 0}, false);
    add("events, normal too small", events, {95, 5, 0}, false);
    add("parkings", parkings, {0, 50, 50}, true);
    add("parkings, whatever event", parkings, {9, 20, 80}, true);
    add("parkings, of three", parkings, {40, 30, 30}, false);
    add("parkings, too small", parkings, {0, 95, 5}, false);
    add("parkings, normal too small", parkings, {0, 5, 95}, false);
    add("no mode", none, {0, 0, 0}, true);
  }
  void sharesSuitTheMode() {
    QFETCH(int, mode);
    QFETCH(QList<int>, shares);
    QFETCH(bool, suits);
    QCOMPARE(FileManagement::CheckSizeSetCondition(FileManagement::FM_MODE(mode), shares[0], shares[1], shares[2]),
             suits);
  }
  void theStoredSplitIsShownOrTheDefault_data() {
    QTest::addColumn<int>("recorded");
    QTest::addColumn<QList<int>>("stored");
    QTest::addColumn<QList<int>>("shown");
    QTest::newRow("all") << int{Both} << QList<int>{20, 50, 30} << QList<int>{20, 50, 30};
    QTest::newRow("all, bad") << int{Both} << QList<int>{50, 50, 0} << QList<int>{30, 40, 30};
    QTest::newRow("no parking") << int{NoParking} << QList<int>{70, 30, 0} << QList<int>{70, 30, 0};
    QTest::newRow("no parking any more") << int{NoParking} << QList<int>{40, 30, 30} << QList<int>{50, 50, 0};
    QTest::newRow("no impacts") << int{NoImpacts} << QList<int>{0, 20, 80} << QList<int>{0, 20, 80};
    QTest::newRow("no impacts any more") << int{NoImpacts} << QList<int>{40, 30, 30} << QList<int>{0, 50, 50};
    QTest::newRow("a rest of the parkings") << int{NoParking} << QList<int>{70, 30, 77} << QList<int>{70, 30, 0};
    QTest::newRow("neither") << int{Neither} << QList<int>{40, 30, 30} << QList<int>{0, 0, 0};
  }
  void theStoredSplitIsShownOrTheDefault() {
    QFETCH(int, recorded);
    QFETCH(QList<int>, stored);
    QFETCH(QList<int>, shown);
    Open(recorded, stored[0], stored[1], stored[2]);
    QCOMPARE(Shown(), shown);
    QCOMPARE(Stored(), stored);  // until a button is pressed
  }
  void theBarShowsTheShares() {
    Open(Both, 20, 50, 30);
    for (int step = 0; step < 10; ++step)
      QCOMPARE(Seen(QRect(41 + 40 * step + 4, 116, 30, 36)),
               Picture(QLatin1String(step < 2   ? "filemanagement/bar_event.bmp"
                                     : step < 7 ? "filemanagement/bar_normal.bmp"
                                                : "filemanagement/bar_parking.bmp"))
                   .toImage()
                   .convertToFormat(QImage::Format_RGB32)
                   .copy(4, 4, 30, 36));
    QVERIFY(IsDrawn({80 + 39, 112}, "filemanagement/inter_line.bmp"));
    QVERIFY(IsDrawn({280 + 39, 112}, "filemanagement/inter_line.bmp"));
    QVERIFY(IsHandleAt(80, true));
    QVERIFY(IsHandleAt(280, false));
  }
  void aHandleIsTouched_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("selected");  // -1: no touch
    const auto add = [](int x, int y, int selected) { QTest::addRow("%d %d", x, y) << x << y << selected; };
    for (const int y : {161, 206})
      for (const int x : {122, 201}) add(x, y, 0);
    for (const int y : {161, 206})
      for (const int x : {282, 361}) add(x, y, 1);
    for (const int x : {120, 121, 202, 281, 362}) add(x, 180, -1);  // beside them, also on the boundary itself
    for (const int y : {160, 207}) {
      add(160, y, -1);
      add(320, y, -1);
    }
  }
  void aHandleIsTouched() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, selected);
    Open(Both, 30, 40, 30);  // the boundaries stand at 120 and 280
    if (selected == 0) Tap(300, 180);
    HostFake::Clear();
    Tap(x, y);
    QCOMPARE(Asked(), selected < 0 ? QStringList() : QStringList(Click()));
    QVERIFY(IsHandleAt(120, selected != 1));
    QVERIFY(IsHandleAt(280, selected == 1));
  }
  void handlesOneOverTheOther() {
    Open(Both, 40, 10, 50);  // 162..241 and 202..281
    Tap(282, 180);
    QVERIFY(IsHandleAt(160, true));
    Tap(250, 180);
    QVERIFY(IsHandleAt(200, true));
    Tap(220, 180);  // both: the first one
    QVERIFY(IsHandleAt(160, true));
  }
  void onlyTheBoundaryThatIsThere_data() {
    QTest::addColumn<int>("recorded");
    QTest::newRow("no parking") << int{NoParking};
    QTest::newRow("no impacts") << int{NoImpacts};
  }
  void onlyTheBoundaryThatIsThere() {
    QFETCH(int, recorded);
    Open(recorded, recorded == NoImpacts ? 0 : 30, 70, recorded == NoImpacts ? 30 : 0);
    const int boundary = recorded == NoImpacts ? 280 : 120;
    QVERIFY(IsHandleAt(boundary, true));
    for (int x = 0; x < 480; x += 2)
      if (x < boundary + 2 || x > boundary + 81) Tap(x, 180);
    QCOMPARE(Asked(), QStringList());
    Tap(boundary + 40, 180);
    QCOMPARE(Asked(), QStringList(Click()));
    Plus();
    QCOMPARE(Stored(), recorded == NoImpacts ? (QList<int>{0, 80, 20}) : (QList<int>{40, 60, 0}));
  }
  void buttonsHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("minus", QRect(QPoint(87, 251), QPoint(233, 300)));
    AddEdges("plus", QRect(QPoint(247, 251), QPoint(393, 300)));
  }
  void buttonsHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    Open(Both, 30, 40, 30);
    Tap(x, y);
    QCOMPARE(Asked(), hit ? QStringList(Click()) : QStringList());
    QCOMPARE(Stored(), !hit ? (QList<int>{30, 40, 30}) : x < 240 ? (QList<int>{20, 50, 30}) : (QList<int>{40, 30, 30}));
  }
  // Every split of every mode, each boundary, each button: one step, and never below 10.
  void everyStepFromEverySplit_data() {
    QTest::addColumn<int>("recorded");
    QTest::newRow("all") << int{Both};
    QTest::newRow("no parking") << int{NoParking};
    QTest::newRow("no impacts") << int{NoImpacts};
  }
  void everyStepFromEverySplit() {
    QFETCH(int, recorded);
    int splits = 0;
    for (int event = recorded == NoImpacts ? 0 : 10; event <= (recorded == NoImpacts ? 0 : 90); event += 10) {
      for (int parking = recorded == NoParking ? 0 : 10; parking <= (recorded == NoParking ? 0 : 90); parking += 10) {
        const int normal = 100 - event - parking;
        if (normal < 10) continue;
        ++splits;
        for (const bool first : {true, false}) {
          if (first ? recorded == NoImpacts : recorded == NoParking) continue;
          for (const bool plus : {true, false}) {
            Open(recorded, event, normal, parking);
            QCOMPARE(Shown(), (QList<int>{event, normal, parking}));
            if (recorded == Both) {
              // The one that has the other's place below it is reached at its free end.
              const int at = first ? event * 4 : 400 - parking * 4;
              Tap(first ? at + 3 : at + 80, 180);
              if (!IsHandleAt(at, true)) QFAIL("the handle was not reached");
            }
            QList<int> wanted{event, normal, parking};
            int& left = wanted[first ? 0 : 1];
            int& right = wanted[first ? 1 : 2];
            if (plus && right >= 20) {
              left += 10;
              right -= 10;
            } else if (!plus && left >= 20) {
              left -= 10;
              right += 10;
            }
            plus ? Plus() : Minus();
            QCOMPARE(Stored(), wanted);
            QCOMPARE(Shown(), wanted);
            mHost->BackPressed();
          }
        }
      }
    }
    QCOMPARE(splits, recorded == Both ? 36 : 9);
  }
  void aDefaultIsStoredByTheFirstButton() {
    Open(NoParking, 40, 30, 30);
    Minus();
    QCOMPARE(Stored(), (QList<int>{40, 60, 0}));
  }
  void noCommandIsSent() {
    Open(Both, 30, 40, 30);
    Minus();
    Plus();
    Plus();
    QVERIFY(Asked().filter(QStringLiteral("SEND_")).isEmpty());
  }
  void withoutAnythingToShareTheButtonsDoNothing() {
    Open(Neither, 40, 30, 30);
    Plus();
    Minus();
    for (int x = 0; x < 480; x += 5) Tap(x, 180);
    QCOMPARE(Stored(), (QList<int>{40, 30, 30}));
  }
};

QTEST_MAIN(FileManagementTest)
#include "filemanagement_test.moc"
