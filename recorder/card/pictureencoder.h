#pragma once

#include <QByteArray>
#include <memory>

#include "recorder/base/picture.h"

namespace recorder {

/// Makes JPEG pictures, all of one size: by FFmpeg (recorder/video), or none (recorder/blank).
class PictureEncoder {
public:
  PictureEncoder(int width, int height);
  ~PictureEncoder();

  /// One JPEG picture; empty when `picture` has another size, or none can be made.
  QByteArray Encode(const Picture& picture);

private:
  struct Codec;

  std::unique_ptr<Codec> mCodec;
};

}  // namespace recorder
