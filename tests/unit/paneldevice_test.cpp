#include "gui/touch/paneldevice.h"

#include <fcntl.h>
#include <linux/uinput.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <map>
#include <optional>

namespace {
/// What a character device of the tests says of itself: its axes, and whether it is a device of the kernel's input.
struct Knowledge {
  std::map<int, input_absinfo> axes;
};
std::optional<Knowledge> gKnown;

using Told = QList<QList<int>>;
}  // namespace

// In place of the C library's: the terminal that stands for a touch panel answers as one.
extern "C" int ioctl(int file, unsigned long request, ...) {
  va_list list;
  va_start(list, request);
  void* const argument = va_arg(list, void*);
  va_end(list);
  if (gKnown && _IOC_TYPE(request) == 'E') {
    if (_IOC_NR(request) == _IOC_NR(EVIOCGBIT(EV_ABS, 0))) {
      auto* bits = static_cast<unsigned long*>(argument);
      std::memset(bits, 0, _IOC_SIZE(request));
      for (const auto& [axis, known] : gKnown->axes)
        bits[size_t(axis) / (sizeof(long) * CHAR_BIT)] |= 1UL << (size_t(axis) % (sizeof(long) * CHAR_BIT));
      return 0;
    }
    for (const auto& [axis, known] : gKnown->axes) {
      if (request != EVIOCGABS(unsigned(axis))) continue;
      std::memcpy(argument, &known, sizeof known);
      return 0;
    }
  }
  return int(syscall(SYS_ioctl, file, request, argument));
}

class PanelDeviceTest : public QObject {
  Q_OBJECT

private:
  QTemporaryDir mFolder;
  const QString mPath = mFolder.filePath("panel");
  int mMaster = -1, mSlave = -1;

  static input_absinfo Axis(int value, int least, int most) {
    input_absinfo axis{};
    axis.value = value;
    axis.minimum = least;
    axis.maximum = most;
    return axis;
  }
  /// A character device at mPath that says this of itself.
  void MakeDevice(const std::map<int, input_absinfo>& axes) {
    termios raw{};
    cfmakeraw(&raw);
    QCOMPARE(openpty(&mMaster, &mSlave, nullptr, &raw, nullptr), 0);
    QVERIFY(QFile::link(QString::fromLocal8Bit(ttyname(mSlave)), mPath));
    gKnown = Knowledge{axes};
  }
  void Write(const Told& records) const {
    for (const QList<int>& record : records) {
      input_event event{};
      event.type = quint16(record[0]);
      event.code = quint16(record[1]);
      event.value = record[2];
      QCOMPARE(write(mMaster, &event, sizeof event), ssize_t(sizeof event));
    }
  }
  /// What comes of it until `last`, of which the device tells nothing else.
  static Told Read(PanelDevice& device, const QList<int>& last) {
    Told told;
    while (told.isEmpty() || told.last() != last) {
      pollfd waited{device.File(), POLLIN, 0};
      if (poll(&waited, 1, 20000) != 1) return told << QList<int>{-1};
      PanelRecord record;
      const PanelDevice::Got got = device.Read(&record);
      if (got == PanelDevice::Got::Record) told << QList<int>{record.type, record.code, record.value};
      if (got == PanelDevice::Got::Gone || got == PanelDevice::Got::End) return told << QList<int>{-2};
    }
    told.removeLast();
    return told;
  }
  /// In axis 5, which is nobody's.
  static inline const QList<int> kLast{EV_ABS, 5, 1};

private slots:
  void cleanup() {
    gKnown.reset();
    for (int* file : {&mMaster, &mSlave})
      if (*file >= 0) close(std::exchange(*file, -1));
    QFile::remove(mPath);
  }

  void valuesInUnitsOfThePanel_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::addColumn<int>("units");
    const auto row = [](int value, int least, int most, int units) {
      QTest::addRow("%d of %d..%d", value, least, most) << value << least << most << units;
    };
    row(0, 0, 511, 0);
    row(511, 0, 511, 511);
    row(512, 0, 511, 512);  // as it is: who reads it keeps its low bits
    row(-1, 0, 511, -1);
    row(0, 0, 4095, 0);
    row(4, 0, 4095, 0);
    row(5, 0, 4095, 1);
    row(2048, 0, 4095, 256);
    row(4095, 0, 4095, 511);
    row(5000, 0, 4095, 511);
    row(-3, 0, 4095, 0);
    row(200, 200, 3900, 0);
    row(100, 200, 3900, 0);
    row(2050, 200, 3900, 256);
    row(3900, 200, 3900, 511);
    row(-500, -500, 500, 0);
    row(0, -500, 500, 256);
    row(500, -500, 500, 511);
    row(0, 0, 1, 0);
    row(1, 0, 1, 511);
    row(INT_MIN, INT_MIN, INT_MAX, 0);
    row(0, INT_MIN, INT_MAX, 256);
    row(INT_MAX, INT_MIN, INT_MAX, 511);
    // ranges that are none
    row(300, 0, 0, 300);
    row(300, 511, 0, 300);
    row(300, INT_MAX, INT_MIN, 300);
  }
  void valuesInUnitsOfThePanel() {
    QFETCH(int, value);
    QFETCH(int, least);
    QFETCH(int, most);
    QTEST(InPanelUnits(value, {least, most}), "units");
  }

  void anotherRangeIsScaled() {
    MakeDevice({{ABS_X, Axis(1000, 0, 4095)}, {ABS_Y, Axis(0, 200, 3900)}, {ABS_PRESSURE, Axis(0, 0, 1023)}});
    PanelDevice device(mPath.toStdString());
    QCOMPARE(device.Start().size(), 2U);
    QCOMPARE(device.Start()[0].code, ABS_X);
    QCOMPARE(device.Start()[0].value, 125);
    QCOMPARE(device.Start()[1].code, ABS_Y);
    QCOMPARE(device.Start()[1].value, 0);
    const Told sent{{3, 0, 4095}, {3, 1, 2050}, {3, 24, 512}, {3, 24, 1}, {3, 24, 0}, {0, 0, 0}, kLast};
    Write(sent);
    QCOMPARE(Read(device, kLast), (Told{{3, 0, 511}, {3, 1, 256}, {3, 24, 256}, {3, 24, 1}, {3, 24, 0}, {0, 0, 0}}));
  }
  void anOffsetPressureIsReleasedAtItsLeast() {
    MakeDevice({{ABS_X, Axis(0, 0, 511)}, {ABS_Y, Axis(0, 0, 511)}, {ABS_PRESSURE, Axis(0, 100, 50000)}});
    PanelDevice device(mPath.toStdString());
    Write({{3, 24, 101}, {3, 24, 50000}, {3, 24, 100}, {3, 24, 0}, kLast});
    QCOMPARE(Read(device, kLast), (Told{{3, 24, 1}, {3, 24, 511}, {3, 24, 0}, {3, 24, 0}}));
  }
  void aRangeThatIsNoneIsThePanels() {
    MakeDevice({{ABS_X, Axis(300, 0, 0)}, {ABS_Y, Axis(7, 511, 0)}, {ABS_PRESSURE, Axis(0, 0, 0)}});
    PanelDevice device(mPath.toStdString());
    const Told sent{{3, 0, 300}, {3, 1, 511}, {3, 24, 200}, {3, 24, 0}};
    Write(sent + Told{kLast});
    QCOMPARE(Read(device, kLast), sent);
  }
  void whatIsNoInputDeviceIsThePanel() {
    MakeDevice({});
    gKnown.reset();
    PanelDevice device(mPath.toStdString());
    QVERIFY(device.Start().empty());
    const Told sent{{3, 0, 300}, {3, 1, 1000}, {1, BTN_TOUCH, 1}, {3, 24, 200}, {3, 24, 0}};
    Write(sent + Told{kLast});
    QCOMPARE(Read(device, kLast), sent);
  }

  // The key comes before the position that belongs to it.
  void withoutPressureTheKeyTellsTheTouch() {
    MakeDevice({{ABS_X, Axis(0, 0, 1022)}, {ABS_Y, Axis(0, 0, 511)}});
    PanelDevice device(mPath.toStdString());
    Write({{1, BTN_TOUCH, 1},
           {3, 0, 200},
           {3, 1, 40},
           {0, 0, 0},  // down
           {3, 0, 202},
           {0, 0, 0},  // moved
           {1, 0x110, 1},
           {0, 0, 0},  // another key
           {1, BTN_TOUCH, 0},
           {0, 0, 0},
           {0, 0, 0},  // up
           {3, 0, 400},
           {0, 0, 0},
           kLast});
    QCOMPARE(Read(device, kLast),
             (Told{{3, 0, 100}, {3, 1, 40}, {3, 24, 1}, {3, 0, 101}, {3, 24, 1}, {3, 24, 1}, {3, 24, 0}, {3, 0, 200}}));
  }
  void withPressureTheKeyTellsNothing() {
    MakeDevice({{ABS_X, Axis(0, 0, 511)}, {ABS_Y, Axis(0, 0, 511)}, {ABS_PRESSURE, Axis(0, 0, 511)}});
    PanelDevice device(mPath.toStdString());
    Write({{1, BTN_TOUCH, 1}, {3, 0, 200}, {0, 0, 0}, kLast});
    QCOMPARE(Read(device, kLast), (Told{{1, BTN_TOUCH, 1}, {3, 0, 200}, {0, 0, 0}}));
  }

  // The kernel's own: made, read, taken away, made again.
  void aDeviceOfTheKernel() {
    const int maker = open("/dev/uinput", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (maker < 0) QSKIP("/dev/uinput cannot be opened");
    const auto make = [maker](int most) {
      for (const auto& [request, bit] :
           {std::pair(UI_SET_EVBIT, EV_ABS), std::pair(UI_SET_EVBIT, EV_KEY), std::pair(UI_SET_KEYBIT, BTN_TOUCH)})
        if (ioctl(maker, request, reinterpret_cast<void*>(long{bit})) < 0) return QString();
      for (const int axis : {ABS_X, ABS_Y}) {
        uinput_abs_setup setup{};
        setup.code = quint16(axis);
        setup.absinfo.maximum = most;
        if (ioctl(maker, UI_ABS_SETUP, &setup) < 0) return QString();
      }
      uinput_setup setup{};
      std::strcpy(setup.name, "dashcam test panel");
      char name[64] = {};
      if (ioctl(maker, UI_DEV_SETUP, &setup) < 0 || ioctl(maker, UI_DEV_CREATE, nullptr) < 0 ||
          ioctl(maker, UI_GET_SYSNAME(sizeof name), name) < 0)
        return QString();
      const QDir folder(QStringLiteral("/sys/class/input/") + QLatin1String(name));
      const QStringList events = folder.entryList({"event*"}, QDir::Dirs);
      return events.isEmpty() ? QString() : QStringLiteral("/dev/input/") + events.first();
    };
    for (const int most : {1022, 4095}) {
      const QString path = make(most);
      QVERIFY(!path.isEmpty());
      QTRY_VERIFY(access(path.toLocal8Bit().constData(), R_OK) == 0);
      PanelDevice device(path.toStdString());
      QVERIFY(device.File() >= 0);
      mMaster = maker;
      Write({{1, BTN_TOUCH, 1}, {3, 0, most}, {3, 1, most / 2}, {0, 0, 0}});
      mMaster = -1;
      QCOMPARE(Read(device, {3, 24, 1}), (Told{{3, 0, 511}, {3, 1, InPanelUnits(most / 2, {0, most})}}));
      QCOMPARE(ioctl(maker, UI_DEV_DESTROY, nullptr), 0);
      PanelRecord record;
      PanelDevice::Got got = PanelDevice::Got::Nothing;
      QTRY_VERIFY((got = device.Read(&record)) == PanelDevice::Got::Gone);
      QCOMPARE(device.File(), -1);
    }
    close(maker);
  }
};

QTEST_GUILESS_MAIN(PanelDeviceTest)
#include "paneldevice_test.moc"
