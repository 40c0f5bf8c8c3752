#pragma once

#include "pictures/canvas.h"
#include "pictures/picturetable.h"

/// Draws a picture by its style. Throws PictureError for a style, a state, a number of caption parts or a step that
/// there is not, and for what the canvas refuses.
void DrawPicture(Canvas& canvas, const PictureRow& row);

// The styles, each for one kind of picture.
void DrawTile(Canvas& canvas, const PictureRow& row);
void DrawTileValue(Canvas& canvas, const PictureRow& row);
void DrawCell(Canvas& canvas, const PictureRow& row);

void DrawTitle(Canvas& canvas, const PictureRow& row);
void DrawHeaderKey(Canvas& canvas, const PictureRow& row);
void DrawToggle(Canvas& canvas, const PictureRow& row);
void DrawHotKey(Canvas& canvas, const PictureRow& row);
void DrawBarKey(Canvas& canvas, const PictureRow& row);
void DrawButton(Canvas& canvas, const PictureRow& row);
void DrawKey(Canvas& canvas, const PictureRow& row);
void DrawScroll(Canvas& canvas, const PictureRow& row);
void DrawCheck(Canvas& canvas, const PictureRow& row);
void DrawHandle(Canvas& canvas, const PictureRow& row);

void DrawBackground(Canvas& canvas, const PictureRow& row);
void DrawBox(Canvas& canvas, const PictureRow& row);
void DrawIcon(Canvas& canvas, const PictureRow& row);
void DrawRow(Canvas& canvas, const PictureRow& row);
void DrawRowIcon(Canvas& canvas, const PictureRow& row);
void DrawField(Canvas& canvas, const PictureRow& row);
void DrawPlate(Canvas& canvas, const PictureRow& row);
void DrawStatusIcon(Canvas& canvas, const PictureRow& row);
void DrawAmPm(Canvas& canvas, const PictureRow& row);
void DrawBar(Canvas& canvas, const PictureRow& row);
void DrawMarker(Canvas& canvas, const PictureRow& row);
void DrawMark(Canvas& canvas, const PictureRow& row);
void DrawLogo(Canvas& canvas, const PictureRow& row);

/// A row of `steps` marks of `mark` pixels, 5 apart, centred, the current one in the accent.
void DrawSteps(Canvas& canvas, const PictureRow& row, QSize mark, int top);

/// The colour of one of the kinds of recording: "event", "normal", "parking".
QColor KindColour(const QString& kind);
