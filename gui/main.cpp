#include <QApplication>
#include <QFont>
#include <cstdio>
#include <string_view>

#include "gui/app/commandline.h"
#include "gui/app/endsignal.h"
#include "gui/app/framebuffer.h"
#include "gui/app/mainwindow.h"
#include "gui/app/servicemanager.h"
#include "gui/base/shell.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

namespace {
constexpr char kHelp[] =
    "Usage: dashcam-gui [ANY [VOLTAGE [PARKING]]] [--touch PATH] [--language NAME] [-platform NAME]\n"
    "The dash camera's interface, on a screen of 480 x 320.\n"
    "  VOLTAGE         1: the voltage is compensated first; 0: it is not\n"
    "  --touch PATH    the touch panel's device, /dev/input/event0 unless given\n"
    "  --language NAME en, for one; what DASHCAM_LANGUAGE says unless given, else ko\n"
    "  -platform NAME  how it is drawn; linuxfb unless given, where there is no display server\n"
    "  --help          prints this\n"
    "  --version       prints the version\n";
}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == "--help") return std::fputs(kHelp, stdout) < 0;
  if (argc == 2 && std::string_view(argv[1]) == "--version") return std::puts("dashcam-gui " DASHCAM_VERSION) < 0;
  if (!TakeOptions(&argc, argv)) return 2;
  PrepareQt();
  Framebuffer framebuffer;
  if (!framebuffer.Choose(argc, argv)) return 1;
  QApplication application(argc, argv);
  framebuffer.Blacken();
  EndOnSignal();
  CheckShell();
  gEnvirnmentSettings.InitSettingConfig();
  gEnvirnmentSettings.SettingTouchValue(true);
  gEnvirnmentSettings.SettingTouchTuningValue(true);
  GetConfig();
  ApplyFont();
  ApplyLanguage();
  MainWindow window(nullptr);
  SetInit(argc, argv, &window);
  const ServiceManager manager(&window);
  window.show();
  return QApplication::exec();
}
