#include "recorder/base/sink.h"

namespace recorder {

bool Sink::Send(int event, int value) {
  const bool known = event >= RECV_ZEL_STATUS_SYS_RESTART && event <= RECV_ZEL_STATUS_PARK_INFO_CLOSE;
  const bool sent = known && mStatus.Send(event, value);
  emit Logged({{QStringLiteral("kind"), QStringLiteral("event")},
               {QStringLiteral("name"), QLatin1String(NameOf(static_cast<RECV_ZEL_STATUS_EVENT>(event)))},
               {QStringLiteral("event"), event},
               {QStringLiteral("value"), value},
               {QStringLiteral("result"), sent ? 0 : -1}});
  return sent;
}

void Sink::Note(const QString& sentence) {
  emit Logged({{QStringLiteral("kind"), QStringLiteral("note")}, {QStringLiteral("name"), sentence}});
}

}  // namespace recorder
