#include "bench/server/liveclient.h"

#include <QJsonDocument>
#include <QtEndian>

#include "bench/server/requesthead.h"
#include "recorder/service/members.h"
#include "recorder/service/requests.h"

namespace {
constexpr qsizetype kMostEntries = 200;                   // of the log in one message
constexpr int kMostRectangles = 600;                      // of a picture message
constexpr qint64 kMostWaiting = qint64{4} * 1024 * 1024;  // bytes that a client has not taken; then it is given up
constexpr qint64 kLate = qint64{1024} * 1024;             // bytes: more than one whole picture before it

void AppendWord(QByteArray* bytes, int word) {
  char little[2];
  qToLittleEndian(static_cast<quint16>(word), little);
  bytes->append(little, sizeof little);
}

void AppendPixels(QByteArray* bytes, const QImage& picture, const QRect& where) {
  const QImage part = picture.copy(where).convertToFormat(QImage::Format_RGBX8888);
  for (int row = 0; row < part.height(); ++row)
    bytes->append(reinterpret_cast<const char*>(part.constScanLine(row)), qsizetype{4} * part.width());
}

QByteArray PictureMessage(const QImage& picture, QRegion where) {
  if (where.rectCount() > kMostRectangles) where = picture.rect();
  QByteArray bytes;
  AppendWord(&bytes, where.rectCount());
  for (const QRect& rectangle : where) {
    for (const int word : {rectangle.x(), rectangle.y(), rectangle.width(), rectangle.height()})
      AppendWord(&bytes, word);
    AppendPixels(&bytes, picture, rectangle);
  }
  return bytes;
}

QJsonObject Typed(const char* type, const char* name, const QJsonValue& value) {
  return {{QStringLiteral("type"), QLatin1String(type)}, {QLatin1String(name), value}};
}
}  // namespace

LiveClient::LiveClient(std::unique_ptr<QWebSocket> socket, Bench& bench) : mSocket(std::move(socket)), mBench(bench) {
  mSocket->setMaxAllowedIncomingMessageSize(RequestHead::kMostBody);
  mSocket->setMaxAllowedIncomingFrameSize(RequestHead::kMostBody);
  connect(mSocket.get(), &QWebSocket::textMessageReceived, this, &LiveClient::Take);
  connect(mSocket.get(), &QWebSocket::binaryMessageReceived, this,
          [this] { mSocket->close(QWebSocketProtocol::CloseCodeDatatypeNotSupported); });
  connect(mSocket.get(), &QWebSocket::disconnected, this, &LiveClient::Left);
}

LiveClient::~LiveClient() {
  mSocket->disconnect(this);
  mBench.TheFinger().Leave(this);
}

void LiveClient::PictureChanged(const QRegion& where) {
  if (mIsWatching) mUnsent += where;
}

void LiveClient::SendPicture() {
  if (!mIsWatching || mUnsent.isEmpty() || !KeepsUp()) return;
  const QRegion where = std::exchange(mUnsent, QRegion());
  mSocket->sendBinaryMessage(PictureMessage(mBench.Lcd().Shown(), where));
}

void LiveClient::SendNews(const QJsonObject& state) {
  if (state != mState) Send(Typed("state", "state", state));
  mState = state;
  const qint64 last = mBench.Log().Last();
  if (last > mLog) Send(Typed("log", "entries", mBench.Log().Since(mLog, kMostEntries)));
  mLog = last;
}

void LiveClient::SendClick() {
  // A click that comes late is none.
  if (mSocket->bytesToWrite() < kLate) Send({{QStringLiteral("type"), QStringLiteral("click")}});
}

void LiveClient::Send(const QJsonObject& message) {
  if (mSocket->bytesToWrite() > kMostWaiting) return mSocket->abort();
  mSocket->sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
}

void LiveClient::Take(const QString& message) {
  Send(requests::Answer(message.toUtf8(),
                        [this](const QString& type, const QJsonObject& members) { return Do(type, members); }));
}

Reply LiveClient::Do(const QString& type, const QJsonObject& members) {
  if (type == QLatin1String("touch")) return mBench.Touch(members, this);
  if (type == QLatin1String("event")) return mBench.Event(members);
  if (type == QLatin1String("action")) return mBench.Action(members);
  if (type == QLatin1String("watch")) return Watch(members);
  return Reply::Bad(QStringLiteral("\"type\" must be one of touch, event, action, watch."));
}

Reply LiveClient::Watch(const QJsonObject& request) {
  Members members(request);
  const bool on = members.Flag("on");
  if (const QString error = members.Error(); !error.isEmpty()) return Reply::Bad(error);
  if (on == mIsWatching) return {};
  mIsWatching = on;
  mUnsent = on ? QRegion(0, 0, 480, 320) : QRegion();
  emit WatchChanged();
  return {};
}
