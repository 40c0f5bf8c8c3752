// A driver uses the whole camera: the real interface against the simulated recorder, over queue, socket, panel and
// framebuffer. And everything on those ways that means harm.
#include <fcntl.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/shm.h>
#include <unistd.h>

#include <QRandomGenerator>
#include <limits>

#include "gui/vocabulary/vocabulary.h"
#include "platform/Msg_Def.h"
#include "tests/system/camerarun.h"

namespace {
constexpr QRgb kKeyColour = qRgb(255, 0, 8);
constexpr QRgb kWarn = qRgb(255, 184, 28);

constexpr QPoint kView(40, 33), kMic(115, 33), kLowerLeft(40, 96), kManual(115, 96);
constexpr QRect kMiddle(120, 130, 240, 60);
}  // namespace

class CameraTest : public CameraRun {
  Q_OBJECT

private slots:
  void initTestCase() { QVERIFY(StartCamera()); }
  void cleanupTestCase() { mBench.reset(); }
  void init() { AwaitPreview(); }

  void theCameraComesUp() {
    QTRY_VERIFY(IsOverlayShown());
    QCOMPARE(Drawn().pixel(240, 150), kKeyColour);
    const QImage seen = Seen();
    for (int y = 0; y < seen.height(); ++y)
      for (int x = 0; x < seen.width(); ++x) QVERIFY(seen.pixel(x, y) != kKeyColour);
    // The recorder tells its state when the interface has asked first.
    QStringList order;
    for (const QJsonObject& entry : mBench->Log()) {
      const QString kind = entry.value(QStringLiteral("kind")).toString();
      if (order.size() < 5 && (kind == QStringLiteral("command") || kind == QStringLiteral("event")))
        order << entry.value(QStringLiteral("name")).toString();
    }
    QCOMPARE(order, (QStringList{"SFIELD_GET_VOLTAGE", "RECV_ZEL_STATUS_CAM_CNT", "RECV_ZEL_STATUS_ACC_SUPPORT",
                                 "RECV_ZEL_STATUS_GPS_CONNECT", "RECV_ZEL_STATUS_SPEED"}));
  }

  void theViewKeyGoesRoundTheCameras() {
    ShowOverlay();
    const char* const fields[] = {"SFIELD_SET_VIEWFRONT", "SFIELD_SET_VIEWREAR", "SFIELD_SET_VIEWPIP"};
    const char* const views[] = {"front", "rear", "pip"};
    for (int i = 0; i < 3; ++i) {
      const QImage before = Drawn().copy(kViewKey);
      QVERIFY(Tap(kView));
      QTRY_VERIFY(IsCommanded(fields[i]));
      QTRY_COMPARE(mBench->State("video/view").toString(), QLatin1String(views[i]));
      QTRY_VERIFY(Drawn().copy(kViewKey) != before);
    }
  }
  void theSmallPictureGoesRoundTheCorners() {
    for (const int corner : {1, 2, 3, 0}) {
      ShowOverlay();
      QVERIFY(Tap(kLowerLeft));
      QTRY_COMPARE(mBench->State("video/pipCorner").toInt(-1), corner);
    }
    QVERIFY(IsCommanded("SFIELD_SET_MOVING_PIP"));
  }
  void theRearPictureIsMirrored() {
    ShowOverlay();
    QVERIFY(Tap(kView) && Tap(kView));
    QTRY_COMPARE(mBench->State("video/view").toString(), QStringLiteral("rear"));
    QVERIFY(Tap(kLowerLeft));
    QTRY_VERIFY(mBench->State("video/mirrored").toBool());
    QVERIFY(Tap(kLowerLeft) && Tap(kView));
    QTRY_COMPARE(mBench->State("video/view").toString(), QStringLiteral("pip"));
    QVERIFY(!mBench->State("video/mirrored").toBool());
  }
  void theMicrophoneKeyIsSpokenAboutAndThenTouchesCountAgain() {
    ShowOverlay();
    QVERIFY(Tap(kMic));
    QTRY_VERIFY(IsCommanded("SFIELD_SET_AUDIO_IN_GAIN"));
    QTRY_VERIFY(!mBench->Find("event", QStringLiteral("RECV_ZEL_STATUS_VOICE_PLAY_END"), mSince).isEmpty());
    ShowOverlay();
    mSince = mBench->LastEntry();
    QVERIFY(Tap(kMic));
    QTRY_VERIFY(IsCommanded("SFIELD_SET_AUDIO_IN_GAIN"));
    QTRY_VERIFY(!mBench->Find("event", QStringLiteral("RECV_ZEL_STATUS_VOICE_PLAY_END"), mSince).isEmpty());
  }
  void aManualRecordingBeginsAndEnds() {
    ShowOverlay();
    QVERIFY(Tap(kManual));
    QTRY_COMPARE(OwnBox(), QStringLiteral("SELECT_NDF_FILE"));
    QTRY_VERIFY(IsCommanded("SFIELD_SET_CURRENT_RECORDING_FILE_DETECT"));
    QTRY_VERIFY(mBench->State("recorder/manualEvent").toBool());
    QTRY_COMPARE_WITH_TIMEOUT(OwnBox(), QStringLiteral("FINISH_MANUAL_RECORDING"), 20000);
  }

  void everyStatusShowsItsBox_data() {
    QTest::addColumn<int>("event");
    QTest::addColumn<QString>("box");
    const struct {
      RECV_ZEL_STATUS_EVENT event;
      MessageBox_Id box;
    } rows[] = {{RECV_ZEL_STATUS_SYS_RESTART, R_SYS_RESTART},
                {RECV_ZEL_STATUS_NEED_REARCAM, R_NEED_REARCAM},
                {RECV_ZEL_STATUS_LCD_OFF, R_LCD_OFF},
                {RECV_ZEL_STATUS_SYS_EXIT, R_SYS_EXIT},
                {RECV_ZEL_STATUS_NO_SD, R_NO_SD},
                {RECV_ZEL_STATUS_SD_FORMAT_INF, R_SD_FORMAT_INF},
                {RECV_ZEL_STATUS_REARCAM_ERROR, R_REARCAM_ERROR},
                {RECV_ZEL_STATUS_RTC_ERROR, R_RTC_ERROR},
                {RECV_ZEL_STATUS_MUTE_ON, R_MUTE_ON},
                {RECV_ZEL_STATUS_MUTE_OFF, R_MUTE_OFF},
                {RECV_ZEL_STATUS_UNDER_VOLTAGE, R_UNDER_VOLTAGE},
                {RECV_ZEL_STATUS_NORMAL_VOLTAGE, R_NORMAL_VOLTAGE},
                {RECV_ZEL_STATUS_OVER_TEMP, R_OVER_TEMP},
                {RECV_ZEL_STATUS_NORMAL_TEMP, R_NORMAL_TEMP},
                {RECV_ZEL_STATUS_ACC_VOICE, R_ACC_VOICE},
                {RECV_ZEL_STATUS_POWER_OFF, R_POWER_OFF},
                {RECV_ZEL_STATUS_REARCAM_CONNECT, R_REARCAM_CONNECT},
                {RECV_ZEL_STATUS_FRONTLED_ERROR, R_FRONTLED_ERROR},
                {RECV_ZEL_STATUS_HW_ERROR, R_HW_ERROR}};
    for (const auto& row : rows)
      QTest::newRow(NameOf(row.event)) << int{row.event} << QString::fromLatin1(NameOf(row.box));
  }
  void everyStatusShowsItsBox() {
    QFETCH(int, event);
    QFETCH(QString, box);
    const QImage before = Drawn().copy(kMiddle);
    QVERIFY(Event(event, 3));
    QTRY_COMPARE(EventBox(), box);
    QTRY_VERIFY(Drawn().copy(kMiddle) != before);
    QCOMPARE(Drawn().pixel(440, 130), qRgb(20, 17, 18));  // the box's ground
  }
  void aStandingErrorGoesWithATouch() {
    const QImage before = Drawn().copy(kMiddle);
    QVERIFY(Event(RECV_ZEL_STATUS_HW_ERROR, 4));
    QTRY_VERIFY(Drawn().copy(kMiddle) != before);  // it is there, not only the one of the row before
    QTRY_COMPARE(EventBox(), QStringLiteral("R_HW_ERROR"));
    QVERIFY(Tap(kBeside));
    QTRY_COMPARE(EventBox(), QString());
  }

  void theOverlayHidesAndATouchBringsItBack() {
    ShowOverlay();
    QTRY_VERIFY_WITH_TIMEOUT(!IsOverlayShown(), 8000);
    QCOMPARE(Drawn().pixel(kViewKey.center()), kKeyColour);
    QVERIFY(Tap(kBeside));
    QTRY_VERIFY(IsOverlayShown());
  }
  void thePowerKeyDarkensTheLcdAndATouchLightsIt() {
    const auto isBlack = [this] {
      const QImage seen = Seen();
      QImage black = seen;
      black.fill(Qt::black);
      return seen == black;
    };
    QVERIFY(Do("powerKey"));
    QTRY_COMPARE(mBench->State("lcd/backlight").toInt(-1), 0);
    QTRY_VERIFY(isBlack());
    QVERIFY(Tap(kBeside));
    QTRY_VERIFY(mBench->State("lcd/backlight").toInt() > 0);
    QTRY_VERIFY(!isBlack());
    QVERIFY(Do("powerKey"));
    QTRY_COMPARE(mBench->State("lcd/backlight").toInt(-1), 0);
    QVERIFY(Do("powerKey"));
    QTRY_VERIFY(mBench->State("lcd/backlight").toInt() > 0);
  }

  void aNightInTheParkIsReported() {
    QVERIFY(mBench->Action("{\"name\": \"parkIn\", \"minutesAgo\": 300}"));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_PARK_MODE_IN"));
    QVERIFY(mBench->Action("{\"name\": \"impact\", \"minutesAgo\": 200}"));
    QVERIFY(mBench->Action("{\"name\": \"motion\", \"minutesAgo\": 100}"));
    QVERIFY(Do("parkOut"));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PFILEGRAPH"), kBoxMs);
    QTRY_COMPARE(Drawn().pixel(470, 315), qRgb(224, 228, 230));  // the pale page
    QVERIFY(Tap({240, 283}));
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
  }
  void theReportClosesWhenTheRecorderSaysSo() {
    QVERIFY(mBench->Action("{\"name\": \"parkIn\", \"minutesAgo\": 60}"));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_PARK_MODE_IN"));
    QVERIFY(Do("parkLowVoltage"));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PFILEGRAPH"), kBoxMs);
    QVERIFY(Do("closeReport"));
    QTRY_COMPARE(Screen(), QStringLiteral("PREVIEW"));
  }
  void aReportThatIsNoneShowsTheBoxInstead_data() {
    QTest::addColumn<QByteArray>("report");
    const auto words = [](std::initializer_list<qint32> values) {
      return QByteArray(reinterpret_cast<const char*>(values.begin()), qsizetype(values.size() * sizeof(qint32)));
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("noise") << QByteArray(3000, '\x7f');
    QTest::newRow("more recordings than it holds") << words({1, 1000, 2000, 0, 0x7FFFFFFF});
    QTest::newRow("ends before it begins") << words({1, 2000, 1000, 0, 0, 0});
  }
  void aReportThatIsNoneShowsTheBoxInstead() {
    QFETCH(QByteArray, report);
    QVERIFY(Event(RECV_ZEL_STATUS_PARK_MODE_IN));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_PARK_MODE_IN"));
    QFile file(mBench->Root() + QStringLiteral("/tmp/.info.bin"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(report);
    file.close();
    QVERIFY(Event(RECV_ZEL_STATUS_PARK_MODE_OUT));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_PARK_MODE_OUT"));
    QCOMPARE(Screen(), QStringLiteral("PREVIEW"));
    file.remove();
  }

  void aWeakBatteryCountsDown() {
    QVERIFY(mBench->Action("{\"name\": \"countdown\", \"state\": \"on\"}"));
    QTRY_COMPARE(Drawn().pixel(345, 6), kWarn);
    QVERIFY(mBench->Action("{\"name\": \"countdown\", \"state\": \"off\"}"));
    QTRY_VERIFY(Drawn().pixel(345, 6) != kWarn);
  }
  void anUnpluggedRearCameraLeavesTheFrontOne() {
    QVERIFY(Do("rearUnplug"));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_REARCAM_DISCONNECT"));
    QTRY_COMPARE_WITH_TIMEOUT(mBench->State("video/view").toString(), QStringLiteral("front"), kBoxMs);
    QVERIFY(Do("rearPlug"));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_REARCAM_CONNECT"));
    ShowOverlay();
    QVERIFY(Tap(kView) && Tap(kView));
    QTRY_COMPARE(mBench->State("video/view").toString(), QStringLiteral("pip"));
  }

  // ---- what goes wrong

  void theInterfaceLivesWithoutARecorder() {
    ShowOverlay();
    QVERIFY(Do("recorderStop"));
    QTRY_VERIFY(mBench->State("recorder").isNull());
    for (int i = 0; i < 3; ++i) {
      const QImage before = Drawn().copy(kViewKey);
      QVERIFY(Tap(kView));
      QTRY_VERIFY(Drawn().copy(kViewKey) != before);
    }
    QVERIFY(Do("recorderStart"));
    QTRY_VERIFY(mBench->State("recorder").isObject());
    mSince = mBench->LastEntry();
    ShowOverlay();
    for (const char* field : {"SFIELD_SET_VIEWFRONT", "SFIELD_SET_VIEWREAR", "SFIELD_SET_VIEWPIP"}) {
      QVERIFY(Tap(kView));
      QTRY_VERIFY(IsCommanded(field));
    }
    QVERIFY(Event(RECV_ZEL_STATUS_MUTE_ON));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_MUTE_ON"));
  }
  void aKilledInterfaceComesBackInTheMiddleOfABox() {
    const int starts = mBench->State("interface/starts").toInt();
    QVERIFY(Event(RECV_ZEL_STATUS_HW_ERROR, 3));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_HW_ERROR"));
    const auto since = mBench->LastEntry();
    QVERIFY(Do("interfaceKill"));
    QTRY_COMPARE_WITH_TIMEOUT(mBench->State("interface/starts").toInt(), starts + 1, 10000);
    QTRY_VERIFY(HasStarted(since));
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), 10000);
    QTRY_VERIFY_WITH_TIMEOUT(IsOverlayShown(), 10000);
    QVERIFY(Event(RECV_ZEL_STATUS_MUTE_ON));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_MUTE_ON"));
  }
  void messagesThatMeanHarmDoNone() {
    const int queue = msgget(BenchRun::KeyOf(mBench->Root()), 0);
    QVERIFY(queue >= 0);
    const int starts = mBench->State("interface/starts").toInt();
    const auto send = [queue](int cmd, int src, int length, int offset, int ack, int ret, size_t size = GUI_MSG_SIZE) {
      GUI_MSG_BUF message{GUI_ID, cmd, src, 0, length, offset, ack, ret};
      msgsnd(queue, &message, size, IPC_NOWAIT);
    };
    constexpr int kMost = std::numeric_limits<int>::max(), kLeast = std::numeric_limits<int>::min();
    for (const int cmd : {0, -1, 39, 1000, kMost, kLeast}) send(cmd, 2, 4, 0, GUI_ACK_NO, GUI_RET_NORET);
    for (const int length : {-1, 5, kMost, kLeast})
      for (const int offset : {-1, 0, 196605, 196608, kMost, kLeast})
        send(RECV_ZEL_STATUS_SPEED, 2, length, offset, GUI_ACK_NO, GUI_RET_DATA);
    for (const int src : {2, 17, 18, 349528, kMost}) send(RECV_ZEL_STATUS_SPEED, src, 4, 0, GUI_ACK_NO, GUI_RET_DATA);
    for (const size_t size : {0UL, 1UL, 27UL}) send(RECV_ZEL_STATUS_SPEED, 2, 4, 0, GUI_ACK_NO, GUI_RET_NORET, size);
    QVERIFY(Event(RECV_ZEL_STATUS_MUTE_OFF));
    QTRY_COMPARE(EventBox(), QStringLiteral("R_MUTE_OFF"));
    QCOMPARE(mBench->State("interface/starts").toInt(), starts);
  }
  void noiseOnThePanelIsNotTheEndOfTouch() {
    const int starts = mBench->State("interface/starts").toInt();
    QFile panel(mBench->Root() + QStringLiteral("/dev/input/event0"));
    QVERIFY(panel.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    QRandomGenerator random(5);
    for (int i = 0; i < 200; ++i) {
      QByteArray record(16, '\0');
      for (char& byte : record) byte = char(random.bounded(256));
      // No contact that looks real: its touch would open something.
      if (record[8] == 3) record[8] = 4;
      panel.write(record);
    }
    QVERIFY(Do("powerKey"));  // the noise is read before what comes now
    QTRY_COMPARE(mBench->State("lcd/backlight").toInt(-1), 0);
    QVERIFY(Tap(kBeside));
    QTRY_VERIFY(mBench->State("lcd/backlight").toInt() > 0);
    QCOMPARE(mBench->State("interface/starts").toInt(), starts);
  }
};

QTEST_GUILESS_MAIN(CameraTest)
#include "camera_test.moc"
