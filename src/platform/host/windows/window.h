// The declarations that the files of this folder share: the record of a window, how to find it, and the
// functions that one file offers to others. The groups are in the order of dependencies: each file uses only
// groups above its own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/api/user32.h"

namespace host {

struct WindowClass {
    std::u16string name;
    UINT style;
    WNDPROC procedure;
    int extra_bytes;
    HBRUSH background;
};
using ClassPointer = std::shared_ptr<const WindowClass>;

struct Window {
    HWND handle = nullptr;
    HWND parent = nullptr;       // null for a top-level window
    HWND owner = nullptr;        // null for a child window
    std::vector<HWND> children;  // topmost first
    ClassPointer window_class;
    WNDPROC procedure = nullptr;
    DWORD style = 0;
    DWORD extended_style = 0;
    LONG_PTR id = 0;
    LONG_PTR user_data = 0;
    std::vector<std::byte> extra;
    RECT outer{};     // child: in client coordinates of the parent; top-level: in screen coordinates
    RECT client{};    // the client area in the same coordinates
    RECT restored{};  // the outer rectangle before the window was minimised
    std::u16string text;
    bool size_on_show = false;  // WM_SIZE and WM_MOVE are sent when the window is first shown
    bool needs_paint = false;   // the window will get a WM_PAINT
    bool needs_erase = false;   // the window will get a WM_ERASEBKGND with that WM_PAINT
    DWORD thread = 0;
};
using WindowPointer = std::shared_ptr<Window>;

constexpr LONG SCREEN_WIDTH = 1400;
constexpr LONG SCREEN_HEIGHT = 1000;

// --- registry: all windows, their order and their texts ---

// The window of a handle; null with ERROR_INVALID_WINDOW_HANDLE if there is none. Aborts if another thread
// created the window.
WindowPointer FindWindowState(HWND handle);
// The top-level windows, topmost first.
std::vector<HWND>& TopLevelWindows();
// The list that contains the window: the children of its parent or, for a top-level window, all top-level
// windows; topmost first.
std::vector<HWND>& SiblingsOf(const Window& window);
// The top-level window that contains the window, or the window itself.
HWND RootOf(HWND handle);
inline bool IsChildStyle(DWORD style) {
    return (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
}
// AddWindow assigns a handle to a new window, adds the window to its siblings and returns the handle.
// RemoveWindow removes the window and its handle.
HWND AddWindow(const WindowPointer& window);
void RemoveWindow(HWND handle);

// Copies as much of the text as fits into the capacity with a terminating zero. Returns the number of
// characters without the zero.
inline LRESULT CopyText(std::u16string_view text, std::size_t capacity, LPARAM buffer) {
    if (capacity == 0 || buffer == 0)
        return 0;
    auto* const characters = reinterpret_cast<WCHAR*>(buffer);
    const std::size_t length = text.copy(characters, capacity - 1);
    characters[length] = u'\0';
    return static_cast<LRESULT>(length);
}

// --- class: window classes ---

// A class that exists before the program registers any.
struct BuiltInClass {
    const WCHAR* name;
    WNDPROC procedure;
};
extern const std::span<const BuiltInClass> BUILT_IN_CLASSES;
extern const int BUILT_IN_EXTRA_BYTES;

// Finds a class by its name, ignoring case; null if there is none.
ClassPointer FindWindowClass(LPCWSTR name);

// --- geometry: rectangles, frames and coordinates ---

bool Contains(const RECT& rectangle, POINT point);
// The thickness of the frame on each side of the client area, without scroll bars.
RECT FrameOf(DWORD style, DWORD extended_style);
// The outer rectangle without the frame and the scroll bars.
RECT InsideFrame(const Window& window, const RECT& outer);
// Gets the window's client area by WM_NCCALCSIZE and stores it.
void CalculateClient(Window& window);
// The size, reduced or enlarged to the limits that the window returns for WM_GETMINMAXINFO. Windows without a
// sizing frame have no limits, except overlapped ones.
SIZE WithinLimits(const Window& window, SIZE size);
void SendMove(HWND handle, RECT client);
void SendSize(HWND handle, WPARAM kind, RECT client);

// --- posted: posted messages, the quit message, and the mouse pointer ---

MSG MakeMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
// Removes and returns the first posted message or, if `wanted` is not 0, the first with that number.
[[nodiscard]] std::optional<MSG> TakePosted(UINT wanted);
[[nodiscard]] std::optional<MSG> TakeQuit();
void ForgetMessages(HWND handle);
POINT PointerPosition();
void MovePointer(POINT point);

// --- timer ---

[[nodiscard]] std::optional<MSG> TakeTimer();
// Milliseconds until the next timer is due; none if there is no timer.
std::optional<std::uint64_t> NextTimerDelay();
void ForgetTimers(HWND handle);

// --- tree: parents, owners, siblings, and the window at a point ---

struct Hit {
    HWND window;   // null: none
    LRESULT part;  // an HT value; HTERROR for a disabled window
};
// The topmost window that gets mouse input at this point of the screen.
Hit HitWindow(POINT point);
// Moves the whole group of the top-level window (all windows with the same root owner) to the front; in the
// group, the window and the windows that it owns come first.
void RaiseWindow(HWND handle);

// --- activation: the active window, the focus and the mouse capture ---

void ActivateWindow(HWND handle, int how);
// Call this for a window that is hidden or about to be destroyed. Releases its mouse capture. A child passes
// the focus to its parent; an active top-level window passes the activation to another one.
void PassActivationOn(const Window& window);
void ForgetActivation(HWND handle);

// --- painting: which windows need a WM_PAINT ---

void MarkForPaint(Window& window, bool with_children, bool erase);
// Null if no window needs a WM_PAINT.
HWND NextWindowToPaint();
// The default action for WM_PAINT: erases the background; the window then no longer needs to be painted.
void EraseAndValidate(Window& window);

// --- position: flags in WINDOWPOS beyond the documented ones ---

constexpr UINT SWP_NOCLIENTSIZE = 0x0800;
constexpr UINT SWP_NOCLIENTMOVE = 0x1000;
constexpr UINT SWP_STATECHANGED = 0x8000;

// --- show ---

void SendSizeAndMove(HWND handle);

// --- input: mouse and keyboard ---

[[nodiscard]] std::optional<MSG> TakeInput();

// --- for ResetLayer: each resets the records of its file to their state at the start of the program ---

void ResetWindows();
void ResetClasses();
void ResetMessages();
void ResetTimers();
void ResetActivation();
void ResetMoves();
void ResetInput();

}  // namespace host
