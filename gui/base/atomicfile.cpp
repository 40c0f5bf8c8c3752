#include "gui/base/atomicfile.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <cstdio>

namespace {
bool SyncFolder(const QString& folder) {
  const int fd = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool synced = fsync(fd) == 0;
  close(fd);
  return synced;
}
}  // namespace

bool WriteAtomically(const QString& file, const QByteArray& bytes) {
  QFile beside(file + QStringLiteral(".tmp"));
  const bool written = beside.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                       beside.write(bytes) == bytes.size() && fsync(beside.handle()) == 0;
  beside.close();
  if (!written || std::rename(QFile::encodeName(beside.fileName()).constData(), QFile::encodeName(file).constData())) {
    beside.remove();
    return false;
  }
  return SyncFolder(QFileInfo(file).absolutePath());
}
