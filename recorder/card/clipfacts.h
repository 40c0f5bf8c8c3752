#pragma once

#include <QJsonObject>
#include <array>
#include <optional>

#include "recorder/base/picture.h"
#include "recorder/card/cardfolder.h"

namespace recorder {

/// What is to be known of a recording on the card to make another one like it: all but its pictures.
struct ClipFacts {
  static constexpr int kLongest = 60000;    ///< ms
  static constexpr int kLargest = 1 << 20;  ///< bytes of one that is not whole

  QString name;        ///< of a recording, "rec0_20260131_235959.avi"
  QByteArray trailer;  ///< the four bytes at its end
  int ms = 0;          ///< its length, 0..kLongest; 0: it is not whole
  int bytes = 0;       ///< of one that is not whole, 0..kLargest
  qint64 changed = 0;  ///< when it was written, ms since 1970

  /// Of a file on the card; one that is longer than these bounds is told as if it reached them.
  static ClipFacts Of(const CardFolder& card, const QString& name);

  /// Nothing, with one sentence in `error`, for an object that says no such thing.
  static std::optional<ClipFacts> FromJson(const QJsonObject& object, QString* error);
  QJsonObject ToJson() const;
};

/// Makes recordings like others. They share their pictures: new ones would take too long.
class ClipMaker {
public:
  explicit ClipMaker(CameraSource cameras) : mCameras(std::move(cameras)) {}

  /// Puts one on the card. False when it is full.
  bool Make(const CardFolder& card, const ClipFacts& facts);

private:
  QByteArray Avi(const ClipFacts& facts);

  CameraSource mCameras;
  std::array<QByteArrayList, 2> mPictures;  // of either camera; empty until they are needed
};

}  // namespace recorder
