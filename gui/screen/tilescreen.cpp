#include "gui/screen/tilescreen.h"

#include <QPaintEvent>
#include <QPainter>

#include "gui/base/picture.h"
#include "gui/settings/config.h"

namespace {
constexpr QSize kTile(160, 130);
constexpr int kHeaderHeight = 60;
constexpr QRect kHomeKey(0, 0, 80, kHeaderHeight), kBackKey(400, 0, 80, kHeaderHeight);
constexpr QPoint kTitle(80, 0);

QRect TileRect(int row, int column) {
  return {QPoint(kTile.width() * (column - 1), kHeaderHeight + kTile.height() * (row - 1)), kTile};
}

// A key is touched on its picture without the first row and column: the lines between two keys belong to none.
bool IsTouched(const QRect& picture, int x, int y) {
  return picture.adjusted(1, 1, 0, 0).contains(x, y);
}
}  // namespace

TileScreen::TileScreen(QWidget* parent, const QString& title, std::span<const Tile> tiles, Header header)
    : BaseWidget(parent), mTitle(title), mTiles(tiles), mHeader(header) {}

void TileScreen::touchEvent(int type, int x, int y) {
  if (mIsShowRecvMessageBox) return;
  if (mIsShowMessageBox) {
    MessageBoxHandler(type, x, y, mMessageId);
    return;
  }
  if (IsTouched(kHomeKey, x, y)) {
    EntryPreview();
    return;
  }
  if (IsTouched(kBackKey, x, y)) {
    if (mHeader == Header::HomeAndBack) Back();
    return;
  }
  for (const Tile& tile : mTiles) {
    if (!IsTouched(TileRect(tile.row, tile.column), x, y)) continue;
    if (tile.offered && !tile.offered()) return;
    if (tile.press)
      tile.press(*this);
    else
      Next(tile.next);
    return;
  }
}

void TileScreen::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRect exposed = event->rect();
  const Color& bg = gColor.Bg;
  painter.fillRect(exposed, QColor(bg.r, bg.g, bg.b));
  const auto draw = [&](QPoint at, const QString& path) {
    const QPixmap picture = Picture(path);
    if (QRect(at, picture.size()).intersects(exposed)) painter.drawPixmap(at, picture);
  };
  draw(kHomeKey.topLeft(), QStringLiteral("common/home_normal.bmp"));
  draw(kTitle, mTitle);
  if (mHeader == Header::HomeAndBack) draw(kBackKey.topLeft(), QStringLiteral("common/back_normal.bmp"));
  for (const Tile& tile : mTiles) {
    const bool offered = !tile.offered || tile.offered();
    draw(TileRect(tile.row, tile.column).topLeft(), offered ? tile.key->ReleaseImage : tile.key->DisableImage);
  }
}
