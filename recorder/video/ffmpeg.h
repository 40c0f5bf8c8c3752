#pragma once

#include <memory>

extern "C" {
#include <libavutil/pixfmt.h>
}

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;
struct SwsContext;

/// What the readers and writers of recordings share of FFmpeg's libraries.
namespace recorder {

/// Ends what FFmpeg's libraries made.
struct Ending {
  void operator()(AVCodecContext* codec) const;
  void operator()(AVFormatContext* format) const;
  void operator()(AVFrame* frame) const;
  void operator()(AVIOContext* stream) const;
  void operator()(AVPacket* packet) const;
  void operator()(SwsContext* scaler) const;
};
template <typename Thing>
using Owned = std::unique_ptr<Thing, Ending>;

/// Turns RGB words into the full range of YUV, as JPEG has it, or back. Null when it cannot.
Owned<SwsContext> NewScaler(int width, int height, AVPixelFormat from, AVPixelFormat to);

inline constexpr int kStreamBuffer = 4096;  ///< bytes

}  // namespace recorder
