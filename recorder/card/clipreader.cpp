#include "recorder/card/clipreader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <algorithm>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace recorder {
namespace {

// What no recording reaches.
constexpr qint64 kLargestFile = 64 << 20;
constexpr int kLargestSide = 2048;
constexpr int kHighestRate = 60;
constexpr qint64 kMostPictures = 1 << 20;
constexpr int kPatience = 200;  // ms for one call
constexpr int kMostPackets = 64;

// The planes of YUV that JPEG names by formats of its own.
AVPixelFormat Plain(int format) {
  switch (format) {
    case AV_PIX_FMT_YUVJ420P:
      return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
      return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
      return AV_PIX_FMT_YUV444P;
    default:
      return static_cast<AVPixelFormat>(format);
  }
}

}  // namespace

ClipReader::ClipReader() : mPacket(av_packet_alloc()), mFrame(av_frame_alloc()) {}

ClipReader::~ClipReader() {
  mFormat.reset();  // before its stream
  if (mFile >= 0) close(mFile);
}

int ClipReader::Read(void* reader, quint8* bytes, int size) {
  auto* self = static_cast<ClipReader*>(reader);
  if (self->mClock.hasExpired(kPatience)) return AVERROR_EXIT;
  const ssize_t number = read(self->mFile, bytes, static_cast<size_t>(size));
  return number > 0 ? static_cast<int>(number) : number == 0 ? AVERROR_EOF : AVERROR(EIO);
}

int64_t ClipReader::SeekBytes(void* reader, int64_t offset, int whence) {
  auto* self = static_cast<ClipReader*>(reader);
  return whence & AVSEEK_SIZE ? self->mSize : lseek(self->mFile, offset, whence & ~AVSEEK_FORCE);
}

ClipReader::Result ClipReader::Open(const QString& path) {
  mClock.start();
  Result result = OpenFile(path);
  if (result == Result::Good) result = OpenFormat();
  if (result == Result::Good) result = OpenCodec();
  return result;
}

// Neither a link nor a pipe or a device.
ClipReader::Result ClipReader::OpenFile(const QString& path) {
  mFile = open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  struct stat state {};
  if (mFile < 0 || fstat(mFile, &state) != 0 || !S_ISREG(state.st_mode)) return Result::NotOpened;
  mSize = state.st_size;
  return mSize <= kLargestFile ? Result::Good : Result::NotPlayable;
}

ClipReader::Result ClipReader::OpenFormat() {
  auto* buffer = static_cast<quint8*>(av_malloc(kStreamBuffer));
  mStream.reset(avio_alloc_context(buffer, kStreamBuffer, 0, this, Read, nullptr, SeekBytes));
  AVFormatContext* format = avformat_alloc_context();
  format->pb = mStream.get();
  // It frees the context itself when it fails.
  if (avformat_open_input(&format, nullptr, av_find_input_format("avi"), nullptr) < 0) return Result::NotReadable;
  mFormat.reset(format);
  return Result::Good;
}

ClipReader::Result ClipReader::OpenCodec() {
  if (mFormat->nb_streams == 0) return Result::NotReadable;
  const AVStream& stream = *mFormat->streams[0];
  const AVCodecParameters& video = *stream.codecpar;
  mPictures = stream.nb_frames > 0 ? stream.nb_frames : stream.duration;
  const bool isOurs = mFormat->nb_streams == 1 && video.codec_type == AVMEDIA_TYPE_VIDEO &&
                      video.codec_id == AV_CODEC_ID_MJPEG && video.width > 0 && video.width <= kLargestSide &&
                      video.height > 0 && video.height <= kLargestSide && stream.time_base.num == 1 &&
                      stream.time_base.den >= 1 && stream.time_base.den <= kHighestRate && mPictures <= kMostPictures;
  if (!isOurs) return Result::NotPlayable;
  mRate = stream.time_base.den;
  mCodec.reset(avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_MJPEG)));
  mCodec->err_recognition = AV_EF_EXPLODE;
  mCodec->thread_count = 1;
  mCodec->max_pixels = qint64{kLargestSide} * kLargestSide;
  if (avcodec_parameters_to_context(mCodec.get(), &video) < 0 ||
      avcodec_open2(mCodec.get(), mCodec->codec, nullptr) < 0)
    return Result::NotPlayable;
  return Result::Good;
}

ClipReader::Result ClipReader::Next() {
  mClock.start();
  for (int i = 0; i < kMostPackets; ++i) {
    av_packet_unref(mPacket.get());
    if (const int read = av_read_frame(mFormat.get(), mPacket.get()); read < 0) {
      const bool isWhole = read == AVERROR_EOF && mNumber >= 0 && mNumber + 1 >= mPictures;
      return isWhole ? Result::End : Result::NotReadable;
    }
    if (mPacket->stream_index == 0 && mPacket->size > 0) return Decode();
  }
  return Result::NotReadable;
}

ClipReader::Result ClipReader::Decode() {
  av_frame_unref(mFrame.get());
  if ((mPacket->flags & AV_PKT_FLAG_CORRUPT) || avcodec_send_packet(mCodec.get(), mPacket.get()) < 0 ||
      avcodec_receive_frame(mCodec.get(), mFrame.get()) < 0)
    return Result::NotReadable;
  const AVFrame& frame = *mFrame;
  if (frame.width <= 0 || frame.width > kLargestSide || frame.height <= 0 || frame.height > kLargestSide)
    return Result::NotPlayable;
  auto picture = std::make_shared<Picture>();
  picture->width = frame.width;
  picture->height = frame.height;
  picture->pixels.resize(static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height));
  if (!mTaken || mTaken->width != frame.width || mTaken->height != frame.height)
    mScaler = NewScaler(frame.width, frame.height, Plain(frame.format), AV_PIX_FMT_RGB32);
  if (!mScaler) return Result::NotPlayable;
  auto* rows = reinterpret_cast<quint8*>(picture->pixels.data());
  const int bytesPerRow = frame.width * 4;
  sws_scale(mScaler.get(), frame.data, frame.linesize, 0, frame.height, &rows, &bytesPerRow);
  mTaken = std::move(picture);
  mNumber = mPacket->pts >= 0 ? std::min<qint64>(mPacket->pts, kMostPictures) : mNumber + 1;
  return Result::Good;
}

bool ClipReader::Seek(qint64 ms) {
  mClock.start();
  const qint64 last = std::max<qint64>(mPictures - 1, 0);
  const qint64 number = std::clamp<qint64>(ms, 0, Length()) * mRate / 1000;
  avcodec_flush_buffers(mCodec.get());
  return av_seek_frame(mFormat.get(), 0, std::min(number, last), AVSEEK_FLAG_BACKWARD) >= 0;
}

qint64 ClipReader::Ms(qint64 number) const {
  return number * 1000 / mRate;
}

qint64 ClipReader::At() const {
  return Ms(std::max<qint64>(mNumber, 0));
}

qint64 ClipReader::Until() const {
  return Ms(mNumber + 1);
}

qint64 ClipReader::Length() const {
  return Ms(mPictures);
}

}  // namespace recorder
