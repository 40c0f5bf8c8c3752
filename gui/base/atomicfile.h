#pragma once

#include <QByteArray>
#include <QString>

/// The file of this machine that `file` names through symbolic links; it need not be there yet. Empty when they lead in
/// a circle.
QString BehindLinks(const QString& file);

/// What was created, renamed or removed in a folder of this machine stays so after a power cut. False when that fails.
bool SyncFolder(const QString& folder);

/// What became of reading a file: it is none when something else stands in its place, a folder or a pipe.
enum class FileRead { Whole, Missing, NoFile, Failed };

/// The first `most` bytes of a file of this machine; nothing unless it is Whole.
FileRead ReadFile(const QString& file, qsizetype most, QByteArray* bytes);

/// Writes a file of this machine whole or not at all: written beside as "<name>.saving", synced, renamed, its folder
/// synced. A symbolic link stays, the file behind it is written. False when that fails, or when what stands there is no
/// file: the old file is then still there, unless the last sync failed. Any thread; a file has one writer.
bool WriteAtomically(const QString& file, const QByteArray& bytes);

/// What a power cut left of such a write goes.
void RemoveCutWrite(const QString& file);
