#pragma once

#include <QApplication>
#include <QLabel>
#include <QPaintEvent>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "gui/app/commandline.h"
#include "gui/base/globals.h"
#include "gui/base/picture.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"
#include "tests/fake/hostfake.h"
#include "tests/fake/testroot.h"

/// The base of the tests of one screen: a window without rules, and on its stack a screen that the tested one covers.
/// The slots init() and cleanup() of the test call StartHost() and mHost.reset().
class ScreenTest : public QObject {
protected:
  static PlatformFake& Fake() { return PlatformFake::Get(); }
  static QStringList Asked() { return PlatformFake::Get().asked; }
  static Setting_Config& Setting() { return gEnvirnmentSettings.mSetting; }
  static Setting_Config& Saved() { return gEnvirnmentSettings.mOldSetting; }

  void StartHost() {
    GetConfig();
    ApplyFont();
    Setting() = {};
    Setting().lcd_auto_off = Setting().lcd_bright = Setting().rear_cam_power = Setting().parking_mode_on = 1;
    Saved() = Setting();
    gCountOfCamera = 2;
    gInitFrontLed = 1;
    gNeedVolCom = false;
    gNeedFormatFlag = 0;
    mHost = std::make_unique<HostFake>();
    mHost->setPalette(QPalette(Qt::magenta, Qt::magenta));  // what shows through where a screen paints nothing
    mHost->show();
    mHost->Show(PREVIEW, new BaseWidget(mHost.get()));
    HostFake::Clear();
  }

  /// The screen on top; null when `Screen` is not on top.
  template <class Screen>
  static Screen* Top() {
    return qobject_cast<Screen*>(gWidgetManager.GetCurrentWidget());
  }
  static WidgetId TopId() { return gWidgetManager.GetCurWidgetId(); }
  static BaseWidget* TopScreen() { return gWidgetManager.GetCurrentWidget(); }
  static void Tap(int x, int y) { TopScreen()->Touch(TOUCH_PRESS, x, y); }
  static void TapLeftButton() { Tap(140, 236); }
  static void TapRightButton() { Tap(340, 236); }

  /// The message of the own box; -1: none.
  static int Box() { return TopScreen()->GetShowMessageBoxFlag() ? TopScreen()->GetMessageId() : -1; }

  /// Interval of a timer of the screen on top in ms; -1 when it does not run.
  static int Armed(const char* name) {
    const QTimer* timer = Timer(name);
    return timer->isActive() ? timer->interval() : -1;
  }
  static QTimer* Timer(const char* name) {
    auto* timer = TopScreen()->findChild<QTimer*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
    if (!timer) qFatal("no timer %s", name);
    return timer;
  }
  static QLabel* Label(const char* name) {
    auto* label = TopScreen()->findChild<QLabel*>(QLatin1String(name));
    if (!label) qFatal("no label %s", name);
    return label;
  }

  /// What of the screen on top is painted at once by `step`.
  static QRegion PaintedBy(const std::function<void()>& step) {
    struct Spy : QObject {
      QRegion painted;
      bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
        return false;
      }
    } spy;
    TopScreen()->installEventFilter(&spy);
    step();
    return spy.painted;
  }

  static QImage Seen(const QRect& area) {
    return TopScreen()->grab(area).toImage().convertToFormat(QImage::Format_RGB32);
  }
  /// The picture of the file is drawn at `at`.
  static bool IsDrawn(QPoint at, const QString& path) {
    const QImage wanted = Picture(path).toImage().convertToFormat(QImage::Format_RGB32);
    return !wanted.isNull() && Seen(QRect(at, wanted.size())) == wanted;
  }
  static bool IsDrawn(QPoint at, const char* path) { return IsDrawn(at, QLatin1String(path)); }
  static bool IsPlain(const QRect& area, const QColor& colour) {
    const QImage seen = Seen(area);
    for (int y = 0; y < seen.height(); ++y)
      for (int x = 0; x < seen.width(); ++x)
        if (seen.pixelColor(x, y) != colour) return false;
    return true;
  }
  static constexpr QColor kGround{38, 34, 35};
  static constexpr QColor kKeyColour{255, 0, 8};

  /// Rows for every pixel that lies just inside and just outside `area`: "x", "y", "hit".
  static void AddEdges(const char* name, const QRect& area) {
    const int left = area.left(), right = area.right(), top = area.top(), bottom = area.bottom();
    const QPoint inside[] = {{left, top}, {right, top}, {left, bottom}, {right, bottom}};
    const QPoint middle = area.center();
    const QPoint outside[] = {
        {left - 1, middle.y()}, {right + 1, middle.y()}, {middle.x(), top - 1}, {middle.x(), bottom + 1}};
    for (const QPoint& at : inside) QTest::addRow("%s in %d %d", name, at.x(), at.y()) << at.x() << at.y() << true;
    for (const QPoint& at : outside) QTest::addRow("%s out %d %d", name, at.x(), at.y()) << at.x() << at.y() << false;
  }

  std::unique_ptr<HostFake> mHost;
};
