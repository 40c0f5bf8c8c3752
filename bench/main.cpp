#include <signal.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include "bench/bench.h"
#include "bench/janitor.h"
#include "bench/rootfolder.h"
#include "bench/signals.h"
#include "bench/webserver.h"

namespace {
constexpr char kHelp[] =
    "Usage: dashcam-bench [--port N] [--root DIR] [--scenario FILE]\n"
    "Runs the dash camera's interface with a simulated recorder, and serves it to a browser on 127.0.0.1.\n"
    "  --port N         0..65535, 8480 unless given; 0 takes a free one\n"
    "  --root DIR       the folder that stands for the camera's file system; it is kept\n"
    "  --scenario FILE  plays a file of events and actions\n"
    "  --help           prints this\n";

struct Options {
  bool help = false;
  quint16 port = 8480;
  QString root;
  QString scenario;
};

bool ReadOptions(const QStringList& arguments, Options* options, QString* error) {
  const QCommandLineOption help(QStringLiteral("help")), port(QStringLiteral("port"), {}, QStringLiteral("N")),
      root(QStringLiteral("root"), {}, QStringLiteral("DIR")),
      scenario(QStringLiteral("scenario"), {}, QStringLiteral("FILE"));
  QCommandLineParser parser;
  parser.addOptions({help, port, root, scenario});
  if (!parser.parse(arguments)) {
    *error = parser.errorText();
    return false;
  }
  if (!parser.positionalArguments().isEmpty()) {
    *error = QStringLiteral("Unknown argument '%1'.").arg(parser.positionalArguments().constFirst());
    return false;
  }
  options->help = parser.isSet(help);
  options->root = parser.value(root);
  options->scenario = parser.value(scenario);
  bool isNumber = true;
  if (parser.isSet(port)) options->port = parser.value(port).toUShort(&isNumber);
  if (!isNumber) *error = QStringLiteral("--port takes a number from 0 to 65535.");
  for (const QCommandLineOption& option : {root, scenario})
    if (parser.isSet(option) && parser.value(option).isEmpty())
      *error = QStringLiteral("--%1 takes a path.").arg(option.names().constFirst());
  return error->isEmpty();
}

int Fail(int code, const QString& error) {
  QTextStream(stderr) << "dashcam-bench: " << error << '\n';
  return code;
}

int Run(const RootFolder& root, const Options& options) {
  const QString build = QCoreApplication::applicationDirPath() + QStringLiteral("/..");
  QString error;
  if (!root.Furnish(build + QStringLiteral("/pictures"), &error)) return Fail(1, error);
  Bench bench(build + QStringLiteral("/gui/dashcam-gui"), root);
  WebServer server(bench);
  QObject::connect(&bench, &Bench::ScreenShown, [&server] {
    QTextStream(stdout) << "Dash camera: http://127.0.0.1:" << server.Port() << "/\n" << Qt::flush;
  });
  if (!server.Listen(options.port, &error) || !bench.Start(options.scenario, &error)) return Fail(1, error);
  OnEndSignal(qApp, [] { QCoreApplication::quit(); });
  QCoreApplication::exec();
  bench.Stop();
  return 0;
}
}  // namespace

int main(int argc, char** argv) {
  signal(SIGPIPE, SIG_IGN);  // whoever read our output may be gone
  QCoreApplication application(argc, argv);
  Options options;
  QString error;
  if (!ReadOptions(QCoreApplication::arguments(), &options, &error)) return Fail(2, error);
  if (options.help) {
    QTextStream(stdout) << kHelp;
    return 0;
  }
  RootFolder root;
  if (!root.Take(options.root, &error)) return Fail(1, error);
  qputenv("PLATFORM_KEY", QByteArray::number(root.PlatformKey()));
  const Janitor janitor(root.Path(), root.IsFresh());
  if (!janitor.IsReady()) return Fail(1, QStringLiteral("No process can be made."));
  return Run(root, options);
}
