#pragma once

#include <QDir>
#include <QImage>
#include <QString>

/// A folder of pictures and the page that shows them, index.html.
class Gallery {
public:
  explicit Gallery(const QString& folder) : mFolder(folder) {}

  bool Make() { return mFolder.mkpath(QStringLiteral(".")); }
  void Section(const QString& title);
  bool Add(const QString& name, const QString& shows, const QImage& picture);
  bool WritePage();

  int Count() const { return mCount; }
  /// The whole path of a page of the folder.
  QString Page(const QString& file = QStringLiteral("index.html")) const { return mFolder.absoluteFilePath(file); }

private:
  QDir mFolder;
  QString mPage;
  QString mContents;
  int mCount = 0;
};
