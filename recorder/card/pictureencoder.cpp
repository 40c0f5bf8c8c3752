#include "recorder/card/pictureencoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswscale/swscale.h>
}

namespace recorder {
namespace {

constexpr int kQuality = 7;  // FFmpeg's scale, 2 (best) .. 31

}  // namespace

PictureEncoder::PictureEncoder(int width, int height)
    : mWidth(width),
      mHeight(height),
      mCodec(avcodec_alloc_context3(avcodec_find_encoder(AV_CODEC_ID_MJPEG))),
      mFrame(av_frame_alloc()),
      mPacket(av_packet_alloc()),
      mScaler(NewScaler(width, height, AV_PIX_FMT_RGB32, AV_PIX_FMT_YUV420P)) {
  mCodec->width = mFrame->width = width;
  mCodec->height = mFrame->height = height;
  mCodec->pix_fmt = AV_PIX_FMT_YUV420P;
  mCodec->color_range = AVCOL_RANGE_JPEG;
  mCodec->time_base = {1, 1};
  mCodec->flags |= AV_CODEC_FLAG_QSCALE | AV_CODEC_FLAG_BITEXACT;
  mCodec->global_quality = kQuality * FF_QP2LAMBDA;
  mCodec->thread_count = 1;
  mFrame->format = AV_PIX_FMT_YUV420P;
  mFrame->color_range = AVCOL_RANGE_JPEG;
  mFrame->quality = mCodec->global_quality;
  if (!mScaler || avcodec_open2(mCodec.get(), mCodec->codec, nullptr) < 0 || av_frame_get_buffer(mFrame.get(), 0) < 0)
    mScaler.reset();
}

PictureEncoder::~PictureEncoder() = default;

QByteArray PictureEncoder::Encode(const Picture& picture) {
  if (!mScaler || picture.width != mWidth || picture.height != mHeight ||
      picture.pixels.size() != static_cast<size_t>(mWidth) * static_cast<size_t>(mHeight) ||
      av_frame_make_writable(mFrame.get()) < 0)
    return {};
  const auto* rows = reinterpret_cast<const quint8*>(picture.pixels.data());
  const int bytesPerRow = mWidth * 4;
  sws_scale(mScaler.get(), &rows, &bytesPerRow, 0, mHeight, mFrame->data, mFrame->linesize);
  ++mFrame->pts;
  if (avcodec_send_frame(mCodec.get(), mFrame.get()) < 0 || avcodec_receive_packet(mCodec.get(), mPacket.get()) < 0)
    return {};
  QByteArray jpeg(reinterpret_cast<const char*>(mPacket->data), mPacket->size);
  av_packet_unref(mPacket.get());
  return jpeg;
}

}  // namespace recorder
