#pragma once

#include <QString>

#include "gui/base/published.h"
#include "gui/settings/initext.h"
#include "gui/settings/settingconfig.h"
#include "gui/settings/setupvalue.h"
#include "gui/vocabulary/vocabulary.h"

class QSettings;
struct SettingKey;

/// How a panel point (x, y) becomes a point of the screen:
/// X = x·alphaX + y·betaX + deltaX, Y = x·alphaY + y·betaY + deltaY.
struct Touch_Value {
  double alphaX, alphaY, betaX, betaY, deltaX, deltaY;
};

/// Of a panel as it leaves the factory.
inline constexpr Touch_Value kFactoryTouchValue = {-1.0638298F, 0.012088975F, 0.0F, 1.1363636F, 499.57446F, -24.76789F};

/// The points of the screen that are touched in a calibration, in their order.
inline constexpr int kTouchTargetX[9] = {240, 40, 240, 440, 440, 440, 240, 40, 40};
inline constexpr int kTouchTargetY[9] = {160, 35, 35, 35, 160, 285, 285, 285, 160};

/// The settings of the camera: the working copy, the copy as last loaded or applied, their INI file, and the packed
/// block that the recorder takes. The recorder's INI file is the master at every start; the interface's own mirrors it.
/// No file error is reported: what cannot be read leaves what is in memory, which is 0 before the start; what cannot be
/// written stays in memory, and is written with the next save. GUI thread, but for mTouchValue.
class Settings {
public:
  /// At the start: the recorder's values, or without its file the interface's own ones; written to the own file. Of a
  /// recorder's file that is damaged or cut off what it says counts, and the own file for the rest.
  void InitSettingConfig();
  /// What the own file says; the rest stays. mOldSetting is then the same. From a file that cannot be read or holds
  /// none of the keys nothing is taken, and mOldSetting stays, too: what was edited is still to be applied.
  void AllGetSettingConfig();
  /// Everything to the own file, in one write; mOldSetting is then the same.
  void AllSetSettingConfig();

  /// One int key of the own file, of the recorder's file; 0 for an id without one, and when the file has none.
  int GetSettingConfig(Setting_Id id) const;
  int GetFWSettingConfig(Setting_Id id) const;
  /// The same for the float keys, Set_Cfg_LowVolCut_1 .. 12: volts, finite.
  float GetSettingConfigF(Setting_Id id) const;
  float GetFWSettingConfigF(Setting_Id id) const;

  /// Changes one setting, in memory, in the own file or in both, as its key says (settingkeys.h).
  void SetSettingConfig(Setting_Id id, int value);
  /// Set_Cfg_LowVolCut_1 .. 12, volts; in memory alone.
  void SetSettingConfigF(Setting_Id id, float value);

  /// Fills mSetup_value from mSetting.
  void settingSetup();
  /// Whether anything was edited that the recorder has to be restarted for.
  bool compareSettingValue() const;

  /// mMirroring and mMovingPip from the own file, or to it.
  void SettingMirroringAndMovingPipValue(bool load);
  /// load: both motion maps from the recorder's file. Otherwise the two words of one camera (1 front, else rear) to the
  /// own file.
  void INIMotionSettingValue(bool load, int camera, int frontHigh, int frontLow, int rearHigh, int rearLow);

  /// The touch coefficients from their file, or to it. A file that holds none gives the factory's.
  void SettingTouchValue(bool load);
  /// The table of the last calibration from its file, or to it. A file that holds none gives the targets.
  void SettingTouchTuningValue(bool load);
  /// True when the card asks for the factory's coefficients; the request is then removed.
  static bool IsExistTouchTXT();

  void FirmLog() {}  ///< for diagnostics of one build
  void Log() { FirmLog(); }

  Setting_Config mSetting{};     ///< the screens edit this one
  Setting_Config mOldSetting{};  ///< as last loaded or applied
  Setup_Value mSetup_value{};
  Published<Touch_Value> mTouchValue;  ///< the touch reader takes it for every press
  int mMirroring = 0;
  int mMovingPip = 0;
  std::uint64_t mMotionSettingValue = 0;
  std::uint64_t mMotionSettingValueRear = 0;
  int inputX[9] = {};  ///< where the nine targets were hit at the last calibration
  int inputY[9] = {};

private:
  void Load(const QSettings& file, const IniValues& newer);
  void Change(const QSettings& own, const SettingKey& row, const QVariant& value);
  void Save();
  void SaveCalibration();

  IniValues mUnsaved;  ///< what the own file could not be given yet; it holds these values already for who reads it
  bool mIsTouchUnsaved = false;
  bool mIsTuningUnsaved = false;
};

extern Settings gEnvirnmentSettings;
extern QString config_firm_path;  ///< the own file, as named on the camera
extern QString config_init_path;  ///< the recorder's
