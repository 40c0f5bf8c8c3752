// The framebuffer's file: what an X server writes, and what it must not be able to do to the reader.
#include "bench/lcd/lcd.h"

#include <sys/stat.h>

#include <QTest>
#include <QtEndian>

#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
// A screen in the X window dump format, as Xvfb lays it out.
struct Dump {
  quint32 words[25] = {160, 7,        2,      24,   480, 320, 0,   0,   32,  0, 32, 32, 480 * 4,
                       4,   0xFF0000, 0xFF00, 0xFF, 8,   256, 256, 480, 320, 0, 0,  0};
  QByteArray pixels = QByteArray(480 * 320 * 4, '\0');

  QByteArray Bytes() const {
    QByteArray bytes;
    for (const quint32 word : words) {
      const quint32 big = qToBigEndian(word);
      bytes.append(reinterpret_cast<const char*>(&big), 4);
    }
    return bytes + QByteArray(60, '\0') + QByteArray(256 * 12, 'c') + pixels;
  }
};
}  // namespace

class LcdTest : public QObject {
  Q_OBJECT

private:
  static QString Write(const QByteArray& bytes) {
    root.Write(QStringLiteral("/tmp/screen"), bytes);
    return root.Path(QStringLiteral("/tmp/screen"));
  }

private slots:
  void pixelsAreRead() {
    Dump dump;
    const auto set = [&dump](int x, int y, const char* bgra) {
      dump.pixels.replace((y * 480 + x) * 4, 4, QByteArray(bgra, 4));
    };
    set(0, 0, "\x01\x02\x03\x00");
    set(479, 319, "\x08\x00\xFF\x00");
    Lcd lcd;
    QVERIFY(lcd.Raw().isNull());
    QVERIFY(lcd.Open(Write(dump.Bytes())));
    QVERIFY(lcd.IsOpen());
    const QImage raw = lcd.Raw();
    QCOMPARE(raw.size(), QSize(480, 320));
    QCOMPARE(raw.pixel(0, 0), qRgb(3, 2, 1));
    QCOMPARE(raw.pixel(479, 319), qRgb(255, 0, 8));
    QCOMPARE(raw.pixel(1, 0), qRgb(0, 0, 0));
  }
  void longerRowsAreRead() {
    Dump dump;
    dump.words[12] = 2000;
    dump.pixels = QByteArray(2000 * 320, '\0');
    dump.pixels[2000 * 319] = '\x55';
    Lcd lcd;
    QVERIFY(lcd.Open(Write(dump.Bytes())));
    QCOMPARE(lcd.Raw().pixel(0, 319), qRgb(0, 0, 0x55));
  }
  void aScreenThatGoesAwayGivesNoPicture() {
    Lcd lcd;
    QVERIFY(lcd.Open(Write(Dump().Bytes())));
    QVERIFY(QFile::resize(root.Path(QStringLiteral("/tmp/screen")), 5000));
    QVERIFY(lcd.Raw().isNull());
    lcd.Close();
    QVERIFY(!lcd.IsOpen());
    QVERIFY(lcd.Raw().isNull());
  }

  void otherFilesAreRefused_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("short head") << Dump().Bytes().left(99);
    QTest::newRow("short pixels") << Dump().Bytes().chopped(1);
    QTest::newRow("text") << QByteArray(1000000, 'x');
    const auto with = [](int word, quint32 value) {
      Dump dump;
      dump.words[word] = value;
      return dump.Bytes();
    };
    QTest::newRow("version") << with(1, 6);
    QTest::newRow("format") << with(2, 1);
    QTest::newRow("width") << with(4, 640);
    QTest::newRow("height") << with(5, 0xFFFFFFFF);
    QTest::newRow("byte order") << with(7, 1);
    QTest::newRow("bits a pixel") << with(11, 16);
    QTest::newRow("row of 0 bytes") << with(12, 0);
    QTest::newRow("row too short") << with(12, 480 * 4 - 1);
    QTest::newRow("row too long") << with(12, 0xFFFFFFFF);
    QTest::newRow("red mask") << with(14, 0xFF);
    QTest::newRow("green mask") << with(15, 0xFF);
    QTest::newRow("blue mask") << with(16, 0xFF00);
    QTest::newRow("head of 0 bytes") << with(0, 0);
    QTest::newRow("huge head") << with(0, 0xFFFFFFFF);
    QTest::newRow("huge colour map") << with(19, 0xFFFFFFFF);
  }
  void otherFilesAreRefused() {
    QFETCH(QByteArray, bytes);
    Lcd lcd;
    QString error;
    QVERIFY(!lcd.Open(Write(bytes), &error));
    QVERIFY(error.endsWith(QStringLiteral("is no screen of 480 x 320 pixels.")));
    QVERIFY(!lcd.IsOpen());
  }
  void aMissingFileIsRefused() {
    Lcd lcd;
    QVERIFY(!lcd.Open(root.Path(QStringLiteral("/tmp/none"))));
  }
  void whatIsNoFileIsRefusedAtOnce() {
    Lcd lcd;
    QVERIFY(!lcd.Open(root.Path(QStringLiteral("/tmp"))));
    const QString fifo = root.Path(QStringLiteral("/tmp/fifo"));
    QCOMPARE(mkfifo(qPrintable(fifo), 0600), 0);
    QVERIFY(!lcd.Open(fifo));  // nobody writes; it must not wait for that
  }
  void aRefusedScreenLeavesNoneOpen() {
    Lcd lcd;
    QVERIFY(lcd.Open(Write(Dump().Bytes())));
    QVERIFY(!lcd.Open(root.Path(QStringLiteral("/tmp/none"))));
    QVERIFY(!lcd.IsOpen());
    QVERIFY(lcd.Raw().isNull());
  }
};

QTEST_GUILESS_MAIN(LcdTest)
#include "lcd_test.moc"
