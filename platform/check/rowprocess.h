#pragma once

#include <string>
#include <vector>

#include "platform/check/camera.h"
#include "platform/check/demand.h"
#include "platform/check/recorderprocess.h"

namespace platformcheck {

/// What came of a row.
struct Finding {
  enum class Verdict { Holds, Fails, NotTried };
  Verdict verdict = Verdict::Fails;
  std::string why;  ///< unless it holds
  double ms = 0;    ///< the longest call, when it holds
  std::vector<std::string> notes;
};

/// Tries a demand in a process of its own, which may hang or crash: the library starts there as it does in the
/// interface. It is killed when one call takes longer than 5 s. `arguments` are the options for that process.
Finding Try(const Demand& demand, const std::vector<std::string>& arguments, RecorderProcess& recorder);

/// The inside of that process: tries the demand and tells `channel` what came of it.
void RunRow(const Demand& demand, const Channel& channel, const Camera::Options& options);

}  // namespace platformcheck
