#include "gui/firmware/msgthread.h"

#include <sys/msg.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>

#include "gui/base/globals.h"
#include "gui/base/touchtime.h"
#include "gui/firmware/commands.h"
#include "gui/settings/settings.h"
#include "platform/devmgr_interface.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"

namespace {
constexpr int kSystemDriver = 7;
constexpr int kDeviceManagerClient = 2;
constexpr int kLcdEnableLine = 46;
constexpr int kPathBytes = 50;
constexpr int kMaxErrors = 3;  // of the queue in a row; the next one ends the loop
constexpr unsigned long kEndMs = 1000;

/// x - 1 in the ring 0..n-1, whatever x.
int StepBack(int x, int n) {
  return (x % n + n - 1) % n;
}
}  // namespace

MsgThread::MsgThread(QObject* parent) : QThread(parent) {
  initData();
  initMsgQ();
  start(QThread::InheritPriority);
}

MsgThread::~MsgThread() {
  End();
}

void MsgThread::initData() {
  IsGuiQuit = 0;
  IsRegSys = 0;
  IsRegDevMgr = 0;
  IsCompStream = 1;
  IsRecvOsd = 1;
  gContext.fill(0);
}

void MsgThread::initMsgQ() {
  GuiMsgQId = Gui_InitMessage();
  GuiMid = Gui_InitSharedMemory();
  if (GuiMid < 0) IsGuiQuit = 1;
  SysDrvInit(kSystemDriver);
}

// The thread waits in msgrcv, which nothing but a message or cancellation ends.
void MsgThread::End() {
  IsGuiQuit = 1;
  terminate();
  wait(kEndMs);
}

// ---- status messages

void MsgThread::run() {
  setTerminationEnabled(false);  // but for the waits in Receive and Reply
  int errors = 0;
  while (IsGuiQuit == 0) {
    GUI_MSG_BUF buf{};  // of each message anew: a short one must not show the rest of the last one
    const int result = Receive(&buf);
    if (result < 0 && result != -ENOMSG) {
      if (errors++ >= kMaxErrors) break;
      continue;
    }
    errors = 0;
    if (result < GUI_MSG_SIZE) continue;
    if (buf.src <= GUI_ID) break;
    const int ret = processMsg(&buf);
    if (ret != GUI_RET_NORET && buf.ack == GUI_ACK_YES) Reply(&buf);
  }
  IsGuiQuit = 1;
}

// The bytes of a message for the interface, or minus the error.
int MsgThread::Receive(GUI_MSG_BUF* buf) {
  setTerminationEnabled(true);
  ssize_t bytes = 0;
  do {
    bytes = msgrcv(GuiMsgQId, buf, GUI_MSG_SIZE, GUI_ID, 0);
  } while (bytes < 0 && errno == EINTR);
  const int result = bytes < 0 ? -errno : int(bytes);
  setTerminationEnabled(false);
  return result;
}

// Waits while the queue is full: it is full of what the senders have not fetched, so nothing else can arrive either.
void MsgThread::Reply(GUI_MSG_BUF* buf) {
  buf->des = buf->src;
  buf->src = GUI_ID;
  setTerminationEnabled(true);
  while (msgsnd(GuiMsgQId, buf, GUI_MSG_SIZE, 0) < 0 && errno == EINTR) {
  }
  setTerminationEnabled(false);
}

int MsgThread::processMsg(GUI_MSG_BUF* buf) {
  const int cmd = buf->cmd;
  if (cmd >= RECV_ZEL_STATUS_SYS_RESTART && cmd <= RECV_ZEL_STATUS_PARK_INFO_CLOSE &&
      cmd != RECV_ZEL_STATUS_RECORD_STOP && cmd != RECV_ZEL_STATUS_RECORD_START) {
    if (cmd == RECV_ZEL_STATUS_SD_ERROR) {
      gSdError = true;
      gInitSdError = true;
      gSdErrorValue = 1;
    }
    int value = 1;  // what a message without a payload means
    const int length = std::clamp(buf->length, 0, int(sizeof value));
    if (buf->offset >= 0) ShareMemReadByMid(GuiMid, buf->offset, &value, length);
    if (cmd == RECV_ZEL_STATUS_HW_ERROR && value == 8) gIsSdError = true;
    recvFWMessage(cmd, value);
  }
  if (buf->ret == GUI_RET_DATA) {
    // The sender's slot is only addressed, not filled.
    const std::int64_t slot = (std::int64_t{buf->src} - 2) * GUI_SLOT_SIZE;
    if (slot >= 0 && slot <= std::numeric_limits<int>::max()) {
      buf->offset = int(slot);
      ShareMemWriteByMid(GuiMid, buf->offset, nullptr, std::clamp(buf->length, 0, int(GUI_SLOT_SIZE)));
    }
  }
  return buf->ret;
}

int MsgThread::recvFWMessage(int cmd, int value) {
  if (cmd >= RECV_ZEL_STATUS_SYS_RESTART && cmd <= RECV_ZEL_STATUS_PARK_INFO_CLOSE &&
      cmd != RECV_ZEL_STATUS_RECORD_START)
    emit msgEvent(cmd, value, Now());
  return GUI_RET_NODATA;
}

// ---- commands

void MsgThread::sendEvent(Send_Event event, int value, QString text, int* outInt, float* outFloat) {
  const Command command = CommandOf(event);
  switch (command.kind) {
    case CommandKind::Nothing:
      return;
    case CommandKind::Value:
      return sendEventMessage(command.field, value, text);
    case CommandKind::QueryInt:
      return getEventMessage(command.field, outInt, text);
    case CommandKind::QueryFloat:
      return getEventMessage(command.field, outFloat, text);
    case CommandKind::ViewMode:
      return setViewMode();
    case CommandKind::ViewModeForMotion:
      return setViewModeForMotionSetting(value);
    case CommandKind::Path:
      return playVideo(text);
    case CommandKind::SetupBlock:
      return sendSetupValue();
    case CommandKind::MotionFront:
      return setMotionSettingFront(value);
    case CommandKind::MotionRear:
      return setMotionSettingRear(value);
  }
}

void MsgThread::sendEventMessage(unsigned field, int value, QString) {
  ControlSystemData(int(field), &value, sizeof value);
}

void MsgThread::getEventMessage(unsigned field, int* out, QString) {
  if (!out) return;
  *out = 0;
  ControlSystemData(int(field), out, sizeof *out);
}

void MsgThread::getEventMessage(unsigned field, float* out, QString) {
  if (!out) return;
  *out = 0;
  ControlSystemData(int(field), out, sizeof *out);
}

void MsgThread::setViewMode() {
  setViewModeForMotionSetting(gEnvirnmentSettings.mSetting.display);
}

void MsgThread::setViewModeForMotionSetting(int mode) {
  sendEventMessage(ViewField(mode), mode, {});
}

void MsgThread::playVideo(QString path) {
  std::array<char, kPathBytes> buffer{};
  const QByteArray name = path.toLatin1();
  std::copy_n(name.cbegin(), std::min<qsizetype>(name.size(), kPathBytes - 1), buffer.begin());
  ControlSystemData(SFIELD_PLAY_VIDEO, buffer.data(), kPathBytes);
}

void MsgThread::controlVideo(int value) {
  sendEventMessage(SFIELD_CONTROL_VIDEO, value, {});
}

void MsgThread::sendSetupValue() {
  Setup_Value setup = gEnvirnmentSettings.mSetup_value;
  static_assert(sizeof setup == 129);
  ControlSystemData(SFIELD_SET_SETUP_COMPLETE, &setup, sizeof setup);
}

void MsgThread::setMotionSettingFront(int) {
  std::uint64_t map = gEnvirnmentSettings.mSetting.motion_area1;
  ControlSystemData(SFIELD_SET_MOTION_SETTING, &map, sizeof map);
}

void MsgThread::setMotionSettingRear(int) {
  std::uint64_t map = gEnvirnmentSettings.mSetting.motion_area2;
  ControlSystemData(SFIELD_SET_MOTION_SETTING_REAR, &map, sizeof map);
}

void MsgThread::setSetupValue(unsigned field, int value) {
  sendEventMessage(field, value, {});
}

void MsgThread::setFps(int fps) {
  sendEventMessage(SFIELD_SET_VIDEO_FRAMRATE, fps, {});
}

void MsgThread::RecordStart() {
  sendEventMessage(SFIELD_VIDEO_REC_START, 0, {});
}

void MsgThread::RecordStop(int reason) {
  sendEventMessage(SFIELD_VIDEO_REC_STOP, reason, {});
}

void MsgThread::getSystemVoltage() {
  getEventMessage(SFIELD_GET_VOLTAGE, &gRecvVoltage, {});
}

void MsgThread::setPreviewMirroring(int on) {
  int& mirroring = gEnvirnmentSettings.mMirroring;
  if (ControlSystemData(SFIELD_SET_PREVIEW_MIRRORING, &on, sizeof on) < 0) mirroring = StepBack(mirroring, 2);
}

void MsgThread::setMovingPip(int corner) {
  int& pip = gEnvirnmentSettings.mMovingPip;
  if (ControlSystemData(SFIELD_SET_MOVING_PIP, &corner, sizeof corner) < 0) pip = StepBack(pip, 4);
}

void MsgThread::setLcdOnOff(int on) {
  ipnc_gio_write(kLcdEnableLine, on);
}

// ---- registration

int MsgThread::checkSysInit() {
  gSysInit = IsCompStream == 1 && IsRecvOsd == 1 ? 1 : 0;
  return gSysInit;
}

int MsgThread::regSysServer() {
  IsRegSys = 1;
  SysDrvInit(kSystemDriver);
  char registration = 0;
  ControlSystemData(SFIELD_REG_CLIENT, &registration, sizeof registration);
  return 1;
}

int MsgThread::regDevManager() {
  IsRegDevMgr = 1;
  DevMgr_RegClient(kDeviceManagerClient);
  return 1;
}

void MsgThread::initDevManager() {
  std::array<std::int32_t, 4> thresholds{10, 20, 30, 0};
  DevMgr_Control(DEV_SET_GSENSOR_THRESHOLD, thresholds.data(), sizeof thresholds);
  std::array<std::int32_t, 4> periods{1000000, 200000, 300000, 500000};
  DevMgr_Control(DEV_START_MONITORING, periods.data(), sizeof periods);
}
