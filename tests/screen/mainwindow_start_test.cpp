// The window comes up and goes down.
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/stat.h>

#include <QSignalSpy>
#include <QThread>

#include "gui/firmware/msgthread.h"
#include "gui/touch/touchthread.h"
#include "tests/fake/windowtest.h"

static TestRoot root;

class MainWindowStartTest : public WindowTest {
  Q_OBJECT

private:
  static QStringList Shell() { return Fake().Shell(); }

private slots:
  void init() { ResetCamera(root); }
  void cleanup() { Stop(); }

  void theStartIsThis() {
    QVERIFY(!gMainWindow);
    mWindow = std::make_unique<MainWindow>(nullptr);
    QCOMPARE(gMainWindow, mWindow.get());
    QCOMPARE(Shell(), (QStringList{"echo 50000 > /proc/pwm/pwm0", "echo 1 > /proc/sys/vm/drop_caches"}));
    QCOMPARE(mWindow->size(), QSize(480, 320));
    QVERIFY(mWindow->windowFlags() & Qt::FramelessWindowHint);
    QCOMPARE(TopId(), PREVIEW);
    QCOMPARE(gWidgetManager.GetStackDepth(), 0);
    QCOMPARE(Top()->metaObject()->className(), "PreviewLayout");
    QCOMPARE(mWindow->centralWidget(), Top());
    mWindow->show();
    QVERIFY(Top()->isVisible());
    QCOMPARE(Top()->geometry(), QRect(0, 0, 480, 320));
  }
  void everythingIsOffAtTheStart() {
    mWindow = std::make_unique<MainWindow>(nullptr);
    QVERIFY(!mWindow->GetIsLcdOff());
    QVERIFY(!mWindow->GetIsIngParkingModeOn());
    QVERIFY(!mWindow->GetIsLowVolCount());
    QVERIFY(!mWindow->GetStartLcdAutoModeFlag());
    QVERIFY(!mWindow->GetIsCurrentShowTouchMotion());
    QVERIFY(!mWindow->GetIsTouchMotionVer());
    QVERIFY(!mWindow->GetIsDetectRecording());
    QCOMPARE(mWindow->GetNeedTouchComBeforeSDFormat(), 0);
    QCOMPARE(mWindow->GetCountOfLowVolPowerOff(), 31);
    QCOMPARE(mWindow->GetRecordingFileManager(), nullptr);
    QVERIFY(mWindow->GetTouchThread());
    for (const char* name :
         {"mTimParkingModeLcdOff", "mTimEventTimer", "mTimSystemRecStart", "mTimLowVolPowerOffCount"})
      QVERIFY2(Armed(name) == -1, name);
  }
  void flagsAreKept() {
    mWindow = std::make_unique<MainWindow>(nullptr);
    for (const bool on : {true, false}) {
      mWindow->SetStartLcdAutoModeFlag(on);
      QCOMPARE(mWindow->GetStartLcdAutoModeFlag(), on);
      mWindow->SetIsLcdOff(on);
      QCOMPARE(mWindow->GetIsLcdOff(), on);
      mWindow->SetIsLowVolCount(on);
      QCOMPARE(mWindow->GetIsLowVolCount(), on);
      mWindow->SetIsIngParkingModeOn(on);
      QCOMPARE(mWindow->GetIsIngParkingModeOn(), on);
      mWindow->SetIsCurrentShowTouchMotion(on);
      QCOMPARE(mWindow->GetIsCurrentShowTouchMotion(), on);
      mWindow->SetIsTouchMotionVer(on);
      QCOMPARE(mWindow->GetIsTouchMotionVer(), on);
      mWindow->SetIsDetectRecording(on);
      QCOMPARE(mWindow->GetIsDetectRecording(), on);
    }
    mWindow->SetCountOfLowVolPowerOff(12);
    QCOMPARE(mWindow->GetCountOfLowVolPowerOff(), 12);
    mWindow->SetNeedTouchComBeforeSDFormat(2);
    QCOMPARE(mWindow->GetNeedTouchComBeforeSDFormat(), 2);
  }

  void theBacklightOfTheStart_data() {
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("pwm");
    QTest::newRow("low") << 0 << "10000";
    QTest::newRow("middle") << 1 << "50000";
    QTest::newRow("high") << 2 << "100000";
    QTest::newRow("automatic") << 3 << "30000";
  }
  void theBacklightOfTheStart() {
    QFETCH(int, level);
    QFETCH(QString, pwm);
    Setting().lcd_bright = level;
    mWindow = std::make_unique<MainWindow>(nullptr);
    QCOMPARE(Shell().first(), QStringLiteral("echo %1 > /proc/pwm/pwm0").arg(pwm));
    QCOMPARE(Armed("mTimLcdAutoMode"), level == 3 ? 1000 : -1);
  }

  void theOwnersPictureIsTakenFromTheCard() {
    root.Write("/mnt/mmc/Setup/picture.bmp", "mine");
    mWindow = std::make_unique<MainWindow>(nullptr);
    QCOMPARE(root.Read("/tmp/picture.bmp"), QByteArray("mine"));
    QCOMPARE(Shell(), (QStringList{"echo 50000 > /proc/pwm/pwm0", "sync", "echo 1 > /proc/sys/vm/drop_caches"}));
  }
  void aPictureThatIsThereStays() {
    root.Write("/mnt/mmc/Setup/picture.bmp", "new");
    root.Write("/tmp/picture.bmp", "old");
    mWindow = std::make_unique<MainWindow>(nullptr);
    QCOMPARE(root.Read("/tmp/picture.bmp"), QByteArray("old"));
    QVERIFY(Shell().contains("sync"));
  }
  void withoutTheOwnersPictureNothingIsCopied() {
    mWindow = std::make_unique<MainWindow>(nullptr);
    QVERIFY(!root.Exists("/tmp/picture.bmp"));
    QVERIFY(!Shell().contains("sync"));
  }

  void calibrationIsWantedWithoutItsFile() {
    QVERIFY(MainWindow::IsCalibration());
    root.Write("/mnt/nand/pointercal", "1 2 3");
    QVERIFY(!MainWindow::IsCalibration());
  }
  void motionAreasAreSentButInTestMode() {
    mWindow = std::make_unique<MainWindow>(nullptr);
    Setting().motion_area1 = 0x0102030405060708ULL;
    Setting().motion_area2 = 1;
    Fake().asked.clear();
    mWindow->InitSend2FirmMotionSettingValue();
    QCOMPARE(Asked(), (QStringList{"8672 0807060504030201", "8673 0100000000000000"}));
    root.Write("/mnt/mmc/test_mode.txt", "");
    Fake().asked.clear();
    mWindow->InitSend2FirmMotionSettingValue();
    QCOMPARE(Asked(), QStringList());
  }

  void commandsReachTheRecorder() {
    mWindow = std::make_unique<MainWindow>(nullptr);
    Fake().asked.clear();
    Fake().voltage = 23.5F;
    Fake().lcdValue = 777;
    int whole = -1;
    float broken = -1;
    mWindow->SendEvent(SEND_SET_VOLUME, 3, QString());
    mWindow->SendEvent(SEND_GET_LCD_AUTO_VALUE, 0, QString(), &whole);
    mWindow->SendEvent(SEND_GET_VOLTAGE, 0, QString(), &broken);
    mWindow->SendEvent(SEND_PLAY_VIDEO, 0, "/a");
    QCOMPARE(whole, 777);
    QCOMPARE(broken, 23.5F);
    QCOMPARE(Asked(), (QStringList{"8600 3", "8664 0", "8659 0", "8586 2f61" + QString(96, u'0')}));
  }

  // ---- the workers

  void statusEventsAndTouchesComeFromTheWorkers() {
    Start(root);
    auto* messages = mWindow->findChild<MsgThread*>();
    QVERIFY(messages);
    emit messages->msgEvent(RECV_ZEL_STATUS_SPEED, 42, Now());
    TouchThread* touch = mWindow->GetTouchThread();
    emit touch->pressEvent(TOUCH_PRESS, 1, 2, Now());
    emit touch->autoEvent(TOUCH_AUTO, 3, 4, Now());
    emit touch->releaseEvent(TOUCH_RELEASE, 5, 6, Now());
    QTRY_COMPARE(Asked(), (QStringList{"PREVIEW event 24 42", "PREVIEW touch 1 1 2", "PREVIEW touch 2 3 4",
                                       "PREVIEW touch 0 5 6"}));
  }
  void theFingersStateIsTheReaders() {
    Start(root);
    QCOMPARE(mWindow->GetTouchReleaseFlag(), bool(mWindow->GetTouchThread()->GetIsRelease()));
  }
  // Both workers wait for what never comes; destroying a worker that runs would abort the program.
  void theWindowEndsWhileItsWorkersWait() {
    const QByteArray device = root.Path("/dev/input/event0").toLocal8Bit();
    QCOMPARE(mkfifo(device.constData(), 0600), 0);
    Fake().queue = msgget(IPC_PRIVATE, 0600);
    Fake().memory = 0;
    QVERIFY(Fake().queue >= 0);
    const int queue = Fake().queue;
    mWindow = std::make_unique<MainWindow>(nullptr);
    QList<QPointer<QThread>> workers;
    for (QThread* worker : mWindow->findChildren<QThread*>()) workers << worker;
    QCOMPARE(workers.size(), 2);
    for (const auto& worker : workers) QTRY_VERIFY(worker->isRunning());
    // They ask the window for its flags: it must be whole until they have ended.
    int endedInTime = 0;
    connect(mWindow.get(), &QObject::destroyed, this, [&] {
      for (const auto& worker : workers) endedInTime += worker->isFinished() ? 1 : 0;
    });
    mWindow.reset();
    QCOMPARE(endedInTime, 2);
    for (const auto& worker : workers) QVERIFY(!worker);
    msgctl(queue, IPC_RMID, nullptr);
    root.Remove("/dev/input/event0");
  }

  // ---- the end

  void theEndDeletesEveryScreen() {
    Start(root);
    QList<QPointer<BaseWidget>> screens{mPreview, Open(MAINMENU), Open(RECORDINGLIST), Open(PLAYER)};
    mWindow.reset();
    for (const auto& screen : screens) QVERIFY(!screen);
    QVERIFY(!gMainWindow);
    QVERIFY(!Top());
    QCOMPARE(gWidgetManager.GetStackDepth(), -1);
  }
  void theEndWithTheLcdOff() {
    Start(root);
    Open(MAINMENU);
    mWindow->LcdOff();
    mWindow.reset();
    QVERIFY(!Top());
  }
  void theEndWithoutAnyScreen() {
    Start(root);
    CloseAll();
    mWindow.reset();
    QVERIFY(!gMainWindow);
  }
  void anotherWindowStartsAfterIt() {
    Start(root);
    mWindow.reset();
    Start(root);
    Tap(1, 2);
    QCOMPARE(Asked(), QStringList{"PREVIEW touch 1 1 2"});
  }
  // The camera has no desktop to go back to, and the last window's end would end the program.
  void aRequestToCloseIsIgnored() {
    Start(root);
    QSignalSpy quits(qApp, &QGuiApplication::lastWindowClosed);
    QVERIFY(!mWindow->close());
    QVERIFY(mWindow->isVisible());
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    QCOMPARE(quits.size(), 0);
  }
};

QTEST_MAIN(MainWindowStartTest)
#include "mainwindow_start_test.moc"
