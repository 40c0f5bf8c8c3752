#include "gui/firmware/msgthread.h"

#include <sys/msg.h>

#include <QTimer>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <utility>

#include "gui/base/eventgate.h"
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
constexpr int kMaxErrors = 3;               // of the queue in a row; the next one ends the loop
constexpr std::size_t kMostReplies = 1000;  // that wait; an empty queue takes 585
constexpr int kMostAtOnce = 100;            // events; a touch among them is felt after as many
constexpr unsigned long kRetryMs = 5;
constexpr unsigned long kEndMs = 1000;

/// x - 1 in the ring 0..n-1, whatever x.
int StepBack(int x, int n) {
  return (x % n + n - 1) % n;
}

/// The recorder's answer into `out`, which a query that fails leaves alone.
template <typename Number>
void Query(unsigned field, Number* out) {
  Number answer = 0;
  if (out && ControlSystemData(int(field), &answer, sizeof answer) >= 0) *out = answer;
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

// Only a message or cancellation ends msgrcv. The one place where the thread can be cancelled is its wait in Receive:
// there it holds nothing, neither a lock nor memory.
void MsgThread::End() {
  IsGuiQuit = 1;
  terminate();
  wait(kEndMs);
}

// ---- status messages

void MsgThread::run() {
  setTerminationEnabled(false);  // but for the wait in Receive
  int errors = 0;
  while (IsGuiQuit == 0) {
    SendReplies();
    if (!HasReceiverTime()) continue;
    GUI_MSG_BUF buf{};  // of each message anew: a short one must not show the rest of the last one
    const int result = Receive(&buf);
    if (result < 0 && result != -ENOMSG) {
      if (errors++ >= kMaxErrors) break;
      continue;
    }
    errors = 0;
    if (result < GUI_MSG_SIZE) continue;
    if (buf.src <= GUI_ID) break;
    ++mToldAtOnce;
    const int ret = processMsg(&buf);
    if (ret != GUI_RET_NORET && buf.ack == GUI_ACK_YES) Reply(&buf);
  }
  IsGuiQuit = 1;
}

// The event loop delivers what is posted before it paints and looks at its timers, and what is posted meanwhile, too: a
// flood would keep it from both, and grow in it.
bool MsgThread::HasReceiverTime() {
  if (mToldAtOnce < kMostAtOnce) return true;
  if (mToldAtOnce++ == kMostAtOnce) QMetaObject::invokeMethod(this, &MsgThread::GiveReceiverTime, Qt::QueuedConnection);
  if (!mTime.tryAcquire(1, kRetryMs)) return false;
  mToldAtOnce = 0;
  return true;
}

// In the GUI thread, behind the events.
void MsgThread::GiveReceiverTime() {
  if (gEventGate.Enter(this, [this] { GiveReceiverTime(); })) QTimer::singleShot(0, this, [this] { mTime.release(); });
}

// The bytes of a message for the interface, or minus the error. Waits for one; while replies wait for room only a
// moment, -ENOMSG then.
int MsgThread::Receive(GUI_MSG_BUF* buf) {
  const int flags = mReplies.empty() ? 0 : IPC_NOWAIT;
  setTerminationEnabled(true);
  ssize_t bytes = 0;
  do {
    bytes = msgrcv(GuiMsgQId, buf, GUI_MSG_SIZE, GUI_ID, flags);
  } while (bytes < 0 && errno == EINTR);
  const int result = bytes < 0 ? -errno : int(bytes);
  setTerminationEnabled(false);
  if (result == -ENOMSG) msleep(kRetryMs);
  return result;
}

// The queue may be full of messages that only this thread takes out: it must not wait for room in it.
void MsgThread::Reply(GUI_MSG_BUF* buf) {
  buf->des = buf->src;
  buf->src = GUI_ID;
  if (mReplies.size() == kMostReplies) {
    mReplies.pop_front();
    if (!std::exchange(mHasDroppedReply, true))
      qDebug("link: the recorder fetches no replies, the oldest of %zu is lost", kMostReplies);
  }
  mReplies.push_back(*buf);
}

// In order, as many as there is room for. One that the queue refuses for another reason is lost.
void MsgThread::SendReplies() {
  while (!mReplies.empty()) {
    if (msgsnd(GuiMsgQId, &mReplies.front(), GUI_MSG_SIZE, IPC_NOWAIT) < 0 && errno == EAGAIN) return;
    mReplies.pop_front();
  }
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
  Query(field, out);
}

void MsgThread::getEventMessage(unsigned field, float* out, QString) {
  Query(field, out);
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
