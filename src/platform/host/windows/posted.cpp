// Posted messages, the quit message, and the position of the mouse pointer.
#include <algorithm>
#include <deque>
#include <utility>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct PostedQueue {
    std::deque<MSG> messages;
    bool quits = false;
    int exit_code = 0;
    POINT pointer{};
};

PostedQueue queue;

}  // namespace

MSG MakeMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return {window, message, wparam, lparam, static_cast<DWORD>(Now()), PointerPosition()};
}

std::optional<MSG> TakePosted(UINT wanted) {
    std::deque<MSG>& posted = queue.messages;
    const auto found = std::find_if(posted.begin(), posted.end(), [wanted](const MSG& waiting) {
        return wanted == 0 || waiting.message == wanted;
    });
    if (found == posted.end())
        return std::nullopt;
    const MSG message = *found;
    posted.erase(found);
    return message;
}

std::optional<MSG> TakeQuit() {
    if (!std::exchange(queue.quits, false))
        return std::nullopt;
    return MakeMessage(nullptr, WM_QUIT, static_cast<WPARAM>(queue.exit_code), 0);
}

void ForgetMessages(HWND handle) {
    const auto is_for_window = [handle](const MSG& message) { return message.hwnd == handle; };
    std::erase_if(queue.messages, is_for_window);
}

POINT PointerPosition() {
    return queue.pointer;
}

void MovePointer(POINT point) {
    queue.pointer = point;
}

void ResetMessages() {
    queue = {};
}

}  // namespace host

BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (window != nullptr && host::FindWindowState(window) == nullptr)
        return FALSE;
    host::queue.messages.push_back(host::MakeMessage(window, message, wparam, lparam));
    return TRUE;
}

void WINAPI PostQuitMessage(int exit_code) {
    host::queue.quits = true;
    host::queue.exit_code = exit_code;
}
