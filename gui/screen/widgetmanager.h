#pragma once

#include <QList>

#include "gui/base/relaxed.h"
#include "gui/vocabulary/vocabulary.h"

class BaseWidget;

/// One screen on the stack.
struct WidgetInfo {
  WidgetId id = UNKNOWN;
  BaseWidget* widget = nullptr;  ///< owned by the stack
  int depth = -1;                ///< 0 = bottom
};

/// The stack of screens; its top is what the window shows. It owns the screens. GUI thread, but for GetCurWidgetId.
class WidgetManager {
public:
  WidgetManager();

  void NextWidget(WidgetInfo info);         ///< pushes; the depth given is ignored
  void PushStackedWidget(WidgetInfo info);  ///< the same
  void PrevWidget();                        ///< deletes the top screen; nothing on an empty stack
  void PopStackedWidget();                  ///< the same

  /// Deletes the screens above the lowest one of `id`; all of them when there is none. Nothing when `id` is on top.
  void JumpWidget(WidgetId id);
  void PopStackedWidget(WidgetId id);  ///< the same

  /// Deletes every screen. The current screen and the depth stay as they were: the caller resets them with InitData.
  void AllDeleteStackedWidget();
  void ResetStackedWidgetList();  ///< deletes every screen and starts anew

  BaseWidget* GetCurrentWidget() const { return mCurWidgetInfo.widget; }  ///< null when the stack is empty
  WidgetId GetCurWidgetId() const { return WidgetId(int{mCurId}); }       ///< any thread
  WidgetInfo GetCurWidgetInfo() const { return mCurWidgetInfo; }
  void SetCurWidgetInfo(WidgetInfo info);
  int GetStackDepth() const { return mStackDepth; }
  void SetStackDepth(int depth) { mStackDepth = depth; }
  void AddStackDepth() { ++mStackDepth; }
  void SubtractStackDepth() { --mStackDepth; }
  void InitializeCurWidgetInfo() { SetCurWidgetInfo({}); }
  void InitData();  ///< no current screen, depth -1

private:
  WidgetInfo mCurWidgetInfo;  // copy of the top entry
  QList<WidgetInfo> mStackedWidgetList;
  int mStackDepth = -1;
  Relaxed<int> mCurId = UNKNOWN;  // id of mCurWidgetInfo for the touch reader
};

extern WidgetManager gWidgetManager;
