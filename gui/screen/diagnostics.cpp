#include "gui/screen/diagnostics.h"

#include <QString>

#include "gui/screen/basewidget.h"
#include "gui/screen/widgetmanager.h"

namespace {
void ReportIfChanged(QString& last, const QString& line) {
  if (line == last) return;
  last = line;
  qDebug("%s", qPrintable(line));
}

QString Box(const char* slot, bool shown, int id) {
  if (!shown) return QStringLiteral("box %1 none").arg(QLatin1String(slot));
  return QStringLiteral("box %1 %2 %3").arg(QLatin1String(slot)).arg(id).arg(QLatin1String(NameOf(MessageBox_Id(id))));
}
}  // namespace

void ReportTop() {
  static QString screen, own, event;
  const BaseWidget* top = gWidgetManager.GetCurrentWidget();
  ReportIfChanged(screen, QStringLiteral("screen %1").arg(QLatin1String(NameOf(gWidgetManager.GetCurWidgetId()))));
  ReportIfChanged(own, Box("own", top && top->GetShowMessageBoxFlag(), top ? top->GetMessageId() : -1));
  ReportIfChanged(event, Box("event", top && top->GetShowRecvMessageBoxFlag(), top ? top->GetRecvMessageId() : -1));
}
