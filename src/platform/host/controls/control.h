// What the controls and the boxes share: their state, the messages to their parents, and the measures of the
// layer's only font.
#pragma once

#include <memory>

#include "platform/host/api/base.h"
#include "platform/host/windows/window.h"

namespace host {

constexpr int NONE = -1;  // the index for no entry, no tab, no row

// --- measures, in pixels ---

constexpr int CHARACTER_WIDTH = 6;
constexpr int LINE_HEIGHT = 13;

inline int XOf(LPARAM point) {
    return static_cast<SHORT>(LOWORD(point));
}
inline int YOf(LPARAM point) {
    return static_cast<SHORT>(HIWORD(point));
}

// Whether the point, in client coordinates, is in the window's client area.
bool IsInClientArea(HWND window, LPARAM point);

// --- the state of a control ---

// The offsets of the extra bytes of a control's window: the pointer to its state, then its font.
constexpr int STATE_OFFSET = 0;
constexpr int FONT_OFFSET = sizeof(LONG_PTR);
constexpr int CONTROL_EXTRA_BYTES = 2 * sizeof(LONG_PTR);

// The state of the control. WM_NCCREATE allocates it and WM_NCDESTROY frees it; null before and after.
template <typename State>
State* StateAt(HWND window, UINT message) {
    if (message == WM_NCCREATE) {
        SetWindowLongPtrW(window, STATE_OFFSET,
                          reinterpret_cast<LONG_PTR>(std::make_unique<State>().release()));
    }
    auto* const state = reinterpret_cast<State*>(GetWindowLongPtrW(window, STATE_OFFSET));
    if (message != WM_NCDESTROY)
        return state;
    const std::unique_ptr<State> last(state);
    SetWindowLongPtrW(window, STATE_OFFSET, 0);
    return nullptr;
}

inline DWORD StyleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
}

// --- messages to the parent: only those that the program handles ---

// Sends WM_COMMAND with the control's identifier and the code.
void SendCommand(HWND control, int code);

// Sends WM_NOTIFY with the record that starts with this header. Sets the header's fields.
void SendNotification(HWND control, UINT code, NMHDR& header);

// --- messages that a control does not handle ---

// Stores the font for WM_SETFONT and returns it for WM_GETFONT. Aborts at a message that only controls
// define. Passes all other messages to DefWindowProcW.
LRESULT DefControlProcedure(const char* class_name, HWND window, UINT message, WPARAM wparam, LPARAM lparam);

inline const WCHAR* TextAt(LPARAM text) {
    return text == 0 ? u"" : reinterpret_cast<const WCHAR*>(text);
}

// --- the window procedures of the standard and the common controls ---

LRESULT CALLBACK StaticProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK EditProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK ButtonProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK ComboProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK ComboListProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK TabProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT CALLBACK ListProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

// --- for ResetLayer ---

void ResetClipboard();

}  // namespace host
