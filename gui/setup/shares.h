#pragma once

/// How the card is shared follows from what is recorded on it. The new shares go into the current settings; the
/// recorder gets them with all the others.

/// The impact level of driving has become `level`: 0 no impacts, 1 impacts again; other levels change nothing.
void ShareAfterShock(int level);

/// The parking mode has become `mode`: 0 no parkings, 1 parkings again; another mode changes nothing.
void ShareAfterParkingMode(int mode);
