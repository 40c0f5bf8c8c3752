// perf-bare-touch FIFO: what any Qt program needs from a touch record to pixels: a thread reads the records, queues a
// signal, and one picture of a key's size is painted.
#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <unistd.h>

#include <QApplication>
#include <QPainter>
#include <QWidget>
#include <cstdint>
#include <thread>

namespace {
struct Record {
  std::uint32_t seconds, microseconds;
  std::uint16_t type, code;
  std::int32_t value;
};

class Key : public QWidget {
public:
  explicit Key(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setGeometry(4, 3, 71, 60);
    for (QPixmap& picture : mPictures) picture = QPixmap(size());
    mPictures[0].fill(Qt::red);
    mPictures[1].fill(Qt::blue);
  }
  void Toggle() {
    mIsOn = !mIsOn;
    repaint();
  }

protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).drawPixmap(0, 0, mPictures[mIsOn]); }

private:
  QPixmap mPictures[2];
  bool mIsOn = false;
};
}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.setWindowFlags(Qt::FramelessWindowHint);
  window.resize(480, 320);
  Key key(&window);
  window.show();
  std::thread([&key, fifo = open(argv[1], O_RDONLY)] {
    Record record{};
    while (read(fifo, &record, sizeof record) == sizeof record)
      if (record.type == EV_ABS && record.code == ABS_PRESSURE && record.value != 0)
        QMetaObject::invokeMethod(
            &key, [&key] { key.Toggle(); }, Qt::QueuedConnection);
  }).detach();
  return QApplication::exec();
}
