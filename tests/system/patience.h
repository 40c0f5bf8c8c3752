#pragma once

#include <QTest>

/// How long a system test waits for what whole programs do: they start and end while other tests have the processor,
/// and QTest's own 5 s are for one program. What comes in time is not waited for.
inline constexpr int kPatienceMs = 20000;

#undef QTRY_VERIFY
#undef QTRY_COMPARE
// Once is enough: QTest's own one asks again, and takes what has changed meanwhile for too late.
#define QTRY_VERIFY(expression) \
  QVERIFY2(QTest::qWaitFor([&] { return bool(expression); }, kPatienceMs), "never came: " #expression)
#define QTRY_COMPARE(expression, expected) QTRY_COMPARE_WITH_TIMEOUT((expression), expected, kPatienceMs)
