#include "bench/lcd/lcd.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QtEndian>
#include <array>
#include <cstring>

namespace {
// The header's words that matter, by their place in the X window dump format, version 7.
enum Word {
  HeaderSize = 0,
  FileVersion = 1,
  PixmapFormat = 2,
  PixmapWidth = 4,
  PixmapHeight = 5,
  ByteOrder = 7,
  BitsPerPixel = 11,
  BytesPerLine = 12,
  RedMask = 14,
  GreenMask = 15,
  BlueMask = 16,
  Colours = 19,
  WordCount = 25,
};
constexpr quint32 kVersion = 7;
constexpr quint32 kZPixmap = 2;
constexpr quint32 kLittleEndian = 0;
constexpr qint64 kColourSize = 12;
constexpr quint32 kMostHeader = 4096, kMostColours = 65536, kMostBytesPerLine = 65536;

bool IsOurScreen(const std::array<quint32, WordCount>& head) {
  return head[FileVersion] == kVersion && head[PixmapFormat] == kZPixmap && head[PixmapWidth] == Lcd::kWidth &&
         head[PixmapHeight] == Lcd::kHeight && head[ByteOrder] == kLittleEndian && head[BitsPerPixel] == 32 &&
         head[RedMask] == 0xFF0000 && head[GreenMask] == 0xFF00 && head[BlueMask] == 0xFF &&
         head[HeaderSize] >= WordCount * sizeof(quint32) && head[HeaderSize] <= kMostHeader &&
         head[Colours] <= kMostColours && head[BytesPerLine] >= Lcd::kWidth * 4 &&
         head[BytesPerLine] <= kMostBytesPerLine;
}
}  // namespace

bool Lcd::Open(const QString& file, QString* error) {
  Close();
  const int fd = open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  std::array<quint32, WordCount> head{};
  const bool read = fd >= 0 && pread(fd, head.data(), sizeof head, 0) == ssize_t(sizeof head);
  for (quint32& word : head) word = qFromBigEndian(word);
  if (read && IsOurScreen(head)) {
    mFile = fd;
    mPixels = qint64{head[HeaderSize]} + head[Colours] * kColourSize;
    mBytesPerLine = int(head[BytesPerLine]);
    if (!Raw().isNull()) return true;
    mFile = -1;
  }
  if (fd >= 0) close(fd);
  if (error) *error = QStringLiteral("%1 is no screen of 480 x 320 pixels.").arg(file);
  return false;
}

void Lcd::Close() {
  if (mFile >= 0) close(mFile);
  mFile = -1;
}

QImage Lcd::Raw() const {
  if (mFile < 0) return {};
  const qsizetype size = qsizetype{mBytesPerLine} * kHeight;
  QByteArray rows(size, Qt::Uninitialized);
  if (pread(mFile, rows.data(), size_t(size), mPixels) != size) return {};
  if (rows == mRows && !mImage.isNull()) return mImage;
  mRows = rows;
  mImage = QImage(kWidth, kHeight, QImage::Format_RGB32);
  for (int y = 0; y < kHeight; ++y) {
    auto* to = reinterpret_cast<quint32*>(mImage.scanLine(y));
    const char* from = rows.constData() + qsizetype{y} * mBytesPerLine;
    for (int x = 0; x < kWidth; ++x) to[x] = 0xFF000000 | qFromLittleEndian<quint32>(from + x * 4);
  }
  return mImage;
}
