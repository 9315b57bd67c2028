// What the controls and the boxes share: how one keeps its state and tells its parent, and the measures of
// the one font of the layer.
#pragma once

#include <memory>
#include <string>

#include "platform/host/api/base.h"
#include "platform/host/windows/window.h"

namespace host {

// --- measures, in pixels ---

constexpr int CHARACTER_WIDTH = 6;
constexpr int LINE_HEIGHT = 13;

inline int XOf(LPARAM point) {
    return static_cast<SHORT>(LOWORD(point));
}
inline int YOf(LPARAM point) {
    return static_cast<SHORT>(HIWORD(point));
}

// --- the state of a control ---

// A control's window has room for two pointers: its state, then its font.
constexpr int STATE_OFFSET = 0;
constexpr int FONT_OFFSET = sizeof(LONG_PTR);
constexpr int CONTROL_EXTRA_BYTES = 2 * sizeof(LONG_PTR);

// The state that the window keeps; null ahead of WM_NCCREATE and behind WM_NCDESTROY. It is made in the one
// and freed in the other.
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

// --- telling the parent ---

// WM_COMMAND with the control's identifier and the code.
void TellParent(HWND control, int code);

// WM_NOTIFY with the record that starts with the header, whose fields are filled in here. Gives the parent's
// answer.
LRESULT NotifyParent(HWND control, UINT code, NMHDR& header);

// --- what a control leaves alone ---

// The font, then DefWindowProcW. A message of the kind that controls define stops the program by name.
LRESULT DefControlProcedure(const char* class_name, HWND window, UINT message, WPARAM wparam, LPARAM lparam);

inline const WCHAR* TextAt(LPARAM text) {
    return text == 0 ? u"" : reinterpret_cast<const WCHAR*>(text);
}

}  // namespace host
