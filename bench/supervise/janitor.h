#pragma once

#include <sys/types.h>

#include <QString>

/// A process of its own that tidies up as soon as the bench and every process that it started have ended, however they
/// ended: it removes the status queue and its memory, what the clock shares and, if told so, the root.
class Janitor {
public:
  /// Forks: before anything makes a thread, and after PLATFORM_KEY is set. A root to be removed need not be there yet.
  /// The lock of one that is kept is the janitor's, too, so that nobody takes the root while it works.
  Janitor(const QString& root, bool removeRoot);

  /// Waits until the janitor has done its work; 5 s at most.
  ~Janitor();
  Janitor(const Janitor&) = delete;
  Janitor& operator=(const Janitor&) = delete;

  /// False when the process could not be made.
  bool IsReady() const { return mProcess > 0; }

private:
  pid_t mProcess = -1;
  int mAlive = -1;
};
