// Runs the program and its user in one process. The user acts on a thread of its own or in a callback on the
// program's thread.
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

#include "base/text_convert.h"
#include "demo/user/user.h"
#include "shell/dispatch.h"
#include "shell/run_launcher.h"

namespace user {

namespace {

constexpr UINT ACTION_PERIOD_MS = 10;  // the shortest period of a timer on the platform

// Passes one action at a time from the user's thread to the program's thread, where a timer runs the action.
// The timer runs inside modal boxes too.
struct SharedState {
    std::mutex mutex;
    std::condition_variable changed;
    std::thread::id program_thread;
    const std::function<void()>* action = nullptr;  // not yet taken by the program's thread
    bool action_done = false;
    std::exception_ptr action_error;
    bool story_ended = false;
    bool program_ended = false;
};

SharedState shared;

struct ProgramEnded : std::runtime_error {
    ProgramEnded() : std::runtime_error("the program has ended while the user was still acting") {}
};

// Closes the topmost box or, without a box, the main window, without saving.
void CloseTopWindow() {
    if (const HWND box = FindWindowW(BOX_CLASS, nullptr)) {
        for (const int button : {IDNO, IDCANCEL, IDOK}) {
            if (GetDlgItem(box, button) != nullptr) {
                PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
                return;
            }
        }
        return;
    }
    if (const HWND window = FindWindowW(MAIN_WINDOW_CLASS, nullptr))
        PostMessageW(window, WM_CLOSE, 0, 0);
}

// Runs the action that the story waits for, if there is one. A step of RunWithUserCallback.
unsigned RunWaitingAction() {
    std::unique_lock lock(shared.mutex);
    if (shared.story_ended)
        return 0;
    const auto* const action = std::exchange(shared.action, nullptr);
    if (action == nullptr)
        return ACTION_PERIOD_MS;
    lock.unlock();
    std::exception_ptr error;
    try {
        (*action)();
    } catch (...) {
        error = std::current_exception();
    }
    lock.lock();
    shared.action_error = error;
    shared.action_done = true;
    shared.changed.notify_all();
    return ACTION_PERIOD_MS;
}

// True when the user can see something: the window or, when the start fails, a box.
bool IsAnythingVisible() {
    return IsWindowVisible(FindWindowW(MAIN_WINDOW_CLASS, nullptr)) != FALSE ||
           IsWindowVisible(FindWindowW(BOX_CLASS, nullptr)) != FALSE;
}

void RunStory(const std::function<void()>& story, std::exception_ptr& error) {
    try {
        WaitUntil(IsAnythingVisible, 60000);
        story();
    } catch (...) {
        error = std::current_exception();
    }
    const std::lock_guard lock(shared.mutex);
    shared.story_ended = true;
}

std::string ScreenText() {
    std::string text = Utf8ForDisplay(Title()) + " | " + Utf8ForDisplay(Status());
    if (Box() != nullptr)
        text += " | " + BoxText();
    return text;
}

}  // namespace

int RunWithUserThread(Launcher& launcher, const std::function<void()>& story) {
    std::exception_ptr error;
    shared.program_thread = std::this_thread::get_id();
    shared.story_ended = false;
    shared.program_ended = false;
    std::thread user_thread(RunStory, std::cref(story), std::ref(error));
    const int exit_code = RunWithUserCallback(launcher, RunWaitingAction, [](unsigned) {});
    {
        const std::lock_guard lock(shared.mutex);
        shared.program_ended = true;
        shared.changed.notify_all();
    }
    user_thread.join();
    if (error)
        std::rethrow_exception(error);
    return exit_code;
}

namespace {

struct UserCallback {
    const std::function<unsigned()>* step = nullptr;
    const std::function<void(unsigned)>* pass_time = nullptr;
    bool is_done = false;
    unsigned period_ms = ACTION_PERIOD_MS;
    std::exception_ptr error;
};

UserCallback callback;

unsigned RunStep() {
    try {
        if (!callback.is_done)
            return (*callback.step)();
        CloseTopWindow();
    } catch (...) {
        callback.error = std::current_exception();
    }
    return 0;
}

void CALLBACK CallUser(HWND, UINT, UINT_PTR timer, DWORD) {
    const unsigned delay_ms = RunStep();
    callback.is_done = delay_ms == 0;
    const unsigned next_ms = std::max(delay_ms, ACTION_PERIOD_MS);
    if (next_ms != std::exchange(callback.period_ms, next_ms))
        SetTimer(nullptr, timer, next_ms, CallUser);
    (*callback.pass_time)(next_ms);
}

}  // namespace

int RunWithUserCallback(Launcher& launcher, const std::function<unsigned()>& step,
                        const std::function<void(unsigned)>& pass_time) {
    shared.program_thread = std::this_thread::get_id();
    callback = {&step, &pass_time, false, ACTION_PERIOD_MS, nullptr};
    const UINT_PTR timer = SetTimer(nullptr, 0, ACTION_PERIOD_MS, CallUser);
    pass_time(ACTION_PERIOD_MS);
    const int exit_code = RunLauncher(launcher, GetModuleHandleW(nullptr), SW_SHOWNORMAL);
    KillTimer(nullptr, timer);
    if (IsWindow(launcher.main_window) != FALSE)
        DestroyWindow(launcher.main_window);  // after a failed start RunLauncher does not destroy it
    if (callback.error)
        std::rethrow_exception(callback.error);
    return exit_code;
}

void OnProgramThread(const std::function<void()>& action) {
    if (std::this_thread::get_id() == shared.program_thread)
        return action();
    std::unique_lock lock(shared.mutex);
    shared.action = &action;
    shared.action_done = false;
    shared.changed.wait(lock, [] { return shared.action_done || shared.program_ended; });
    shared.action = nullptr;
    if (!shared.action_done)
        throw ProgramEnded();
    if (shared.action_error)
        std::rethrow_exception(shared.action_error);
}

bool WaitUntil(const std::function<bool()>& condition, unsigned limit_ms) {
    if (std::this_thread::get_id() == shared.program_thread)
        throw std::logic_error("a wait on the program's thread would stop the program");
    const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(limit_ms);
    try {
        for (;;) {
            bool is_true = false;
            OnProgramThread([&] { is_true = condition(); });
            if (is_true)
                return true;
            if (std::chrono::steady_clock::now() > limit)
                throw std::runtime_error("timed out; on the screen: " + ScreenText());
        }
    } catch (const ProgramEnded&) {
        return false;
    }
}

void Pause(unsigned ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

bool WaitForEnd(unsigned limit_ms) {
    std::unique_lock lock(shared.mutex);
    return shared.changed.wait_for(lock, std::chrono::milliseconds(limit_ms),
                                   [] { return shared.program_ended; });
}

}  // namespace user
