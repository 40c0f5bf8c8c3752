#pragma once

#include <QDeadlineTimer>
#include <QImage>
#include <QString>
#include <atomic>
#include <memory>

/// Reads a video picture by picture: any file that FFmpeg's libraries read, or a camera of this machine (/dev/videoN).
/// The file may be anything. One thread at a time.
class Film {
public:
  enum class Result {
    Good,
    NotYet,  ///< a camera has no new picture
    End,     ///< after the last picture of a file
    Broken,  ///< it cannot be read on
  };

  /// `isEnding`: nothing waits for anything once it is true; it outlives the film.
  explicit Film(const std::atomic<bool>& isEnding);
  ~Film();

  /// 10 s at most. False with one sentence in `error`.
  bool Open(const QString& path, QString* error);

  bool IsCamera() const { return mIsCamera; }

  /// The next picture; Good: it can be taken.
  Result Next();

  /// It fills 480 × 320 pixels, RGB32, without distortion: what is too wide or too high is cut off at both sides.
  const QImage& Taken() const { return mTaken; }
  qint64 At() const { return mAt; }  ///< when the picture taken begins, microseconds since the first one

private:
  struct File;

  bool OpenFormat(const QString& path, QString* error);
  bool OpenCodec(const QString& path, QString* error);
  bool IsReadable();
  Result Read();
  bool Take();

  const std::atomic<bool>& mIsEnding;
  QDeadlineTimer mPatience{QDeadlineTimer::Forever};
  std::unique_ptr<File> mFile;
  bool mIsCamera = false;
  int mBad = 0;  // pictures in a row that could not be decoded
  QImage mTaken;
  qint64 mAt = 0;
};
