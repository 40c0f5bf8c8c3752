// Whatever a status event changes is on the LCD at once: what is there right after any of the 38 events is what the
// same screen shows when it is built anew.
#include <QGuiApplication>
#include <QScreen>

#include "gui/app/commandline.h"
#include "gui/led/ledfilemanager.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

class EventPixelsTest : public WindowTest {
  Q_OBJECT

private:
  static QDateTime Noon() { return {QDate(2023, 1, 2), QTime(12, 34, 56)}; }

  void StartCamera(bool parking, bool acc) {
    mWindow.reset();
    ResetCamera(root);
    gClock = Noon;
    gIsAccVer = acc;
    mWindow = std::make_unique<MainWindow>(nullptr);
    mWindow->SetIsIngParkingModeOn(parking);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
  }
  static QImage Plain(const QImage& picture) { return picture.convertToFormat(QImage::Format_RGB32); }
  // As it came, piece by piece.
  QImage OnTheLcd() {
    QCoreApplication::processEvents();
    QEvent update(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(mWindow.get(), &update);
    return Plain(QGuiApplication::primaryScreen()->grabWindow(mWindow->winId()).toImage());
  }
  // The screen on top, made once more and painted whole, under the same boxes.
  QImage BuiltAnew(int value) {
    const int own = OwnBox(), event = EventBox();
    mWindow->StartWidget(TopId(), nullptr);
    if (event >= 0) Top()->PaintMessageBox(event, true, value, 0);
    if (own >= 0) Top()->PaintMessageBox(own, false, value, 0);
    QCoreApplication::processEvents();
    return Plain(mWindow->grab().toImage());
  }

private slots:
  void initTestCase() {
    GetConfig();
    ApplyFont();
  }
  void cleanup() { Stop(); }

  void afterAnEventTheScreenIsAsBuiltAnew_data() {
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("parking");
    QTest::addColumn<bool>("acc");  // the recorder knows the ignition's state
    for (const WidgetId id : {PREVIEW,
                              MAINMENU,
                              MAINMENU2,
                              BLACKBOXMANAGEMENT,
                              SDMANAGEMENT,
                              DRIVINGSETTING,
                              PARKINGSETTING,
                              AUDIOSETTING,
                              LCDSETTING,
                              FRONTLED,
                              FILEDELMETHOD,
                              FILEMANAGEMENT,
                              TIMELAYOUT,
                              NUMBERSETLAYOUT,
                              POWERCUTSETTING,
                              LEDFILELIST,
                              SCREENSAVER,
                              RECORDINGLIST,
                              MOTIONSETTING,
                              TOUCHCOMP,
                              TOUCHTEST,
                              VOLTAGECOMPENSATION,
                              LOWVOLDETECTIONSETTING})
      for (const bool parking : {false, true})
        QTest::addRow("%s%s", NameOf(id), parking ? ", parked" : "") << int{id} << parking << false;
    QTest::newRow("PARKINGSETTING, knows the ignition") << int{PARKINGSETTING} << false << true;
    QTest::newRow("PARKINGSETTING, parked, knows the ignition") << int{PARKINGSETTING} << true << true;
  }
  void afterAnEventTheScreenIsAsBuiltAnew() {
    QFETCH(int, id);
    QFETCH(bool, parking);
    QFETCH(bool, acc);
    const auto check = [&](int event, int value, int parkingModeOn) {
      StartCamera(parking, acc);
      Setting().parking_mode_on = parkingModeOn;
      // A preview that is built without a rear camera shows the front view; one that loses it, 2 s later.
      Setting().display = event == RECV_ZEL_STATUS_REARCAM_DISCONNECT ? 1 : 0;
      if (id != PREVIEW) mWindow->StartWidget(WidgetId(id), nullptr);
      OnTheLcd();
      mWindow->recvEvent(event, value);
      const QImage seen = OnTheLcd();
      QVERIFY2(seen == BuiltAnew(value),
               qPrintable(QStringLiteral("event %1 %2, parking_mode_on %3").arg(event).arg(value).arg(parkingModeOn)));
    };
    for (int event = RECV_ZEL_STATUS_SYS_RESTART; event <= RECV_ZEL_STATUS_PARK_INFO_CLOSE; ++event) {
      if (event == RECV_ZEL_STATUS_LCD_KEY) continue;  // in the dark there is nothing to see
      check(event, 1, 1);
      // Without parking mode no box comes in between that would repaint something by chance.
      if (event == RECV_ZEL_STATUS_PARK_MODE_IN || event == RECV_ZEL_STATUS_PARK_MODE_OUT) check(event, 1, 0);
      if (event == RECV_ZEL_STATUS_GPS_CONNECT || event == RECV_ZEL_STATUS_CAM_CNT ||
          event == RECV_ZEL_STATUS_LOW_VOLTAGE_POWER_OFF_COUNT || event == RECV_ZEL_STATUS_ACC_SUPPORT)
        for (const int value : {0, 2}) check(event, value, 1);
    }
  }
};

QTEST_MAIN(EventPixelsTest)
#include "eventpixels_test.moc"
