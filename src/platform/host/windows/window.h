// What the files of this floor share: the record of a window, how to find it, and the steps that one file
// does for those above it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
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
    HINSTANCE instance;
    HBRUSH background;
};
using ClassPointer = std::shared_ptr<const WindowClass>;

struct Window {
    HWND handle = nullptr;
    HWND parent = nullptr;       // of a child window
    HWND owner = nullptr;        // of a top-level window
    std::vector<HWND> children;  // topmost first
    ClassPointer window_class;
    WNDPROC procedure = nullptr;
    DWORD style = 0;
    DWORD extended_style = 0;
    LONG_PTR id = 0;
    LONG_PTR user_data = 0;
    std::vector<std::byte> extra;
    RECT outer{};     // in the client area of the parent, or on the screen
    RECT client{};    // in the same coordinates
    RECT restored{};  // the outer rectangle of a minimised one before that
    std::u16string text;
    bool size_on_show = false;  // WM_SIZE and WM_MOVE wait for the first showing
    bool damaged = false;       // WM_PAINT is due
    bool unerased = false;      // WM_ERASEBKGND comes with it
    DWORD thread = 0;
};
using WindowPointer = std::shared_ptr<Window>;

constexpr LONG SCREEN_WIDTH = 1400;
constexpr LONG SCREEN_HEIGHT = 1000;
constexpr LONG SCROLL_BAR = 17;
constexpr LONG MINIMISED_ORIGIN = -32000;
constexpr UINT SWP_NOCLIENTSIZE = 0x0800;
constexpr UINT SWP_NOCLIENTMOVE = 0x1000;
constexpr UINT SWP_STATECHANGED = 0x8000;

// --- the registry: finding windows ---

// The window of a handle, or null with ERROR_INVALID_WINDOW_HANDLE. Aborts when the window is another
// thread's.
WindowPointer FindWindowState(HWND handle);
// The top-level windows, topmost first.
std::vector<HWND>& TopLevelWindows();
// The list in which the window stands, topmost first: the children of its parent, or the top-level windows.
std::vector<HWND>& SiblingsOf(const Window& window);
// The window itself, or the outermost parent of a child.
HWND RootOf(HWND handle);
// Gives a new window its handle and its place among its siblings; takes an old one out, handle and all.
HWND EnterWindow(const WindowPointer& window);
void RemoveWindow(HWND handle);
inline bool IsChildStyle(DWORD style) {
    return (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
}

// --- classes ---

// A class that is there before a program registers any.
struct BuiltInClass {
    const WCHAR* name;
    WNDPROC procedure;
    UINT style;
    int extra_bytes;
};
extern const std::span<const BuiltInClass> BUILT_IN_CLASSES;

ClassPointer FindWindowClass(LPCWSTR name);
// Whether two class names are the same to the platform, which takes no notice of case.
bool SameName(std::u16string_view one, std::u16string_view other);

// --- geometry: frames, client areas, coordinates ---

struct FrameSize {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
// How far the frame reaches on each side of the client area, scroll bars left out.
FrameSize FrameOf(DWORD style, DWORD extended_style);
// The platform's own limits for a window of this style.
MINMAXINFO DefaultLimits(DWORD style, DWORD extended_style);
// Whether a window of this style is asked for its limits when it is sized.
bool HasLimits(DWORD style);
// Screen coordinates of a window's outer rectangle and of the origin of its client area.
RECT OuterOnScreen(const Window& window);
POINT ClientOrigin(const Window& window);
bool Contains(const RECT& rectangle, POINT point);
// Asks the window for its client area.
void CalculateClient(Window& window, BOOL with_parameters);

// --- what has been posted, and where the pointer stands ---

struct MessageFilter {
    HWND window;
    UINT lowest;
    UINT highest;
};
bool PassesFilter(const MessageFilter& filter, HWND window, UINT message);
// Whether a call that takes a window or none can go on; ERROR_INVALID_WINDOW_HANDLE where not.
bool IsKnownOrNull(HWND window);
MSG MakeMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
// The next message of its kind that passes the filter, which then waits no more. False without one.
bool TakePosted(const MessageFilter& filter, MSG& message);
bool TakeQuit(MSG& message);
void ForgetMessages(HWND handle);
POINT PointerPosition();
void MovePointer(POINT point);

// --- timers ---

bool TakeTimer(const MessageFilter& filter, MSG& message);
// Milliseconds until the next timer is due; -1 without any.
std::int64_t NextTimerDelay();
void ForgetTimers(HWND handle);

// --- the tree: what lies over what ---

// Puts the top-level window and what it owns in front.
void RaiseWindow(HWND handle);
// The topmost window at a point of the screen that takes the mouse there, and the part of it that was hit.
HWND HitWindow(POINT point, LRESULT& part);

// --- activation, focus, capture ---

void ActivateWindow(HWND handle, int how);
// When the window goes away or is hidden: the activation and the focus pass on.
void PassActivationOn(HWND handle);
void ForgetInput(HWND handle);

// --- painting ---

void DamageWindow(Window& window, bool with_children, bool erase);
// The next window that waits for WM_PAINT; null when there is none.
HWND NextDamagedWindow(HWND filter);

// --- showing ---

void SendSizeAndMove(HWND handle);

// --- input ---

bool TakeInput(const MessageFilter& filter, MSG& message);

// --- texts, for every window that gives one ---

// Copies as much of the text as fits into the capacity, with its end; gives the characters without the end.
inline LRESULT GiveText(std::u16string_view text, std::size_t capacity, LPARAM buffer) {
    if (capacity == 0 || buffer == 0)
        return 0;
    auto* const characters = reinterpret_cast<WCHAR*>(buffer);
    const std::size_t length = text.copy(characters, capacity - 1);
    characters[length] = u'\0';
    return static_cast<LRESULT>(length);
}

}  // namespace host
