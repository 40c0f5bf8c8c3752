#include "recorder/firmware/commands.h"

#include <QFile>
#include <algorithm>
#include <cstring>

#include "platform/sysctrl.h"
#include "recorder/base/files.h"
#include "recorder/base/setupblock.h"
#include "recorder/firmware/parts.h"

namespace recorder {
namespace {

constexpr int kRefused = -1;
constexpr int kInt = 4;    // bytes of most commands and queries
constexpr int kMap = 8;    // of a motion map
constexpr int kPath = 50;  // of a path, ended by zero

struct Request {
  const QByteArray& data;
  int value = 0;     // the data as an int, when it is one
  QJsonValue shown;  // the answer of a query, for the log
  QByteArray answer;
};

using Reaction = int (*)(Parts&, Request&);

struct Field {
  SYSTEM_CONTROL field;
  const char* name;
  int length;
  Reaction react;
  int otherLength = 0;  // 0: there is only one
};

template <typename Number>
int AnswerWith(Request& request, Number number) {
  request.answer.resize(sizeof number);
  std::memcpy(request.answer.data(), &number, sizeof number);
  request.shown = static_cast<double>(number);
  return 0;
}

// Logged, and nothing else.
int Accept(Parts&, Request&) {
  return 0;
}

int AnswerZero(Parts&, Request& request) {
  return AnswerWith(request, 0);
}

template <Setting_Id id>
int Keep(Parts& parts, Request& request) {
  parts.hub.settings.Set(id, request.value);
  return 0;
}

// Kept, and a voice tells the new level.
template <Setting_Id id, Prompt prompt>
int KeepAndSpeak(Parts& parts, Request& request) {
  parts.hub.settings.Set(id, request.value);
  parts.voice.Speak(prompt, parts.hub.delays.voice, request.value);
  return 0;
}

template <VideoPlane::View view>
int Show(Parts& parts, Request&) {
  parts.cameras.Show(view);
  return 0;
}

template <Setting_Id high, Setting_Id low>
int KeepMap(Parts& parts, Request& request) {
  if (request.data.size() != kMap) return 0;  // the 4-byte form of the front map's field carries no map
  int words[2];
  std::memcpy(words, request.data.constData(), sizeof words);
  parts.hub.settings.Set(low, words[0]);
  parts.hub.settings.Set(high, words[1]);
  return 0;
}

int Mirror(Parts& parts, Request& request) {
  parts.cameras.SetMirrored(request.value != 0);
  return 0;
}

int MovePip(Parts& parts, Request& request) {
  if (request.value < 0 || request.value > 3) return kRefused;
  parts.cameras.SetPipCorner(request.value);
  return 0;
}

int PowerRear(Parts& parts, Request& request) {
  parts.cameras.SetRearPower(request.value != 0);
  return 0;
}

int PlayPath(Parts& parts, Request& request) {
  const qsizetype end = request.data.indexOf('\0');
  if (end < 0) return kRefused;
  parts.playback.Play(request.data.left(end));
  return 0;
}

int ControlPlayback(Parts& parts, Request& request) {
  return parts.playback.Do(request.value) ? 0 : kRefused;
}

int SeekPlayback(Parts& parts, Request& request) {
  parts.playback.Seek(request.value);
  return 0;
}

int FormatCard(Parts& parts, Request&) {
  parts.playback.Stop();
  parts.card.Format();
  return 0;
}

int CheckCard(Parts& parts, Request&) {
  parts.card.Check();
  return 0;
}

int BeginRecording(Parts& parts, Request&) {
  parts.playback.Stop();
  parts.recording.Begin();
  return 0;
}

int EndRecording(Parts& parts, Request& request) {
  parts.recording.End(request.value);
  return 0;
}

int TakeSetup(Parts& parts, Request& request) {
  QString error;
  if (!parts.hub.settings.TakeBlock(request.data, &error)) {
    parts.sink.Note(error);
    return kRefused;
  }
  if (parts.hub.settings.Block().value(QLatin1String("time_set_flag")).toInt() == 1)
    parts.recording.SetClockBroken(false);
  parts.cameras.Follow();
  if (const auto& clock = parts.hub.settings.TakenClock(); clock && !parts.hub.clock.Set(*clock))
    parts.sink.Note(QStringLiteral("The clock cannot be kept."));
  return 0;
}

int Compensate(Parts& parts, Request& request) {
  parts.power.Compensate(request.value);
  return 0;
}

int TellVolts(Parts& parts, Request& request) {
  return AnswerWith(request, parts.power.Volts());
}

int TellLcdValue(Parts& parts, Request& request) {
  return AnswerWith(request, parts.power.LcdValue());
}

int RecordManualEvent(Parts& parts, Request&) {
  const bool wasOn = parts.manualEvent.IsOn();
  if (!parts.manualEvent.Begin()) return kRefused;
  if (!wasOn) parts.voice.Say(Prompt::RecordingByHand);
  return 0;
}

int InitUserData(Parts& parts, Request&) {
  parts.hub.settings.Reset();
  parts.hub.settings.Save();  // before anybody restarts
  parts.cameras.Start();
  parts.sink.Send(RECV_ZEL_STATUS_POWER_OFF);
  parts.restart.start(parts.hub.delays.restart);
  return 0;
}

int ReadLedList(Parts& parts, Request&) {
  parts.frontLed.Read();
  return 0;
}

int EndTouchCompensation(Parts& parts, Request&) {
  for (const char* marker : {kUpdateMarker, kUpdateMarker2}) QFile::remove(parts.hub.Path(marker));
  return 0;
}

constexpr Field kFields[] = {
    {SFIELD_REG_CLIENT, "SFIELD_REG_CLIENT", 1, Accept},
    {SFIELD_SET_VIEWFRONT, "SFIELD_SET_VIEWFRONT", kInt, Show<VideoPlane::View::Front>},
    {SFIELD_SET_VIEWREAR, "SFIELD_SET_VIEWREAR", kInt, Show<VideoPlane::View::Rear>},
    {SFIELD_SET_VIEWPIP, "SFIELD_SET_VIEWPIP", kInt, Show<VideoPlane::View::Pip>},
    {SFIELD_PLAY_VIDEO, "SFIELD_PLAY_VIDEO", kPath, PlayPath},
    {SFIELD_CONTROL_VIDEO, "SFIELD_CONTROL_VIDEO", kInt, ControlPlayback},
    {SFIELD_SET_VIDEO_FRAMRATE, "SFIELD_SET_VIDEO_FRAMRATE", kInt, Accept},
    {SFIELD_SET_AUDIO_IN_GAIN, "SFIELD_SET_AUDIO_IN_GAIN", kInt, KeepAndSpeak<Set_Cfg_Volume, Prompt::Microphone>},
    {SFIELD_SET_AUDIO_OUT_GAIN, "SFIELD_SET_AUDIO_OUT_GAIN", kInt, KeepAndSpeak<Set_Cfg_Spk_Volume, Prompt::Volume>},
    {SFIELD_SET_SYSTEM_SD_CHECK, "SFIELD_SET_SYSTEM_SD_CHECK", kInt, Accept},
    {SFIELD_SET_SYSTEM_SD_FORMAT, "SFIELD_SET_SYSTEM_SD_FORMAT", kInt, FormatCard},
    {SFIELD_VIDEO_REC_START, "SFIELD_VIDEO_REC_START", kInt, BeginRecording},
    {SFIELD_VIDEO_REC_STOP, "SFIELD_VIDEO_REC_STOP", kInt, EndRecording},
    {SFIELD_SET_AUDIO_OUT_MUTE, "SFIELD_SET_AUDIO_OUT_MUTE", kInt, KeepAndSpeak<Set_Cfg_Buzer_Flag, Prompt::VoiceOn>},
    {SFIELD_SET_EVENT_BUZER, "SFIELD_SET_EVENT_BUZER", kInt, Keep<Set_Cfg_Event_Buzer>},
    {SFIELD_SET_ACC_VOLUME, "SFIELD_SET_ACC_VOLUME", kInt, Keep<Set_Cfg_Acc_Volume>},
    {SFIELD_SET_LCD_AUTO_OFF, "SFIELD_SET_LCD_AUTO_OFF", kInt, Keep<Set_Cfg_Lcd_Auto_Off>},
    {SFIELD_SET_LCD_BRIGHT, "SFIELD_SET_LCD_BRIGHT", kInt, Keep<Set_Cfg_Lcd_Bright>},
    {SFIELD_SET_LCD_WAIT_DIS, "SFIELD_SET_LCD_WAIT_DIS", kInt, Keep<Set_Cfg_Lcd_Wait_Dis>},
    {SFIELD_SET_SETUP_COMPLETE, "SFIELD_SET_SETUP_COMPLETE", SetupBlock::kSize, TakeSetup},
    {SFIELD_GET_VOLTAGE, "SFIELD_GET_VOLTAGE", kInt, TellVolts},
    {SFIELD_SET_LED_MODE, "SFIELD_SET_LED_MODE", kInt, Keep<Set_Cfg_Setting_Change>},
    {SFIELD_SET_LED_FILE_UPDATE, "SFIELD_SET_LED_FILE_UPDATE", kInt, ReadLedList},
    {SFIELD_SYS_RESTART, "SFIELD_SYS_RESTART", kInt, Accept},
    {SFIELD_SYS_ENTRY_PREVIEW, "SFIELD_SYS_ENTRY_PREVIEW", kInt, Accept},
    {SFIELD_GET_AUTO_LCD_VALUE, "SFIELD_GET_AUTO_LCD_VALUE", kInt, TellLcdValue},
    {SFIELD_GET_ACC, "SFIELD_GET_ACC", kInt, AnswerZero},
    {SFIELD_SET_VIEWCHANGE, "SFIELD_SET_VIEWCHANGE", kInt, Accept},
    {SFIELD_SET_SEEK_PLAY, "SFIELD_SET_SEEK_PLAY", kInt, SeekPlayback},
    {SFIELD_VOLTAGE_COMPENSATION, "SFIELD_VOLTAGE_COMPENSATION", kInt, Compensate},
    {SFIELD_SET_PREVIEW_MIRRORING, "SFIELD_SET_PREVIEW_MIRRORING", kInt, Mirror},
    {SFIELD_SET_MOVING_PIP, "SFIELD_SET_MOVING_PIP", kInt, MovePip},
    {SFIELD_SET_MOTION_SETTING, "SFIELD_SET_MOTION_SETTING", kMap,
     KeepMap<Set_Cfg_MotionArea1High, Set_Cfg_MotionArea1Low>, kInt},
    {SFIELD_SET_MOTION_SETTING_REAR, "SFIELD_SET_MOTION_SETTING_REAR", kMap,
     KeepMap<Set_Cfg_MotionArea2High, Set_Cfg_MotionArea2Low>},
    {SFIELD_GET_PARKING_MODE_EVENT_FILE, "SFIELD_GET_PARKING_MODE_EVENT_FILE", kInt, AnswerZero},
    {SFIELD_GET_PARKING_MODE_MOTION_FILE, "SFIELD_GET_PARKING_MODE_MOTION_FILE", kInt, AnswerZero},
    {SFIELD_SET_CURRENT_RECORDING_FILE_DETECT, "SFIELD_SET_CURRENT_RECORDING_FILE_DETECT", kInt, RecordManualEvent},
    {SFIELD_SET_USER_DATA_INIT, "SFIELD_SET_USER_DATA_INIT", kInt, InitUserData},
    {SFIELD_SET_REARCAM_ONOFF, "SFIELD_SET_REARCAM_ONOFF", kInt, PowerRear},
    {SFIELD_SET_USER_SDCHECK, "SFIELD_SET_USER_SDCHECK", kInt, CheckCard},
    {SFIELD_TOUCH_COMP_END, "SFIELD_TOUCH_COMP_END", kInt, EndTouchCompensation},
};

const Field* FindField(quint32 number) {
  const auto* found = std::find_if(std::begin(kFields), std::end(kFields), [number](const Field& field) {
    return static_cast<quint32>(field.field) == number;
  });
  return found == std::end(kFields) ? nullptr : found;
}

void Log(Parts& parts, quint32 number, const Field* field, const Request& request, int result) {
  QJsonObject entry{{QStringLiteral("kind"), QStringLiteral("command")},
                    {QStringLiteral("name"), QLatin1String(field ? field->name : "?")},
                    {QStringLiteral("field"), static_cast<qint64>(number)},
                    {QStringLiteral("result"), result}};
  if (!request.shown.isNull()) {
    entry.insert(QStringLiteral("answer"), request.shown);
  } else if (request.data.size() == kInt) {
    entry.insert(QStringLiteral("value"), request.value);
  } else {
    entry.insert(QStringLiteral("data"), QLatin1String(request.data.toHex()));
  }
  emit parts.sink.Logged(entry);
}

}  // namespace

CommandServer::Answer DoCommand(Parts& parts, quint32 number, const QByteArray& data) {
  Request request{data, 0, {}, {}};
  if (data.size() == kInt) std::memcpy(&request.value, data.constData(), kInt);
  const Field* field = FindField(number);
  int result = kRefused;
  const bool fits = field && data.size() != 0 && (data.size() == field->length || data.size() == field->otherLength);
  if (fits && parts.facts.failing > 0)
    --parts.facts.failing;
  else if (fits)
    result = field->react(parts, request);
  else
    parts.sink.Note(field ? QStringLiteral("%1 takes %2 bytes, not %3.")
                                .arg(QLatin1String(field->name))
                                .arg(field->length)
                                .arg(data.size())
                          : QStringLiteral("There is no field %1.").arg(number));
  const bool isQuery = !request.shown.isNull();
  Log(parts, number, field, request, result);
  if (!isQuery && result >= 0) {
    if (!parts.hub.settings.Save()) parts.sink.Note(QStringLiteral("The INI file cannot be written."));
    emit parts.sink.StateChanged();
  }
  return {result, request.answer};
}

}  // namespace recorder
