#include "gui/parking/pfileinfo.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <climits>

namespace {
constexpr qint32 kStart = 1672617600;

QByteArray Bytes(const QList<qint32>& words) {
  QByteArray bytes;
  for (const qint32 word : words) {
    const qint32 little = qToLittleEndian(word);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
  }
  return bytes;
}

QByteArray Report(qint32 start, qint32 end, qint32 cut, const QList<qint32>& events = {},
                  const QList<qint32>& motions = {}) {
  QList<qint32> words{1, start, end, cut, qint32(events.size())};
  words << events << qint32(motions.size()) << motions;
  return Bytes(words);
}

// `count` recordings, all of the same second.
QByteArray ReportOf(int events, int motions) {
  return Report(kStart, kStart + 7200, 0, QList<qint32>(events, kStart + 1), QList<qint32>(motions, kStart + 2));
}

QList<qint32> Times(const qint32* times, qint32 count) {
  return times ? QList<qint32>(times, times + count + 1) : QList<qint32>();
}
}  // namespace

class PFileInfoTest : public QObject {
  Q_OBJECT

  QTemporaryDir mFolder;

  QString PathOf(const QByteArray& bytes) {
    const QString path = mFolder.filePath(QStringLiteral("info.bin"));
    QFile::remove(path);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write a report");
    return path;
  }
  bool Open(PFileInfo& info, const QByteArray& bytes) { return info.openDataFile(PathOf(bytes)); }

  static QList<int> Events(const PFileInfo& info) {
    QList<int> values;
    for (int i = 0; i < 5; ++i) values << info.getEvtValueElement(i);
    return values;
  }
  static QList<int> Motions(const PFileInfo& info) {
    QList<int> values;
    for (int i = 0; i < 5; ++i) values << info.getMotionVlaueElement(i);
    return values;
  }
  static QList<qint32> Marks(const PFileInfo& info) {
    return {info.getGraphColArrayElement(0), info.getGraphColArrayElement(1), info.getGraphColArrayElement(2)};
  }
  static QList<qint32> Bounds(const PFileInfo& info) {
    QList<qint32> values;
    for (int i = 0; i < 5; ++i) values << info.getGraphRowArrayElement(i);
    return values;
  }
  static void CompareEmpty(const PFileInfo& info) {
    QCOMPARE(info.getLowVoltageFlag(), false);
    QCOMPARE(info.getSepLevel(), 0);
    QCOMPARE(info.getMaxFileCnt(), 0);
    QCOMPARE(info.getCompenSationMaxFileCnt(), 0);
    QCOMPARE(info.getParkStartTime(), 0);
    QCOMPARE(info.getParkEndTime(), 0);
    QCOMPARE(info.getLowVoltageTime(), 0);
    QCOMPARE(info.getEvtParkFileCnt(), 0);
    QCOMPARE(info.getMotionParkFileCnt(), 0);
    QVERIFY(!info.getEvtParkFileTimePointer());
    QVERIFY(!info.getMotionParkFileTimePointer());
    QCOMPARE(Marks(info), (QList<qint32>{0, 0, 0}));
    QCOMPARE(Bounds(info), (QList<qint32>{0, 0, 0, 0, 0}));
    QCOMPARE(Events(info), (QList<int>{0, 0, 0, 0, 0}));
    QCOMPARE(Motions(info), (QList<int>{0, 0, 0, 0, 0}));
  }

private slots:
  // ---- reading

  void newReportIsEmpty() { CompareEmpty(PFileInfo()); }

  void reportIsReadWhole() {
    PFileInfo info;
    QVERIFY(Open(info, Report(100, 9000, 0, {150, 250, 350}, {50, 10000})));
    QCOMPARE(info.getParkStartTime(), 100);
    QCOMPARE(info.getParkEndTime(), 9000);
    QCOMPARE(info.getLowVoltageTime(), 0);
    QCOMPARE(info.getLowVoltageFlag(), false);
    QCOMPARE(info.getEvtParkFileCnt(), 3);
    QCOMPARE(info.getMotionParkFileCnt(), 2);
    QCOMPARE(Times(info.getEvtParkFileTimePointer(), 3), (QList<qint32>{150, 250, 350, 0}));
    QCOMPARE(Times(info.getMotionParkFileTimePointer(), 2), (QList<qint32>{50, 10000, 0}));
  }
  void bytesAreLittleEndian() {
    QByteArray bytes(24, '\0');
    bytes[0] = 1;
    bytes[4] = 0x04;
    bytes[5] = 0x03;
    bytes[6] = 0x02;
    bytes[7] = 0x01;
    bytes[11] = 0x7f;
    PFileInfo info;
    QVERIFY(Open(info, bytes));
    QCOMPARE(info.getParkStartTime(), 0x01020304);
    QCOMPARE(info.getParkEndTime(), 0x7f000000);
  }
  void reportEndedByLowVoltageSaysSo() {
    PFileInfo info;
    QVERIFY(Open(info, Report(100, 0, 101)));
    QVERIFY(info.getLowVoltageFlag());
    QCOMPARE(info.getLowVoltageTime(), 101);
    QCOMPARE(info.getParkEndTime(), 0);
  }
  void recordingsOfOneKindOnly() {
    PFileInfo info;
    QVERIFY(Open(info, Report(100, 9000, 0, {}, {7})));
    QVERIFY(!info.getEvtParkFileTimePointer());
    QCOMPARE(Times(info.getMotionParkFileTimePointer(), 1), (QList<qint32>{7, 0}));
    QVERIFY(Open(info, Report(100, 9000, 0, {8}, {})));
    QCOMPARE(Times(info.getEvtParkFileTimePointer(), 1), (QList<qint32>{8, 0}));
    QVERIFY(!info.getMotionParkFileTimePointer());
  }

  void reportIsRefused_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("19 bytes") << Report(100, 9000, 0).left(19);
    QTest::newRow("valid 0") << Bytes({0, 100, 9000, 0, 0, 0});
    QTest::newRow("valid 2") << Bytes({2, 100, 9000, 0, 0, 0});
    QTest::newRow("valid -1") << Bytes({-1, 100, 9000, 0, 0, 0});
    QTest::newRow("valid in big-endian order") << Bytes({0x01000000, 100, 9000, 0, 0, 0});
    QTest::newRow("start 0") << Report(0, 9000, 0);
    QTest::newRow("start -1") << Report(-1, 9000, 0);
    QTest::newRow("start as small as can be") << Report(INT_MIN, 9000, 0);
    QTest::newRow("no end") << Report(100, 0, 0);
    QTest::newRow("end before start") << Report(100, 99, 0);
    QTest::newRow("end at start") << Report(100, 100, 0);
    QTest::newRow("end so small that the difference overflows") << Report(100, INT_MIN, 0);
    QTest::newRow("cut at start") << Report(100, 0, 100);
    QTest::newRow("cut before start, end after") << Report(100, 9000, 99);
    QTest::newRow("cut so small that the difference overflows") << Report(INT_MAX, 9000, INT_MIN);
    QTest::newRow("one event that is not there") << Bytes({1, 100, 9000, 0, 1});
    QTest::newRow("one event more than there are") << Bytes({1, 100, 9000, 0, 3, 5, 6});
    QTest::newRow("events beyond what memory holds") << Bytes({1, 100, 9000, 0, INT_MAX, 5, 6, 7});
    QTest::newRow("count whose bytes overflow to 4") << Bytes({1, 100, 9000, 0, 0x40000001, 5, 6, 7});
    QTest::newRow("one motion that is not there") << Bytes({1, 100, 9000, 0, 0, 1});
    QTest::newRow("one motion more than there are") << Bytes({1, 100, 9000, 0, 1, 5, 2, 6});
    QTest::newRow("motions beyond what memory holds") << Bytes({1, 100, 9000, 0, 1, 5, INT_MAX, 6});
    QTest::newRow("last time torn") << Report(100, 9000, 0, {5}, {6}).chopped(1);
    QTest::newRow("larger than any report") << Report(100, 9000, 0) + QByteArray(4 * 1024 * 1024, '\0');
  }
  void reportIsRefused() {
    QFETCH(QByteArray, bytes);
    PFileInfo info;
    QVERIFY(!Open(info, bytes));
    CompareEmpty(info);
  }

  void shortestPeriodIsAReport_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("end one second later") << Report(1, 2, 0);
    QTest::newRow("cut one second later") << Report(1, 0, 2);
    QTest::newRow("cut later, end before") << Report(100, 5, 101);
    QTest::newRow("last second there is") << Report(INT_MAX - 1, INT_MAX, 0);
  }
  void shortestPeriodIsAReport() {
    QFETCH(QByteArray, bytes);
    PFileInfo info;
    QVERIFY(Open(info, bytes));
  }

  // Cut at every byte: the head alone is a report without motions; counts are believed only with all their times.
  void reportCutAtAnyByte() {
    const QByteArray whole = Report(100, 9000, 0, {200, 300, 400}, {500, 600, 700, 800, 900, 1000});
    QCOMPARE(whole.size(), 60);
    for (int length = 0; length <= 64; ++length) {
      PFileInfo info;
      const QByteArray bytes = whole.leftJustified(length, 'x', true);
      const bool events = length >= 32;  // all three; the count of the motions may be missing
      const bool motions = length < 36 || length >= 60;
      QVERIFY2(Open(info, bytes) == (events && motions), qPrintable(QString::number(length)));
      QCOMPARE(info.getEvtParkFileCnt(), events && motions ? 3 : 0);
      QCOMPARE(info.getMotionParkFileCnt(), length >= 60 ? 6 : 0);
    }
  }
  void headAloneIsAReportWithoutRecordings() {
    PFileInfo info;
    QVERIFY(Open(info, Bytes({1, 100, 9000, 0, 0})));
    QCOMPARE(info.getEvtParkFileCnt(), 0);
    QCOMPARE(info.getMotionParkFileCnt(), 0);
  }
  void negativeCountsAreNoRecordings() {
    PFileInfo info;
    QVERIFY(Open(info, Bytes({1, 100, 9000, 0, -1, INT_MIN})));
    QCOMPARE(info.getEvtParkFileCnt(), 0);
    QCOMPARE(info.getMotionParkFileCnt(), 0);
    QVERIFY(!info.getEvtParkFileTimePointer());
    QVERIFY(!info.getMotionParkFileTimePointer());
    info.parsingData();
    QCOMPARE(Events(info), (QList<int>{0, 0, 0, 0, 0}));
    QCOMPARE(Motions(info), (QList<int>{0, 0, 0, 0, 0}));
    QCOMPARE(info.getMaxFileCnt(), 10);
  }
  void motionsFollowANegativeCountOfEvents() {
    PFileInfo info;
    QVERIFY(Open(info, Bytes({1, 100, 9000, 0, -3, 2, 5, 6})));
    QCOMPARE(Times(info.getMotionParkFileTimePointer(), info.getMotionParkFileCnt()), (QList<qint32>{5, 6, 0}));
  }
  void largeReportIsRead() {
    PFileInfo info;
    QVERIFY(Open(info, ReportOf(500000, 400000)));
    QCOMPARE(info.getEvtParkFileCnt(), 500000);
    QCOMPARE(info.getMotionParkFileCnt(), 400000);
    info.parsingData();
    QCOMPARE(info.getEvtValueElement(0), 500001);
  }

  void pathsThatAreNoReport() {
    PFileInfo info;
    QVERIFY(!info.openDataFile(mFolder.filePath(QStringLiteral("none"))));
    QVERIFY(!QFile::exists(mFolder.filePath(QStringLiteral("none"))));
    QVERIFY(!info.openDataFile(mFolder.path()));
    QVERIFY(!info.openDataFile(QString()));
    QVERIFY(!info.openDataFile(QStringLiteral("/dev/zero")));  // has no end: nothing may be read of it
    CompareEmpty(info);
  }
  void refusedReportLeavesTheOneThatWasRead() {
    PFileInfo info;
    QVERIFY(Open(info, Report(100, 9000, 0, {200})));
    QVERIFY(!Open(info, Bytes({1, 300, 9000, 0, 7})));
    QCOMPARE(info.getParkStartTime(), 100);
    QCOMPARE(Times(info.getEvtParkFileTimePointer(), info.getEvtParkFileCnt()), (QList<qint32>{200, 0}));
  }
  void reportIsNotChangedByReading() {
    PFileInfo info;
    const QByteArray bytes = Report(100, 9000, 0, {200}, {300});
    const QString path = PathOf(bytes);
    QVERIFY(info.openDataFile(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), bytes);
  }

  // ---- axis marks

  void axisMarks_data() {
    QTest::addColumn<int>("events");
    QTest::addColumn<int>("motions");
    QTest::addColumn<int>("most");
    QTest::addColumn<int>("compensated");
    QTest::addColumn<QList<qint32>>("marks");
    QTest::newRow("none") << 0 << 0 << 10 << 8 << QList<qint32>{6, 4, 2};
    QTest::newRow("few") << 3 << 2 << 10 << 8 << QList<qint32>{6, 4, 2};
    QTest::newRow("10") << 10 << 1 << 10 << 8 << QList<qint32>{6, 4, 2};
    QTest::newRow("11 events") << 11 << 0 << 11 << 8 << QList<qint32>{0, 0, 2};
    QTest::newRow("11 motions") << 10 << 11 << 11 << 8 << QList<qint32>{0, 0, 2};
    QTest::newRow("12") << 12 << 0 << 12 << 12 << QList<qint32>{0, 0, 3};
    QTest::newRow("15") << 0 << 15 << 15 << 12 << QList<qint32>{0, 0, 3};
    QTest::newRow("103") << 4 << 103 << 103 << 100 << QList<qint32>{0, 0, 25};
  }
  void axisMarks() {
    QFETCH(int, events);
    QFETCH(int, motions);
    PFileInfo info;
    QVERIFY(Open(info, ReportOf(events, motions)));
    info.parsingData();
    QTEST(info.getMaxFileCnt(), "most");
    QTEST(info.getCompenSationMaxFileCnt(), "compensated");
    QTEST(Marks(info), "marks");
  }
  void upperMarksOfManyRecordingsComeFromTheReportBefore() {
    PFileInfo info;
    QVERIFY(Open(info, ReportOf(1, 0)));
    info.parsingData();
    QVERIFY(Open(info, ReportOf(11, 0)));
    info.parsingData();
    QCOMPARE(Marks(info), (QList<qint32>{24, 8, 2}));
    info.parsingData();
    QCOMPARE(Marks(info), (QList<qint32>{48, 16, 2}));
    for (int i = 0; i < 40; ++i) info.parsingData();  // wraps, and stays defined
    QCOMPARE(Marks(info), (QList<qint32>{0, 0, 2}));
  }
  void marksBesideTheAxisAreZero() {
    PFileInfo info;
    QVERIFY(Open(info, ReportOf(1, 1)));
    info.parsingData();
    for (const int i : {-1, 3, 5, INT_MAX, INT_MIN}) QCOMPARE(info.getGraphColArrayElement(i), 0);
  }

  // ---- buckets

  void numberOfBuckets_data() {
    QTest::addColumn<int>("duration");
    QTest::addColumn<int>("buckets");
    QTest::newRow("a second") << 1 << 1;
    QTest::newRow("an hour") << 3600 << 1;
    QTest::newRow("an hour and a second") << 3601 << 3;
    QTest::newRow("six hours") << 21600 << 3;
    QTest::newRow("six hours and a second") << 21601 << 5;
    QTest::newRow("as long as can be") << INT_MAX - 1 << 5;
  }
  void numberOfBuckets() {
    QFETCH(int, duration);
    QFETCH(int, buckets);
    for (const bool cut : {false, true}) {
      PFileInfo info;
      QVERIFY(Open(info, cut ? Report(1, 7, 1 + duration) : Report(1, 1 + duration, 0)));
      info.parsingData();
      QCOMPARE(info.getSepLevel(), buckets);
    }
  }
  void periodEndsWithTheCutNotWithTheEnd() {
    PFileInfo info;
    QVERIFY(Open(info, Report(1000, 1000 + 30000, 1000 + 3000)));
    info.parsingData();
    QCOMPARE(info.getSepLevel(), 1);
  }

  void boundsOfBuckets_data() {
    QTest::addColumn<qint32>("start");
    QTest::addColumn<qint32>("duration");
    QTest::addColumn<QList<qint32>>("bounds");
    QTest::newRow("one") << 1000 << 3600 << QList<qint32>{0, 0, 0, 0, 0};
    QTest::newRow("three") << 1000 << 3602 << QList<qint32>{2200, 3400, 0, 0, 0};
    QTest::newRow("five") << 1000 << 21604 << QList<qint32>{5320, 9640, 13960, 18280, 0};
    QTest::newRow("five up to the last second there is")
        << 1 << INT_MAX - 1 << QList<qint32>{429496730, 858993459, 1288490188, 1717986917, 0};
  }
  void boundsOfBuckets() {
    QFETCH(qint32, start);
    QFETCH(qint32, duration);
    PFileInfo info;
    QVERIFY(Open(info, Report(start, start + duration, 0)));
    info.parsingData();
    QTEST(Bounds(info), "bounds");
    for (const int i : {-1, 5, INT_MAX, INT_MIN}) QCOMPARE(info.getGraphRowArrayElement(i), 0);
  }

  // Each kind that was recorded counts one more in its first bucket.
  void recordingsFallIntoBuckets_data() {
    QTest::addColumn<qint32>("duration");
    QTest::addColumn<qint32>("time");  // after the start
    QTest::addColumn<int>("bucket");
    const struct {
      qint32 duration;
      QList<qint32> bounds;
    } periods[] = {{6000, {2000, 4000}}, {50000, {10000, 20000, 30000, 40000}}};
    for (const auto& period : periods) {
      const auto row = [&](qint32 time, int bucket) {
        QTest::addRow("%d s at %d", period.duration, time) << period.duration << time << bucket;
      };
      row(-1000, 0);
      row(0, 0);
      for (int i = 0; i < period.bounds.size(); ++i) {
        row(period.bounds[i], i);
        row(period.bounds[i] + 1, i + 1);
      }
      row(period.duration, int(period.bounds.size()));
      row(period.duration + 1000000, int(period.bounds.size()));
    }
  }
  void recordingsFallIntoBuckets() {
    QFETCH(qint32, duration);
    QFETCH(qint32, time);
    QFETCH(int, bucket);
    QList<int> expected{1, 0, 0, 0, 0};
    ++expected[bucket];
    PFileInfo info;
    QVERIFY(Open(info, Report(kStart, kStart + duration, 0, {kStart + time})));
    info.parsingData();
    QCOMPARE(Events(info), expected);
    QCOMPARE(Motions(info), (QList<int>{0, 0, 0, 0, 0}));

    QVERIFY(Open(info, Report(kStart, kStart + duration, 0, {}, {kStart + time})));
    info.parsingData();
    QCOMPARE(Events(info), (QList<int>{0, 0, 0, 0, 0}));
    QCOMPARE(Motions(info), expected);
  }
  void bothKindsAreSortedBesideEachOther() {
    PFileInfo info;
    QVERIFY(Open(info, Report(1000, 51000, 0, {1500, 12000, 12001, 50000}, {32000, 32001, INT_MAX, INT_MIN})));
    info.parsingData();
    QCOMPARE(Events(info), (QList<int>{2, 2, 0, 0, 1}));
    QCOMPARE(Motions(info), (QList<int>{2, 0, 0, 2, 1}));
  }
  void shortPeriodIsNotSorted() {
    PFileInfo info;
    QVERIFY(Open(info, Report(1000, 4600, 0, {1500})));
    info.parsingData();
    QCOMPARE(Events(info), (QList<int>{-1, -1, -1, -1, -1}));
    QCOMPARE(Motions(info), (QList<int>{0, 0, 0, 0, 0}));
  }
  void recordingsAreNotSortedBeforeParsing() {
    PFileInfo info;
    QVERIFY(Open(info, Report(1000, 51000, 0, {1500})));
    QCOMPARE(info.getEvtValueElement(0), -1);
  }
  void bucketsBesideTheFiveAreEmpty() {
    PFileInfo info;
    QVERIFY(Open(info, Report(1000, 51000, 0, {1500}, {1500})));
    info.parsingData();
    for (const int i : {-1, 5, INT_MAX, INT_MIN}) {
      QCOMPARE(info.getEvtValueElement(i), 0);
      QCOMPARE(info.getMotionVlaueElement(i), 0);
    }
  }
  void parsingAnotherReportCountsAnew() {
    PFileInfo info;
    QVERIFY(Open(info, Report(1000, 51000, 0, {1500, 50000}, {50000})));
    info.parsingData();
    info.parsingData();
    QCOMPARE(Events(info), (QList<int>{2, 0, 0, 0, 1}));
    QVERIFY(Open(info, Report(1000, 7000, 0, {6000})));
    info.parsingData();
    QCOMPARE(Events(info), (QList<int>{1, 0, 1, 0, 0}));
    QCOMPARE(Bounds(info), (QList<qint32>{3000, 5000, 0, 0, 0}));
    QVERIFY(Open(info, Report(1000, 2000, 0, {1500})));
    info.parsingData();
    QCOMPARE(Bounds(info), (QList<qint32>{0, 0, 0, 0, 0}));
  }
  void parsingWithoutAReportIsHarmless() {
    PFileInfo info;
    info.parsingData();
    QCOMPARE(info.getSepLevel(), 1);
    QCOMPARE(info.getMaxFileCnt(), 10);
    QCOMPARE(Events(info), (QList<int>{0, 0, 0, 0, 0}));
  }
};

QTEST_GUILESS_MAIN(PFileInfoTest)
#include "pfileinfo_test.moc"
