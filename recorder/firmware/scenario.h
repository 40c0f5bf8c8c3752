#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include "recorder/base/sink.h"
#include "recorder/firmware/actions.h"

namespace recorder {

/// A file of events, actions and touches with their times. When its time has come each is wanted by a signal.
class Scenario : public QObject {
  Q_OBJECT

public:
  explicit Scenario(Sink& sink);

  /// Reads and checks `file`, its actions by `check`. False, with one sentence in `error` that names the line, when
  /// anything is wrong; what was read before stays then.
  bool Load(const QString& file, ActionCheck check, QString* error);

  /// Plays what was loaded, from its first line.
  void Start();

  bool IsPlaying() const { return mTimer.isActive(); }

signals:
  void TapWanted(int x, int y);
  void EventWanted(int event, int value);
  void ActionWanted(const QString& name, const QJsonObject& arguments);

private:
  struct Step {
    int ms;
    int event = 0;  // 0: the touch or the action
    int value = 0;
    bool isTouch = false;
    int x = 0;
    int y = 0;
    QString action;
    QJsonObject arguments;
  };

  static bool ReadEvent(QJsonObject* object, Step* step, QString* error);
  static bool ReadTouch(const QJsonValue& value, Step* step, QString* error);
  static bool ReadLine(const QByteArray& line, ActionCheck check, Step* step, QString* error);
  void Play();
  void Wait();

  Sink& mSink;
  QList<Step> mSteps;  // in the order of their times
  qsizetype mNext = 0;
  QElapsedTimer mClock;
  QTimer mTimer;
};

}  // namespace recorder
