// What the controls and the boxes share: how one keeps its state and tells its parent, and the measures of
// the one font of the layer.
#pragma once

#include <memory>

#include "platform/host/api/base.h"
#include "platform/host/windows/window.h"

namespace host {

constexpr int NONE = -1;  // no entry, no tab, no row

// --- measures, in pixels ---

constexpr int CHARACTER_WIDTH = 6;
constexpr int LINE_HEIGHT = 13;

inline int XOf(LPARAM point) {
    return static_cast<SHORT>(LOWORD(point));
}
inline int YOf(LPARAM point) {
    return static_cast<SHORT>(HIWORD(point));
}

// Whether the point, in client coordinates, lies in the window's client area.
bool IsInClientArea(HWND window, LPARAM point);

// --- the state of a control ---

// A control's window has room for two pointers: its state, then its font.
constexpr int STATE_OFFSET = 0;
constexpr int FONT_OFFSET = sizeof(LONG_PTR);
constexpr int CONTROL_EXTRA_BYTES = 2 * sizeof(LONG_PTR);

// The state that the window keeps; null before WM_NCCREATE and after WM_NCDESTROY. It is made in the one and
// freed in the other.
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

// --- telling the parent ---

// Controls tell their parents just what the program acts on.

// WM_COMMAND with the control's identifier and the code.
void SendCommand(HWND control, int code);

// WM_NOTIFY with the record that starts with the header, whose fields are filled in here.
void SendNotification(HWND control, UINT code, NMHDR& header);

// --- what a control leaves alone ---

// The font, then DefWindowProcW. A message of the kind that controls define stops the program by name.
LRESULT DefControlProcedure(const char* class_name, HWND window, UINT message, WPARAM wparam, LPARAM lparam);

inline const WCHAR* TextAt(LPARAM text) {
    return text == 0 ? u"" : reinterpret_cast<const WCHAR*>(text);
}

}  // namespace host
