// What the files of this room share: the record of a window, how to find it, and the steps that one file does
// for those above it. The groups stand in the order of the files, the lowest first.
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
    RECT restored{};  // the outer rectangle that a minimised window comes back to
    std::u16string text;
    bool size_on_show = false;  // WM_SIZE and WM_MOVE wait for the first showing
    bool damaged = false;       // WM_PAINT is due
    bool unerased = false;      // WM_ERASEBKGND comes with it
    DWORD thread = 0;
};
using WindowPointer = std::shared_ptr<Window>;

constexpr LONG SCREEN_WIDTH = 1400;
constexpr LONG SCREEN_HEIGHT = 1000;

// --- registry: the windows that there are, and in which order they lie ---

// The window of a handle, or null with ERROR_INVALID_WINDOW_HANDLE. Aborts when the window is another
// thread's.
WindowPointer FindWindowState(HWND handle);
// The top-level windows, topmost first.
std::vector<HWND>& TopLevelWindows();
// The list in which the window stands, topmost first: the children of its parent, or the top-level windows.
std::vector<HWND>& SiblingsOf(const Window& window);
// The window itself, or the outermost parent of a child.
HWND RootOf(HWND handle);
inline bool IsChildStyle(DWORD style) {
    return (style & (WS_CHILD | WS_POPUP)) == WS_CHILD;
}
// Gives a new window its handle and its place among its siblings; takes an old one out, handle and all.
HWND EnterWindow(const WindowPointer& window);
void RemoveWindow(HWND handle);

// --- class: what windows are made of ---

// A class that is there before a program registers any.
struct BuiltInClass {
    const WCHAR* name;
    WNDPROC procedure;
};
extern const std::span<const BuiltInClass> BUILT_IN_CLASSES;
extern const int BUILT_IN_EXTRA_BYTES;

ClassPointer FindWindowClass(LPCWSTR name);
// Whether two class names are the same to the platform, which takes no notice of case.
bool SameName(std::u16string_view one, std::u16string_view other);

// --- geometry: rectangles, frames and coordinates ---

bool Contains(const RECT& rectangle, POINT point);
// How far the frame reaches on each side of the client area, scroll bars left out.
RECT FrameOf(DWORD style, DWORD extended_style);
// What the frame and the scroll bars leave of a window's outer rectangle.
RECT InsideFrame(const Window& window, const RECT& outer);
// Asks the window for its client area.
void CalculateClient(Window& window);
// Asks a window that has limits for them; gives the size within them.
SIZE WithinLimits(const Window& window, SIZE size);
void SendMove(HWND handle, RECT client);
void SendSize(HWND handle, WPARAM kind, RECT client);

// --- posted: messages that wait, the end of the program, and the pointer ---

MSG MakeMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
// Takes out the first posted message, or the first of the wanted kind where that is not 0.
bool TakePosted(UINT wanted, MSG& message);
bool TakeQuit(MSG& message);
void ForgetMessages(HWND handle);
POINT PointerPosition();
void MovePointer(POINT point);

// --- timer ---

bool TakeTimer(MSG& message);
// Milliseconds until the next timer is due; -1 without any.
std::int64_t NextTimerDelay();
void ForgetTimers(HWND handle);

// --- tree: parents, owners, siblings, and what lies at a point ---

// The topmost window at a point of the screen that takes the mouse there, and the part of it that was hit.
HWND HitWindow(POINT point, LRESULT& part);
// Puts the top-level window and what it owns in front.
void RaiseWindow(HWND handle);

// --- activation: who is active, who has the keyboard, who has the mouse to itself ---

void ActivateWindow(HWND handle, int how);
// When the window goes away or is hidden: the activation and the focus pass on.
void PassActivationOn(const Window& window);
void ForgetActivation(HWND handle);

// --- painting: which windows are due ---

void DamageWindow(Window& window, bool with_children, bool erase);
// The next window that waits for WM_PAINT; null when there is none.
HWND NextDamagedWindow();
// What WM_PAINT comes to where nothing is drawn: the background is erased, and the window is due no more.
void PaintWindow(Window& window);

// --- position: what SetWindowPos tells a window beyond its public flags ---

constexpr UINT SWP_NOCLIENTSIZE = 0x0800;
constexpr UINT SWP_NOCLIENTMOVE = 0x1000;
constexpr UINT SWP_STATECHANGED = 0x8000;

// --- show ---

void SendSizeAndMove(HWND handle);

// --- input: mouse and keyboard ---

bool TakeInput(MSG& message);

// --- dialog items: the texts of windows, and controls by their identifiers ---

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
