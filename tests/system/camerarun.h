#pragma once

#include <QDateTime>
#include <QImage>
#include <QTest>
#include <memory>

#include "tests/system/benchrun.h"

/// The base of the tests that use the camera as a driver does: the bench with the real interface and the recorder, and
/// a finger on its panel. The slot initTestCase() of the test calls StartCamera().
class CameraRun : public QObject {
protected:
  static constexpr int kBoxMs = 10000;  ///< longer than any box stays
  static constexpr QRect kViewKey{4, 3, 71, 60};
  static constexpr QPoint kBeside{300, 200};  ///< of the preview: no key

  /// True when the live preview is on the LCD.
  bool StartCamera(const QStringList& arguments = {}) {
    mBench = std::make_unique<BenchRun>(arguments);
    return mBench->IsUp() && QTest::qWaitFor([this] { return IsOverlayShown(); }, kPatienceMs);
  }

  bool Tap(QPoint at) const {
    return mBench
               ->Post("/api/touch",
                      QStringLiteral("{\"action\": \"tap\", \"x\": %1, \"y\": %2}").arg(at.x()).arg(at.y()).toUtf8())
               .status == 200;
  }
  bool Event(int event, int value = 0) const {
    return mBench->Post("/api/event", QStringLiteral("{\"event\": %1, \"value\": %2}").arg(event).arg(value).toUtf8())
               .status == 200;
  }
  bool Do(const char* name) const { return mBench->Action(QByteArray("{\"name\": \"") + name + "\"}"); }

  QString Screen() const { return mBench->State("screen").toString(); }
  QString EventBox() const { return mBench->State("boxes/event/name").toString(); }
  QString OwnBox() const { return mBench->State("boxes/own/name").toString(); }
  /// Whether an interface has started since that entry of the log: until then the picture of the one before is seen.
  bool HasStarted(qint64 since) const {
    return !mBench->Find("note", QStringLiteral("An interface has started."), since).isEmpty();
  }
  bool IsCommanded(const char* name) const { return !mBench->Find("command", QLatin1String(name), mSince).isEmpty(); }

  /// What the interface has drawn.
  QImage Drawn() const {
    return QImage::fromData(mBench->Get("/api/lcd.png?raw=1").body).convertToFormat(QImage::Format_RGB32);
  }
  QImage Seen() const {
    return QImage::fromData(mBench->Get("/api/lcd.png").body).convertToFormat(QImage::Format_RGB32);
  }
  bool IsOverlayShown() const { return Drawn().pixel(kViewKey.topLeft() + QPoint(2, 2)) == qRgb(20, 17, 18); }

  qint64 SinceTouch() const {
    qint64 last = 0;
    for (const QJsonObject& entry : mBench->Log())
      if (entry.value(QStringLiteral("kind")) == QStringLiteral("touch"))
        last = entry.value(QStringLiteral("time")).toInteger();
    return QDateTime::currentMSecsSinceEpoch() - last;
  }

  /// The overlay is up and stays for a while, and nothing is in its way.
  void ShowOverlay() {
    QTRY_COMPARE_WITH_TIMEOUT(EventBox() + OwnBox(), QString(), kBoxMs);
    if (IsOverlayShown() && SinceTouch() < 3000) return;
    QVERIFY(QTest::qWaitFor([this] { return !IsOverlayShown(); }, 8000));  // it could hide at any moment
    QVERIFY(Tap(kBeside));
    QTRY_VERIFY(IsOverlayShown());
  }

  void OpenMenu() {
    ShowOverlay();
    QVERIFY(Tap({265, 33}));
    QTRY_COMPARE(Screen(), QStringLiteral("MAINMENU"));
  }

  /// All targets of the touch calibration, which is shown, twice.
  void Calibrate() {
    static constexpr QPoint kTargets[] = {{240, 160}, {40, 35},   {240, 35}, {440, 35}, {440, 160},
                                          {440, 285}, {240, 285}, {40, 285}, {40, 160}};
    for (int pass = 0; pass < 2; ++pass)
      for (const QPoint& target : kTargets) {
        QTRY_VERIFY(!mBench->State("touch/down").toBool());
        const QImage before = Drawn();
        QVERIFY(Tap(target));
        QTRY_VERIFY(Drawn() != before);
      }
  }

  /// Before each test: what the one before left is over.
  void AwaitPreview() {
    QTRY_COMPARE_WITH_TIMEOUT(Screen(), QStringLiteral("PREVIEW"), kBoxMs);
    mSince = mBench->LastEntry();
  }

  std::unique_ptr<BenchRun> mBench;
  qint64 mSince = 0;  ///< the log's end when the test began
};
