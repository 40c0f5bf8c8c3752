// A child plays with the camera while everything fails: random touches, status events, timers and marker files, in the
// same order for the same seed. What must hold afterwards holds after every step.
#include <QApplication>
#include <QRandomGenerator>
#include <QTimerEvent>

#include "tests/fake/windowtest.h"

static TestRoot root;

class MonkeyTest : public WindowTest {
  Q_OBJECT

private:
  QRandomGenerator mRandom;
  QString mPlayed;  // the latest step, for the report

  int Below(int end) { return mRandom.bounded(end); }

  // Mostly values that mean something.
  int AnyValue() { return Below(10) ? Below(21) : int(mRandom.generate()); }

  void AnyTouch() {
    // Keys, tiles, buttons of boxes, rows and scroll keys.
    static constexpr QPoint kWanted[] = {{40, 33},   {115, 33},  {190, 33},  {265, 33},  {355, 33},  {440, 33},
                                         {40, 96},   {115, 96},  {80, 125},  {240, 125}, {400, 125}, {80, 255},
                                         {240, 255}, {400, 255}, {440, 86},  {440, 138}, {440, 242}, {440, 294},
                                         {75, 240},  {142, 230}, {337, 230}, {220, 280}, {40, 291},  {120, 291},
                                         {200, 291}, {280, 291}, {360, 291}, {440, 291}};
    const QPoint at = Below(2) ? kWanted[Below(std::size(kWanted))] : QPoint(Below(500) - 10, Below(340) - 10);
    const bool posted = Below(2);
    mPlayed = QStringLiteral("touch %1 %2 %3").arg(at.x()).arg(at.y()).arg(posted);
    posted ? PostTouch(at.x(), at.y()) : Tap(at.x(), at.y());
  }
  void AnyEvent() {
    const int event = Below(45) - 3;
    const int value = AnyValue();
    const bool posted = Below(2);
    mPlayed = QStringLiteral("event %1 %2 %3").arg(event).arg(value).arg(posted);
    posted ? PostEvent(event, value) : mWindow->recvEvent(event, value);
  }
  // One of the timers that run is over.
  void AnyTimer() {
    QList<QTimer*> running;
    for (QTimer* timer : mWindow->findChildren<QTimer*>())
      if (timer->isActive()) running << timer;
    if (running.isEmpty()) return;
    QTimer* timer = running[Below(int(running.size()))];
    mPlayed = QStringLiteral("timer ") + timer->objectName();
    QTimerEvent over(timer->timerId());
    QCoreApplication::sendEvent(timer, &over);
  }
  // One that is good, but for its counts now and then.
  QByteArray AnyReport() {
    const int start = 1 + Below(2000000000);
    QList<int> words{1, start, start + 1 + Below(50000), 0};
    for (int kind = 0; kind < 2; ++kind) {
      const int count = Below(20);
      words << (Below(8) ? count : AnyValue());
      for (int i = 0; i < count; ++i) words << start + Below(60000) - 5000;
    }
    return QByteArray(reinterpret_cast<const char*>(words.constData()), words.size() * qsizetype{sizeof(int)});
  }
  void AnyFile() {
    static constexpr const char* kFiles[] = {"/tmp/ndf",
                                             "/tmp/.info.bin",
                                             "/mnt/mmc/Setup/picture.bmp",
                                             "/tmp/picture.bmp",
                                             "/mnt/mmc/Setup/record_stop.info",
                                             "/mnt/mmc/Setup/.format_time",
                                             "/mnt/mmc/rec0_20230101_120000.avi",
                                             "/mnt/mmc/rec1_20230101_120000.avi",
                                             "/mnt/mmc/pmr0_20230101_120100_.avi",
                                             "/mnt/mmc/evt0_20230101_120200.avi",
                                             "/opt/led.zel",
                                             "/opt/touch.zel"};
    const QString file = QLatin1String(kFiles[Below(std::size(kFiles))]);
    mPlayed = file;
    if (Below(2)) {
      root.Remove(file);
      return;
    }
    QByteArray bytes(Below(200), Qt::Uninitialized);
    for (char& byte : bytes) byte = char(Below(3) ? 0 : Below(256));
    if (Below(2) && file == QLatin1String("/tmp/.info.bin")) bytes = AnyReport();
    root.Write(file, bytes);
  }
  void AnySetting() {
    int* const settings[] = {&Setting().display,      &Setting().volume,       &Setting().rear_cam_power,
                             &Setting().lcd_auto_off, &Setting().lcd_wait_dis, &Setting().parking_mode_on,
                             &Setting().protect_file, &Setting().lcd_bright,   &Setting().resolution,
                             &Setting().fps};
    mPlayed = QStringLiteral("setting");
    *settings[Below(std::size(settings))] = AnyValue();
  }

  // Some ways are rarely found by chance.
  void AnyScreen() {
    static constexpr WidgetId kRare[] = {
        MAINMENU2,          SDMANAGEMENT,   RECORDINGLIST,  SDFORMAT,        TIMELAYOUT, FRONTLED,
        NUMBERSETLAYOUT,    LEDFILELIST,    FILEMANAGEMENT, MOTIONSETTING,   LCDSETTING, AUDIOSETTING,
        PARKINGSETTING,     DRIVINGSETTING, FILEDELMETHOD,  POWERCUTSETTING, TOUCHCOMP,  VOLTAGECOMPENSATION,
        BLACKBOXMANAGEMENT, FIRMUP,         SCREENSAVER};
    if (gWidgetManager.GetStackDepth() > 4) return;
    const WidgetId id = kRare[Below(std::size(kRare))];
    gFirmupCount = AnyValue();
    mPlayed = QLatin1String(NameOf(id));
    mWindow->StartWidget(id, nullptr);
  }

  void CheckCamera() {
    QVERIFY(Top());
    QCOMPARE(mWindow->centralWidget(), Top());
    QCOMPARE(Top()->size(), QSize(480, 320));
    QVERIFY(!mWindow->GetIsLcdOff() || !Top()->isVisible());
    int screens = 0;
    for (QWidget* widget : QApplication::allWidgets()) {
      auto* screen = qobject_cast<BaseWidget*>(widget);
      if (!screen) continue;
      ++screens;
      QVERIFY2(screen == Top() || !screen->isVisible(), screen->metaObject()->className());
    }
    QCOMPARE(screens, gWidgetManager.GetStackDepth() + 1);
    QVERIFY(screens < 12);  // six that are opened by chance, and what opens from there
  }

private slots:
  void cleanup() { Stop(); }

  void theCameraSurvivesAChild_data() {
    QTest::addColumn<uint>("seed");
    for (const uint seed : {1U, 2U, 3U, 20261121U}) QTest::addRow("seed %u", seed) << seed;
  }
  void theCameraSurvivesAChild() {
    QFETCH(uint, seed);
    mRandom.seed(seed);
    ResetCamera(root);
    mWindow = std::make_unique<MainWindow>(nullptr);
    mWindow->show();
    void (MonkeyTest::*const plays[])() = {&MonkeyTest::AnyTouch, &MonkeyTest::AnyEvent,   &MonkeyTest::AnyTimer,
                                           &MonkeyTest::AnyTouch, &MonkeyTest::AnySetting, &MonkeyTest::AnyFile,
                                           &MonkeyTest::AnyTimer, &MonkeyTest::AnyScreen};
    for (int step = 0; step < 10000; ++step) {
      (this->*plays[Below(std::size(plays))])();
      if (Below(2)) QCoreApplication::processEvents();
      CheckCamera();
      if (QTest::currentTestFailed()) QFAIL(qPrintable(QStringLiteral("at step %1: %2").arg(step).arg(mPlayed)));
    }
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();  // what is still posted, and what waits for it
    // And it still does what it should: a status event shows its box on the live preview.
    mWindow->Jumped(PREVIEW);
    mWindow->recvEvent(RECV_ZEL_STATUS_MUTE_ON, 0);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(EventBox(), int{R_MUTE_ON});
  }
};

QTEST_MAIN(MonkeyTest)
#include "monkey_test.moc"
