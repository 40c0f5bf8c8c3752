#pragma once

#include <QDateTime>

#include "recorder/base/picture.h"

namespace recorder {

/// Writes date and time into the left bottom corner of a picture of at least 160 x 16 pixels.
void Stamp(const QDateTime& time, Picture* picture);

}  // namespace recorder
