// Any bytes in the place of what comes from outside: the LED list and the two calibration files, each read, worked with
// and written back; the parking report, a recording with its name, the list of stops, a message of the status queue.
// Built with clang's fuzzer: the first byte says which of them.
#include <QDir>
#include <QFile>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "gui/firmware/msgthread.h"
#include "gui/led/ledfilemanager.h"
#include "gui/parking/pfileinfo.h"
#include "gui/recordings/recordingfilemanager.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "platform/devmgr_interface.h"
#include "platform/gui_interface.h"
#include "platform/sysctrl.h"
#include "tests/fake/testroot.h"

namespace {
void Require(bool holds) {
  if (!holds) std::abort();
}

const TestRoot& Root() {
  static const TestRoot root;
  return root;
}

void ReadLedList(const QByteArray& bytes) {
  Root().Write(QStringLiteral("/opt/led.zel"), bytes);
  LedFileManager manager;
  manager.ReadLedFile();
  manager.AddLedListWidget();
  const LED_ZEL* zel = manager.GetLedZel();
  Require(!zel || zel->Number <= kMostLedEntries);
  auto* items = manager.GetLedFileItem();
  Require(items->size() <= kMostLedEntries);
  for (qsizetype i = 0; i < items->size(); ++i) (*items)[i].checked = int(i % 2);
  manager.UpdateLedFile(0, items);
  manager.UpdateLedFile(1, items);
  manager.UpdateLedFile(QStringLiteral("010-1234"));
  manager.WritingLedFile(true);
}

void ReadCalibration() {  // of both files
  gEnvirnmentSettings.SettingTouchValue(true);
  const Touch_Value touch = gEnvirnmentSettings.mTouchValue.Load();
  for (const double value : {touch.alphaX, touch.alphaY, touch.betaX, touch.betaY, touch.deltaX, touch.deltaY})
    Require(std::isfinite(value));
  gEnvirnmentSettings.SettingTouchTuningValue(true);
  gEnvirnmentSettings.SettingTouchValue(false);
  gEnvirnmentSettings.SettingTouchTuningValue(false);
}

void ReadCoefficients(const QByteArray& bytes) {
  Root().Write(QStringLiteral("/opt/touch.zel"), bytes);
  ReadCalibration();
}
void ReadTuning(const QByteArray& bytes) {
  Root().Write(QStringLiteral("/opt/touch_tuning.zel"), bytes);
  ReadCalibration();
}

int SumOf(int (PFileInfo::*element)(int) const, const PFileInfo& info) {
  int sum = 0;
  for (int i = 0; i < info.getSepLevel(); ++i) sum += (info.*element)(i);
  return sum;
}

void ReadReport(const QByteArray& bytes) {
  const QString path = QStringLiteral("/tmp/.info.bin");
  Root().Write(path, bytes);
  PFileInfo info;
  if (!info.openDataFile(Root().Path(path))) return;
  const int impacts = info.getEvtParkFileCnt();
  const int motions = info.getMotionParkFileCnt();
  Require(info.getParkStartTime() > 0 && impacts >= 0 && motions >= 0);
  Require(4 * (qsizetype{5} + impacts + motions) <= bytes.size());
  Require(impacts == 0 || info.getEvtParkFileTimePointer()[impacts] == 0);
  Require(motions == 0 || info.getMotionParkFileTimePointer()[motions] == 0);
  info.parsingData();
  const int level = info.getSepLevel();
  Require(level == 1 || level == 3 || level == 5);
  if (level == 1) return;
  // One more of each kind that was recorded.
  Require(SumOf(&PFileInfo::getEvtValueElement, info) == (impacts == 0 ? 0 : impacts + 1));
  Require(SumOf(&PFileInfo::getMotionVlaueElement, info) == (motions == 0 ? 0 : motions + 1));
}

void ReadCard() {
  RecordingFileManager manager;
  if (!manager.ReadFileList(QStringLiteral("/mnt/mmc/"))) return;
  for (int i = 0; i < RECORDING_FILE_INDEX_MAX; ++i) {
    const FileItemList* list = manager.GetFileItem(i);
    if (list == nullptr) continue;
    for (qsizetype row = 0; row < list->size(); ++row) {
      const FileItem item = list->at(row);
      Require(item.recTime >= 0 && (item.camMode == 0 || item.camMode == 1));
    }
  }
}

// A name, a line break, and the file.
void ReadRecording(const QByteArray& bytes) {
  const qsizetype end = bytes.indexOf('\n');
  QByteArray name = bytes.left(std::clamp<qsizetype>(end, 0, 200)).replace('/', '_').replace('\0', '_');
  if (name.isEmpty() || name == "." || name == ".." || name == "Setup") return;
  const QString file = Root().Path(QStringLiteral("/mnt/mmc/")) + QFile::decodeName(name);
  QFile recording(file);
  if (!recording.open(QIODevice::WriteOnly)) return;
  recording.write(bytes.mid(end + 1));
  recording.close();
  ReadCard();
  recording.remove();
}

void ReadStops(const QByteArray& bytes) {
  const QString path = QStringLiteral("/mnt/mmc/Setup/record_stop.info");
  Root().Write(path, bytes);
  RecStopInfoList stops;
  Require(RecordingFileManager::GetRecordStopFileInfo(path, &stops));
  Require(stops.size() <= 10000);
  Root().Write(QStringLiteral("/mnt/mmc/rec0_20230101_120000.avi"), "RIFF");
  ReadCard();
  Root().Remove(QStringLiteral("/mnt/mmc/rec0_20230101_120000.avi"));
  Root().Remove(path);
}

// The bytes of a message, and behind them those of its payload.
QByteArray gPayload;

void TakeMessage(const QByteArray& bytes) {
  // There is no queue: its thread ends at once.
  static MsgThread* const link = [] {
    auto* made = new MsgThread(nullptr);  // NOLINT: owned by the process
    QObject::connect(
        made, &MsgThread::msgEvent, made, [](int event, int) { Require(event >= 1 && event <= 38); },
        Qt::DirectConnection);
    return made;
  }();
  GUI_MSG_BUF message{};
  const auto size = qsizetype{GUI_MSG_SIZE};
  std::memcpy(&message.cmd, bytes.constData(), size_t(std::min(size, bytes.size())));
  gPayload = bytes.mid(size);
  link->processMsg(&message);
}
}  // namespace

// The platform library, as far as the link to the recorder wants it.
int Gui_InitMessage() {
  return -1;
}
int Gui_InitSharedMemory() {
  return -1;
}
int ShareMemReadByMid(int, int offset, void* buffer, int length) {
  Require(offset >= 0 && length >= 0 && length <= int(sizeof(int)));
  if (length > gPayload.size()) return -1;
  std::memcpy(buffer, gPayload.constData(), size_t(length));
  return 0;
}
int ShareMemWriteByMid(int, int offset, void* data, int length) {
  Require(offset >= 0 && data == nullptr && length >= 0 && length <= GUI_SLOT_SIZE);
  return 0;
}
int SysDrvInit(int) {
  return 0;
}
int ControlSystemData(int, void*, int) {
  return -1;
}
int DevMgr_RegClient(int) {
  return -1;
}
int DevMgr_Control(int, void*, int) {
  return -1;
}
int ipnc_gio_write(int, int) {
  return -1;
}

// Nothing waits for a disk.
extern "C" int system(const char*) {  // NOLINT: the C library's name
  return 0;
}
extern "C" int fsync(int) {
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool prepared = [] {
    QDir(Root().Path(QStringLiteral("/"))).mkpath(QStringLiteral("opt"));
    GetConfig();
    return std::freopen("/dev/null", "w", stdout) != nullptr;  // the places of the stops
  }();
  if (!prepared || size == 0 || size > 8192) return 0;
  static constexpr void (*kReaders[])(const QByteArray&) = {ReadLedList,   ReadCoefficients, ReadTuning, ReadReport,
                                                            ReadRecording, ReadStops,        TakeMessage};
  kReaders[data[0] % std::size(kReaders)](QByteArray(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1)));
  return 0;
}
