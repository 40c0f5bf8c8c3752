#include "recorder/console/console.h"

#include <sys/stat.h>

#include <QFile>
#include <algorithm>
#include <limits>

#include "recorder/service/members.h"
#include "recorder/service/requests.h"

namespace {
constexpr size_t kMostClients = 16;
constexpr qsizetype kMostEntries = 200;  // of the log in one message
constexpr int kBetween = 100;            // milliseconds from one state to the next
constexpr int kPatience = 1000;          // milliseconds: whoever listens takes a connection

QJsonObject Typed(const char* type, const char* name, const QJsonValue& value) {
  return {{QStringLiteral("type"), QLatin1String(type)}, {QLatin1String(name), value}};
}

Reply Checked(const Members& members) {
  const QString error = members.Error();
  return error.isEmpty() ? Reply() : Reply::Bad(error);
}

void Insert(QJsonObject* object, const QJsonObject& more) {
  for (auto member = more.begin(); member != more.end(); ++member) object->insert(member.key(), member.value());
}
}  // namespace

const Console::Request Console::kRequests[] = {
    {"event", &Console::Event},     {"action", &Console::Action}, {"scenario", &Console::Scenario},
    {"state", &Console::TellState}, {"log", &Console::TellLog},   {"actions", &Console::TellActions},
    {"watch", &Console::Watch},
};

Console::Console(Recorder& recorder, const QString& root) : mRecorder(recorder), mRoot(root) {
  mServer.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&mServer, &QLocalServer::newConnection, this, &Console::Accept);
  mNews.setSingleShot(true);
  mNews.callOnTimeout([this] { SendNews(); });
  Connect();
}

// What needs a bench is only told.
void Console::Connect() {
  connect(&mRecorder, &Recorder::Logged, &mLog, [this](const QJsonObject& entry) { mLog.Add(entry); });
  connect(&mRecorder, &Recorder::StateChanged, this, &Console::NewsCame);
  connect(&mRecorder, &Recorder::VideoChanged, this, &Console::NewsCame);
  connect(&mLog, &EventLog::Added, this, &Console::NewsCame);
  connect(&mRecorder, &Recorder::RestartWanted, this,
          [this] { Note(QStringLiteral("The device restarts: the interface is to be started again.")); });
  connect(&mRecorder, &Recorder::InterfaceEndWanted, this,
          [this] { Note(QStringLiteral("An update begins: the interface is to be ended.")); });
  connect(&mRecorder, &Recorder::TouchWanted, this, [this](const QJsonObject& request) {
    Note(QStringLiteral("There is no touch panel here: a %1 is left out.")
             .arg(request.value(QLatin1String("action")).toString()));
  });
  connect(&mRecorder, &Recorder::PictureWanted, this, [this](const QString& path) {
    Note(QStringLiteral("Nobody reads pictures here: %1 is left out.").arg(path));
  });
}

bool Console::Listen(const QString& path, QString* error) {
  struct stat state {};
  if (lstat(QFile::encodeName(path).constData(), &state) == 0) {
    if (!S_ISSOCK(state.st_mode)) {
      *error = QStringLiteral("%1 is there already, and is no socket.").arg(path);
      return false;
    }
    QLocalSocket other;
    other.connectToServer(path);
    if (other.waitForConnected(kPatience)) {
      *error = QStringLiteral("Another program listens at %1.").arg(path);
      return false;
    }
    QLocalServer::removeServer(path);  // of a recorder that has died
  }
  if (mServer.listen(path) && chmod(QFile::encodeName(path).constData(), 0600) == 0) return true;
  *error = QStringLiteral("The socket %1 cannot be opened: %2.").arg(path, mServer.errorString());
  return false;
}

void Console::Accept() {
  while (QLocalSocket* socket = mServer.nextPendingConnection()) {
    socket->setParent(nullptr);
    auto client = std::make_unique<Client>();
    client->socket = std::make_unique<LineSocket>(std::unique_ptr<QLocalSocket>(socket));
    if (mClients.size() >= kMostClients) {
      client->socket->Refuse(409, QStringLiteral("There are %1 clients already.").arg(kMostClients));
      continue;
    }
    mClients.push_back(std::move(client));
    Client& added = *mClients.back();
    const LineSocket* line = added.socket.get();
    connect(line, &LineSocket::Came, this, [this, &added](const QByteArray& bytes) { Take(added, bytes); });
    // Not in the middle of its own doings.
    connect(
        line, &LineSocket::Left, this, [this, line] { Remove(line); }, Qt::QueuedConnection);
  }
}

void Console::Remove(const LineSocket* socket) {
  std::erase_if(mClients, [socket](const auto& client) { return client->socket.get() == socket; });
}

void Console::Take(Client& client, const QByteArray& line) {
  QJsonObject more;
  QJsonObject answer = requests::Answer(line, [&](const QString& type, const QJsonObject& members) {
    for (const Request& request : kRequests)
      if (type == QLatin1String(request.type)) return (this->*request.act)(client, members, &more);
    return Reply::Bad(QStringLiteral("\"type\" must be one of event, action, scenario, state, log, actions, watch."));
  });
  Insert(&answer, more);
  client.socket->Send(answer);
}

Reply Console::Event(Client&, const QJsonObject& members, QJsonObject*) {
  int event = 0, value = 0;
  Reply reply = requests::TakeEvent(members, &event, &value);
  return reply.IsGood() ? mRecorder.Tell(event, value) : reply;
}

Reply Console::Action(Client&, const QJsonObject& members, QJsonObject*) {
  QString name;
  QJsonObject arguments;
  Reply reply = requests::TakeAction(members, &name, &arguments);
  return reply.IsGood() ? mRecorder.Act(name, arguments) : reply;
}

Reply Console::Scenario(Client&, const QJsonObject& request, QJsonObject*) {
  Members members(request);
  const QString file = members.Text("file");
  if (Reply reply = Checked(members); !reply.IsGood()) return reply;
  QString error;
  return mRecorder.PlayScenario(file, &error) ? Reply() : Reply::Bad(error);
}

Reply Console::TellState(Client&, const QJsonObject& request, QJsonObject* more) {
  Reply reply = Checked(Members(request));
  if (reply.IsGood()) more->insert(QStringLiteral("state"), State());
  return reply;
}

Reply Console::TellLog(Client&, const QJsonObject& request, QJsonObject* more) {
  Members members(request);
  const int since = members.Whole("since", 0, std::numeric_limits<int>::max(), 0);
  Reply reply = Checked(members);
  if (reply.IsGood())
    *more = {{QStringLiteral("last"), mLog.Last()}, {QStringLiteral("entries"), mLog.Since(since, EventLog::kMost)}};
  return reply;
}

Reply Console::TellActions(Client&, const QJsonObject& request, QJsonObject* more) {
  Reply reply = Checked(Members(request));
  if (reply.IsGood())
    *more = {{QStringLiteral("actions"), Recorder::Actions()}, {QStringLiteral("events"), Recorder::Events()}};
  return reply;
}

Reply Console::Watch(Client& client, const QJsonObject& request, QJsonObject*) {
  Members members(request);
  const bool on = members.Flag("on");
  Reply reply = Checked(members);
  if (!reply.IsGood() || on == client.isWatching) return reply;
  client.isWatching = on;
  client.state = {};
  client.log = 0;
  NewsCame();
  return reply;
}

QJsonObject Console::State() const {
  return {{QStringLiteral("video"), mRecorder.VideoState()},
          {QStringLiteral("recorder"), mRecorder.State()},
          {QStringLiteral("armed"), mRecorder.Armed()},
          {QStringLiteral("unavailable"), mRecorder.Unavailable()},
          {QStringLiteral("root"), mRoot},
          {QStringLiteral("log"), mLog.Last()}};
}

void Console::NewsCame() {
  const bool isWatched =
      std::any_of(mClients.begin(), mClients.end(), [](const auto& client) { return client->isWatching; });
  if (!isWatched || mNews.isActive()) return;
  const qint64 since = mSinceNews.isValid() ? mSinceNews.elapsed() : kBetween;
  mNews.start(static_cast<int>(std::max<qint64>(0, kBetween - since)));
}

// What a client misses that does not keep up is gathered for it.
void Console::SendNews() {
  mSinceNews.start();
  const QJsonObject state = State();
  bool haveAll = true;
  for (const auto& client : mClients) {
    if (!client->isWatching) continue;
    if (!client->socket->KeepsUp()) {
      haveAll = false;
      continue;
    }
    if (state != client->state) client->socket->Send(Typed("state", "state", state));
    client->state = state;
    if (mLog.Last() > client->log) client->socket->Send(Typed("log", "entries", mLog.Since(client->log, kMostEntries)));
    client->log = mLog.Last();
  }
  if (!haveAll) mNews.start(kBetween);
}
