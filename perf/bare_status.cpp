// perf-bare-status KEY: what any Qt program needs from a status message to a box: a thread waits in msgrcv, queues a
// signal, and a widget of a box's size shows one line of text.
#include <sys/msg.h>

#include <QApplication>
#include <QLabel>
#include <cstdlib>
#include <thread>

#include "platform/Msg_Def.h"

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
  QLabel box(&window);
  box.setGeometry(35, 84, 410, 168);
  box.setAlignment(Qt::AlignCenter);
  box.setAutoFillBackground(true);
  box.hide();
  window.show();
  const QString texts[] = {QStringLiteral(u"음성녹음을 중지합니다."), QStringLiteral(u"음성녹음을 시작합니다.")};
  int shown = 0;
  const auto show = [&] {
    box.setText(texts[shown = 1 - shown]);
    box.show();
    box.repaint();
  };
  std::thread([&, queue = msgget(key_t(std::strtoul(argv[1], nullptr, 10)), 0)] {
    GUI_MSG_BUF message{};
    while (msgrcv(queue, &message, GUI_MSG_SIZE, GUI_ID, 0) == GUI_MSG_SIZE)
      QMetaObject::invokeMethod(&box, show, Qt::QueuedConnection);
  }).detach();
  return QApplication::exec();
}
