#include "gui/screen/widgetmanager.h"

#include <algorithm>
#include <utility>

#include "gui/screen/basewidget.h"

WidgetManager gWidgetManager;

WidgetManager::WidgetManager() {
  ResetStackedWidgetList();
}

void WidgetManager::SetCurWidgetInfo(WidgetInfo info) {
  mCurWidgetInfo = info;
  mCurId = info.id;
}

void WidgetManager::InitData() {
  InitializeCurWidgetInfo();
  mStackDepth = -1;
}

void WidgetManager::NextWidget(WidgetInfo info) {
  info.depth = ++mStackDepth;
  mStackedWidgetList.append(info);
  SetCurWidgetInfo(info);
}

void WidgetManager::PushStackedWidget(WidgetInfo info) {
  NextWidget(info);
}

void WidgetManager::PrevWidget() {
  PopStackedWidget();
}

void WidgetManager::PopStackedWidget() {
  if (mStackedWidgetList.isEmpty()) return;
  const WidgetInfo popped = mStackedWidgetList.takeLast();
  --mStackDepth;
  SetCurWidgetInfo(mStackedWidgetList.isEmpty() ? WidgetInfo{} : mStackedWidgetList.last());
  delete popped.widget;
}

void WidgetManager::JumpWidget(WidgetId id) {
  if (id == mCurWidgetInfo.id || mStackedWidgetList.isEmpty()) return;
  const auto found = std::find_if(mStackedWidgetList.cbegin(), mStackedWidgetList.cend(),
                                  [id](const WidgetInfo& entry) { return entry.id == id; });
  const int depth = found == mStackedWidgetList.cend() ? -1 : found->depth;
  for (int pops = mStackDepth - depth; pops > 0; --pops) PopStackedWidget();
}

void WidgetManager::PopStackedWidget(WidgetId id) {
  JumpWidget(id);
}

void WidgetManager::AllDeleteStackedWidget() {
  for (const WidgetInfo& entry : std::exchange(mStackedWidgetList, {})) delete entry.widget;
}

void WidgetManager::ResetStackedWidgetList() {
  const QList<WidgetInfo> screens = std::exchange(mStackedWidgetList, {});
  InitData();
  for (const WidgetInfo& entry : screens) delete entry.widget;
}
