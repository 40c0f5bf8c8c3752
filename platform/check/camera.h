#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "platform/Msg_Def.h"
#include "platform/check/channel.h"
#include "platform/check/commandtable.h"

namespace platformcheck {

using Milliseconds = std::chrono::duration<double, std::milli>;

/// Why a row ends early.
struct Failure {
  std::string seen;
};
struct NotTried {
  std::string why;
};

/// Ends the row with a failure unless `holds`; `seen` is what was seen instead.
inline void Require(bool holds, const std::string& seen) {
  if (!holds) throw Failure{seen};
}

/// The platform library as the interface uses it, in a process that has just started. Each call is told to the process
/// that watches, so that one that never returns has a name, and timed.
class Camera {
public:
  struct Options {
    bool ownsRecorder = false;  ///< the recorder was started by us
    bool erases = false;        ///< commands that lose something are sent, too
    int listenMs = 5000;        ///< how long to wait for the recorder's own messages
  };

  Camera(const Channel& channel, const Options& options) : mChannel(channel), mOptions(options) {}

  /// What the interface does first: queue, segment, driver. Fails the row without a queue or a segment.
  void Open();
  int Queue() const { return mQueue; }
  int Segment() const { return mSegment; }

  /// Any call: `what` is its name for a person.
  template <typename Call>
  int Timed(const std::string& what, Call call) {
    mChannel.Tell('c', what);
    const auto begin = std::chrono::steady_clock::now();
    const int result = call();
    mLast = std::chrono::steady_clock::now() - begin;
    if (mLast > mLongest) mLongest = mLast;
    return result;
  }
  Milliseconds Last() const { return mLast; }
  Milliseconds Longest() const { return mLongest; }

  int Command(int field, void* data, int length);
  /// A query; none when it fails.
  template <typename Number = int>
  std::optional<Number> Query(int field) {
    Number answer = 0;
    if (Command(field, &answer, sizeof answer) < 0) return {};
    return answer;
  }
  int Read(int offset, void* buffer, int length);
  int Write(int offset, void* data, int length);

  /// Starts our recorder unless it runs. Waits until the recorder answers: one of ours for 30 s, else the row fails;
  /// another one for 2 s, else the row is not tried.
  void AwaitRecorder();

  /// Sends a status message as the recorder does; never waits. False when the queue is full.
  bool Send(const GUI_MSG_BUF& message) const;
  /// The next message for `receiver` into `message`, which may be larger than it should. Its size behind the type; 0
  /// when none has come within `ms`.
  int Receive(long receiver, void* message, size_t room, int ms) const;
  /// The next message of `sender` for the interface. False when none has come within `ms`; what others send is dropped.
  bool ReceiveFrom(int sender, GUI_MSG_BUF* message, int ms) const;

  /// The recorder as we want it; the row is not tried when the recorder is not ours.
  void Order(platformcheck::Order order);

  void Note(const std::string& text) const { mChannel.Tell('n', text); }
  /// Lets time pass.
  void Pass(int ms) const;

  const Options& Given() const { return mOptions; }

private:
  const Channel& mChannel;
  Options mOptions;
  int mQueue = -1;
  int mSegment = -1;
  Milliseconds mLast{};
  Milliseconds mLongest{};
};

}  // namespace platformcheck
