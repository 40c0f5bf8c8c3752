#include "gui/setup/voltageentry.h"

#include <QPointer>

#include "gui/base/eventgate.h"
#include "gui/base/globals.h"
#include "gui/screen/basewidget.h"

namespace {}

bool IsVoltageCompensationOffered(const TileScreen&) {
  return gNeedVolCom;
}

void StartVoltageCompensation(BaseWidget& screen) {
  screen.PaintMessageBox(VOL_COMPENSATION_START, false, 0, kNoticeMs);
  const QPointer<BaseWidget> here(&screen);
  gEventGate.ProcessEvents();
  if (!here) return;
  screen.SendEvent(SEND_VOLTAGE_COMPENSATION, 0, QString());
  screen.SetEvent(VOL_COMPENSATION_START, kNoticeMs);
}
