#include "gui/screen/tilescreen.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "gui/base/picture.h"
#include "gui/base/shell.h"
#include "gui/screen/screenhost.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

namespace {
constexpr QSize kTile(160, 130);
constexpr int kHeaderHeight = 60;
constexpr QRect kHomeKey(0, 0, 80, kHeaderHeight), kBackKey(400, 0, 80, kHeaderHeight);
constexpr QPoint kTitle(80, 0);

// A key is touched on its picture without the first row and column: the lines between two keys belong to none.
bool IsTouched(const QRect& picture, int x, int y) {
  return picture.adjusted(1, 1, 0, 0).contains(x, y);
}
}  // namespace

QRect TileScreen::TileRect(int row, int column) {
  return {QPoint(kTile.width() * (column - 1), kHeaderHeight + kTile.height() * (row - 1)), kTile};
}

TileScreen::TileScreen(QWidget* parent, const QString& title, std::span<const Tile> tiles, Header header)
    : BaseWidget(parent), mTitle(title), mTiles(tiles), mHeader(header) {
  setAttribute(Qt::WA_OpaquePaintEvent);  // the page is painted whole: nothing needs to be painted below it
}

void TileScreen::touchEvent(int, int x, int y) {
  if (IsTouched(kHomeKey, x, y)) {
    PressHome();
    return;
  }
  if (IsTouched(kBackKey, x, y)) {
    if (mHeader == Header::HomeAndBack) PressBack();
    return;
  }
  for (const Tile& tile : mTiles) {
    if (!IsThere(tile) || !IsTouched(TileRect(tile.row, tile.column), x, y)) continue;
    if (tile.offered && !tile.offered(*this)) return;
    if (tile.press)
      tile.press(*this);
    else if (tile.option)
      PressOption(tile);
    else
      Next(tile.next);
    return;
  }
  TouchPage(x, y);
}

void TileScreen::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRect exposed = event->rect();
  const Color& bg = gColor.Bg;
  painter.fillRect(exposed, QColor(bg.r, bg.g, bg.b));
  PaintPage(painter, exposed);
  Draw(painter, exposed, kHomeKey.topLeft(), QStringLiteral("common/home_normal.bmp"));
  Draw(painter, exposed, kTitle, mTitle);
  if (mHeader == Header::HomeAndBack)
    Draw(painter, exposed, kBackKey.topLeft(), QStringLiteral("common/back_normal.bmp"));
  for (const Tile& tile : mTiles)
    if (IsThere(tile)) Draw(painter, exposed, TileRect(tile.row, tile.column).topLeft(), PictureOf(tile));
}

void TileScreen::Draw(QPainter& painter, const QRect& exposed, QPoint at, const QString& path) {
  const QPixmap picture = Picture(path);
  if (QRect(at, picture.size()).intersects(exposed)) painter.drawPixmap(at, picture);
}

bool TileScreen::IsThere(const Tile& tile) const {
  return !tile.there || tile.there(*this);
}

QString TileScreen::PictureOf(const Tile& tile) const {
  if (!tile.option) return !tile.offered || tile.offered(*this) ? tile.key->ReleaseImage : tile.key->DisableImage;
  const TileOption& option = *tile.option;
  const int value = gEnvirnmentSettings.mSetting.*option.field;
  const qint64 number = tile.shown ? tile.shown() : (qint64{value} - option.least) / option.step;
  return option.pictures->Image[std::clamp<qint64>(number, 0, option.pictures->NumOfImage - 1)].ReleaseImage;
}

// ---- options

int TileScreen::NextValue(const TileOption& option, int old) {
  const qint64 place = (qint64{old} - option.least) / option.step;
  return option.least + int(((place + 1) % option.count + option.count) % option.count) * option.step;
}

void TileScreen::PressOption(const Tile& tile) {
  const TileOption& option = *tile.option;
  if (option.holdsVoices) gMainWindow->SetIsPlayingVoice(true);
  Advance(option);
  repaint(TileRect(tile.row, tile.column));
  if (option.holdsVoices) gMainWindow->SetIsPlayingVoice(false);
}

void TileScreen::Advance(const TileOption& option) {
  PlayClick();
  SetOption(option, NextValue(option, gEnvirnmentSettings.mSetting.*option.field));
}

void TileScreen::SetOption(const TileOption& option, int value) {
  gEnvirnmentSettings.mSetting.*option.field = value;
  gEnvirnmentSettings.SetSettingConfig(option.id, value);
  if (option.effect) option.effect(value);
  if (option.command >= 0) SendEvent(Send_Event(option.command), value, QString());
}
