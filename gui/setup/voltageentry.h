#pragma once

class BaseWidget;
class TileScreen;

/// The way into the voltage compensation, which two menus have.

/// True when the compensation is offered at all.
bool IsVoltageCompensationOffered(const TileScreen&);

/// Shows the notice and tells the recorder; the event VOL_COMPENSATION_START of `screen` follows in 2 s and opens it.
void StartVoltageCompensation(BaseWidget& screen);
