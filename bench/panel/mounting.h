#pragma once

#include <QPointF>
#include <QString>

/// How the touch panel is mounted on the screen, beside the factory's way: all 0.
struct Mounting {
  /// Within these nearly the whole screen stays within the panel's 512 units.
  static constexpr int kMostSkew = 10, kLeastX = -40, kMostX = 20, kLeastY = -10, kMostY = 60, kMostNoise = 4;

  int skew = 0;   ///< percent that it is turned, and smaller by as much: -kMostSkew..kMostSkew
  int x = 0;      ///< pixels that a touch is felt too far to the right: kLeastX..kMostX
  int y = 0;      ///< and too far down: kLeastY..kMostY
  int noise = 0;  ///< panel units by which each touch is off, at most: 0..kMostNoise

  bool operator==(const Mounting&) const = default;

  /// Where the factory's panel would feel a finger that is at `at`, pixels.
  QPointF Felt(QPointF at) const;

  /// As the file says; the factory's way without a good one.
  static Mounting Read(const QString& file);
  bool Write(const QString& file) const;
};
