#pragma once

#include <QTextStream>
#include <cstdlib>

/// Ends the benchmark with one sentence.
[[noreturn]] inline void Fail(const QString& sentence) {
  QTextStream(stderr) << "perf: " << sentence << '\n';
  std::exit(1);
}
[[noreturn]] inline void Fail(const char* sentence) {
  Fail(QString::fromUtf8(sentence));
}
