#include "tour/inspection.h"

#include <QCryptographicHash>
#include <QGuiApplication>
#include <QLabel>
#include <QPaintEngine>
#include <QPainter>
#include <QRegularExpression>
#include <QScreen>
#include <QTextStream>

#include "bench/lcd/compose.h"
#include "gui/app/mainwindow.h"
#include "gui/base/devicepath.h"
#include "gui/led/ledfileitem.h"
#include "gui/screen/label.h"
#include "gui/screen/widgetmanager.h"
#include "pictures/picturetable.h"

namespace {
Inspection* listener = nullptr;

void Listen(QtMsgType type, const QMessageLogContext&, const QString& line) {
  if (type == QtFatalMsg) QTextStream(stderr) << line << "\n";
  if (line.startsWith(QLatin1String("picture: missing: "))) listener->Fail(line);
}

QByteArray DigestOf(const QImage& picture) {
  const QImage plain = picture.convertToFormat(QImage::Format_RGB32);
  QCryptographicHash digest(QCryptographicHash::Md5);
  for (int y = 0; y < plain.height(); ++y)
    digest.addData(QByteArrayView(plain.constScanLine(y), qsizetype{4} * plain.width()));
  return digest.result() + QByteArray::number(plain.width());
}

/// A surface that keeps nothing but what pictures were painted on it.
class PictureSink : public QPaintDevice {
public:
  explicit PictureSink(QSet<QByteArray>* seen) : mEngine(seen) {}
  QPaintEngine* paintEngine() const override { return &mEngine; }

protected:
  int metric(PaintDeviceMetric metric) const override {
    switch (metric) {
      case PdmWidth:
        return 480;
      case PdmHeight:
        return 320;
      case PdmDepth:
        return 32;
      case PdmDevicePixelRatio:
        return 1;
      case PdmDpiX:
      case PdmDpiY:
      case PdmPhysicalDpiX:
      case PdmPhysicalDpiY:
        return 72;
      default:
        return QPaintDevice::metric(metric);
    }
  }

private:
  class Engine : public QPaintEngine {
  public:
    explicit Engine(QSet<QByteArray>* seen) : QPaintEngine(AllFeatures), mSeen(seen) {}
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    Type type() const override { return User; }
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawPath(const QPainterPath&) override {}
    void drawTextItem(const QPointF&, const QTextItem&) override {}
    void drawPixmap(const QRectF&, const QPixmap& picture, const QRectF&) override {
      if (!picture.isNull()) mSeen->insert(DigestOf(picture.toImage()));
    }

  private:
    QSet<QByteArray>* mSeen;
  };
  mutable Engine mEngine;
};

// The layout knows these, but no message needs them, and no key changes its look while it is pressed.
const QSet<QString> kNeverPainted = {
    QStringLiteral("bg/logo.bmp"),
    QStringLiteral("messagebox/dim.bmp"),
    QStringLiteral("messagebox/message_caution2.bmp"),
    QStringLiteral("messagebox/message_warning.bmp"),
    QStringLiteral("messagebox/message_error.bmp"),
    QStringLiteral("messagebox/message_button_yes2_press.bmp"),
    QStringLiteral("messagebox/message_button_no_press.bmp"),
    QStringLiteral("messagebox/message_button_ok_press.bmp"),
    QStringLiteral("messagebox/message_button_ok2_press.bmp"),
    QStringLiteral("messagebox/message_button_cancel_normal.bmp"),
    QStringLiteral("messagebox/message_button_cancel_press.bmp"),
};

const QRegularExpression kKorean(QStringLiteral("\\p{Hangul}"));

// The screens that let the video show.
bool IsOverVideo() {
  const WidgetId screen = gWidgetManager.GetCurWidgetId();
  return screen == PREVIEW || screen == PLAYER || screen == MOTIONSETTING;
}

bool Has(const QImage& picture, QRgb colour) {
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      if (picture.pixel(x, y) == colour) return true;
  return false;
}
}  // namespace

Inspection::Inspection() {
  listener = this;
  qInstallMessageHandler(Listen);
}

Inspection::~Inspection() {
  qInstallMessageHandler(nullptr);
  listener = nullptr;
}

void Inspection::Look(MainWindow& window, const QString& name, const QImage& drawn) {
  LookAtTexts(window, name);
  LookAtGround(window, name, drawn);
  LookAtKeyColour(window, name, drawn);
  NotePictures(window);
}

void Inspection::LookAtTexts(MainWindow& window, const QString& name) {
  const QList<QLabel*> labels = window.findChildren<QLabel*>();
  for (const QLabel* label : labels) {
    if (!label->isVisible() || label->text().isEmpty()) continue;
    const bool isTheDrivers = dynamic_cast<const LedFileItem*>(label->parent());
    if (!IsSourceLanguage() && !isTheDrivers && kKorean.match(label->text()).hasMatch())
      Fail(QStringLiteral("%1: the text \"%2\" is Korean").arg(name, label->text()));
    if (label->text().contains(QChar::ReplacementCharacter))
      Fail(QStringLiteral("%1: the text \"%2\" lost its letters").arg(name, label->text()));
    const QRect area = label->contentsRect();
    const QRect text = dynamic_cast<const TextLabel&>(*label).Letters();
    const QRect inParent = QRect(label->mapToParent(text.topLeft()), text.size());
    if (!area.contains(text) || !label->parentWidget()->rect().contains(inParent))
      Fail(QStringLiteral("%1: the text \"%2\" needs %3 x %4 pixels and has %5 x %6")
               .arg(name, label->text())
               .arg(text.width())
               .arg(text.height())
               .arg(area.width())
               .arg(area.height()));
  }
}

void Inspection::LookAtGround(MainWindow& window, const QString& name, const QImage& drawn) {
  // What is on the screen came piece by piece; it must be what a whole painting gives.
  QEvent update(QEvent::UpdateRequest);
  QCoreApplication::sendEvent(&window, &update);
  const QImage pieces =
      QGuiApplication::primaryScreen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
  if (pieces != drawn) Fail(name + QStringLiteral(": pixels of an earlier painting are left"));
  if (!IsOverVideo() && Has(drawn, kKeyColour)) Fail(name + QStringLiteral(": the video shows through"));
}

// A screen of 16 bits knows fewer colours: what is nearly the key colour could become it, a picture or the edge of a
// text.
void Inspection::LookAtKeyColour(MainWindow& window, const QString& name, const QImage& drawn) {
  QImage coarse(drawn.size(), QImage::Format_RGB16);
  coarse.fill(Qt::black);
  window.render(&coarse);
  coarse.convertTo(QImage::Format_RGB32);
  for (int y = 0; y < drawn.height(); ++y) {
    const auto* wanted = reinterpret_cast<const QRgb*>(drawn.constScanLine(y));
    const auto* found = reinterpret_cast<const QRgb*>(coarse.constScanLine(y));
    for (int x = 0; x < drawn.width(); ++x) {
      const bool isKey = wanted[x] == kKeyColour;
      if ((found[x] == kKeyColour) == isKey) continue;
      Fail(QStringLiteral("%1: pixel (%2, %3) is the key colour on screens of %4 bits alone")
               .arg(name)
               .arg(x)
               .arg(y)
               .arg(isKey ? 32 : 16));
      return;
    }
  }
}

void Inspection::NotePictures(MainWindow& window) {
  PictureSink sink(&mSeen);
  window.render(&sink);
}

void Inspection::LookAtTable() {
  const QString table = QStringLiteral(SOURCE_DIR "/pictures/images.csv");
  const QList<PictureRow> rows = ReadPictureTable(table);
  const QList<PictureRow> translated = ReadPictureTable(table, IsSourceLanguage() ? QString() : Language());
  for (qsizetype i = 0; i < rows.size(); ++i) {
    const QString& path = rows[i].path;
    const QString images = DevicePath(QLatin1String(device::kImages));
    const QString file = path.startsWith(u'/') ? DevicePath(path) : images + path;
    const bool hasOwn = translated[i].caption != rows[i].caption;
    if (hasOwn && mSeen.contains(DigestOf(QImage(file)))) Fail(path + QStringLiteral(" is shown in Korean"));
    const QImage picture(hasOwn ? images + Language() + u'/' + path : file);
    if (mSeen.contains(DigestOf(picture)) == kNeverPainted.contains(path))
      Fail(path + (kNeverPainted.contains(path) ? QStringLiteral(" is shown") : QStringLiteral(" is never shown")));
    if (!IsSourceLanguage() && kKorean.match(translated[i].caption.join(u' ')).hasMatch())
      Fail(path + QStringLiteral(" has a Korean caption"));
  }
}
