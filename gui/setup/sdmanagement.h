#pragma once

#include "gui/screen/tilescreen.h"

/// The card: its format and its check. Both first stop recording, and begin when the voice prompt that tells it has
/// ended. GUI thread.
class SdManagement : public TileScreen {
  Q_OBJECT

public:
  explicit SdManagement(QWidget* parent);

  void recvEvent(int event, int value) override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;

public slots:
  void TimeoutVoiceEnd();

private:
  static const Tile kTiles[];

  void AskFormat();
  void AskCheck();
  void StopRecording(bool& start);
  void Format();
  void Check();
  bool IsUnderWay() const;
  void EndCheck(int fault);

  QTimer* mTimVoiceEnd;
  bool mStartSDFormat = false;
  bool mStartSDCheck = false;
};
