// What any Qt program costs here: one window of the screen's size with one Korean label.
#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
  qputenv("QT_FONT_DPI", "72");
  qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
  QApplication application(argc, argv);
  QFont face(QStringLiteral("NanumBarunGothic"));
  face.setPixelSize(24);
  QApplication::setFont(face);
  QWidget window;
  window.setWindowFlags(Qt::FramelessWindowHint);
  window.resize(480, 320);
  QPalette white;
  white.setColor(QPalette::Window, Qt::white);
  window.setPalette(white);
  QLabel label(QStringLiteral(u"영상 녹화를 시작합니다."), &window);
  label.setGeometry(100, 140, 300, 40);
  window.show();
  return QApplication::exec();
}
