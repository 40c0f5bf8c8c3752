#include "gui/setup/sdmanagement.h"

#include <QPointer>
#include <QTimer>

#include "gui/base/eventgate.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"

SCREEN(SDMANAGEMENT, SdManagement)

namespace {
constexpr int kVoiceMs = 10000;  // a voice prompt whose end is never reported
constexpr int kStopForCard = 3;  // SEND_VIDEO_REC_STOP: the card is about to be formatted or checked
}  // namespace

constexpr SdManagement::Tile SdManagement::kTiles[] = {
    {1, 1, Action{gSdManagementConfig.Format, Press<&SdManagement::AskFormat>}},
    {1, 2, Action{gSdManagementConfig.Check, Press<&SdManagement::AskCheck>}},
};

SdManagement::SdManagement(QWidget* parent)
    : TileScreen(parent, gSdManagementConfig.Title, kTiles),
      mTimVoiceEnd(NewTimer("mTimVoiceEnd", [this] { TimeoutVoiceEnd(); })) {}

void SdManagement::AskFormat() {
  PaintMessageBox(SD_FORMAT_CONFIRM, false, 0, 0);
}

void SdManagement::AskCheck() {
  PaintMessageBox(SD_CARD_CHECK_MSG, false, 0, 0);
}

void SdManagement::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != SD_FORMAT_CONFIRM && messageId != SD_CARD_CHECK_MSG && messageId != R_SD_ERROR_NEET_FORMAT) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::None) return;
  const bool yes = button == MessageBox::Button::Left;
  if (messageId != R_SD_ERROR_NEET_FORMAT) {
    if (yes)
      StopRecording(messageId == SD_FORMAT_CONFIRM ? mStartSDFormat : mStartSDCheck);
    else
      DelMessageBox();
    return;
  }
  if (yes) {
    DelMessageBox();
    Format();
    return;
  }
  gMainWindow->SetParkingModeLcdOffTimer();
  DelMessageBox();
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
}

void SdManagement::StopRecording(bool& start) {
  gMainWindow->StopParkingModeLcdOffTimer();
  start = true;
  PaintMessageBox(VIDEO_REC_STOP, false, 0, 0);
  const QPointer<SdManagement> here(this);
  gEventGate.ProcessEvents();
  if (!here) return;
  SetTimer(mTimVoiceEnd, kVoiceMs);
  SendEvent(SEND_VIDEO_REC_STOP, kStopForCard, QString());
}

// A late answer to a check: the format, the check or the save that has begun meanwhile has its box, and goes on.
bool SdManagement::IsUnderWay() const {
  return mIsShowMessageBox && (mMessageId == VIDEO_REC_STOP || mMessageId == SETUP_SAVING);
}

void SdManagement::recvEvent(int event, int value) {
  if (event == RECV_ZEL_STATUS_VOICE_PLAY_END) TimeoutVoiceEnd();
  if (event == RECV_ZEL_STATUS_SD_CHECK && !IsUnderWay()) EndCheck(value);
}

void SdManagement::TimeoutVoiceEnd() {
  mTimVoiceEnd->stop();
  if (mStartSDFormat) {
    DelMessageBox();
    mStartSDFormat = false;
    Format();
  } else if (mStartSDCheck) {
    Check();
  }
}

void SdManagement::Format() {
  SendEvent(SEND_SET_SYSTEM_SD_FORMAT, 0, QString());
  Next(SDFORMAT);
}

void SdManagement::Check() {
  PaintMessageBox(SD_CARD_CHECK_ING, false, 0, 0);
  const QPointer<SdManagement> here(this);
  gEventGate.ProcessEvents();
  if (!here) return;
  mStartSDCheck = false;
  SendEvent(SEND_SET_SD_CHECK, 0, QString());
}

void SdManagement::EndCheck(int fault) {
  if (fault != 0) {
    PaintMessageBox(R_SD_ERROR_NEET_FORMAT, false, fault, 0);
    return;
  }
  gMainWindow->SetParkingModeLcdOffTimer();
  PaintMessageBox(SD_CARD_CHECK_COMPLETE_VALID, false, 0, kNoticeMs);
  const QPointer<SdManagement> here(this);
  gEventGate.ProcessEvents();
  if (!here) return;
  SendEvent(SEND_VIDEO_REC_START, 0, QString());
}
