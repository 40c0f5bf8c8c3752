#pragma once

#include <QString>

/// The absolute paths of the camera. All of them go through DevicePath, so that a bench or a test can have its own
/// root.
namespace device {
inline constexpr char kTouchDevice[] = "/dev/input/event0";
inline constexpr char kBacklight[] = "/proc/pwm/pwm0";
inline constexpr char kDropCaches[] = "/proc/sys/vm/drop_caches";
inline constexpr char kImages[] = "/opt/gui/images/";
inline constexpr char kIniFolder[] = "/opt/gui/ini";
inline constexpr char kConfigFirm[] = "/opt/gui/ini/config_firm.ini";
inline constexpr char kConfigInit[] = "/tmp/config_init.ini";
inline constexpr char kClickSound[] = "/opt/ipnc/voice/touch.wav";
inline constexpr char kLedList[] = "/opt/led.zel";
inline constexpr char kTouchCoefficients[] = "/opt/touch.zel";
inline constexpr char kTouchTuning[] = "/opt/touch_tuning.zel";
inline constexpr char kTouchReset[] = "/mnt/mmc/touch.txt";
inline constexpr char kTouchCheckMarker[] = "/mnt/mmc/touch_check.txt";
inline constexpr char kTouchTestMarker[] = "/mnt/mmc/touch_test.txt";
inline constexpr char kTestModeMarker[] = "/mnt/mmc/test_mode.txt";
inline constexpr char kPointerCalibration[] = "/mnt/nand/pointercal";
inline constexpr char kCard[] = "/mnt/mmc/";
inline constexpr char kRecordStops[] = "/mnt/mmc/Setup/record_stop.info";
inline constexpr char kUpdateMarker[] = "/tmp/update.zel";
inline constexpr char kUpdateMarker2[] = "/tmp/update.zel2";
inline constexpr char kUpdateStartPicture[] = "/usr/local/etc/fwupdatestart.bmp";
inline constexpr char kUpdateRunsPicture[] = "/usr/local/etc/fwupdating.bmp";
inline constexpr char kUpdateEndPicture[] = "/usr/local/etc/fwupdateend.bmp";
inline constexpr char kUpdateBarPicture[] = "/usr/local/etc/bottom.bmp";
inline constexpr char kManualEventMarker[] = "/tmp/ndf";
inline constexpr char kParkingReport[] = "/tmp/.info.bin";
inline constexpr char kFormatTime[] = "/mnt/mmc/Setup/.format_time";
inline constexpr char kCustomPictureOnCard[] = "/mnt/mmc/Setup/picture.bmp";
inline constexpr char kCustomPicture[] = "/tmp/picture.bmp";
}  // namespace device

/// An absolute path of the camera below the root: environment DASHCAM_ROOT, empty on the camera. The root is read once.
QString DevicePath(const QString& path);

/// The same for a shell command: quoted when the root holds anything a shell would read.
QString ShellPath(const QString& path);
