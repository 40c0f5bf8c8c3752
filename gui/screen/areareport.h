#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

/// Says on the diagnostic output where a touch does something, whenever that has changed, for who looks at the
/// interface from outside: areas {"screen":"PREVIEW","areas":[{"x":5,"y":4,"width":70,"height":59,"name":"view"},
/// ...]}. GUI thread.
class AreaReport : public QObject {
  Q_OBJECT

public:
  /// It begins when the environment's DASHCAM_AREAS is 1, and costs nothing otherwise.
  static void Begin(QObject* parent);

protected:
  bool eventFilter(QObject* object, QEvent* event) override;

private:
  explicit AreaReport(QObject* parent);
  void Tell();

  QTimer mTell;  // when what happens now has been handled
  QByteArray mTold;
};
