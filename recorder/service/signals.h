#pragma once

#include <functional>

class QObject;

/// Calls `end` in the event loop when SIGINT, SIGTERM or SIGHUP asks the process to end. Once in a process; `context`
/// lives until the event loop has ended.
void OnEndSignal(QObject* context, std::function<void()> end);
