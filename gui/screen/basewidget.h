#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <QWidget>
#include <functional>
#include <utility>

#include "gui/vocabulary/vocabulary.h"

class MessageBox;
class QTimer;

inline constexpr int kNoticeMs = 2000;  ///< how long a box stays that closes itself; a few have a time of their own

/// Where a touch does something, and what it is called: a picture below the image folder, or a word.
struct TouchArea {
  QRect area;
  QString name;
};

/// Every screen: 480 × 320, with two message-box slots (the screen's own boxes, and the ones that status events raise),
/// a general timer, the way to other screens, and the way out of the settings (EntryPreview). GUI thread.
class BaseWidget : public QWidget {
  Q_OBJECT

public:
  explicit BaseWidget(QWidget* parent);
  ~BaseWidget() override;

  /// A touch at (x, y) of the screen, whoever it is for: the box on top, which is the one painted last, or the screen.
  /// An event's box without an answer of its own closes when nothing else closes it, and takes the touch in any case.
  /// `type` is a Touch_Type: TOUCH_PRESS, or TOUCH_AUTO for a key that is held, which no box takes.
  /// The screen may be gone afterwards.
  void Touch(int type, int x, int y);

  /// The same, for a touch that the panel tells in a way of its own: true when a box has taken it.
  bool TakenByBox(int type, int x, int y);

  /// Where a touch does something as it is now: what Touch() decides, told beforehand.
  QList<TouchArea> TouchAreas() const;

  /// A touch that no box takes.
  virtual void touchEvent(int type, int x, int y);
  /// A status event of the recorder, after the window's own handling.
  virtual void recvEvent(int event, int value);

  /// Called whenever the screen becomes visible, and whenever it is hidden or covered.
  virtual void onResume();
  virtual void onPause();
  /// Called whenever a box of the screen has come or gone, the screen has come on top or been covered, and when the LCD
  /// has gone on or off.
  virtual void onTopChanged() {}

  /// A touch that is for the screen's own box; for an event's box that is a question.
  virtual void MessageBoxHandler(int type, int x, int y, int messageId);
  virtual void RecvMessageBoxHandler(int type, int x, int y, int messageId);

  /// Shows catalogue message `messageId` in the own slot, or the event slot if `recv`; in place of what the slot shows.
  /// `value` goes into texts that take one. It closes itself after `timeoutMs`; below 1: it stays until deleted.
  void PaintMessageBox(int messageId, bool recv, int value, int timeoutMs);
  void ShowMessageBox(int kind, int a, int b, const QString& text, bool recv, int c, int d);
  void DelMessageBox();
  void DelRecvMessageBox();

  bool GetShowMessageBoxFlag() const { return mIsShowMessageBox; }
  bool GetShowRecvMessageBoxFlag() const { return mIsShowRecvMessageBox; }
  int GetMessageId() const { return mMessageId; }          ///< of the own box; -1 = none
  int GetRecvMessageId() const { return mRecvMessageId; }  ///< of the event box; -1 = none
  bool GetRestartRecStartFlag() const { return mRestartRecStart; }

  // After these three the screen may be gone: touch nothing of it.
  void Next(WidgetId id, QObject* arg = nullptr);
  void Back();
  void Jump(WidgetId id);

  /// A command to the recorder, as ScreenHost::SendEvent.
  void SendEvent(Send_Event event, int value, const QString& text, int* out = nullptr);
  void SendEvent(Send_Event event, int value, const QString& text, float* out);

  /// A timer, of the screen or of any `owner`. `slot` waits its turn, as touches and status events do.
  QTimer* NewTimer(const char* name, std::function<void()> slot) { return NewTimer(this, name, std::move(slot)); }
  static QTimer* NewTimer(QObject* owner, const char* name, std::function<void()> slot);

  static void SetTimer(QTimer* timer, int ms);
  static void StopTimer(QTimer* timer);
  /// TimeoutEvent is called after `ms` with `eventId` pending; it replaces what was pending.
  void SetEvent(int eventId, int ms);

  /// Leaves the setting screens for the live view: saves what was changed, or asks for a format of the card first.
  void EntryPreview();

public slots:
  virtual void TimeoutEvent();
  void TimeoutRestartRecStart();
  void TimeoutMessageBoxTimer();
  void TimeoutRecvMessageBoxTimer();

signals:
  void nextWidget(WidgetId id, QObject* arg);
  void backWidget();
  void jumpWidget(WidgetId id);

protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

  /// Those of the screen alone. Whatever touchEvent() takes stands here.
  virtual QList<TouchArea> KeyAreas() const { return {}; }

  /// The driver has touched, whoever takes it.
  virtual void Touched() {}

  /// A box that stays until somebody closes it.
  bool IsStandingBoxShown() const;

  bool IsCurrentScreen() const;

  /// The pending event, which is none any more. For TimeoutEvent: what it does next may delete the screen.
  int TakeEventId();

  bool mIsShowRecvMessageBox = false;
  bool mIsShowMessageBox = false;
  int mMessageBoxType = -1;
  int mRecvMessageId = -1;
  int mMessageId = -1;
  MessageBox* mMessageBox = nullptr;
  MessageBox* mRecvMessageBox = nullptr;
  QTimer* mMessageBoxTimer;
  QTimer* mRecvMessageBoxTimer;
  QTimer* mEventTimer;
  QTimer* mTimRestartRecStart;
  int mEventId = -1;
  bool mRestartRecStart = false;

private:
  enum class Box { None, Own, Event };
  Box TopBox() const;
  void ReportBoxes();
  void SaveAndRestartRecording();

  QString mRecvMessageText, mMessageText;
  bool mIsRecvBoxOnTop = false;  // of two boxes the event's was painted last
  Box mTopBox = Box::None;       // as last reported
  QString mTopText;
};
