// Tests every value that an inherited handle can have: Windows provides no list of a process's handles.
#include "demo/inherited_handles.h"

#include <cstdint>

#include "base/text_convert.h"
#include "platform/win32.h"

namespace {

// Handle values are small multiples of 4, and an inherited handle keeps its value.
constexpr std::uintptr_t HANDLE_STEP = 4;
constexpr std::uintptr_t LARGEST_HANDLE = 0x4000;

std::string FileName(HANDLE file) {
    WideText name(32768, WCHAR{});
    const DWORD length = GetFinalPathNameByHandleW(file, name.data(), static_cast<DWORD>(name.size()), 0);
    name.resize(length < name.size() ? length : 0);
    return name.empty() ? "fichier" : Utf8FromWide(name);
}

std::string Kind(HANDLE handle) {
    switch (GetFileType(handle)) {
        case FILE_TYPE_DISK:
            return FileName(handle);
        case FILE_TYPE_CHAR:
            return "périphérique";
        case FILE_TYPE_PIPE:
            return "tube";
        default:
            return "autre objet";
    }
}

}  // namespace

std::vector<std::string> InheritedHandles() {
    std::vector<std::string> texts;
    for (std::uintptr_t value = HANDLE_STEP; value <= LARGEST_HANDLE; value += HANDLE_STEP) {
        const HANDLE handle = reinterpret_cast<HANDLE>(value);
        DWORD flags = 0;
        if (GetHandleInformation(handle, &flags) != FALSE && (flags & HANDLE_FLAG_INHERIT) != 0)
            texts.push_back(NumberText(value) + " " + Kind(handle));
    }
    return texts;
}
