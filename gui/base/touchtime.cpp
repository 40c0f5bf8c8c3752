#include "gui/base/touchtime.h"

#include <chrono>

namespace {
qint64 gTopSince = 0;
}

qint64 Now() {
  return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void TopHasChanged() {
  gTopSince = Now();
}

bool IsMeantForTop(qint64 seen) {
  return seen >= gTopSince;
}
