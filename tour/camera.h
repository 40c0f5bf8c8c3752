#pragma once

#include <QImage>
#include <memory>

#include "bench/lcd/roadvideo.h"
#include "bench/panel/touchpanel.h"
#include "gui/app/mainwindow.h"
#include "gui/vocabulary/vocabulary.h"
#include "tour/flashwatch.h"

class TestRoot;
struct Setting_Config;

/// Where to touch: the tiles of a menu by row and column, the left button of a question.
inline constexpr QPoint kTile11(80, 125), kTile12(240, 125), kTile13(400, 125), kTile21(80, 255), kTile22(240, 255),
    kTile23(400, 255), kYes(140, 236);

/// The interface in this process, on the live preview after a plain start at 13:24 on 2026-05-08, without a recorder:
/// every command succeeds. What a driver and a recorder do to it; each of these comes back when it has been handled.
class Camera {
public:
  Camera();

  static TestRoot& Root();           ///< the folder that stands for the camera's file system
  static Setting_Config& Setting();  ///< the current settings, as if the recorder had brought them

  /// Starts the interface anew, with the files and settings that there are now.
  void Restart();

  void Tap(QPoint at);
  void Press(QPoint at);  ///< the finger goes down, or moves when it is down
  void Release();
  void Event(RECV_ZEL_STATUS_EVENT event, int value = 0);

  /// Lets so much time pass that a running timer of the screen on top, or of the window, goes off. Fatal when it does
  /// not run.
  void Wait(const char* timer);

  /// From the preview to a screen that a menu leads to, by touches. Fatal when there is no way.
  void Open(WidgetId id);

  /// The window; for the few screens that nothing leads to, and for the look at what is shown.
  MainWindow& Window() { return *mWindow; }

  /// The page was painted bare between two boxes; how often since the last call.
  int Flashes() { return mFlashWatch.Take(); }

  QImage Drawn();                          ///< what the interface draws, 480 × 320 RGB32
  QImage Seen(const QImage& drawn) const;  ///< what a person sees of it: over the video, dark when the LCD is off

private:
  void Take(int code, int value);

  FlashWatch mFlashWatch;
  std::unique_ptr<MainWindow> mWindow;
  TouchPanel mPanel;
  RoadVideo mRoad;
};
