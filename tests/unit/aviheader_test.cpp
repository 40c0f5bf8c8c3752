#include "gui/recordings/aviheader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <climits>

namespace {
/// An AVI up to the length of its first stream, with a main header of `mainBytes`.
QByteArray Header(quint32 rate, quint32 length, quint32 mainBytes = 56) {
  QByteArray avi(qsizetype{88} + mainBytes, '\xEE');
  avi.replace(0, 4, "RIFF").replace(8, 8, "AVI LIST").replace(20, 8, "hdrlavih");
  qToLittleEndian<quint32>(mainBytes, avi.data() + 28);
  qToLittleEndian<quint32>(rate, avi.data() + 76 + mainBytes);
  qToLittleEndian<quint32>(length, avi.data() + 84 + mainBytes);
  return avi;
}
}  // namespace

class AviHeaderTest : public QObject {
  Q_OBJECT

  QTemporaryDir mFolder;
  QString Name() const { return mFolder.filePath(QStringLiteral("a.avi")); }

  void Write(const QByteArray& bytes) {
    QFile file(Name());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
  }
  /// -1: nothing could be told.
  int Seconds() {
    QFile file(Name());
    return file.open(QIODevice::ReadOnly) ? ReadAviSeconds(file.handle()).value_or(-1) : -2;
  }

private slots:
  // The kernel gives a file of its own a page at a time.
  void whatComesInPartsIsPutTogether() {
    const auto open = [](const char* path) { return ::open(path, O_RDONLY | O_CLOEXEC); };
    const int file = open("/proc/self/smaps");
    char bytes[20000];
    QVERIFY(pread(file, bytes, sizeof bytes, 0) < ssize_t(sizeof bytes));
    QCOMPARE(ReadAt(file, bytes, sizeof bytes, 0), ssize_t(sizeof bytes));
    close(file);
    const int end = open("/proc/self/comm");
    const ssize_t all = ReadAt(end, bytes, sizeof bytes, 0);
    QVERIFY(all > 1);
    QCOMPARE(ReadAt(end, bytes, sizeof bytes, 1), all - 1);
    close(end);
    const int folder = open("/proc");
    QCOMPARE(ReadAt(folder, bytes, sizeof bytes, 0), ssize_t{-1});
    close(folder);
  }

  void secondsAreFramesByRate_data() {
    QTest::addColumn<quint32>("rate");
    QTest::addColumn<quint32>("length");
    QTest::addColumn<int>("seconds");
    QTest::newRow("a minute") << 30u << 1800u << 60;
    QTest::newRow("one frame a second") << 1u << 7u << 7;
    QTest::newRow("the rest of a second does not count") << 30u << 1829u << 60;
    QTest::newRow("less than a second") << 30u << 29u << 0;
    QTest::newRow("no frames") << 30u << 0u << 0;
    QTest::newRow("no rate") << 0u << 1800u << 0;
    QTest::newRow("neither") << 0u << 0u << 0;
    QTest::newRow("every byte of both counts") << 0x01020304u << 0x7F010203u << int(0x7F010203u / 0x01020304u);
    QTest::newRow("rate beyond a signed number") << 0x80000000u << 0xFFFFFFFFu << 1;
    QTest::newRow("as many as a number holds") << 1u << 0x7FFFFFFFu << INT_MAX;
    QTest::newRow("more than a number holds") << 1u << 0xFFFFFFFFu << INT_MAX;
  }
  void secondsAreFramesByRate() {
    QFETCH(quint32, rate);
    QFETCH(quint32, length);
    Write(Header(rate, length));
    QTEST(Seconds(), "seconds");
    QTEST(ReadAviSeconds(Name()), "seconds");
  }

  void mainHeaderOfAnySizeIsSkipped_data() {
    QTest::addColumn<quint32>("mainBytes");
    for (const quint32 bytes : {0u, 1u, 40u, 55u, 56u, 57u, 64u, 200u, 5000u, 70000u})
      QTest::addRow("%u", bytes) << bytes;
  }
  void mainHeaderOfAnySizeIsSkipped() {
    QFETCH(quint32, mainBytes);
    const QByteArray header = Header(25, 1000, mainBytes);
    Write(header);
    QCOMPARE(Seconds(), 40);
    Write(header + QByteArray(1000, '\0'));
    QCOMPARE(Seconds(), 40);
    Write(header.chopped(1));
    QCOMPARE(Seconds(), -1);
  }

  void mainHeaderBeyondTheFile_data() {
    QTest::addColumn<quint32>("mainBytes");
    // Above all those that 32 bits would carry back into the file.
    for (const quint32 bytes :
         {57u, 2000u, 0x7FFFFFD3u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFB4u, 0xFFFFFFD4u, 0xFFFFFFFEu, 0xFFFFFFFFu})
      QTest::addRow("%x", bytes) << bytes;
  }
  void mainHeaderBeyondTheFile() {
    QFETCH(quint32, mainBytes);
    QByteArray header = Header(25, 1000);
    qToLittleEndian<quint32>(mainBytes, header.data() + 28);
    Write(header);
    QCOMPARE(Seconds(), -1);
    QCOMPARE(ReadAviSeconds(Name()), 0);
  }

  void headerCutAtEveryByte() {
    const QByteArray header = Header(30, 1800);
    for (qsizetype size = 0; size < header.size(); ++size) {
      Write(header.first(size));
      QCOMPARE(Seconds(), -1);
      QCOMPARE(ReadAviSeconds(Name()), 0);
    }
    Write(header);
    QCOMPARE(Seconds(), 60);
  }

  void everyByteOfTheSignatureCounts() {
    for (const int at : {0, 1, 2, 3, 12, 13, 14, 15}) {
      QByteArray header = Header(30, 1800);
      header[at] = char(header[at] ^ 0x20);
      Write(header);
      QCOMPARE(Seconds(), -1);
    }
  }
  void sizesAndTypesBetweenAreNotLookedAt() {
    QByteArray header = Header(30, 1800);
    header.replace(4, 8, QByteArray(8, '\xFF')).replace(16, 12, QByteArray(12, '\xFF'));
    Write(header);
    QCOMPARE(Seconds(), 60);
  }

  void positionOfTheFileStays() {
    Write(Header(30, 1800, 200));
    QFile file(Name());
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    QVERIFY(file.seek(5));
    QCOMPARE(ReadAviSeconds(file.handle()), std::optional(60));
    QCOMPARE(lseek(file.handle(), 0, SEEK_CUR), off_t{5});
  }

  void whatIsNoFileHasNoSeconds() {
    const QString pipe = mFolder.filePath(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
    for (const QString& path :
         {mFolder.path(), pipe, mFolder.filePath(QStringLiteral("none")), QStringLiteral("/dev/zero"), QString()})
      QCOMPARE(ReadAviSeconds(path), 0);
  }

  void secondsOfRealFiles_data() {
    QTest::addColumn<int>("rate");
    QTest::addColumn<int>("seconds");
    for (const int rate : {1, 5, 10, 15, 24, 25, 30, 60})
      for (const int seconds : {1, 2, 59, 60}) QTest::addRow("%d s at %d", seconds, rate) << rate << seconds;
  }
  void secondsOfRealFiles() {
    QFETCH(int, rate);
    QFETCH(int, seconds);
    QProcess writer;
    writer.start(
        QStringLiteral("ffmpeg"),
        {"-loglevel", "error", "-y", "-f", "lavfi", "-i",
         QStringLiteral("color=size=16x16:rate=%1:duration=%2").arg(rate).arg(seconds), "-c:v", "mjpeg", Name()});
    QVERIFY(writer.waitForFinished(30000));
    QCOMPARE(writer.exitCode(), 0);
    QProcess reader;
    reader.start(QStringLiteral("ffprobe"),
                 {"-loglevel", "error", "-show_entries", "stream=duration", "-of", "csv=p=0", Name()});
    QVERIFY(reader.waitForFinished(30000));
    QCOMPARE(reader.readAllStandardOutput().trimmed().toDouble(), double(seconds));
    QCOMPARE(Seconds(), seconds);
    QCOMPARE(ReadAviSeconds(Name()), seconds);
  }
};

QTEST_GUILESS_MAIN(AviHeaderTest)
#include "aviheader_test.moc"
