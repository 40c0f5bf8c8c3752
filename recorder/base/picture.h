#pragma once

#include <QtGlobal>
#include <functional>
#include <vector>

/// A picture of a camera: rows of 0x00RRGGBB words without gaps.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<quint32> pixels;
};

/// Fills a picture, whose size is given, with what a camera (0 front, 1 rear) sees at `ms` milliseconds since 1970.
using CameraSource = std::function<void(int camera, qint64 ms, Picture* picture)>;
