#pragma once

#include <QObject>
#include <QPointer>
#include <utility>

class BaseWidget;

/// Sees whether one message box takes the place of another without the bare page being painted between them: a flash
/// that no picture shows. GUI thread.
class FlashWatch : public QObject {
public:
  FlashWatch();

  /// Around whatever makes the interface act: a touch, an event, the end of a timer.
  void Begin();
  void End();

  /// Flashes since the last call.
  int Take() { return std::exchange(mFlashes, 0); }

protected:
  bool eventFilter(QObject* object, QEvent* event) override;

private:
  QPointer<BaseWidget> mScreen;  // on top at the beginning, with a box; else null
  bool mIsBare = false;
  int mFlashes = 0;
};
