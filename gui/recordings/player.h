#pragma once

#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/basewidget.h"

class Page;
class PlayFileInfo;
class QLabel;

/// The playback of one recording. The firmware decodes it and shows it behind the screen; the screen sends the
/// commands, shows the time, and steps through the list that the driver came from. GUI thread.
class Player : public BaseWidget {
  Q_OBJECT

public:
  enum OrderType { ASCENDINGTYPE = 0, DECENDINGTYPE = 1 };
  enum CamModeType { FRONTTYPE = 0, REARTYPE = 1 };
  enum PlayControl { PLAY_STOP = 0, PLAY_RESUME = 1, PLAY_PAUSE = 2 };            ///< value of SEND_CONTROL_VIDEO
  enum PlayerEvent { PENTRY_MENU = 0, PENTRY_PREVIEW = 1, PENTRY_FILELIST = 2 };  ///< what follows after a box
  /// Value of RECV_ZEL_STATUS_PLAY_STATUS.
  enum PlayBack_ErrorType {
    STATUS_PLAY_NO_ERR = 0,
    STATUS_PLAY_ERR = 1,
    STATUS_PLAY_OPEN_FAIL = 2,
    STATUS_PLAY_READ_FAIL = 3,
    STATUS_PLAY_END = 4,
  };

  /// Plays at once. Deletes `info`. An item that is not there fails as a file that cannot be opened does.
  Player(QWidget* parent, PlayFileInfo* info);

  void touchEvent(int type, int x, int y) override;
  void recvEvent(int event, int value) override;
  void onResume() override;
  void onPause() override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;
  void TimeoutEvent() override;

  /// Where a touch at `x` of the bar seeks to, in milliseconds, in a recording of `duration` seconds; -1: nowhere.
  static int ProgressIndexToTimeParsing(int x, int duration);

  /// "00:MM:SS"; the minutes are not taken modulo 60.
  static QString GetRecordTime(int seconds);

protected:
  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override;

private:
  struct Key;
  static const Key kKeys[];

  void InitLabel();
  void SetPlayFile(int list, int index);
  void SetType(int list);
  void Play();
  void LeaveAfter(PlayerEvent way, int ms);
  void StepTo(int index);
  int PlayableFrom(int index, int step) const;
  void NextPlayFile();
  void PrevPlayFile();
  void StepOlder();
  void StepNewer();
  void ChangeCamPlayFile();
  void ShowControl();
  void HideControl();
  void UpdateLabels();
  void AddControl(Page& page) const;
  void UpdateProgress();
  void GetCurrentPlayTime(int ms);
  void GetPlayStatus(int status);
  void TimeoutDispControl();
  void TimeoutCurTimeProgress();

  void PressHome();
  void PressPreview();
  void PressOlder();
  void PressNewer();
  void PressPlay();
  void PressBack();
  void PressCamera();

  QLabel* mFileNameLabel = nullptr;
  QLabel* mPlayTimeLabel = nullptr;
  QLabel* mProgressBar = nullptr;
  OrderType mOrderType = ASCENDINGTYPE;
  CamModeType mCamMode = FRONTTYPE;
  int mCurPlayIndex = -1;
  int mCurTime = 0;  // seconds played
  int mCurListIndex = -1;
  int mRecTime = 0;      // seconds of the recording
  int mCurBarIndex = 0;  // pixels of the bar
  bool mIsShowControl = true;
  bool mIsPlaying = false;
  QString mPlayFilePath;  // of the camera
  QString mPlayFileName;
  const FileItemList* mCurFileList = nullptr;  // the catalogue's, or null
  qint64 mPlayedSince = 0;  // what the recorder told of a playback before it is about another file; see Now()
  bool mIsLeaving = false;  // the way out is chosen: nothing else takes its place
  QTimer* mTimDispControl;
  QTimer* mTimCurTimeProgress;
};
