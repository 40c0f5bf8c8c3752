// Recordings without pictures, for a recorder without FFmpeg: an AVI file that says its size, its rate and its length,
// and has an empty list where the pictures would be. A reader goes through it in its time and shows black.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QtEndian>
#include <cstring>

#include "recorder/card/clipreader.h"
#include "recorder/card/clipwriter.h"
#include "recorder/card/pictureencoder.h"

namespace recorder {
namespace {

constexpr quint32 Tag(const char (&text)[5]) {
  quint32 tag = 0;
  for (int i = 3; i >= 0; --i) tag = tag << 8 | static_cast<unsigned char>(text[i]);
  return tag;
}

// The whole file, little-endian. A chunk's size counts what follows it.
struct Header {
  quint32 riff[3] = {Tag("RIFF"), 0, Tag("AVI ")};
  quint32 headers[3] = {Tag("LIST"), 0, Tag("hdrl")};
  quint32 main[2] = {Tag("avih"), 56};
  quint32 microseconds = 0;  // of a picture
  quint32 unused1[3] = {};
  quint32 pictures = 0;
  quint32 unused2 = 0;
  quint32 streams = 1;
  quint32 unused3 = 0;
  quint32 size[2] = {};
  quint32 unused4[4] = {};
  quint32 list[3] = {Tag("LIST"), 0, Tag("strl")};
  quint32 stream[2] = {Tag("strh"), 56};
  quint32 kind[2] = {Tag("vids"), Tag("MJPG")};
  quint32 unused5[3] = {};
  quint32 scale = 1;
  quint32 rate = 1;
  quint32 unused6 = 0;
  quint32 length = 0;
  quint32 unused7[3] = {};
  quint16 frame[4] = {};  // left, top, right, bottom
  quint32 format[2] = {Tag("strf"), 40};
  quint32 bytes = 40;
  qint32 width = 0, height = 0;
  quint16 planes[2] = {1, 24};  // and bits of a pixel
  quint32 compression = Tag("MJPG");
  quint32 unused8[5] = {};
  quint32 movie[3] = {Tag("LIST"), 4, Tag("movi")};
};
static_assert(sizeof(Header) == 224 && offsetof(Header, list) == 88 && offsetof(Header, movie) == 212);
static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN);

constexpr quint32 kHighestRate = 60;
constexpr quint32 kMostPictures = 1 << 20;

}  // namespace

struct ClipWriter::File {
  Header header;
  bool finished = false;
};

ClipWriter::ClipWriter(int width, int height, int rate) : mRate(rate), mFile(std::make_unique<File>()) {
  Header& header = mFile->header;
  header.riff[1] = sizeof header - 8;
  header.headers[1] = offsetof(Header, movie) - offsetof(Header, headers) - 8;
  header.list[1] = offsetof(Header, movie) - offsetof(Header, list) - 8;
  header.microseconds = 1000000 / static_cast<quint32>(rate);
  header.rate = static_cast<quint32>(rate);
  header.width = width;
  header.height = height;
  header.size[0] = static_cast<quint32>(width);
  header.size[1] = static_cast<quint32>(height);
  header.frame[2] = static_cast<quint16>(width);
  header.frame[3] = static_cast<quint16>(height);
}

ClipWriter::~ClipWriter() = default;

void ClipWriter::Add(const QByteArray&) {
  ++mPictures;
}

QByteArray ClipWriter::Finish() {
  if (std::exchange(mFile->finished, true)) return {};
  mFile->header.pictures = mFile->header.length = static_cast<quint32>(mPictures);
  return QByteArray(reinterpret_cast<const char*>(&mFile->header), sizeof mFile->header);
}

struct ClipReader::File {};

ClipReader::ClipReader() = default;

ClipReader::~ClipReader() = default;

// Neither a link nor a pipe or a device.
ClipReader::Result ClipReader::Open(const QString& path) {
  const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return Result::NotOpened;
  struct stat state {};
  const bool isFile = fstat(file, &state) == 0 && S_ISREG(state.st_mode);
  Header header;
  const ssize_t got = isFile ? pread(file, &header, offsetof(Header, movie), 0) : 0;
  close(file);
  if (!isFile) return Result::NotOpened;
  const Header good;
  if (got != offsetof(Header, movie) || header.riff[0] != good.riff[0] || header.riff[2] != good.riff[2] ||
      header.headers[0] != good.headers[0])
    return Result::NotReadable;
  const bool isOurs = std::memcmp(header.main, good.main, sizeof good.main) == 0 &&
                      std::memcmp(header.kind, good.kind, sizeof good.kind) == 0 && header.scale == 1 &&
                      header.rate >= 1 && header.rate <= kHighestRate && header.length <= kMostPictures;
  if (!isOurs) return Result::NotPlayable;
  mRate = static_cast<int>(header.rate);
  mPictures = header.length;
  return Result::Good;
}

ClipReader::Result ClipReader::Next() {
  if (mNumber + 1 >= mPictures) return mPictures > 0 ? Result::End : Result::NotReadable;
  ++mNumber;
  if (!mTaken) mTaken = std::make_shared<Picture>(Picture{1, 1, {0}});
  return Result::Good;
}

bool ClipReader::Seek(qint64 ms) {
  mNumber = std::clamp<qint64>(ms * mRate / 1000, 0, std::max<qint64>(mPictures - 1, 0)) - 1;
  return true;
}

struct PictureEncoder::Codec {};

PictureEncoder::PictureEncoder(int, int) {}

PictureEncoder::~PictureEncoder() = default;

QByteArray PictureEncoder::Encode(const Picture&) {
  return {};
}

}  // namespace recorder
