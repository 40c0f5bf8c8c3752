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
  /// A file of the folder; its name may begin with a folder of its own.
  bool Picture(const QString& name, const QImage& picture);
  /// A row of the page: pictures side by side.
  void Row(const QString& title, const QString& shows, const QStringList& names);
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
