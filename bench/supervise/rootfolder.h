#pragma once

#include <QString>
#include <QStringList>

/// The folder that stands for the camera's file system.
class RootFolder {
public:
  RootFolder() = default;
  ~RootFolder();
  RootFolder(const RootFolder&) = delete;
  RootFolder& operator=(const RootFolder&) = delete;

  /// It is to be `folder`, which is made when there is none, or a fresh one when that is empty. False with one sentence
  /// in `error`: it cannot be used.
  bool Choose(const QString& folder, QString* error);

  /// Makes the fresh one; locks it for this bench. False with one sentence in `error`: it cannot be made, or another
  /// bench has it.
  bool Take(QString* error);

  /// Makes what a camera has beside the recorder's own files: pictures (links to `pictures`, the folder of the build),
  /// backlight, device folders, and stand-ins for the commands of its shell. False with one sentence in `error`.
  bool Furnish(const QString& pictures, QString* error) const;

  /// Absolute, without a slash at its end.
  QString Path() const { return mPath; }
  QString Path(const char* below) const { return mPath + QLatin1String(below); }

  /// Whether it was made for this bench alone.
  bool IsFresh() const { return mIsFresh; }

  /// Whether a path below the root is the camera's own, and not made anew at each start.
  static bool IsOfCamera(const QString& path);

  /// What is the camera's own below `root`, each as high as it can be: "/mnt", "/opt/led.zel".
  static QStringList CameraEntries(const QString& root);

  /// The key of status queue and memory: another one for each root, the same for the same root.
  quint32 PlatformKey() const;

private:
  QString mPath;
  bool mIsFresh = false;
  int mLock = -1;
};
