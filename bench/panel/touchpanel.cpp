#include "bench/panel/touchpanel.h"

#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace {
/// The 16 bytes of a record as the interface reads them from a FIFO: those of a 32-bit machine.
struct Record {
  quint32 seconds;
  quint32 microseconds;
  quint16 type;
  quint16 code;
  qint32 value;
};
static_assert(sizeof(Record) == 16);

constexpr int kPressure = 200;  // of a finger

// How the panel is mounted: screen x and y of the panel's ABS_Y (first) and ABS_X (second).
constexpr double kXOfY = -1.0638298, kXAtZero = 499.57446;
constexpr double kYOfY = 0.012088975, kYOfX = 1.1363636, kYAtZero = -24.76789;

// The reader drops fractions, so a finger aims inside its pixel; below the middle, or the last row would be missed.
constexpr double kAim = 0.4;

int OnPanel(double raw) {
  return int(std::clamp(raw, 0.0, double(TouchPanel::kMostRaw)));
}
}  // namespace

/// Records that are written at once, so that the reader never sees half of a touch.
struct TouchPanel::Report {
  Record records[4];
  size_t count = 0;

  void Add(int type, int code, int value) {
    timeval now{};
    gettimeofday(&now, nullptr);
    records[count++] = {quint32(now.tv_sec), quint32(now.tv_usec), quint16(type), quint16(code), value};
  }
};

bool TouchPanel::Open(const QString& fifo, QString* error) {
  Close();
  const QByteArray path = QFile::encodeName(fifo);
  QDir().mkpath(QFileInfo(fifo).absolutePath());
  QFile::remove(fifo);
  struct stat made {};
  mFifo =
      mkfifo(path.constData(), 0600) == 0 ? open(path.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW) : -1;
  if (mFifo >= 0 && fstat(mFifo, &made) == 0 && S_ISFIFO(made.st_mode)) return true;
  *error = QStringLiteral("%1 cannot be made: %2.").arg(fifo, QString::fromLocal8Bit(std::strerror(errno)));
  Close();
  return false;
}

void TouchPanel::Close() {
  if (mFifo >= 0) close(mFifo);
  mFifo = -1;
  mIsDown = false;
}

QPoint TouchPanel::RawAt(int x, int y) const {
  const QPointF felt = mMounting.Felt(QPointF(x, y));
  const double rawY = std::round((felt.x() + kAim - kXAtZero) / kXOfY);
  const double rawX = std::round((felt.y() + kAim - kYAtZero - kYOfY * rawY) / kYOfX);
  const auto noise = [this] { return mNoise.bounded(-mMounting.noise, mMounting.noise + 1); };
  return {OnPanel(rawX + noise()), OnPanel(rawY + noise())};
}

bool TouchPanel::Press(int x, int y, QString* error) {
  const QPoint raw = RawAt(x, y);
  return PressRaw(raw.x(), raw.y(), error);
}

bool TouchPanel::PressRaw(int rawX, int rawY, QString* error) {
  Report report;
  report.Add(EV_ABS, ABS_X, OnPanel(rawX));
  report.Add(EV_ABS, ABS_Y, OnPanel(rawY));
  report.Add(EV_ABS, ABS_PRESSURE, kPressure);
  report.Add(EV_SYN, SYN_REPORT, 0);
  if (!Write(report, error)) return false;
  mIsDown = true;
  return true;
}

bool TouchPanel::Release(QString* error) {
  Report report;
  report.Add(EV_ABS, ABS_PRESSURE, 0);
  report.Add(EV_SYN, SYN_REPORT, 0);
  if (!Write(report, error)) return false;
  mIsDown = false;
  return true;
}

// A write of up to PIPE_BUF bytes goes whole or not at all.
bool TouchPanel::Write(const Report& report, QString* error) {
  const size_t size = report.count * sizeof(Record);
  ssize_t written = -1;
  do {
    written = write(mFifo, report.records, size);
  } while (written < 0 && errno == EINTR);
  if (written == ssize_t(size)) return true;
  *error = QStringLiteral("The interface does not read the touch panel.");
  return false;
}

void TouchPanel::Drain() {
  char waiting[4096];
  while (mFifo >= 0 && read(mFifo, waiting, sizeof waiting) > 0) {
  }
  mIsDown = false;
}
