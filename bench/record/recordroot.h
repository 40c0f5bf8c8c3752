#pragma once

#include <QJsonObject>
#include <QString>

/// The files below a root at the start of a recording of use, so that a replay can begin with the same:
///   {"state": "fresh"}
///   {"state": "kept", "files": [{"path", "data" (base64)}], "card": [recordings], "left": ["path", ...]}
/// Recordings on the card are told without their pictures; "left" names what is too large to be kept.
namespace recordroot {

/// Of a root that nobody has furnished yet. `isFresh`: it was made for this run.
QJsonObject Describe(const QString& root, bool isFresh);

/// Whether it is one; else false, with one sentence in `error`.
bool Check(const QJsonObject& description, QString* error);

/// Makes the files, below a fresh root that nobody has furnished yet. False, with one sentence in `error`, when it
/// cannot be written. `description` was checked.
bool Restore(const QJsonObject& description, const QString& root, QString* error);

}  // namespace recordroot
