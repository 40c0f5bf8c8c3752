#include "bench/record/recordpicture.h"

#include <QPainter>
#include <QRect>

namespace recordpicture {
namespace {

constexpr int kSide = 40, kColumns = 12, kRows = 8;
constexpr int kWord = 3;  // bytes of each square
constexpr QColor kUnknown(128, 128, 128);

struct Unsteady {
  const char* screen;
  QRect area;
};
constexpr Unsteady kUnsteady[] = {
    {"PREVIEW", {38, 284, 192, 32}},                                      // date and time
    {"PREVIEW", {394, 284, 78, 32}},                                      // voltage
    {"PREVIEW", {380, 4, 92, 40}},                                        // seconds to the power-off
    {"SCREENSAVER", {36, 26, 220, 40}},                                   // date
    {"SCREENSAVER", {304, 26, 140, 40}},                                  // weekday
    {"SCREENSAVER", {32, 72, 416, 150}},                                  // time
    {"SCREENSAVER", {356, 250, 104, 56}}, {"PLAYER", {0, 201, 480, 61}},  // position
};

bool IsUnsteady(const QString& screen, QPoint at) {
  for (const Unsteady& row : kUnsteady)
    if (row.area.contains(at) && screen == QLatin1String(row.screen)) return true;
  return false;
}

// FNV-1a of what is steady in a square.
quint32 WordOf(const QImage& raw, const QString& screen, QRect square) {
  quint32 hash = 2166136261U;
  bool isCut = false;
  for (const Unsteady& row : kUnsteady)
    isCut = isCut || (row.area.intersects(square) && screen == QLatin1String(row.screen));
  for (int y = square.top(); y <= square.bottom(); ++y) {
    const auto* pixels = reinterpret_cast<const quint32*>(raw.constScanLine(y));
    for (int x = square.left(); x <= square.right(); ++x)
      if (!isCut || !IsUnsteady(screen, {x, y})) hash = (hash ^ (pixels[x] & 0xFFFFFF)) * 16777619U;
  }
  return hash ^ hash >> 24;
}

QRect SquareAt(int column, int row) {
  return {column * kSide, row * kSide, kSide, kSide};
}

QByteArray Words(const QString& digest) {
  return QByteArray::fromBase64(digest.toLatin1());
}

}  // namespace

QString Digest(const QImage& raw, const QString& screen) {
  QByteArray words;
  for (int row = 0; row < kRows; ++row)
    for (int column = 0; column < kColumns; ++column) {
      const quint32 word = WordOf(raw, screen, SquareAt(column, row));
      for (int byte = 0; byte < kWord; ++byte) words.append(static_cast<char>(word >> 8 * byte & 0xFF));
    }
  return QString::fromLatin1(words.toBase64());
}

bool IsDigest(const QString& text) {
  return Words(text).size() == kWord * kColumns * kRows;
}

QImage Known(const QImage& raw, const QString& screen, const QString& digest) {
  const QByteArray words = Words(digest), drawn = Words(Digest(raw, screen));
  QImage known = raw.convertToFormat(QImage::Format_RGB32);
  QPainter painter(&known);
  for (int i = 0; i < kColumns * kRows; ++i)
    if (words.mid(i * kWord, kWord) != drawn.mid(i * kWord, kWord))
      painter.fillRect(SquareAt(i % kColumns, i / kColumns), kUnknown);
  return known;
}

QString Difference(const QString& one, const QString& other) {
  const QByteArray words = Words(one), others = Words(other);
  QRect where;
  for (int i = 0; i < kColumns * kRows; ++i)
    if (words.mid(i * kWord, kWord) != others.mid(i * kWord, kWord)) where |= SquareAt(i % kColumns, i / kColumns);
  if (where.isEmpty()) return {};
  return QStringLiteral("x %1 to %2, y %3 to %4")
      .arg(where.left())
      .arg(where.right())
      .arg(where.top())
      .arg(where.bottom());
}

}  // namespace recordpicture
