#pragma once

#include <QPixmap>

/// A picture of the interface, decoded at most once: a path below the image folder, or an absolute one of the camera.
/// Null when the file is missing or is no picture. Decoded pictures are kept while they fit in 8 MiB; the ones
/// not asked for longest go first. A language's own picture, below <language>/ with the same name, comes first. GUI
/// thread.
QPixmap Picture(const QString& path);

/// Another language was chosen.
void ForgetPictures();

/// True when nothing of an area of that size shows through the picture.
bool Covers(const QPixmap& picture, QSize area);
