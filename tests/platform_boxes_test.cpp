// Message boxes and file boxes: their owners and their answers.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "probe_windows.h"
#include "scratch.h"

namespace {

// The field for the file's name has one of these; a box shows one of the two.
constexpr int NAME_FIELDS[] = {0x47C, 0x480};
constexpr int MESSAGE_TEXT = 0xFFFF;

using Step = std::function<void(HWND)>;

// What a user does to the boxes, one step at a time once a box waits for him.
struct Answers {
    std::vector<Step> steps;
    HWND seen = nullptr;
};
Answers answers;

BOOL CALLBACK FindBox(HWND window, LPARAM found) {
    WCHAR name[16] = {};
    GetClassNameW(window, name, 16);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || WideView(name) != TEXT("#32770") || !IsWindowVisible(window) ||
        !IsWindowEnabled(window))
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

// A box is given two ticks to settle; one that nobody answers any more is cancelled.
void CALLBACK AnswerOnTick(HWND, UINT, UINT_PTR, DWORD) {
    HWND box = nullptr;
    EnumWindows(FindBox, reinterpret_cast<LPARAM>(&box));
    if (box == nullptr || std::exchange(answers.seen, box) != box)
        return;
    answers.seen = nullptr;
    if (answers.steps.empty()) {
        ADD_FAILURE() << "a box without an answer: " << GetLastError();
        PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
        return;
    }
    const Step step = answers.steps.front();
    answers.steps.erase(answers.steps.begin());
    step(box);
}

Step Command(int id) {
    return [id](HWND box) { PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(id), 0); };
}

Step Enter(const char* name) {
    return [name](HWND box) {
        for (const int field : NAME_FIELDS)
            SetDlgItemTextW(box, field, Wide(name).c_str());
        PostMessageW(box, WM_COMMAND, IDOK, 0);
    };
}

class PlatformBoxes : public testing::Test {
protected:
    PlatformBoxes() : owner(probe.MakeMain()), timer(SetTimer(nullptr, 0, 30, AnswerOnTick)) {}
    ~PlatformBoxes() override {
        KillTimer(nullptr, timer);
        EXPECT_TRUE(answers.steps.empty()) << "answers to boxes that did not come";
    }

    ProbeWindows probe;
    HWND owner;
    UINT_PTR timer;
};

TEST_F(PlatformBoxes, TheOwnerWaitsDisabledWhileTimersGoOn) {
    const HWND child = probe.Make("child", WS_CHILD | WS_VISIBLE, {0, 0, 50, 50}, owner);
    SetTimer(owner, 1, 20, nullptr);
    for (const HWND given : {owner, child}) {
        answers.steps = {[this](HWND box) {
            WCHAR text[32] = {};
            GetWindowTextW(box, text, 32);
            EXPECT_EQ(Narrow(text), "title");
            GetDlgItemTextW(box, MESSAGE_TEXT, text, 32);
            EXPECT_EQ(Narrow(text), "two\nlines");
            EXPECT_EQ(GetWindow(box, GW_OWNER), owner);
            EXPECT_EQ(GetActiveWindow(), box);
            EXPECT_FALSE(IsWindowEnabled(owner));
            EXPECT_NE(std::find(probe.log.begin(), probe.log.end(), "main TIMER 1"), probe.log.end());
            PostMessageW(box, WM_COMMAND, IDOK, 0);
        }};
        MessageBoxW(given, TEXT("two\nlines"), TEXT("title"), MB_ICONERROR);
        EXPECT_TRUE(IsWindowEnabled(owner));
        EXPECT_EQ(GetActiveWindow(), owner);
        EXPECT_EQ(probe.Take("ENABLE ACTIVATE"),
                  "main ENABLE 0, main ACTIVATE 0, main ENABLE 1, main ACTIVATE 1");
    }
    answers.steps = {[this](HWND box) {
        EXPECT_TRUE(IsWindowEnabled(owner));
        PostMessageW(box, WM_COMMAND, IDOK, 0);
    }};
    EXPECT_EQ(MessageBoxW(nullptr, TEXT("text"), TEXT("title"), MB_ICONERROR), IDOK);
}

TEST_F(PlatformBoxes, AQuestionIsAnsweredByItsButtonsByKeysAndByClosingTheBox) {
    const auto press = [](std::vector<int> keys) {
        return [keys](HWND) { std::for_each(keys.begin(), keys.end(), PressKey); };
    };
    struct Case {
        const char* name;
        Step step;
        int answer;
    };
    const Case cases[] = {
        {"Enter", press({VK_RETURN}), IDYES},
        {"Enter on the next one", press({VK_RIGHT, VK_RETURN}), IDNO},
        {"Enter on the one after", press({VK_RIGHT, VK_RIGHT, VK_RETURN}), IDCANCEL},
        {"Tab and blank", press({VK_TAB, VK_SPACE}), IDNO},
        {"Escape", press({VK_ESCAPE}), IDCANCEL},
        {"closed", [](HWND box) { PostMessageW(box, WM_SYSCOMMAND, SC_CLOSE, 0); }, IDCANCEL},
    };
    for (const Case& given : cases) {
        SCOPED_TRACE(given.name);
        answers.steps = {given.step};
        EXPECT_EQ(MessageBoxW(owner, TEXT("text"), TEXT("title"), MB_YESNOCANCEL | MB_ICONQUESTION),
                  given.answer);
    }
}

constexpr DWORD OPEN_FLAGS = OFN_EXPLORER | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR | OFN_FILEMUSTEXIST;
constexpr DWORD SAVE_FLAGS = OFN_EXPLORER | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR | OFN_OVERWRITEPROMPT;

class PlatformFileBoxes : public PlatformBoxes {
protected:
    PlatformFileBoxes() {
        for (const auto* name : {TEXT("here.ppm"), TEXT("plain")})
            WriteBytes(folder.Of(name), "x");
        MakeFolder(folder.Of(TEXT("sub")));
        request.lStructSize = sizeof request;
        request.hwndOwner = owner;
        request.lpstrFilter = TEXT("Image\0*.ppm\0Tout\0*.*\0");
        request.lpstrInitialDir = folder.path.c_str();
        request.lpstrFile = buffer.data();
        request.nMaxFile = 32768;
    }

    // The name of the file within the folder; the path whole when it is elsewhere; empty for FALSE.
    std::string Show(bool save, const char* first) {
        const WideText name = Wide(first);
        std::fill(buffer.begin(), buffer.end(), WCHAR{});
        std::copy(name.begin(), name.end(), buffer.begin());
        request.Flags = save ? SAVE_FLAGS : OPEN_FLAGS;
        if (!(save ? GetSaveFileNameW(&request) : GetOpenFileNameW(&request)))
            return "";
        const WideText path = buffer.data();
        return Narrow(path.starts_with(folder.path) ? path.substr(folder.path.size() + 1) : path);
    }

    ScratchFolder folder;
    std::vector<WCHAR> buffer = std::vector<WCHAR>(32768);
    OPENFILENAMEW request{};
};

TEST_F(PlatformFileBoxes, AnswerWithTheFullPathOfWhatTheUserConfirms) {
    struct Case {
        const char* name;
        bool save;
        const char* first;
        LPCWSTR extension;
        std::vector<Step> steps;
        const char* chosen;
    };
    const std::string full = Narrow(folder.Of(TEXT("plain")));
    const LPCWSTR ppm = TEXT("ppm");
    // clang-format off
    const Case cases[] = {
        {"a name", false, "", nullptr, {Enter("here.ppm")}, "here.ppm"},
        {"no extension to add", false, "", nullptr, {Enter("plain")}, "plain"},
        {"in quotes", false, "", nullptr, {Enter("\"here.ppm\"")}, "here.ppm"},
        {"from a folder", false, "", nullptr, {Enter("sub\\..\\here.ppm")}, "here.ppm"},
        {"the first file, by key", false, full.c_str(), nullptr, {[](HWND) { PressKey(VK_RETURN); }}, "plain"},
        {"missing", false, "", nullptr, {Enter("none.ppm"), Command(IDOK), Command(IDCANCEL)}, ""},
        {"missing folder", true, "", nullptr, {Enter("none\\a.ppm"), Command(IDOK), Command(IDCANCEL)}, ""},
        {"no file name", true, "", nullptr, {Enter("a|b"), Command(IDOK), Command(IDCANCEL)}, ""},
        {"a folder, then a name", true, "", ppm, {Enter("sub"), Enter("new.bmp")}, "sub\\new.bmp"},
        {"extension added", true, "", ppm, {Enter("new")}, "new.ppm"},
        {"replaced", true, "here.ppm", ppm, {Command(IDOK), Command(IDYES)}, "here.ppm"},
        {"not replaced", true, "here.ppm", ppm, {Command(IDOK), Command(IDNO), Command(IDCANCEL)}, ""},
    };
    // clang-format on
    for (const Case& given : cases) {
        SCOPED_TRACE(given.name);
        answers.steps = given.steps;
        request.lpstrDefExt = given.extension;
        EXPECT_EQ(Show(given.save, given.first), given.chosen);
        EXPECT_EQ(CommDlgExtendedError(), 0U);
        EXPECT_TRUE(answers.steps.empty());
    }
    EXPECT_FALSE(Exists(folder.Of(TEXT("new.ppm"))));
}

}  // namespace
