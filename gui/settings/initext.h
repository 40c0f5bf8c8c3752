#pragma once

#include <QByteArray>
#include <QMap>
#include <QVariant>

using IniValues = QMap<QByteArray, QVariant>;  ///< by "group/name"

/// A line of it is a line to QSettings, too: no quotes hold several, and none goes on in the next one. And groups and
/// names are what they look like: none is written in QSettings' other ways.
bool IsPlainIni(const QByteArray& text);

/// The text of a plain INI file with these values in place of its own; the rest of it stays, but for lines
/// that are none of an INI file's.
QByteArray WithIniValues(const QByteArray& text, const IniValues& values);
