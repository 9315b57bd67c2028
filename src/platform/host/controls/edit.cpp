// EDIT: a single-line field, or a read-only text of several lines.
#include <algorithm>
#include <string>
#include <string_view>

#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/hooks/test_hooks.h"

namespace host {
namespace {

constexpr std::size_t DEFAULT_LIMIT = 32767;
// In a field that does not scroll, this many pixels of the client area's width cannot contain text.
constexpr int FIELD_MARGINS = 8;
constexpr int FIRST_CHARACTER_X = 2;

struct Edit {
    std::u16string text;
    std::size_t limit = DEFAULT_LIMIT;
    std::size_t anchor = 0;
    std::size_t caret = 0;
};

struct Span {
    std::size_t start;
    std::size_t end;
};

Span Selection(const Edit& edit) {
    return {std::min(edit.anchor, edit.caret), std::max(edit.anchor, edit.caret)};
}

bool HasStyle(HWND window, DWORD style) {
    return (StyleOf(window) & style) != 0;
}

// --- the text as a whole ---

LRESULT SetText(HWND window, Edit& edit, const WCHAR* text) {
    if (CallFails("WM_SETTEXT"))
        return FALSE;
    edit.text = text;
    edit.anchor = 0;
    edit.caret = 0;
    if (!HasStyle(window, ES_MULTILINE))
        SendCommand(window, EN_CHANGE);
    return TRUE;
}

LRESULT SetLimit(Edit& edit, std::size_t limit) {
    if (limit == 0)
        NotImplemented("EM_LIMITTEXT", "the largest possible limit");
    edit.limit = limit;
    return 0;
}

// The largest number of characters that the user can enter: the limit, or fewer if the field does not scroll
// and its width holds fewer.
std::size_t CapacityOf(HWND window, const Edit& edit) {
    if (HasStyle(window, ES_MULTILINE | ES_AUTOHSCROLL))
        return edit.limit;
    RECT client{};
    GetClientRect(window, &client);
    const int seen = std::max<int>(client.right - FIELD_MARGINS, 0) / CHARACTER_WIDTH;
    return std::min(edit.limit, static_cast<std::size_t>(seen));
}

// --- the selection ---

// Replaces the selection by the start of the text, as much as CapacityOf allows.
void ReplaceSelection(HWND window, Edit& edit, std::u16string_view text) {
    const Span selection = Selection(edit);
    edit.text.erase(selection.start, selection.end - selection.start);
    const std::size_t room = CapacityOf(window, edit);
    text = text.substr(0, room - std::min(room, edit.text.size()));
    edit.text.insert(selection.start, text);
    edit.caret = selection.start + text.size();
    edit.anchor = edit.caret;
    SendCommand(window, EN_CHANGE);
}

LRESULT SetSelection(Edit& edit, WPARAM from, LPARAM to) {
    const auto start = static_cast<DWORD>(from);
    const auto end = static_cast<DWORD>(to);
    if (start == static_cast<DWORD>(-1))
        NotImplemented("EM_SETSEL", "removing the selection");
    edit.anchor = std::min<std::size_t>(start, edit.text.size());
    edit.caret = std::min<std::size_t>(end, edit.text.size());
    return 1;
}

LRESULT GetSelection(const Edit& edit, WPARAM start, LPARAM end) {
    constexpr std::size_t LONGEST = 0xFFFF;
    const Span selection = Selection(edit);
    if (start != 0 || end != 0 || selection.end > LONGEST)
        NotImplemented("EM_GETSEL", "positions returned other than in the result");
    return MAKELPARAM(static_cast<unsigned>(selection.start), static_cast<unsigned>(selection.end));
}

void EraseNeighbour(HWND window, Edit& edit, bool backwards) {
    if (HasStyle(window, ES_READONLY))
        return;
    const Span selection = Selection(edit);
    if (selection.start == selection.end) {
        if (backwards ? edit.caret == 0 : edit.caret == edit.text.size())
            return;
        edit.anchor = backwards ? edit.caret - 1 : edit.caret + 1;
    }
    ReplaceSelection(window, edit, {});
}

// --- keys ---

std::u16string clipboard_text;

void Copy(const Edit& edit) {
    const Span selection = Selection(edit);
    if (selection.start != selection.end)
        clipboard_text = edit.text.substr(selection.start, selection.end - selection.start);
}

LRESULT TypeCharacter(HWND window, Edit& edit, WCHAR character) {
    constexpr WCHAR CONTROL_C = 3;
    constexpr WCHAR CONTROL_V = 22;
    constexpr WCHAR CONTROL_X = 24;
    constexpr WCHAR CONTROL_Z = 26;
    constexpr WCHAR DELETE = 0x7F;
    if (character == CONTROL_V || character == CONTROL_X || character == CONTROL_Z)
        NotImplemented("EDIT", "pasting, cutting and undoing");
    if (character == CONTROL_C)
        Copy(edit);
    if (character == VK_BACK) {
        EraseNeighbour(window, edit, true);
        return 0;
    }
    const bool is_refused = HasStyle(window, ES_NUMBER) && (character < u'0' || character > u'9');
    if (character < u' ' || character == DELETE || is_refused || HasStyle(window, ES_READONLY))
        return 0;
    ReplaceSelection(window, edit, {&character, 1});
    return 0;
}

void MoveCaret(Edit& edit, std::size_t place) {
    edit.caret = place;
    if (GetKeyState(VK_SHIFT) >= 0)
        edit.anchor = place;
}

constexpr std::u16string_view LINE_END = u"\r\n";

std::size_t LineStart(std::u16string_view text, std::size_t place) {
    const std::size_t line_end = text.substr(0, place).rfind(LINE_END);
    return line_end == text.npos ? 0 : line_end + LINE_END.size();
}

std::size_t LineEnd(std::u16string_view text, std::size_t place) {
    return std::min(text.find(LINE_END, place), text.size());
}

// The same column in the line above or below, or the end of that line if it is shorter.
std::size_t LineUp(std::u16string_view text, std::size_t place) {
    const std::size_t start = LineStart(text, place);
    if (start == 0)
        return place;
    const std::size_t end_above = start - LINE_END.size();
    return std::min(LineStart(text, end_above) + (place - start), end_above);
}

std::size_t LineDown(std::u16string_view text, std::size_t place) {
    const std::size_t end = LineEnd(text, place);
    if (end == text.size())
        return place;
    const std::size_t start_below = end + LINE_END.size();
    return std::min(start_below + (place - LineStart(text, place)), LineEnd(text, start_below));
}

std::size_t CharacterLeft(std::u16string_view text, std::size_t place) {
    return place - (text.substr(0, place).ends_with(LINE_END) ? 2 : std::min<std::size_t>(place, 1));
}

std::size_t CharacterRight(std::u16string_view text, std::size_t place) {
    return std::min(place + (text.substr(place).starts_with(LINE_END) ? 2 : 1), text.size());
}

constexpr std::u16string_view WORD_SEPARATORS = u" \t";

// WordLeft returns the last start of a word before the place, WordRight the first one after the place.
// Both stay in the line, with one exception: from the start of a line WordLeft moves to the line above, and
// from the end of a line WordRight moves to the line below.
std::size_t WordLeft(std::u16string_view text, std::size_t place) {
    const std::size_t start = LineStart(text, place);
    if (place == start)
        return CharacterLeft(text, place);
    const std::u16string_view before = text.substr(start, place - start);
    const std::size_t last = before.find_last_not_of(WORD_SEPARATORS);
    return start + (last == before.npos ? 0 : before.substr(0, last).find_last_of(WORD_SEPARATORS) + 1);
}

std::size_t WordRight(std::u16string_view text, std::size_t place) {
    const std::size_t end = LineEnd(text, place);
    if (place == end)
        return CharacterRight(text, place);
    const std::size_t blank = std::min(text.find_first_of(WORD_SEPARATORS, place), end);
    return std::min(text.find_first_not_of(WORD_SEPARATORS, blank), end);
}

// The same column one page up or down. A page is the number of lines that fit into the client area.
std::size_t PageUpOrDown(HWND window, std::u16string_view text, std::size_t place, WPARAM key) {
    RECT client{};
    GetClientRect(window, &client);
    std::size_t start = LineStart(text, place);
    const std::size_t column = place - start;
    for (LONG line = 0; line < client.bottom / LINE_HEIGHT; ++line)
        start = key == VK_PRIOR ? LineUp(text, start) : LineDown(text, start);
    return std::min(LineStart(text, start) + column, LineEnd(text, start));
}

// The place to which the key moves the caret; its present place for any other key.
std::size_t PlaceByKey(HWND window, const Edit& edit, WPARAM key) {
    const std::u16string_view text = edit.text;
    const bool has_lines = HasStyle(window, ES_MULTILINE);
    const bool with_control = GetKeyState(VK_CONTROL) < 0;
    switch (key) {
        case VK_LEFT:
            return with_control ? WordLeft(text, edit.caret) : CharacterLeft(text, edit.caret);
        case VK_RIGHT:
            return with_control ? WordRight(text, edit.caret) : CharacterRight(text, edit.caret);
        case VK_UP:
            return has_lines ? LineUp(text, edit.caret) : CharacterLeft(text, edit.caret);
        case VK_DOWN:
            return has_lines ? LineDown(text, edit.caret) : CharacterRight(text, edit.caret);
        case VK_HOME:
            return with_control ? 0 : LineStart(text, edit.caret);
        case VK_END:
            return with_control ? text.size() : LineEnd(text, edit.caret);
        case VK_PRIOR:
        case VK_NEXT:
            return has_lines ? PageUpOrDown(window, text, edit.caret, key) : edit.caret;
        default:
            return edit.caret;
    }
}

LRESULT PressKey(HWND window, Edit& edit, WPARAM key) {
    switch (key) {
        case VK_LEFT:
        case VK_RIGHT:
        case VK_UP:
        case VK_DOWN:
        case VK_HOME:
        case VK_END:
        case VK_PRIOR:
        case VK_NEXT:
            MoveCaret(edit, PlaceByKey(window, edit, key));
            return 0;
        case VK_DELETE:
            EraseNeighbour(window, edit, false);
            return 0;
        default:
            return 0;
    }
}

// --- the mouse ---

std::size_t PlaceAt(const Edit& edit, int x) {
    const int before = std::max(x - FIRST_CHARACTER_X, 0) / CHARACTER_WIDTH;
    return std::min(static_cast<std::size_t>(before), edit.text.size());
}

LRESULT UseMouse(HWND window, Edit& edit, UINT message, LPARAM point) {
    const bool is_single_line = !HasStyle(window, ES_MULTILINE);
    switch (message) {
        case WM_LBUTTONDOWN:
            SetFocus(window);
            SetCapture(window);
            if (is_single_line)
                MoveCaret(edit, PlaceAt(edit, XOf(point)));
            return 0;
        case WM_LBUTTONDBLCLK:
            NotImplemented("EDIT", "selecting a word by a double click");
        case WM_MOUSEMOVE:
            if (is_single_line && GetCapture() == window)
                edit.caret = PlaceAt(edit, XOf(point));
            return 0;
        default:
            if (GetCapture() == window)
                ReleaseCapture();
            return 0;
    }
}

// --- the window ---

LRESULT Create(HWND window, Edit& edit, const CREATESTRUCTW& creation) {
    if (creation.lpszName != nullptr)
        edit.text = creation.lpszName;
    constexpr DWORD UNKNOWN_STYLES =
        ES_CENTER | ES_RIGHT | ES_UPPERCASE | ES_LOWERCASE | ES_PASSWORD | ES_WANTRETURN;
    if (HasStyle(window, UNKNOWN_STYLES) ||
        (HasStyle(window, ES_MULTILINE) && !HasStyle(window, ES_READONLY)))
        NotImplemented("EDIT", "this style");
    return 0;
}

LRESULT HandleEditMessage(HWND window, Edit& edit, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case EM_GETSEL:
            return GetSelection(edit, wparam, lparam);
        case EM_SETSEL:
            return SetSelection(edit, wparam, lparam);
        case EM_LIMITTEXT:
            return SetLimit(edit, wparam);
        case EM_GETLIMITTEXT:
            return static_cast<LRESULT>(edit.limit);
        default:
            return DefControlProcedure("EDIT", window, message, wparam, lparam);
    }
}

LRESULT DialogCode(HWND window) {
    const int lines = HasStyle(window, ES_MULTILINE) ? DLGC_WANTALLKEYS : 0;
    return DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS | lines;
}

}  // namespace

std::u16string ClipboardText() {
    return clipboard_text;
}

void ResetClipboard() {
    clipboard_text.clear();
}

LRESULT CALLBACK EditProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const edit = StateAt<Edit>(window, message);
    if (edit == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_CREATE:
            return Create(window, *edit, *reinterpret_cast<const CREATESTRUCTW*>(lparam));
        case WM_SETTEXT:
            return SetText(window, *edit, TextAt(lparam));
        case WM_GETTEXT:
            return CallFails("WM_GETTEXT") ? 0 : CopyText(edit->text, wparam, lparam);
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(edit->text.size());
        case WM_GETDLGCODE:
            return DialogCode(window);
        case WM_CHAR:
            return TypeCharacter(window, *edit, static_cast<WCHAR>(wparam));
        case WM_KEYDOWN:
            return PressKey(window, *edit, wparam);
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_MOUSEMOVE:
        case WM_LBUTTONUP:
            return UseMouse(window, *edit, message, lparam);
        default:
            return HandleEditMessage(window, *edit, message, wparam, lparam);
    }
}

}  // namespace host
