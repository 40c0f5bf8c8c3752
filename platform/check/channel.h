#pragma once

#include <string>

namespace platformcheck {

/// What a row asks of the process that watches it: to hold the recorder's processes, to let them go on, to kill them,
/// to start them anew; whether they run.
enum class Order : char { Stop = 's', Continue = 'c', Kill = 'k', Start = 'r', Look = 'l' };

/// A row's line to the process that watches it. Each line begins with a letter:
///   c WHAT   a call of the library begins
///   n TEXT   something to print below the row
///   o ORDER  about the recorder; one byte comes back, '1' when it was done
///   h MS, f SENTENCE, u SENTENCE   the end: the row holds, fails, could not be tried
class Channel {
public:
  /// `socket` -1: nobody watches. The lines are printed, and no order is carried out.
  explicit Channel(int socket) : mSocket(socket) {}

  void Tell(char letter, const std::string& text) const;
  /// True when it was done.
  bool Ask(Order order) const;

private:
  int mSocket;
};

/// What printf makes of it.
[[gnu::format(printf, 1, 2)]] std::string Text(const char* format, ...);

}  // namespace platformcheck
