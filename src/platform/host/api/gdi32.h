// The little of drawing that the program needs (GDI32): its two fonts, and what a frame leaves out.
#pragma once

#include "platform/host/api/base.h"

constexpr int ANSI_FIXED_FONT = 11;
constexpr int DEFAULT_GUI_FONT = 17;

HGDIOBJ WINAPI GetStockObject(int object);

constexpr int SIMPLEREGION = 2;

// Nothing is drawn here, so there is nothing to leave out.
int WINAPI ExcludeClipRect(HDC device, int left, int top, int right, int bottom);
