// What has been posted and waits: messages, the end of the program, and where the pointer stood meanwhile.
// And what a loop asks for when it takes only some of it.
#include <algorithm>
#include <deque>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct PostedQueue {
    std::deque<MSG> messages;
    bool quits = false;
    int exit_code = 0;
    POINT pointer{};
};

PostedQueue& Queue() {
    return Lasting<PostedQueue>();
}

}  // namespace

bool PassesFilter(const MessageFilter& filter, HWND window, UINT message) {
    const bool in_range = (filter.lowest == 0 && filter.highest == 0) ||
                          (message >= filter.lowest && message <= filter.highest);
    return in_range && (filter.window == nullptr || filter.window == window ||
                        (window != nullptr && IsChild(filter.window, window) != FALSE));
}

MSG MakeMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return {window, message, wparam, lparam, static_cast<DWORD>(Now()), PointerPosition()};
}

bool TakePosted(const MessageFilter& filter, MSG& message) {
    std::deque<MSG>& posted = Queue().messages;
    const auto found = std::find_if(posted.begin(), posted.end(), [&](const MSG& waiting) {
        return PassesFilter(filter, waiting.hwnd, waiting.message);
    });
    if (found == posted.end())
        return false;
    message = *found;
    posted.erase(found);
    return true;
}

bool TakeQuit(MSG& message) {
    if (!Queue().quits)
        return false;
    message = MakeMessage(nullptr, WM_QUIT, static_cast<WPARAM>(Queue().exit_code), 0);
    Queue().quits = false;
    return true;
}

bool IsKnownOrNull(HWND window) {
    return window == nullptr || FindWindowState(window) != nullptr;
}

void ForgetMessages(HWND handle) {
    std::deque<MSG>& posted = Queue().messages;
    posted.erase(std::remove_if(posted.begin(), posted.end(),
                                [handle](const MSG& message) { return message.hwnd == handle; }),
                 posted.end());
}

POINT PointerPosition() {
    return Queue().pointer;
}

void MovePointer(POINT point) {
    Queue().pointer = point;
}

}  // namespace host

BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (!host::IsKnownOrNull(window))
        return FALSE;
    host::Queue().messages.push_back(host::MakeMessage(window, message, wparam, lparam));
    return TRUE;
}

void WINAPI PostQuitMessage(int exit_code) {
    host::Queue().quits = true;
    host::Queue().exit_code = exit_code;
}
