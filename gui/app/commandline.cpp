#include "gui/app/commandline.h"

#include <QApplication>
#include <QFont>
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "gui/app/mainwindow.h"
#include "gui/base/globals.h"
#include "gui/settings/config.h"

bool TakeTouchOption(int* argc, char** argv) {
  char** const end = argv + *argc;
  char** const option = std::find_if(argv, end, [](const char* text) { return std::strcmp(text, "--touch") == 0; });
  if (option == end) return true;
  if (end - option < 2 || option[1][0] == '\0') {
    std::fputs("--touch needs the path of the touch panel's device.\n", stderr);
    return false;
  }
  gTouchDevice = QString::fromLocal8Bit(option[1]);
  std::copy(option + 2, end + 1, option);  // with the null after the last one
  *argc -= 2;
  return true;
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
