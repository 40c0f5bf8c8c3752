#pragma once

#include <QCoreApplication>
#include <QLocale>
#include <QString>
#include <QStringList>

/// The texts of the interface. The code has the Korean ones: Text::tr("예") is the chosen language's. A table's texts
/// stand in QT_TRANSLATE_NOOP("Text", ..), and whoever shows one calls Text::tr(). Any thread, once the language is
/// chosen.
class Text {
  Q_DECLARE_TR_FUNCTIONS(Text)
};

/// ISO 639 codes: Korean first, then what gui/translations had when the program was built.
QStringList Languages();

/// All texts and pictures that are asked for from now on are in that language. False, and nothing changes, when there
/// is no such one. It needs the application object. GUI thread.
bool ChooseLanguage(const QString& language);

/// The chosen one, Korean until then.
const QString& Language();
bool IsSourceLanguage();

/// How the chosen language writes dates.
const QLocale& DateLocale();
