#pragma once

#include <QList>
#include <QPoint>
#include <span>
#include <utility>
#include <variant>

#include "gui/screen/basewidget.h"

class Page;
struct Button_Config;
struct Image_Config;
struct Setting_Config;

inline constexpr QPoint kPage(0, 60);  ///< what stands below the header, where it is no grid of tiles

/// The pictures of a key: those of a layout record, or paths below the image folder.
class KeyPictures {
public:
  constexpr KeyPictures(const Button_Config& record) : mRecord(&record) {}
  constexpr KeyPictures(const char* usual, const char* disabled = nullptr) : mUsual(usual), mDisabled(disabled) {}

  /// Its picture while it is offered, or not.
  QString Of(bool offered) const;

private:
  const Button_Config* mRecord = nullptr;
  const char* mUsual = nullptr;
  const char* mDisabled = nullptr;  // null: the key is always offered
};

/// An option of the recorder: one of `count` values 0, `step`, 2 `step`, ..., without those below `least`.
struct TileOption {
  const Image_Config* pictures;  ///< of the values, in order
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

  /// The screens that its keys open as it is now, each with the middle of its key.
  QList<std::pair<WidgetId, QPoint>> Doors() const;

protected:
  using Question = bool (*)(const TileScreen&);
  static constexpr bool Always(const TileScreen&) { return true; }

  /// Shows an option. A touch moves it on.
  struct Option {
    const TileOption& option;
    void (*press)(TileScreen&) = nullptr;  ///< in a way of its own
    int (*shown)() = nullptr;              ///< the number of the picture when the value does not say it
  };

  /// A key that opens a screen. One that is not offered is shown disabled.
  struct Door {
    KeyPictures key;
    WidgetId next;
    Question offered = Always;
  };

  /// A key that does something else.
  struct Action {
    KeyPictures key;
    void (*press)(TileScreen&);
    Question offered = Always;
  };

  struct Tile {
    int row;     ///< 1 or 2
    int column;  ///< 1 to 3
    std::variant<Option, Door, Action> what;
    Question there = Always;  ///< a tile that is not there leaves its place to another
  };

  /// For a table: member function `press` or `is` of the screen that it belongs to.
  template <auto press>
  static void Press(TileScreen& screen) {
    [&]<class Screen>(void (Screen::*own)()) { (static_cast<Screen&>(screen).*own)(); }(press);
  }
  template <auto is>
  static bool Is(const TileScreen& screen) {
    return [&]<class Screen>(bool (Screen::*own)() const) { return (static_cast<const Screen&>(screen).*own)(); }(is);
  }

  enum class Header { HomeAndBack, Home };

  /// `title` is a picture; `tiles` outlives the screen.
  TileScreen(QWidget* parent, const QString& title, std::span<const Tile> tiles, Header header = Header::HomeAndBack);

  void paintEvent(QPaintEvent* event) override;
  QList<TouchArea> KeyAreas() const override;

  // What a screen has beside or instead of tiles.
  virtual void FillPage(Page&) {}                            ///< below header and tiles
  virtual void TouchPage(int /*x*/, int /*y*/) {}            ///< a touch of none of them
  virtual QList<TouchArea> PageAreas() const { return {}; }  ///< where TouchPage() does something
  virtual void PressHome() { EntryPreview(); }
  virtual void PressBack() { Back(); }

  /// Where a tile stands.
  static QRect TileRect(int row, int column);

  /// What the new value of an option is when the old one is `old`, whatever that is.
  static int NextValue(const TileOption& option, int old);

  /// Gives an option a value: stored and sent. The screen paints it.
  void SetOption(const TileOption& option, int value);

  /// Moves an option on, with the key click. `place` shows it before the file is written and the recorder has answered.
  void Advance(const TileOption& option, const QRect& place);

private:
  QString PictureOf(const Option& tile) const;
  QString PictureOf(const Door& door) const { return door.key.Of(door.offered(*this)); }
  QString PictureOf(const Action& action) const { return action.key.Of(action.offered(*this)); }
  static bool IsOffered(const Option&) { return true; }
  bool IsOffered(const Door& door) const { return door.offered(*this); }
  bool IsOffered(const Action& action) const { return action.offered(*this); }
  void PressTile(const Option& tile, const QRect& place);
  void PressTile(const Door& door, const QRect& place);
  void PressTile(const Action& action, const QRect& place);

  QString mTitle;
  std::span<const Tile> mTiles;
  Header mHeader;
};
