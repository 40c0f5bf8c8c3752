#pragma once

#include <QByteArray>
#include <QString>

/// The head of an HTTP request, as far as it has to be known before anybody reads the request.
struct RequestHead {
  enum class State { Incomplete, Good, Refused };

  /// Reads the head at the start of `bytes`, which came in on port `port`. Good: it is well-formed, not larger than
  /// allowed, and comes from a page of this very bench, or from no page. Refused: `status` and `error` say why.
  static RequestHead Read(const QByteArray& bytes, quint16 port);

  State state = State::Incomplete;
  int status = 0;
  QString error;           ///< one sentence
  qsizetype size = 0;      ///< bytes, with the empty line at its end
  qint64 body = 0;         ///< bytes behind it
  bool isUpgrade = false;  ///< the WebSocket is wanted

  static constexpr qsizetype kMost = qsizetype{16} * 1024;
  static constexpr qsizetype kMostBody = qsizetype{64} * 1024;
  static constexpr qsizetype kMostPicture = qsizetype{8} * 1024 * 1024;  ///< of a picture, or a recording
};
