// The paths of the layer as the machine knows them, and what the layer and the machine count.
#include <malloc.h>

#include <iterator>
#include <stdexcept>

#include "platform/host/controls/inspect.h"
#include "platform/host/system/inspect.h"
#include "scratch.h"

std::filesystem::path NativePath(WideView path) {
    const std::string native = host::NativePath(path);
    if (native.empty())
        throw std::runtime_error("no full path on drive C: " + Narrow(path));
    return native;
}

WideText WindowsPath(const std::filesystem::path& native) {
    return host::WidePath(std::filesystem::absolute(native).native());
}

WideText ClipboardText() {
    return host::ClipboardText();
}

Held WhatIsHeld() {
    std::size_t windows = 0;
    const auto count = [](HWND, LPARAM total) -> BOOL {
        ++*reinterpret_cast<std::size_t*>(total);
        return TRUE;
    };
    EnumWindows(count, reinterpret_cast<LPARAM>(&windows));
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    const auto open = static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
    return {{host::OpenHandles(), host::OpenAttributeLists(), windows, open}, mallinfo2().uordblks};
}
