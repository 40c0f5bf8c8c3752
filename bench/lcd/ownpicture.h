#pragma once

#include <QByteArray>
#include <QString>

/// The file of a picture (BMP, GIF, JPEG or PNG, 16 million pixels at most) as the camera takes it: a BMP file of 480 ×
/// 320 pixels of 24 bits, with the whole picture in its middle as large as it fits. Empty, with one sentence in
/// `error`, when it is no such picture.
QByteArray OwnPicture(const QByteArray& file, QString* error);
