#include "gui/app/screenfactory.h"

#include <algorithm>
#include <set>

#include "gui/app/mainwindow.h"
#include "gui/live/previewlayout.h"

namespace {
BaseWidget* MakePreview(MainWindow* window, QObject*) {
  auto* preview = new PreviewLayout(window);
  QObject::connect(window, &MainWindow::previewEnable, preview, &PreviewLayout::previewEnabled);
  QObject::connect(window, &MainWindow::lowvolSignals, preview, &PreviewLayout::lowvolRecv);
  return preview;
}

constexpr ScreenRow kScreens[] = {
    {PREVIEW, "PreviewLayout", MakePreview},
};
}  // namespace

std::span<const ScreenRow> Screens() { return kScreens; }

BaseWidget* MakeScreen(WidgetId id, MainWindow* window, QObject* arg) {
  const auto row = std::find_if(std::begin(kScreens), std::end(kScreens), [id](const ScreenRow& r) { return r.id == id; });
  if (row != std::end(kScreens)) return row->make(window, arg);
  static std::set<WidgetId> said;
  if (said.insert(id).second) qDebug("screen %d %s: not there", id, NameOf(id));
  return nullptr;
}
