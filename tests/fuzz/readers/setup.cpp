#include <cmath>
#include <cstring>

#include "gui/settings/settings.h"
#include "recorder/base/settingstore.h"
#include "recorder/base/setupblock.h"
#include "tests/fuzz/readers/reader.h"

using recorder::SetupBlock;

namespace {
// Of a good block: the recorder keeps it, and the interface, which reads that, hands the same block back.
void RequireSameAgain(const QByteArray& bytes, const SetupBlock& block) {
  Root().Remove(config_firm_path);
  config_firm_path = NewName("/tmp/setup-%1.ini");
  QString error;
  recorder::SettingStore store(Root().Path(config_firm_path));
  REQUIRE(store.TakeBlock(bytes, &error) && store.Save());
  REQUIRE(store.Block() == block.fields && store.TakenClock() == block.clock);
  Settings settings;
  settings.AllGetSettingConfig();
  settings.settingSetup();
  const QByteArray back(reinterpret_cast<const char*>(&settings.mSetup_value), SetupBlock::kSize);
  const auto again = SetupBlock::Read(back, &error);
  REQUIRE(again && again->settings == block.settings);
}
}  // namespace

void TakeSetup(const QByteArray& bytes) {
  QString error;
  const auto block = SetupBlock::Read(bytes, &error);
  const bool isGood = bytes.size() == SetupBlock::kSize && std::uint8_t(bytes[19]) == SetupBlock::kModel;
  REQUIRE(block.has_value() == isGood);
  if (!block) {
    REQUIRE(IsSentence(error));
    recorder::SettingStore store(Root().Path(QStringLiteral("/tmp/none.ini")));
    REQUIRE(!store.TakeBlock(bytes, &error) && store.Block().isEmpty());
    return;
  }
  for (const auto& [id, value] : block->settings) REQUIRE(std::isfinite(value));
  REQUIRE(!block->clock || (bytes[20] == 1 && block->clock->isValid()));
  RequireSameAgain(bytes, *block);
}
