#include "perf/screen.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QThread>
#include <QtEndian>
#include <csignal>
#include <cstring>

#include "perf/fail.h"

namespace {
constexpr int kLookUs = 20;  // between two looks: a busy wait would take one of the machine's cores
constexpr int kLongestMs = 20000;

/// A short sleep of this thread is as short as it says. Not for the programs that are started meanwhile.
class ExactSleep {
public:
  ExactSleep() { prctl(PR_SET_TIMERSLACK, 1UL, 0, 0, 0); }
  ~ExactSleep() { prctl(PR_SET_TIMERSLACK, 0UL, 0, 0, 0); }
};
}  // namespace

Screen::Screen(const QString& folder) {
  mServer.setStandardErrorFile(QProcess::nullDevice());
  mServer.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
  mServer.start(QStringLiteral("Xvfb"),
                {"-displayfd", "1", "-screen", "0", "480x320x24", "-fbdir", folder, "-nolisten", "tcp"});
  while (!mServer.canReadLine())
    if (!mServer.waitForReadyRead(10000)) Fail("no X server");
  mDisplay = QLatin1Char(':') + QString::fromLatin1(mServer.readLine().trimmed());
  const int file = open(qPrintable(folder + QStringLiteral("/Xvfb_screen0")), O_RDONLY | O_CLOEXEC);
  const off_t size = lseek(file, 0, SEEK_END);
  void* const map = mmap(nullptr, size_t(size), PROT_READ, MAP_SHARED, file, 0);
  if (map == MAP_FAILED) Fail("no framebuffer");
  const auto* head = static_cast<const uchar*>(map);
  const auto word = [head](int i) { return qFromBigEndian<qint32>(head + i * 4); };
  mPixels = head + word(0) + qsizetype{word(19)} * 12;
  mLine = word(12);
}

Screen::~Screen() {
  mServer.terminate();
  mServer.waitForFinished();
}

quint32 Screen::Pixel(int x, int y) const {
  return qFromLittleEndian<quint32>(mPixels + qsizetype{y} * mLine + x * 4) & 0xFFFFFF;
}

bool Screen::Has(const QRect& where, const std::function<bool(quint32)>& wanted) const {
  for (int y = where.top(); y <= where.bottom(); ++y)
    for (int x = where.left(); x <= where.right(); ++x)
      if (wanted(Pixel(x, y))) return true;
  return false;
}

QByteArray Screen::Copy(const QRect& where) const {
  QByteArray copy;
  for (int y = where.top(); y <= where.bottom(); ++y)
    copy.append(reinterpret_cast<const char*>(Line(where, y)), where.width() * 4);
  return copy;
}

bool Screen::Shows(const QRect& where, const QByteArray& copy) const {
  const size_t bytes = size_t(where.width()) * 4;
  const char* known = copy.constData();
  for (int y = where.top(); y <= where.bottom(); ++y, known += bytes)
    if (std::memcmp(Line(where, y), known, bytes) != 0) return false;
  return true;
}

double Screen::Until(const std::function<bool()>& isThere, const std::function<void()>& act) const {
  QElapsedTimer clock;
  clock.start();
  act();
  const ExactSleep exact;
  while (!isThere()) {
    if (clock.elapsed() > kLongestMs) Fail("what is waited for does not come to the screen");
    QThread::usleep(kLookUs);
  }
  return double(clock.nsecsElapsed()) / 1e6;
}

double Screen::UntilChanged(const QRect& where, const std::function<void()>& act) const {
  const QByteArray before = Copy(where);
  return Until([&] { return !Shows(where, before); }, act);
}

void Screen::Settle(int ms) const {
  QElapsedTimer clock, whole;
  whole.start();
  QByteArray now = Copy();
  for (clock.start(); clock.elapsed() < ms; QThread::msleep(10)) {
    if (whole.elapsed() > kLongestMs) Fail("the screen does not come to rest");
    if (Shows(kAll, now)) continue;
    now = Copy();
    clock.restart();
  }
}

void Screen::WaitUntilEmpty() const {
  Until([this] { return !Has(kAll, [](quint32 pixel) { return pixel != 0; }); }, [] {});
}
