#pragma once

#include <QByteArray>

/// The screen of a machine without a display server: Qt's platform "linuxfb". It is chosen when there is no server and
/// nothing else is asked for. On one of another size than the interface's the picture stands in the middle.
class Framebuffer {
public:
  /// Before the application object; the arguments may get another text for "-platform", which is this object's. False,
  /// with one sentence on the standard error, when there is no framebuffer to show anything on.
  bool Choose(int argc, char** argv);

  /// After the application object, which switches the console off: black around the picture.
  void Blacken() const;

private:
  QByteArray mPlatform;
  QByteArray mDevice;  // empty: nothing is to be done about it
};
