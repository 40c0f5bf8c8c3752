#pragma once

#include <QElapsedTimer>
#include <QString>
#include <memory>

#include "recorder/base/picture.h"
#include "recorder/card/ffmpeg.h"

namespace recorder {

/// Reads a recording picture by picture. The file may be anything: what it says about itself is checked, and no call
/// takes longer than a moment.
class ClipReader {
public:
  enum class Result {
    Good,
    End,          ///< after the last picture
    NotOpened,    ///< there is no such file, or none that can be read
    NotReadable,  ///< no AVI file, or it is damaged here
    NotPlayable,  ///< an AVI file of a kind that no recorder makes
  };

  ClipReader();
  ~ClipReader();

  Result Open(const QString& path);

  /// The next picture; Good: it can be taken.
  Result Next();

  /// Goes to the picture at `ms`, at most the last one; it comes with Next(). False: the file has no index for it.
  bool Seek(qint64 ms);

  const std::shared_ptr<const Picture>& Taken() const { return mTaken; }
  qint64 At() const;      ///< where the picture taken begins, ms
  qint64 Until() const;   ///< where it ends, ms
  qint64 Length() const;  ///< of the whole, ms, as the header says

private:
  static int Read(void* reader, quint8* bytes, int size);
  static int64_t SeekBytes(void* reader, int64_t offset, int whence);
  Result OpenFile(const QString& path);
  Result OpenFormat();
  Result OpenCodec();
  Result Decode();
  qint64 Ms(qint64 number) const;

  int mFile = -1;
  qint64 mSize = 0;
  QElapsedTimer mClock;  // of the call under way
  Owned<AVIOContext> mStream;
  Owned<AVFormatContext> mFormat;
  Owned<AVCodecContext> mCodec;
  Owned<AVPacket> mPacket;
  Owned<AVFrame> mFrame;
  Owned<SwsContext> mScaler;
  int mRate = 1;
  qint64 mPictures = 0;  // as the header says
  qint64 mNumber = -1;   // of the picture taken
  std::shared_ptr<const Picture> mTaken;
};

}  // namespace recorder
