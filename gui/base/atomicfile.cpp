#include "gui/base/atomicfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace {
constexpr int kMostLinks = 40;  // as many as the kernel follows

QString BesideOf(const QString& file) {
  return file + QStringLiteral(".saving");
}

// As long as there is more of it, and room.
bool ReadAll(int fd, QByteArray* bytes, qsizetype most) {
  constexpr qsizetype kStep = 64 * 1024;
  for (;;) {
    const qsizetype had = bytes->size();
    const qsizetype room = std::min(kStep, most - had);
    bytes->resize(had + room);
    const ssize_t got = read(fd, bytes->data() + had, size_t(room));
    bytes->resize(had + std::max(got, ssize_t{0}));
    if (got == 0) return true;
    if (got < 0 && errno != EINTR) return false;
  }
}
}  // namespace

QString BehindLinks(const QString& file) {
  namespace fs = std::filesystem;
  fs::path path = QFile::encodeName(file).toStdString();
  std::error_code error;
  for (int links = 0; links <= kMostLinks; ++links) {
    const fs::path target = fs::read_symlink(path, error);
    if (error && error != std::errc::invalid_argument && error != std::errc::no_such_file_or_directory) return {};
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

FileRead ReadFile(const QString& file, qsizetype most, QByteArray* bytes) {
  bytes->clear();
  const int fd = open(QFile::encodeName(file).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) {
    if (errno == ENOENT) return FileRead::Missing;
    return errno == ELOOP || errno == ENXIO ? FileRead::NoFile : FileRead::Failed;
  }
  struct stat status {};
  FileRead result = FileRead::Failed;
  if (fstat(fd, &status) == 0) {
    if (!S_ISREG(status.st_mode))
      result = FileRead::NoFile;
    else if (ReadAll(fd, bytes, most))
      result = FileRead::Whole;
  }
  close(fd);
  if (result != FileRead::Whole) bytes->clear();
  return result;
}

bool WriteAtomically(const QString& file, const QByteArray& bytes) {
  const QFileInfo target(BehindLinks(file));
  if (target.filePath().isEmpty() || (target.exists() && !target.isFile())) return false;
  QFile beside(BesideOf(target.filePath()));
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

void RemoveCutWrite(const QString& file) {
  QFile::remove(BesideOf(BehindLinks(file)));
}
