// The only header through which the program uses the platform: Windows or, on other systems, the layer, our
// own implementation of the same calls in platform/host/. No other source of the program depends on which of
// the two is used.
#pragma once

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// These headers need windows.h before them.
#include <commctrl.h>
#include <commdlg.h>
#else
#include "platform/host/api/comctl32.h"
#include "platform/host/api/comdlg32.h"
#include "platform/host/api/gdi32.h"
#include "platform/host/api/kernel32.h"
#include "platform/host/api/user32.h"
#endif

#include <string>
#include <string_view>

// Text of the platform: UTF-16, in units of 16 bits on every build.
using WideText = std::basic_string<WCHAR>;
using WideView = std::basic_string_view<WCHAR>;
