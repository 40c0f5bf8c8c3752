#pragma once

#include <QList>
#include <QString>
#include <memory>

#include "gui/led/ledzel.h"

/// One row of the LED list.
struct Led_File_Item {
  QString icon;      ///< picture
  QString nickName;  ///< its bytes, one character each
  QString checkBox;  ///< picture
  QString iconBg;    ///< picture
  int checked = 0;   ///< 1: ticked
  int mode = 0;      ///< of the list: 0 basic, 1 sequential, 2 random
  int index = 0;     ///< in the file
};

/// The list of patterns of the front LED, and its file. The firmware reads the same file; whoever writes it sends
/// SEND_LED_FILE_UPDATE. Entry 0 is the security pattern, entry 1 the brand's. GUI thread.
class LedFileManager {
public:
  LedFileManager() { InitData(); }

  /// Reads the file. A head that cannot be right gives an empty list.
  void ReadLedFile();

  /// Writes the list to the file; `recreate`: what stands behind it there goes. False when the file is missing and not
  /// to be recreated, or cannot be written; the old file is then still there.
  bool WritingLedFile(bool recreate);

  /// Appends a number, digits and '-', at most 16 characters, and writes the file. False without a list, with a full
  /// one, for a longer number, or when the file is missing or cannot be written; the list in memory has then grown all
  /// the same, unless there was no place.
  bool UpdateLedFile(const QString& number);

  /// `mode` 0: takes the ticks of `items` over; 1: deletes the ticked entries. The rows are then built anew. Always
  /// true.
  bool UpdateLedFile(int mode, QList<Led_File_Item>* items);

  /// Builds the rows from the list.
  void AddLedListWidget();

  static bool isExistsLedFile();
  int GetValidLedList() const;  ///< -1 no list, 0 it is full, 1 there is room

  QList<Led_File_Item>* GetLedFileItem() { return &mLedFileItem; }
  const LED_ZEL* GetLedZel() const { return mLed_zel.get(); }  ///< null until it is read

  bool getExistsLedFileFlag() const { return mIsExistsLedFile; }
  void setExistsLedFileFlag(bool exists) { mIsExistsLedFile = exists; }
  bool GetIsCheckedSecurityLed() const { return mIsCheckedSecurityLed; }
  void SetIsCheckedSecurityLed(bool checked) { mIsCheckedSecurityLed = checked; }
  bool GetIsCheckedKorvoBlack() const { return mIsCheckedKorvoBlack; }
  void SetIsCheckedKorvoBlack(bool checked) { mIsCheckedKorvoBlack = checked; }
  bool GetIsAllDeleteCheckedFile() const { return mIsAllDeleteCheckedFile; }
  void SetIsAllDeleteCheckedFile(bool all) { mIsAllDeleteCheckedFile = all; }

private:
  void InitData();
  QByteArray FileBytes() const;
  void AddFileItem();
  void DeleteTicked(QList<Led_File_Item>* items);
  QString IconOf(int index, const LED_IDF& entry) const;

  std::unique_ptr<LED_ZEL> mLed_zel;
  QList<LED_IDF> mLedIdfList;
  QList<Led_File_Item> mLedFileItem;
  bool mIsExistsLedFile;
  int mZelNumber;  // of the entries in mLedIdfList
  int mZelSize;
  int mZelMode;
  bool mIsCheckedSecurityLed;
  bool mIsCheckedKorvoBlack;
  bool mIsAllDeleteCheckedFile = false;
};

extern LedFileManager gLedFileManager;
