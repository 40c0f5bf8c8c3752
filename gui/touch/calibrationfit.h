#pragma once

#include <cstdint>

#include "gui/settings/settings.h"

/// The sum of n numbers, of the products of n pairs; 0 for n below 1. Each product is made in 32 bits.
std::int64_t GetSum(const int* values, int n);
std::int64_t GetProductSum(const int* a, const int* b, int n);

/// The affine map that takes n panel points (panelX, panelY) to the targets (targetX, targetY) with the least sum of
/// squared errors. Targets are points of the screen; n is 1..9. False, and `touch` as it was, when the panel
/// points lie on one line, or when one is not within -1000..1000.
bool FitTouch(const int* panelX, const int* panelY, const int* targetX, const int* targetY, int n, Touch_Value* touch);
