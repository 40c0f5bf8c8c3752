#include "gui/setup/mainmenu.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <algorithm>

#include "gui/base/devicepath.h"
#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/base/language.h"
#include "gui/recordings/recfilethread.h"
#include "gui/recordings/recordingfilemanager.h"
#include "gui/screen/clock.h"
#include "gui/screen/label.h"
#include "gui/screen/messagebox.h"
#include "gui/screen/screenhost.h"
#include "gui/screen/screenof.h"
#include "gui/settings/config.h"
#include "gui/setup/firmwareversion.h"

SCREEN(MAINMENU, MainMenu)

namespace {
constexpr int kStopToBrowse = 1;  // SEND_VIDEO_REC_STOP: the driver wants to see the recordings
constexpr useconds_t kRecordingEndUs = 1000000;
constexpr qint64 kDaySeconds = 86400;

constexpr LabelRow kFormatDay{"mSdFormatDayLabel", {320, 70, 158, 43}, 15, {255, 255, 255}, Qt::AlignHCenter};

int DayOfMonth(qint64 at) {
  return QDateTime::fromSecsSinceEpoch(at).date().day();
}

void LogThread(const RecFileThread& thread) {
  qDebug("redFileThread is %s", thread.isRunning() ? "running" : "not running");
  qDebug("redFileThread is %s", thread.isFinished() ? "Finished" : "not Finished");
}
}  // namespace

constexpr MainMenu::Tile MainMenu::kTiles[] = {
    {1, 1, Action{gMainMenu.PlayList, Press<&MainMenu::AskFileList>}},
    {1, 2, Door{gMainMenu.FileDelete, FILEDELMETHOD}},
    {1, 3, Door{gMainMenu.SdManagement, SDMANAGEMENT}},
    {2, 1, Door{gMainMenu.DrivingSetting, DRIVINGSETTING}},
    {2, 2, Door{gMainMenu.ParkingSetting, PARKINGSETTING}},
    {2, 3, Door{gMainMenu.BlackboxManagement, BLACKBOXMANAGEMENT}},
};

MainMenu::MainMenu(QWidget* parent) : TileScreen(parent, gMainMenu.Title, kTiles, Header::Home) {
  InitLabel();
}

void MainMenu::InitLabel() {
  AddFirmwareVersion(this);
  mSdFormatDayLabel = AddLabel(this, kFormatDay);
  mSdFormatDayLabel->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
}

void MainMenu::onResume() {
  qDebug("MainMenu onResume");
  SetSdFormatDay();
}

void MainMenu::onPause() {
  qDebug("MainMenu onPause");
}

// ---- days since the last format

int MainMenu::DaysBetween(qint64 then, qint64 now) {
  const qint64 days = (now - then) / kDaySeconds;
  if (days >= 1) return int(std::min<qint64>(days, 99999));
  return DayOfMonth(then) == DayOfMonth(now) ? 0 : 1;
}

int MainMenu::GetSinceDayOfSdFormat() {
  struct stat file {};
  if (stat(QFile::encodeName(DevicePath(QLatin1String(device::kFormatTime))).constData(), &file) != 0) return -1;
  return DaysBetween(file.st_ctime, gClock().toSecsSinceEpoch());
}

void MainMenu::SetSdFormatDay() {
  const int days = GetSinceDayOfSdFormat();
  if (days > 0) mSdFormatDayLabel->setText(Text::tr("포맷 후 %n일", nullptr, days));
}

// ---- the list of recordings

void MainMenu::AskFileList() {
  PaintMessageBox(ENTRY_FILELIST, false, 0, 0);
}

void MainMenu::MessageBoxHandler(int, int x, int y, int messageId) {
  if (messageId != ENTRY_FILELIST) return;
  const MessageBox::Button button = MessageBox::ButtonAt(x, y);
  if (button == MessageBox::Button::Left) EnterFileList();
  if (button == MessageBox::Button::Right) DelMessageBox();
}

void MainMenu::EnterFileList() {
  gMainWindow->StopParkingModeLcdOffTimer();
  PaintMessageBox(LOADING_FILELIST, false, 0, 0);
  const QPointer<MainMenu> here(this);
  gEventGate.ProcessEvents();
  if (!here) return;
  SendEvent(SEND_VIDEO_REC_STOP, kStopToBrowse, QString());
  usleep(kRecordingEndUs);  // the recorder closes the recording under way
  GetFileList();
}

void MainMenu::GetFileList() {
  gMainWindow->SetRecordingFileManager(nullptr);  // never two catalogues in memory
  gMainWindow->SetRecordingFileManager(std::make_unique<RecordingFileManager>());
  RecFileThread thread(this, gMainWindow->GetRecordingFileManager());
  thread.start(QThread::InheritPriority);
  LogThread(thread);
  while (!thread.wait(kSecondMs)) emit gMainWindow->longStepGoesOn();
  LogThread(thread);
  DelMessageBox();
  Next(RECORDINGLIST);
}
