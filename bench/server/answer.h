#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <utility>

#include "recorder/service/reply.h"

/// What the web server answers to one request.
struct Answer {
  int status = 200;
  QByteArray type = "application/json";
  QByteArray body = {};
  QByteArray allow = {};     ///< of a 405: the method that the path has
  QByteArray encoding = {};  ///< of the body: "deflate", or empty
  QByteArray file = {};      ///< its name, for whoever keeps it
  bool isEndless = false;    ///< the body comes later, and by and by

  static Answer Json(const QJsonObject& object);
  static Answer Of(const Reply& reply);  ///< {"ok": true} or {"error"}

  /// All that it has, name and value; those that keep pages from elsewhere out are in every answer.
  QList<std::pair<QByteArray, QByteArray>> Headers() const;

  /// As it is sent when no server answers. To a HEAD it is without its body.
  QByteArray Bytes(bool isToHead) const;
};
