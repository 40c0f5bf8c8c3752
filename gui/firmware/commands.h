#pragma once

#include "gui/vocabulary/vocabulary.h"

/// What goes to the recorder for a command.
enum class CommandKind {
  Nothing,            ///< travels with the setup block only
  Value,              ///< the value, 4 bytes
  QueryInt,           ///< an int is asked for
  QueryFloat,         ///< a float is asked for
  ViewMode,           ///< the stored view
  ViewModeForMotion,  ///< the view of the value
  Path,               ///< the text, 50 bytes
  SetupBlock,         ///< the packed settings, 129 bytes
  MotionFront,        ///< the front motion map, 8 bytes
  MotionRear,         ///< the rear motion map, 8 bytes
};

struct Command {
  Send_Event event;
  CommandKind kind;
  unsigned field;  ///< SYSTEM_CONTROL; 0 for Nothing, and for the views, which have a field each
};

/// The row of `event` in the command table. An event outside 0..66 sends nothing.
Command CommandOf(Send_Event event);

/// The field that shows view `mode`: 0 picture in picture, 2 rear, any other one front.
unsigned ViewField(int mode);
