#include "recorder/video/ffmpeg.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace recorder {
namespace {

// What FFmpeg has to say about a bad file is told by a status event.
const bool kQuiet = [] {
  av_log_set_level(AV_LOG_QUIET);
  return true;
}();

}  // namespace

void Ending::operator()(AVCodecContext* codec) const {
  avcodec_free_context(&codec);
}

void Ending::operator()(AVFormatContext* format) const {
  if (!format->oformat) return avformat_close_input(&format);
  avformat_free_context(format);
}

void Ending::operator()(AVFrame* frame) const {
  av_frame_free(&frame);
}

void Ending::operator()(AVIOContext* stream) const {
  av_freep(&stream->buffer);
  avio_context_free(&stream);
}

void Ending::operator()(AVPacket* packet) const {
  av_packet_free(&packet);
}

void Ending::operator()(SwsContext* scaler) const {
  sws_freeContext(scaler);
}

Owned<SwsContext> NewScaler(int width, int height, AVPixelFormat from, AVPixelFormat to) {
  Owned<SwsContext> scaler(
      sws_getContext(width, height, from, width, height, to, SWS_FAST_BILINEAR, nullptr, nullptr, nullptr));
  if (!scaler) return {};
  const int* matrix = sws_getCoefficients(SWS_CS_ITU601);
  sws_setColorspaceDetails(scaler.get(), matrix, 1, matrix, 1, 0, 1 << 16, 1 << 16);
  return scaler;
}

}  // namespace recorder
