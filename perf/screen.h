#pragma once

#include <QByteArray>
#include <QProcess>
#include <QRect>
#include <functional>

/// The X server and what is on its screen, mapped: looking costs no system call.
class Screen {
public:
  static constexpr QRect kAll{0, 0, 480, 320};

  /// `folder` takes the server's file.
  explicit Screen(const QString& folder);
  ~Screen();

  QString Display() const { return mDisplay; }
  quint32 Pixel(int x, int y) const;
  bool Has(const QRect& where, const std::function<bool(quint32)>& wanted) const;
  QByteArray Copy(const QRect& where = kAll) const;
  bool Shows(const QRect& where, const QByteArray& copy) const;

  /// Milliseconds from `act` until `isThere`.
  double Until(const std::function<bool()>& isThere, const std::function<void()>& act) const;
  /// Milliseconds from `act` until a pixel of `where` has changed.
  double UntilChanged(const QRect& where, const std::function<void()>& act) const;
  /// Waits until the screen has stayed as it is for so long.
  void Settle(int ms) const;
  /// Waits until no window is there.
  void WaitUntilEmpty() const;

private:
  const uchar* Line(const QRect& where, int y) const { return mPixels + qsizetype{y} * mLine + where.left() * 4; }

  QProcess mServer;
  QString mDisplay;
  const uchar* mPixels = nullptr;
  qsizetype mLine = 0;
};
