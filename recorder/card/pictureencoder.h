#pragma once

#include <QByteArray>

#include "recorder/base/picture.h"
#include "recorder/card/ffmpeg.h"

namespace recorder {

/// Makes JPEG pictures, all of one size.
class PictureEncoder {
public:
  PictureEncoder(int width, int height);
  ~PictureEncoder();

  /// One JPEG picture; empty when `picture` has another size, or when FFmpeg cannot.
  QByteArray Encode(const Picture& picture);

private:
  int mWidth;
  int mHeight;
  Owned<AVCodecContext> mCodec;
  Owned<AVFrame> mFrame;
  Owned<AVPacket> mPacket;
  Owned<SwsContext> mScaler;
};

}  // namespace recorder
