// The pictures of the two cameras.
#include "bench/roadvideo.h"

#include <QTest>

class RoadVideoTest : public QObject {
  Q_OBJECT

private:
  using View = VideoPlane::View;
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
    QCOMPARE(Frame(View::Front, qint64{1} << 50).size(), QSize(480, 320));  // a long drive
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
    QCOMPARE(both.pixel(400, 260), qRgb(0, 0, 0));
    QVERIFY(both.pixel(100, 260) != qRgb(0, 0, 0));
  }
};

QTEST_GUILESS_MAIN(RoadVideoTest)
#include "roadvideo_test.moc"
