#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// A device root of this test program's own, with the drawn pictures; set before anything asks for a path.
/// One in each test program: `static TestRoot root;` at file scope, above the first use of a device path.
class TestRoot {
public:
  TestRoot() {
    for (const char* folder : {"opt/gui/ini", "opt/ipnc/voice", "tmp", "mnt/mmc/Setup", "mnt/nand", "proc/pwm",
                               "proc/sys/vm", "dev/input", "run", "usr/local"})
      QDir(mFolder.path()).mkpath(QLatin1String(folder));
    for (const char* pictures : {"/opt/gui/images", "/usr/local/etc"})
      QFile::link(QStringLiteral(BINARY_DIR "/pictures") + QLatin1String(pictures), Path(QLatin1String(pictures)));
    qputenv("DASHCAM_ROOT", mFolder.path().toLocal8Bit());
  }

  /// The file of this machine that stands for a path of the camera.
  QString Path(const QString& path) const { return mFolder.path() + path; }

  /// Writes a file of the camera.
  void Write(const QString& path, const QByteArray& bytes) const {
    QFile file(Path(path));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
      qFatal("cannot write %s", qPrintable(path));
  }

  /// The whole of a file of the camera; empty when there is none.
  QByteArray Read(const QString& path) const {
    QFile file(Path(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  bool Exists(const QString& path) const { return QFile::exists(Path(path)); }
  void Remove(const QString& path) const { QFile::remove(Path(path)); }

private:
  QTemporaryDir mFolder;
};
