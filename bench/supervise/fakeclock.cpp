#include "bench/supervise/fakeclock.h"

#include <fcntl.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>

#include "bench/supervise/device.h"

namespace fakeclock {
namespace {

constexpr off_t kShared = 64;  // bytes; the library uses the first few

// Of the semaphore and of the memory alike; they do not meet.
QByteArray Name() {
  return "/dashcam-clock-" + qgetenv("PLATFORM_KEY");
}

// Empty when it is not installed.
QString Library() {
  const QDir libraries(QStringLiteral("/usr/lib"));
  for (const QString& folder : libraries.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
    if (QString file = libraries.filePath(folder + QStringLiteral("/faketime/libfaketimeMT.so.1"));
        QFileInfo::exists(file))
      return file;
  return {};
}

}  // namespace

void Give(QProcessEnvironment* environment, const QString& root) {
  const QString library = Library();
  if (library.isEmpty() || !Renew()) return;
  const QString name = QString::fromLatin1(Name());
  environment->insert(QStringLiteral("LD_PRELOAD"), library);
  environment->insert(QStringLiteral("FAKETIME_TIMESTAMP_FILE"), root + QLatin1String(device::kClock));
  environment->insert(QStringLiteral("FAKETIME_CACHE_DURATION"), QStringLiteral("1"));
  environment->insert(QStringLiteral("FAKETIME_DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
  // Otherwise a timed wait for a condition of the C library ends at once, or never.
  environment->insert(QStringLiteral("FAKETIME_FORCE_MONOTONIC_FIX"), QStringLiteral("0"));
  environment->insert(QStringLiteral("FAKETIME_SHARED"), name + u' ' + name);
  environment->insert(QStringLiteral("NO_FAKE_STAT"), QStringLiteral("1"));
}

bool Renew() {
  Remove();
  const QByteArray name = Name();
  sem_t* const semaphore = sem_open(name.constData(), O_CREAT | O_EXCL, 0600, 1);
  if (semaphore == SEM_FAILED) return false;
  sem_close(semaphore);
  const int memory = shm_open(name.constData(), O_CREAT | O_EXCL | O_RDWR, 0600);
  if (memory < 0) return false;
  const bool good = ftruncate(memory, kShared) == 0;
  close(memory);
  return good;
}

void Remove() {
  sem_unlink(Name().constData());
  shm_unlink(Name().constData());
}

}  // namespace fakeclock
