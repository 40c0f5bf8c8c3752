// The report that the recorder leaves of a parking, as the interface reads it.
#include "gui/parking/pfileinfo.h"
#include "tests/system/recorderfixture.h"

namespace {
constexpr char kReport[] = "/tmp/.info.bin";
}  // namespace

class ParkingReportTest : public RecorderFixture {
  Q_OBJECT

  static bool Read(PFileInfo* info) {
    if (!info->openDataFile(root.Path(QLatin1String(kReport)))) return false;
    info->parsingData();
    return true;
  }
  static int Sum(const PFileInfo& info, int (PFileInfo::*element)(int) const) {
    int sum = 0;
    for (int i = 0; i < 5; ++i) sum += (info.*element)(i);
    return sum;
  }

private slots:
  void initTestCase() { QVERIFY(keyIsSet); }
  void init() { Prepare(); }
  void cleanup() { mRecorder.reset(); }
  void cleanupTestCase() { Recorder::RemoveTransport(); }

  void theReportOfEveryPeriodIsSorted_data() {
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QString>("end");
    QTest::addColumn<int>("levels");
    for (const char* end : {"parkOut", "parkLowVoltage"}) {
      QTest::addRow("%s after half an hour", end) << 30 << QString::fromLatin1(end) << 1;
      QTest::addRow("%s after one and a half", end) << 90 << QString::fromLatin1(end) << 3;
      QTest::addRow("%s in the morning", end) << 600 << QString::fromLatin1(end) << 5;
    }
  }
  void theReportOfEveryPeriodIsSorted() {
    QFETCH(int, minutes);
    QFETCH(QString, end);
    QFETCH(int, levels);
    Start();
    QVERIFY(Do("parkIn", {{"minutesAgo", minutes}}));
    QVERIFY(Do("impact", {{"minutesAgo", minutes}}) && Do("impact", {{"minutesAgo", 0}}));
    for (int i = 0; i < 3; ++i) QVERIFY(Do("motion", {{"minutesAgo", minutes / 2}}));
    QVERIFY(Do(end));
    QVERIFY(Came(RECV_ZEL_STATUS_PARK_MODE_OUT, 0));
    PFileInfo info;
    QVERIFY(Read(&info));
    QCOMPARE(info.getLowVoltageFlag(), end == QLatin1String("parkLowVoltage"));
    QCOMPARE(info.getEvtParkFileCnt(), 2);
    QCOMPARE(info.getMotionParkFileCnt(), 3);
    QCOMPARE(info.getSepLevel(), levels);
    if (levels == 1) return;
    QCOMPARE(info.getEvtValueElement(0), 2);  // the one at the start, and the one that every kind has more
    QCOMPARE(info.getEvtValueElement(levels - 1), 1);
    QCOMPARE(info.getMotionVlaueElement(levels / 2), 3);
  }

  void aReportCanBeHadWithoutAParking_data() {
    QTest::addColumn<int>("levels");  // 0: none
    QTest::addColumn<int>("impacts");
    QTest::addColumn<int>("motions");
    QTest::newRow("1 level") << 1 << 2 << 3;
    QTest::newRow("3 levels") << 3 << 3 << 8;
    QTest::newRow("5 levels") << 5 << 4 << 13;
    QTest::newRow("no recordings") << 3 << 0 << 0;
    for (const char* kind : {"empty", "short", "lying", "huge"}) QTest::newRow(kind) << 0 << 0 << 0;
  }
  void aReportCanBeHadWithoutAParking() {
    QFETCH(int, levels);
    QFETCH(int, impacts);
    QFETCH(int, motions);
    Start();
    QVERIFY(Do("report", {{"kind", QTest::currentDataTag()}}));
    QVERIFY(root.Exists(kReport));
    QVERIFY(Came(RECV_ZEL_STATUS_PARK_MODE_OUT, 0));
    PFileInfo info;
    QCOMPARE(Read(&info), levels > 0);
    if (levels == 0) return;
    QCOMPARE(info.getSepLevel(), levels);
    QCOMPARE(info.getEvtParkFileCnt(), impacts);
    QCOMPARE(info.getMotionParkFileCnt(), motions);
    if (levels == 1) return;
    QCOMPARE(Sum(info, &PFileInfo::getEvtValueElement), impacts == 0 ? 0 : impacts + 1);
    for (int i = 0; i < levels && impacts > 0; ++i) QVERIFY(info.getMotionVlaueElement(i) > 0);
  }
  void theBadReportsAreBadInTheirOwnWay() {
    Start();
    const auto size = [this](const char* kind) {
      return Do("report", {{"kind", kind}}) ? root.Read(QLatin1String(kReport)).size() : -1;
    };
    QCOMPARE(size("empty"), 0);
    QCOMPARE(size("short"), 19);
    QCOMPARE(size("lying"), 20 + 4 * 2 + 4 + 4 * 3);
    QVERIFY(size("huge") > 4 * 1024 * 1024);
  }
  void aCarThatIsParkedLeavesItsOwnReport() {
    Start();
    QVERIFY(Do("parkIn"));
    QVERIFY(IsSentence(Refusal("report", {{"kind", "1 level"}})));
    QVERIFY(!root.Exists(kReport));
    QVERIFY(Do("parkOut"));
    QVERIFY(root.Exists(kReport));
  }
  void anotherReportTakesThePlaceOfTheOneBefore() {
    Start();
    QVERIFY(Do("report", {{"kind", "huge"}}) && Do("report", {{"kind", "no recordings"}}));
    QCOMPARE(root.Read(QLatin1String(kReport)).size(), 24);
    QCOMPARE(QDir(root.Path("/tmp")).entryList({".info*"}, QDir::Files | QDir::Hidden), QStringList{".info.bin"});
  }
};

QTEST_GUILESS_MAIN(ParkingReportTest)
#include "parkingreport_test.moc"
