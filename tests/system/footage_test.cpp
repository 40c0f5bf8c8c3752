// A video of the user's own is what a camera sees.
#include <QBuffer>
#include <QTemporaryDir>
#include <QtEndian>

#include "bench/footage/footage.h"
#include "recorder/card/clipreader.h"
#include "recorder/card/clipwriter.h"
#include "tests/system/camerarun.h"

using recorder::ClipReader;
using recorder::ClipWriter;

namespace {
constexpr QPoint kMiddle(240, 170);
constexpr QPoint kSmall(390, 262);  // of the rear camera's picture, right bottom
constexpr int kRate = 10;
constexpr int kNear = 16;  // what JPEG makes of a colour

bool IsNear(QRgb one, const QColor& other) {
  return std::abs(qRed(one) - other.red()) < kNear && std::abs(qGreen(one) - other.green()) < kNear &&
         std::abs(qBlue(one) - other.blue()) < kNear;
}

QImage Plain(QSize size, const QColor& colour) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(colour);
  return image;
}

QByteArray Jpeg(const QImage& image) {
  QBuffer jpeg;
  jpeg.open(QIODevice::WriteOnly);
  if (!image.save(&jpeg, "JPEG", 95)) qFatal("cannot write a picture");
  return jpeg.data();
}

/// A video of these pictures, each for a second.
QByteArray Video(const QList<QImage>& pictures) {
  ClipWriter writer(pictures[0].width(), pictures[0].height(), kRate);
  for (const QImage& picture : pictures) {
    const QByteArray jpeg = Jpeg(picture);
    for (int i = 0; i < kRate; ++i) writer.Add(jpeg);
  }
  return writer.Finish();
}

QByteArray LargeVideo() {
  QImage image(8000, 8000, QImage::Format_Grayscale8);
  image.fill(90);
  ClipWriter writer(image.width(), image.height(), kRate);
  writer.Add(Jpeg(image));
  return writer.Finish();
}

/// A second of silence.
QByteArray Sound() {
  QByteArray bytes("RIFF....WAVEfmt \x10\0\0\0\x01\0\x01\0\x40\x1f\0\0\x80\x3e\0\0\x02\0\x10\0data....", 44);
  qToLittleEndian(quint32{36 + 16000}, bytes.data() + 4);
  qToLittleEndian(quint32{16000}, bytes.data() + 40);
  return bytes + QByteArray(16000, '\0');
}

/// In the middle a third or a half of it, green, and blue around that.
QImage Banner(QSize size, const QRect& middle) {
  QImage image = Plain(size, Qt::blue);
  for (int y = middle.top(); y <= middle.bottom(); ++y)
    for (int x = middle.left(); x <= middle.right(); ++x) image.setPixelColor(x, y, QColor(0, 128, 0));
  return image;
}
}  // namespace

class FootageTest : public CameraRun {
  Q_OBJECT

  const QColor kRed{200, 30, 40}, kGreen{20, 140, 60}, kBlue{30, 60, 200};
  QTemporaryDir mFolder;

  QString Put(const QString& name, const QByteArray& bytes) const {
    QFile file(mFolder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write");
    return file.fileName();
  }
  bool IsSeen(QPoint at, const QColor& colour, int ms = 5000) const {
    return QTest::qWaitFor([&] { return IsNear(Seen().pixel(at), colour); }, ms);
  }
  QStringList Recordings() const {
    return QDir(mBench->Root() + QStringLiteral("/mnt/mmc")).entryList({QStringLiteral("*.avi")}, QDir::Files);
  }

private slots:
  void cleanup() { mBench.reset(); }

  void eachCameraSeesItsOwn() {
    QVERIFY(StartCamera({QStringLiteral("--front"), Put("red.avi", Video({Plain({480, 320}, kRed)})),
                         QStringLiteral("--rear"), Put("blue.avi", Video({Plain({640, 480}, kBlue)}))}));
    QVERIFY(IsSeen(kMiddle, kRed));
    QVERIFY(IsSeen(kSmall, kBlue));
  }
  void theOtherCameraSeesTheRoad() {
    QVERIFY(StartCamera({QStringLiteral("--rear"), Put("rear.avi", Video({Plain({480, 320}, kBlue)}))}));
    QVERIFY(IsSeen(kSmall, kBlue));
    const QImage before = Seen().copy(0, 100, 300, 150);
    QTRY_VERIFY(Seen().copy(0, 100, 300, 150) != before);  // it goes on
  }
  void itIsSeenAgainAndAgain() {
    QVERIFY(StartCamera(
        {QStringLiteral("--front"), Put("two.avi", Video({Plain({480, 320}, kRed), Plain({480, 320}, kGreen)}))}));
    QVERIFY(IsSeen(kMiddle, kRed));
    QElapsedTimer clock;
    clock.start();
    for (int round = 0; round < 3; ++round) {
      QVERIFY(IsSeen(kMiddle, kGreen));
      QVERIFY(IsSeen(kMiddle, kRed));
    }
    // Two seconds each, not as fast as it can be read.
    QVERIFY2(clock.elapsed() > 4000, qPrintable(QString::number(clock.elapsed())));
  }
  void itFillsThePictureWithoutDistortion_data() {
    QTest::addColumn<QImage>("picture");
    QTest::newRow("wide") << Banner({960, 320}, {240, 0, 480, 320});
    QTest::newRow("high") << Banner({480, 960}, {0, 320, 480, 320});
    QTest::newRow("odd") << Banner({1001, 333}, {251, 0, 499, 333});
    QTest::newRow("one pixel") << Plain({1, 1}, QColor(0, 128, 0));
    QTest::newRow("a line") << Plain({2, 2000}, QColor(0, 128, 0));
  }
  void itFillsThePictureWithoutDistortion() {
    QFETCH(QImage, picture);
    QVERIFY(StartCamera({QStringLiteral("--front"), Put("shape.avi", Video({picture}))}));
    QVERIFY(IsSeen(kMiddle, QColor(0, 128, 0)));
    const QImage drawn = Drawn(), seen = Seen();
    int pixels = 0;
    for (const QRect& edge : {QRect(12, 80, 8, 160), QRect(460, 80, 8, 120), QRect(80, 8, 320, 1)})
      for (int y = edge.top(); y <= edge.bottom(); ++y)
        for (int x = edge.left(); x <= edge.right(); ++x) {
          if ((drawn.pixel(x, y) & 0xFFFFFF) != 0xFF0008) continue;  // what the interface has drawn
          ++pixels;
          QVERIFY2(IsNear(seen.pixel(x, y), QColor(0, 128, 0)), qPrintable(QStringLiteral("%1 %2").arg(x).arg(y)));
        }
    QVERIFY(pixels > 1000);
  }
  void itIsRecorded() {
    QVERIFY(StartCamera({QStringLiteral("--front"), Put("record.avi", Video({Plain({480, 320}, kGreen)}))}));
    const QStringList before = Recordings();
    QVERIFY(Do("shock"));
    const auto made = [&] {
      QStringList recordings = Recordings();
      recordings.removeIf([&before](const QString& name) { return before.contains(name); });
      return recordings.filter(QStringLiteral("evt0")).value(0);
    };
    QTRY_VERIFY_WITH_TIMEOUT(!made().isEmpty(), 20000);
    ClipReader reader;
    QCOMPARE(int(reader.Open(mBench->Root() + QStringLiteral("/mnt/mmc/") + made())), int(ClipReader::Result::Good));
    int pictures = 0;
    while (reader.Next() == ClipReader::Result::Good) {
      ++pictures;
      const Picture& picture = *reader.Taken();
      QVERIFY(IsNear(picture.pixels[size_t(picture.width) * (picture.height / 2) + picture.width / 2], kGreen));
    }
    QCOMPARE(pictures * 250, int(reader.Length()));
  }
  // It goes on for a second, which no machine's load makes longer.
  void itStandsStillWhileNobodyLooks() {
    QList<QImage> pictures;
    for (int level = 0; level < 240; level += 40) pictures << Plain({48, 32}, QColor(level, level, level));
    Footage footage;
    QString error;
    QVERIFY2(footage.Open(Put("levels.avi", Video(pictures)), &error), qPrintable(error));
    const auto level = [&footage] { return qRed(footage.Picture().pixel(kMiddle)); };
    QVERIFY(level() < 20);
    QTest::qWait(3500);
    QVERIFY2(level() < 60, qPrintable(QString::number(level())));
    QTRY_VERIFY(level() > 140);
  }
  // A camera that lost its power in the middle of it.
  void whatIsLeftOfACutFileIsSeen() {
    const QByteArray video = Video({Plain({480, 320}, kRed), Plain({480, 320}, kRed)});
    QVERIFY(StartCamera({QStringLiteral("--front"), Put("cut.avi", video.left(video.size() * 2 / 3))}));
    QVERIFY(IsSeen(kMiddle, kRed));
    const QColor ground = Seen().pixelColor(kMiddle);
    for (QElapsedTimer clock = Clock(); clock.elapsed() < 3000;) QVERIFY(IsNear(Seen().pixel(kMiddle), ground));
    QVERIFY(mBench
                ->Find("note", QStringLiteral("%1 cannot be read any more: its last picture stays.")
                                   .arg(mFolder.filePath("cut.avi")))
                .isEmpty());
  }
  void oneThatBreaksStaysAtItsLastPicture() {
    const QString file = Put("breaks.avi", Video({Plain({480, 320}, kRed)}));
    QVERIFY(StartCamera({QStringLiteral("--front"), file}));
    QVERIFY(QFile::remove(file));
    Put("breaks.avi", "No video any more.");
    const QString note = QStringLiteral("%1 cannot be read any more: its last picture stays.").arg(file);
    QTRY_VERIFY_WITH_TIMEOUT(!mBench->Find("note", note).isEmpty(), 10000);
    QVERIFY(IsSeen(kMiddle, kRed));
  }

  // ---- what is refused

  void whatIsNoVideoIsOneSentence_data() {
    QTest::addColumn<QString>("file");
    const QByteArray video = Video({Plain({480, 320}, kRed)});
    const auto row = [this](const char* name, const QByteArray& bytes) {
      QTest::newRow(name) << Put(QString::fromLatin1(name).replace(u' ', u'-') + QStringLiteral(".avi"), bytes);
    };
    row("nothing", "");
    row("text", "A video of my car.");
    row("head alone", video.left(1000));
    row("scribbled over", QByteArray(5000, '#'));
    row("sound alone", Sound());
    row("too large", LargeVideo());
    QTest::newRow("missing") << mFolder.filePath(QStringLiteral("missing.avi"));
    QTest::newRow("a folder") << mFolder.path();
    QTest::newRow("another device") << QStringLiteral("/dev/zero");
    QTest::newRow("an address") << QStringLiteral("http://127.0.0.1:9/video.avi");
    row("playlist of elsewhere", "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\nhttp://127.0.0.1:9/video.ts\n");
  }
  void whatIsNoVideoIsOneSentence() {
    QFETCH(QString, file);
    for (const char* option : {"--front", "--rear"}) IsRefused({QLatin1String(option), file}, 1);
  }
  void itGoesNotWithAReplay() {
    for (const char* option : {"--front", "--rear"})
      IsRefused({QLatin1String(option), Put("good.avi", Video({Plain({480, 320}, kRed)})), QStringLiteral("--replay"),
                 QStringLiteral(SOURCE_DIR "/tests/system/recordings/option.jsonl")},
                2);
    IsRefused({QStringLiteral("--front"), QString()}, 2);
  }

private:
  static QElapsedTimer Clock() {
    QElapsedTimer clock;
    clock.start();
    return clock;
  }
  static void IsRefused(const QStringList& arguments, int code) {
    QProcess process;
    process.start(QStringLiteral(BINARY_DIR "/bench/dashcam-bench"),
                  QStringList{QStringLiteral("--port"), QStringLiteral("0")} + arguments);
    QVERIFY(process.waitForFinished(20000));
    const QString said = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(said.startsWith(QLatin1String("dashcam-bench: ")) && said.endsWith(QLatin1String(".\n")) &&
                 said.count(u'\n') == 1,
             qPrintable(said));
    QCOMPARE(process.exitCode(), code);
  }
};

QTEST_GUILESS_MAIN(FootageTest)
#include "footage_test.moc"
