#pragma once

#include <QSemaphore>
#include <QString>
#include <QThread>
#include <deque>

#include "gui/base/relaxed.h"
#include "gui/vocabulary/vocabulary.h"
#include "platform/Msg_Def.h"

/// The link to the recorder. Its thread waits for status messages and turns them into msgEvent; commands go the other
/// way by sendEvent, from the GUI thread, each answered before the call returns. Replies to the recorder for which
/// the queue has no room wait while reception goes on, at most 1000 of them: then the oldest is dropped. After 100
/// events it waits until the GUI thread has handled them and has painted; what comes meanwhile stays in the queue.
class MsgThread : public QThread {
  Q_OBJECT

public:
  /// Opens queue and shared memory and starts the thread. Without shared memory no status arrives; commands work.
  explicit MsgThread(QObject* parent);
  ~MsgThread() override;

  /// Ends the thread, within a second. What the thread was about to tell is lost.
  void End();

  /// Sends `event` as the command table says. `value` and `text` are what the row takes. A query puts its answer into
  /// `outInt` or `outFloat`, which stays as it is when the query fails; the pointer it does not ask for may be null.
  void sendEvent(Send_Event event, int value, QString text, int* outInt, float* outFloat);

  // What sendEvent is made of.
  void sendEventMessage(unsigned field, int value, QString text);
  void getEventMessage(unsigned field, int* out, QString text);  ///< `out` stays as it is when the query fails
  void getEventMessage(unsigned field, float* out, QString text);
  void setViewMode();
  void setViewModeForMotionSetting(int mode);  ///< 0 picture in picture, 1 front, 2 rear
  void playVideo(QString path);                ///< the first 49 characters
  void controlVideo(int value);                ///< 0 stop, 1 resume, 2 pause
  void sendSetupValue();
  void setMotionSettingFront(int unused);
  void setMotionSettingRear(int unused);

  // Senders for tools and boards beyond the command table.
  void setSetupValue(unsigned field, int value);
  void setFps(int fps);
  void RecordStart();
  void RecordStop(int reason);
  void getSystemVoltage();           ///< into gRecvVoltage, which stays when the query fails
  void setPreviewMirroring(int on);  ///< refused: mMirroring of the settings goes back a step
  void setMovingPip(int corner);     ///< refused: mMovingPip of the settings goes back a step
  void setLcdOnOff(int on);          ///< the LCD's enable line
  void setResolution(int) {}
  void setGain(int) {}
  void setGsensor_trg_lvl(int) {}
  void setGps_speed_display(int) {}
  void runFormat(int) {}
  void setSystemRestart(int) {}
  void sendEntryPreview(int) {}
  void getAutoLcdValue() {}
  void getSystemAcc() {}
  void sendViewChange(int) {}
  void sendSeekPlay(int) {}
  void setVoltCompensation(int) {}
  void setMotionSetting(int) {}
  void getParkingModeEventFile() {}
  void getParkingModeMotionFile() {}

  // Registration with the platform's servers, for boards whose firmware wants it.
  void initData();
  int checkSysInit();   ///< gSysInit: 1 when stream and overlay are ready, else 0
  int regSysServer();   ///< 1
  int regDevManager();  ///< 1
  void initDevManager();
  void initTimer() {}
  void restartTimer() {}
  void stopTimer() {}
  void initSysServer() {}
  void playAudio(int) {}

  // A status message, in the thread; GUI_RET of the reply.
  int processMsg(GUI_MSG_BUF* buf);
  int recvFWMessage(int cmd, int value);

signals:
  /// A status of the recorder (RECV_ZEL_STATUS_EVENT, 1..38) with its value, and when it was received (see Now()).
  /// Emitted in the thread.
  void msgEvent(int event, int value, qint64 received);
  void triggerError(int error);

protected:
  void run() override;

private:
  void initMsgQ();
  int Receive(GUI_MSG_BUF* buf);
  void Reply(GUI_MSG_BUF* buf);
  void SendReplies();
  bool HasReceiverTime();
  void GiveReceiverTime();

  int GuiMsgQId = -1;
  int GuiMid = -1;
  Relaxed<int> IsGuiQuit = 0;  // 1: the loop has to end, or has ended
  int IsRegSys = 0;
  int IsRegDevMgr = 0;
  int IsCompStream = 1;
  int IsRecvOsd = 1;

  // Of the thread alone.
  std::deque<GUI_MSG_BUF> mReplies;  // that wait for room in the queue, the oldest first
  bool mHasDroppedReply = false;
  int mToldAtOnce = 0;  // events since the receiver had time

  QSemaphore mTime;  // of the receiver: released by the GUI thread
};
