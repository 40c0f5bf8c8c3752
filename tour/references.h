#pragma once

#include <QDir>
#include <QImage>
#include <QSet>
#include <QString>
#include <QStringList>

/// The pictures that the interface is known to draw, tests/pictures: one PNG of each, by its name, which may begin with
/// a folder.
class References {
public:
  explicit References(const QString& folder) : mFolder(folder) {}

  /// Looks whether it is as known; pixel by pixel. In a 32-bit program a few pixels may be one level off.
  void Compare(const QString& name, const QImage& drawn);

  /// One sentence for each picture that differs, is not known, or is known and was not compared.
  QStringList Differences() const;

  /// The names of those that are off so.
  QStringList Near() const { return mNear; }

  /// One page that shows what differs: before, after and the difference. False when it cannot be written.
  bool WritePage(const QString& file) const;

  /// From now on it is known to look like this; false when it cannot be written.
  bool Accept(const QString& name, const QImage& drawn);

  /// Forgets what was neither compared nor accepted.
  void RemoveOthers() const;

private:
  QString FileOf(const QString& name) const { return mFolder.filePath(name + QStringLiteral(".png")); }
  QStringList Others() const;

  QDir mFolder;
  QSet<QString> mNames;
  QStringList mDifferences;
  QStringList mNear;
  QString mPage;
};
