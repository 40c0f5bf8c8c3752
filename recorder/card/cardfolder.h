#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

namespace recorder {

/// What a recording's name and trailer say about it.
struct Label {
  enum class Kind { Normal, Parking, Event, Protected };
  enum class Trigger : char { None = 0, Impact = 1, Motion = 2 };
  enum class Cut : char { None = 0, LowVoltage = 1, Temperature = 2 };

  Kind kind = Kind::Normal;
  Trigger trigger = Trigger::None;
  Cut cut = Cut::None;
  bool clockBroken = false;
  QDateTime start;  ///< local time
};

/// "rec0_20260131_235959.avi": kind, camera (0 front, 1 rear), start; an underscore more when the clock was broken.
QString FileName(const Label& label, int camera);

/// The four bytes after the AVI file: trigger, cut, '^', 0.
QByteArray Trailer(const Label& label);

/// "20260131_235959"
QString TimeText(const QDateTime& time);

/// The time of such a text; null for another one.
QDateTime TimeOf(const QString& text);

/// The files on the card.
class CardFolder {
public:
  /// `path` is the card's root.
  explicit CardFolder(const QString& path) : mPath(path) {}

  QString Path(const QString& name) const { return mPath + u'/' + name; }

  /// The names of all recordings, in no order.
  QStringList Recordings() const;

  /// Whether a recording of this start is there, of any kind and camera.
  bool Has(const QDateTime& start) const;

  /// Puts a recording on the card, whole or not at all. It was changed last at `modified`, ms since 1970.
  bool Write(const Label& label, int camera, const QByteArray& avi, qint64 modified) const;

  /// The same with all bytes of the file.
  bool WriteFile(const QString& name, const QByteArray& bytes, qint64 modified) const;

  /// Removes the oldest recordings that the driver did not protect, as long as there are more than `most`; at most
  /// `atOnce`, so that a card full of many stays so.
  void Trim(int most, int atOnce) const;

  /// The name of the newest recording of the front camera; empty without one.
  QString Newest() const;

  /// Adds a line to the list of the times at which nothing was recorded; the newest thousand are kept.
  bool AddStop(const QDateTime& from, const QDateTime& to) const;

  /// Removes a recording, or the list of stops.
  bool Remove(const QString& name) const;
  bool RemoveStops() const;

  /// When a recorder has formatted this card; null: none has.
  QDateTime Formatted() const;
  bool StampFormat() const;

  /// The card says nothing of its format, whatever comes: the kernel alone stamps that file, with this machine's day,
  /// and the replay of another day shows how many have passed.
  void KeepNoStamp();

private:
  QString mPath;
  bool mKeepsStamp = true;
};

}  // namespace recorder
