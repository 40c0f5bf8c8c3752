#include "bench/footage/film.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <QFile>
#include <QTransform>
#include <algorithm>
#include <cmath>

#include "recorder/video/ffmpeg.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavdevice/avdevice.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/mathematics.h>
#include <libswscale/swscale.h>
}

namespace {
using recorder::Owned;

constexpr QSize kSize(480, 320);
constexpr int kOpenMs = 10000;
constexpr qint64 kMostWidth = 7680, kMostHeight = 4320;
constexpr int kMostBad = 50;
constexpr int kThreads = 2;
constexpr unsigned kVideoDevices = 81;  // the kernel's major number of them
constexpr AVRational kMicroseconds{1, 1000000};
constexpr qint64 kUsualStep = 40000;  // microseconds; of a file that tells no times

// How far it must be turned clockwise to stand upright: 0, 90, 180 or 270.
int TurnOf(const AVStream& stream) {
  size_t size = 0;
  const uint8_t* matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
  if (!matrix || size < 9 * sizeof(int32_t)) return 0;
  const double turn = -av_display_rotation_get(reinterpret_cast<const int32_t*>(matrix));
  return std::isnan(turn) ? 0 : (static_cast<int>(std::lround(turn / 90)) % 4 + 4) % 4 * 90;
}

// Leaves the middle of the frame, in the shape of `size`.
void Crop(AVFrame* frame, const QSize& size) {
  const AVRational pixel = frame->sample_aspect_ratio;
  const double pixelShape = pixel.num > 0 && pixel.den > 0 ? av_q2d(pixel) : 1;
  const double shape = size.width() / pixelShape / size.height();  // of the cut, in pixels of the frame
  const auto side = [](double wanted, int most) {
    return wanted >= most ? most : std::max(static_cast<int>(std::lround(wanted)), 1);
  };
  const int width = side(frame->height * shape, frame->width), height = side(frame->width / shape, frame->height);
  frame->crop_left = static_cast<size_t>((frame->width - width) / 2);
  frame->crop_right = static_cast<size_t>(frame->width - width) - frame->crop_left;
  frame->crop_top = static_cast<size_t>((frame->height - height) / 2);
  frame->crop_bottom = static_cast<size_t>(frame->height - height) - frame->crop_top;
  av_frame_apply_cropping(frame, AV_FRAME_CROP_UNALIGNED);
}

// As the file says, else as is usual for its size.
void SetColours(SwsContext* scaler, const AVFrame& frame) {
  const bool isKnown = frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB;
  const int* matrix = sws_getCoefficients(isKnown               ? frame.colorspace
                                          : frame.height >= 720 ? SWS_CS_ITU709
                                                                : SWS_CS_ITU601);
  sws_setColorspaceDetails(scaler, matrix, frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0, matrix, 1, 0, 1 << 16,
                           1 << 16);
}
}  // namespace

struct Film::File {
  const AVStream& Video() const { return *format->streams[video]; }

  Owned<AVFormatContext> format;
  Owned<AVCodecContext> codec;
  Owned<AVPacket> packet{av_packet_alloc()};
  Owned<AVFrame> frame{av_frame_alloc()};
  Owned<SwsContext> scaler;
  int video = 0;                   // which stream
  int turn = 0;                    // degrees
  int64_t first = AV_NOPTS_VALUE;  // time of its first picture
};

Film::Film(const std::atomic<bool>& isEnding) : mIsEnding(isEnding), mFile(std::make_unique<File>()) {}

Film::~Film() = default;

bool Film::IsReadable() {
  return !mIsEnding && !mPatience.hasExpired();
}

bool Film::Open(const QString& path, QString* error) {
  mPatience.setRemainingTime(kOpenMs);
  const bool good = OpenFormat(path, error) && OpenCodec(path, error);
  mPatience = QDeadlineTimer(QDeadlineTimer::Forever);
  return good;
}

bool Film::OpenFormat(const QString& path, QString* error) {
  const QByteArray name = QFile::encodeName(path);
  struct stat state {};
  const bool isThere = stat(name.constData(), &state) == 0;
  mIsCamera = isThere && S_ISCHR(state.st_mode) && major(state.st_rdev) == kVideoDevices;
  if (!isThere || (!mIsCamera && !S_ISREG(state.st_mode))) {
    *error = QStringLiteral("%1 is neither a file nor a camera of this machine (/dev/videoN).").arg(path);
    return false;
  }
  if (mIsCamera) avdevice_register_all();
  AVFormatContext* opened = avformat_alloc_context();
  opened->interrupt_callback = {[](void* film) { return static_cast<Film*>(film)->IsReadable() ? 0 : 1; }, this};
  if (mIsCamera) opened->flags |= AVFMT_FLAG_NONBLOCK;
  AVDictionary* options = nullptr;
  av_dict_set(&options, "protocol_whitelist", "file", 0);  // a playlist reaches no network
  const QByteArray url = mIsCamera ? name : "file:" + name;
  // It frees the context itself when it fails.
  const int result =
      avformat_open_input(&opened, url.constData(), mIsCamera ? av_find_input_format("v4l2") : nullptr, &options);
  av_dict_free(&options);
  if (result >= 0) mFile->format.reset(opened);
  if (result >= 0 && avformat_find_stream_info(opened, nullptr) >= 0) return true;
  *error = QStringLiteral("%1 cannot be read: it is damaged, or no video that FFmpeg's libraries read.").arg(path);
  return false;
}

bool Film::OpenCodec(const QString& path, QString* error) {
  const AVCodec* decoder = nullptr;
  mFile->video = av_find_best_stream(mFile->format.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &decoder, 0);
  if (mFile->video < 0 || !decoder || (mFile->Video().disposition & AV_DISPOSITION_ATTACHED_PIC)) {
    *error = QStringLiteral("%1 has no video that FFmpeg's libraries decode.").arg(path);
    return false;
  }
  const AVCodecParameters& video = *mFile->Video().codecpar;
  if (qint64{video.width} * video.height > kMostWidth * kMostHeight) {
    *error = QStringLiteral("%1 has pictures of %2 × %3 pixels: %4 × %5 are the most.")
                 .arg(path)
                 .arg(video.width)
                 .arg(video.height)
                 .arg(kMostWidth)
                 .arg(kMostHeight);
    return false;
  }
  for (unsigned i = 0; i < mFile->format->nb_streams; ++i)
    if (static_cast<int>(i) != mFile->video) mFile->format->streams[i]->discard = AVDISCARD_ALL;
  mFile->turn = TurnOf(mFile->Video());
  mFile->codec.reset(avcodec_alloc_context3(decoder));
  mFile->codec->thread_count = kThreads;
  mFile->codec->max_pixels = kMostWidth * kMostHeight;
  if (avcodec_parameters_to_context(mFile->codec.get(), &video) >= 0 &&
      avcodec_open2(mFile->codec.get(), decoder, nullptr) >= 0)
    return true;
  *error = QStringLiteral("%1 cannot be decoded.").arg(path);
  return false;
}

Film::Result Film::Next() {
  while (!mIsEnding && mBad < kMostBad) {
    const int got = avcodec_receive_frame(mFile->codec.get(), mFile->frame.get());
    if (got == AVERROR_EOF) return Result::End;
    if (got >= 0 && Take()) return Result::Good;
    if (got != AVERROR(EAGAIN)) {
      ++mBad;
    } else if (const Result read = Read(); read != Result::Good) {
      return read;
    }
  }
  return Result::Broken;
}

// Gives the decoder what it needs for its next picture.
Film::Result Film::Read() {
  AVPacket* packet = mFile->packet.get();
  av_packet_unref(packet);
  const int read = av_read_frame(mFile->format.get(), packet);
  if (read == AVERROR(EAGAIN)) return Result::NotYet;
  if (read < 0 && read != AVERROR_EOF) return Result::Broken;
  if (read >= 0 && packet->stream_index != mFile->video) return Result::Good;
  if (avcodec_send_packet(mFile->codec.get(), read < 0 ? nullptr : packet) < 0) ++mBad;
  return Result::Good;
}

bool Film::Take() {
  AVFrame* frame = mFile->frame.get();
  const int64_t time = frame->best_effort_timestamp;
  if (mFile->first == AV_NOPTS_VALUE) mFile->first = time;
  mAt = mTaken.isNull() ? 0
        : time == AV_NOPTS_VALUE
            ? mAt + kUsualStep
            : av_rescale_q(av_sat_sub64(time, mFile->first), mFile->Video().time_base, kMicroseconds);
  const bool isOnItsSide = mFile->turn % 180 != 0;
  const QSize size = isOnItsSide ? kSize.transposed() : kSize;
  Crop(frame, size);
  SwsContext* scaler = sws_getCachedContext(mFile->scaler.release(), frame->width, frame->height,
                                            static_cast<AVPixelFormat>(frame->format), size.width(), size.height(),
                                            AV_PIX_FMT_RGB32, SWS_BILINEAR, nullptr, nullptr, nullptr);
  mFile->scaler.reset(scaler);
  if (!scaler) return false;
  SetColours(scaler, *frame);
  QImage picture(size, QImage::Format_RGB32);
  uint8_t* rows = picture.bits();
  const int bytesPerRow = static_cast<int>(picture.bytesPerLine());
  sws_scale(scaler, frame->data, frame->linesize, 0, frame->height, &rows, &bytesPerRow);
  if (mFile->turn != 0) picture = picture.transformed(QTransform().rotate(mFile->turn));
  mTaken = picture.convertToFormat(QImage::Format_RGB32);
  mBad = 0;
  return true;
}
