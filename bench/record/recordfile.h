#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <optional>

/// One line of a recording of use.
struct RecordEntry {
  enum class Kind {
    Touch,    ///< somebody's: {"request"} of the bench, and mostly {"seen"} before it
    Event,    ///< the same
    Action,   ///< the same
    Picture,  ///< the same: one of the driver's, {"png"} in base64
    Command,  ///< of the interface
    Status,   ///< an event that the interface was told
    Screen,   ///< what the interface says about itself
    Stored,   ///< {"stored"}: a recording, or a time without one, came on the card
    Remark,   ///< a line of the log that no replay needs
    End,      ///< the recording ended here; {"seen"}
  };

  Kind kind = Kind::Remark;
  qint64 ms = 0;  ///< since the start
  QJsonObject body;

  bool IsInput() const { return kind <= Kind::Picture; }
  QJsonObject Request() const { return body.value(QLatin1String("request")).toObject(); }
  QJsonObject Seen() const { return body.value(QLatin1String("seen")).toObject(); }

  /// What an entry of the bench's log is in a recording; nothing: it is told by others.
  static std::optional<RecordEntry> OfLog(const QJsonObject& entry);

  /// Of a command, status or screen: what must be the same in a replay, as a sentence's part ("the command
  /// SFIELD_SET_VIEWREAR 0"). Empty: it depends on time, or is none of these.
  QString Essence() const;

  QByteArray Line() const;
};

/// A recording of use: how it began, and what happened.
struct RecordFile {
  static constexpr int kVersion = 1;

  quint32 seed = 0;                         ///< of all that is random
  QDateTime clock;                          ///< this machine's, local
  QString language = QStringLiteral("ko");  ///< that the interface begins in; older recordings do not say it
  QJsonObject root;                         ///< see RecordRoot
  QList<RecordEntry> entries;

  QByteArray FirstLine() const;
  bool HasInput() const;

  /// Reads and checks a file. A last line that was cut off is left out: its bench was killed. False, with one sentence
  /// in `error`, when it is none.
  bool Read(const QString& path, QString* error);
};
