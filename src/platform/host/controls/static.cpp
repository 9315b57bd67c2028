// STATIC: a line of text that gets no mouse input. A long path is not shortened here: the platform shortens
// it only where it draws.
#include <string>

#include "platform/host/controls/control.h"
#include "platform/host/hooks/test_hooks.h"

namespace host {
namespace {

struct Label {
    std::u16string drawn;
};

void Draw(HWND window, Label& label) {
    label.drawn = FindWindowState(window)->text;
    if ((StyleOf(window) & SS_NOPREFIX) == 0)
        std::erase(label.drawn, u'&');
}

}  // namespace

std::u16string DrawnText(HWND label) {
    return StateAt<Label>(label, WM_NULL)->drawn;
}

LRESULT CALLBACK StaticProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const label = StateAt<Label>(window, message);
    if (label == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_NCHITTEST:
            return HTTRANSPARENT;
        case WM_GETDLGCODE:
            return DLGC_STATIC;
        case WM_PAINT:
            Draw(window, *label);
            return DefControlProcedure("STATIC", window, message, wparam, lparam);
        case WM_SETTEXT: {
            const LRESULT result = DefControlProcedure("STATIC", window, message, wparam, lparam);
            Draw(window, *label);
            return result;
        }
        default:
            return DefControlProcedure("STATIC", window, message, wparam, lparam);
    }
}

}  // namespace host
