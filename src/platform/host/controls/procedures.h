// The window procedures of the standard and the common controls.
#pragma once

#include "platform/host/api/user32.h"

namespace host {

LRESULT CALLBACK StaticProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK EditProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK ButtonProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK ComboProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK ComboListProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK TabProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK ListProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

}  // namespace host
