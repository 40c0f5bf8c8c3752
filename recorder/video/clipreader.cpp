#include "recorder/card/clipreader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <array>
#include <utility>

#include "recorder/video/ffmpeg.h"

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
constexpr size_t kMostAtOnce = 64;  // pixels that the scaler may write at once, the last of them behind the picture

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

struct ClipReader::File {
  static int Read(void* file, quint8* bytes, int size);
  static int64_t Seek(void* file, int64_t offset, int whence);

  ~File() {
    format.reset();  // before its stream
    if (descriptor >= 0) close(descriptor);
  }
  Result Open(const QString& path);
  Result OpenFormat();
  Result OpenCodec(const AVCodecParameters& video);

  int descriptor = -1;
  qint64 size = 0;
  QElapsedTimer clock;  // of the call under way
  Owned<AVIOContext> stream;
  Owned<AVFormatContext> format;
  Owned<AVCodecContext> codec;
  Owned<AVPacket> packet{av_packet_alloc()};
  Owned<AVFrame> frame{av_frame_alloc()};
  Owned<SwsContext> scaler;
  std::array<int, 3> shape{};  // width, height and format that the scaler is for
};

int ClipReader::File::Read(void* file, quint8* bytes, int size) {
  auto* self = static_cast<File*>(file);
  if (self->clock.hasExpired(kPatience)) return AVERROR_EXIT;
  const ssize_t number = read(self->descriptor, bytes, static_cast<size_t>(size));
  return number > 0 ? static_cast<int>(number) : number == 0 ? AVERROR_EOF : AVERROR(EIO);
}

int64_t ClipReader::File::Seek(void* file, int64_t offset, int whence) {
  auto* self = static_cast<File*>(file);
  return whence & AVSEEK_SIZE ? self->size : lseek(self->descriptor, offset, whence & ~AVSEEK_FORCE);
}

// Neither a link nor a pipe or a device.
ClipReader::Result ClipReader::File::Open(const QString& path) {
  descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  struct stat state {};
  if (descriptor < 0 || fstat(descriptor, &state) != 0 || !S_ISREG(state.st_mode)) return Result::NotOpened;
  size = state.st_size;
  return size <= kLargestFile ? Result::Good : Result::NotPlayable;
}

ClipReader::Result ClipReader::File::OpenFormat() {
  auto* buffer = static_cast<quint8*>(av_malloc(kStreamBuffer));
  stream.reset(avio_alloc_context(buffer, kStreamBuffer, 0, this, Read, nullptr, Seek));
  AVFormatContext* opened = avformat_alloc_context();
  opened->pb = stream.get();
  // It frees the context itself when it fails.
  if (avformat_open_input(&opened, nullptr, av_find_input_format("avi"), nullptr) < 0) return Result::NotReadable;
  format.reset(opened);
  return format->nb_streams > 0 ? Result::Good : Result::NotReadable;
}

ClipReader::Result ClipReader::File::OpenCodec(const AVCodecParameters& video) {
  codec.reset(avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_MJPEG)));
  codec->err_recognition = AV_EF_EXPLODE;
  codec->thread_count = 1;
  codec->max_pixels = qint64{kLargestSide} * kLargestSide;
  const bool good =
      avcodec_parameters_to_context(codec.get(), &video) >= 0 && avcodec_open2(codec.get(), codec->codec, nullptr) >= 0;
  return good ? Result::Good : Result::NotPlayable;
}

ClipReader::ClipReader() : mFile(std::make_unique<File>()) {}

ClipReader::~ClipReader() = default;

ClipReader::Result ClipReader::Open(const QString& path) {
  mFile->clock.start();
  Result result = mFile->Open(path);
  if (result == Result::Good) result = mFile->OpenFormat();
  if (result != Result::Good) return result;
  const AVStream& stream = *mFile->format->streams[0];
  const AVCodecParameters& video = *stream.codecpar;
  mPictures = stream.nb_frames > 0 ? stream.nb_frames : stream.duration;
  const bool isOurs = mFile->format->nb_streams == 1 && video.codec_type == AVMEDIA_TYPE_VIDEO &&
                      video.codec_id == AV_CODEC_ID_MJPEG && video.width > 0 && video.width <= kLargestSide &&
                      video.height > 0 && video.height <= kLargestSide && stream.time_base.num == 1 &&
                      stream.time_base.den >= 1 && stream.time_base.den <= kHighestRate && mPictures <= kMostPictures;
  if (!isOurs) return Result::NotPlayable;
  mRate = stream.time_base.den;
  return mFile->OpenCodec(video);
}

ClipReader::Result ClipReader::Next() {
  mFile->clock.start();
  for (int i = 0; i < kMostPackets; ++i) {
    av_packet_unref(mFile->packet.get());
    if (const int read = av_read_frame(mFile->format.get(), mFile->packet.get()); read < 0) {
      const bool isWhole = read == AVERROR_EOF && mNumber >= 0 && mNumber + 1 >= mPictures;
      return isWhole ? Result::End : Result::NotReadable;
    }
    if (mFile->packet->stream_index == 0 && mFile->packet->size > 0) return Decode();
  }
  return Result::NotReadable;
}

ClipReader::Result ClipReader::Decode() {
  av_frame_unref(mFile->frame.get());
  if ((mFile->packet->flags & AV_PKT_FLAG_CORRUPT) ||
      avcodec_send_packet(mFile->codec.get(), mFile->packet.get()) < 0 ||
      avcodec_receive_frame(mFile->codec.get(), mFile->frame.get()) < 0)
    return Result::NotReadable;
  const AVFrame& frame = *mFile->frame;
  if (frame.width <= 0 || frame.width > kLargestSide || frame.height <= 0 || frame.height > kLargestSide)
    return Result::NotPlayable;
  auto picture = std::make_shared<Picture>();
  picture->width = frame.width;
  picture->height = frame.height;
  const size_t pixels = static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height);
  picture->pixels.reserve(pixels + kMostAtOnce);
  picture->pixels.resize(pixels);
  const std::array shape{frame.width, frame.height, frame.format};
  if (std::exchange(mFile->shape, shape) != shape)
    mFile->scaler = NewScaler(frame.width, frame.height, Plain(frame.format), AV_PIX_FMT_RGB32);
  if (!mFile->scaler) return Result::NotPlayable;
  auto* rows = reinterpret_cast<quint8*>(picture->pixels.data());
  const int bytesPerRow = frame.width * 4;
  sws_scale(mFile->scaler.get(), frame.data, frame.linesize, 0, frame.height, &rows, &bytesPerRow);
  mTaken = std::move(picture);
  mNumber = mFile->packet->pts >= 0 ? std::min<qint64>(mFile->packet->pts, kMostPictures) : mNumber + 1;
  return Result::Good;
}

bool ClipReader::Seek(qint64 ms) {
  mFile->clock.start();
  const qint64 last = std::max<qint64>(mPictures - 1, 0);
  const qint64 number = std::clamp<qint64>(ms, 0, Length()) * mRate / 1000;
  avcodec_flush_buffers(mFile->codec.get());
  return av_seek_frame(mFile->format.get(), 0, std::min(number, last), AVSEEK_FLAG_BACKWARD) >= 0;
}

}  // namespace recorder
