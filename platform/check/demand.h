#pragma once

#include <vector>

#include "platform/check/camera.h"

namespace platformcheck {

/// What the interface expects of a platform library, and how that is tried.
struct Demand {
  const char* name;      ///< of --row
  const char* sentence;  ///< as it stands in docs/platform.md
  /// Tries it, in a process of its own. Returns when it holds, else throws Failure or NotTried.
  void (*row)(Camera& camera);
};

// By subject, in the order of the document.
const std::vector<Demand>& CallDemands();
const std::vector<Demand>& MemoryDemands();
const std::vector<Demand>& QueueDemands();
const std::vector<Demand>& EventDemands();
const std::vector<Demand>& CommandDemands();
const std::vector<Demand>& RecorderDemands();

/// All of them.
std::vector<Demand> Demands();

inline constexpr int kOurSender = 17;     ///< the last id that has a slot: hardly a recorder's
inline constexpr int kTries = 3;          ///< where time counts: the machine may be busy with something else
inline constexpr char kUntouched = 0x5A;  ///< what a buffer holds before a call,
inline constexpr int kGround = 64;        ///< so many bytes of it behind those that may be written
inline constexpr double kLimitMs = 500;   ///< of a call
inline constexpr double kSlackMs = 100;   ///< what the machine's own scheduling may add

}  // namespace platformcheck
