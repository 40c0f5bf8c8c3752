#pragma once

#include <cstdint>

#include "gui/settings/settings.h"

/// The sum of n numbers, of the products of n pairs; 0 for n below 1. Each product is made in 32 bits.
std::int64_t GetSum(const int* values, int n);
std::int64_t GetProductSum(const int* a, const int* b, int n);

/// The affine map that takes n panel points (panelX, panelY) to the targets (targetX, targetY) with the least sum of
/// squared errors. Panel values are 0..511, targets points of the screen; n is 3 or more. False, and `touch` as it was,
/// when the points lie on one line or the result is no finite number.
bool FitTouch(const int* panelX, const int* panelY, const int* targetX, const int* targetY, int n, Touch_Value* touch);
