// The pictures of the two cameras.
#include "bench/lcd/roadvideo.h"

#include <QTest>

class RoadVideoTest : public QObject {
  Q_OBJECT

private:
  using View = VideoPlane::View;
  static constexpr QRect kSmall{330, 220, 130, 85};  // well inside the small picture, right bottom
  RoadVideo mRoad;

  QImage Frame(View view, qint64 ms = 5000) const {
    VideoPlane plane;
    plane.view = view;
    return mRoad.Frame(plane, ms);
  }

private slots:
  void everyViewIsAPictureOfTheWholeScreen() {
    for (const View view : {View::Pip, View::Front, View::Rear}) {
      const QImage frame = Frame(view);
      QCOMPARE(frame.size(), QSize(480, 320));
      QCOMPARE(frame.format(), QImage::Format_RGB32);
      QVERIFY(frame == Frame(view));
    }
    QVERIFY(Frame(View::Front) != Frame(View::Rear));
  }
  void theRoadMoves() {
    for (const View view : {View::Pip, View::Front, View::Rear}) QVERIFY(Frame(view) != Frame(view, 5083));
    // The road and not only the cars: the middle line before the bonnet.
    const QRect line(225, 240, 30, 80);
    for (const View view : {View::Front, View::Rear}) QVERIFY(Frame(view).copy(line) != Frame(view, 5083).copy(line));
    // A long drive.
    const qint64 late = qint64{1} << 45;
    for (const View view : {View::Pip, View::Front, View::Rear}) QVERIFY(Frame(view, late) != Frame(view, late + 83));
  }
  // The road comes on from picture to picture: two pictures later it is not back where it was.
  void theRoadDoesNotFlicker() {
    const QRect road(0, 200, 480, 120);
    const auto different = [&](const QImage& one, const QImage& other) {
      int pixels = 0;
      for (int y = road.top(); y <= road.bottom(); ++y)
        for (int x = road.left(); x <= road.right(); ++x) pixels += one.pixel(x, y) != other.pixel(x, y);
      return pixels;
    };
    for (const View view : {View::Front, View::Rear}) {
      qint64 oneOn = 0, twoOn = 0;
      for (qint64 ms = 0; ms < 24 * 83; ms += 83) {
        oneOn += different(Frame(view, ms), Frame(view, ms + 83));
        twoOn += different(Frame(view, ms), Frame(view, ms + 2 * 83));
      }
      QVERIFY2(twoOn > oneOn, qPrintable(QStringLiteral("%1 and %2 pixels").arg(oneOn).arg(twoOn)));
    }
  }
  void theSmallPictureStandsInItsCorner() {
    const QImage front = Frame(View::Front);
    for (int corner = 0; corner < 4; ++corner) {
      VideoPlane plane;
      plane.pipCorner = corner;
      const QImage both = mRoad.Frame(plane, 5000);
      const bool right = corner < 2, bottom = corner == 0 || corner == 3;
      for (const bool atRight : {false, true}) {
        for (const bool atBottom : {false, true}) {
          const QRect quarter(atRight ? 300 : 0, atBottom ? 200 : 0, 180, 120);
          QCOMPARE(both.copy(quarter) != front.copy(quarter), atRight == right && atBottom == bottom);
        }
      }
    }
  }
  void aStrangeCornerIsTheFirst() {
    VideoPlane plane;
    plane.pipCorner = 99;
    QVERIFY(mRoad.Frame(plane, 0) == Frame(View::Pip, 0));
  }
  void theRearPictureIsMirrored() {
    VideoPlane plane;
    plane.view = View::Rear;
    plane.mirrored = true;
    QVERIFY(mRoad.Frame(plane, 5000) == Frame(View::Rear).mirrored(true, false));
    plane.view = View::Front;
    QVERIFY(mRoad.Frame(plane, 5000) == Frame(View::Front));
    // Picture in picture: the small one alone.
    plane.view = View::Pip;
    const QImage both = mRoad.Frame(plane, 5000), plain = Frame(View::Pip);
    QVERIFY(both.copy(kSmall) != plain.copy(kSmall));
    QVERIFY(both.copy(0, 0, 480, 200) == plain.copy(0, 0, 480, 200));
    QVERIFY(both.copy(0, 0, 300, 320) == plain.copy(0, 0, 300, 320));
  }
  void aDeadRearCameraIsBlack() {
    VideoPlane plane;
    plane.rearAlive = false;
    plane.view = View::Rear;
    QImage black(480, 320, QImage::Format_RGB32);
    black.fill(Qt::black);
    QVERIFY(mRoad.Frame(plane, 5000) == black);
    plane.view = View::Pip;
    const QImage both = mRoad.Frame(plane, 5000);
    QVERIFY(both.copy(kSmall) == black.copy(kSmall));
    QVERIFY(both.copy(0, 0, 300, 320) == Frame(View::Front).copy(0, 0, 300, 320));
  }
};

QTEST_GUILESS_MAIN(RoadVideoTest)
#include "roadvideo_test.moc"
