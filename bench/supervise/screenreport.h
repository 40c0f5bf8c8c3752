#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// What the interface says about itself on its diagnostic output: the screen on top and the message boxes that are up.
class ScreenReport {
public:
  /// Whether `line` was such a line: "screen PREVIEW", "box own 77 SELECT_NDF_FILE", "box event none".
  bool Take(const QString& line);

  /// Whether `line` was one of where a touch does something: "areas {..}" of the interface's own form.
  bool TakeAreas(const QString& line);

  /// The interface has ended.
  void Forget() { *this = {}; }

  /// The name of the screen on top; empty until the interface has said it.
  QString Screen() const { return mScreen; }

  /// The screen's own box and that of a status event: id and name, or null.
  QJsonObject Boxes() const;

  /// Where a touch of the screen on top does something: objects of "x", "y", "width", "height", "name"; null until the
  /// interface has said it.
  QJsonValue Areas() const;

private:
  QString mScreen;
  QString mAreasOf;  // the screen
  QJsonArray mAreas;
  QJsonValue mOwn, mEvent;
};
