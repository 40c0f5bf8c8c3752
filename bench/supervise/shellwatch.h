#pragma once

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QSocketNotifier>
#include <memory>

/// Hears what the interface asks of the camera's shell: the stand-ins of its commands tell it through a FIFO, and the
/// files of the kernel are ordinary files below the root.
class ShellWatch : public QObject {
  Q_OBJECT

public:
  explicit ShellWatch(const QString& root, QObject* parent = nullptr);
  ~ShellWatch() override;

  /// After the root was furnished. False with one sentence in `error`.
  bool Open(QString* error);

  /// PWM value of the backlight, 0 (dark) .. 100000.
  int Backlight() const { return mBacklight; }

signals:
  void Asked(const QString& command);  ///< with the camera's own paths
  void Clicked();                      ///< the key click sounds
  void BacklightChanged();

private:
  void ReadCommands();
  void Take(const QString& command);
  void ReadFile(const QString& path);

  QString mRoot;
  int mFifo = -1;
  std::unique_ptr<QSocketNotifier> mNotifier;
  QByteArray mRest;  // of the FIFO, not yet a whole line
  QFileSystemWatcher mFiles;
  QMap<QString, QPair<QDateTime, QByteArray>> mRead;  // of each file: when it changed last, and to what
  int mBacklight = 100000;
};
