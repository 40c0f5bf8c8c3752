#include "recorder/card/stamp.h"

#include <QString>

#include "recorder/base/files.h"

namespace recorder {
namespace {

constexpr int kScale = 2;  // pixels of a dot
constexpr int kRows = 5;
constexpr int kColumns = 4;
constexpr int kEdge = 3;  // pixels around
constexpr unsigned char kColon[] = {0, 0x0A, 0, 0};

void Fill(Picture* picture, int left, int top, int width, int height, quint32 colour) {
  for (int y = top; y < top + height; ++y)
    for (int x = left; x < left + width; ++x)
      picture->pixels[static_cast<size_t>(y) * static_cast<size_t>(picture->width) + static_cast<size_t>(x)] = colour;
}

}  // namespace

void Stamp(const QDateTime& time, Picture* picture) {
  const QByteArray text = time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toLatin1();
  const int height = kRows * kScale + 2 * kEdge;
  const int top = picture->height - height;
  Fill(picture, 0, top, static_cast<int>(text.size()) * kColumns * kScale + 2 * kEdge, height, 0x181818);
  int left = kEdge;
  for (const char character : text) {
    const unsigned char* columns = character == ':' ? kColon : LedColumns(character);
    for (int column = 0; columns && column < kColumns; ++column)
      for (int row = 0; row < kRows; ++row)
        if (columns[column] >> row & 1)
          Fill(picture, left + column * kScale, top + kEdge + row * kScale, kScale, kScale, 0xF0F0F0);
    left += kColumns * kScale;
  }
}

}  // namespace recorder
