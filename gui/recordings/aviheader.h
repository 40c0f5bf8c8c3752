#pragma once

#include <QString>
#include <optional>

/// The whole seconds of an AVI, from its header: the frames of the first stream by their rate; right for a scale of 1.
/// 0 for a rate of 0. Nothing when there is no AVI or its header is cut off. `file` is an open file; its position
/// stays.
std::optional<int> ReadAviSeconds(int file);

/// The same of a file of this machine; 0 when it cannot be told.
int ReadAviSeconds(const QString& path);
