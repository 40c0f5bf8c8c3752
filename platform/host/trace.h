#pragma once

#include <string>

namespace platformhost {

/// One line of the trace of commands, for tests, the bench's log and bug reports: environment PLATFORM_TRACE names the
/// file that it is appended to. Without it nothing happens. Any thread, any number of processes.
class Trace {
public:
  /// Before the call, whose answer may overwrite the data. `data` may be null: then the line has none.
  Trace(int field, const void* data, int length);

  /// Appends the line, whole. What cannot be written is lost; the first time that is said on the standard error.
  void Write(int result) const;

private:
  const char* mFile;
  std::string mLine;
};

}  // namespace platformhost
