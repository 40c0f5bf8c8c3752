#pragma once

#include <sys/types.h>

#include <string>

#include "platform/check/channel.h"

namespace platformcheck {

/// The recorder that --recorder names, a process group of its own; it ends with us. Without a command there is none.
class RecorderProcess {
public:
  explicit RecorderProcess(std::string command) : mCommand(std::move(command)) {}
  ~RecorderProcess();
  RecorderProcess(const RecorderProcess&) = delete;
  RecorderProcess& operator=(const RecorderProcess&) = delete;

  bool IsOurs() const { return !mCommand.empty(); }

  /// False when it cannot be done.
  bool Do(Order order);
  /// It is not held any more. Says on the standard error when it has ended by itself.
  void Restore();

private:
  bool Start();
  bool Signal(int signal) const;
  void End(int signal);

  std::string mCommand;
  pid_t mProcess = 0;  // 0: none
};

}  // namespace platformcheck
