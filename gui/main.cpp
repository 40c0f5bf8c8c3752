#include <QApplication>
#include <QFont>

#include "gui/app/commandline.h"
#include "gui/app/mainwindow.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

int main(int argc, char** argv) {
  PrepareQt();
  QApplication application(argc, argv);
  gEnvirnmentSettings.InitSettingConfig();
  gEnvirnmentSettings.SettingTouchValue(true);
  gEnvirnmentSettings.SettingTouchTuningValue(true);
  GetConfig();
  ApplyFont();
  MainWindow window(nullptr);
  SetInit(argc, argv, &window);
  window.show();
  return QApplication::exec();
}
