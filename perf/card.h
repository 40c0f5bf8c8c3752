#pragma once

#include <QString>

inline constexpr int kRecordingSeconds = 60;

/// Puts `count` recordings of so long into a folder, of all kinds and both cameras, one each second; the folder has
/// them in another order. False when one cannot be written.
bool FillCard(const QString& folder, int count);
