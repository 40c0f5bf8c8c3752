// What a person sees of overlay, video and backlight, and where it changed.
#include "bench/lcd/compose.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

namespace {
QImage Plain(QRgb colour) {
  QImage image(480, 320, QImage::Format_RGB32);
  image.fill(colour);
  return image;
}
const QRgb kGrass = qRgb(10, 120, 20);
}  // namespace

class ComposeTest : public QObject {
  Q_OBJECT

private slots:
  void theVideoShowsThroughTheKeyColourAlone_data() {
    QTest::addColumn<QRgb>("pixel");
    QTest::addColumn<bool>("video");
    QTest::newRow("key") << qRgb(255, 0, 8) << true;
    QTest::newRow("no alpha") << (qRgb(255, 0, 8) & 0xFFFFFF) << true;
    QTest::newRow("red") << qRgb(254, 0, 8) << false;
    QTest::newRow("green") << qRgb(255, 1, 8) << false;
    QTest::newRow("blue less") << qRgb(255, 0, 7) << false;
    QTest::newRow("blue more") << qRgb(255, 0, 9) << false;
    QTest::newRow("white") << qRgb(255, 255, 255) << false;
  }
  void theVideoShowsThroughTheKeyColourAlone() {
    QFETCH(QRgb, pixel);
    QFETCH(bool, video);
    QImage raw = Plain(qRgb(1, 2, 3));
    reinterpret_cast<QRgb*>(raw.scanLine(100))[50] = pixel;
    const QImage seen = Compose(raw, Plain(kGrass), 100000);
    QCOMPARE(seen.size(), QSize(480, 320));
    QCOMPARE(seen.pixel(50, 100), video ? kGrass : (pixel | 0xFF000000));
    QCOMPARE(seen.pixel(51, 100), qRgb(1, 2, 3));
  }
  void withoutVideoTheKeyColourIsBlack() {
    QCOMPARE(Compose(Plain(kKeyColour), QImage(), 100000).pixel(5, 5), qRgb(0, 0, 0));
  }
  void withoutAPictureItIsBlack() { QCOMPARE(Compose(QImage(), Plain(kGrass), 100000).pixel(5, 5), qRgb(0, 0, 0)); }

  void theBacklight_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("of200");
    QTest::newRow("off") << 0 << 0;
    QTest::newRow("below off") << -5 << 0;
    QTest::newRow("lowest") << 1 << 50;
    QTest::newRow("dark") << 10000 << 65;
    QTest::newRow("half") << 50000 << 125;
    QTest::newRow("full") << 100000 << 200;
    QTest::newRow("beyond") << 1000000000 << 200;
  }
  void theBacklight() {
    QFETCH(int, value);
    QFETCH(int, of200);
    const QRgb seen = Compose(Plain(qRgb(200, 200, 200)), QImage(), value).pixel(0, 0);
    QVERIFY2(std::abs(qRed(seen) - of200) <= 1, qPrintable(QString::number(qRed(seen))));
    QCOMPARE(qRed(seen), qBlue(seen));
  }

  void nothingChangedIsNothing() {
    QVERIFY(Changed(Plain(5), Plain(5)).isEmpty());
    QCOMPARE(Changed(QImage(), Plain(5)), QRegion(0, 0, 480, 320));
  }
  void onePixelIsASmallRectangle() {
    QImage after = Plain(qRgb(1, 1, 1));
    after.setPixel(479, 319, qRgb(2, 1, 1));
    const QRegion changed = Changed(Plain(qRgb(1, 1, 1)), after);
    QVERIFY(changed.contains(QPoint(479, 319)));
    QVERIFY(changed.boundingRect().width() <= 32 && changed.boundingRect().height() <= 32);
  }
  void evenTheWorstChangeIsFewRectangles() {
    const QImage before = Plain(qRgb(9, 9, 9));
    QImage after = before;
    for (int y = 0; y < 320; y += 8)
      for (int x = y % 16; x < 480; x += 16) after.setPixel(x, y, qRgb(200, 9, 9));
    const QRegion changed = Changed(before, after);
    QVERIFY(changed.rectCount() <= 600);
    for (int y = 0; y < 320; y += 8)
      for (int x = y % 16; x < 480; x += 16) QVERIFY(changed.contains(QPoint(x, y)));
  }
  // Whoever has the picture before and draws the rectangles has the picture after.
  void theRectanglesMakeThePicture() {
    QRandomGenerator random(7);
    QImage before = Plain(qRgb(9, 9, 9));
    for (int round = 0; round < 200; ++round) {
      QImage after = before;
      for (int i = random.bounded(20); i >= 0; --i) {
        QPainter(&after).fillRect(random.bounded(480), random.bounded(320), random.bounded(60) + 1,
                                  random.bounded(60) + 1, QColor::fromRgb(random.generate()));
      }
      const QRegion changed = Changed(before, after);
      QVERIFY(changed.rectCount() <= 600);
      QVERIFY((changed - QRegion(0, 0, 480, 320)).isEmpty());
      for (const QRect& where : changed) QPainter(&before).drawImage(where.topLeft(), after, where);
      QVERIFY(before == after);
    }
  }
};

QTEST_GUILESS_MAIN(ComposeTest)
#include "compose_test.moc"
