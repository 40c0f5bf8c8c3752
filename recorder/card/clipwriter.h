#pragma once

#include <QByteArray>

#include "recorder/card/ffmpeg.h"

namespace recorder {

/// An AVI file that grows in memory. Its time base is 1 / rate: the header's length ÷ rate is the time in seconds.
class ClipWriter {
public:
  ClipWriter(int width, int height, int rate);  ///< `rate`: pictures a second, 1..60
  ~ClipWriter();

  void Add(const QByteArray& jpeg);
  int Pictures() const { return mPictures; }
  int Rate() const { return mRate; }

  /// The whole file; empty when FFmpeg could not, or a second time.
  QByteArray Finish();

private:
  static int Write(void* writer, quint8* bytes, int size);
  static int64_t Seek(void* writer, int64_t offset, int whence);

  int mRate;
  int mPictures = 0;
  bool mGood = false;
  QByteArray mBytes;
  qsizetype mAt = 0;
  Owned<AVIOContext> mStream;
  Owned<AVFormatContext> mFormat;
  Owned<AVPacket> mPacket;
};

}  // namespace recorder
