// An update of the firmware, as a driver sees it on the real camera.
#include <QPainter>

#include "tests/system/camerarun.h"

class FirmwareUpdateTest : public CameraRun {
  Q_OBJECT

  static QImage PictureOf(const char* name) {
    return QImage(QStringLiteral(BINARY_DIR "/pictures/usr/local/etc/") + QLatin1String(name))
        .convertToFormat(QImage::Format_RGB32);
  }
  bool IsSeenSoon(const QImage& image) const {
    return QTest::qWaitFor([&] { return Seen() == image; }, 10000);
  }
  int Starts() const { return mBench->State("interface/starts").toInt(); }
  bool IsRunning() const { return mBench->State("interface/running").toBool(); }

private slots:
  void init() { QVERIFY(StartCamera()); }
  void cleanup() { mBench.reset(); }

  void itsPhasesAreSeenThenTheCalibrationThenTheReport() {
    QVERIFY(mBench->Action(R"({"name": "parkIn", "minutesAgo": 200})"));
    QVERIFY(Do("parkOut"));
    QVERIFY(mBench->Action(R"({"name": "update", "file": "update.zel2"})"));
    QVERIFY(IsSeenSoon(PictureOf("fwupdatestart.bmp")));
    QTRY_VERIFY(!IsRunning());
    QVERIFY(!Tap({5, 5}));
    QImage barred = PictureOf("fwupdating.bmp");
    QPainter(&barred).drawImage(0, 262, PictureOf("bottom.bmp"));
    QVERIFY(IsSeenSoon(barred));
    QVERIFY(IsSeenSoon(PictureOf("fwupdating.bmp")));
    QVERIFY(IsSeenSoon(barred));
    QVERIFY(IsSeenSoon(PictureOf("fwupdateend.bmp")));
    QTRY_COMPARE_WITH_TIMEOUT(Starts(), 2, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("TOUCHCOMP"), 15000);
    Calibrate();
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PFILEGRAPH"), 15000);
    QVERIFY(!QFile::exists(mBench->Root() + QStringLiteral("/tmp/update.zel2")));
  }
  void aDarkLcdShowsItAllTheSame() {
    QVERIFY(Do("powerKey"));
    QTRY_COMPARE(mBench->State("lcd/backlight").toInt(), 0);
    QVERIFY(mBench->Action(R"({"name": "update", "file": "update.zel"})"));
    QVERIFY(IsSeenSoon(PictureOf("fwupdatestart.bmp")));
    QTRY_VERIFY(!IsRunning());
  }
  void oneThatIsCutOffBringsTheInterfaceBack() {
    QVERIFY(mBench->Action(R"({"name": "update", "file": "update.zel"})"));
    QTRY_VERIFY(!IsRunning());
    QVERIFY(Do("recorderRestart"));
    QTRY_COMPARE_WITH_TIMEOUT(Starts(), 2, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
    QTRY_VERIFY(IsOverlayShown());
  }
};

QTEST_GUILESS_MAIN(FirmwareUpdateTest)
#include "firmwareupdate_test.moc"
