#include "gui/setup/firmupwidget.h"

#include <QFile>

#include "gui/base/devicepath.h"
#include "tests/fake/screentest.h"

static TestRoot root;

class FirmUpWidgetTest : public ScreenTest {
  Q_OBJECT

  static constexpr QRect kBar{0, 262, 480, 58};

  void Open(int phase) {
    gFirmupCount = phase;
    mHost->Show(FIRMUP, new FirmUpWidget(mHost.get()));
    HostFake::Clear();
  }
  static QImage Drawn(const QString& path) { return Picture(path).toImage().convertToFormat(QImage::Format_RGB32); }
  static QImage PageOf(int phase) {
    const char* const pages[] = {"fwupdatestart", "fwupdating", "fwupdateend"};
    return Drawn(QStringLiteral("/usr/local/etc/%1.bmp").arg(QLatin1String(pages[phase])));
  }
  static QImage Bar() { return Drawn(QStringLiteral("/usr/local/etc/bottom.bmp")); }
  static QImage Screen() { return Seen(QRect(0, 0, 480, 320)); }
  static void Blink() { Top<FirmUpWidget>()->blinkRepaint(); }

  // Decoded pictures are kept: enough others push them out.
  static void ForgetPictures() {
    QImage other(480, 320, QImage::Format_RGB32);
    for (int i = 0; i < 16; ++i) {
      other.fill(Qt::GlobalColor(Qt::red + i % 8));
      const QString path = QStringLiteral("/tmp/other%1.bmp").arg(i);
      other.save(root.Path(path));
      Picture(path);
      root.Remove(path);
    }
  }

  // Keeps the pictures of the screen away for as long as it lives.
  struct WithoutPictures {
    WithoutPictures() { Move("/usr/local/etc", "/usr/local/away"); }
    ~WithoutPictures() { Move("/usr/local/away", "/usr/local/etc"); }
    static void Move(const char* from, const char* to) {
      if (!QFile::rename(root.Path(QLatin1String(from)), root.Path(QLatin1String(to)))) qFatal("cannot move");
      ForgetPictures();
    }
  };

private slots:
  void init() { StartHost(); }
  void cleanup() {
    mHost.reset();
    gFirmupCount = 0;
  }

  void everyPhaseHasItsPage_data() {
    QTest::addColumn<int>("phase");
    QTest::addColumn<int>("page");
    for (const int phase : {0, 1, 2}) QTest::addRow("%d", phase) << phase << phase;
    for (const int phase : {-1, 3, 100, INT_MIN, INT_MAX}) QTest::addRow("%d", phase) << phase << 0;
  }
  void everyPhaseHasItsPage() {
    QFETCH(int, phase);
    QFETCH(int, page);
    Open(phase);
    QCOMPARE(PageOf(page).size(), QSize(480, 320));
    const QRect above(0, 0, 480, kBar.top());
    QCOMPARE(Seen(above), PageOf(page).copy(above));
  }
  void theBarIsThereOnlyWhileTheUpdateRuns_data() {
    QTest::addColumn<int>("phase");
    for (const int phase : {-1, 0, 2, 3}) QTest::addRow("%d", phase) << phase;
  }
  void theBarIsThereOnlyWhileTheUpdateRuns() {
    QFETCH(int, phase);
    Open(phase);
    for (int i = 0; i < 4; ++i) {
      QCOMPARE(Screen(), PageOf(phase == 2 ? 2 : 0));
      Blink();
    }
  }
  void theBarBlinksWhileTheUpdateRuns() {
    Open(1);
    const QImage below = PageOf(1).copy(kBar);
    QVERIFY(Bar() != below);
    for (int i = 0; i < 3; ++i) {
      QCOMPARE(Seen(kBar), Bar());
      Blink();
      QCOMPARE(Screen(), PageOf(1));
      Blink();
    }
  }
  void theBarComesAndGoesEveryHalfSecond() {
    Open(1);
    QCOMPARE(Armed("mTimer"), 500);
    Timer("mTimer")->stop();
    Blink();
    QCOMPARE(Armed("mTimer"), 500);
  }
  void itsTimerIsWhatBlinks() {
    Open(1);
    Timer("mTimer")->start(0);
    QTRY_COMPARE(Screen(), PageOf(1));
  }
  void theScreenIsPaintedAnew() {
    Open(1);
    QVERIFY(QTest::qWaitForWindowExposed(mHost.get()));
    QCoreApplication::processEvents();
    const QRegion painted = PaintedBy([] {
      Blink();
      QCoreApplication::processEvents();
    });
    QVERIFY(painted.contains(kBar));
  }
  void aCoveredScreenDoesNotBlink() {
    Open(1);
    const QPointer<BaseWidget> covered = TopScreen();
    mHost->Show(MAINMENU, new BaseWidget(mHost.get()));
    auto* timer = covered->findChild<QTimer*>(QStringLiteral("mTimer"));
    QVERIFY(!timer->isActive());
    QVERIFY(!covered->isVisible());
    TopScreen()->Back();
    QCOMPARE(TopScreen(), covered);
    QCOMPARE(Armed("mTimer"), 500);
  }
  void aScreenThatIsHiddenDoesNotBlink() {
    Open(1);
    TopScreen()->hide();
    QCOMPARE(Armed("mTimer"), -1);
    TopScreen()->show();
    QCOMPARE(Armed("mTimer"), 500);
  }
  void nobodyCanLeaveAnUpdate() {
    Open(1);
    for (int x = 5; x < 480; x += 10)
      for (int y = 5; y < 320; y += 10) Tap(x, y);
    for (int event = RECV_ZEL_STATUS_SYS_RESTART; event <= RECV_ZEL_STATUS_PARK_INFO_CLOSE; ++event)
      TopScreen()->recvEvent(event, 0);
    QCOMPARE(Asked(), QStringList());
    QCOMPARE(TopId(), FIRMUP);
  }
  void missingPicturesAreAPlainScreen_data() {
    QTest::addColumn<int>("phase");
    for (const int phase : {0, 1, 2}) QTest::addRow("%d", phase) << phase;
  }
  void missingPicturesAreAPlainScreen() {
    QFETCH(int, phase);
    const WithoutPictures without;
    Open(phase);
    for (int i = 0; i < 2; ++i) {
      QVERIFY(IsPlain(QRect(0, 0, 480, 320), kGround));
      Blink();
    }
  }
};

QTEST_MAIN(FirmUpWidgetTest)
#include "firmupwidget_test.moc"
