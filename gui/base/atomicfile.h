#pragma once

#include <QByteArray>
#include <QString>

/// The file of this machine that `file` names through symbolic links; it need not be there yet. Empty when they lead in
/// a circle.
QString BehindLinks(const QString& file);

/// What was created, renamed or removed in a folder of this machine stays so after a power cut. False when that fails.
bool SyncFolder(const QString& folder);

/// Writes a file of this machine whole or not at all: written beside as "<name>.tmp", synced, renamed, its folder
/// synced. A symbolic link stays, the file behind it is written. False when that fails, or when what stands there is no
/// file: the old file is then still there, unless the last sync failed. Any thread; a file has one writer.
bool WriteAtomically(const QString& file, const QByteArray& bytes);
