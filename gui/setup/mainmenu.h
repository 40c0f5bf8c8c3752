#pragma once

#include "gui/screen/tilescreen.h"

class QLabel;

/// The first menu: the ways to the recordings, the card, and the settings. GUI thread.
class MainMenu : public TileScreen {
  Q_OBJECT

public:
  explicit MainMenu(QWidget* parent);

  void onResume() override;
  void onPause() override;
  void MessageBoxHandler(int type, int x, int y, int messageId) override;

  /// Days since the card was formatted; -1 when nobody knows.
  static int GetSinceDayOfSdFormat();

  /// Days from `then` to `now`, seconds since 1970: whole ones, but yesterday is one day ago. Days are those of the
  /// local calendar.
  static int DaysBetween(qint64 then, qint64 now);

private:
  static const Tile kTiles[];

  void InitLabel();
  void SetSdFormatDay();
  void AskFileList();
  void EnterFileList();
  void GetFileList();

  QLabel* mSdFormatDayLabel = nullptr;
};
