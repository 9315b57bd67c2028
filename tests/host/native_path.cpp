// Paths, the clipboard and used resources over the layer.
#include <malloc.h>

#include <iterator>
#include <optional>
#include <stdexcept>

#include "platform/host/hooks/test_hooks.h"
#include "platform/host/system/native.h"
#include "scratch.h"

std::filesystem::path NativePath(WideView path) {
    const std::optional<std::string> native = host::ToNativePath(WideText(path).c_str());
    if (!native)
        throw std::runtime_error("no full path on drive C: " + Narrow(path));
    return *native;
}

WideText WindowsPath(const std::filesystem::path& native) {
    return host::FromNativePath(std::filesystem::absolute(native).native());
}

WideText ClipboardText() {
    return host::ClipboardText();
}

Resources UsedResources() {
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
