#pragma once

#include <QObject>

class BaseWidget;
class QTimer;

/// The format of the card that another resolution or frame rate needs: asked on the way out of the settings, answered
/// by a touch, begun when the voice prompt that says so has ended. The window has the one there is; gNeedFormatFlag is
/// the format that is asked for. GUI thread.
class FormatQuestion : public QObject {
  Q_OBJECT

public:
  explicit FormatQuestion(QObject* parent);

  /// The format that the edited settings need: 0 none, 1 resolution, 2 frame rate, 3 both.
  static int Need();
  /// The question for that format; SETUP_SAVING for none.
  static int MessageOf(int need);

  void Ask(BaseWidget& screen, int need);
  static void Forget();

  /// The question is what the own box of `screen` shows.
  static bool IsUp(const BaseWidget& screen);

  /// A touch at (x, y) while it is. Yes stops recording: Start follows with the end of the prompt, after 10 s at most.
  void Answer(BaseWidget& screen, int x, int y);

  /// Begins the format, if it was answered with yes. The screen on top may be another one afterwards.
  void Start();

private:
  bool mStartSDFormat = false;
  QTimer* mTimFormatStart;
};
