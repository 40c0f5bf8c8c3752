// The real interface on framebuffers of several kinds, by Qt's own platform for them; a preloaded library stands for
// the kernel.
#include <signal.h>
#include <sys/prctl.h>

#include <QImage>
#include <QProcess>
#include <QTest>
#include <optional>

#include "bench/lcd/compose.h"
#include "recorder/firmware/recorder.h"
#include "tests/fake/managerfake.h"
#include "tests/fake/testroot.h"
#include "tests/system/patience.h"

static const TestRoot root;

namespace {
constexpr QRect kPicture(0, 0, 480, 320);
constexpr QRect kTexts(0, 284, 480, 36);  // clock, speed and voltage: of a moment
// Of the known pictures: the microphone is on, the rear camera and the key for a recording by hand are there.
constexpr char kSettings[] =
    "[audiosetting]\nvolume=2\n[parkingsetting]\nrear_cam_power=1\nparking_mode_on=1\n[filedeletesetting]\nprotectfile="
    "1\n";
constexpr char kOfNobody = '\x55';

struct Screen {
  int width = 480, height = 320, bits = 32, stride = 1920;
  QImage::Format Format() const { return bits == 16 ? QImage::Format_RGB16 : QImage::Format_RGB32; }
};

/// What is left of a colour in a pixel of so many bits.
QRgb InBits(QRgb colour, int bits) {
  QImage pixel(1, 1, bits == 16 ? QImage::Format_RGB16 : QImage::Format_RGB32);
  if (bits == 16)
    *reinterpret_cast<quint16*>(pixel.bits()) =
        quint16((qRed(colour) >> 3) << 11 | (qGreen(colour) >> 2) << 5 | qBlue(colour) >> 3);
  else
    *reinterpret_cast<QRgb*>(pixel.bits()) = colour;
  return pixel.pixel(0, 0);
}
}  // namespace

class FramebufferTest : public QObject {
  Q_OBJECT

  const QByteArray mName = root.Path(QStringLiteral("/run/notify")).toLocal8Bit();
  std::optional<ManagerFake> mManager;
  QProcess mInterface;
  QByteArray mSaid;

  void Start(const Screen& screen, const QStringList& arguments) {
    root.Write(QStringLiteral("/tmp/fb"), QByteArray(qsizetype{screen.stride} * screen.height, kOfNobody));
    root.Remove(QStringLiteral("/tmp/console"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) environment.remove(QLatin1String(name));
    const QList<std::pair<const char*, QString>> variables{
        {"LD_PRELOAD", QStringLiteral(BINARY_DIR "/tests/libframebufferfake.so")},
        {"FRAMEBUFFER_FILE", root.Path(QStringLiteral("/tmp/fb"))},
        {"FRAMEBUFFER_FAKE",
         QStringLiteral("%1 %2 %3 %4").arg(screen.width).arg(screen.height).arg(screen.bits).arg(screen.stride)},
        {"CONSOLE_FAKE", root.Path(QStringLiteral("/tmp/console"))},
        {"NOTIFY_SOCKET", QString::fromLocal8Bit(mName)},
        {"ASAN_OPTIONS", QStringLiteral("verify_asan_link_order=0:detect_leaks=0")},
        {"QT_FORCE_STDERR_LOGGING", QStringLiteral("1")}};
    for (const auto& [name, value] : variables) environment.insert(QLatin1String(name), value);
    mInterface.setProcessEnvironment(environment);
    mInterface.start(QStringLiteral(BINARY_DIR "/gui/dashcam-gui"), arguments);
    QVERIFY(mInterface.waitForStarted());
    QVERIFY2(mManager->Awaits("READY=1"), mInterface.readAll().constData());
  }
  void End() {
    mInterface.terminate();
    QVERIFY(mInterface.waitForFinished());
    mSaid = mInterface.readAll();
    QCOMPARE(mInterface.exitStatus(), QProcess::NormalExit);
    QCOMPARE(mInterface.exitCode(), 0);
  }
  static QImage Shown(const Screen& screen) {
    const QByteArray bytes = root.Read(QStringLiteral("/tmp/fb"));
    return QImage(reinterpret_cast<const uchar*>(bytes.constData()), screen.width, screen.height, screen.stride,
                  screen.Format())
        .copy()
        .convertToFormat(QImage::Format_RGB32);
  }
  /// Said on the standard error by the program itself.
  QList<QByteArray> Sentences() const {
    QList<QByteArray> sentences;
    for (const QByteArray& line : mSaid.split('\n'))
      // The loader refuses to preload into the shell of a machine of another word size.
      if (line.contains("framebuffer") && !line.startsWith("ERROR: ld.so: object")) sentences << line;
    return sentences;
  }

  /// `shown` is the preview of the known pictures, or its upper left part.
  static void CompareWithPreview(const QImage& shown, int bits) {
    const QImage known = QImage(SOURCE_DIR "/tests/pictures/preview.png").convertToFormat(QImage::Format_RGB32);
    QCOMPARE(known.size(), kPicture.size());
    int ofVideo = 0;
    for (int y = 0; y < shown.height(); ++y)
      for (int x = 0; x < shown.width(); ++x) {
        if (kTexts.contains(x, y)) continue;
        const QRgb wanted = InBits(known.pixel(x, y), bits), found = shown.pixel(x, y);
        ofVideo += found == kKeyColour ? 1 : 0;
        QVERIFY2(found == wanted, qPrintable(QStringLiteral("%1 %2: %3, not %4")
                                                 .arg(x)
                                                 .arg(y)
                                                 .arg(found, 8, 16, QLatin1Char('0'))
                                                 .arg(wanted, 8, 16, QLatin1Char('0'))));
      }
    QVERIFY(ofVideo > shown.width() * shown.height() / 2);
  }

private slots:
  void initTestCase() {
    qputenv("PLATFORM_KEY", QByteArray::number(0x46400000 + 2 * (QCoreApplication::applicationPid() & 0xFFFFF)));
    mInterface.setProcessChannelMode(QProcess::MergedChannels);
    mInterface.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    mManager.emplace(mName);
    root.Write(QStringLiteral("/tmp/config_init.ini"), kSettings);
  }
  void cleanup() {
    mInterface.kill();
    mInterface.waitForFinished();
    mManager->TakeAll();
  }
  void cleanupTestCase() { Recorder::RemoveTransport(); }

  void thePreviewIsOnTheScreen_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("stride");
    QTest::newRow("32 bits") << 32 << 1920;
    QTest::newRow("32 bits, longer rows") << 32 << 2048;
    QTest::newRow("16 bits") << 16 << 960;
    QTest::newRow("16 bits, longer rows") << 16 << 1024;
  }
  void thePreviewIsOnTheScreen() {
    QFETCH(int, bits);
    QFETCH(int, stride);
    const Screen screen{480, 320, bits, stride};
    Start(screen, {});  // without a display server it finds the framebuffer by itself
    CompareWithPreview(Shown(screen), bits);
    QCOMPARE(root.Read(QStringLiteral("/tmp/console")), QByteArray("graphics\n"));
    const QByteArray bytes = root.Read(QStringLiteral("/tmp/fb"));
    for (int y = 0; y < 320; ++y)
      for (int at = 480 * bits / 8; at < stride; ++at) QCOMPARE(bytes[qsizetype{y} * stride + at], kOfNobody);
    End();
    QCOMPARE(root.Read(QStringLiteral("/tmp/console")), QByteArray("graphics\ntext\n"));
    QCOMPARE(Sentences(), QList<QByteArray>());
  }

  void aLargerScreenHasItInItsMiddle_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("stride");
    QTest::newRow("32 bits") << 32 << 800 << 480 << 3328;
    QTest::newRow("16 bits") << 16 << 800 << 480 << 1600;
    QTest::newRow("wider") << 32 << 640 << 320 << 2560;
  }
  void aLargerScreenHasItInItsMiddle() {
    QFETCH(int, bits);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, stride);
    const Screen screen{width, height, bits, stride};
    Start(screen, {QStringLiteral("-platform"), QStringLiteral("linuxfb")});
    const QImage shown = Shown(screen);
    const QRect middle(QPoint((width - 480) / 2, (height - 320) / 2), kPicture.size());
    CompareWithPreview(shown.copy(middle), bits);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        if (!middle.contains(x, y)) QCOMPARE(shown.pixel(x, y), qRgb(0, 0, 0));
    End();
    QCOMPARE(Sentences(), (QList<QByteArray>{QStringLiteral("The framebuffer /dev/fb0 has %1 x %2 pixels and not "
                                                            "480 x 320: the picture stands in its middle.")
                                                 .arg(width)
                                                 .arg(height)
                                                 .toUtf8()}));
  }

  void aSmallerScreenHasItsUpperLeftPart_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("32 bits") << 32 << 320 << 240;
    QTest::newRow("16 bits") << 16 << 320 << 240;
    QTest::newRow("lower") << 32 << 480 << 272;
  }
  void aSmallerScreenHasItsUpperLeftPart() {
    QFETCH(int, bits);
    QFETCH(int, width);
    QFETCH(int, height);
    const Screen screen{width, height, bits, width * bits / 8};
    Start(screen, {});
    CompareWithPreview(Shown(screen), bits);
    End();
    QCOMPARE(Sentences(), (QList<QByteArray>{QStringLiteral("The framebuffer /dev/fb0 has %1 x %2 pixels and not "
                                                            "480 x 320: the picture is cut off at the right or below.")
                                                 .arg(width)
                                                 .arg(height)
                                                 .toUtf8()}));
  }

  // Who says where it is to be knows.
  void anOwnPlaceIsKept_data() {
    QTest::addColumn<QString>("platform");
    QTest::addColumn<QRgb>("around");
    QTest::newRow("place") << QStringLiteral("linuxfb:offset=20x30") << qRgb(0, 0, 0);
    QTest::newRow("place and size") << QStringLiteral("linuxfb:offset=20x30:size=480x320") << qRgb(0x55, 0x55, 0x55);
  }
  void anOwnPlaceIsKept() {
    QFETCH(QString, platform);
    QFETCH(QRgb, around);
    const Screen screen{800, 480, 32, 3200};
    Start(screen, {QStringLiteral("-platform"), platform});
    const QImage shown = Shown(screen);
    CompareWithPreview(shown.copy(QRect(QPoint(20, 30), kPicture.size())), 32);
    QCOMPARE(shown.pixel(19, 30), around);
    QCOMPARE(shown.pixel(500, 30), around);
    End();
    QCOMPARE(Sentences(), QList<QByteArray>());
  }

  void withoutAFramebufferItEndsWithASentence() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    mInterface.setProcessEnvironment(environment);
    mInterface.start(QStringLiteral(BINARY_DIR "/gui/dashcam-gui"),
                     {QStringLiteral("-platform"), QStringLiteral("linuxfb:fb=/nowhere/fb")});
    QVERIFY(mInterface.waitForFinished());
    QCOMPARE(mInterface.readAll(),
             QByteArray("The framebuffer /nowhere/fb cannot be used: No such file or directory.\n"));
    QCOMPARE(mInterface.exitStatus(), QProcess::NormalExit);
    QCOMPARE(mInterface.exitCode(), 1);
  }
};

QTEST_GUILESS_MAIN(FramebufferTest)
#include "framebuffer_test.moc"
