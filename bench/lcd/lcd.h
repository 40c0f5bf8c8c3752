#pragma once

#include <QImage>
#include <QString>

/// The LCD's framebuffer: the file in which Xvfb keeps its screen (-fbdir), in the X window dump format: a header of
/// big-endian 32-bit words, a colour map, and rows of pixels.
class Lcd {
public:
  static constexpr int kWidth = 480;
  static constexpr int kHeight = 320;

  Lcd() = default;
  ~Lcd() { Close(); }
  Lcd(const Lcd&) = delete;
  Lcd& operator=(const Lcd&) = delete;

  /// False, with one sentence in `error` if given, when the file is none of a 480 × 320 screen with 32 bits a pixel.
  bool Open(const QString& file, QString* error = nullptr);
  void Close();
  bool IsOpen() const { return mFile >= 0; }

  /// What the screen shows now, 480 × 320 RGB32. Null when not open, or when the file has become too short: an X server
  /// that ends takes it away, so it is read and not mapped.
  QImage Raw() const;

private:
  int mFile = -1;
  qint64 mPixels = 0;  // where the first row begins, bytes
  int mBytesPerLine = 0;
  mutable QByteArray mRows;  // that were read last, and
  mutable QImage mImage;     // what they show: mostly nothing has changed
};
