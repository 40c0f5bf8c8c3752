#pragma once

#include <QJsonObject>
#include <QLocalSocket>
#include <QObject>
#include <memory>

/// A client's connection: a JSON object a line, both ways. A client that sends a line without end, or that takes
/// nothing of what it gets, is given up.
class LineSocket : public QObject {
  Q_OBJECT

public:
  static constexpr qint64 kLongest = qint64{64} * 1024;            ///< bytes of a line
  static constexpr qint64 kMostWaiting = qint64{4} * 1024 * 1024;  ///< bytes that a client has not taken

  explicit LineSocket(std::unique_ptr<QLocalSocket> socket);
  ~LineSocket() override;

  void Send(const QJsonObject& message);

  /// Says it, as far as the client takes it now, and ends the connection.
  void Refuse(int status, const QString& error);

  /// Whether the client has taken everything so far.
  bool KeepsUp() const { return mSocket->bytesToWrite() == 0; }

signals:
  void Came(const QByteArray& line);
  void Left();

private:
  void Read();

  std::unique_ptr<QLocalSocket> mSocket;
};
