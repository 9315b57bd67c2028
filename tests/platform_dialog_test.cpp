// The keys of a dialog in a window that is none.
#include <gtest/gtest.h>

#include "probe_windows.h"

namespace {

constexpr DWORD CONTROL = WS_CHILD | WS_VISIBLE;

// A window with controls that answer WM_GETDLGCODE as buttons and edit fields do. The default identifier is
// what the window answers to DM_GETDEFID.
struct ProbeDialog {
    ProbeWindows probe;
    std::map<HWND, LRESULT> codes;
    LRESULT default_id = 0;
    LONG next_y = 0;
    HWND window;

    ProbeDialog() : window(probe.MakeMain()) {
        probe.answers = [this](HWND asked, UINT message, WPARAM, LRESULT& answer) {
            if (message == DM_GETDEFID && asked == window) {
                answer = default_id;
                return true;
            }
            const auto code = codes.find(asked);
            if (message != WM_GETDLGCODE || code == codes.end())
                return false;
            answer = code->second;
            return true;
        };
    }

    HWND Add(const char* name, int id, DWORD style, LRESULT code) {
        const HWND control = probe.Make(name, CONTROL | style, {0, next_y, 100, next_y + 20}, window, id);
        next_y += 25;
        codes[control] = code;
        return control;
    }

    // What the windows are told of the key, up to its release.
    std::string Press(int key, std::string_view messages) {
        probe.log.clear();
        PressKey(key);
        PumpFor(60, window);
        return probe.Take(messages);
    }
};

constexpr LRESULT BUTTON = DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
constexpr LRESULT DEFAULT_BUTTON = DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
constexpr LRESULT EDIT = DLGC_WANTCHARS | DLGC_WANTARROWS | DLGC_HASSETSEL;

}  // namespace

TEST(PlatformDialog, EnterPressesTheButtonWithTheMarkOrTheDefaultOne) {
    ProbeDialog dialog;
    const HWND field = dialog.Add("field", 10, WS_TABSTOP, EDIT);
    const HWND plain = dialog.Add("plain", 11, WS_TABSTOP, BUTTON);
    const HWND marked = dialog.Add("marked", 12, WS_TABSTOP, DEFAULT_BUTTON);
    const HWND launch = dialog.Add("launch", 105, WS_TABSTOP, BUTTON);
    const LRESULT has_default = MAKELONG(105, DC_HASDEFID);
    struct Case {
        const char* what;
        HWND focus;
        LRESULT default_id;
        bool enabled;
        const char* told;
    };
    const Case cases[] = {
        {"field, no default", field, 0, true, "main COMMAND 1"},
        {"field, default", field, has_default, true, "main COMMAND 105"},
        {"field, disabled default", field, has_default, false, ""},
        {"button without the mark", plain, has_default, true, "main COMMAND 105"},
        {"button with the mark", marked, has_default, true, "main COMMAND 12"},
        {"no control", dialog.window, has_default, true, "main COMMAND 105"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        dialog.default_id = one.default_id;
        EnableWindow(launch, one.enabled);
        SetFocus(one.focus);
        EXPECT_EQ(dialog.Press(VK_RETURN, "COMMAND KEYDOWN CHAR"), one.told);
    }
}

TEST(PlatformDialog, OtherKeysGoToTheDialogOrToTheControlThatWantsThem) {
    ProbeDialog dialog;
    const HWND field = dialog.Add("field", 10, WS_TABSTOP, EDIT);
    const HWND button = dialog.Add("button", 11, WS_TABSTOP, BUTTON);
    const HWND greedy = dialog.Add("greedy", 12, WS_TABSTOP, DLGC_WANTALLKEYS);
    struct Case {
        const char* what;
        HWND focus;
        int key;
        const char* told;
    };
    const char* const messages = "COMMAND KEYDOWN CHAR NEXTDLGCTL";
    const Case cases[] = {
        {"escape in a field", field, VK_ESCAPE, "main COMMAND 2"},
        {"escape on a button", button, VK_ESCAPE, "main COMMAND 2"},
        {"arrow in a field", field, VK_DOWN, "field KEYDOWN 40"},
        {"arrow on a button", button, VK_DOWN, "main NEXTDLGCTL"},
        {"blank on a button", button, VK_SPACE, "button KEYDOWN 32, button CHAR 32"},
        {"letter in a field", field, 'A', "field KEYDOWN 65, field CHAR 97"},
        {"enter where all keys are wanted", greedy, VK_RETURN, "greedy KEYDOWN 13, greedy CHAR 13"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        SetFocus(one.focus);
        EXPECT_EQ(dialog.Press(one.key, messages), one.told);
        EXPECT_EQ(GetFocus(), one.focus);
    }
}
