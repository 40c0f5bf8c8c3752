#include "gui/screen/areareport.h"

#include <QCoreApplication>
#include <QEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "gui/screen/basewidget.h"
#include "gui/screen/widgetmanager.h"

void AreaReport::Begin(QObject* parent) {
  if (qgetenv("DASHCAM_AREAS") == "1") new AreaReport(parent);
}

AreaReport::AreaReport(QObject* parent) : QObject(parent) {
  mTell.setSingleShot(true);
  mTell.callOnTimeout([this] { Tell(); });
  QCoreApplication::instance()->installEventFilter(this);
}

// What a touch does changes with what is seen.
bool AreaReport::eventFilter(QObject* object, QEvent* event) {
  switch (event->type()) {
    case QEvent::Paint:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ChildRemoved:
      if (object->isWidgetType() && !mTell.isActive()) mTell.start(0);
      break;
    default:
      break;
  }
  return false;
}

void AreaReport::Tell() {
  const BaseWidget* top = gWidgetManager.GetCurrentWidget();
  QJsonArray areas;
  for (const TouchArea& touch : top ? top->TouchAreas() : QList<TouchArea>())
    areas.append(QJsonObject{{QStringLiteral("x"), touch.area.x()},
                             {QStringLiteral("y"), touch.area.y()},
                             {QStringLiteral("width"), touch.area.width()},
                             {QStringLiteral("height"), touch.area.height()},
                             {QStringLiteral("name"), touch.name}});
  const QJsonObject told{{QStringLiteral("screen"), QLatin1String(NameOf(gWidgetManager.GetCurWidgetId()))},
                         {QStringLiteral("areas"), areas}};
  QByteArray line = QJsonDocument(told).toJson(QJsonDocument::Compact);
  if (line == mTold) return;
  qDebug("areas %s", line.constData());
  mTold = std::move(line);
}
