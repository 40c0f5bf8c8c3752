// A picture of the driver's, from the page to the LCD of the real camera.
#include <QBuffer>
#include <QPainter>
#include <QRegularExpression>
#include <QtEndian>
#include <climits>

#include "tests/system/camerarun.h"

namespace {
constexpr QColor kGround(38, 34, 35);
constexpr qsizetype kMost = qsizetype{8} * 1024 * 1024;  // bytes of a picture

QByteArray FileOf(const QImage& image, const char* format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, format)) qFatal("cannot write %s", format);
  return bytes;
}

QImage Plain(QSize size, const QColor& color) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  return image;
}

// A BMP file that says it is larger than any memory.
QByteArray Bomb(int width, int height) {
  QByteArray bytes = FileOf(Plain({1, 1}, Qt::red), "BMP");
  qToLittleEndian(qint32{width}, bytes.data() + 18);
  qToLittleEndian(qint32{height}, bytes.data() + 22);
  return bytes;
}
}  // namespace

class OwnPictureTest : public CameraRun {
  Q_OBJECT

  BenchAnswer Put(const QByteArray& file) const { return mBench->Post("/api/picture", file); }
  bool Send(QTcpSocket* socket, const QByteArray& file) const {
    socket->connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
    if (!socket->waitForConnected(kPatienceMs)) return false;
    socket->write("POST /api/picture HTTP/1.1\r\nHost: " + mBench->Host() +
                  "\r\nContent-Length: " + QByteArray::number(file.size()) + "\r\n\r\n" + file);
    while (socket->bytesToWrite() > 0)
      if (!socket->waitForBytesWritten(kPatienceMs)) return false;
    return true;
  }
  QImage OnCard() const { return QImage(mBench->Root() + QStringLiteral("/mnt/mmc/Setup/picture.bmp")); }

  bool IsSeenSoon(const QImage& image) const {
    return QTest::qWaitFor([&] { return Seen() == image; }, 10000);
  }
  int Starts() const { return mBench->State("interface/starts").toInt(); }
  // The interface is started again and has shown itself.
  void Restarted(int starts) {
    QTRY_VERIFY_WITH_TIMEOUT(Starts() > starts, 20000);
    QTRY_VERIFY_WITH_TIMEOUT(Screen() == QStringLiteral("PREVIEW") && IsOverlayShown(), 10000);
  }

private slots:
  void initTestCase() { QVERIFY(StartCamera()); }
  void cleanupTestCase() { mBench.reset(); }

  void aPictureOfAnyFormatIsPutOnTheCard_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QRect>("box");
    const QRect whole(0, 0, 480, 320);
    QTest::newRow("BMP") << FileOf(Plain({480, 320}, Qt::blue), "BMP") << whole;
    QTest::newRow("PNG") << FileOf(Plain({480, 320}, Qt::blue), "PNG") << whole;
    QTest::newRow("JPEG") << FileOf(Plain({480, 320}, Qt::blue), "JPEG") << whole;
    QTest::newRow("one pixel") << FileOf(Plain({1, 1}, Qt::blue), "PNG") << QRect(80, 0, 320, 320);
    QTest::newRow("wide") << FileOf(Plain({960, 320}, Qt::blue), "PNG") << QRect(0, 80, 480, 160);
    QTest::newRow("high") << FileOf(Plain({50, 100}, Qt::blue), "PNG") << QRect(160, 0, 160, 320);
    QTest::newRow("huge") << FileOf(Plain({4096, 4096}, Qt::blue), "PNG") << QRect(80, 0, 320, 320);
    QTest::newRow("a line") << FileOf(Plain({10000, 1}, Qt::blue), "PNG") << QRect(0, 159, 480, 1);
  }
  void aPictureOfAnyFormatIsPutOnTheCard() {
    QFETCH(QByteArray, file);
    QFETCH(QRect, box);
    const int starts = Starts();
    const BenchAnswer answer = Put(file);
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.Json(), (QJsonObject{{"ok", true}}));
    const QImage card = OnCard();
    QCOMPARE(card.size(), QSize(480, 320));
    QCOMPARE(card.depth(), 32);  // as Qt reads 24 bits
    for (int y = 0; y < 320; ++y)
      for (int x = 0; x < 480; ++x) {
        const QColor pixel = card.pixelColor(x, y);
        const bool blue = pixel.blue() > 250 && pixel.red() < 5;
        QVERIFY2(blue == box.contains(x, y), qPrintable(QStringLiteral("%1 %2").arg(x).arg(y)));
        if (!blue) QCOMPARE(pixel, kGround);
      }
    Restarted(starts);
  }
  void whatShinesThroughIsTheGround() {
    QImage glass(480, 320, QImage::Format_ARGB32);
    glass.fill(QColor(255, 255, 255, 0));
    const int starts = Starts();
    QCOMPARE(Put(FileOf(glass, "PNG")).status, 200);
    QCOMPARE(OnCard().pixelColor(240, 160), kGround);
    Restarted(starts);
  }

  void whatIsNoPictureIsRefused_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("status");
    const QByteArray png = FileOf(Plain({480, 320}, Qt::green), "PNG");
    const auto row = [](const char* name, const QByteArray& file, int status = 400) {
      QTest::newRow(name) << file << status;
    };
    row("nothing", "");
    row("text", "A picture of my car.");
    row("JSON", "{}");
    row("signature alone", png.left(8));
    row("head alone", png.left(33));
    row("torn", png.left(png.size() - 30));
    row("spoilt", QByteArray(png).replace(40, 20, QByteArray(20, '#')));
    row("BMP of nothing", QByteArray("BM").leftJustified(54, '\0'));
    row("larger than memory", Bomb(INT_MAX, INT_MAX));
    row("a bit too large", Bomb(4097, 4096));
    row("sizes below 0", Bomb(-5, -5));
    row("a drawing that names a file",
        "<svg xmlns='http://www.w3.org/2000/svg' width='480' height='320'><image href='/etc/passwd'/></svg>");
    row("too large", QByteArray(kMost + 1, ' '), 413);
    row("as large as it may be, and none", QByteArray(kMost, ' '));
  }
  void whatIsNoPictureIsRefused() {
    QFETCH(QByteArray, file);
    QFETCH(int, status);
    const QImage before = OnCard();
    const int starts = Starts();
    const BenchAnswer answer = Put(file);
    QCOMPARE(answer.status, status);
    static const QRegularExpression sentence(QStringLiteral("^[A-Z].+\\.$"));
    QVERIFY2(sentence.match(answer.Error()).hasMatch(), answer.body.constData());
    QCOMPARE(OnCard(), before);
    QCOMPARE(Starts(), starts);
  }
  // The largest picture takes half a second to read; meanwhile everybody else is answered.
  void whileAPictureIsReadTheBenchAnswers() {
    const QByteArray file = FileOf(Plain({4096, 4096}, Qt::blue), "PNG");
    const int starts = Starts();
    QTcpSocket socket;
    QVERIFY(Send(&socket, file));
    QTRY_COMPARE(Put("x").Error(), QStringLiteral("Another picture is being read."));
    QVERIFY(!socket.waitForReadyRead(0));
    QVERIFY(socket.waitForReadyRead(10000));
    QVERIFY(socket.readAll().startsWith("HTTP/1.1 200 OK"));
    Restarted(starts);
  }
  // Its answer is nobody's then.
  void whoHasSentAPictureMayLeave() {
    const int starts = Starts();
    {
      QTcpSocket socket;
      QVERIFY(Send(&socket, FileOf(Plain({4096, 4096}, Qt::red), "PNG")));
      QTRY_COMPARE(Put("x").Error(), QStringLiteral("Another picture is being read."));
    }
    Restarted(starts);
    QVERIFY(OnCard().pixelColor(240, 160).red() > 250);
  }
  void otherPathsTakeNoMoreThanBefore() {
    QCOMPARE(mBench->Post("/api/picture/", QByteArray(65537, ' ')).status, 413);
    QCOMPARE(mBench->Post("/api/picture?x", QByteArray(65537, ' ')).status, 413);
  }
  void aLargePictureMayComeSlowly() {
    const QByteArray file = FileOf(Plain({1000, 1000}, Qt::cyan), "BMP");
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), mBench->Port());
    QVERIFY(socket.waitForConnected(kPatienceMs));
    socket.write("POST /api/picture HTTP/1.1\r\nHost: " + mBench->Host() +
                 "\r\nContent-Length: " + QByteArray::number(file.size()) + "\r\n\r\n");
    const int starts = Starts();
    for (qsizetype at = 0; at < file.size(); at += 100000) {
      socket.write(file.mid(at, 100000));
      QVERIFY(socket.waitForBytesWritten(kPatienceMs));
    }
    QByteArray answer;
    while (socket.waitForReadyRead(kPatienceMs)) answer += socket.readAll();
    QVERIFY2(answer.startsWith("HTTP/1.1 200"), answer.constData());
    Restarted(starts);
  }
  void withoutACardOrARecorderThereIsNoPlaceForIt() {
    const QByteArray file = FileOf(Plain({480, 320}, Qt::yellow), "PNG");
    QVERIFY(Do("sdOut"));
    QCOMPARE(Put(file).status, 409);
    QVERIFY(Do("sdIn"));
    QVERIFY(Do("recorderStop"));
    QCOMPARE(Put(file).status, 409);
    QVERIFY(Do("recorderStart"));
    QVERIFY(OnCard().pixelColor(240, 160) != QColor(Qt::yellow));
  }

  // 10 s without a touch, and the driver's own picture is what the LCD shows then.
  void theLcdThatWaitsShowsIt() {
    int starts = Starts();
    QImage own = Plain({480, 320}, Qt::darkGreen);
    QPainter(&own).fillRect(100, 50, 200, 100, Qt::white);
    QCOMPARE(Put(FileOf(own, "PNG")).status, 200);
    Restarted(starts);
    QFile ini(mBench->Root() + QStringLiteral("/tmp/config_init.ini"));
    QVERIFY(ini.open(QIODevice::ReadOnly));
    QByteArray settings = ini.readAll();
    ini.close();
    settings.replace("lcd_wait_dis=0", "lcd_wait_dis=3").replace("lcd_auto_off=2", "lcd_auto_off=1");
    QVERIFY(settings.contains("lcd_wait_dis=3") && settings.contains("lcd_auto_off=1"));
    QVERIFY(ini.open(QIODevice::WriteOnly | QIODevice::Truncate) && ini.write(settings) == settings.size());
    ini.close();
    QVERIFY(Do("recorderRestart"));
    starts = Starts();
    QVERIFY(Do("interfaceRestart"));
    Restarted(starts);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("SCREENSAVER"), 40000);
    QVERIFY(IsSeenSoon(own.convertToFormat(QImage::Format_RGB32)));
    // Another one is seen after the restart that it asks for.
    own.fill(Qt::darkBlue);
    starts = Starts();
    QCOMPARE(Put(FileOf(own, "JPEG")).status, 200);
    Restarted(starts);
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("SCREENSAVER"), 40000);
    QTRY_VERIFY(Seen().pixelColor(150, 100).blue() > 120);
  }
};

QTEST_GUILESS_MAIN(OwnPictureTest)
#include "ownpicture_test.moc"
