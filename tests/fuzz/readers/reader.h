#pragma once

#include <QByteArray>
#include <QString>

#include "tests/fake/testroot.h"

/// The readers of what comes from outside, each given any bytes and held to what it promises. A reader is a file of
/// this folder and a row in main.cpp; the bytes to begin with are in tests/fuzz/seeds, a folder for each.

void TakeIni(const QByteArray& bytes);
void TakeSetup(const QByteArray& bytes);
void TakeLeds(const QByteArray& bytes);
void TakeCalibration(const QByteArray& bytes);
void TakeTuning(const QByteArray& bytes);
void TakeAvi(const QByteArray& bytes);
void TakeNames(const QByteArray& bytes);
void TakeStops(const QByteArray& bytes);
void TakeReport(const QByteArray& bytes);
void TakeMessages(const QByteArray& bytes);
void TakePanel(const QByteArray& bytes);
void TakeHttp(const QByteArray& bytes);
void TakeApi(const QByteArray& bytes);
void TakeReplay(const QByteArray& bytes);
void TakeScenario(const QByteArray& bytes);

/// The camera's files.
const TestRoot& Root();

/// A new name at each call, for a file whose content somebody may remember by its name: "/tmp/7.ini" of "/tmp/%1.ini".
QString NewName(const char* pattern);

/// Whether a person can read it: one sentence on one line.
bool IsSentence(const QString& text);

/// Ends the program when a promise is not kept, with its place and its words.
#define REQUIRE(promise)                                   \
  do {                                                     \
    if (!(promise)) NotKept(__FILE__, __LINE__, #promise); \
  } while (false)
[[noreturn]] void NotKept(const char* file, int line, const char* promise);
