#include "recorder/device/voice.h"

#include <algorithm>
#include <array>
#include <optional>

namespace recorder {
namespace {

struct Words {
  Prompt prompt;
  std::array<const char*, 4> levels;  // one at least
  std::optional<Setting_Id> wanted;   // said only when this setting is not 0
};

constexpr Words kWords[] = {
    {Prompt::RecordingStarts, {"Recording starts."}, {}},
    {Prompt::RecordingStops, {"Recording stops."}, {}},
    {Prompt::RecordingByHand, {"A protected recording starts."}, {}},
    {Prompt::Impact, {"Impact detected."}, Set_Cfg_Event_Buzer},
    {Prompt::ParkingStarts, {"Parking mode starts."}, {}},
    {Prompt::ParkingEnds, {"Parking mode ends."}, {}},
    {Prompt::Blackspot, {"Accident blackspot ahead. Drive carefully."}, Set_Cfg_Acc_Volume},
    {Prompt::VoiceOn, {"The voice is on."}, {}},
    {Prompt::Volume, {"The volume is low.", "The volume is middle.", "The volume is high."}, {}},
    {Prompt::Microphone,
     {"The microphone is off.", "The microphone is low.", "The microphone is middle.", "The microphone is high."},
     {}},
};

const char* WordsOf(const Words& words, int level) {
  const auto end = std::find(words.levels.begin(), words.levels.end(), nullptr);
  const auto last = static_cast<int>(end - words.levels.begin()) - 1;
  return words.levels[static_cast<size_t>(std::clamp(level, 0, last))];
}

}  // namespace

Voice::Voice(Hub& hub) : mHub(hub) {
  mEnd.setSingleShot(true);
  mEnd.callOnTimeout([this] {
    if (!mSuppressed) mHub.sink.Send(RECV_ZEL_STATUS_VOICE_PLAY_END);
    emit mHub.sink.StateChanged();
  });
}

void Voice::Speak(Prompt prompt, int ms, int level) {
  mEnd.start(std::max(ms, mEnd.remainingTime()));
  Say(prompt, level);
}

void Voice::Say(Prompt prompt, int level) {
  if (mHub.settings.Get(Set_Cfg_Buzer_Flag) == 1) return;  // the driver has switched the voice off
  const Words& words = *std::find_if(std::begin(kWords), std::end(kWords),
                                     [prompt](const Words& each) { return each.prompt == prompt; });
  if (words.wanted && mHub.settings.Get(*words.wanted) == 0) return;
  emit mHub.sink.Logged({{QStringLiteral("kind"), QStringLiteral("voice")},
                         {QStringLiteral("name"), QLatin1String(WordsOf(words, level))}});
}

bool Voice::EndNow() {
  mEnd.stop();
  return mHub.sink.Send(RECV_ZEL_STATUS_VOICE_PLAY_END);
}

QJsonObject Voice::State() const {
  return {{QStringLiteral("speaking"), mEnd.isActive()}, {QStringLiteral("endSuppressed"), mSuppressed}};
}

}  // namespace recorder
