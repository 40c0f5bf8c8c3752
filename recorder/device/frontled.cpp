#include "recorder/device/frontled.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QStringDecoder>
#include <QtEndian>
#include <algorithm>

#include "recorder/base/files.h"

namespace recorder {
namespace {

// Offsets in an entry.
constexpr int kChecked = 0;
constexpr int kName = 1;
constexpr int kColumnCount = 88;
constexpr int kColumns = 90;

constexpr int kModes = 3;

int ByteAt(const QByteArray& bytes, qsizetype at) {
  return static_cast<unsigned char>(bytes[at]);
}

QString DecodedName(const QByteArray& entry) {
  QByteArray name = entry.mid(kName, kLedName);
  if (const qsizetype end = name.indexOf('\0'); end >= 0) name.truncate(end);
  QStringDecoder korean("EUC-KR");
  return korean.isValid() ? QString(korean(name)) : QString::fromLatin1(name);
}

QByteArray ColumnsOf(const QByteArray& entry) {
  const int count = qFromLittleEndian<quint16>(entry.constData() + kColumnCount);
  return entry.mid(kColumns, std::min(count, kLedBytes));
}

}  // namespace

bool FrontLed::Take(const QByteArray& list, QList<Pattern>* shown) {
  if (list.size() < kLedHeader) return false;
  const int number = ByteAt(list, 0);
  if (number < 1 || number > kLedMost || ByteAt(list, 3) >= kModes || list.size() < kLedHeader + number * kLedEntry)
    return false;
  for (int i = 0; i < number; ++i) {
    const QByteArray entry = list.mid(kLedHeader + i * kLedEntry, kLedEntry);
    if (ByteAt(entry, kChecked) != 1) continue;
    shown->append({DecodedName(entry), ColumnsOf(entry)});
    if (i == 0) break;  // the security pattern
  }
  return true;
}

void FrontLed::Read() {
  mShown.clear();
  QFile file(mHub.Path(kLedList));
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly) ||
      !Take(file.read(kLedHeader + kLedMost * kLedEntry), &mShown))
    mHub.sink.Note(QStringLiteral("The list of the front LED cannot be read."));
}

QJsonObject FrontLed::State() const {
  QJsonArray entries;
  for (const Pattern& pattern : mShown)
    entries.append(QJsonObject{{QStringLiteral("name"), pattern.name},
                               {QStringLiteral("columns"), QLatin1String(pattern.columns.toHex())}});
  return {{QStringLiteral("mode"), mHub.settings.Get(Set_Cfg_Setting_Change)}, {QStringLiteral("entries"), entries}};
}

}  // namespace recorder
