#pragma once

#include "recorder/link/commandserver.h"

namespace recorder {

struct Parts;

/// Carries out one command of the interface: looks its field up in the table of all fields, checks the length, reacts,
/// and writes it into the log. A field that the table lacks, a wrong length and a value that makes no sense give a
/// negative result and change nothing.
CommandServer::Answer DoCommand(Parts& parts, quint32 field, const QByteArray& data);

}  // namespace recorder
