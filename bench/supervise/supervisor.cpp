#include "bench/supervise/supervisor.h"

#include <signal.h>

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QtEndian>

#include "bench/supervise/fakeclock.h"

namespace {

// Only the bench's own programs may use the X server: they know the cookie.
constexpr char kCookie[] = "/run/Xauthority";
constexpr char kFramebufferFolder[] = "/run";
constexpr char kFramebuffer[] = "/run/Xvfb_screen0";

constexpr int kComing = 10000;  // milliseconds until the X server says its number

constexpr char kLanguage[] = "DASHCAM_LANGUAGE";  // of the interface's environment

// What a desktop session says about itself would give the interface another look than the camera's, another bus, or
// another clock.
bool IsOfTheDesktop(const QString& name) {
  static const QStringList names{QStringLiteral("DISPLAY"),
                                 QStringLiteral("WAYLAND_DISPLAY"),
                                 QStringLiteral("DESKTOP_SESSION"),
                                 QStringLiteral("XDG_CURRENT_DESKTOP"),
                                 QStringLiteral("XDG_SESSION_TYPE"),
                                 QStringLiteral("KDE_FULL_SESSION"),
                                 QStringLiteral("DBUS_SESSION_BUS_ADDRESS")};
  return names.contains(name) || name.startsWith(QLatin1String("FAKETIME")) ||
         (name.startsWith(QLatin1String("QT_")) && name != QLatin1String("QT_PLUGIN_PATH"));
}

QProcessEnvironment EnvironmentOf(const QString& root, const QString& display) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  const QStringList names = environment.keys();
  for (const QString& name : names)
    if (IsOfTheDesktop(name)) environment.remove(name);
  environment.insert(QStringLiteral("PATH"),
                     root + QStringLiteral("/bin:") + environment.value(QStringLiteral("PATH")));
  environment.insert(QStringLiteral("DASHCAM_ROOT"), root);
  environment.insert(QStringLiteral("DASHCAM_AREAS"), QStringLiteral("1"));
  environment.insert(QStringLiteral("DISPLAY"), display);
  environment.insert(QStringLiteral("XAUTHORITY"), root + QLatin1String(kCookie));
  environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), root + QStringLiteral("/run"));
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
  environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
  return environment;
}

void AppendField(QByteArray* bytes, const QByteArray& field) {
  char length[2];
  qToBigEndian(static_cast<quint16>(field.size()), length);
  bytes->append(length, sizeof length).append(field);
}

QStringList ServerArguments(const QString& root) {
  return {QStringLiteral("-displayfd"),
          QStringLiteral("1"),
          QStringLiteral("-screen"),
          QStringLiteral("0"),
          QStringLiteral("480x320x24"),
          QStringLiteral("-fbdir"),
          root + QLatin1String(kFramebufferFolder),
          QStringLiteral("-auth"),
          root + QLatin1String(kCookie),
          QStringLiteral("-nolisten"),
          QStringLiteral("tcp"),
          QStringLiteral("-noreset")};
}
}  // namespace

// An X server that is asked to end takes its socket away.
Supervisor::Supervisor(const QString& interface, const QString& root, const QString& language, QObject* parent)
    : QObject(parent),
      mRoot(root),
      mLanguage(language),
      mServer(QStringLiteral("Xvfb"), ServerArguments(root), SIGTERM),
      mInterface(interface, {}, SIGKILL) {
  mComing.setSingleShot(true);
  mComing.callOnTimeout([this] {
    const QString words = mComplaint.isEmpty() ? QStringLiteral("it says nothing") : mComplaint;
    emit NoDisplay(QStringLiteral("The X server has not come for %1 s: %2.").arg(kComing / 1000).arg(words));
  });
  connect(&mServer, &Child::Output, this, &Supervisor::TakeDisplay);
  connect(&mServer, &Child::Diagnostic, this, [this](const QString& line) { mComplaint = line; });
  connect(&mServer, &Child::Finished, this, [this] {
    mHasDisplay = false;
    mInterface.Stop();
    emit DisplayLost();
    emit Note(QStringLiteral("The X server has ended: %1. %2").arg(mServer.Ended(), mComplaint).trimmed());
  });
  connect(&mInterface, &Child::Started, this, &Supervisor::InterfaceStarted);
  connect(&mInterface, &Child::Finished, this, [this] {
    fakeclock::Renew();
    emit InterfaceEnded();
  });
  connect(&mInterface, &Child::Diagnostic, this, &Supervisor::Diagnostic);
}

bool Supervisor::Start(QString* error) {
  if (QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty()) {
    *error = QStringLiteral("Xvfb is not installed.");
    return false;
  }
  if (const QString program = mInterface.Program(); !QFileInfo(program).isExecutable()) {
    *error = QStringLiteral("The interface is not built: %1.").arg(program);
    return false;
  }
  if (!WriteCookie()) {
    *error = QStringLiteral("The root folder cannot be written: %1.").arg(mRoot);
    return false;
  }
  mServer.Start();
  mComing.start(kComing);
  return true;
}

void Supervisor::Stop() {
  mInterface.Stop();
  mInterface.WaitForEnd();
  mServer.Stop();
  mServer.WaitForEnd();
}

// Without a display it starts as soon as there is one.
void Supervisor::RestartInterface() {
  if (mHasDisplay) mInterface.Restart();
}

void Supervisor::Speak(const QString& language) {
  mLanguage = language;
  mEnvironment.insert(QLatin1String(kLanguage), mLanguage);
  mInterface.SetEnvironment(mEnvironment);
  RestartInterface();
}

bool Supervisor::WriteCookie() const {
  QByteArray secret(16, '\0');
  QRandomGenerator::system()->generate(reinterpret_cast<quint32*>(secret.data()),
                                       reinterpret_cast<quint32*>(secret.data() + secret.size()));
  QByteArray record("\xff\xff", 2);  // of every address
  for (const QByteArray& field : {QByteArray(), QByteArray(), QByteArray("MIT-MAGIC-COOKIE-1"), secret})
    AppendField(&record, field);
  QFile file(mRoot + QLatin1String(kCookie));
  file.remove();
  return file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner) &&
         file.write(record) == record.size() && file.flush();
}

// The X server says its number when it is ready.
void Supervisor::TakeDisplay(const QString& number) {
  mEnvironment = EnvironmentOf(mRoot, u':' + number);
  mEnvironment.insert(QLatin1String(kLanguage), mLanguage);
  const QString clock = fakeclock::Give(&mEnvironment, mRoot, mInterface.Program());
  if (!clock.isEmpty()) emit Note(clock);
  mInterface.SetEnvironment(mEnvironment);
  mHasDisplay = true;
  mComing.stop();
  emit DisplayReady(mRoot + QLatin1String(kFramebuffer));
  mInterface.Start();
}
