#include "bench/server/clicksound.h"

#include <QtEndian>
#include <cmath>
#include <numbers>

namespace {
constexpr int kRate = 22050;
constexpr int kSamples = kRate / 25;
constexpr double kPitch = 2200;  // Hz
constexpr double kFade = 0.006;  // seconds to a third of the loudness
constexpr double kLoudness = 0.5;

template <typename Number>
void Append(QByteArray* bytes, Number number) {
  char little[sizeof number];
  qToLittleEndian(number, little);
  bytes->append(little, sizeof little);
}
}  // namespace

QByteArray ClickSound() {
  constexpr quint32 kData = kSamples * 2;
  QByteArray wav("RIFF");
  Append<quint32>(&wav, 36 + kData);
  wav += "WAVEfmt ";
  Append<quint32>(&wav, 16);
  Append<quint16>(&wav, 1);  // PCM
  Append<quint16>(&wav, 1);  // one channel
  Append<quint32>(&wav, kRate);
  Append<quint32>(&wav, kRate * 2);
  Append<quint16>(&wav, 2);
  Append<quint16>(&wav, 16);
  wav += "data";
  Append<quint32>(&wav, kData);
  for (int i = 0; i < kSamples; ++i) {
    const double time = double{1} * i / kRate;
    const double level = kLoudness * std::exp(-time / kFade) * std::sin(2 * std::numbers::pi * kPitch * time);
    Append<qint16>(&wav, static_cast<qint16>(std::lround(level * 32767)));
  }
  return wav;
}
