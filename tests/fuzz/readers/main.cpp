// The readers under clang's coverage-guided fuzzer: FUZZ_READER says which of them. tests/fuzz/run starts this program.
#include <dlfcn.h>

#include <QApplication>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "gui/settings/config.h"
#include "tests/fake/platformfake.h"
#include "tests/fuzz/readers/reader.h"

namespace {
struct Reader {
  const char* name;
  void (*take)(const QByteArray& bytes);
};
constexpr Reader kReaders[] = {
    {"ini", TakeIni},                  // the settings file of the recorder, and the interface's own
    {"setup", TakeSetup},              // the setup block, as the recorder takes it apart
    {"leds", TakeLeds},                // the list of the front LED
    {"calibration", TakeCalibration},  // the touch coefficients
    {"tuning", TakeTuning},            // where the nine targets were hit
    {"avi", TakeAvi},                  // a recording
    {"names", TakeNames},              // the names on the card
    {"stops", TakeStops},              // the times without recording
    {"report", TakeReport},            // the parking report
    {"messages", TakeMessages},        // a message of the status queue with its payload
    {"panel", TakePanel},              // records of the touch panel
    {"http", TakeHttp},                // the head of a request, and its query
    {"api", TakeApi},                  // the body of a request
    {"replay", TakeReplay},            // a recording of use
    {"scenario", TakeScenario},        // a scenario
};
const Reader* gReader = nullptr;
bool gIsReading = false;
}  // namespace

const TestRoot& Root() {
  static const TestRoot root;
  return root;
}

QString NewName(const char* pattern) {
  static int number = 0;
  return QString::fromLatin1(pattern).arg(++number);
}

bool IsSentence(const QString& text) {
  return text.size() > 10 && text.endsWith(u'.') && !text.contains(u'\n');
}

void NotKept(const char* file, int line, const char* promise) {
  std::fprintf(stderr, "reader %s: %s:%d: not kept: %s\n", gReader->name, file, line, promise);
  std::abort();
}

// Nothing waits for a disk.
extern "C" int fsync(int) {
  return 0;
}

// No reader's command is carried out, but the fuzzer starts itself by a shell.
extern "C" int system(const char* command) {
  static auto* const real = reinterpret_cast<int (*)(const char*)>(dlsym(RTLD_NEXT, "system"));
  return gIsReading ? 0 : real(command);
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  const char* wanted = std::getenv("FUZZ_READER");
  for (const Reader& reader : kReaders)
    if (wanted && std::strcmp(wanted, reader.name) == 0) gReader = &reader;
  if (!gReader) {
    std::fprintf(stderr, "FUZZ_READER is none of:");
    for (const Reader& reader : kReaders) std::fprintf(stderr, " %s", reader.name);
    std::fprintf(stderr, "\n");
    std::exit(2);
  }
  static int count = 1;
  static char name[] = "readers";
  static char* arguments[] = {name, nullptr};
  static const QApplication application(count, arguments);
  Root();
  GetConfig();
  // The interface says there what it does.
  if (!std::freopen("/dev/null", "w", stdout)) std::exit(2);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  gIsReading = true;
  gReader->take(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
  gIsReading = false;
  PlatformFake::Get().Clear();
  return 0;
}
