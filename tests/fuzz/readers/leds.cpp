#include <algorithm>

#include "gui/led/ledfilemanager.h"
#include "tests/fuzz/readers/reader.h"

namespace {
constexpr char kList[] = "/opt/led.zel";
constexpr int kHead = 4;

void RequireRowsOf(LedFileManager& manager, int number) {
  const LED_ZEL& list = *manager.GetLedZel();
  const QList<Led_File_Item>& rows = *manager.GetLedFileItem();
  REQUIRE(list.Number == number && rows.size() == number && manager.GetValidLedList() == (number < kMostLedEntries));
  for (int i = 0; i < number; ++i) {
    REQUIRE(rows[i].index == i && rows[i].mode >= 0 && rows[i].mode <= 2);
    REQUIRE(rows[i].nickName.size() <= 20 && !rows[i].nickName.contains(QChar(0)));
  }
}
}  // namespace

void TakeLeds(const QByteArray& bytes) {
  const QString path = QLatin1String(kList);
  Root().Write(path, bytes);
  LedFileManager manager;
  manager.ReadLedFile();
  manager.AddLedListWidget();
  const LED_ZEL* list = manager.GetLedZel();
  REQUIRE((list == nullptr) == bytes.isEmpty());
  if (!list) return;
  REQUIRE(list->Number <= kMostLedEntries);
  if (list->Number == 0) {
    REQUIRE(manager.GetLedFileItem()->isEmpty());
    return;
  }
  const int number = list->Number;
  RequireRowsOf(manager, number);

  // A whole list is written as it was read.
  REQUIRE(manager.WritingLedFile(false));
  const qsizetype size = kHead + qsizetype{sizeof(LED_IDF)} * number;
  REQUIRE(Root().Read(path).size() == std::max(size, bytes.size()));
  if (bytes.size() >= size) REQUIRE(Root().Read(path) == bytes);

  // A number more, as long as there is room.
  const bool isRoom = number < kMostLedEntries;
  REQUIRE(manager.UpdateLedFile(QStringLiteral("010-1234")) == isRoom);
  REQUIRE(!manager.UpdateLedFile(QStringLiteral("010-1234-5678-9012")));
  manager.AddLedListWidget();
  RequireRowsOf(manager, number + isRoom);

  // Every second one is ticked, then deleted.
  QList<Led_File_Item> rows = *manager.GetLedFileItem();
  for (qsizetype i = 0; i < rows.size(); ++i) rows[i].checked = int(i % 2);
  manager.UpdateLedFile(0, &rows);
  for (int i = 0; i < rows.size(); ++i) REQUIRE(manager.GetLedZel()->Led_idf[i].Checked == i % 2);
  const int left = int(rows.size() + 1) / 2;
  manager.UpdateLedFile(1, &rows);
  REQUIRE(rows.size() == left);
  RequireRowsOf(manager, left);
  REQUIRE(manager.WritingLedFile(true));
  REQUIRE(Root().Read(path).size() == kHead + qsizetype{sizeof(LED_IDF)} * left);
}
