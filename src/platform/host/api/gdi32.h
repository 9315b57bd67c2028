// Drawing (GDI32), as far as the program needs it: two fonts, and the excluded rectangle of a frame.
#pragma once

#include "platform/host/api/base.h"

constexpr int ANSI_FIXED_FONT = 11;
constexpr int DEFAULT_GUI_FONT = 17;

HGDIOBJ WINAPI GetStockObject(int object);

constexpr int SIMPLEREGION = 2;

// Has no effect, because nothing is drawn.
int WINAPI ExcludeClipRect(HDC device, int left, int top, int right, int bottom);
