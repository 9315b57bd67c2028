// The drawing calls (GDI32) that the program uses: GetStockObject, for two fonts, and ExcludeClipRect.
#pragma once

#include "platform/host/api/base.h"

constexpr int ANSI_FIXED_FONT = 11;
constexpr int DEFAULT_GUI_FONT = 17;

HGDIOBJ WINAPI GetStockObject(int object);

constexpr int SIMPLEREGION = 2;

// Has no effect, because nothing is drawn.
int WINAPI ExcludeClipRect(HDC device, int left, int top, int right, int bottom);
