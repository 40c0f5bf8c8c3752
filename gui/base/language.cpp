#include "gui/base/language.h"

#include <QDir>
#include <QTranslator>

#include "gui/base/picture.h"

namespace {
constexpr char kSourceLanguage[] = "ko";

struct Choice {
  QString language = QLatin1String(kSourceLanguage);
  QLocale dates{QLocale::Korean};
  std::unique_ptr<QTranslator> texts;
};
Choice& Current() {
  static auto& choice = *new Choice;  // NOLINT: the translator must outlive the application object
  return choice;
}

QString FileOf(const QString& language) {
  return QStringLiteral(":/translations/dashcam_%1.qm").arg(language);
}
}  // namespace

QStringList Languages() {
  QStringList languages{QLatin1String(kSourceLanguage)};
  const QStringList files = QDir(QStringLiteral(":/translations")).entryList({QStringLiteral("dashcam_*.qm")});
  for (const QString& file : files) languages << file.section(u'_', 1).section(u'.', 0, 0);
  return languages;
}

bool ChooseLanguage(const QString& language) {
  if (!Languages().contains(language)) return false;
  std::unique_ptr<QTranslator> texts;
  if (language != QLatin1String(kSourceLanguage)) {
    texts = std::make_unique<QTranslator>();
    if (!texts->load(FileOf(language)) || !QCoreApplication::installTranslator(texts.get())) return false;
  }
  Choice& choice = Current();
  choice.texts = std::move(texts);  // the one before is no longer asked
  choice.language = language;
  choice.dates = QLocale(language);
  ForgetPictures();
  return true;
}

const QString& Language() {
  return Current().language;
}

bool IsSourceLanguage() {
  return !Current().texts;
}

const QLocale& DateLocale() {
  return Current().dates;
}
