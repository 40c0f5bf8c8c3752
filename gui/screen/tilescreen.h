#pragma once

#include <span>

#include "gui/screen/basewidget.h"

class QPainter;
struct Button_Config;
struct Image_Config;
struct Setting_Config;

/// An option of the recorder: one of `count` values `least`, `least` + `step`, ..., each with its picture.
struct TileOption {
  const Image_Config* pictures;  ///< by value, in order
  int Setting_Config::*field;
  Setting_Id id;
  int count;
  int least = 0;
  int step = 1;
  int command = -1;                     ///< a Send_Event with the new value; -1: none
  bool holdsVoices = false;             ///< gIsPlayingVoice is set meanwhile
  void (*effect)(int value) = nullptr;  ///< what else the new value changes; before the command
};

/// A screen of a header (home, title, back) and a grid of tiles, three columns by two rows, made from a table. GUI
/// thread.
class TileScreen : public BaseWidget {
  Q_OBJECT

public:
  void touchEvent(int type, int x, int y) override;

protected:
  struct Tile {
    int row;                                       ///< 1 or 2
    int column;                                    ///< 1 to 3
    const Button_Config* key = nullptr;            ///< its pictures, or
    const TileOption* option = nullptr;            ///< the option that it shows, and that a touch moves on
    WidgetId next = UNKNOWN;                       ///< the screen that a touch opens,
    void (*press)(TileScreen&) = nullptr;          ///< or what else it does
    bool (*offered)(const TileScreen&) = nullptr;  ///< null: always; a key that is not offered is shown disabled
    bool (*there)(const TileScreen&) = nullptr;  ///< null: always; a tile that is not there leaves its place to another
    int (*shown)() = nullptr;  ///< of an option: the number of its picture when the value does not say it
  };

  /// What a touch of a tile does: member function `press` of the screen that the table belongs to.
  template <auto press>
  static void Press(TileScreen& screen) {
    Call(screen, press);
  }

  /// Whether a tile is offered or there: member function `is` of the screen.
  template <auto is>
  static bool Is(const TileScreen& screen) {
    return Ask(screen, is);
  }

  enum class Header { HomeAndBack, Home };

  /// `title` is a picture; `tiles` outlives the screen.
  TileScreen(QWidget* parent, const QString& title, std::span<const Tile> tiles, Header header = Header::HomeAndBack);

  void paintEvent(QPaintEvent* event) override;

  // What a screen has beside or instead of tiles.
  virtual void PaintPage(QPainter&, const QRect& /*exposed*/) {}  ///< below header and tiles
  virtual void TouchPage(int /*x*/, int /*y*/) {}                 ///< a touch of none of them
  virtual void PressHome() { EntryPreview(); }
  virtual void PressBack() { Back(); }

  /// Draws a picture when it reaches into `exposed`.
  static void Draw(QPainter& painter, const QRect& exposed, QPoint at, const QString& picture);

  /// Where a tile stands.
  static QRect TileRect(int row, int column);

  /// What the new value of an option is when the old one is `old`, whatever that is.
  static int NextValue(const TileOption& option, int old);

  /// Gives an option a value: stored and sent. The screen paints it.
  void SetOption(const TileOption& option, int value);

  /// Moves an option on, with the key click.
  void Advance(const TileOption& option);

private:
  bool IsThere(const Tile& tile) const;
  QString PictureOf(const Tile& tile) const;
  void PressOption(const Tile& tile);

  template <class Screen>
  static void Call(TileScreen& screen, void (Screen::*press)()) {
    (static_cast<Screen&>(screen).*press)();
  }

  template <class Screen>
  static bool Ask(const TileScreen& screen, bool (Screen::*is)() const) {
    return (static_cast<const Screen&>(screen).*is)();
  }

  QString mTitle;
  std::span<const Tile> mTiles;
  Header mHeader;
};
