#pragma once

#include <QString>
#include <algorithm>
#include <memory>

#include "recorder/base/picture.h"

namespace recorder {

/// Reads a recording picture by picture. The file may be anything: what it says about itself is checked, and no call
/// takes longer than a moment. By FFmpeg (recorder/video), or with a black picture in place of all (recorder/blank).
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
  qint64 At() const { return Ms(std::max<qint64>(mNumber, 0)); }  ///< where the picture taken begins, ms
  qint64 Until() const { return Ms(mNumber + 1); }                ///< where it ends, ms
  qint64 Length() const { return Ms(mPictures); }                 ///< of the whole, ms, as the header says

private:
  struct File;

  Result Decode();
  qint64 Ms(qint64 number) const { return number * 1000 / mRate; }

  std::unique_ptr<File> mFile;
  int mRate = 1;
  qint64 mPictures = 0;  // as the header says
  qint64 mNumber = -1;   // of the picture taken
  std::shared_ptr<const Picture> mTaken;
};

}  // namespace recorder
