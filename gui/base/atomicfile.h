#pragma once

#include <QByteArray>
#include <QString>

/// Writes a file of this machine whole or not at all: written beside as "<name>.tmp", synced, renamed, its folder
/// synced. False when that fails: the old file is then still there, unless the last sync failed. Any thread; a file
/// has one writer.
bool WriteAtomically(const QString& file, const QByteArray& bytes);
