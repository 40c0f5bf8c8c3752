#pragma once

#include <QString>

/// Puts `count` recordings of a minute into a folder, of all kinds and both cameras, one each second; the folder has
/// them in another order. False when one cannot be written.
bool FillCard(const QString& folder, int count);
