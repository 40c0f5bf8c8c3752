#include "gui/setup/powercutsetting.h"

#include <limits>

#include "tests/fake/screentest.h"

static TestRoot root;

class PowerCutSettingTest : public ScreenTest {
  Q_OBJECT

  static QList<float> Volts(int type) {
    if (type == 1) return {23.0F, 23.6F, 24.0F, 24.4F, 24.8F, 27.0F, 0.0F};
    return {11.0F, 11.8F, 12.0F, 12.2F, 12.4F, 12.6F, 12.8F, 13.0F, 0.0F};
  }
  static QString PictureOf(int level, float volts) {
    return volts == 0.0F ? QStringLiteral("powercutsetting/%1/non.bmp").arg(level + 1)
                         : QString::asprintf("powercutsetting/%d/%.1f.bmp", level + 1, double{volts});
  }
  static QRect CellOf(int level) { return {80 * (level % 6), level < 6 ? 60 : 160, 80, 100}; }
  static bool IsShown(int level, float volts) { return IsDrawn(CellOf(level).topLeft(), PictureOf(level, volts)); }
  static void TapCell(int level) {
    const QPoint at = CellOf(level).center();
    Tap(at.x(), at.y());
  }
  static void TapRecommended() { Tap(120, 290); }
  static void TapManual() { Tap(360, 290); }
  static QString Click() { return QStringLiteral("sh aplay /opt/ipnc/voice/touch.wav &"); }

  void Open(int type, int manual) {
    Setting().gPower_cut_lvl_type = type;
    Setting().manual_volt_use = manual;
    mHost->Show(POWERCUTSETTING, new PowerCutSetting(mHost.get()));
    HostFake::Clear();
  }
  static void AddTypes() {
    QTest::addColumn<int>("type");
    QTest::newRow("12 V") << 0;
    QTest::newRow("24 V") << 1;
  }

private slots:
  void init() {
    StartHost();
    for (float& volts : Setting().low_volt_cut) volts = 0.0F;
  }
  void cleanup() { mHost.reset(); }

  void everyStoredVoltageIsShown_data() { AddTypes(); }
  void everyStoredVoltageIsShown() {
    QFETCH(int, type);
    const QList<float> table = Volts(type);
    for (qsizetype shift = 0; shift < table.size(); ++shift) {
      for (int level = 0; level < 12; ++level) Setting().low_volt_cut[level] = table[(level + shift) % table.size()];
      Open(type, 0);  // recommended: what is stored is shown all the same
      for (int level = 0; level < 12; ++level) QVERIFY(IsShown(level, table[(level + shift) % table.size()]));
      mHost->BackPressed();
    }
  }
  void aVoltageInNoRowIsShownAsTheFirst_data() { AddTypes(); }
  void aVoltageInNoRowIsShownAsTheFirst() {
    QFETCH(int, type);
    const float odd[] = {
        11.5F,    -1.0F, 1e30F, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
        12.39999F};
    for (int level = 0; level < 12; ++level) Setting().low_volt_cut[level] = odd[level % 6];
    Open(type, 1);
    for (int level = 0; level < 12; ++level) QVERIFY(IsShown(level, Volts(type)[0]));
  }
  void aCellGoesThroughItsTable_data() { AddTypes(); }
  void aCellGoesThroughItsTable() {
    QFETCH(int, type);
    const QList<float> table = Volts(type);
    for (int level = 0; level < 12; ++level) Setting().low_volt_cut[level] = table[0];
    Open(type, 1);
    for (int level = 0; level < 12; ++level) {
      for (qsizetype i = 1; i <= table.size(); ++i) {
        HostFake::Clear();
        TapCell(level);
        QCOMPARE(Setting().low_volt_cut[level], table[i % table.size()]);
        QVERIFY(IsShown(level, table[i % table.size()]));
        QCOMPARE(Asked(), QStringList(Click()));
      }
      for (int other = 0; other < 12; ++other) QCOMPARE(Setting().low_volt_cut[other], table[0]);
    }
  }
  void cellsHaveTheirAreas_data() {
    QTest::addColumn<int>("level");
    for (int level = 0; level < 12; ++level) QTest::addRow("level %d", level + 1) << level;
  }
  void cellsHaveTheirAreas() {
    QFETCH(int, level);
    const QRect area = CellOf(level).adjusted(1, 1, 0, 0);
    Open(0, 1);
    int taps = 0;
    for (const QPoint at : {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()}) {
      Tap(at.x(), at.y());
      QCOMPARE(Asked().size(), ++taps);
    }
    const float before = Setting().low_volt_cut[level];
    Tap(area.left() - 1, area.center().y());
    Tap(area.center().x(), area.top() - 1);
    QCOMPARE(Setting().low_volt_cut[level], before);
  }
  void onlyTheCellIsPainted() {
    Open(0, 1);
    QCoreApplication::processEvents();
    const QRegion painted = PaintedBy([] { TapCell(7); });
    QCOMPARE(painted, QRegion(CellOf(7)));
  }
  void anUnknownBatteryChangesNothing() {
    Open(7, 1);
    TapCell(3);
    QCOMPARE(Setting().low_volt_cut[3], 0.0F);
    QVERIFY(IsShown(3, 0.0F));
  }
  void recommendedVoltagesCannotBeTouched() {
    Open(0, 0);
    for (int level = 0; level < 12; ++level) TapCell(level);
    TapRecommended();
    QCOMPARE(Asked(), QStringList());
    QVERIFY(IsDrawn({40, 270}, "powercutsetting/button_1.bmp"));
    QVERIFY(IsDrawn({276, 270}, "powercutsetting/button_off_2.bmp"));
  }
  void betweenRecommendedAndManual_data() { AddTypes(); }
  void betweenRecommendedAndManual() {
    QFETCH(int, type);
    const QList<float> table = Volts(type);
    for (int level = 0; level < 12; ++level) Setting().low_volt_cut[level] = table[1];
    Open(type, 0);
    TapManual();
    QCOMPARE(Setting().manual_volt_use, 1);
    QCOMPARE(Asked(), QStringList(Click()));
    QVERIFY(IsDrawn({40, 270}, "powercutsetting/button_off_1.bmp"));
    QVERIFY(IsDrawn({276, 270}, "powercutsetting/button_2.bmp"));
    TapManual();
    QCOMPARE(Asked().size(), 1);  // it is manual already
    TapRecommended();
    QCOMPARE(Setting().manual_volt_use, 0);
    const int recommended[] = {4, 4, 3, 2, 2, 2, 2, 2, 2, 2, 2, 3};
    for (int level = 0; level < 12; ++level) {
      QVERIFY(IsShown(level, table[recommended[level]]));
      QCOMPARE(Setting().low_volt_cut[level], table[1]);  // the driver's own are kept
    }
    TapManual();
    for (int level = 0; level < 12; ++level) QVERIFY(IsShown(level, table[1]));
  }
  void buttonsHaveTheirAreas_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("hit");
    AddEdges("manual", QRect(QPoint(277, 271), QPoint(439, 309)));
  }
  void buttonsHaveTheirAreas() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, hit);
    Open(0, 0);
    Tap(x, y);
    QCOMPARE(Setting().manual_volt_use, int{hit});
    if (!hit) return;
    Tap(x - 236, y);  // recommended, in the same place of its button
    QCOMPARE(Setting().manual_volt_use, 0);
  }
  void headerKeys() {
    Open(0, 0);
    QVERIFY(IsDrawn({80, 0}, "powercutsetting/title.bmp"));
    Tap(440, 30);
    QCOMPARE(Asked(), QStringList(QStringLiteral("back")));
  }
};

QTEST_MAIN(PowerCutSettingTest)
#include "powercutsetting_test.moc"
