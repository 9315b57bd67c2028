// STATIC: a line of text that the mouse goes through. How a long path is shortened for display is drawing
// only; the text stays whole.
#include "platform/host/controls/control.h"
#include "platform/host/controls/procedures.h"

namespace host {

LRESULT CALLBACK StaticProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_NCHITTEST:
            return HTTRANSPARENT;
        case WM_GETDLGCODE:
            return DLGC_STATIC;
        default:
            return DefControlProcedure("STATIC", window, message, wparam, lparam);
    }
}

}  // namespace host
