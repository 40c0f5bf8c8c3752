#include "gui/setup/audiosetting.h"

#include <algorithm>

#include "gui/base/globals.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

SCREEN(AUDIOSETTING, AudioSetting)

namespace {
constexpr int kHighest = 2;        // spk_volume
constexpr int kOffPicture = 3;     // of the guidance
constexpr int kLowMicrophone = 1;  // volume; this one and off are told by a voice

constexpr TileOption kVoice{.pictures = &gAudioSetting.Voice,
                            .field = &Setting_Config::spk_volume,
                            .id = Set_Cfg_Spk_Volume,
                            .count = 3,
                            .command = SEND_SET_SPK_VOLUME};
constexpr TileOption kMic{.pictures = &gAudioSetting.Mic,
                          .field = &Setting_Config::volume,
                          .id = Set_Cfg_Volume,
                          .count = 4,
                          .command = SEND_SET_VOLUME};
constexpr TileOption kEventAlarm{.pictures = &gAudioSetting.EventAlarm,
                                 .field = &Setting_Config::event_buzer,
                                 .id = Set_Cfg_Event_Buzer,
                                 .count = 2,
                                 .command = SEND_SET_EVENT_BUZER,
                                 .holdsVoices = true};
constexpr TileOption kBlackspot{.pictures = &gAudioSetting.AccidentBlackspot,
                                .field = &Setting_Config::acc_volume,
                                .id = Set_Cfg_Acc_Volume,
                                .count = 2,
                                .command = SEND_SET_ACC_VOLUME,
                                .holdsVoices = true};

bool IsVoiceOff() {
  return gEnvirnmentSettings.mSetting.buzer_flag == 1;
}

int VoicePicture() {
  return IsVoiceOff() ? kOffPicture : std::clamp(gEnvirnmentSettings.mSetting.spk_volume, 0, kHighest);
}
}  // namespace

constexpr AudioSetting::Tile AudioSetting::kTiles[] = {
    {1, 1, Option{kVoice, Press<&AudioSetting::PressVoice>, VoicePicture}},
    {1, 2, Option{kMic, Press<&AudioSetting::PressMicrophone>}},
    {1, 3, Option{kEventAlarm}},
    {2, 1, Option{kBlackspot}},
};

AudioSetting::AudioSetting(QWidget* parent) : TileScreen(parent, gAudioSetting.Title, kTiles) {}

// Low, common, high, off. There is no key click: the recorder speaks at the new level, and tells when it has ended.
void AudioSetting::PressVoice() {
  gMainWindow->SetIsPlayingVoice(true);
  if (IsVoiceOff()) {
    SetVoiceOff(false);
    SetOption(kVoice, 0);
  } else if (gEnvirnmentSettings.mSetting.spk_volume != kHighest) {
    SetOption(kVoice, ((gEnvirnmentSettings.mSetting.spk_volume + 1) % 4 + 4) % 4);
  } else {
    SetVoiceOff(true);
    SetOption(kVoice, kHighest);  // the level is kept
  }
  repaint(TileRect(1, 1));
}

void AudioSetting::SetVoiceOff(bool off) {
  gEnvirnmentSettings.SetSettingConfig(Set_Cfg_Buzer_Flag, off ? 1 : 0);
  SendEvent(SEND_SET_BUZER_FLAG, off ? 1 : 0, QString());
}

void AudioSetting::PressMicrophone() {
  const int volume = NextValue(kMic, gEnvirnmentSettings.mSetting.volume);
  gReturnVolume = volume != 0 ? volume : 1;
  if (volume <= kLowMicrophone) gMainWindow->SetIsPlayingVoice(true);
  SetOption(kMic, volume);
  repaint(TileRect(1, 2));
}
