// The panel's records, as the interface's reader finds them in the FIFO.
#include "bench/panel/touchpanel.h"

#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QSet>
#include <QTest>
#include <cstring>

#include "gui/settings/settings.h"
#include "tests/fake/testroot.h"

static TestRoot root;

namespace {
struct Record {
  quint32 seconds, microseconds;
  quint16 type, code;
  qint32 value;
};
struct Event {
  int type, code, value;
  bool operator==(const Event&) const = default;
};
}  // namespace

class TouchPanelTest : public QObject {
  Q_OBJECT

private:
  TouchPanel mPanel;
  QString mError;
  int mReader = -1;

  QList<Event> Read() const {
    QList<Event> events;
    Record record{};
    while (read(mReader, &record, sizeof record) == ssize_t(sizeof record))
      events << Event{record.type, record.code, record.value};
    return events;
  }

private slots:
  void init() {
    const QString fifo = root.Path(QStringLiteral("/dev/input/event0"));
    QVERIFY2(mPanel.Open(fifo, &mError), qPrintable(mError));
    mReader = open(qPrintable(fifo), O_RDONLY | O_NONBLOCK);
    QVERIFY(mReader >= 0);
  }
  void cleanup() {
    close(mReader);
    mPanel.Close();
  }

  void theFifoIsTheUsersOwn() {
    struct stat made {};
    QCOMPARE(stat(qPrintable(root.Path(QStringLiteral("/dev/input/event0"))), &made), 0);
    QVERIFY(S_ISFIFO(made.st_mode));
    QCOMPARE(made.st_mode & 0777, mode_t{0600});
  }
  void whatStoodThereIsReplaced() {
    mPanel.Close();
    root.Remove(QStringLiteral("/dev/input/event0"));
    root.Write(QStringLiteral("/dev/input/event0"), "a file");
    QVERIFY(mPanel.Open(root.Path(QStringLiteral("/dev/input/event0")), &mError));
    QVERIFY(!mPanel.Open(QStringLiteral("/proc/none/event0"), &mError));
    QVERIFY(mError.endsWith(QStringLiteral(".")));
  }

  void aClosedPanelHasNoFinger() {
    QVERIFY(mPanel.PressRaw(1, 1, &mError));
    mPanel.Close();
    QVERIFY(!mPanel.IsDown());
    QVERIFY(!mPanel.PressRaw(1, 1, &mError));
    QVERIFY(!mPanel.IsDown());
    QVERIFY(!mError.isEmpty());
  }

  void aTouchIsTheseRecords() {
    QVERIFY(!mPanel.IsDown());
    QVERIFY(mPanel.PressRaw(46, 432, &mError));
    QVERIFY(mPanel.IsDown());
    const QList<Event> press = Read();
    QCOMPARE(press.size(), 4);
    QVERIFY(press[0] == (Event{EV_ABS, ABS_X, 46}));
    QVERIFY(press[1] == (Event{EV_ABS, ABS_Y, 432}));
    QVERIFY(press[2].type == EV_ABS && press[2].code == ABS_PRESSURE && press[2].value > 0);
    QVERIFY(press[3] == (Event{EV_SYN, SYN_REPORT, 0}));
    QVERIFY(mPanel.Release(&mError));
    QVERIFY(!mPanel.IsDown());
    QVERIFY(Read() == (QList<Event>{{EV_ABS, ABS_PRESSURE, 0}, {EV_SYN, SYN_REPORT, 0}}));
  }

  // Through the coefficients that the interface has from the factory.
  void everyPixelIsMetToOnePixel() {
    const Touch_Value& touch = kFactoryTouchValue;
    int exact = 0;
    for (int y = 0; y < 320; ++y) {
      for (int x = 0; x < 480; ++x) {
        const QPoint raw = mPanel.RawAt(x, y);
        QVERIFY(raw.x() >= 0 && raw.x() <= 511 && raw.y() >= 0 && raw.y() <= 511);
        // The reader swaps the axes.
        const double seenX = raw.y() * touch.alphaX + raw.x() * touch.betaX + touch.deltaX;
        const double seenY = raw.y() * touch.alphaY + raw.x() * touch.betaY + touch.deltaY;
        if (std::abs(int(seenX) - x) > 1 || std::abs(int(seenY) - y) > 1)
          QFAIL(qPrintable(QStringLiteral("(%1, %2) is met at (%3, %4)").arg(x).arg(y).arg(seenX).arg(seenY)));
        QVERIFY2(int(seenX) < 480 && int(seenY) < 320, "beside the screen, where no key is");
        if (int(seenX) == x && int(seenY) == y) ++exact;
      }
    }
    QVERIFY2(exact > 480 * 320 * 2 / 3, qPrintable(QStringLiteral("%1 pixels are met exactly").arg(exact)));
  }
  void aPressOfAPixelIsThatOfItsPanelUnits() {
    QVERIFY(mPanel.Press(40, 33, &mError));
    const QPoint raw = mPanel.RawAt(40, 33);
    const QList<Event> press = Read();
    QCOMPARE(press[0].value, raw.x());
    QCOMPARE(press[1].value, raw.y());
  }

  // ---- mounted askew

  void askewIsTurnedThenMoved() {
    QCOMPARE((Mounting{}.Felt({12, 34})), QPointF(12, 34));
    QCOMPARE((Mounting{0, -30, 50, 0}.Felt({100, 100})), QPointF(70, 150));
    QCOMPARE((Mounting{10, 0, 0, 0}.Felt({240, 160})), QPointF(240, 160));
    QCOMPARE((Mounting{10, 0, 0, 0}.Felt({340, 160})), QPointF(330, 150));
    QCOMPARE((Mounting{-10, 1, 2, 0}.Felt({240, 260})), QPointF(231, 252));
  }
  void askewTouchesAreFeltThere() {
    mPanel.Mount({5, -30, 50, 0});
    const QPointF felt = mPanel.Mounted().Felt({240, 160});
    const QPoint raw = mPanel.RawAt(240, 160);
    const Touch_Value& touch = kFactoryTouchValue;
    QVERIFY(std::abs(raw.y() * touch.alphaX + raw.x() * touch.betaX + touch.deltaX - felt.x()) < 1.1);
    QVERIFY(std::abs(raw.y() * touch.alphaY + raw.x() * touch.betaY + touch.deltaY - felt.y()) < 1.1);
    mPanel.Mount({});
  }
  void noiseIsBounded() {
    const QPoint clean = mPanel.RawAt(240, 160);
    mPanel.Mount({0, 0, 0, 2});
    QSet<QPair<int, int>> seen;
    for (int i = 0; i < 2000; ++i) {
      const QPoint off = mPanel.RawAt(240, 160) - clean;
      QVERIFY(std::abs(off.x()) <= 2 && std::abs(off.y()) <= 2);
      seen << qMakePair(off.x(), off.y());
    }
    QCOMPARE(seen.size(), 25);
    mPanel.Mount({});
  }
  // The markers of the calibration, and the keys beside them, are felt at units of their own, not at the panel's edge.
  void theMarkersStayOnThePanel() {
    for (const int skew : {-Mounting::kMostSkew, 0, Mounting::kMostSkew})
      for (const int x : {Mounting::kLeastX, Mounting::kMostX})
        for (const int y : {Mounting::kLeastY, Mounting::kMostY}) {
          mPanel.Mount({skew, x, y, Mounting::kMostNoise});
          for (const QPoint& at : {QPoint(40, 35), QPoint(440, 35), QPoint(440, 285), QPoint(40, 285)}) {
            const QPoint raw = mPanel.RawAt(at.x(), at.y());
            QVERIFY2(raw.x() > 0 && raw.x() < 511 && raw.y() > 0 && raw.y() < 511,
                     qPrintable(QStringLiteral("%1 %2 %3: %4 %5").arg(skew).arg(x).arg(y).arg(raw.x()).arg(raw.y())));
          }
        }
    mPanel.Mount({});
  }
  void aMountingIsKeptInAFile() {
    const QString file = root.Path(QStringLiteral("/run/panel"));
    QVERIFY((Mounting{-5, -30, 50, 1}.Write(file)));
    const Mounting read = Mounting::Read(file);
    QCOMPARE((QList<int>{read.skew, read.x, read.y, read.noise}), (QList<int>{-5, -30, 50, 1}));
  }
  void aBadFileIsTheFactorysMounting_data() {
    QTest::addColumn<QByteArray>("bytes");
    for (const char* bytes : {"", "1 2 3", "1 2 3 4 5", "a 2 3 4", "11 0 0 0", "0 -41 0 0", "0 0 61 0", "0 0 0 5",
                              "0 0 0 -1", "99999999999 0 0 0", "1  2 3"})
      QTest::newRow(bytes) << QByteArray(bytes);
  }
  void aBadFileIsTheFactorysMounting() {
    QFETCH(QByteArray, bytes);
    root.Write(QStringLiteral("/run/panel"), bytes);
    const Mounting read = Mounting::Read(root.Path(QStringLiteral("/run/panel")));
    QCOMPARE((QList<int>{read.skew, read.x, read.y, read.noise}), (QList<int>{0, 0, 0, 0}));
  }

  // The reader takes nine bits: 512 would be the other edge.
  void beyondThePanelIsItsEdge() {
    QVERIFY(mPanel.PressRaw(512, -1, &mError));
    QVERIFY(mPanel.Press(-100000, 100000, &mError));
    const QList<Event> press = Read();
    QCOMPARE(press.size(), 8);
    QVERIFY(press[0] == (Event{EV_ABS, ABS_X, 511}));
    QVERIFY(press[1] == (Event{EV_ABS, ABS_Y, 0}));
    QVERIFY(press[4] == (Event{EV_ABS, ABS_X, 511}));
    QVERIFY(press[5] == (Event{EV_ABS, ABS_Y, 511}));
  }

  void nobodyReads() {
    int reports = 0;
    while (reports < 10000 && mPanel.PressRaw(1, 1, &mError)) ++reports;
    QVERIFY(reports > 100 && reports < 10000);
    QVERIFY(mError.endsWith(QStringLiteral(".")));
    // Never half of a report.
    const QList<Event> events = Read();
    QCOMPARE(events.size(), reports * 4);
    for (int i = 0; i < reports * 4; i += 4) QVERIFY(events[i] == (Event{EV_ABS, ABS_X, 1}));
    QVERIFY(mPanel.PressRaw(2, 2, &mError));
  }
  void whatNobodyReadIsDropped() {
    QVERIFY(mPanel.PressRaw(1, 1, &mError));
    mPanel.Drain();
    QVERIFY(!mPanel.IsDown());
    QVERIFY(Read().isEmpty());
    QVERIFY(mPanel.PressRaw(2, 2, &mError));
    QCOMPARE(Read().size(), 4);
  }
};

QTEST_GUILESS_MAIN(TouchPanelTest)
#include "touchpanel_test.moc"
