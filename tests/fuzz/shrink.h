#pragma once

#include <functional>

#include "tests/fuzz/steps.h"

namespace monkey {

/// As few of the steps as can be, and as soon after one another, so that `fails` still says so. Halves are left out,
/// then quarters, and so on down to single steps, until nothing can be left out any more.
inline Steps Shrink(Steps steps, const std::function<bool(const Steps&)>& fails) {
  constexpr qsizetype kFew = 64;  // steps; what is left out may begin at any of them
  for (bool isShorter = true; isShorter;) {
    isShorter = false;
    for (qsizetype part = std::max<qsizetype>(steps.size() / 2, 1); part > 0; part /= 2) {
      for (qsizetype at = 0; at < steps.size();) {
        Steps fewer = steps;
        fewer.remove(at, std::min(part, steps.size() - at));
        if (!fewer.isEmpty() && fails(fewer)) {
          steps = fewer;
          isShorter = true;
        } else {
          at += steps.size() > kFew ? part : 1;
        }
      }
    }
  }
  for (qsizetype i = 0; i < steps.size(); ++i) {
    const qint64 before = i > 0 ? steps[i - 1].at + Lasts(steps[i - 1]) : 0;
    const qint64 gap = steps[i].at - before;
    for (const qint64 wanted : {qint64{0}, qint64{500}, qint64{1000}, qint64{2500}, qint64{6000}, qint64{12000},
                                qint64{60000}, gap / 4, gap / 2}) {
      if (wanted >= gap) continue;
      Steps sooner = steps;
      for (qsizetype later = i; later < sooner.size(); ++later) sooner[later].at -= gap - wanted;
      if (!fails(sooner)) continue;
      steps = sooner;
      break;
    }
  }
  return steps;
}

}  // namespace monkey
