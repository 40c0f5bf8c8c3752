// ./test --board: the product on an emulated board.
#include <QTest>
#include <QTextStream>

#include "tests/board/board.h"

namespace {
constexpr QPoint kMenu(265, 33), kHome(40, 30), kTile11(80, 125), kTile12(240, 125), kTile22(240, 255),
    kTile23(400, 255), kYes(140, 236), kNo(340, 236), kBeside(300, 200), kFirstRecording(200, 86),
    kPlayerBack(360, 290);
constexpr char kRecorderFile[] = "/tmp/config_init.ini", kInterfaceFile[] = "/opt/gui/ini/config_firm.ini";
constexpr int kShownMs = 60000;
}  // namespace

class BoardTest : public QObject {
  Q_OBJECT

private slots:
  void initTestCase();
  void init();
  void thePreviewIsShown();
  void aTouchOpensTheMenu();
  void anOptionIsChangedAndApplied();
  void recordingsAreListedAndPlayed();
  void theLcdGoesOffAndOn();
  void thePanelIsUnpluggedAndReplaced();
  void aKilledInterfaceComesBack();
  void aKilledRecorderComesBack();
  void aPowerCutLeavesTheOldSettingOrTheNew();
  void figures();

private:
  bool Shows(const char* picture);
  QByteArray Last(const char* what) const;
  bool IsOn(const char* screen);
  bool IsOverlayShown();
  template <typename Condition>
  bool TapUntil(QPoint at, Condition condition);
  void OpenPreview();
  bool Do(QJsonObject action);
  QString Setting(const char* file, const char* key);

  QTemporaryDir mFolder;
  Board mBoard{mFolder.filePath(QStringLiteral("disk"))};
  QImage mShown;
};

/// Waits until the display is, pixel by pixel, a picture of tests/pictures. What was there instead is kept in the
/// build.
bool BoardTest::Shows(const char* picture) {
  const QString name = QLatin1String(picture) + QStringLiteral(".png");
  const QImage known =
      QImage(QStringLiteral(SOURCE_DIR "/tests/pictures/") + name).convertToFormat(QImage::Format_RGB32);
  if (known.isNull()) qFatal("%s is not known", picture);
  if (QTest::qWaitFor([&] { return (mShown = mBoard.Display()) == known; }, kShownMs)) return true;
  int pixels = 0, most = 0;
  for (int y = 0; y < known.height(); ++y)
    for (int x = 0; x < known.width(); ++x) {
      const QRgb a = mShown.pixel(x, y), b = known.pixel(x, y);
      const int difference =
          std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
      pixels += difference > 0;
      most = std::max(most, difference);
    }
  const QString kept = QStringLiteral(SOURCE_DIR "/build/board-image/") + name;
  mShown.save(kept);
  qWarning("%s differs in %d pixels by up to %d levels: %s", picture, pixels, most, qPrintable(kept));
  return false;
}

/// What the interface has said last of its screen ("screen"), or of the box on it ("box own").
QByteArray BoardTest::Last(const char* what) const {
  const QByteArray console = mBoard.Console(), begin = '\n' + QByteArray(what) + ' ';
  const qsizetype at = console.lastIndexOf(begin);
  return at < 0 ? QByteArray() : console.mid(at + begin.size(), console.indexOf('\r', at) - at - begin.size());
}

bool BoardTest::IsOn(const char* screen) {
  return QTest::qWaitFor([&] { return Last("screen") == screen; }, kShownMs);
}

/// The keys of the preview.
bool BoardTest::IsOverlayShown() {
  return mBoard.Display().pixel(6, 5) == qRgb(20, 17, 18);
}

/// An action of the recorder's: {"name", its arguments}.
bool BoardTest::Do(QJsonObject action) {
  action.insert(QStringLiteral("type"), QStringLiteral("action"));
  const QJsonObject answer = mBoard.Record(action);
  if (!answer.value(QStringLiteral("ok")).toBool()) qWarning() << action << "is answered" << answer;
  return answer.value(QStringLiteral("ok")).toBool();
}

/// A setting, by its key in a file of settings.
QString BoardTest::Setting(const char* file, const char* key) {
  const QByteArray lines = mBoard.Run(QStringLiteral("cat ") + QLatin1String(file)).value_or(QByteArray());
  for (const QByteArray& line : lines.split('\n'))
    if (line.startsWith(QByteArray(key) + '=')) return QString::fromLatin1(line.mid(line.indexOf('=') + 1));
  return {};
}

/// As a driver does: again when nothing has happened. A touch in the dark is only for the light, and one that is made
/// while the screen changes is dropped.
template <typename Condition>
bool BoardTest::TapUntil(QPoint at, Condition condition) {
  for (int i = 0; i < 10; ++i)
    if (!mBoard.Tap(at) || QTest::qWaitFor(condition, 5000)) return condition();
  return false;
}

/// From wherever it is to the live preview, with its keys up.
void BoardTest::OpenPreview() {
  for (int i = 0; i < 10 && Last("screen") != "PREVIEW"; ++i) {
    const QByteArray before = Last("screen");
    QVERIFY(mBoard.Tap(Last("box own") == "none" || Last("box own").isEmpty() ? kHome : kNo));
    (void)QTest::qWaitFor([&] { return Last("screen") != before; }, 5000);
  }
  QCOMPARE(Last("screen"), QByteArray("PREVIEW"));
  QVERIFY(QTest::qWaitFor([this] { return !IsOverlayShown(); }, kShownMs));  // it could hide at any moment
  QVERIFY(TapUntil(kBeside, [this] { return IsOverlayShown(); }));
}

void BoardTest::initTestCase() {
  QString error;
  const QString disk = mFolder.filePath(QStringLiteral("disk"));
  QVERIFY(QFile::copy(QStringLiteral(SOURCE_DIR "/build/board-image/disk"), disk));
  QVERIFY2(mBoard.PowerOn(&error), qPrintable(error));
  QVERIFY(mBoard.Plug());
}

void BoardTest::init() {
  OpenPreview();
}

void BoardTest::thePreviewIsShown() {
  QVERIFY(Do({{"name", "gps"}, {"state", "fix"}}));
  QVERIFY(Do({{"name", "speed"}, {"kmh", 87}}));
  QVERIFY(Do({{"name", "battery"}, {"volts", 12.4}}));
  QVERIFY(mBoard.Run("date -s '2026-05-08 13:24:00'"));
  QVERIFY(Shows("preview"));
}

void BoardTest::aTouchOpensTheMenu() {
  QVERIFY(mBoard.Run("date -s '2026-04-26 13:24:00' && touch /mnt/mmc/Setup/.format_time"));
  QVERIFY(mBoard.Run("date -s '2026-05-08 13:24:00'"));
  QVERIFY(mBoard.Tap(kMenu));
  QVERIFY(IsOn("MAINMENU"));
  QVERIFY(Shows("main-menu"));
}

void BoardTest::anOptionIsChangedAndApplied() {
  for (const auto& [at, screen] :
       {std::pair(kMenu, "MAINMENU"), {kTile23, "BLACKBOXMANAGEMENT"}, {kTile22, "AUDIOSETTING"}}) {
    QVERIFY(mBoard.Tap(at));
    QVERIFY(IsOn(screen));
  }
  QVERIFY(Shows("audio"));
  QCOMPARE(Setting(kRecorderFile, "volume"), QStringLiteral("2"));
  QVERIFY(mBoard.Tap(kTile12));
  OpenPreview();
  QVERIFY(QTest::qWaitFor([&] { return Setting(kRecorderFile, "volume") == QStringLiteral("3"); }, kShownMs));
}

void BoardTest::recordingsAreListedAndPlayed() {
  QVERIFY(mBoard.Tap(kMenu));
  QVERIFY(IsOn("MAINMENU"));
  QVERIFY(mBoard.Tap(kTile11));
  QVERIFY(QTest::qWaitFor([this] { return Last("box own") != "none"; }, kShownMs));
  QVERIFY(mBoard.Tap(kYes));
  QVERIFY(IsOn("RECORDINGLIST"));
  QVERIFY(mBoard.Tap(kFirstRecording));
  QVERIFY(IsOn("PLAYER"));
  QVERIFY(mBoard.Tap(kPlayerBack));
  QVERIFY(IsOn("RECORDINGLIST"));
}

void BoardTest::theLcdGoesOffAndOn() {
  const auto light = [this] { return mBoard.Run("cat /run/proc/pwm/pwm0").value_or(QByteArray()).trimmed(); };
  QVERIFY(light().toInt() > 0);
  QVERIFY(Do({{"name", "powerKey"}}));
  QVERIFY(QTest::qWaitFor([&] { return light() == "0"; }, kShownMs));
  QVERIFY(TapUntil(kMenu, [&] { return light().toInt() > 0; }));
  QCOMPARE(Last("screen"), QByteArray("PREVIEW"));  // a touch in the dark is only for the light
}

void BoardTest::thePanelIsUnpluggedAndReplaced() {
  QVERIFY(mBoard.Press(kBeside));  // under the finger
  QVERIFY(mBoard.Unplug());
  QVERIFY(mBoard.Plug());
  QVERIFY(TapUntil(kMenu, [this] { return Last("screen") == "MAINMENU"; }));
}

void BoardTest::aKilledInterfaceComesBack() {
  const qsizetype before = mBoard.Console().size();
  QVERIFY(mBoard.Run("killall -9 dashcam-gui"));
  QVERIFY(QTest::qWaitFor([&] { return mBoard.Console().mid(before).contains("\nscreen PREVIEW\r"); }, kShownMs));
  QVERIFY(QTest::qWaitFor([this] { return IsOverlayShown(); }, kShownMs));
  QVERIFY(mBoard.Tap(kMenu));
  QVERIFY(IsOn("MAINMENU"));
}

void BoardTest::aKilledRecorderComesBack() {
  QVERIFY(mBoard.Run("killall -9 dashcam-recorder"));
  QVERIFY(QTest::qWaitFor([this] { return mBoard.Run("killall -0 dashcam-recorder").has_value(); }, kShownMs));
  QVERIFY(QTest::qWaitFor([this] { return !mBoard.Record({{"type", "state"}}).isEmpty(); }, kShownMs));
  QVERIFY(Do({{"name", "gps"}, {"state", "fix"}}));
  QVERIFY(Do({{"name", "speed"}, {"kmh", 87}}));
  QVERIFY(Do({{"name", "battery"}, {"volts", 12.4}}));
  QVERIFY(mBoard.Run("date -s '2026-05-08 13:24:00'"));
  QVERIFY(Shows("preview"));
}

// The current goes while the setting is written, at another moment each time: by the recorder and by the interface.
void BoardTest::aPowerCutLeavesTheOldSettingOrTheNew() {
  constexpr int kValues = 4;  // of the microphone
  QString error;
  for (const int ms : {0, 50, 150}) {
    for (const auto& [at, screen] :
         {std::pair(kMenu, "MAINMENU"), {kTile23, "BLACKBOXMANAGEMENT"}, {kTile22, "AUDIOSETTING"}}) {
      QVERIFY(mBoard.Tap(at));
      QVERIFY(IsOn(screen));
    }
    const int old = Setting(kRecorderFile, "volume").toInt();
    const QImage before = mBoard.Display();
    QVERIFY(TapUntil(kTile12, [&] { return mBoard.Display() != before; }));
    QVERIFY(mBoard.Press(kHome));
    QTest::qSleep(ms);
    mBoard.CutPower();
    QVERIFY2(mBoard.PowerOn(&error), qPrintable(error));
    QVERIFY(mBoard.Plug());
    for (const char* file : {kRecorderFile, kInterfaceFile}) {
      const QString value = Setting(file, "volume");
      QVERIFY2(value == QString::number(old) || value == QString::number((old + 1) % kValues),
               qPrintable(QStringLiteral("%1: %2, then %3").arg(QLatin1String(file)).arg(old).arg(value)));
    }
    QVERIFY(!Setting(kRecorderFile, "protectfile").isEmpty());  // the file is whole
    OpenPreview();
  }
}

void BoardTest::figures() {
  const QByteArray memory = mBoard.Run("grep VmRSS /proc/$(pidof dashcam-gui)/status").value_or(QByteArray());
  QVERIFY(memory.simplified().split(' ').size() == 3);
  // From the start of the program to pixels in the emptied display, by the board's own clock.
  QVERIFY(
      mBoard.Run("killall -9 dashcam-gui; rm /run/started; dd if=/dev/zero of=/dev/fb0 bs=614400 count=1 2>/dev/null"));
  const double shown = mBoard.AwaitPicture().value_or(0);
  const double started = mBoard.Run("cat /run/started").value_or(QByteArray()).trimmed().toDouble();
  QVERIFY2(started > 0 && shown > started, qPrintable(QStringLiteral("%1 .. %2").arg(started).arg(shown)));
  QTextStream(stdout)
      << "| power-on to picture | interface start to picture | resident memory | emulator |\n|---|---|---|---|\n| "
      << QString::number(mBoard.PowerToPicture(), 'f', 1) << " s | " << QString::number(shown - started, 'f', 2)
      << " s | " << QString::number(memory.simplified().split(' ')[1].toDouble() / 1024, 'f', 1)
      << " MiB | qemu-system-arm, cortex-a7, emulated |\n";
}

QTEST_GUILESS_MAIN(BoardTest)
#include "board_test.moc"
