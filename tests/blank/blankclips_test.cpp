// Recordings without pictures, as a recorder without FFmpeg makes and plays them.
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include "gui/recordings/aviheader.h"
#include "recorder/card/clipreader.h"
#include "recorder/card/clipwriter.h"
#include "recorder/card/pictureencoder.h"

using recorder::ClipReader;
using recorder::ClipWriter;
using Result = ClipReader::Result;

class BlankClipsTest : public QObject {
  Q_OBJECT

  QTemporaryDir mFolder;

  static QByteArray Clip(int pictures, int rate) {
    ClipWriter writer(240, 160, rate);
    for (int i = 0; i < pictures; ++i) writer.Add({});
    return writer.Finish();
  }

  QString Put(const QByteArray& bytes) const {
    QFile file(mFolder.filePath("clip.avi"));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write");
    return file.fileName();
  }

private slots:
  void theListReadsItsLength() {
    QCOMPARE(ReadAviSeconds(Put(Clip(80, 4) + QByteArray("\1\0^\0", 4))), 20);
    QCOMPARE(ReadAviSeconds(Put(Clip(3, 1))), 3);
  }

  void theSizesOfItsChunksAreRight() {
    const QByteArray clip = Clip(8, 4);
    const auto number = [&clip](int at) { return qFromLittleEndian<quint32>(clip.constData() + at); };
    QCOMPARE(number(4) + 8, quint32(clip.size()));
    const quint32 movie = number(16) + 20;  // behind the list of headers
    QCOMPARE(clip.mid(qsizetype(movie), 4), QByteArray("LIST"));
    QCOMPARE(clip.mid(qsizetype(movie) + 8, 4), QByteArray("movi"));
    QCOMPARE(qsizetype(movie + number(int(movie) + 4)) + 8, clip.size());
    QCOMPARE(clip.mid(88, 4), QByteArray("LIST"));  // of the stream
    QCOMPARE(number(92) + 96, movie);
    const quint32 format = number(104) + 108;
    QCOMPARE(clip.mid(qsizetype(format), 4), QByteArray("strf"));
    QCOMPARE(number(int(format) + 4) + format + 8, movie);
  }

  void itIsPlayedInItsTime() {
    ClipReader reader;
    QCOMPARE(reader.Open(Put(Clip(8, 4))), Result::Good);
    QCOMPARE(reader.Length(), 2000);
    for (int i = 0; i < 8; ++i) {
      QCOMPARE(reader.Next(), Result::Good);
      QCOMPARE(reader.At(), i * 250);
      QCOMPARE(reader.Until(), (i + 1) * 250);
      QVERIFY(reader.Taken());
    }
    QCOMPARE(reader.Next(), Result::End);
  }

  void anyPlaceIsFound_data() {
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<qint64>("at");
    QTest::newRow("begin") << qint64{0} << qint64{0};
    QTest::newRow("middle") << qint64{1100} << qint64{1000};
    QTest::newRow("end") << qint64{2000} << qint64{1750};
    QTest::newRow("far behind") << qint64{2147483647} << qint64{1750};
    QTest::newRow("before") << qint64{-5000} << qint64{0};
  }
  void anyPlaceIsFound() {
    QFETCH(qint64, ms);
    ClipReader reader;
    QCOMPARE(reader.Open(Put(Clip(8, 4))), Result::Good);
    QVERIFY(reader.Seek(ms));
    QCOMPARE(reader.Next(), Result::Good);
    QTEST(reader.At(), "at");
  }

  void whatIsNoneIsRefused_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("result");
    const QByteArray clip = Clip(8, 4);
    QTest::newRow("empty") << QByteArray() << int(Result::NotReadable);
    QTest::newRow("cut off") << clip.left(clip.size() / 2) << int(Result::NotReadable);
    QTest::newRow("scribbled") << QByteArray(64, '#') + clip.mid(64) << int(Result::NotReadable);
    const auto with = [clip](int at, quint32 value) {
      QByteArray bytes = clip;
      qToLittleEndian(value, bytes.data() + at);
      return bytes;
    };
    QTest::newRow("another codec") << with(112, 1) << int(Result::NotPlayable);
    QTest::newRow("no rate") << with(132, 0) << int(Result::NotPlayable);
    QTest::newRow("high rate") << with(132, 61) << int(Result::NotPlayable);
    QTest::newRow("another scale") << with(128, 2) << int(Result::NotPlayable);
    QTest::newRow("too long") << with(140, 0xFFFFFFFF) << int(Result::NotPlayable);
  }
  void whatIsNoneIsRefused() {
    QFETCH(QByteArray, bytes);
    ClipReader reader;
    QTEST(int(reader.Open(Put(bytes))), "result");
  }

  void onlyFilesAreOpened() {
    ClipReader reader;
    QCOMPARE(reader.Open(mFolder.filePath("none.avi")), Result::NotOpened);
    QCOMPARE(reader.Open(mFolder.path()), Result::NotOpened);
    Put(Clip(8, 4));
    QVERIFY(QFile::link("clip.avi", mFolder.filePath("link.avi")));
    QCOMPARE(reader.Open(mFolder.filePath("link.avi")), Result::NotOpened);
  }

  void oneWithoutPicturesHasNone() {
    ClipReader reader;
    QCOMPARE(reader.Open(Put(Clip(0, 4))), Result::Good);
    QCOMPARE(reader.Next(), Result::NotReadable);
  }

  void aFileIsFinishedOnce() {
    ClipWriter writer(240, 160, 4);
    writer.Add({});
    QCOMPARE(writer.Pictures(), 1);
    QVERIFY(!writer.Finish().isEmpty());
    QVERIFY(writer.Finish().isEmpty());
    QVERIFY(recorder::PictureEncoder(16, 16).Encode({16, 16, std::vector<quint32>(256)}).isEmpty());
  }
};

QTEST_GUILESS_MAIN(BlankClipsTest)
#include "blankclips_test.moc"
