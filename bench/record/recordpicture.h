#pragma once

#include <QImage>
#include <QString>

/// What the interface has drawn, told by a few bytes: one word for each square of 40 pixels. What follows the time of
/// day, the voltage or the position of a playback is left out.
namespace recordpicture {

/// Of a picture of 480 × 320 on this screen ("PREVIEW"); base64.
QString Digest(const QImage& raw, const QString& screen);

bool IsDigest(const QString& text);

/// The picture of a digest, as far as `raw` tells what it was: its squares that have not changed on this screen; the
/// others are grey. All of them are when `digest` is empty.
QImage Known(const QImage& raw, const QString& screen, const QString& digest);

/// Where the pictures of two digests differ, "x 0 to 79, y 40 to 79"; empty when they do not.
QString Difference(const QString& one, const QString& other);

}  // namespace recordpicture
