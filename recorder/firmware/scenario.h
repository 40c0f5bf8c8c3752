#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include "recorder/base/sink.h"
#include "recorder/firmware/actions.h"
#include "recorder/service/reply.h"

namespace recorder {

/// A file of events, actions, touches and pictures with their times. When its time has come each is wanted by a signal.
class Scenario : public QObject {
  Q_OBJECT

public:
  explicit Scenario(Sink& sink);

  /// Reads and checks `file`, its actions by `check`. False, with one sentence in `error` that names the line, when
  /// anything is wrong; what was read before stays then.
  bool Load(const QString& file, ActionCheck check, QString* error);

  /// The same of what such a file holds. `name`: how it is called; pictures stand in `folder`.
  bool Take(const QByteArray& text, const QString& name, const QString& folder, ActionCheck check, QString* error);

  /// The first comment line of such a text; empty: it has none.
  static QString TitleOf(const QByteArray& text);

  /// Plays what was loaded, from its first line.
  void Start();

  bool IsPlaying() const { return mIsOn; }

  /// Of what is being played: 1 and above, as many times as fast.
  void SetSpeed(int speed);
  void Pause(bool paused);
  void Stop();

  /// It says that it ends when somebody does something: a comment line "# ends at a touch".
  bool EndsAtATouch() const { return mEndsAtATouch; }

  /// {"name", "title", "at", "of" (ms), "line", "lines" (of those given, and of all), "paused", "speed", "say" (what
  /// was said last, or null)}; null: nothing is being played.
  QJsonValue State() const;

signals:
  void Changed();  ///< of State(), but for the time
  /// Requests as the bench takes them.
  void EventWanted(const QJsonObject& request);
  void ActionWanted(const QJsonObject& request);
  void TouchWanted(const QJsonObject& request);
  void PictureWanted(const QString& path);

private:
  enum class Kind { Event, Action, Touch, Picture, Say };
  struct Step {
    int ms = 0;
    Kind kind = Kind::Event;
    QJsonObject request;
    QString picture;  // its path
    QString words;    // to be said
  };

  static Reply ReadRequest(const QString& folder, QJsonObject object, ActionCheck check, Step* step);
  static bool ReadLine(const QString& folder, const QByteArray& line, ActionCheck check, Step* step, QString* error);
  void Play();
  void Wait();
  void GoOnFrom(qint64 at);
  qint64 At() const;

  Sink& mSink;
  QString mName;
  QString mTitle;
  bool mEndsAtATouch = false;
  QList<Step> mSteps;  // in the order of their times
  qsizetype mNext = 0;
  bool mIsOn = false;
  bool mIsPaused = false;
  int mSpeed = 1;
  QString mSaid;
  qint64 mFrom = 0;      // ms of the scenario: there it was
  QElapsedTimer mClock;  // when this was started
  QTimer mTimer;
};

}  // namespace recorder
