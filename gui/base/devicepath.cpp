#include "gui/base/devicepath.h"

#include <QRegularExpression>

QString DevicePath(const QString& path) {
  static const QString root = qEnvironmentVariable("DASHCAM_ROOT");
  return root + path;
}

QString ShellPath(const QString& path) {
  static const QRegularExpression plain(QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z0-9_./:-]*")));
  QString rooted = DevicePath(path);
  if (plain.match(rooted).hasMatch()) return rooted;
  return u'\'' + rooted.replace(u'\'', QLatin1String("'\\''")) + u'\'';
}
