// COMBOBOX as a drop-down list with one selected entry (CBS_DROPDOWNLIST), and COMBOLBOX, the window of the
// dropped list.
#include <algorithm>
#include <string>
#include <vector>

#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"

namespace host {
namespace {

// The extra bytes of the list's window: the handle of its combo box.
constexpr int FIELD_OFFSET = 0;
// Heights in pixels: before WM_SETFONT with the system font, after it with the layer's only font.
constexpr int SYSTEM_FONT_FIELD_HEIGHT = 24;
constexpr int FIELD_HEIGHT = 20;
constexpr int ITEM_HEIGHT = 12;

struct Combo {
    std::vector<std::u16string> items;
    int selected = NONE;
    int field_height = SYSTEM_FONT_FIELD_HEIGHT;
    HWND list = nullptr;
    bool is_dropped = false;
};

int LastIndex(const Combo& combo) {
    return static_cast<int>(combo.items.size()) - 1;
}

bool IsItem(const Combo& combo, WPARAM index) {
    return index < combo.items.size();
}

// --- the dropped list ---

void ShowList(HWND window, Combo& combo) {
    SetFocus(window);
    RECT field{};
    GetWindowRect(window, &field);
    const int height = std::max(LastIndex(combo) + 1, 1) * ITEM_HEIGHT + 2;
    SetWindowPos(combo.list, HWND_TOP, field.left, field.bottom, field.right - field.left, height,
                 SWP_NOACTIVATE);
    ShowWindow(combo.list, SW_SHOWNA);
    combo.is_dropped = true;
    SetCapture(combo.list);
}

LRESULT HideList(Combo& combo) {
    if (!combo.is_dropped)
        return 0;
    combo.is_dropped = false;
    if (GetCapture() == combo.list)
        ReleaseCapture();
    ShowWindow(combo.list, SW_HIDE);
    return 0;
}

LRESULT ToggleList(HWND window, Combo& combo) {
    if (combo.is_dropped)
        return HideList(combo);
    ShowList(window, combo);
    return 0;
}

// --- selecting ---

// Selects an entry after user input. Sends the notification even if the entry is already selected.
LRESULT Select(HWND window, Combo& combo, int index) {
    combo.selected = index;
    SendCommand(window, CBN_SELCHANGE);
    return 0;
}

LRESULT MoveByKey(HWND window, Combo& combo, WPARAM key) {
    if (combo.items.empty())
        return 0;
    switch (key) {
        case VK_UP:
        case VK_LEFT:
            return Select(window, combo, std::max(combo.selected - 1, 0));
        case VK_DOWN:
        case VK_RIGHT:
            return Select(window, combo, std::min(combo.selected + 1, LastIndex(combo)));
        case VK_HOME:
        case VK_PRIOR:
            return Select(window, combo, 0);
        case VK_END:
        case VK_NEXT:
            return Select(window, combo, LastIndex(combo));
        default:
            return 0;
    }
}

LRESULT PressKey(HWND window, Combo& combo, WPARAM key) {
    switch (key) {
        case VK_RETURN:
        case VK_ESCAPE:
            return HideList(combo);
        case VK_F4:
            return ToggleList(window, combo);
        default:
            return MoveByKey(window, combo, key);
    }
}

// Selects the next entry that starts with the character. The search ends at the selected entry.
LRESULT TypeCharacter(HWND window, Combo& combo, WCHAR character) {
    const auto count = combo.items.size();
    for (std::size_t step = 1; step <= count; step++) {
        const std::size_t index = (static_cast<std::size_t>(combo.selected) + step) % count;
        if (combo.items[index].starts_with(character))
            return Select(window, combo, static_cast<int>(index));
    }
    return 0;
}

LRESULT SelectByMessage(HWND window, Combo& combo, WPARAM index) {
    if (!IsItem(combo, index))
        NotImplemented("CB_SETCURSEL", "no entry, or one that does not exist");
    if (CallFails("CB_SETCURSEL"))
        return CB_ERR;
    combo.selected = static_cast<int>(index);
    InvalidateRect(window, nullptr, TRUE);
    return combo.selected;
}

// --- the window ---

// A requested height is that of the field and the list together. The window gets the height of the field.
LRESULT LimitHeight(const Combo& combo, WINDOWPOS& position) {
    if ((position.flags & SWP_NOSIZE) == 0)
        position.cy = combo.field_height;
    return 0;
}

void FitField(HWND window, const Combo& combo) {
    RECT field{};
    GetWindowRect(window, &field);
    SetWindowPos(window, nullptr, 0, 0, field.right - field.left, combo.field_height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT Create(HWND window, Combo& combo) {
    const DWORD style = StyleOf(window);
    if ((style & (CBS_DROPDOWNLIST | CBS_SORT)) != CBS_DROPDOWNLIST)
        NotImplemented("COMBOBOX", "another kind than CBS_DROPDOWNLIST");
    // WS_VSCROLL applies to the list.
    SetWindowLongPtrW(window, GWL_STYLE, static_cast<LONG_PTR>(style & ~WS_VSCROLL));
    FitField(window, combo);
    const SuspendHooks suspended;
    combo.list = CreateWindowExW(WS_EX_TOOLWINDOW, u"ComboLBox", nullptr, WS_POPUP | WS_BORDER, 0, 0, 1, 1,
                                 window, nullptr, nullptr, window);
    return combo.list == nullptr ? -1 : 0;
}

LRESULT SetFont(HWND window, Combo& combo, WPARAM wparam, LPARAM lparam) {
    DefControlProcedure("COMBOBOX", window, WM_SETFONT, wparam, lparam);
    combo.field_height = FIELD_HEIGHT;
    FitField(window, combo);
    return 0;
}

LRESULT DialogCode(const Combo& combo, LPARAM message) {
    const auto* const asked = reinterpret_cast<const MSG*>(message);
    const bool closes_list = asked != nullptr && combo.is_dropped && asked->message == WM_KEYDOWN &&
                             (asked->wParam == VK_RETURN || asked->wParam == VK_ESCAPE);
    return DLGC_WANTARROWS | DLGC_WANTCHARS | (closes_list ? DLGC_WANTMESSAGE : 0);
}

std::u16string SelectedText(const Combo& combo) {
    return combo.selected == NONE ? std::u16string() : combo.items[static_cast<std::size_t>(combo.selected)];
}

LRESULT GetItem(const Combo& combo, WPARAM index, LPARAM buffer) {
    if (!IsItem(combo, index))
        NotImplemented("CB_GETLBTEXT", "an entry that does not exist");
    const std::u16string& item = combo.items[index];
    return CopyText(item, item.size() + 1, buffer);
}

LRESULT HandleListMessage(HWND window, Combo& combo, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case CB_ADDSTRING:
            if (CallFails("CB_ADDSTRING"))
                return CB_ERRSPACE;
            combo.items.emplace_back(TextAt(lparam));
            return LastIndex(combo);
        case CB_GETCURSEL:
            return combo.selected;
        case CB_SETCURSEL:
            return SelectByMessage(window, combo, wparam);
        case CB_GETLBTEXT:
            return GetItem(combo, wparam, lparam);
        case WM_SETTEXT:
            return CB_ERR;
        case WM_GETTEXT:
            return CopyText(SelectedText(combo), wparam, lparam);
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(SelectedText(combo).size());
        default:
            return DefControlProcedure("COMBOBOX", window, message, wparam, lparam);
    }
}

}  // namespace

LRESULT CALLBACK ComboProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const combo = StateAt<Combo>(window, message);
    if (combo == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_CREATE:
            return Create(window, *combo);
        case WM_WINDOWPOSCHANGING:
            return LimitHeight(*combo, *reinterpret_cast<WINDOWPOS*>(lparam));
        case WM_SETFONT:
            return SetFont(window, *combo, wparam, lparam);
        case WM_GETDLGCODE:
            return DialogCode(*combo, lparam);
        case WM_KILLFOCUS:
            return HideList(*combo);
        case WM_KEYDOWN:
            return PressKey(window, *combo, wparam);
        case WM_CHAR:
            return TypeCharacter(window, *combo, static_cast<WCHAR>(wparam));
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            return ToggleList(window, *combo);
        default:
            return HandleListMessage(window, *combo, message, wparam, lparam);
    }
}

// The list has the mouse capture while it is shown. A click on an entry selects the entry, any other click
// closes the list.
LRESULT CALLBACK ComboListProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
        SetWindowLongPtrW(
            window, FIELD_OFFSET,
            reinterpret_cast<LONG_PTR>(reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams));
    }
    auto* const field = reinterpret_cast<HWND>(GetWindowLongPtrW(window, FIELD_OFFSET));
    auto* const combo =
        field == nullptr ? nullptr : reinterpret_cast<Combo*>(GetWindowLongPtrW(field, STATE_OFFSET));
    if (combo == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_LBUTTONDOWN:
            return IsInClientArea(window, lparam) ? 0 : HideList(*combo);
        case WM_LBUTTONUP: {
            const int index = YOf(lparam) / ITEM_HEIGHT;
            if (!IsInClientArea(window, lparam) || index > LastIndex(*combo))
                return 0;
            HideList(*combo);
            return Select(field, *combo, index);
        }
        default:
            return DefWindowProcW(window, message, wparam, lparam);
    }
}

}  // namespace host
