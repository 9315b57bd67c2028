// Window classes.
#include <algorithm>
#include <map>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

// The name in lower case. Class names are plain ASCII.
std::u16string Folded(std::u16string_view name) {
    std::u16string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
    });
    return folded;
}

using ClassMap = std::map<std::u16string, ClassPointer>;

void AddClass(ClassMap& classes, const WindowClass& made) {
    classes.emplace(Folded(made.name), std::make_shared<const WindowClass>(made));
}

ClassMap BuiltInClasses() {
    ClassMap classes;
    for (const BuiltInClass& one : BUILT_IN_CLASSES)
        AddClass(classes, {one.name, CS_DBLCLKS, one.procedure, BUILT_IN_EXTRA_BYTES, nullptr});
    return classes;
}

// All classes by folded name. Made at the first use, because the initial value needs a table of another file.
ClassMap& Classes() {
    static ClassMap classes = BuiltInClasses();
    return classes;
}

}  // namespace

ClassPointer FindWindowClass(LPCWSTR name) {
    const auto found = Classes().find(Folded(name));
    return found == Classes().end() ? nullptr : found->second;
}

void ResetClasses() {
    Classes() = BuiltInClasses();
}

}  // namespace host

ATOM WINAPI RegisterClassW(const WNDCLASSW* window_class) {
    if (host::CallFails("RegisterClassW"))
        return 0;
    const WNDCLASSW& asked = *window_class;
    if (host::FindWindowClass(asked.lpszClassName) != nullptr) {
        SetLastError(ERROR_CLASS_ALREADY_EXISTS);
        return 0;
    }
    host::AddClass(host::Classes(), {asked.lpszClassName, asked.style, asked.lpfnWndProc, asked.cbWndExtra,
                                     asked.hbrBackground});
    constexpr std::size_t FIRST_ATOM = 0xC000;
    return static_cast<ATOM>(FIRST_ATOM + host::Classes().size());
}

BOOL WINAPI UnregisterClassW(LPCWSTR name, HINSTANCE) {
    const host::ClassPointer found = host::FindWindowClass(name);
    // One reference is `found`, one is in the map, and each window of the class has another.
    if (found == nullptr || found.use_count() > 2)
        host::NotImplemented("UnregisterClassW", "a class that does not exist or has windows");
    return host::Classes().erase(host::Folded(name)) > 0;
}

int WINAPI GetClassNameW(HWND window, LPWSTR name, int capacity) {
    const host::WindowPointer found = host::FindWindowState(window);
    if (found == nullptr)
        return 0;
    return static_cast<int>(host::CopyText(found->window_class->name, static_cast<std::size_t>(capacity),
                                           reinterpret_cast<LPARAM>(name)));
}
