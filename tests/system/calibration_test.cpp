// A panel that is mounted askew, and its calibration, on the real camera.
#include <QTemporaryDir>

#include "tests/system/camerarun.h"

class CalibrationTest : public CameraRun {
  Q_OBJECT

  static constexpr QPoint kView{40, 33};

  QString View() const { return mBench->State("video/view").toString(); }

  // Whether a tap of the view key changes the view. The overlay has just come, or been touched: it stays for a while.
  bool Hits() {
    if (!IsOverlayShown() && (!Tap(kBeside) || !QTest::qWaitFor([this] { return IsOverlayShown(); }, kPatienceMs)))
      return false;
    const QString before = View();
    const qint64 since = mBench->LastEntry();
    if (!Tap(kView)) return false;
    if (!QTest::qWaitFor([&] { return !mBench->Find("touch", QStringLiteral("release"), since).isEmpty(); },
                         kPatienceMs))
      return false;
    return QTest::qWaitFor([&] { return View() != before; }, 1000);
  }

  // The interface is started again and has shown itself.
  void Restarted(int starts) {
    QTRY_VERIFY_WITH_TIMEOUT(mBench->State("interface/starts").toInt() > starts, 10000);
    QTRY_VERIFY_WITH_TIMEOUT(!Screen().isEmpty(), 10000);
  }

private slots:
  void touchesMissUntilThePanelIsCalibrated() {
    const QTemporaryDir folder;
    const QStringList options{QStringLiteral("--root"), folder.path()};
    QVERIFY(StartCamera(options));
    QVERIFY(Hits());
    QVERIFY(mBench->Action(R"({"name": "panelAskew", "skew": 5, "x": -30, "y": 50, "noise": 1})"));
    QVERIFY(!Hits());

    // After an update the calibration comes by itself.
    int starts = mBench->State("interface/starts").toInt();
    QVERIFY(mBench->Action(R"({"name": "updateMarker", "file": "update.zel"})"));
    Restarted(starts);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("TOUCHCOMP"), 15000);
    Calibrate();
    QTRY_COMPARE(OwnBox(), QStringLiteral("TOUCH_COM_SUCCESS"));
    QTRY_VERIFY(Screen() != QStringLiteral("TOUCHCOMP"));
    QVERIFY(mBench->Action(R"({"name": "removeMarkers"})"));
    QCOMPARE(QFileInfo(folder.filePath(QStringLiteral("opt/touch.zel"))).size(), 48);

    starts = mBench->State("interface/starts").toInt();
    QCOMPARE(mBench->Post("/api/interface/restart", "").status, 200);
    Restarted(starts);
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
    QTRY_VERIFY(IsOverlayShown());
    QVERIFY(Hits());

    // Panel and calibration stay with the camera.
    mBench.reset();
    QVERIFY(StartCamera(options));
    QCOMPARE(mBench->State("panel/x").toInt(), -30);
    QVERIFY(Hits());

    // The file on the card brings the factory's coefficients back, once.
    starts = mBench->State("interface/starts").toInt();
    QVERIFY(mBench->Action(R"({"name": "touchMarker", "file": "reset"})"));
    Restarted(starts);
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
    QTRY_VERIFY(IsOverlayShown());
    QTRY_VERIFY(!QFile::exists(folder.filePath(QStringLiteral("mnt/mmc/touch.txt"))));
    QVERIFY(!Hits());
    QVERIFY(mBench->Action(R"({"name": "panelStraight"})"));
    QVERIFY(Hits());
  }
};

QTEST_GUILESS_MAIN(CalibrationTest)
#include "calibration_test.moc"
