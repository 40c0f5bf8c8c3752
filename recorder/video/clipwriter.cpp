#include "recorder/card/clipwriter.h"

#include <cstring>
#include <utility>

#include "recorder/video/ffmpeg.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

namespace recorder {

struct ClipWriter::File {
  static int Write(void* file, quint8* bytes, int size);
  static int64_t Seek(void* file, int64_t offset, int whence);

  bool good = false;
  QByteArray bytes;
  qsizetype at = 0;
  Owned<AVIOContext> stream;
  Owned<AVFormatContext> format;
  Owned<AVPacket> packet;
};

int ClipWriter::File::Write(void* file, quint8* bytes, int size) {
  auto* self = static_cast<File*>(file);
  if (const qsizetype end = self->at + size; end > self->bytes.size()) self->bytes.resize(end);
  std::memcpy(self->bytes.data() + self->at, bytes, static_cast<size_t>(size));
  self->at += size;
  return size;
}

// Only inside of what is written.
int64_t ClipWriter::File::Seek(void* file, int64_t offset, int whence) {
  auto* self = static_cast<File*>(file);
  if (whence & AVSEEK_SIZE) return self->bytes.size();
  if ((whence & ~AVSEEK_FORCE) != SEEK_SET || offset < 0 || offset > self->bytes.size()) return AVERROR(EINVAL);
  self->at = static_cast<qsizetype>(offset);
  return offset;
}

ClipWriter::ClipWriter(int width, int height, int rate) : mRate(rate), mFile(std::make_unique<File>()) {
  AVFormatContext* format = nullptr;
  if (avformat_alloc_output_context2(&format, nullptr, "avi", nullptr) < 0) return;
  mFile->format.reset(format);
  mFile->packet.reset(av_packet_alloc());
  format->flags |= AVFMT_FLAG_BITEXACT;
  AVStream* stream = avformat_new_stream(format, nullptr);
  mFile->stream.reset(avio_alloc_context(static_cast<quint8*>(av_malloc(kStreamBuffer)), kStreamBuffer, 1, mFile.get(),
                                         nullptr, File::Write, File::Seek));
  format->pb = mFile->stream.get();
  if (!stream) return;
  stream->time_base = {1, rate};
  stream->codecpar->sample_aspect_ratio = {1, 1};
  stream->avg_frame_rate = {rate, 1};
  stream->codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
  stream->codecpar->codec_id = AV_CODEC_ID_MJPEG;
  stream->codecpar->width = width;
  stream->codecpar->height = height;
  av_opt_set_int(format->priv_data, "reserve_index_space", 64, 0);  // of one file below a gigabyte
  mFile->good = avformat_write_header(format, nullptr) >= 0;
}

ClipWriter::~ClipWriter() = default;

void ClipWriter::Add(const QByteArray& jpeg) {
  if (!mFile->good) return;
  // The packet only borrows the bytes: the muxer writes them before it returns.
  AVPacket* packet = mFile->packet.get();
  packet->data = reinterpret_cast<quint8*>(const_cast<char*>(jpeg.constData()));
  packet->size = static_cast<int>(jpeg.size());
  packet->pts = packet->dts = mPictures;
  packet->duration = 1;
  packet->flags = AV_PKT_FLAG_KEY;
  mFile->good = av_write_frame(mFile->format.get(), packet) >= 0;
  ++mPictures;
}

QByteArray ClipWriter::Finish() {
  if (!mFile->good || av_write_trailer(mFile->format.get()) < 0) return {};
  avio_flush(mFile->stream.get());
  mFile->good = false;
  return std::exchange(mFile->bytes, {});
}

}  // namespace recorder
