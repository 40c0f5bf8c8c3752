#include "gui/base/picture.h"

#include <QPainter>
#include <QTest>

#include "tests/fake/testroot.h"

static TestRoot root;

class PictureTest : public QObject {
  Q_OBJECT

private:
  static void Draw(const QString& path, QSize size, const QColor& colour) {
    QImage image(size, QImage::Format_RGB888);
    image.fill(colour);
    QVERIFY(image.save(root.Path(path), "BMP"));
  }
  static QColor ColourOf(const QPixmap& picture) { return picture.toImage().pixelColor(0, 0); }

private slots:
  void initTestCase() {
    // A folder of its own: the drawn pictures are not the subject here.
    QFile::remove(root.Path("/opt/gui/images"));
    QVERIFY(QDir().mkpath(root.Path("/opt/gui/images/sub")));
  }

  void aNameIsBelowTheImageFolder() {
    Draw("/opt/gui/images/sub/red one.bmp", QSize(3, 2), Qt::red);
    QCOMPARE(Picture("sub/red one.bmp").size(), QSize(3, 2));
    QCOMPARE(ColourOf(Picture("sub/red one.bmp")), QColor(Qt::red));
  }
  void anAbsolutePathIsThatOfTheCamera() {
    Draw("/tmp/custom.bmp", QSize(4, 4), Qt::blue);
    QCOMPARE(ColourOf(Picture("/tmp/custom.bmp")), QColor(Qt::blue));
  }
  void aPictureIsDecodedOnce() {
    Draw("/opt/gui/images/once.bmp", QSize(2, 2), Qt::green);
    const QPixmap first = Picture("once.bmp");
    root.Remove("/opt/gui/images/once.bmp");
    QCOMPARE(Picture("once.bmp").cacheKey(), first.cacheKey());
  }
  void aMissingPictureIsNullAndHarmless() {
    QTest::ignoreMessage(QtDebugMsg, "picture: missing: /opt/gui/images/none.bmp");
    QVERIFY(Picture("none.bmp").isNull());
    QVERIFY(Picture("none.bmp").isNull());
    QPixmap page(10, 10);
    page.fill(Qt::white);
    QPainter(&page).drawPixmap(0, 0, Picture("none.bmp"));
    QCOMPARE(ColourOf(page), QColor(Qt::white));
  }
  void aFileThatIsNoPictureIsNull() {
    root.Write("/opt/gui/images/torn.bmp", "BM\xFF\xFF\xFF\x7F rubbish");
    QTest::ignoreMessage(QtDebugMsg, "picture: missing: /opt/gui/images/torn.bmp");
    QVERIFY(Picture("torn.bmp").isNull());
  }
  // A folder can be opened as little as a file without memory for it.
  void aPictureThatCannotBeReadNowIsTriedAgain() {
    QVERIFY(QDir().mkpath(root.Path("/opt/gui/images/later.bmp")));
    QTest::ignoreMessage(QtDebugMsg, "picture: missing: /opt/gui/images/later.bmp");
    QVERIFY(Picture("later.bmp").isNull());
    QVERIFY(QDir().rmdir(root.Path("/opt/gui/images/later.bmp")));
    Draw("/opt/gui/images/later.bmp", QSize(3, 3), Qt::green);
    QCOMPARE(ColourOf(Picture("later.bmp")), QColor(Qt::green));
  }
  // 14 full pages are more than 8 MiB: the first is decoded anew, the last is still there.
  void decodedPicturesStayWithinTheirLimit() {
    const auto name = [](int i) { return QStringLiteral("page%1.bmp").arg(i); };
    for (int i = 0; i < 16; ++i) {
      Draw("/opt/gui/images/" + name(i), QSize(480, 320), Qt::red);
      QCOMPARE(ColourOf(Picture(name(i))), QColor(Qt::red));
    }
    Draw("/opt/gui/images/" + name(0), QSize(480, 320), Qt::blue);
    Draw("/opt/gui/images/" + name(15), QSize(480, 320), Qt::blue);
    QCOMPARE(ColourOf(Picture(name(15))), QColor(Qt::red));
    QCOMPARE(ColourOf(Picture(name(0))), QColor(Qt::blue));
  }
};

QTEST_MAIN(PictureTest)
#include "picture_test.moc"
