#include "pictures/styles.h"

#include "pictures/palette.h"

using namespace palette;

namespace {
/// A style, its states, how many parts its caption has, and whether it shows a step of a cycle. A style whose states
/// take different captions has several rows.
struct Style {
  const char* name;
  void (*draw)(Canvas& canvas, const PictureRow& row);
  QList<const char*> states;
  int leastParts;
  int mostParts;
  bool steps = false;
};

const Style kStyles[] = {
    {"tile", DrawTile, {"", "dis"}, 1, 1},
    {"tile-value", DrawTileValue, {"", "off"}, 2, 2, true},
    {"cell", DrawCell, {"", "off"}, 2, 2},
    {"title", DrawTitle, {""}, 1, 1},
    {"header-key", DrawHeaderKey, {""}, 0, 1},
    {"toggle", DrawToggle, {""}, 1, 1, true},
    {"hotkey", DrawHotKey, {"", "on", "off", "dis", "rec"}, 1, 1},
    {"bar-key", DrawBarKey, {""}, 1, 1},
    {"button", DrawButton, {"primary", "primary-press", "second", "second-press", "sel", "off"}, 0, 1},
    {"key", DrawKey, {"", "primary"}, 1, 1},
    {"scroll", DrawScroll, {"", "dis", "number"}, 0, 0},
    {"check", DrawCheck, {"", "on"}, 0, 0},
    {"handle", DrawHandle, {"", "sel"}, 0, 0},
    {"background", DrawBackground, {"", "dim", "paper", "clock", "card"}, 0, 0},
    {"background", DrawBackground, {"guide"}, 1, 1},
    {"background", DrawBackground, {"page"}, 2, 2},
    {"background", DrawBackground, {"time"}, 8, 8},
    {"box", DrawBox, {"", "question", "banner"}, 0, 0},
    {"icon", DrawIcon, {"accent", "danger", "warn"}, 0, 0},
    {"row", DrawRow, {""}, 0, 0},
    {"row-icon", DrawRowIcon, {"", "event", "normal", "parking", "protect", "off"}, 0, 0},
    {"field", DrawField, {"", "sel"}, 0, 0},
    {"plate", DrawPlate, {"", "paper", "dial"}, 0, 0},
    {"plate", DrawPlate, {"warn"}, 0, 1},
    {"status-icon", DrawStatusIcon, {"", "off", "accent", "warn", "event", "normal", "parking"}, 0, 0},
    {"ampm", DrawAmPm, {""}, 1, 1},
    {"bar", DrawBar, {"well", "event", "normal", "parking", "accent", "line", "end"}, 0, 0},
    {"marker", DrawMarker, {""}, 0, 0},
    {"mark", DrawMark, {""}, 0, 0},
    {"logo", DrawLogo, {""}, 1, 1},
};

const Style& StyleOf(const PictureRow& row) {
  bool known = false;
  for (const Style& style : kStyles) {
    if (row.style != QLatin1String(style.name)) continue;
    known = true;
    for (const char* state : style.states)
      if (row.state == QLatin1String(state)) return style;
  }
  if (known) throw PictureError(QStringLiteral("style \"%1\" has no state \"%2\"").arg(row.style, row.state));
  throw PictureError(QStringLiteral("there is no style \"%1\"").arg(row.style));
}
}  // namespace

void DrawPicture(Canvas& canvas, const PictureRow& row) {
  const Style& style = StyleOf(row);
  if (row.caption.size() < style.leastParts || row.caption.size() > style.mostParts)
    throw PictureError(QStringLiteral("style \"%1\" takes %2 to %3 parts of a caption")
                           .arg(row.style)
                           .arg(style.leastParts)
                           .arg(style.mostParts));
  if (style.steps != (row.steps > 0))
    throw PictureError(
        QStringLiteral("style \"%1\" takes %2 step").arg(row.style, QLatin1String(style.steps ? "a" : "no")));
  style.draw(canvas, row);
}

void DrawSteps(Canvas& canvas, const PictureRow& row, QSize mark, int top) {
  constexpr int kGap = 5;
  const int width = row.steps * mark.width() + (row.steps - 1) * kGap;
  int left = (canvas.Width() - width) / 2;
  for (int step = 1; step <= row.steps; ++step, left += mark.width() + kGap)
    canvas.Fill({QPoint(left, top), mark}, step == row.step ? kAccent : kRaised);
}

QColor KindColour(const QString& kind) {
  if (kind == QLatin1String("event")) return kEvent;
  if (kind == QLatin1String("parking")) return kParking;
  return kNormal;
}
