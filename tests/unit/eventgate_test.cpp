#include "gui/base/eventgate.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {
// Handles events as the window does, and notes in one list what was begun and what was ended.
class Handler : public QObject {
public:
  explicit Handler(QStringList* noted) : mNoted(noted) {}

  void Event(const QString& name) {
    const auto again = [this, name] { Event(name); };
    if (!gEventGate.Enter(this, again)) return;
    *mNoted << name;
    if (!during) return;
    std::exchange(during, nullptr)();
    *mNoted << name + " ends";
  }

  // As a worker thread does.
  void PostEvent(const QString& name) {
    QMetaObject::invokeMethod(
        this, [this, name] { Event(name); }, Qt::QueuedConnection);
  }
  std::function<void()> during;  // what the next one does in its middle; once

private:
  QStringList* mNoted;
};
}  // namespace

class EventGateTest : public QObject {
  Q_OBJECT

private:
  QStringList mNoted;
  std::unique_ptr<Handler> mHandler;

private slots:
  void init() {
    mNoted.clear();
    mHandler = std::make_unique<Handler>(&mNoted);
  }
  void cleanup() {
    mHandler.reset();
    QCoreApplication::processEvents();
  }

  void aFreeGateLetsEverythingThrough() {
    mHandler->Event("a");
    mHandler->Event("b");
    QCOMPARE(mNoted, (QStringList{"a", "b"}));
  }

  void whatArrivesWhilePaintingWaitsForTheEndOfTheHandler() {
    mHandler->during = [this] {
      mHandler->PostEvent("b");
      mHandler->PostEvent("c");
      mHandler->PostEvent("d");
      gEventGate.ProcessEvents();
      gEventGate.ProcessEvents();
    };
    mHandler->Event("a");
    QCOMPARE(mNoted, (QStringList{"a", "a ends"}));
    QTRY_COMPARE(mNoted, (QStringList{"a", "a ends", "b", "c", "d"}));
  }

  void orderIsKeptWhenOneThatWaitedPaintsAsWell() {
    mHandler->during = [this] {
      mHandler->PostEvent("b");
      mHandler->PostEvent("c");
      gEventGate.ProcessEvents();
    };
    mHandler->Event("a");
    mHandler->during = [this] {
      mHandler->PostEvent("d");
      gEventGate.ProcessEvents();
    };
    QTRY_COMPARE(mNoted, (QStringList{"a", "a ends", "b", "b ends", "c", "d"}));
  }

  void aNewOneNeverOvertakesThoseThatWait() {
    mHandler->during = [this] {
      mHandler->PostEvent("b");
      gEventGate.ProcessEvents();
    };
    mHandler->Event("a");
    mHandler->Event("c");  // the queue of the event loop may deliver before the gate does
    QTRY_COMPARE(mNoted, (QStringList{"a", "a ends", "b", "c"}));
  }

  void whatWaitsForOneThatIsGoneIsForgotten() {
    Handler other(&mNoted);
    mHandler->during = [this, &other] {
      mHandler->PostEvent("b");
      other.PostEvent("c");
      gEventGate.ProcessEvents();
    };
    mHandler->Event("a");
    mHandler.reset();
    QTRY_COMPARE(mNoted, (QStringList{"a", "a ends", "c"}));
  }

  void theGateStaysShutUntilTheOutermostPaintingEnds() {
    QMetaObject::invokeMethod(
        mHandler.get(),
        [this] {
          gEventGate.ProcessEvents();
          mHandler->Event("b");
        },
        Qt::QueuedConnection);
    mHandler->during = [] { gEventGate.ProcessEvents(); };
    mHandler->Event("a");
    QCOMPARE(mNoted, (QStringList{"a", "a ends"}));
    QTRY_COMPARE(mNoted, (QStringList{"a", "a ends", "b"}));
  }

  // Showing a box asks for its painting, and painting for the transfer to the panel.
  void whatIsAskedForMeanwhileIsDoneAtOnce() {
    int steps = 0;
    std::function<void()> step = [&] {
      if (++steps < 4) QMetaObject::invokeMethod(this, step, Qt::QueuedConnection);
    };
    QMetaObject::invokeMethod(this, step, Qt::QueuedConnection);
    gEventGate.ProcessEvents();
    QCOMPARE(steps, 4);
  }

  void aTimerComesAgainAfterThePainting() {
    QTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(0);
    int asked = 0, fired = 0;
    connect(&timer, &QTimer::timeout, this, [&] {
      ++asked;
      if (gEventGate.Enter(&timer)) ++fired;
    });
    mHandler->during = [&] {
      QElapsedTimer clock;
      clock.start();
      timer.start();
      gEventGate.ProcessEvents();
      QVERIFY(asked >= 1);
      QVERIFY(asked <= 2 + clock.elapsed());  // again after a millisecond, not at once
      QCOMPARE(fired, 0);
      QVERIFY(timer.isActive());
      QCOMPARE(timer.interval(), 1);
    };
    mHandler->Event("a");
    QCOMPARE(fired, 0);
    QTRY_COMPARE(fired, 1);
    QVERIFY(!timer.isActive());
  }
};

QTEST_GUILESS_MAIN(EventGateTest)
#include "eventgate_test.moc"
