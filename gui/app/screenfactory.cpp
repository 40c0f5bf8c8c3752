#include "gui/app/screenfactory.h"

#include <QPointer>
#include <algorithm>

#include "gui/app/mainwindow.h"
#include "gui/led/frontled.h"
#include "gui/led/ledfilelist.h"
#include "gui/led/numbersetlayout.h"
#include "gui/live/previewlayout.h"
#include "gui/live/screensaver.h"
#include "gui/parking/pfileinfo.h"
#include "gui/parking/pfilesimplegraph.h"
#include "gui/recordings/player.h"
#include "gui/recordings/playfileinfo.h"
#include "gui/recordings/recordingfilelist.h"
#include "gui/setup/audiosetting.h"
#include "gui/setup/blackboxmanagement.h"
#include "gui/setup/drivingsetting.h"
#include "gui/setup/filedeletemethod.h"
#include "gui/setup/filemanagement.h"
#include "gui/setup/firmupwidget.h"
#include "gui/setup/lcdsetting.h"
#include "gui/setup/lowvoldetectionsetting.h"
#include "gui/setup/mainmenu.h"
#include "gui/setup/mainmenu2.h"
#include "gui/setup/motionsetting.h"
#include "gui/setup/parkingsetting.h"
#include "gui/setup/powercutsetting.h"
#include "gui/setup/sdformat.h"
#include "gui/setup/sdmanagement.h"
#include "gui/setup/timelayout.h"
#include "gui/setup/voltagecompensation.h"
#include "gui/touch/touchcomp.h"
#include "gui/touch/touchmotion.h"
#include "gui/touch/touchthread.h"

namespace {
constexpr int kNowhere = -1;  // the place of a touch on a panel that is not calibrated yet

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

BaseWidget* MakeRecordingList(MainWindow* window, QObject*) {
  auto* list = new RecordingFileList(window);
  QObject::connect(window->GetTouchThread(), &TouchThread::sendReleaseEvent, list,
                   &RecordingFileList::touchReleaseEvent);
  return list;
}

BaseWidget* MakeTouchComp(MainWindow* window, QObject*) {
  auto* calibration = new TouchComp(window);
  QObject::connect(window->GetTouchThread(), &TouchThread::inputTouchPanel, calibration,
                   [window, calibration = QPointer(calibration)](int x, int y, qint64 seen) {
                     window->PanelEvent(kNowhere, kNowhere, seen, [calibration, x, y] {
                       if (calibration) calibration->settingTouchPanel(x, y);
                     });
                   });
  return calibration;
}

BaseWidget* MakeTouchTest(MainWindow* window, QObject*) {
  auto* test = new TouchMotion(window);
  QObject::connect(window->GetTouchThread(), &TouchThread::touchMotionPanel, test, &TouchMotion::touchMotionRecv);
  QObject::connect(window->GetTouchThread(), &TouchThread::touchMotionPanel, test,
                   [window, test = QPointer(test)](int rawX, int rawY, int x, int y, qint64 seen) {
                     window->PanelEvent(x, y, seen, [test, rawX, rawY, x, y] {
                       if (test) test->setCoord(rawX, rawY, x, y);
                     });
                   });
  return test;
}

BaseWidget* MakeLedList(MainWindow* window, QObject*) {
  auto* list = new LedFileList(window);
  QObject::connect(window->GetTouchThread(), &TouchThread::sendLedListLayoutReleaseEvent, list,
                   &LedFileList::touchReleaseEvent);
  return list;
}

BaseWidget* MakeTimeLayout(MainWindow* window, QObject*) {
  auto* layout = new TimeLayout(window);
  QObject::connect(window->GetTouchThread(), &TouchThread::sendTimeLayoutReleaseEvent, layout,
                   &TimeLayout::touchReleaseEvent);
  return layout;
}

BaseWidget* MakePlayer(MainWindow* window, QObject* arg) {
  auto* what = qobject_cast<PlayFileInfo*>(arg);
  return what ? new Player(window, what) : nullptr;
}

template <class Screen>
BaseWidget* Make(MainWindow* window, QObject*) {
  return new Screen(window);
}

constexpr ScreenRow kScreens[] = {
    {PREVIEW, "PreviewLayout", MakePreview},
    {PFILEGRAPH, "PFileSimpleGraph", MakeParkingReport},
    {SCREENSAVER, "ScreenSaver", Make<ScreenSaver>},
    {MAINMENU, "MainMenu", Make<MainMenu>},
    {MAINMENU2, "MainMenu2", Make<MainMenu2>},
    {BLACKBOXMANAGEMENT, "BlackboxManagement", Make<BlackboxManagement>},
    {SDMANAGEMENT, "SdManagement", Make<SdManagement>},
    {SDFORMAT, "SDFormat", Make<SDFormat>},
    {FIRMUP, "FirmUpWidget", Make<FirmUpWidget>},
    {DRIVINGSETTING, "DrivingSetting", Make<DrivingSetting>},
    {PARKINGSETTING, "ParkingSetting", Make<ParkingSetting>},
    {AUDIOSETTING, "AudioSetting", Make<AudioSetting>},
    {LCDSETTING, "LcdSetting", Make<LcdSetting>},
    {FILEDELMETHOD, "FileDeleteMethod", Make<FileDeleteMethod>},
    {FILEMANAGEMENT, "FileManagement", Make<FileManagement>},
    {LOWVOLDETECTIONSETTING, "LowVolDetectionSetting", Make<LowVolDetectionSetting>},
    {POWERCUTSETTING, "PowerCutSetting", Make<PowerCutSetting>},
    {VOLTAGECOMPENSATION, "VoltageCompensation", Make<VoltageCompensation>},
    {TIMELAYOUT, "TimeLayout", MakeTimeLayout},
    {TOUCHCOMP, "TouchComp", MakeTouchComp},
    {TOUCHTEST, "TouchMotion", MakeTouchTest},
    {MOTIONSETTING, "MotionSetting", Make<MotionSetting>},
    {FRONTLED, "FrontLed", Make<FrontLed>},
    {NUMBERSETLAYOUT, "NumberSetLayout", Make<NumberSetLayout>},
    {LEDFILELIST, "LedFileList", MakeLedList},
    {RECORDINGLIST, "RecordingFileList", MakeRecordingList},
    {PLAYER, "Player", MakePlayer},
};
}  // namespace

std::span<const ScreenRow> Screens() {
  return kScreens;
}

BaseWidget* MakeScreen(WidgetId id, MainWindow* window, QObject* arg) {
  const auto row =
      std::find_if(std::begin(kScreens), std::end(kScreens), [id](const ScreenRow& r) { return r.id == id; });
  if (row != std::end(kScreens)) return row->make(window, arg);
  qDebug("screen %d %s: not there", id, NameOf(id));
  return nullptr;
}
