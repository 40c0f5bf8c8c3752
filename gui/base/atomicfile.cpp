#include "gui/base/atomicfile.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace {
constexpr int kMostLinks = 40;  // as many as the kernel follows
}  // namespace

QString BehindLinks(const QString& file) {
  namespace fs = std::filesystem;
  fs::path path = QFile::encodeName(file).toStdString();
  std::error_code error;
  for (int links = 0; links <= kMostLinks; ++links) {
    const fs::path target = fs::read_symlink(path, error);
    if (error) {  // it is none
      const fs::path folder = fs::canonical(path.parent_path(), error);
      return QFile::decodeName(error ? path.c_str() : (folder / path.filename()).c_str());
    }
    path = path.parent_path() / target;
  }
  return {};
}

bool SyncFolder(const QString& folder) {
  const int fd = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool synced = fsync(fd) == 0;
  close(fd);
  return synced;
}

bool WriteAtomically(const QString& file, const QByteArray& bytes) {
  const QFileInfo target(BehindLinks(file));
  if (target.filePath().isEmpty() || (target.exists() && !target.isFile())) return false;
  QFile beside(target.filePath() + QStringLiteral(".tmp"));
  const bool written = beside.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                       beside.write(bytes) == bytes.size() && fsync(beside.handle()) == 0;
  beside.close();
  if (!written ||
      std::rename(QFile::encodeName(beside.fileName()).constData(), QFile::encodeName(target.filePath()).constData())) {
    beside.remove();
    return false;
  }
  return SyncFolder(target.absolutePath());
}
