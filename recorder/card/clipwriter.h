#pragma once

#include <QByteArray>
#include <memory>

namespace recorder {

/// An AVI file that grows in memory. Its time base is 1 / rate: the header's length ÷ rate is the time in seconds.
/// Made by FFmpeg (recorder/video), or with a length but without pictures (recorder/blank).
class ClipWriter {
public:
  ClipWriter(int width, int height, int rate);  ///< `rate`: pictures a second, 1..60
  ~ClipWriter();

  /// A picture; it may be empty where there are none.
  void Add(const QByteArray& jpeg);
  int Pictures() const { return mPictures; }
  int Rate() const { return mRate; }

  /// The whole file; empty when it could not be made, or a second time.
  QByteArray Finish();

private:
  struct File;

  int mRate;
  int mPictures = 0;
  std::unique_ptr<File> mFile;
};

}  // namespace recorder
