#pragma once

#include <QString>

/// What becomes of something that a person or a script asked of recorder or bench.
struct Reply {
  int status = 200;  ///< HTTP's; anything else than 200: refused
  QString error;     ///< one sentence

  bool IsGood() const { return status == 200; }

  static Reply Bad(const QString& error) { return {400, error}; }     ///< bad input
  static Reply NotNow(const QString& error) { return {409, error}; }  ///< good, but it cannot be done now
};
