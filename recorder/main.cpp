#include <signal.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include "recorder/console/console.h"
#include "recorder/firmware/recorder.h"
#include "recorder/service/signals.h"

namespace {
constexpr char kHelp[] =
    "Usage: dashcam-recorder [--root DIR] [--socket PATH] [--scenario FILE]\n"
    "Runs the dash camera's simulated recorder alone; an interface on the same machine finds it.\n"
    "  --root DIR       the folder that stands for the camera's file system, the environment's DASHCAM_ROOT unless\n"
    "                   given; / is this machine's own file system\n"
    "  --socket PATH    takes commands there, JSON lines; run/recorder-control.sock below the root unless given\n"
    "  --scenario FILE  plays a file of events and actions as soon as an interface has started\n"
    "  --version        prints the version\n"
    "  --help           prints this\n";

struct Options {
  bool help = false;
  bool version = false;
  QString root;
  QString socket;
  QString scenario;
};

bool ReadOptions(const QStringList& arguments, Options* options, QString* error) {
  const QCommandLineOption help(QStringLiteral("help")), version(QStringLiteral("version")),
      root(QStringLiteral("root"), {}, QStringLiteral("DIR")),
      socket(QStringLiteral("socket"), {}, QStringLiteral("PATH")),
      scenario(QStringLiteral("scenario"), {}, QStringLiteral("FILE"));
  QCommandLineParser parser;
  parser.addOptions({help, version, root, socket, scenario});
  if (!parser.parse(arguments)) {
    *error = parser.errorText();
    return false;
  }
  if (!parser.positionalArguments().isEmpty()) {
    *error = QStringLiteral("Unknown argument '%1'.").arg(parser.positionalArguments().constFirst());
    return false;
  }
  for (const QCommandLineOption& option : {root, socket, scenario})
    if (parser.isSet(option) && parser.value(option).isEmpty())
      *error = QStringLiteral("--%1 takes a path.").arg(option.names().constFirst());
  options->help = parser.isSet(help);
  options->version = parser.isSet(version);
  options->root = parser.isSet(root) ? parser.value(root) : qEnvironmentVariable("DASHCAM_ROOT");
  options->socket = parser.value(socket);
  options->scenario = parser.value(scenario);
  // What it makes below the root must never come upon a real machine by mistake.
  if (error->isEmpty() && options->root.isEmpty() && !options->help && !options->version)
    *error = QStringLiteral("--root must say which folder stands for the camera's file system; / is this machine's.");
  return error->isEmpty();
}

int Fail(int code, const QString& error) {
  QTextStream(stderr) << "dashcam-recorder: " << error << '\n';
  return code;
}

int Run(const Options& options) {
  if (!QDir().mkpath(options.root))
    return Fail(1, QStringLiteral("The root folder cannot be made: %1.").arg(options.root));
  const QString root = QDir(options.root).canonicalPath();
  const QString socket = options.socket.isEmpty() ? root + QStringLiteral("/run/recorder-control.sock")
                                                  : QDir::current().absoluteFilePath(options.socket);
  Recorder recorder(root);
  Console console(recorder, root);
  QString error;
  if (!recorder.Start(&error) || !recorder.FillNewCard(&error) ||
      (!options.scenario.isEmpty() && !recorder.PlayScenario(options.scenario, &error)) ||
      !console.Listen(socket, &error))
    return Fail(1, error);
  OnEndSignal(qApp, [] { QCoreApplication::quit(); });
  QTextStream(stdout) << "Recorder: " << socket << '\n' << Qt::flush;
  return QCoreApplication::exec();
}
}  // namespace

int main(int argc, char** argv) {
  signal(SIGPIPE, SIG_IGN);  // whoever read our output may be gone
  QCoreApplication application(argc, argv);
  Options options;
  QString error;
  if (!ReadOptions(QCoreApplication::arguments(), &options, &error)) return Fail(2, error);
  if (options.help || options.version) {
    QTextStream(stdout) << (options.help ? kHelp : "dashcam-recorder " DASHCAM_VERSION "\n");
    return 0;
  }
  return Run(options);
}
