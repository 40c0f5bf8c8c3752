// dashcam-platform-check: tries what the interface expects of a platform library, and prints a table of what holds.
#include <getopt.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/check/demand.h"
#include "platform/check/rowprocess.h"

using namespace platformcheck;

namespace {

constexpr char kUsage[] =
    "dashcam-platform-check [--recorder COMMAND] [--listen SECONDS] [--erase]\n"
    "  tries the platform library that it is linked with, and prints what of docs/platform.md holds.\n"
    "  It takes the place of the interface, which must not run, and changes settings of the recorder.\n"
    "  --recorder COMMAND  starts the recorder, holds it, ends it and starts it again; it must stay in the "
    "foreground.\n"
    "                      Without it the recorder that runs is tried, and what needs another state of it is not.\n"
    "  --listen SECONDS    how long to wait for the recorder's own messages, 1 to 600; 5 unless given\n"
    "  --erase             sends the commands, too, that lose something: format, reset, setup, restart\n"
    "  --row NAME          tries one row in this process, for a debugger\n"
    "  --help, --version\n"
    "The exit code is 0 when nothing failed, 1 when something did, 2 when the options are wrong.\n";

int Misuse(const std::string& sentence) {
  std::fprintf(stderr, "%s\n%s", sentence.c_str(), kUsage);
  return 2;
}

struct Arguments {
  Camera::Options options;
  std::string recorder;
  std::string row;
  int channel = -1;
};

/// A whole number in a range, or -1.
int NumberOf(const char* text, int min, int max) {
  char* end = nullptr;
  const long number = std::strtol(text, &end, 10);
  return *text && !*end && number >= min && number <= max ? int(number) : -1;
}

/// -1: go on with `arguments`; else the exit code.
int Parse(int argc, char** argv, Arguments* arguments) {
  static const option kOptions[] = {{"recorder", required_argument, nullptr, 'r'},
                                    {"listen", required_argument, nullptr, 'l'},
                                    {"erase", no_argument, nullptr, 'e'},
                                    {"row", required_argument, nullptr, 'w'},
                                    {"channel", required_argument, nullptr, 'c'},  // our own, with --row
                                    {"owns", no_argument, nullptr, 'o'},           // likewise
                                    {"help", no_argument, nullptr, 'h'},
                                    {"version", no_argument, nullptr, 'v'},
                                    {nullptr, 0, nullptr, 0}};
  opterr = 0;
  for (int letter; (letter = getopt_long(argc, argv, "", kOptions, nullptr)) != -1;) {
    switch (letter) {
      case 'r':
        arguments->recorder = optarg;
        arguments->options.ownsRecorder = true;
        if (arguments->recorder.empty()) return Misuse("--recorder takes a command.");
        break;
      case 'l':
        arguments->options.listenMs = 1000 * NumberOf(optarg, 1, 600);
        if (arguments->options.listenMs < 0) return Misuse("--listen takes a number from 1 to 600.");
        break;
      case 'e':
        arguments->options.erases = true;
        break;
      case 'w':
        arguments->row = optarg;
        break;
      case 'c':
        arguments->channel = NumberOf(optarg, 0, 1000);
        break;
      case 'o':
        arguments->options.ownsRecorder = true;
        break;
      case 'h':
        std::fputs(kUsage, stdout);
        return 0;
      case 'v':
        std::puts("dashcam-platform-check " DASHCAM_VERSION);
        return 0;
      default:
        return Misuse(std::string("The option ") + argv[optind - 1] + " is unknown or lacks its value.");
    }
  }
  return optind < argc ? Misuse(std::string("What is ") + argv[optind] + "?") : -1;
}

void Print(const Demand& demand, const Finding& finding) {
  switch (finding.verdict) {
    case Finding::Verdict::Holds:
      std::printf("holds     %8.2f ms  %-17s  %s\n", finding.ms, demand.name, demand.sentence);
      break;
    case Finding::Verdict::Fails:
      std::printf("FAILS                  %-17s  %s\n", demand.name, demand.sentence);
      std::printf("%42sSeen: %s.\n", "", finding.why.c_str());
      break;
    case Finding::Verdict::NotTried:
      std::printf("not tried              %-17s  %s\n", demand.name, demand.sentence);
      std::printf("%42sWhy: %s.\n", "", finding.why.c_str());
      break;
  }
  for (const std::string& note : finding.notes) std::printf("%42s%s\n", "", note.c_str());
  std::fflush(stdout);
}

int TryAll(const Arguments& given) {
  std::vector<std::string> arguments = {"--listen", std::to_string(given.options.listenMs / 1000)};
  if (given.options.erases) arguments.push_back("--erase");
  if (given.options.ownsRecorder) arguments.push_back("--owns");
  RecorderProcess recorder(given.recorder);
  int count[3] = {};
  for (const Demand& demand : Demands()) {
    const Finding finding = Try(demand, arguments, recorder);
    Print(demand, finding);
    ++count[int(finding.verdict)];
  }
  std::printf("%d hold, %d fail, %d were not tried. The times are those of the longest call.\n", count[0], count[1],
              count[2]);
  return count[int(Finding::Verdict::Fails)] > 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  if (const int code = Parse(argc, argv, &arguments); code >= 0) return code;
  if (arguments.row.empty()) return TryAll(arguments);
  const std::vector<Demand> demands = Demands();
  const auto demand =
      std::find_if(demands.begin(), demands.end(), [&](const Demand& row) { return row.name == arguments.row; });
  if (demand == demands.end()) return Misuse("There is no row " + arguments.row + ".");
  RunRow(*demand, Channel(arguments.channel), arguments.options);
  return 0;
}
