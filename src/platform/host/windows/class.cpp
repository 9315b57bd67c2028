// Window classes.
#include <algorithm>
#include <map>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

// Class names are plain ASCII.
std::u16string Folded(std::u16string_view name) {
    std::u16string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
    });
    return folded;
}

using ClassMap = std::map<std::u16string, ClassPointer>;

ClassMap WithBuiltIn() {
    ClassMap classes;
    for (const BuiltInClass& built_in : BUILT_IN_CLASSES) {
        const WindowClass made{built_in.name,        built_in.style, built_in.procedure,
                               built_in.extra_bytes, nullptr,        nullptr};
        classes.emplace(Folded(made.name), std::make_shared<const WindowClass>(made));
    }
    return classes;
}

struct Classes {
    ClassMap by_folded_name = WithBuiltIn();
};

ClassMap& Registered() {
    return Lasting<Classes>().by_folded_name;
}

}  // namespace

bool SameName(std::u16string_view one, std::u16string_view other) {
    return one.size() == other.size() && Folded(one) == Folded(other);
}

ClassPointer FindWindowClass(LPCWSTR name) {
    if (name == nullptr)
        return nullptr;
    const auto found = Registered().find(Folded(name));
    return found == Registered().end() ? nullptr : found->second;
}

}  // namespace host

using host::FindWindowClass;
using host::FindWindowState;

ATOM WINAPI RegisterClassW(const WNDCLASSW* window_class) {
    if (host::CallFails("RegisterClassW"))
        return 0;
    if (window_class == nullptr || window_class->lpszClassName == nullptr || window_class->cbWndExtra < 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (FindWindowClass(window_class->lpszClassName) != nullptr) {
        SetLastError(ERROR_CLASS_ALREADY_EXISTS);
        return 0;
    }
    const host::WindowClass made{window_class->lpszClassName, window_class->style,
                                 window_class->lpfnWndProc,   window_class->cbWndExtra,
                                 window_class->hInstance,     window_class->hbrBackground};
    auto& classes = host::Registered();
    classes.emplace(host::Folded(made.name), std::make_shared<const host::WindowClass>(made));
    constexpr std::size_t FIRST_ATOM = 0xC000;
    return static_cast<ATOM>(FIRST_ATOM + classes.size());
}

BOOL WINAPI UnregisterClassW(LPCWSTR name, HINSTANCE) {
    const host::ClassPointer found = FindWindowClass(name);
    if (found == nullptr) {
        SetLastError(ERROR_CLASS_DOES_NOT_EXIST);
        return FALSE;
    }
    // Besides this one the registry holds a reference, and so does each window of the class.
    if (found.use_count() > 2) {
        SetLastError(ERROR_CLASS_HAS_WINDOWS);
        return FALSE;
    }
    host::Registered().erase(host::Folded(name));
    return TRUE;
}

int WINAPI GetClassNameW(HWND window, LPWSTR name, int capacity) {
    const host::WindowPointer found = FindWindowState(window);
    if (found == nullptr || capacity <= 0)
        return 0;
    return static_cast<int>(host::GiveText(found->window_class->name, static_cast<std::size_t>(capacity),
                                           reinterpret_cast<LPARAM>(name)));
}
