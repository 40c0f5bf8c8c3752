#pragma once

#include <QByteArray>
#include <QString>

namespace recorder {

/// The firmware's files, below the root.
inline constexpr char kIniFile[] = "/tmp/config_init.ini";
inline constexpr char kManualEvent[] = "/tmp/ndf";
inline constexpr char kParkingReport[] = "/tmp/.info.bin";
/// The picture of the driver's, and the copy of it that the interface makes at its start.
inline constexpr char kOwnPicture[] = "/mnt/mmc/Setup/picture.bmp";
inline constexpr char kOwnPictureCopy[] = "/tmp/picture.bmp";
inline constexpr char kUpdateMarker[] = "/tmp/update.zel";
inline constexpr char kUpdateMarker2[] = "/tmp/update.zel2";
inline constexpr char kTouchCheckMarker[] = "/mnt/mmc/touch_check.txt";
inline constexpr char kTouchTestMarker[] = "/mnt/mmc/touch_test.txt";
inline constexpr char kTouchResetMarker[] = "/mnt/mmc/touch.txt";
/// The card, and where its files are while it is out.
inline constexpr char kCardFiles[] = "/mnt/mmc";
inline constexpr char kCardFilesAway[] = "/mnt/mmc.out";
inline constexpr char kClock[] = "/run/clock";
inline constexpr char kSocket[] = "/run/recorder.sock";
inline constexpr char kLedList[] = "/opt/led.zel";

/// Sizes in the list of the front LED: of its head and of an entry, and in an entry of the name and of the columns.
inline constexpr int kLedHeader = 4;
inline constexpr int kLedEntry = 155;
inline constexpr int kLedName = 20;
inline constexpr int kLedBytes = 65;
inline constexpr int kLedMost = 20;  ///< entries

/// Writes a file whole or not at all: beside it first, then renamed over it.
bool WriteWhole(const QString& path, const QByteArray& bytes);

/// Makes the folders of the device below `root`, removes what an earlier run left in /tmp, and sees to a good list of
/// the front LED. False, with one sentence in `error`, when a folder or a file cannot be made.
bool PrepareRoot(const QString& root, QString* error);

/// The four columns of a character of the LED's font, bit 0 the top one of five rows: digits, '-', some letters. Null
/// for any other.
const unsigned char* LedColumns(char character);

/// The list of the front LED as the device comes with it: the security pattern (ticked), the brand pattern, and six
/// more.
QByteArray FactoryLedList();

}  // namespace recorder
