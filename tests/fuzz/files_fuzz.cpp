// Any bytes in the place of the LED list and of the two calibration files: each is read, worked with and written back.
// Built with clang's fuzzer: the first byte says which file.
#include <QDir>
#include <QFile>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "gui/led/ledfilemanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tests/fake/testroot.h"

namespace {
void Require(bool holds) {
  if (!holds) std::abort();
}

void ReadLedList() {
  LedFileManager manager;
  manager.ReadLedFile();
  manager.AddLedListWidget();
  const LED_ZEL* zel = manager.GetLedZel();
  Require(!zel || zel->Number <= kMostLedEntries);
  auto* items = manager.GetLedFileItem();
  Require(items->size() <= kMostLedEntries);
  for (qsizetype i = 0; i < items->size(); ++i) (*items)[i].checked = int(i % 2);
  manager.UpdateLedFile(0, items);
  manager.UpdateLedFile(1, items);
  manager.UpdateLedFile(QStringLiteral("010-1234"));
  manager.WritingLedFile(true);
}

void ReadCalibration() {
  gEnvirnmentSettings.SettingTouchValue(true);
  const Touch_Value touch = gEnvirnmentSettings.mTouchValue.Load();
  for (const double value : {touch.alphaX, touch.alphaY, touch.betaX, touch.betaY, touch.deltaX, touch.deltaY})
    Require(std::isfinite(value));
  gEnvirnmentSettings.SettingTouchTuningValue(true);
  gEnvirnmentSettings.SettingTouchValue(false);
  gEnvirnmentSettings.SettingTouchTuningValue(false);
}
}  // namespace

// Nothing waits for a disk.
extern "C" int system(const char*) {  // NOLINT: the C library's name
  return 0;
}
extern "C" int fsync(int) {
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const TestRoot root;
  static const bool prepared = [] {
    QDir(root.Path(QStringLiteral("/"))).mkpath(QStringLiteral("opt"));
    GetConfig();
    return true;
  }();
  if (!prepared || size == 0 || size > 8192) return 0;
  static constexpr const char* kFiles[] = {"/opt/led.zel", "/opt/touch.zel", "/opt/touch_tuning.zel"};
  const char* file = kFiles[data[0] % 3];
  root.Write(QLatin1String(file), QByteArray(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1)));
  data[0] % 3 == 0 ? ReadLedList() : ReadCalibration();
  return 0;
}
