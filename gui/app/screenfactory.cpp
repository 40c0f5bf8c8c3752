#include "gui/app/screenfactory.h"

#include <algorithm>
#include <set>

#include "gui/app/mainwindow.h"
#include "gui/live/previewlayout.h"
#include "gui/live/screensaver.h"
#include "gui/parking/pfileinfo.h"
#include "gui/parking/pfilesimplegraph.h"

namespace {
BaseWidget* MakePreview(MainWindow* window, QObject*) {
  auto* preview = new PreviewLayout(window);
  QObject::connect(window, &MainWindow::previewEnable, preview, &PreviewLayout::previewEnabled);
  QObject::connect(window, &MainWindow::lowvolSignals, preview, &PreviewLayout::lowvolRecv);
  return preview;
}

BaseWidget* MakeParkingReport(MainWindow* window, QObject* arg) {
  const auto* report = qobject_cast<PFileInfo*>(arg);
  return report ? new PFileSimpleGraph(window, report) : nullptr;
}

BaseWidget* MakeScreenSaver(MainWindow* window, QObject*) {
  return new ScreenSaver(window);
}

constexpr ScreenRow kScreens[] = {
    {PREVIEW, "PreviewLayout", MakePreview},
    {PFILEGRAPH, "PFileSimpleGraph", MakeParkingReport},
    {SCREENSAVER, "ScreenSaver", MakeScreenSaver},
};
}  // namespace

std::span<const ScreenRow> Screens() {
  return kScreens;
}

BaseWidget* MakeScreen(WidgetId id, MainWindow* window, QObject* arg) {
  const auto row =
      std::find_if(std::begin(kScreens), std::end(kScreens), [id](const ScreenRow& r) { return r.id == id; });
  if (row != std::end(kScreens)) return row->make(window, arg);
  static std::set<WidgetId> said;
  if (said.insert(id).second) qDebug("screen %d %s: not there", id, NameOf(id));
  return nullptr;
}
