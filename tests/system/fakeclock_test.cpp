// What a program is given with the device's clock: another wall clock, and nothing else. The test starts itself anew as
// that program.
#include "bench/supervise/fakeclock.h"

#include <semaphore.h>
#include <unistd.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSemaphore>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QWaitCondition>
#include <condition_variable>
#include <iterator>
#include <memory>
#include <mutex>

#include "tests/fake/testroot.h"
#include "tests/system/patience.h"

static const TestRoot root;

namespace {
constexpr char kClock[] = "/run/clock";
constexpr char kMarker[] = "FAKECLOCK_TEST_CHILD";
constexpr int kWait = 60;  // milliseconds of each wait

void WaitForLoop() {
  QEventLoop loop;
  QTimer::singleShot(kWait, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

void WaitForCondition() {
  QMutex mutex;
  const QMutexLocker lock(&mutex);
  QWaitCondition().wait(&mutex, kWait);
}

void WaitForThread() {
  const std::unique_ptr<QThread> thread(QThread::create([] { QThread::msleep(3 * kWait); }));
  thread->start();
  thread->wait(kWait);
  thread->wait();
}

void WaitForStandardCondition() {
  std::mutex mutex;
  std::unique_lock lock(mutex);
  std::condition_variable().wait_for(lock, std::chrono::milliseconds(kWait));
}

void WaitForLock() {
  QMutex mutex;
  mutex.lock();
  mutex.tryLock(kWait);
  mutex.unlock();
}

struct Wait {
  const char* name;
  void (*wait)();
  int least;
};
constexpr Wait kWaits[] = {
    {"timer", WaitForLoop, kWait},
    {"condition", WaitForCondition, kWait},
    {"thread", WaitForThread, 3 * kWait},
    {"standard condition", WaitForStandardCondition, kWait},
    {"mutex", WaitForLock, kWait},
    {"semaphore", [] { QSemaphore().tryAcquire(1, kWait); }, kWait},
    {"sleep", [] { QThread::msleep(kWait); }, kWait},
};

// Says the milliseconds of each wait, then at each line that it reads what time it is, and when the file was written.
int Child() {
  QFile in, out;
  if (!in.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered) ||
      !out.open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered))
    return 1;
  for (const Wait& wait : kWaits) {
    QElapsedTimer clock;
    clock.start();
    wait.wait();
    out.write(wait.name + QByteArray(" ") + QByteArray::number(clock.elapsed()) + '\n');
  }
  while (!in.readLine().isEmpty())
    out.write(QByteArray::number(QDateTime::currentSecsSinceEpoch()) + ' ' +
              QByteArray::number(QFileInfo(qEnvironmentVariable(kMarker)).lastModified().toSecsSinceEpoch()) + '\n');
  return 0;
}
}  // namespace

class FakeClockTest : public QObject {
  Q_OBJECT

  std::unique_ptr<QProcess> mChild;

  static void SetClock(const QByteArray& offset) {
    root.Write(QStringLiteral("/run/clock.new"), offset + '\n');
    rename(qPrintable(root.Path(QStringLiteral("/run/clock.new"))), qPrintable(root.Path(QLatin1String(kClock))));
  }

  QByteArray Line() const {
    for (QElapsedTimer clock = Started(); !mChild->canReadLine() && clock.elapsed() < 5000;)
      mChild->waitForReadyRead(1000);
    return mChild->readLine().trimmed();
  }
  static QElapsedTimer Started() {
    QElapsedTimer clock;
    clock.start();
    return clock;
  }

  // The child's clock against this machine's, seconds.
  qint64 Ahead() {
    mChild->write("?\n");
    return Line().split(' ').first().toLongLong() - QDateTime::currentSecsSinceEpoch();
  }

private slots:
  void initTestCase() { qputenv("PLATFORM_KEY", QByteArray::number(QCoreApplication::applicationPid())); }
  void cleanupTestCase() { fakeclock::Remove(); }
  void init() {
    mChild = std::make_unique<QProcess>();
    mChild->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    mChild->setProgram(QCoreApplication::applicationFilePath());
  }
  void cleanup() {
    mChild->kill();
    mChild->waitForFinished();
  }

  void waitsAreNotTouched_data() {
    QTest::addColumn<QByteArray>("offset");
    for (const char* offset : {"+0", "+63072000", "-63072000", "+2300000000"})
      QTest::newRow(offset) << QByteArray(offset);
  }
  void waitsAreNotTouched() {
    QFETCH(QByteArray, offset);
    SetClock(offset);
    StartChild();
    for (const Wait& wait : kWaits) {
      const QByteArray line = Line();
      const qint64 took = line.mid(line.lastIndexOf(' ')).trimmed().toLongLong();
      QVERIFY2(line.startsWith(wait.name) && took >= wait.least - 2 && took < wait.least + 1000, line.constData());
    }
    QVERIFY2(std::abs(Ahead() - offset.toLongLong()) <= 2, offset.constData());
  }

  void aRunningProgramFollows() {
    SetClock("+0");
    StartChild();
    for (size_t i = 0; i < std::size(kWaits); ++i) Line();
    for (const int offset : {86400, -86400, 0}) {
      SetClock((offset < 0 ? "" : "+") + QByteArray::number(offset));
      QTRY_VERIFY(std::abs(Ahead() - offset) <= 2);
    }
  }

  void filesKeepTheirTimes() {
    SetClock("+63072000");
    StartChild();
    for (size_t i = 0; i < std::size(kWaits); ++i) Line();
    mChild->write("?\n");
    const qint64 seen = Line().split(' ').last().toLongLong();
    QCOMPARE(seen, QFileInfo(root.Path(QLatin1String(kClock))).lastModified().toSecsSinceEpoch());
  }

  // One that was killed within a look at the clock has taken the semaphore with it.
  void theNextProgramIsNotHeldUp() {
    StartChild();
    mChild->kill();
    QVERIFY(mChild->waitForFinished());
    const QByteArray name = "/dashcam-clock-" + qgetenv("PLATFORM_KEY");
    sem_t* const semaphore = sem_open(name.constData(), 0);
    QVERIFY(semaphore != SEM_FAILED);
    QCOMPARE(sem_wait(semaphore), 0);
    QVERIFY(fakeclock::Renew());
    sem_t* const anew = sem_open(name.constData(), 0);
    QVERIFY(anew != SEM_FAILED);
    QCOMPARE(sem_trywait(anew), 0);
    sem_close(semaphore);
    sem_close(anew);
  }

  // The library would be refused by the loader, or would not reach it.
  void anotherKindOfProgramKeepsTheClock_data() {
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("32-bit ARM") << QByteArray("\177ELF\1\1\1\0\0\0\0\0\0\0\0\0\3\0\50\0", 20);
    QTest::newRow("32-bit PC") << QByteArray("\177ELF\1\1\1\0\0\0\0\0\0\0\0\0\3\0\3\0", 20);
    QTest::newRow("64-bit of another machine") << QByteArray("\177ELF\2\1\1\0\0\0\0\0\0\0\0\0\3\0\26\0", 20);
    QTest::newRow("script") << QByteArray("#!/bin/sh\nexec dashcam-gui\n");
    QTest::newRow("cut off") << QByteArray("\177ELF\2\1\1");
  }
  void anotherKindOfProgramKeepsTheClock() {
    QFETCH(QByteArray, header);
    root.Write(QStringLiteral("/program"), header);
    QProcessEnvironment environment;
    const QString said = fakeclock::Give(&environment, root.Path(QString()), root.Path(QStringLiteral("/program")));
    QVERIFY2(said.startsWith(QLatin1String("The interface has this machine's clock, ")) && said.endsWith(u'.'),
             qPrintable(said));
    QVERIFY(environment.isEmpty());
  }

  void nothingIsLeft() {
    StartChild();
    const QString memory = QStringLiteral("/dev/shm/dashcam-clock-") + qEnvironmentVariable("PLATFORM_KEY");
    QVERIFY(QFile::exists(memory));
    const qint64 process = mChild->processId();
    Line();  // it lives
    mChild->kill();
    QVERIFY(mChild->waitForFinished());
    QVERIFY(
        QDir(QStringLiteral("/dev/shm")).entryList({QStringLiteral("*_%1").arg(process)}, QDir::AllEntries).isEmpty());
    fakeclock::Remove();
    QVERIFY(!QFile::exists(memory));
  }

private:
  void StartChild() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(kMarker), root.Path(QLatin1String(kClock)));
    const QString refusal = fakeclock::Give(&environment, root.Path(QString()), mChild->program());
    QVERIFY2(refusal.isEmpty() && environment.contains(QStringLiteral("LD_PRELOAD")), qPrintable(refusal));
    mChild->setProcessEnvironment(environment);
    mChild->start();
    QVERIFY(mChild->waitForStarted());
  }
};

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  if (qEnvironmentVariableIsSet(kMarker)) return Child();
  FakeClockTest test;
  return QTest::qExec(&test, argc, argv);
}
#include "fakeclock_test.moc"
