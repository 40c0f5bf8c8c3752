#include "gui/led/ledfilemanager.h"

#include <QDataStream>
#include <QFile>
#include <algorithm>
#include <cstring>

#include "gui/base/atomicfile.h"
#include "gui/base/devicepath.h"
#include "gui/base/shell.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

LedFileManager gLedFileManager;

namespace {
constexpr qsizetype kLargest = 65536;  // bytes; a whole list has 3104
constexpr int kMostModes = 3;
constexpr qsizetype kLongestNumber = 16;
constexpr int kColumns = 4;  // of a glyph, the last one is blank

struct Glyph {
  char16_t character;
  std::uint8_t code;
  std::uint8_t columns[kColumns];
};
constexpr Glyph ledData[] = {
    {u'0', 0, {0x1F, 0x11, 0x1F, 0}},
    {u'1', 1, {0x11, 0x1F, 0x10, 0}},
    {u'2', 2, {0x1D, 0x15, 0x17, 0}},
    {u'3', 3, {0x15, 0x15, 0x1F, 0}},
    {u'4', 4, {0x07, 0x04, 0x1F, 0}},
    {u'5', 5, {0x17, 0x15, 0x1D, 0}},
    {u'6', 6, {0x1F, 0x15, 0x1D, 0}},
    {u'7', 7, {0x01, 0x01, 0x1F, 0}},
    {u'8', 8, {0x1F, 0x15, 0x1F, 0}},
    {u'9', 9, {0x17, 0x15, 0x1F, 0}},
    {u'-', IDF_SYMBOL04, {0x04, 0x04, 0x04, 0}},
};

template <size_t size>
void ReadField(QDataStream& stream, std::uint8_t (&field)[size]) {
  stream.readRawData(reinterpret_cast<char*>(field), int(size));
}

template <size_t size>
void WriteField(QDataStream& stream, const std::uint8_t (&field)[size]) {
  stream.writeRawData(reinterpret_cast<const char*>(field), int(size));
}

LED_IDF ReadEntry(QDataStream& stream) {
  LED_IDF entry{};
  quint8 checked = 0;
  quint16 count = 0, size = 0;
  stream >> checked;
  ReadField(stream, entry.NickName);
  stream >> count;
  ReadField(stream, entry.IdfName);
  stream >> size;
  ReadField(stream, entry.IdfData);
  entry.Checked = checked;
  entry.IdfCount = count;
  entry.RealSize = size;
  return entry;
}

void WriteEntry(QDataStream& stream, const LED_IDF& entry) {
  stream << quint8{entry.Checked};
  WriteField(stream, entry.NickName);
  stream << quint16{entry.IdfCount};
  WriteField(stream, entry.IdfName);
  stream << quint16{entry.RealSize};
  WriteField(stream, entry.IdfData);
}

// Digits and '-'; any other character has no glyph, and only its separator.
LED_IDF NumberEntry(const QString& number) {
  LED_IDF entry{};
  const QByteArray name = number.toLatin1();
  std::memcpy(entry.NickName, name.constData(), size_t(name.size()));
  entry.IdfCount = std::uint16_t(2 * number.size());
  entry.RealSize = std::uint16_t(kColumns * number.size());
  std::uint8_t* code = entry.IdfName;
  std::uint8_t* columns = entry.IdfData;
  for (const QChar character : number) {
    const auto* glyph = std::find_if(std::begin(ledData), std::end(ledData),
                                     [character](const Glyph& row) { return row.character == character.unicode(); });
    if (glyph != std::end(ledData)) {
      *code++ = glyph->code;
      columns = std::copy(std::begin(glyph->columns), std::end(glyph->columns), columns);
    }
    *code++ = '$';
  }
  return entry;
}

QString LedFile() {
  return DevicePath(QLatin1String(device::kLedList));
}

// All of it; nothing of a pipe or of gigabytes in its place.
FileRead ReadList(QByteArray* bytes) {
  const FileRead read = ReadFile(LedFile(), kLargest + 1, bytes);
  return bytes->size() > kLargest ? FileRead::NoFile : read;
}
}  // namespace

void LedFileManager::InitData() {
  mZelNumber = mZelSize = mZelMode = 0;
  mIsCheckedSecurityLed = mIsCheckedKorvoBlack = false;
  mIsExistsLedFile = true;
}

bool LedFileManager::isExistsLedFile() {
  return QFile::exists(LedFile());
}

int LedFileManager::GetValidLedList() const {
  if (!mLed_zel) return -1;
  return mLed_zel->Number == kMostLedEntries ? 0 : 1;
}

// ---- the file

void LedFileManager::ReadLedFile() {
  QByteArray bytes;
  const FileRead read = ReadList(&bytes);
  if (read == FileRead::Missing) {
    mIsExistsLedFile = false;
    return;
  }
  if (read != FileRead::Whole) {
    qDebug("led: the file cannot be opened");
    return;
  }
  if (bytes.isEmpty()) return;
  mLed_zel = std::make_unique<LED_ZEL>();
  QDataStream stream(bytes);
  stream.setByteOrder(QDataStream::LittleEndian);
  quint8 number = 0, mode = 0;
  quint16 size = 0;
  stream >> number >> size >> mode;
  if (stream.status() != QDataStream::Ok || number == 0 || number > kMostLedEntries || mode >= kMostModes) return;
  mLed_zel->Number = number;
  mLed_zel->Size = size;
  mLed_zel->Mode = mode;
  for (int i = 0; i < number; ++i) mLed_zel->Led_idf[i] = ReadEntry(stream);
}

QByteArray LedFileManager::FileBytes() const {
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setByteOrder(QDataStream::LittleEndian);
  stream << quint8{mLed_zel->Number} << quint16{mLed_zel->Size} << quint8{mLed_zel->Mode};
  for (int i = 0; i < mLed_zel->Number; ++i) WriteEntry(stream, mLed_zel->Led_idf[i]);
  return bytes;
}

bool LedFileManager::WritingLedFile(bool recreate) {
  if (!mLed_zel) return false;
  QByteArray bytes = FileBytes();
  QByteArray old;
  const FileRead read = ReadList(&old);
  if (read != FileRead::Whole && !(recreate && read == FileRead::Missing)) return false;
  if (!recreate) bytes += old.mid(bytes.size());
  if (!WriteAtomically(LedFile(), bytes)) return false;
  SyncFiles();
  return true;
}

bool LedFileManager::UpdateLedFile(const QString& number) {
  if (!mLed_zel || mLed_zel->Number >= kMostLedEntries || number.size() > kLongestNumber) return false;
  mLed_zel->Led_idf[mLed_zel->Number] = NumberEntry(number);
  mLed_zel->Number = std::uint8_t(mLed_zel->Number + 1);
  mLed_zel->Mode = std::uint8_t(std::clamp(gEnvirnmentSettings.mSetting.led_mode, 0, kMostModes - 1));
  return WritingLedFile(false);
}

// ---- the rows

bool LedFileManager::UpdateLedFile(int mode, QList<Led_File_Item>* items) {
  if (!mLed_zel) return true;
  if (mode == 0) {
    const int rows = std::min(int(items->size()), kMostLedEntries);
    for (int i = 0; i < rows; ++i) mLed_zel->Led_idf[i].Checked = items->at(i).checked == 1 ? 1 : 0;
  } else if (mode == 1) {
    DeleteTicked(items);
  }
  AddLedListWidget();
  return true;
}

void LedFileManager::DeleteTicked(QList<Led_File_Item>* items) {
  for (qsizetype i = std::min(items->size(), mLedIdfList.size()) - 1; i >= 0; --i) {
    if (items->at(i).checked != 1) continue;
    items->removeAt(i);
    mLedIdfList.removeAt(i);
    --mZelNumber;
  }
  if (!mLedIdfList.isEmpty())
    mIsAllDeleteCheckedFile =
        std::none_of(mLedIdfList.begin(), mLedIdfList.end(), [](const LED_IDF& entry) { return entry.Checked == 1; });
  *mLed_zel = {};
  mLed_zel->Number = std::uint8_t(mZelNumber);
  mLed_zel->Size = std::uint16_t(mZelSize);
  mLed_zel->Mode = std::uint8_t(mZelMode);
  std::copy(mLedIdfList.begin(), mLedIdfList.end(), mLed_zel->Led_idf);
  // The security pattern rather than nothing.
  if (mLed_zel->Number > 0 && mIsAllDeleteCheckedFile) mLed_zel->Led_idf[0].Checked = 1;
}

void LedFileManager::AddLedListWidget() {
  if (!mLed_zel || mLed_zel->Number == 0) return;
  mZelNumber = mLed_zel->Number;
  mZelSize = mLed_zel->Size;
  mZelMode = mLed_zel->Mode;
  mLedIdfList = QList<LED_IDF>(mLed_zel->Led_idf, mLed_zel->Led_idf + mZelNumber);
  AddFileItem();
}

QString LedFileManager::IconOf(int index, const LED_IDF& entry) const {
  if (index > 0 && entry.Checked != 1) return gLedFileList.Blank;
  return gLedFileList.Order.Image[index == 0 ? 0 : mZelMode].ReleaseImage;
}

void LedFileManager::AddFileItem() {
  mLedFileItem.clear();
  mIsCheckedKorvoBlack = false;
  for (int i = 0; i < mLedIdfList.size(); ++i) {
    const LED_IDF& entry = mLedIdfList[i];
    const bool checked = entry.Checked == 1;
    if (i == 0) mIsCheckedSecurityLed = checked;
    if (i == 1) mIsCheckedKorvoBlack = checked;
    const auto* name = reinterpret_cast<const char*>(entry.NickName);
    mLedFileItem.append({IconOf(i, entry), QString::fromLatin1(name, qsizetype(qstrnlen(name, sizeof entry.NickName))),
                         checked ? gLedFileList.Checked : gLedFileList.Unchecked, gFileList.ItemBg, entry.Checked,
                         mZelMode, i});
  }
}
