#include "bench/server/pageclient.h"

#include <QtEndian>

#include "bench/server/requesthead.h"
#include "recorder/service/members.h"
#include "recorder/service/requests.h"

namespace {
constexpr int kMostRectangles = 600;  // of a picture message

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
}  // namespace

PageClient::PageClient(std::unique_ptr<QWebSocket> socket, Bench& bench, const Patience& patience)
    : LiveClient(bench, patience), mSocket(std::move(socket)) {
  mSocket->setMaxAllowedIncomingMessageSize(RequestHead::kMostBody);
  mSocket->setMaxAllowedIncomingFrameSize(RequestHead::kMostBody);
  connect(mSocket.get(), &QWebSocket::textMessageReceived, this, &PageClient::Take);
  connect(mSocket.get(), &QWebSocket::binaryMessageReceived, this,
          [this] { mSocket->close(QWebSocketProtocol::CloseCodeDatatypeNotSupported); });
  connect(mSocket.get(), &QWebSocket::pong, this, [this] { Lives(); });
  connect(mSocket.get(), &QWebSocket::disconnected, this, &PageClient::Left);
}

PageClient::~PageClient() {
  mSocket->disconnect(this);
  mBench.TheFinger().Leave(this);
}

void PageClient::PictureChanged(const QRegion& where) {
  if (mIsWatching) mUnsent += where;
}

void PageClient::SendPicture() {
  if (!mIsWatching || mUnsent.isEmpty() || !KeepsUp()) return;
  const QRegion where = std::exchange(mUnsent, QRegion());
  const QByteArray bytes = PictureMessage(mBench.Lcd().Shown(), where);
  mSocket->sendBinaryMessage(bytes);
  emit Sent(true, bytes.size());
}

void PageClient::SendLatency(const QJsonObject& latency) {
  if (!mWantsLatency || !KeepsUp() || latency == mLatency) return;
  mLatency = latency;
  QJsonObject message = latency;
  message.insert(QStringLiteral("type"), QStringLiteral("latency"));
  Send(message);
}

void PageClient::Write(const QString&, const QByteArray& message) {
  mSocket->sendTextMessage(QString::fromUtf8(message));
}

void PageClient::Take(const QString& message) {
  Send(requests::Answer(message.toUtf8(),
                        [this](const QString& type, const QJsonObject& members) { return Do(type, members); }));
}

Reply PageClient::Do(const QString& type, const QJsonObject& members) {
  if (type == QLatin1String("touch")) return mBench.Touch(members, this);
  if (type == QLatin1String("event")) return mBench.Event(members);
  if (type == QLatin1String("action")) return mBench.Action(members);
  if (type == QLatin1String("watch")) return Watch(members);
  if (type == QLatin1String("latency")) return TellLatency(members);
  return Reply::Bad(QStringLiteral("\"type\" must be one of touch, event, action, watch, latency."));
}

// {"on"}: what it says is so from now on.
Reply PageClient::Switch(const QJsonObject& request, bool* is, const std::function<void()>& changed) {
  Members members(request);
  const bool on = members.Flag("on");
  if (const QString error = members.Error(); !error.isEmpty()) return Reply::Bad(error);
  if (on == *is) return {};
  *is = on;
  changed();
  emit WatchChanged();
  return {};
}

Reply PageClient::Watch(const QJsonObject& request) {
  return Switch(request, &mIsWatching, [this] { mUnsent = mIsWatching ? QRegion(0, 0, 480, 320) : QRegion(); });
}

Reply PageClient::TellLatency(const QJsonObject& request) {
  return Switch(request, &mWantsLatency, [this] { mLatency = {}; });
}
