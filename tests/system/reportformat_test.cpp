// The end of a parking, and a card that fails, on the real camera.
#include "gui/vocabulary/vocabulary.h"
#include "tests/system/camerarun.h"

class ReportFormatTest : public CameraRun {
  Q_OBJECT

  static constexpr QPoint kYes{140, 236};
  static constexpr QPoint kOk{240, 283};

  bool Report(const char* kind) const {
    return mBench->Action(QByteArray("{\"name\": \"report\", \"kind\": \"") + kind + "\"}");
  }
  bool IsRecording() const { return mBench->State("recorder/recording").toBool(); }
  // The question after an error of the card, answered with yes.
  void Format() {
    QVERIFY(mBench->Action(R"({"name": "sdError", "code": "5"})"));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_SD_ERROR_NEET_FORMAT"));
    QVERIFY(Tap(kYes));
    QTRY_COMPARE(Screen(), QStringLiteral("SDFORMAT"));
  }

private slots:
  void initTestCase() { QVERIFY(StartCamera()); }
  void init() {
    QTRY_COMPARE_WITH_TIMEOUT(EventBox() + OwnBox(), QString(), kBoxMs);
    QCOMPARE(Screen(), QStringLiteral("PREVIEW"));
    mSince = mBench->LastEntry();
  }
  void cleanupTestCase() { mBench.reset(); }

  void everyReportIsShownOrRefused_data() {
    QTest::addColumn<bool>("good");
    for (const char* kind : {"1 level", "3 levels", "5 levels", "no recordings"}) QTest::newRow(kind) << true;
    for (const char* kind : {"empty", "short", "lying", "huge"}) QTest::newRow(kind) << false;
  }
  void everyReportIsShownOrRefused() {
    QFETCH(bool, good);
    QVERIFY(Report(QTest::currentDataTag()));
    if (!good) {
      QTRY_COMPARE(EventBox(), QStringLiteral("R_PARK_MODE_OUT"));
      QCOMPARE(Screen(), QStringLiteral("PREVIEW"));
      return;
    }
    QTRY_COMPARE(Screen(), QStringLiteral("PFILEGRAPH"));
    QVERIFY(Do("closeReport"));
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
  }
  void theReportIsLeftByItsButton() {
    QVERIFY(Report("5 levels"));
    QTRY_COMPARE(Screen(), QStringLiteral("PFILEGRAPH"));
    QVERIFY(Tap(kOk));
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
  }

  void aFormatAfterACardErrorBringsTheCameraBack() {
    Format();
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 15000);
    QVERIFY(IsCommanded("SFIELD_SET_SYSTEM_SD_FORMAT"));
    QTRY_VERIFY(IsRecording());
    QCOMPARE(mBench->State("recorder/card").toString(), QStringLiteral("good"));
  }
  // The message stays until the card has been exchanged; a second failure is an ordinary one, and the way back is open.
  void aFormatThatFailsAfterACardErrorStays() {
    const QString result = QStringLiteral("RECV_ZEL_STATUS_SD_FORMAT_RESULT");
    QVERIFY(Do("sdFormatFails"));
    Format();
    QTRY_VERIFY(!mBench->Find("event", result, mSince).isEmpty());
    QCOMPARE(mBench->Find("event", result, mSince).value(QStringLiteral("value")).toInt(), 0);
    QVERIFY(Tap({240, 160}));
    QVERIFY(Event(RECV_ZEL_STATUS_SPEED, 30));
    QTRY_VERIFY(mBench->Find("touch", QStringLiteral("release"), mSince).size() > 0);
    QCOMPARE(Screen(), QStringLiteral("SDFORMAT"));
    QVERIFY(!IsCommanded("SFIELD_VIDEO_REC_START"));
    QVERIFY(Event(RECV_ZEL_STATUS_SD_FORMAT_RESULT, 0));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
    QVERIFY(IsCommanded("SFIELD_VIDEO_REC_START"));
    QTRY_VERIFY(IsRecording());
    QVERIFY(Do("sdIn"));
  }
};

QTEST_GUILESS_MAIN(ReportFormatTest)
#include "reportformat_test.moc"
