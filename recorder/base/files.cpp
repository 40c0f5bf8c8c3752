#include "recorder/base/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

namespace recorder {
namespace {

struct Glyph {
  char character;
  char code;
  unsigned char columns[4];  // bit 0 is the top of five rows; the last column keeps the distance
};

constexpr Glyph kGlyphs[] = {
    {'0', 0, {0x1F, 0x11, 0x1F, 0}},  {'1', 1, {0x11, 0x1F, 0x10, 0}},  {'2', 2, {0x1D, 0x15, 0x17, 0}},
    {'3', 3, {0x15, 0x15, 0x1F, 0}},  {'4', 4, {0x07, 0x04, 0x1F, 0}},  {'5', 5, {0x17, 0x15, 0x1D, 0}},
    {'6', 6, {0x1F, 0x15, 0x1D, 0}},  {'7', 7, {0x01, 0x01, 0x1F, 0}},  {'8', 8, {0x1F, 0x15, 0x1F, 0}},
    {'9', 9, {0x17, 0x15, 0x1F, 0}},  {'-', 40, {0x04, 0x04, 0x04, 0}}, {'K', 20, {0x1F, 0x04, 0x1B, 0}},
    {'O', 24, {0x1F, 0x11, 0x1F, 0}}, {'R', 27, {0x1F, 0x05, 0x1A, 0}}, {'V', 31, {0x0F, 0x10, 0x0F, 0}},
    {'|', 37, {0x1F, 0, 0x1F, 0}},    {'A', 10, {0x1E, 0x05, 0x1E, 0}}, {'B', 11, {0x1F, 0x15, 0x0A, 0}},
    {'E', 14, {0x1F, 0x15, 0x11, 0}}, {'H', 17, {0x1F, 0x04, 0x1F, 0}}, {'N', 23, {0x1F, 0x06, 0x1F, 0}},
    {'S', 28, {0x12, 0x15, 0x09, 0}}, {'T', 29, {0x01, 0x1F, 0x01, 0}}, {'W', 32, {0x1F, 0x08, 0x1F, 0}},
    {'Y', 34, {0x03, 0x1C, 0x03, 0}},
};

void AppendCount(QByteArray* bytes, qsizetype count) {
  bytes->append(static_cast<char>(count & 0xFF)).append(static_cast<char>(count >> 8));
}

QByteArray LedEntry(bool shown, const char* name, const char* text) {
  QByteArray codes;
  QByteArray columns;
  for (const char* character = text; *character; ++character)
    for (const Glyph& glyph : kGlyphs)
      if (glyph.character == *character) {
        codes.append(glyph.code).append('$');
        columns.append(reinterpret_cast<const char*>(glyph.columns), sizeof glyph.columns);
      }
  QByteArray entry(1, shown ? 1 : 0);
  entry.append(QByteArray(name).leftJustified(kLedName, '\0', true));
  AppendCount(&entry, codes.size());
  entry.append(codes.leftJustified(kLedBytes, '\0', true));
  AppendCount(&entry, columns.size());
  return entry.append(columns.leftJustified(kLedBytes, '\0', true));
}

bool IsGoodLedList(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return false;
  const QByteArray header = file.read(kLedHeader);
  if (header.size() != kLedHeader) return false;
  const int number = static_cast<unsigned char>(header[0]);
  const int mode = static_cast<unsigned char>(header[3]);
  return number >= 2 && number <= kLedMost && mode <= 2 && file.size() >= kLedHeader + kLedEntry * number;
}

}  // namespace

bool WriteWhole(const QString& path, const QByteArray& bytes) {
  QFile file(path + QLatin1String(".new"));
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) return false;
  file.close();
  // QFile::rename does not replace.
  return std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData()) == 0;
}

const unsigned char* LedColumns(char character) {
  for (const Glyph& glyph : kGlyphs)
    if (glyph.character == character) return glyph.columns;
  return nullptr;
}

QByteArray FactoryLedList() {
  // The names are EUC-KR: 연락처 (telephone), 초보운전 (beginner), 아기가 타고 있어요 (a baby is on board), 감사합니다
  // (thanks), 미안합니다 (sorry).
  const QByteArray entries =
      LedEntry(true, "Security LED", "||||") + LedEntry(false, "Korvo Black", "KORVO") +
      LedEntry(false, "1234", "1234") + LedEntry(false, "\xBF\xAC\xB6\xF4\xC3\xB3", "010-1234-5678") +
      LedEntry(false, "\xC3\xCA\xBA\xB8\xBF\xEE\xC0\xFC", "NEW") +
      LedEntry(false, "\xBE\xC6\xB1\xE2\xB0\xA1 \xC5\xB8\xB0\xED \xC0\xD6\xBE\xEE\xBF\xE4", "BABY") +
      LedEntry(false, "\xB0\xA8\xBB\xE7\xC7\xD5\xB4\xCF\xB4\xD9", "THANKS") +
      LedEntry(false, "\xB9\xCC\xBE\xC8\xC7\xD5\xB4\xCF\xB4\xD9", "SORRY");
  QByteArray list(1, static_cast<char>(entries.size() / kLedEntry));
  AppendCount(&list, entries.size());
  return list.append('\0').append(entries);
}

bool PrepareRoot(const QString& root, QString* error) {
  // The pictures may be a link to where they were drawn.
  QStringList folders{QStringLiteral("/opt/gui/ini"), QStringLiteral("/mnt/mmc/Setup"), QStringLiteral("/mnt/nand"),
                      QStringLiteral("/tmp")};
  if (!QFileInfo(root + QLatin1String("/opt/gui/images")).isSymLink()) folders << QStringLiteral("/opt/gui/images");
  for (const QString& folder : folders)
    if (!QDir().mkpath(root + folder)) {
      *error = QStringLiteral("The folder %1 cannot be made.").arg(root + folder);
      return false;
    }

  QDir temporary(root + QLatin1String("/tmp"));
  const QStringList stale = temporary.entryList({QStringLiteral("ndf"), QStringLiteral(".info.bin"),
                                                 QStringLiteral("update.zel*"), QStringLiteral("picture.bmp")},
                                                QDir::Files | QDir::Hidden | QDir::System);
  for (const QString& name : stale) temporary.remove(name);

  const QString leds = root + QLatin1String(kLedList);
  if (!IsGoodLedList(leds) && !WriteWhole(leds, FactoryLedList())) {
    *error = QStringLiteral("The file %1 cannot be written.").arg(leds);
    return false;
  }
  return true;
}

}  // namespace recorder
