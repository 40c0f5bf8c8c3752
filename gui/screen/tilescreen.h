#pragma once

#include <span>

#include "gui/screen/basewidget.h"

struct Button_Config;

/// A screen of a header (home, title, back) and a grid of tiles, three columns by two rows, made from a table. GUI
/// thread.
class TileScreen : public BaseWidget {
  Q_OBJECT

public:
  /// While an event's box is up a touch is ignored; while an own box is up it is the box's.
  void touchEvent(int type, int x, int y) override;

protected:
  struct Tile {
    int row;                               ///< 1 or 2
    int column;                            ///< 1 to 3
    const Button_Config* key;              ///< its pictures
    WidgetId next = UNKNOWN;               ///< the screen that a touch opens,
    void (*press)(TileScreen&) = nullptr;  ///< or else what it does
    bool (*offered)() = nullptr;           ///< null: always; a tile that is not offered is shown disabled
  };

  /// What a touch of a tile does: member function `press` of the screen that the table belongs to.
  template <auto press>
  static void Press(TileScreen& screen) {
    Call(screen, press);
  }

  enum class Header { HomeAndBack, Home };

  /// `title` is a picture; `tiles` outlives the screen.
  TileScreen(QWidget* parent, const QString& title, std::span<const Tile> tiles, Header header = Header::HomeAndBack);

  void paintEvent(QPaintEvent* event) override;

private:
  template <class Screen>
  static void Call(TileScreen& screen, void (Screen::*press)()) {
    (static_cast<Screen&>(screen).*press)();
  }

  QString mTitle;
  std::span<const Tile> mTiles;
  Header mHeader;
};
