#include "bench/supervise/fakeclock.h"

#include <fcntl.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "bench/supervise/device.h"

namespace fakeclock {
namespace {

constexpr off_t kShared = 64;  // bytes; the library uses the first few

// Of the semaphore and of the memory alike; they do not meet.
QByteArray Name() {
  return "/dashcam-clock-" + qgetenv("PLATFORM_KEY");
}

// The class (1: 32 bits, 2: 64) and the machine of a program or a library, as its ELF header has them; empty for
// another file.
QByteArray KindOf(const QString& file) {
  QFile elf(file);
  const QByteArray header = elf.open(QIODevice::ReadOnly) ? elf.read(20) : QByteArray();
  return header.size() == 20 && header.startsWith("\177ELF") ? header.mid(4, 1) + header.mid(18, 2) : QByteArray();
}

// Empty when it is not installed for programs of this kind.
QString Library(const QByteArray& kind) {
  const QDir libraries(QStringLiteral("/usr/lib"));
  for (const QString& folder : libraries.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
    if (QString file = libraries.filePath(folder + QStringLiteral("/faketime/libfaketimeMT.so.1"));
        !kind.isEmpty() && KindOf(file) == kind)
      return file;
  return {};
}

}  // namespace

QString Give(QProcessEnvironment* environment, const QString& root, const QString& program) {
  static const QString kReal = QStringLiteral("The interface has this machine's clock, not the camera's: %1.");
  const QByteArray kind = KindOf(program);
  if (kind.startsWith('\1')) return kReal.arg(QStringLiteral("libfaketime does not reach a program of 32 bits"));
  const QString library = Library(kind);
  if (library.isEmpty()) return kReal.arg(QStringLiteral("libfaketime is not installed for it"));
  if (!Renew()) return kReal.arg(QStringLiteral("what libfaketime shares cannot be made"));
  const QString name = QString::fromLatin1(Name());
  environment->insert(QStringLiteral("LD_PRELOAD"), library);
  environment->insert(QStringLiteral("FAKETIME_TIMESTAMP_FILE"), root + QLatin1String(device::kClock));
  environment->insert(QStringLiteral("FAKETIME_CACHE_DURATION"), QStringLiteral("1"));
  environment->insert(QStringLiteral("FAKETIME_DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
  // Otherwise a timed wait for a condition of the C library ends at once, or never.
  environment->insert(QStringLiteral("FAKETIME_FORCE_MONOTONIC_FIX"), QStringLiteral("0"));
  environment->insert(QStringLiteral("FAKETIME_SHARED"), name + u' ' + name);
  environment->insert(QStringLiteral("NO_FAKE_STAT"), QStringLiteral("1"));
  return {};
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
