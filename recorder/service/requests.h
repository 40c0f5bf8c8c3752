#pragma once

#include <QJsonObject>
#include <QList>
#include <functional>

#include "recorder/service/reply.h"

/// What recorder and bench understand alike when somebody asks something of them.
namespace requests {

/// Does what a message wants: its type, and its members beside type and id.
using Act = std::function<Reply(const QString& type, const QJsonObject& members)>;

/// The answer to a message of a client, {"type", "id", members}:
/// {"type": "answer", "id", "ok": true} or {"type": "answer", "id", "status", "error"}.
QJsonObject Answer(const QByteArray& message, const Act& act);

/// The same for what is no message at all.
QJsonObject Refusal(const Reply& reply);

/// What a finger shall do on the touch panel: at x 0..479 and y 0..319 of the screen, or in the panel's own units.
struct Touch {
  enum class Kind { Tap, Press, Release, Path };
  static constexpr int kMostRaw = 511;

  /// Where a path goes: the finger reaches it `ms` after the point before; at the first one it rests so long.
  struct Point {
    int x = 0;
    int y = 0;
    int ms = 0;
  };

  Kind kind = Kind::Tap;
  int x = 0;
  int y = 0;
  bool isRaw = false;
  int ms = 0;  ///< of a tap
  QList<Point> path;
};

/// Takes {"action", "x", "y", "ms", "raw", "path"}, a touch.
Reply TakeTouch(const QJsonObject& request, Touch* touch);

/// Takes {"event", "value"}, a status event for the interface.
Reply TakeEvent(const QJsonObject& request, int* event, int* value);

/// Takes {"name", arguments}, an action; whether there is such an action is not known here.
Reply TakeAction(const QJsonObject& request, QString* name, QJsonObject* arguments);

}  // namespace requests
