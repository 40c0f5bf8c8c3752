#include <fcntl.h>
#include <linux/input.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <optional>

#include "gui/base/globals.h"
#include "gui/touch/paneldevice.h"
#include "gui/touch/touchthread.h"
#include "tests/fake/hostfake.h"
#include "tests/fuzz/readers/reader.h"

namespace {
constexpr qsizetype kRecord = 16;
constexpr qsizetype kMost = 4096;  // bytes; a FIFO takes more

struct Press {
  int x, y;
};
QList<Press> gPresses;

TouchThread& Reader() {
  static TouchThread* const reader = [] {
    gTouchDevice = Root().Path(QStringLiteral("/dev/input/none"));
    auto* made = new TouchThread(new HostFake);  // NOLINT: both owned by the process
    QObject::connect(
        made, &TouchThread::pressEvent, made,
        [](int, int x, int y) {
          gPresses.append({x, y});
        },
        Qt::DirectConnection);
    return made;
  }();
  return *reader;
}

PanelRecord RecordAt(const QByteArray& bytes, qsizetype at) {
  quint16 typeAndCode[2];
  qint32 value = 0;
  std::memcpy(typeAndCode, bytes.constData() + at + 8, sizeof typeAndCode);
  std::memcpy(&value, bytes.constData() + at + 12, sizeof value);
  return {typeAndCode[0], typeAndCode[1], value};
}

// What the device gives until there is nothing more.
QList<PanelRecord> ReadAll(PanelDevice& device, qsizetype mostReads) {
  QList<PanelRecord> records;
  for (qsizetype reads = 0; reads < mostReads; ++reads) {
    PanelRecord record;
    if (device.Read(&record) == PanelDevice::Got::Record) records << record;
  }
  return records;
}

// One press for each contact.
void RequirePresses(const QList<PanelRecord>& records) {
  qsizetype contacts = 0;
  bool isDown = false;
  for (const PanelRecord& record : records) {
    if (record.type != EV_ABS || record.code != ABS_PRESSURE) continue;
    const bool wasDown = std::exchange(isDown, (record.value & 0x1FF) != 0);
    if (isDown && !wasDown) ++contacts;
  }
  gPresses.clear();
  for (const PanelRecord& record : records) Reader().Take(record.type, record.code, record.value);
  REQUIRE(gPresses.size() == contacts && Reader().GetIsRelease() == !isDown);
  for (const Press& press : gPresses) REQUIRE(press.x >= 0 && press.x <= 480 && press.y >= 0 && press.y <= 320);
  Reader().Take(EV_ABS, ABS_PRESSURE, 0);
}
}  // namespace

// The first byte says where the others are cut into two writes.
void TakePanel(const QByteArray& bytes) {
  static const QByteArray path = [] {
    QByteArray made = QFile::encodeName(Root().Path(QStringLiteral("/dev/input/event0")));
    REQUIRE(mkfifo(made.constData(), 0600) == 0);
    return made;
  }();
  if (bytes.isEmpty()) return;
  const QByteArray written = bytes.mid(1, kMost);
  const qsizetype cut = std::uint8_t(bytes[0]) % (written.size() + 1);

  PanelDevice device(path.toStdString());
  REQUIRE(device.File() >= 0);
  const int writer = open(path.constData(), O_WRONLY | O_NONBLOCK);
  REQUIRE(writer >= 0);
  QList<PanelRecord> records;
  for (const QByteArray& part : {written.left(cut), written.mid(cut)}) {
    REQUIRE(write(writer, part.constData(), size_t(part.size())) == part.size());
    records += ReadAll(device, part.size() / kRecord + 3);
  }
  close(writer);
  PanelRecord record;
  REQUIRE(device.Read(&record) == PanelDevice::Got::Gone && device.File() >= 0);

  REQUIRE(records.size() == written.size() / kRecord);
  for (qsizetype i = 0; i < records.size(); ++i) {
    const PanelRecord expected = RecordAt(written, i * kRecord);
    REQUIRE(records[i].type == expected.type && records[i].code == expected.code);
    REQUIRE(records[i].value == expected.value ||
            (expected.code == ABS_PRESSURE && expected.value > 0 && records[i].value == 1));
  }
  RequirePresses(records);
}
