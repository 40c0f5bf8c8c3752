#include "gui/screen/tilescreen.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "gui/base/shell.h"
#include "gui/screen/page.h"
#include "gui/screen/screenhost.h"
#include "gui/settings/config.h"
#include "gui/settings/settings.h"

namespace {
constexpr QSize kTile(160, 130);
constexpr int kHeaderHeight = 60;
constexpr QRect kHomeKey(0, 0, 80, kHeaderHeight), kBackKey(400, 0, 80, kHeaderHeight);
constexpr QPoint kTitle(80, 0);

// A key is touched on its picture without the first row and column: the lines between two keys belong to none.
QRect TouchedPart(const QRect& picture) {
  return picture.adjusted(1, 1, 0, 0);
}
bool IsTouched(const QRect& picture, int x, int y) {
  return TouchedPart(picture).contains(x, y);
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
    const QRect place = TileRect(tile.row, tile.column);
    if (!tile.there(*this) || !IsTouched(place, x, y)) continue;
    std::visit([&](const auto& what) { PressTile(what, place); }, tile.what);
    return;
  }
  TouchPage(x, y);
}

QList<TouchArea> TileScreen::KeyAreas() const {
  QList<TouchArea> areas{{TouchedPart(kHomeKey), QStringLiteral("home")}};
  if (mHeader == Header::HomeAndBack) areas.append({TouchedPart(kBackKey), QStringLiteral("back")});
  for (const Tile& tile : mTiles) {
    if (!tile.there(*this) || !std::visit([&](const auto& what) { return IsOffered(what); }, tile.what)) continue;
    QString picture = std::visit([this](const auto& what) { return PictureOf(what); }, tile.what);
    if (picture.startsWith(imagePath)) picture.remove(0, imagePath.size());
    areas.append({TouchedPart(TileRect(tile.row, tile.column)), picture});
  }
  return areas + PageAreas();
}

void TileScreen::paintEvent(QPaintEvent* event) {
  Page page(event->region());
  FillPage(page);
  page.Add(kHomeKey.topLeft(), QStringLiteral("common/home_normal.bmp"));
  page.Add(kTitle, mTitle);
  if (mHeader == Header::HomeAndBack) page.Add(kBackKey.topLeft(), QStringLiteral("common/back_normal.bmp"));
  for (const Tile& tile : mTiles) {
    if (!tile.there(*this)) continue;
    const QString picture = std::visit([this](const auto& what) { return PictureOf(what); }, tile.what);
    page.Add(TileRect(tile.row, tile.column).topLeft(), picture);
  }
  QPainter painter(this);
  page.Paint(painter, QColor(gColor.Bg.r, gColor.Bg.g, gColor.Bg.b));
}

// ---- keys

QString KeyPictures::Of(bool offered) const {
  if (mRecord) return offered ? mRecord->ReleaseImage : mRecord->DisableImage;
  return QLatin1String(offered ? mUsual : mDisabled);
}

QList<std::pair<WidgetId, QPoint>> TileScreen::Doors() const {
  QList<std::pair<WidgetId, QPoint>> doors;
  for (const Tile& tile : mTiles) {
    const auto* door = std::get_if<Door>(&tile.what);
    if (door && tile.there(*this) && door->offered(*this))
      doors.emplace_back(door->next, TileRect(tile.row, tile.column).center());
  }
  return doors;
}

void TileScreen::PressTile(const Door& door, const QRect&) {
  if (door.offered(*this)) Next(door.next);
}

void TileScreen::PressTile(const Action& action, const QRect&) {
  if (action.offered(*this)) action.press(*this);
}

// ---- options

QString TileScreen::PictureOf(const Option& tile) const {
  const TileOption& option = tile.option;
  const int value = gEnvirnmentSettings.mSetting.*option.field;
  const qint64 number = tile.shown ? tile.shown() : (qint64{value} - option.least) / option.step;
  return option.pictures->Image[std::clamp<qint64>(number, 0, option.pictures->NumOfImage - 1)].ReleaseImage;
}

int TileScreen::NextValue(const TileOption& option, int old) {
  const int place = old / option.step % option.count;  // of a value below 0 it is below 0, too
  return std::max((place + 1 + option.count) % option.count * option.step, option.least);
}

void TileScreen::PressTile(const Option& tile, const QRect& place) {
  if (tile.press) {
    tile.press(*this);
    return;
  }
  const bool holdsVoices = tile.option.holdsVoices;
  if (holdsVoices) gMainWindow->SetIsPlayingVoice(true);
  Advance(tile.option, place);
  if (holdsVoices) gMainWindow->SetIsPlayingVoice(false);
}

void TileScreen::Advance(const TileOption& option, const QRect& place) {
  int& shown = gEnvirnmentSettings.mSetting.*option.field;
  const int value = shown = NextValue(option, shown);
  repaint(place);
  PlayClick();
  SetOption(option, value);
}

void TileScreen::SetOption(const TileOption& option, int value) {
  gEnvirnmentSettings.mSetting.*option.field = value;
  gEnvirnmentSettings.SetSettingConfig(option.id, value);
  if (option.effect) option.effect(value);
  if (option.command >= 0) SendEvent(Send_Event(option.command), value, QString());
}
