#include "recorder/card/clipwriter.h"

#include <cstring>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

namespace recorder {

int ClipWriter::Write(void* writer, quint8* bytes, int size) {
  auto* self = static_cast<ClipWriter*>(writer);
  if (const qsizetype end = self->mAt + size; end > self->mBytes.size()) self->mBytes.resize(end);
  std::memcpy(self->mBytes.data() + self->mAt, bytes, static_cast<size_t>(size));
  self->mAt += size;
  return size;
}

// Only inside of what is written.
int64_t ClipWriter::Seek(void* writer, int64_t offset, int whence) {
  auto* self = static_cast<ClipWriter*>(writer);
  if (whence & AVSEEK_SIZE) return self->mBytes.size();
  if ((whence & ~AVSEEK_FORCE) != SEEK_SET || offset < 0 || offset > self->mBytes.size()) return AVERROR(EINVAL);
  self->mAt = static_cast<qsizetype>(offset);
  return offset;
}

ClipWriter::ClipWriter(int width, int height, int rate) : mRate(rate), mPacket(av_packet_alloc()) {
  AVFormatContext* format = nullptr;
  if (avformat_alloc_output_context2(&format, nullptr, "avi", nullptr) < 0) return;
  mFormat.reset(format);
  mFormat->flags |= AVFMT_FLAG_BITEXACT;
  AVStream* stream = avformat_new_stream(format, nullptr);
  mStream.reset(
      avio_alloc_context(static_cast<quint8*>(av_malloc(kStreamBuffer)), kStreamBuffer, 1, this, nullptr, Write, Seek));
  format->pb = mStream.get();
  if (!stream) return;
  stream->time_base = {1, rate};
  stream->codecpar->sample_aspect_ratio = {1, 1};
  stream->avg_frame_rate = {rate, 1};
  stream->codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
  stream->codecpar->codec_id = AV_CODEC_ID_MJPEG;
  stream->codecpar->width = width;
  stream->codecpar->height = height;
  av_opt_set_int(format->priv_data, "reserve_index_space", 64, 0);  // of one file below a gigabyte
  mGood = avformat_write_header(format, nullptr) >= 0;
}

ClipWriter::~ClipWriter() = default;

void ClipWriter::Add(const QByteArray& jpeg) {
  if (!mGood) return;
  // The packet only borrows the bytes: the muxer writes them before it returns.
  mPacket->data = reinterpret_cast<quint8*>(const_cast<char*>(jpeg.constData()));
  mPacket->size = static_cast<int>(jpeg.size());
  mPacket->pts = mPacket->dts = mPictures;
  mPacket->duration = 1;
  mPacket->flags = AV_PKT_FLAG_KEY;
  mGood = av_write_frame(mFormat.get(), mPacket.get()) >= 0;
  ++mPictures;
}

QByteArray ClipWriter::Finish() {
  if (!mGood || av_write_trailer(mFormat.get()) < 0) return {};
  avio_flush(mStream.get());
  mGood = false;
  return std::exchange(mBytes, {});
}

}  // namespace recorder
