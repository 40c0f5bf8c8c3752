#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <map>
#include <optional>

namespace recorder {

/// The packed block in which the interface hands all settings back, unpacked.
struct SetupBlock {
  static constexpr int kSize = 129;
  static constexpr int kModel = 200;  ///< byte 19 of every block

  QJsonObject fields;              ///< every field with its value
  std::map<int, double> settings;  ///< what is kept, by Setting_Id
  std::optional<QDateTime> clock;  ///< nothing when it sets none, or one that does not exist

  /// Nothing, with one sentence in `error`, for a wrong length or model.
  static std::optional<SetupBlock> Read(const QByteArray& bytes, QString* error);
};

/// The shortest text that reads back as exactly this float: 12.4, not 12.3999996.
QString FloatText(float value);

}  // namespace recorder
