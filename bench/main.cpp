#include <signal.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTextStream>
#include <memory>
#include <optional>

#include "bench/camera/bench.h"
#include "bench/record/recordondemand.h"
#include "bench/record/recordroot.h"
#include "bench/record/recordwriter.h"
#include "bench/record/replay.h"
#include "bench/server/webserver.h"
#include "bench/supervise/janitor.h"
#include "bench/supervise/languages.h"
#include "bench/supervise/rootfolder.h"
#include "bench/supervise/snapshots.h"
#include "recorder/service/signals.h"

namespace {
constexpr char kHelp[] =
    "Usage: dashcam-bench [--port N] [--root DIR] [--language CODE] [--scenario FILE] [--front FILE] [--rear FILE]\n"
    "                     [--record FILE [--force]]\n"
    "       dashcam-bench [--port N] --replay FILE [--fast] [--differences DIR] [--record FILE [--force]]\n"
    "Runs the dash camera's interface with a simulated recorder, and serves it to a browser on 127.0.0.1.\n"
    "  --port N         0..65535, 8480 unless given; 0 takes a free one\n"
    "  --root DIR       the folder that stands for the camera's file system; it is kept\n"
    "  --language CODE  of the interface, such as en; DASHCAM_LANGUAGE of the environment, or ko, unless given\n"
    "  --scenario FILE  plays a file of events and actions\n"
    "  --front FILE     a video, or a camera of this machine (/dev/videoN): what the front camera sees; --rear "
    "likewise\n"
    "  --record FILE    writes everything that happens to a new file, for --replay\n"
    "  --force          replaces a recording of that name, with the first thing that is done to the camera\n"
    "  --replay FILE    plays such a file, says what is different, and ends; the exit code is 1 when something is\n"
    "  --fast           as soon as the interface shows what it showed, without the waiting of a person\n"
    "  --differences DIR  puts the pictures that are different there\n"
    "  --help           prints this\n"
    "  --version        prints the version\n";

struct Options {
  bool help = false;
  bool version = false;
  quint16 port = 8480;
  QString root;
  QString language = languages::Usual();
  QString scenario;
  QString footage[2];  // of the front and the rear camera
  QString record;
  bool replacesRecord = false;
  QString replay;
  Replay::Options how;  // of the replay
};

// What goes together.
QString Conflict(const QCommandLineParser& parser) {
  const bool isReplay = parser.isSet(QStringLiteral("replay"));
  for (const char* option : {"root", "language", "scenario", "front", "rear"})
    if (isReplay && parser.isSet(QLatin1String(option)))
      return QStringLiteral("--replay begins as its recording did: without --%1.").arg(QLatin1String(option));
  for (const char* option : {"fast", "differences"})
    if (!isReplay && parser.isSet(QLatin1String(option)))
      return QStringLiteral("--%1 goes with --replay only.").arg(QLatin1String(option));
  if (parser.isSet(QStringLiteral("force")) && !parser.isSet(QStringLiteral("record")))
    return QStringLiteral("--force goes with --record only.");
  return {};
}

bool ReadOptions(const QStringList& arguments, Options* options, QString* error) {
  const QCommandLineOption help(QStringLiteral("help")), version(QStringLiteral("version")),
      port(QStringLiteral("port"), {}, QStringLiteral("N")), root(QStringLiteral("root"), {}, QStringLiteral("DIR")),
      language(QStringLiteral("language"), {}, QStringLiteral("CODE")),
      scenario(QStringLiteral("scenario"), {}, QStringLiteral("FILE")),
      front(QStringLiteral("front"), {}, QStringLiteral("FILE")),
      rear(QStringLiteral("rear"), {}, QStringLiteral("FILE")),
      record(QStringLiteral("record"), {}, QStringLiteral("FILE")), force(QStringLiteral("force")),
      replay(QStringLiteral("replay"), {}, QStringLiteral("FILE")), fast(QStringLiteral("fast")),
      differences(QStringLiteral("differences"), {}, QStringLiteral("DIR"));
  QCommandLineParser parser;
  parser.addOptions(
      {help, version, port, root, language, scenario, front, rear, record, force, replay, fast, differences});
  if (!parser.parse(arguments)) {
    *error = parser.errorText();
    return false;
  }
  if (!parser.positionalArguments().isEmpty()) {
    *error = QStringLiteral("Unknown argument '%1'.").arg(parser.positionalArguments().constFirst());
    return false;
  }
  options->help = parser.isSet(help);
  options->version = parser.isSet(version);
  options->root = parser.value(root);
  if (parser.isSet(language)) options->language = parser.value(language);
  options->scenario = parser.value(scenario);
  options->footage[0] = parser.value(front);
  options->footage[1] = parser.value(rear);
  options->record = parser.value(record);
  options->replacesRecord = parser.isSet(force);
  options->replay = parser.value(replay);
  options->how = {parser.isSet(fast), parser.value(differences)};
  bool isNumber = true;
  if (parser.isSet(port)) options->port = parser.value(port).toUShort(&isNumber);
  if (!isNumber) *error = QStringLiteral("--port takes a number from 0 to 65535.");
  if (!languages::Has(options->language))
    *error = QStringLiteral("--language takes one of %1.").arg(languages::Names());
  if (error->isEmpty()) *error = Conflict(parser);
  for (const QCommandLineOption& option : {root, scenario, front, rear, record, replay, differences})
    if (parser.isSet(option) && parser.value(option).isEmpty())
      *error = QStringLiteral("--%1 takes a path.").arg(option.names().constFirst());
  return error->isEmpty();
}

int Fail(int code, const QString& error) {
  QTextStream(stderr) << "dashcam-bench: " << error << '\n';
  return code;
}

void Say(const QString& line) {
  QTextStream(stdout) << line << '\n' << Qt::flush;
}

/// The start of a recording, and what is being replayed.
struct Session {
  RecordFile begin;
  bool isReplay = false;
};

// Before anything is put below the root.
bool Prepare(const RootFolder& root, const Options& options, Session* session, QString* error) {
  if (session->isReplay) return recordroot::Restore(session->begin.root, root.Path(), error);
  if (options.record.isEmpty()) return true;
  session->begin.seed = QRandomGenerator::global()->generate();
  session->begin.root = recordroot::Describe(root.Path(), root.IsFresh());
  session->begin.clock = QDateTime::currentDateTime();
  return true;
}

// Until a signal, or until the replay has ended; the exit code.
int Serve(Bench& bench, Replay* replay) {
  OnEndSignal(qApp, [] { QCoreApplication::quit(); });
  if (!replay) return QCoreApplication::exec();
  bool hasEnded = false;
  QObject::connect(replay, &Replay::Differs, &bench, Say);
  QObject::connect(replay, &Replay::Ended, &bench, [&hasEnded] {
    hasEnded = true;
    QCoreApplication::quit();
  });
  replay->Start();
  QCoreApplication::exec();
  if (!hasEnded) return Fail(1, QStringLiteral("The replay was ended before its end."));
  Say(replay->Summary());
  return replay->Differences() == 0 ? 0 : 1;
}

int Run(const RootFolder& root, const Options& options, Session* session) {
  Snapshots::Recover(root.Path());
  const QString build = QCoreApplication::applicationDirPath() + QStringLiteral("/..");
  QString error;
  if (!Prepare(root, options, session, &error) || !root.Furnish(build + QStringLiteral("/pictures"), &error))
    return Fail(1, error);
  Bench bench(build + QStringLiteral("/gui/dashcam-gui"), root, session->begin.language);
  for (const int camera : {0, 1})
    if (const QString& path = options.footage[camera]; !path.isEmpty() && !bench.ShowFootage(camera, path, &error))
      return Fail(1, error);
  RecordOnDemand record(bench, root, !options.record.isEmpty());
  std::unique_ptr<Replay> replay;
  if (session->isReplay) replay = std::make_unique<Replay>(bench, session->begin, options.how);
  WebServer server(bench, record, replay.get());
  QObject::connect(&bench, &Bench::ScreenShown,
                   [&server] { Say(QStringLiteral("Dash camera: http://127.0.0.1:%1/").arg(server.Port())); });
  QObject::connect(&bench, &Bench::GaveUp, [](const QString& sentence) { QCoreApplication::exit(Fail(1, sentence)); });
  if (session->isReplay || !options.record.isEmpty())
    bench.Begin(session->begin.seed, session->begin.clock, replay.get());
  RecordWriter writer(bench);
  QObject::connect(&writer, &RecordWriter::Failed, [](const QString& sentence) { Fail(1, sentence); });
  if (!server.Listen(options.port, &error)) return Fail(1, error);
  if (!options.record.isEmpty() && !writer.Open(options.record, options.replacesRecord, session->begin, &error))
    return Fail(1, error);
  if (!bench.Start(options.scenario, &error)) return Fail(1, error);
  const int code = Serve(bench, replay.get());
  writer.Finish();
  bench.Stop();
  return code;
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
  if (options.version) {
    Say(QStringLiteral("dashcam-bench " DASHCAM_VERSION));
    return 0;
  }
  Session session;
  session.begin.language = options.language;
  session.isReplay = !options.replay.isEmpty();
  if (session.isReplay && !Replay::Read(options.replay, &session.begin, &error)) return Fail(2, error);
  RootFolder root;
  if (!root.Choose(options.root, &error)) return Fail(1, error);
  qputenv("PLATFORM_KEY", QByteArray::number(root.PlatformKey()));
  // A bench that is killed the moment it has made its root leaves nothing, either; one that is kept is locked first.
  std::optional<Janitor> janitor;
  if (root.IsFresh()) janitor.emplace(root.Path(), true);
  if (!root.Take(&error)) return Fail(1, error);
  if (!janitor) janitor.emplace(root.Path(), false);
  if (!janitor->IsReady()) return Fail(1, QStringLiteral("No process can be made."));
  return Run(root, options, &session);
}
