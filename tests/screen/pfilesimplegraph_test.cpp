#include "gui/parking/pfilesimplegraph.h"

#include <QDir>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <QtEndian>
#include <climits>
#include <ctime>
#include <memory>

#include "gui/base/globals.h"
#include "gui/parking/pfileinfo.h"
#include "tests/fake/hostfake.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
constexpr qint32 kStart = 1672617600;  // 2023-01-02 00:00:00 UTC
constexpr qint32 kPeriod = 44000;      // seconds: a pixel of the axis is 100 s

const QColor kPaper(224, 228, 230);
const QColor kPanel(248, 249, 250);
const QColor kInk(0, 0, 0);
const QColor kEventInk(196, 36, 44);
const QColor kMotionInk(24, 84, 190);
const QColor kButton(1, 2, 3);

class CoverScreen : public BaseWidget {
public:
  using BaseWidget::BaseWidget;
};
}  // namespace

class PFileSimpleGraphTest : public QObject {
  Q_OBJECT

  std::unique_ptr<HostFake> mHost;

  static std::unique_ptr<PFileInfo> Read(qint32 end, qint32 cut, const QList<qint32>& events,
                                         const QList<qint32>& motions) {
    QList<qint32> words{1, kStart, end, cut, qint32(events.size())};
    words << events << qint32(motions.size()) << motions;
    QByteArray bytes;
    for (const qint32 word : words) {
      const qint32 little = qToLittleEndian(word);
      bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
    }
    root.Write(QStringLiteral("/tmp/.info.bin"), bytes);
    auto info = std::make_unique<PFileInfo>();
    if (!info->openDataFile(root.Path(QStringLiteral("/tmp/.info.bin")))) qFatal("no report");
    return info;
  }
  PFileSimpleGraph* Show(const PFileInfo& info) {
    return mHost->Show(PFILEGRAPH, new PFileSimpleGraph(mHost.get(), &info));
  }
  // Times are given in seconds after the start.
  PFileSimpleGraph* Show(const QList<qint32>& events = {}, const QList<qint32>& motions = {}) {
    const auto absolute = [](QList<qint32> times) {
      for (qint32& time : times) time += kStart;
      return times;
    };
    return Show(*Read(kStart + kPeriod, 0, absolute(events), absolute(motions)));
  }

  static QLabel* Label(PFileSimpleGraph* graph, const char* name) {
    auto* label = graph->findChild<QLabel*>(QLatin1String(name));
    if (!label) qFatal("no label %s", name);
    return label;
  }
  static QTimer* Timer(PFileSimpleGraph* graph) { return graph->findChild<QTimer*>(QStringLiteral("mTimWidget")); }

  // The x in which every pixel from `top` down has the colour `ink`.
  static QList<int> LinesIn(PFileSimpleGraph* graph, int top, const QColor& ink) {
    const QImage image = graph->grab().toImage();
    QList<int> lines;
    for (int x = 0; x < 480; ++x) {
      int inked = 0;
      for (int y = top; y < top + 50; ++y) inked += image.pixelColor(x, y) == ink;
      if (inked == 50) lines << x;
      if (inked != 0 && inked != 50) qFatal("a line that is not whole at x %d", x);
    }
    return lines;
  }
  static QList<int> EventLines(PFileSimpleGraph* graph) { return LinesIn(graph, 30, kEventInk); }
  static QList<int> MotionLines(PFileSimpleGraph* graph) { return LinesIn(graph, 110, kMotionInk); }

  bool IsShown() const { return gWidgetManager.GetCurWidgetId() == PFILEGRAPH; }

private slots:
  // Pictures of the test's own, so that it can say which one stands where.
  void initTestCase() {
    QApplication::setFont(QFont(QStringLiteral("NanumBarunGothic")));
    QFile::remove(root.Path(QStringLiteral("/opt/gui/images")));
    QDir().mkpath(root.Path(QStringLiteral("/opt/gui/images/messagebox")));
    QImage button(175, 47, QImage::Format_RGB888);
    button.fill(kButton);
    QVERIFY(button.save(root.Path(QStringLiteral("/opt/gui/images/messagebox/message_button_ok_normal.bmp"))));
  }
  void init() {
    g_bIsPrevWidgetParkingSetting = false;
    mHost = std::make_unique<HostFake>();
    mHost->setPalette(QPalette(Qt::magenta, Qt::magenta));  // what shows through where a screen paints nothing
    mHost->show();
    mHost->Show(PREVIEW, new CoverScreen(mHost.get()));
    HostFake::Clear();
  }
  void cleanup() { mHost.reset(); }

  // ---- what is shown

  void textsSayWhatHappenedAndWhen() {
    PFileSimpleGraph* graph = Show({100, 200, 300}, {50});
    QCOMPARE(Label(graph, "mEventLabel")->text(), QStringLiteral("이벤트 녹화 3건"));
    QCOMPARE(Label(graph, "mMotionLabel")->text(), QStringLiteral("모션 녹화 1건"));
    QCOMPARE(Label(graph, "mStartLabel")->text(), QStringLiteral("01월 02일 00:00"));
    QCOMPARE(Label(graph, "mEndLabel")->text(), QStringLiteral("01월 02일 12:13"));
    QCOMPARE(Label(graph, "mLowVoltageLabel")->text(), QString());
  }
  void textsOfAPeriodEndedByLowVoltage() {
    PFileSimpleGraph* graph = Show(*Read(0, kStart + 7 * 86400 + 60, {}, {}));
    QCOMPARE(Label(graph, "mEventLabel")->text(), QStringLiteral("이벤트 녹화 0건"));
    QCOMPARE(Label(graph, "mEndLabel")->text(), QStringLiteral("01월 09일 00:01"));
    QCOMPARE(Label(graph, "mLowVoltageLabel")->text(), QStringLiteral("저전압으로 주차녹화가 종료되었습니다."));
    QCOMPARE(Label(graph, "mLowVoltageLabel")->palette().color(QPalette::WindowText), kEventInk);
  }
  void timesAreThoseOfTheLocalCalendar() {
    qputenv("TZ", "KST-9");
    tzset();
    PFileSimpleGraph* graph = Show();
    const QString start = Label(graph, "mStartLabel")->text();
    qputenv("TZ", "UTC");
    tzset();
    QCOMPARE(start, QStringLiteral("01월 02일 09:00"));
  }
  void labelsStandWhereTheyShould_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QRect>("box");
    QTest::addColumn<int>("px");
    QTest::addColumn<int>("align");
    QTest::newRow("events") << QByteArray("mEventLabel") << QRect(20, 5, 440, 22) << 18 << int{Qt::AlignLeft};
    QTest::newRow("motions") << QByteArray("mMotionLabel") << QRect(20, 85, 440, 22) << 18 << int{Qt::AlignLeft};
    QTest::newRow("start") << QByteArray("mStartLabel") << QRect(18, 166, 220, 24) << 18 << int{Qt::AlignLeft};
    QTest::newRow("end") << QByteArray("mEndLabel") << QRect(243, 166, 220, 24) << 18 << int{Qt::AlignRight};
    QTest::newRow("cut") << QByteArray("mLowVoltageLabel") << QRect(20, 200, 440, 40) << 19 << int{Qt::AlignHCenter};
  }
  void labelsStandWhereTheyShould() {
    QFETCH(QByteArray, name);
    QFETCH(int, px);
    QFETCH(int, align);
    const PFileSimpleGraph* graph =
        Show(*Read(0, kStart + kPeriod, QList<qint32>(500000, kStart), QList<qint32>(500000, 0)));
    const QLabel* label = graph->findChild<QLabel*>(QLatin1String(name));
    QTEST(label->geometry(), "box");
    QCOMPARE(label->font().pixelSize(), px);
    QCOMPARE(label->font().bold(), name == "mEventLabel" || name == "mMotionLabel");
    QCOMPARE(label->alignment() & Qt::AlignHorizontal_Mask, Qt::Alignment(align));
    QCOMPARE(label->textFormat(), Qt::PlainText);
    const QFontMetrics face(label->font());
    QVERIFY(face.horizontalAdvance(label->text()) <= label->width());
    QVERIFY(face.height() <= label->height());
  }

  void wholeScreenIsPaintedEvenWithoutThePicture() {
    const QImage image = Show({100}, {100})->grab().toImage();
    QCOMPARE(image.size(), QSize(480, 320));
    for (int y = 0; y < 320; ++y)
      for (int x = 0; x < 480; ++x) QVERIFY(image.pixelColor(x, y) != QColor(Qt::magenta));
    for (const QPoint at : {QPoint(0, 0), QPoint(479, 0), QPoint(0, 319), QPoint(479, 319), QPoint(240, 240)})
      QCOMPARE(image.pixelColor(at), kPaper);
  }
  void framesStandAroundBothRows() {
    const QImage image = Show()->grab().toImage();
    for (const int top : {28, 108}) {
      const QRect frame(18, top, 445, 54);
      for (int y = top; y < top + 54; ++y)
        for (int x = 17; x <= 463; ++x) {
          const QColor expected = !frame.contains(x, y)                         ? kPaper
                                  : frame.adjusted(2, 2, -2, -2).contains(x, y) ? kPanel
                                                                                : kInk;
          QVERIFY2(image.pixelColor(x, y) == expected, qPrintable(QStringLiteral("%1 %2").arg(x).arg(y)));
        }
    }
  }
  void okButtonStandsBelow() {
    const QImage image = Show()->grab().toImage();
    for (const QPoint at : {QPoint(153, 260), QPoint(327, 306)}) QCOMPARE(image.pixelColor(at), kButton);
    for (const QPoint at : {QPoint(152, 260), QPoint(153, 259), QPoint(328, 306), QPoint(327, 307)})
      QCOMPARE(image.pixelColor(at), kPaper);
  }

  // ---- lines

  void recordingIsDrawnAtItsTime_data() {
    QTest::addColumn<qint32>("time");  // seconds after the start
    QTest::addColumn<int>("x");        // left one of two
    QTest::newRow("at the start") << 0 << 20;
    QTest::newRow("in the first pixel") << 99 << 20;
    QTest::newRow("in the second pixel") << 100 << 21;
    QTest::newRow("a quarter") << 11000 << 130;
    QTest::newRow("just before a pixel") << 11199 << 131;
    QTest::newRow("a fraction that no float holds") << 11200 << 132;
    QTest::newRow("half") << 22000 << 240;
    QTest::newRow("a second before the end") << kPeriod - 1 << 459;
    QTest::newRow("at the end") << kPeriod << 459;
    QTest::newRow("a second before the start") << -1 << 20;
    QTest::newRow("years before the start") << -kStart << 20;
    QTest::newRow("before 1970") << INT_MIN << 20;
    QTest::newRow("after the end") << kPeriod + 1 << 459;
    QTest::newRow("years after the end") << INT_MAX - kStart << 459;
  }
  void recordingIsDrawnAtItsTime() {
    QFETCH(qint32, time);
    QFETCH(int, x);
    const qint32 at = time == INT_MIN ? INT_MIN : kStart + time;
    const QList<int> line{x, x + 1};
    PFileSimpleGraph* graph = Show(*Read(kStart + kPeriod, 0, {at}, {}));
    QCOMPARE(EventLines(graph), line);
    QCOMPARE(MotionLines(graph), QList<int>());
    graph = Show(*Read(kStart + kPeriod, 0, {}, {at}));
    QCOMPARE(EventLines(graph), QList<int>());
    QCOMPARE(MotionLines(graph), line);
  }
  void lineAtTheEndStaysInsideTheFrame() {
    const QImage image = Show({kPeriod}, {kPeriod})->grab().toImage();
    for (const int y : {30, 79, 110, 159}) {
      QVERIFY(image.pixelColor(460, y) != kPanel);
      QCOMPARE(image.pixelColor(461, y), kInk);
      QCOMPARE(image.pixelColor(462, y), kInk);
    }
  }
  void bothKindsStandInTheirRows() {
    PFileSimpleGraph* graph = Show({1000, 30000}, {2000, 2100, 40000});
    QCOMPARE(EventLines(graph), (QList<int>{30, 31, 320, 321}));
    QCOMPARE(MotionLines(graph), (QList<int>{40, 41, 42, 420, 421}));
  }
  void axisEndsWithTheLowVoltageCut() {
    PFileSimpleGraph* graph = Show(*Read(kStart + 2 * kPeriod, kStart + kPeriod, {kStart + kPeriod / 2}, {}));
    QCOMPARE(EventLines(graph), (QList<int>{240, 241}));
  }
  void shortestPeriod() {
    PFileSimpleGraph* graph = Show(*Read(kStart + 1, 0, {kStart}, {kStart + 1}));
    QCOMPARE(EventLines(graph), (QList<int>{20, 21}));
    QCOMPARE(MotionLines(graph), (QList<int>{459, 460}));
  }
  void graphKeepsNothingOfTheReport() {
    auto info = Read(kStart + kPeriod, 0, {kStart + 1000}, {kStart + 2000});
    PFileSimpleGraph* graph = Show(*info);
    info.reset();
    QCOMPARE(EventLines(graph), (QList<int>{30, 31}));
    QCOMPARE(MotionLines(graph), (QList<int>{40, 41}));
    QCOMPARE(Label(graph, "mEventLabel")->text(), QStringLiteral("이벤트 녹화 1건"));
  }
  void reportThatWasNeverReadIsAnEmptyGraph() {
    const PFileInfo info;
    PFileSimpleGraph* graph = Show(info);
    QCOMPARE(EventLines(graph), QList<int>());
    QCOMPARE(Label(graph, "mMotionLabel")->text(), QStringLiteral("모션 녹화 0건"));
  }

  // ---- ways out

  void touchLeavesOnTheButtonOnly_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("leaves");
    QTest::newRow("upper left") << 154 << 261 << true;
    QTest::newRow("lower right") << 327 << 306 << true;
    QTest::newRow("middle") << 240 << 283 << true;
    QTest::newRow("left of it") << 153 << 283 << false;
    QTest::newRow("right of it") << 328 << 283 << false;
    QTest::newRow("above it") << 240 << 260 << false;
    QTest::newRow("below it") << 240 << 307 << false;
    QTest::newRow("on the graph") << 240 << 50 << false;
    QTest::newRow("beside the screen") << -1 << -1 << false;
  }
  void touchLeavesOnTheButtonOnly() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(bool, leaves);
    Show()->touchEvent(TOUCH_PRESS, x, y);
    QCOMPARE(IsShown(), !leaves);
    QCOMPARE(HostFake::Asked(), leaves ? QStringList{QStringLiteral("back")} : QStringList());
  }
  void recorderClosesTheReport() {
    Show()->recvEvent(RECV_ZEL_STATUS_PARK_INFO_CLOSE, 0);
    QVERIFY(!IsShown());
    QCOMPARE(HostFake::Asked(), QStringList{QStringLiteral("back")});
  }
  void otherEventsDoNotCloseIt() {
    PFileSimpleGraph* graph = Show();
    for (int event = RECV_ZEL_STATUS_GUI_INIT; event < RECV_ZEL_STATUS_PARK_INFO_CLOSE; ++event)
      graph->recvEvent(event, 1);
    QVERIFY(IsShown());
    QCOMPARE(HostFake::Asked(), QStringList());
  }
  void leavesByItselfAfterThirtySeconds() {
    PFileSimpleGraph* graph = Show();
    QVERIFY(Timer(graph)->isActive());
    QCOMPARE(Timer(graph)->interval(), 30000);
    graph->TimeoutWidget();
    QVERIFY(!IsShown());
    QCOMPARE(HostFake::Asked(), QStringList{QStringLiteral("back")});
  }
  void timerIsWhatMakesItLeave() {
    Timer(Show())->start(0);
    QTRY_VERIFY(!IsShown());
  }
  void staysWhenOpenedFromTheParkingSettings() {
    g_bIsPrevWidgetParkingSetting = true;
    PFileSimpleGraph* graph = Show();
    QVERIFY(!Timer(graph)->isActive());
    QVERIFY(g_bIsPrevWidgetParkingSetting);
  }
  void nextReportOfThePreviewLeavesByItselfAgain_data() {
    QTest::addColumn<int>("way");
    QTest::newRow("button") << 0;
    QTest::newRow("recorder") << 1;
    QTest::newRow("back by the window") << 2;
    QTest::newRow("jump") << 3;
  }
  void nextReportOfThePreviewLeavesByItselfAgain() {
    QFETCH(int, way);
    g_bIsPrevWidgetParkingSetting = true;
    PFileSimpleGraph* graph = Show();
    if (way == 0) graph->touchEvent(TOUCH_PRESS, 240, 280);
    if (way == 1) graph->recvEvent(RECV_ZEL_STATUS_PARK_INFO_CLOSE, 0);
    if (way == 2) mHost->BackPressed();
    if (way == 3) mHost->Jumped(PREVIEW);
    QVERIFY(!IsShown());
    QVERIFY(!g_bIsPrevWidgetParkingSetting);
    QVERIFY(Timer(Show())->isActive());
  }
  void timerDoesNotCloseTheScreenAboveIt() {
    PFileSimpleGraph* graph = Show();
    mHost->Show(SDFORMAT, new CoverScreen(mHost.get()));
    graph->TimeoutWidget();
    QCOMPARE(gWidgetManager.GetCurWidgetId(), SDFORMAT);
    QVERIFY(Timer(graph)->isActive());
  }
};

QTEST_MAIN(PFileSimpleGraphTest)
#include "pfilesimplegraph_test.moc"
