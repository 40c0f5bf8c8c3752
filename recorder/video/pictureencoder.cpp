#include "recorder/card/pictureencoder.h"

#include "recorder/video/ffmpeg.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswscale/swscale.h>
}

namespace recorder {
namespace {

constexpr int kQuality = 7;  // FFmpeg's scale, 2 (best) .. 31

}  // namespace

struct PictureEncoder::Codec {
  Owned<AVCodecContext> context{avcodec_alloc_context3(avcodec_find_encoder(AV_CODEC_ID_MJPEG))};
  Owned<AVFrame> frame{av_frame_alloc()};
  Owned<AVPacket> packet{av_packet_alloc()};
  Owned<SwsContext> scaler;  // null: nothing can be encoded
};

PictureEncoder::PictureEncoder(int width, int height) : mCodec(std::make_unique<Codec>()) {
  AVCodecContext& context = *mCodec->context;
  AVFrame& frame = *mCodec->frame;
  context.width = frame.width = width;
  context.height = frame.height = height;
  context.pix_fmt = AV_PIX_FMT_YUV420P;
  context.color_range = AVCOL_RANGE_JPEG;
  context.time_base = {1, 1};
  context.flags |= AV_CODEC_FLAG_QSCALE | AV_CODEC_FLAG_BITEXACT;
  context.global_quality = kQuality * FF_QP2LAMBDA;
  context.thread_count = 1;
  frame.format = AV_PIX_FMT_YUV420P;
  frame.color_range = AVCOL_RANGE_JPEG;
  frame.quality = context.global_quality;
  if (avcodec_open2(&context, context.codec, nullptr) >= 0 && av_frame_get_buffer(&frame, 0) >= 0)
    mCodec->scaler = NewScaler(width, height, AV_PIX_FMT_RGB32, AV_PIX_FMT_YUV420P);
}

PictureEncoder::~PictureEncoder() = default;

QByteArray PictureEncoder::Encode(const Picture& picture) {
  AVFrame& frame = *mCodec->frame;
  if (!mCodec->scaler || picture.width != frame.width || picture.height != frame.height ||
      picture.pixels.size() != static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height) ||
      av_frame_make_writable(&frame) < 0)
    return {};
  const auto* rows = reinterpret_cast<const quint8*>(picture.pixels.data());
  const int bytesPerRow = frame.width * 4;
  sws_scale(mCodec->scaler.get(), &rows, &bytesPerRow, 0, frame.height, frame.data, frame.linesize);
  ++frame.pts;
  AVPacket& packet = *mCodec->packet;
  if (avcodec_send_frame(mCodec->context.get(), &frame) < 0 ||
      avcodec_receive_packet(mCodec->context.get(), &packet) < 0)
    return {};
  QByteArray jpeg(reinterpret_cast<const char*>(packet.data), packet.size);
  av_packet_unref(&packet);
  return jpeg;
}

}  // namespace recorder
