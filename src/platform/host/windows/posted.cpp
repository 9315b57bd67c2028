// What has been posted and waits: messages, the end of the program, and where the pointer stood meanwhile.
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

MSG MakeMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return {window, message, wparam, lparam, static_cast<DWORD>(Now()), PointerPosition()};
}

bool TakePosted(UINT wanted, MSG& message) {
    std::deque<MSG>& posted = Queue().messages;
    const auto found = std::find_if(posted.begin(), posted.end(), [wanted](const MSG& waiting) {
        return wanted == 0 || waiting.message == wanted;
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

void ForgetMessages(HWND handle) {
    std::erase_if(
        Queue().messages, [handle](const MSG& message) { return message.hwnd == handle; });
}

POINT PointerPosition() {
    return Queue().pointer;
}

void MovePointer(POINT point) {
    Queue().pointer = point;
}

}  // namespace host

BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (window != nullptr && host::FindWindowState(window) == nullptr)
        return FALSE;
    host::Queue().messages.push_back(host::MakeMessage(window, message, wparam, lparam));
    return TRUE;
}

void WINAPI PostQuitMessage(int exit_code) {
    host::Queue().quits = true;
    host::Queue().exit_code = exit_code;
}
