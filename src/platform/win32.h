// The one door to the platform: Windows itself, or the layer that stands in for it elsewhere.
// Nothing else in the program asks on which of them it runs.
#pragma once

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// The common headers need the one above before them.
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

// Text as the platform holds it: UTF-16 code units, 16 bits on every build.
using WideText = std::basic_string<WCHAR>;
using WideView = std::basic_string_view<WCHAR>;
