#pragma once

#include <sys/types.h>

#include <QString>
#include <cstddef>
#include <optional>

/// So many bytes from there on, fewer at the end of an open file, however often the reading is interrupted; -1 when it
/// fails.
ssize_t ReadAt(int file, char* bytes, size_t count, off_t at);

/// The whole seconds of an AVI, from its header: the frames of the first stream by their rate; right for a scale of 1.
/// 0 for a rate of 0. Nothing when there is no AVI or its header is cut off. `file` is an open file; its position
/// stays.
std::optional<int> ReadAviSeconds(int file);

/// The same of a file of this machine; 0 when it cannot be told.
int ReadAviSeconds(const QString& path);
