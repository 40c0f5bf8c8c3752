#pragma once

#include <QByteArray>

/// The sound of the key click: a WAV file, mono, 16 bit, 22050 Hz, 40 ms.
QByteArray ClickSound();
