#pragma once

class BaseWidget;

/// The way into the motion areas, which two menus have: the question MOTION_SETTING_ENTRY asks for the camera; its left
/// button is the front one, its right button the rear one.

/// A touch at (x, y) while the question is up on `screen`, which may be gone afterwards.
void AnswerMotionEntry(BaseWidget& screen, int x, int y);
