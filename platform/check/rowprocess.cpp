#include "platform/check/rowprocess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace platformcheck {
namespace {

constexpr std::chrono::minutes kRow(15);  // more than any row needs
constexpr int kSilenceMs = 5000;          // between two lines of a row: then a call does not return

using Verdict = Finding::Verdict;

/// A row's process and our end of its line.
struct Row {
  pid_t process = -1;
  int socket = -1;
};

Row Start(const Demand& demand, const std::vector<std::string>& arguments) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) < 0) return {};
  std::vector<std::string> words = {"dashcam-platform-check", "--row", demand.name, "--channel",
                                    std::to_string(ends[1])};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    fcntl(ends[1], F_SETFD, 0);
    dup2(STDERR_FILENO, STDOUT_FILENO);  // what the library prints is not of the table
    execv("/proc/self/exe", argv.data());
    _exit(127);
  }
  close(ends[1]);
  return {process, ends[0]};
}

/// The row's next line without its end. False: none came in time, or the process is gone.
class Lines {
public:
  explicit Lines(int socket) : mSocket(socket) {}

  enum class Result { Line, Silence, End };
  Result Next(std::string* line) {
    for (;;) {
      const size_t end = mBytes.find('\n');
      if (end != std::string::npos) {
        *line = mBytes.substr(0, end);
        mBytes.erase(0, end + 1);
        return Result::Line;
      }
      pollfd waiting{mSocket, POLLIN, 0};
      if (poll(&waiting, 1, kSilenceMs) == 0) return Result::Silence;
      char bytes[4096];
      const ssize_t size = recv(mSocket, bytes, sizeof bytes, 0);
      if (size <= 0) return Result::End;
      mBytes.append(bytes, size_t(size));
    }
  }

private:
  int mSocket;
  std::string mBytes;
};

std::string EndOf(int status) {
  if (WIFSIGNALED(status))
    return Text("the process was ended by signal %d (%s)", WTERMSIG(status), strsignal(WTERMSIG(status)));
  return Text("the process ended with exit code %d", WEXITSTATUS(status));
}

/// The status of a process that ends within `ms`; one that does not is killed.
int Await(pid_t process, int ms) {
  int status = 0;
  for (; ms > 0; ms -= 10) {
    if (waitpid(process, &status, WNOHANG) == process) return status;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  kill(process, SIGKILL);
  waitpid(process, &status, 0);
  return status;
}

}  // namespace

Finding Try(const Demand& demand, const std::vector<std::string>& arguments, RecorderProcess& recorder) {
  recorder.Restore();
  const Row row = Start(demand, arguments);
  if (row.process < 0) return {Verdict::NotTried, "no process could be started", 0, {}};
  Finding finding;
  std::string call = "its start";
  bool hasEnded = false;
  Lines lines(row.socket);
  const auto limit = std::chrono::steady_clock::now() + kRow;
  for (std::string line; !hasEnded;) {
    if (std::chrono::steady_clock::now() > limit) {
      finding.why = Text("it was not over after %d min", int(kRow.count()));
      break;
    }
    const Lines::Result result = lines.Next(&line);
    if (result != Lines::Result::Line || line.size() < 2) {
      if (result == Lines::Result::Silence)
        finding.why = Text("%s did not return in %d s", call.c_str(), kSilenceMs / 1000);
      break;
    }
    const std::string text = line.substr(2);
    switch (line[0]) {
      case 'c':
        call = text;
        break;
      case 'n':
        finding.notes.push_back(text);
        break;
      case 'o': {
        const char done = recorder.Do(Order{text[0]}) ? '1' : '0';
        send(row.socket, &done, 1, MSG_NOSIGNAL);
        break;
      }
      case 'h':
        finding.verdict = Verdict::Holds;
        finding.ms = std::strtod(text.c_str(), nullptr);
        hasEnded = true;
        break;
      default:
        finding.verdict = line[0] == 'u' ? Verdict::NotTried : Verdict::Fails;
        finding.why = text;
        hasEnded = true;
    }
  }
  const int status = Await(row.process, hasEnded || !finding.why.empty() ? 0 : kSilenceMs);
  close(row.socket);
  if (!hasEnded && finding.why.empty()) finding.why = "in " + call + " " + EndOf(status);
  return finding;
}

void RunRow(const Demand& demand, const Channel& channel, const Camera::Options& options) {
  Camera camera(channel, options);
  try {
    demand.row(camera);
    channel.Tell('h', Text("%.3f", camera.Longest().count()));
  } catch (const Failure& failure) {
    channel.Tell('f', failure.seen);
  } catch (const NotTried& reason) {
    channel.Tell('u', reason.why);
  }
}

}  // namespace platformcheck
