#pragma once

#include <QByteArrayList>

#include "recorder/base/picture.h"
#include "recorder/card/cardfolder.h"

namespace recorder {

/// The size of the recordings' pictures.
inline constexpr int kPictureWidth = 240;
inline constexpr int kPictureHeight = 160;

/// What the cameras see when nobody says it: stripes that move, upright at the front, lying at the rear.
void DrawStripes(int camera, qint64 ms, Picture* picture);

/// Some pictures of a camera as JPEG, from `ms` since 1970 on: many recordings can share them.
QByteArrayList SharedPictures(const CameraSource& cameras, int camera, qint64 ms);

/// Puts the recordings of the last days on a card: all kinds and flags, most by both cameras, and some stops between
/// them. `until` is the end of the last one. False when the card is full.
bool WriteLastDays(const CardFolder& card, const CameraSource& cameras, const QDateTime& until);

/// What the recording `index` of a stock is: all kinds and flags come by.
Label StockLabel(int index, const QDateTime& start);

}  // namespace recorder
