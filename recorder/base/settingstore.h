#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <array>
#include <optional>

#include "gui/vocabulary/vocabulary.h"

namespace recorder {

/// The recorder's settings: the 59 keys of the INI file that the interface reads at its start, and the packed block in
/// which it hands them back. The file holds at every moment what the recorder holds, and is where they are kept from
/// one run to the next.
class SettingStore {
public:
  /// `file` is the INI file.
  explicit SettingStore(const QString& file);

  /// The defaults, over them what the file holds, and the clock of now.
  void Load();

  /// The defaults and the clock of now.
  void Reset();

  /// A setting; 0 for an id without a key.
  int Get(Setting_Id id) const;

  /// Changes a setting; Save() makes it last. Ignores an id without a key.
  void Set(Setting_Id id, int value);

  /// Takes the packed block of the interface. The clock only when the block says that it was set, and only a date and
  /// time that exist. False, with one sentence in `error` and nothing taken, for a wrong length or model.
  bool TakeBlock(const QByteArray& bytes, QString* error);

  /// Writes the file, whole or not at all, if anything was set, reset or loaded since it was written.
  bool Save();

  /// The motion maps, "front" and "rear": 16 hex digits, bit 47 - i for cell i of eight columns and six rows.
  QJsonObject Motion() const;

  QJsonObject Values() const;                                 ///< every key with its value
  const QJsonObject& Block() const { return mBlock; }         ///< the last block, decoded; empty before the first
  const QJsonObject& BlockBefore() const { return mBefore; }  ///< the one before it

  /// The clock that the last block has set; nothing when it has set none.
  const std::optional<QDateTime>& TakenClock() const { return mTakenClock; }

private:
  void SetClock(const QDateTime& clock);

  QString mFile;
  std::array<double, 64> mValues{};  // by Setting_Id; a double holds every int and every float exactly
  QJsonObject mBlock;
  QJsonObject mBefore;
  std::optional<QDateTime> mTakenClock;
  bool mUnsaved = true;
};

}  // namespace recorder
