#include "gui/touch/calibrationfit.h"

#include <algorithm>

namespace {
using Sum = std::int64_t;

constexpr int kFarthestStep = 1000;  // nine such touches give determinants of less than 63 bits

// The normal equations: rows (xx, xy, x), (xy, yy, y), (x, y, n).
struct Matrix {
  Sum xx, xy, yy, x, y, n;
};

Sum Determinant(const Matrix& m) {
  return m.n * (m.xx * m.yy - m.xy * m.xy) + 2 * m.x * m.y * m.xy - m.x * m.x * m.yy - m.y * m.y * m.xx;
}

struct Plane {
  double a, b, c;
};

// Cramer's rule with the right-hand side (xt, yt, t).
Plane Solve(const Matrix& m, Sum d, Sum xt, Sum yt, Sum t) {
  const Sum a = xt * (m.yy * m.n - m.y * m.y) - m.xy * (yt * m.n - m.y * t) + m.x * (yt * m.y - m.yy * t);
  const Sum b = m.xx * (yt * m.n - m.y * t) - xt * (m.xy * m.n - m.y * m.x) + m.x * (m.xy * t - yt * m.x);
  const Sum c = m.xx * (m.yy * t - yt * m.y) - m.xy * (m.xy * t - yt * m.x) + xt * (m.xy * m.y - m.yy * m.x);
  return {double(a) / double(d), double(b) / double(d), double(c) / double(d)};
}
}  // namespace

std::int64_t GetSum(const int* values, int n) {
  Sum sum = 0;
  for (int i = 0; i < n; ++i) sum += values[i];
  return sum;
}

std::int64_t GetProductSum(const int* a, const int* b, int n) {
  Sum sum = 0;
  for (int i = 0; i < n; ++i) sum += std::int32_t(std::uint32_t(a[i]) * std::uint32_t(b[i]));
  return sum;
}

bool FitTouch(const int* panelX, const int* panelY, const int* targetX, const int* targetY, int n, Touch_Value* touch) {
  const auto isFar = [](int value) { return value < -kFarthestStep || value > kFarthestStep; };
  if (std::any_of(panelX, panelX + n, isFar) || std::any_of(panelY, panelY + n, isFar)) return false;
  const Matrix m{GetProductSum(panelX, panelX, n),
                 GetProductSum(panelX, panelY, n),
                 GetProductSum(panelY, panelY, n),
                 GetSum(panelX, n),
                 GetSum(panelY, n),
                 n};
  const Sum d = Determinant(m);
  if (d == 0) return false;
  const auto solve = [&](const int* target) {
    return Solve(m, d, GetProductSum(panelX, target, n), GetProductSum(panelY, target, n), GetSum(target, n));
  };
  const Plane x = solve(targetX);
  const Plane y = solve(targetY);
  *touch = {x.a, y.a, x.b, y.b, x.c, y.c};
  return true;
}
