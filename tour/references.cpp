#include "tour/references.h"

#include <QBuffer>
#include <QDirIterator>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>
#include <cstdlib>

namespace {
constexpr int kMostOff = 8;  // pixels; five is the most that was seen, of 300 pictures twelve have any

bool IsOff(QRgb one, QRgb other, int levels) {
  return std::abs(qRed(one) - qRed(other)) > levels || std::abs(qGreen(one) - qGreen(other)) > levels ||
         std::abs(qBlue(one) - qBlue(other)) > levels;
}

// In a 32-bit program a few pixels of some letters are one level off; FreeType's curves are the likely cause.
bool IsNear(const QImage& before, const QImage& drawn) {
  if (sizeof(long) > 4 || before.size() != drawn.size()) return false;
  int off = 0;
  for (int y = 0; y < drawn.height(); ++y)
    for (int x = 0; x < drawn.width(); ++x) {
      if (IsOff(before.pixel(x, y), drawn.pixel(x, y), 1)) return false;
      off += IsOff(before.pixel(x, y), drawn.pixel(x, y), 0);
    }
  return off <= kMostOff;
}

// What is the same is dark, what differs is bright.
QImage Difference(const QImage& before, const QImage& after) {
  QImage difference(after.size(), QImage::Format_RGB32);
  difference.fill(Qt::black);
  for (int y = 0; y < after.height(); ++y)
    for (int x = 0; x < after.width(); ++x) {
      const bool same = before.valid(x, y) && before.pixel(x, y) == after.pixel(x, y);
      const int grey = qGray(after.pixel(x, y)) / 4;
      difference.setPixel(x, y, same ? qRgb(grey, grey, grey) : qRgb(255, 64, 64));
    }
  return difference;
}

QString Figure(const QString& caption, const QImage& picture) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!picture.isNull()) picture.save(&buffer, "PNG");
  return QStringLiteral(
             "<figure><img src=\"data:image/png;base64,%1\" alt=\"none\"><figcaption>%2</figcaption></figure>\n")
      .arg(QString::fromLatin1(bytes.toBase64()), caption);
}
}  // namespace

void References::Compare(const QString& name, const QImage& drawn) {
  mNames << name;
  const QImage before = QImage(FileOf(name)).convertToFormat(QImage::Format_RGB32);
  if (before == drawn) return;
  if (IsNear(before, drawn)) {
    mNear << name;
    return;
  }
  mDifferences << (before.isNull() ? QStringLiteral("%1: there is no such picture in %2").arg(name, mFolder.path())
                                   : QStringLiteral("%1: it looks different").arg(name));
  mPage += QStringLiteral("<h2>%1</h2>\n").arg(name) + Figure(QStringLiteral("before"), before) +
           Figure(QStringLiteral("after"), drawn) + Figure(QStringLiteral("difference"), Difference(before, drawn));
}

QStringList References::Others() const {
  QStringList others;
  QDirIterator files(mFolder.path(), {QStringLiteral("*.png")}, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    files.next();
    const QString file = mFolder.relativeFilePath(files.fileInfo().absoluteFilePath());
    if (!mNames.contains(file.chopped(4))) others << file;
  }
  return others;
}

QStringList References::Differences() const {
  QStringList differences = mDifferences;
  const QStringList others = Others();
  for (const QString& file : others) differences << QStringLiteral("%1: nothing shows this picture").arg(file);
  return differences;
}

bool References::WritePage(const QString& file) const {
  QSaveFile page(file);
  if (!page.open(QIODevice::WriteOnly)) return false;
  page.write(
      "<!doctype html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<title>Pictures that differ</title>\n"
      "<style>body{font:15px/1.4 sans-serif;margin:24px;background:#262223;color:#fff}"
      "figure{display:inline-block;margin:0 16px 20px 0}</style>\n<h1>Pictures that differ</h1>\n");
  page.write(mPage.toUtf8());
  page.write("</html>\n");
  return page.commit();
}

bool References::Accept(const QString& name, const QImage& drawn) {
  mNames << name;
  if (QImage(FileOf(name)).convertToFormat(QImage::Format_RGB32) == drawn) return true;
  if (!QFileInfo(FileOf(name)).dir().mkpath(QStringLiteral("."))) return false;
  QImageWriter writer(FileOf(name), "png");
  writer.setCompression(100);
  return writer.write(drawn);
}

void References::RemoveOthers() const {
  const QStringList others = Others();
  for (const QString& file : others) QFile::remove(mFolder.filePath(file));
}
