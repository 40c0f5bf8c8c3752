#include "bench/supervise/languages.h"

#include <QStringList>

namespace languages {
namespace {

constexpr const char* kAll[] = {DASHCAM_LANGUAGES};

QStringList Codes() {
  return {std::begin(kAll), std::end(kAll)};
}

}  // namespace

std::span<const char* const> All() {
  return kAll;
}

bool Has(const QString& language) {
  return Codes().contains(language);
}

QString Names() {
  return Codes().join(QLatin1String(", "));
}

QString Usual() {
  const QString wanted = qEnvironmentVariable("DASHCAM_LANGUAGE");
  return Has(wanted) ? wanted : QLatin1String(kAll[0]);
}

}  // namespace languages
