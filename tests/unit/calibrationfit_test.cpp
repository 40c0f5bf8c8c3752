// The map from the panel to the screen, fitted to nine touches.
#include "gui/touch/calibrationfit.h"

#include <QRandomGenerator>
#include <QTest>
#include <algorithm>
#include <climits>
#include <cmath>

namespace {
constexpr int kX[9] = {240, 40, 240, 440, 440, 440, 240, 40, 40};
constexpr int kY[9] = {160, 35, 35, 35, 160, 285, 285, 285, 160};

bool Fit(const int (&panelX)[9], const int (&panelY)[9], Touch_Value* touch) {
  return FitTouch(panelX, panelY, kX, kY, 9, touch);
}
}  // namespace

class CalibrationFitTest : public QObject {
  Q_OBJECT

private slots:
  void sums() {
    const int a[] = {1, -2, 3};
    const int b[] = {10, 20, -30};
    QCOMPARE(GetSum(a, 3), 2);
    QCOMPARE(GetSum(a, 0), 0);
    QCOMPARE(GetSum(a, -1), 0);
    QCOMPARE(GetProductSum(a, b, 3), 10 - 40 - 90);
    QCOMPARE(GetProductSum(a, b, 0), 0);
    const int large[] = {INT_MAX, INT_MAX};
    QCOMPARE(GetSum(large, 2), 2LL * INT_MAX);
    QCOMPARE(GetProductSum(large, large, 2), 2);  // each product in 32 bits
  }
  // A panel whose points are exact: the coefficients come out exact.
  void anExactPanel_data() {
    QTest::addColumn<int>("scale");
    QTest::addColumn<int>("shiftX");
    QTest::addColumn<int>("shiftY");
    QTest::addColumn<bool>("turned");
    QTest::newRow("as the screen") << 1 << 0 << 0 << false;
    QTest::newRow("shifted") << 1 << 13 << 40 << false;
    QTest::newRow("doubled") << 2 << 5 << 7 << false;
    QTest::newRow("turned") << 1 << 0 << 0 << true;
    QTest::newRow("turned, doubled, shifted") << 2 << 30 << 20 << true;
  }
  void anExactPanel() {
    QFETCH(int, scale);
    QFETCH(int, shiftX);
    QFETCH(int, shiftY);
    QFETCH(bool, turned);
    int x[9], y[9];
    for (int i = 0; i < 9; ++i) {
      x[i] = scale * (turned ? kY[i] : kX[i]) + shiftX;
      y[i] = scale * (turned ? kX[i] : kY[i]) + shiftY;
    }
    Touch_Value touch{};
    QVERIFY(Fit(x, y, &touch));
    const double one = 1.0 / scale;
    QCOMPARE(touch.alphaX, turned ? 0 : one);
    QCOMPARE(touch.betaX, turned ? one : 0);
    QCOMPARE(touch.alphaY, turned ? one : 0);
    QCOMPARE(touch.betaY, turned ? 0 : one);
    QCOMPARE(touch.deltaX, -one * (turned ? shiftY : shiftX));
    QCOMPARE(touch.deltaY, -one * (turned ? shiftX : shiftY));
  }
  void pointsOnOneLineGiveNothing_data() {
    QTest::addColumn<int>("a");
    QTest::addColumn<int>("b");
    QTest::newRow("one point") << 0 << 0;
    QTest::newRow("upright") << 0 << 1;
    QTest::newRow("level") << 1 << 0;
    QTest::newRow("aslant") << 3 << 7;
  }
  void pointsOnOneLineGiveNothing() {
    QFETCH(int, a);
    QFETCH(int, b);
    int x[9], y[9];
    for (int i = 0; i < 9; ++i) {
      x[i] = 100 + a * i;
      y[i] = 50 + b * i;
    }
    Touch_Value touch = kFactoryTouchValue;
    QVERIFY(!Fit(x, y, &touch));
    QCOMPARE(touch.alphaX, kFactoryTouchValue.alphaX);
    QCOMPARE(touch.deltaY, kFactoryTouchValue.deltaY);
  }
  void farPointsGiveNothing_data() {
    QTest::addColumn<int>("far");
    QTest::addColumn<bool>("fitted");
    for (const int value : {1000, -1000}) QTest::addRow("%d", value) << value << true;
    for (const int value : {1001, -1001, INT_MAX, INT_MIN}) QTest::addRow("%d", value) << value << false;
  }
  void farPointsGiveNothing() {
    QFETCH(int, far);
    QFETCH(bool, fitted);
    for (const bool ofX : {true, false}) {
      int x[9], y[9];
      std::ranges::copy(kX, x);
      std::ranges::copy(kY, y);
      (ofX ? x : y)[8] = far;
      Touch_Value touch{};
      QCOMPARE(Fit(x, y, &touch), fitted);
      QCOMPARE(touch.alphaX != 0, fitted);
    }
  }
  // A thousand panels, mounted in any way, with a finger that is two steps off: three pixels at most.
  void anyPanelIsFittedToThreePixels() {
    QRandomGenerator random(20261121);
    const auto between = [&random](double least, double most) {
      return least + random.generateDouble() * (most - least);
    };
    for (int panel = 0; panel < 1000; ++panel) {
      // Pixels for a step of the panel, about as the factory has it: 1.06 and 1.14.
      const double turn = between(-0.2, 0.2) + (random.bounded(2) ? M_PI / 2 : 0);
      const double stepX = between(0.95, 1.14), stepY = between(0.95, 1.14);
      const double middleX = between(230, 280), middleY = between(230, 280);
      int x[9], y[9];
      for (int i = 0; i < 9; ++i) {
        const double dx = (kX[i] - 240) / stepX, dy = (kY[i] - 160) / stepY;
        const auto noise = [&between] { return between(-1.5, 1.5); };  // and half a step by the panel itself
        x[i] = std::clamp(int(std::lround(middleX + dx * std::cos(turn) - dy * std::sin(turn) + noise())), 0, 511);
        y[i] = std::clamp(int(std::lround(middleY + dx * std::sin(turn) + dy * std::cos(turn) + noise())), 0, 511);
      }
      Touch_Value touch{};
      QVERIFY(Fit(x, y, &touch));
      for (int i = 0; i < 9; ++i) {
        // Where the target itself is on this panel, without the finger's error.
        const double dx = (kX[i] - 240) / stepX, dy = (kY[i] - 160) / stepY;
        const double px = middleX + dx * std::cos(turn) - dy * std::sin(turn);
        const double py = middleY + dx * std::sin(turn) + dy * std::cos(turn);
        const double screenX = px * touch.alphaX + py * touch.betaX + touch.deltaX;
        const double screenY = px * touch.alphaY + py * touch.betaY + touch.deltaY;
        QVERIFY2(std::abs(screenX - kX[i]) <= 3 && std::abs(screenY - kY[i]) <= 3,
                 qPrintable(QStringLiteral("panel %1, target %2: %3 %4").arg(panel).arg(i).arg(screenX).arg(screenY)));
      }
    }
  }
};

QTEST_GUILESS_MAIN(CalibrationFitTest)
#include "calibrationfit_test.moc"
