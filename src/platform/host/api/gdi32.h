// The little of drawing that the program needs (GDI32): its two fonts.
#pragma once

#include "platform/host/api/base.h"

constexpr int ANSI_FIXED_FONT = 11;
constexpr int DEFAULT_GUI_FONT = 17;

HGDIOBJ WINAPI GetStockObject(int object);
