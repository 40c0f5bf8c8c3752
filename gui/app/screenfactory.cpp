#include "gui/app/screenfactory.h"

#include <QPointer>
#include <algorithm>
#include <array>
#include <utility>

#include "gui/app/mainwindow.h"
#include "gui/led/ledfilelist.h"
#include "gui/live/previewlayout.h"
#include "gui/recordings/recordingfilelist.h"
#include "gui/screen/screenof.h"
#include "gui/setup/timelayout.h"
#include "gui/touch/touchcomp.h"
#include "gui/touch/touchmotion.h"
#include "gui/touch/touchthread.h"

namespace {
constexpr int kNowhere = -1;  // the place of a touch on a panel that is not calibrated yet

template <int... ids>
constexpr auto RowsOf(std::integer_sequence<int, ids...>) {
  return std::array{ScreenRow{WidgetId(PREVIEW + ids), ScreenOf<WidgetId(PREVIEW + ids)>}...};
}
constexpr auto kScreens = RowsOf(std::make_integer_sequence<int, SCREENS_END - PREVIEW>());

// What some hear of the window and of the touch panel.

void Connect(MainWindow* window, PreviewLayout* preview) {
  QObject::connect(window, &MainWindow::previewEnable, preview, &PreviewLayout::previewEnabled);
  QObject::connect(window, &MainWindow::lowvolSignals, preview, &PreviewLayout::lowvolRecv);
}

void Connect(MainWindow* window, RecordingFileList* list) {
  QObject::connect(window->GetTouchThread(), &TouchThread::sendReleaseEvent, list,
                   &RecordingFileList::touchReleaseEvent);
}

void Connect(MainWindow* window, TouchComp* calibration) {
  QObject::connect(window->GetTouchThread(), &TouchThread::inputTouchPanel, calibration,
                   [window, calibration = QPointer(calibration)](int x, int y, qint64 seen) {
                     window->PanelEvent(kNowhere, kNowhere, seen, [calibration, x, y] {
                       if (calibration) calibration->settingTouchPanel(x, y);
                     });
                   });
}

void Connect(MainWindow* window, TouchMotion* test) {
  QObject::connect(window->GetTouchThread(), &TouchThread::touchMotionPanel, test, &TouchMotion::touchMotionRecv);
  QObject::connect(window->GetTouchThread(), &TouchThread::touchMotionPanel, test,
                   [window, test = QPointer(test)](int rawX, int rawY, int x, int y, qint64 seen) {
                     window->PanelEvent(x, y, seen, [test, rawX, rawY, x, y] {
                       if (test) test->setCoord(rawX, rawY, x, y);
                     });
                   });
}

void Connect(MainWindow* window, LedFileList* list) {
  QObject::connect(window->GetTouchThread(), &TouchThread::sendLedListLayoutReleaseEvent, list,
                   &LedFileList::touchReleaseEvent);
}

void Connect(MainWindow* window, TimeLayout* layout) {
  QObject::connect(window->GetTouchThread(), &TouchThread::sendTimeLayoutReleaseEvent, layout,
                   &TimeLayout::touchReleaseEvent);
}

template <class... Listeners>
void ConnectOneOf(MainWindow* window, BaseWidget* screen) {
  const auto connect = [window](auto* listener) {
    if (listener) Connect(window, listener);
  };
  (connect(qobject_cast<Listeners*>(screen)), ...);
}
}  // namespace

std::span<const ScreenRow> Screens() {
  return kScreens;
}

BaseWidget* MakeScreen(WidgetId id, MainWindow* window, QObject* arg) {
  const auto row = std::find_if(kScreens.begin(), kScreens.end(), [id](const ScreenRow& r) { return r.id == id; });
  if (row == kScreens.end()) {
    qDebug("screen %d %s: not there", id, NameOf(id));
    return nullptr;
  }
  BaseWidget* screen = row->make(window, arg);
  ConnectOneOf<PreviewLayout, RecordingFileList, TouchComp, TouchMotion, LedFileList, TimeLayout>(window, screen);
  return screen;
}
