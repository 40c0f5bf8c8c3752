#pragma once

#include <QImage>
#include <QRegion>

#include "recorder/base/picture.h"

/// Where the interface paints this colour, the video shows.
inline constexpr QRgb kKeyColour = qRgb(255, 0, 8);

/// What a person sees: `video` wherever `raw` has exactly the key colour, and the backlight over all. `raw` and
/// `video`: 480 × 320 RGB32; a null `video` is black, a null `raw` gives a black picture. `backlight`: PWM value
/// 0..100000; 0 is black, else the brightness is 25 % + 75 % of value / 100000.
QImage Compose(const QImage& raw, const QImage& video, int backlight);

/// A picture of a recording in the size of the screen, RGB32.
QImage FullScreen(const Picture& picture);

/// Where two pictures of the same size and format RGB32 differ: in rectangles of whole tiles, 600 at most. Everything
/// when `before` is null.
QRegion Changed(const QImage& before, const QImage& after);
