#include "gui/app/commandline.h"

#include <QApplication>
#include <QFont>
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "gui/app/mainwindow.h"
#include "gui/base/globals.h"
#include "gui/base/language.h"
#include "gui/settings/config.h"

namespace {
constexpr char kLanguageVariable[] = "DASHCAM_LANGUAGE";

// The value of an option, null without it; an option without a value says what it needs, and `good` is false.
const char* Take(int* argc, char** argv, const char* name, const char* what, bool* good) {
  char** const end = argv + *argc;
  char** const option = std::find_if(argv, end, [name](const char* text) { return std::strcmp(text, name) == 0; });
  if (option == end) return nullptr;
  const char* const value = end - option < 2 ? "" : option[1];
  if (value[0] == '\0') {
    std::fprintf(stderr, "%s needs %s.\n", name, what);
    *good = false;
    return nullptr;
  }
  std::copy(option + 2, end + 1, option);  // with the null after the last one
  *argc -= 2;
  return value;
}
}  // namespace

bool TakeOptions(int* argc, char** argv) {
  bool good = true;
  if (const char* path = Take(argc, argv, "--touch", "the path of the touch panel's device", &good))
    gTouchDevice = QString::fromLocal8Bit(path);
  if (const char* language = Take(argc, argv, "--language", "a language", &good)) qputenv(kLanguageVariable, language);
  return good;
}

void ApplyLanguage() {
  const QString language = qEnvironmentVariable(kLanguageVariable);
  if (language.isEmpty() || ChooseLanguage(language)) return;
  std::fprintf(stderr, "There is no language \"%s\", only %s.\n", qPrintable(language),
               qPrintable(Languages().join(QStringLiteral(", "))));
}

void PrepareQt() {
  qputenv("QT_FONT_DPI", "72");
  qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
  qputenv("QT_QPA_FB_DISABLE_INPUT", "1");  // the touch reader alone opens the input device
  qputenv("QT_QPA_FB_HIDECURSOR", "1");
}

void ApplyFont() {
  QFont::insertSubstitution(gFont.Family, QStringLiteral("NanumBarunGothic"));
  QApplication::setFont(QFont(gFont.Family));
  QApplication::setOverrideCursor(Qt::BlankCursor);
}

void SetInit(int argc, char** argv, MainWindow* window) {
  window->SetIsIngParkingModeOn(false);
  if (argc <= 2) {
    gNeedVolCom = false;
    return;
  }
  if (std::strcmp(argv[2], "0") == 0) gNeedVolCom = false;
  if (std::strcmp(argv[2], "1") == 0) gNeedVolCom = true;
}
