#pragma once

#include <span>

#include "gui/settings/settingconfig.h"
#include "gui/vocabulary/vocabulary.h"

/// Where a setting's value is kept.
enum class SettingPlace {
  Field,       ///< an int of Setting_Config
  LowVoltCut,  ///< low_volt_cut[index], a float
  MotionWord,  ///< one half of a motion map; index 0 front high, 1 front low, 2 rear high, 3 rear low
  Mirroring,   ///< Settings::mMirroring
  MovingPip,   ///< Settings::mMovingPip
};

/// What setting one value does.
enum class SettingRule {
  Memory,   ///< stored in mSetting; written with all the others
  FileToo,  ///< written at once, and stored in mSetting
  FileOnly  ///< written at once; mSetting and members stay as they are
};

struct SettingKey {
  Setting_Id id;
  const char* key;  ///< group/name in the INI files
  SettingPlace place;
  int Setting_Config::*field;  ///< null unless place is Field
  int index;
  SettingRule rule;
  bool compared;  ///< a change of it asks for a restart of the recording
};

/// Every setting that has a key, in the order of the ids.
std::span<const SettingKey> SettingKeys();

/// The row of `id`; null for an id without a key.
const SettingKey* FindSettingKey(Setting_Id id);
