#include "gui/base/globals.h"

#include <QTest>
#include <cmath>

// What holds until the recorder says otherwise.
class GlobalsTest : public QObject {
  Q_OBJECT

private slots:
  void theRearCameraIsThoughtToBeThere() { QCOMPARE(gCountOfCamera, 2); }
  void theFrontLedIsThoughtToWork() { QCOMPARE(gInitFrontLed, 1); }
  void theMicrophoneComesBackAudible() { QCOMPARE(gReturnVolume, 1); }
  void noVoltageIsKnown() { QVERIFY(std::isnan(gRecvVoltage)); }
  void everythingElseIsOff() {
    QVERIFY(!gNeedVolCom);
    QCOMPARE(gNeedFormatFlag, 0);
    QVERIFY(!gIsPlayingVoice);
    QCOMPARE(gIsConnectGps, 0);
    QVERIFY(!gIsAccVer);
    QCOMPARE(gRecvLcdValue, 0);
    QCOMPARE(gOldRecvLcdValue, 0);
    QCOMPARE(gTouchTestStage, 0);
    QCOMPARE(gFirmupCount, 0);
    QVERIFY(!g_bIsPrevWidgetParkingSetting);
    QVERIFY(!gSdError);
    QVERIFY(!gInitSdError);
    QCOMPARE(int{gSdErrorValue}, 0);
    QVERIFY(!gIsSdError);
    QCOMPARE(gSysInit, 0);
    for (const auto word : gContext) QCOMPARE(word, 0U);
  }
};

QTEST_GUILESS_MAIN(GlobalsTest)
#include "globals_test.moc"
