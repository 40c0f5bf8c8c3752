#include "gui/screen/label.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QWidget>

namespace {
/// A page with stripes, so that another ground under the letters is another picture.
class Stripes : public QWidget {
public:
  QColor colour = QColor(40, 90, 160);

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    for (int x = 0; x < width(); x += 6) painter.fillRect(x, 0, 3, height(), colour);
  }
};
}  // namespace

class LabelTest : public QObject {
  Q_OBJECT

private:
  Stripes mPage;
  QLabel* mLabel = nullptr;

  QImage OnTheLcd() const {
    return mPage.screen()->grabWindow(mPage.winId()).toImage().convertToFormat(QImage::Format_RGB32);
  }
  // As nothing that was remembered makes it.
  QImage Anew() { return mPage.grab().toImage().convertToFormat(QImage::Format_RGB32); }
  // Often enough for what is remembered.
  void Repaint() {
    for (int i = 0; i < 4; ++i) {
      mPage.repaint();
      QCOMPARE(OnTheLcd(), Anew());
    }
  }

private slots:
  void initTestCase() {
    QApplication::setFont(QFont(QStringLiteral("NanumBarunGothic")));
    mPage.resize(300, 60);
    mLabel =
        AddLabel(&mPage, {"mLabel", {20, 5, 260, 50}, 24, QColor(200, 194, 196)}, QStringLiteral("AVAW 12:34 녹화"));
    mPage.show();
    QVERIFY(QTest::qWaitForWindowExposed(&mPage));
  }

  void thePixelsStayTheSame() { Repaint(); }
  void anotherTextIsSeen() {
    const QImage before = OnTheLcd();
    mLabel->setText(QStringLiteral("주차"));
    Repaint();
    QVERIFY(OnTheLcd() != before);
  }
  void anotherGroundIsSeen() {
    mPage.colour = QColor(160, 90, 40);
    Repaint();
  }
  void anotherLookIsSeen() {
    const QImage before = OnTheLcd();
    mLabel->setAlignment(Qt::AlignRight);
    Repaint();
    const QImage right = OnTheLcd();
    QVERIFY(right != before);
    mLabel->setStyleSheet(QStringLiteral("QLabel {background:transparent;color:rgb(255,0,0);}"));
    Repaint();
    QVERIFY(OnTheLcd() != right);
  }
  void aPartIsPaintedAsTheWholeIs() {
    Repaint();
    const QImage whole = OnTheLcd();
    mPage.repaint(QRect(100, 10, 150, 20) | QRect(130, 0, 9, 60));
    mPage.repaint(QRegion(150, 0, 9, 60) | QRegion(200, 20, 60, 9));
    QCOMPARE(OnTheLcd(), whole);
  }
};

QTEST_MAIN(LabelTest)
#include "label_test.moc"
