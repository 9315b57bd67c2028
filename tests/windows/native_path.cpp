// Paths, the clipboard and used resources on Windows.
#include "scratch.h"

std::filesystem::path NativePath(WideView path) {
    return path;
}

WideText WindowsPath(const std::filesystem::path& native) {
    return std::filesystem::absolute(native).make_preferred().native();
}

WideText ClipboardText() {
    WideText text;
    if (OpenClipboard(nullptr) == FALSE)
        return text;
    if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const WCHAR*>(GlobalLock(data));
        GlobalUnlock(data);
    }
    CloseClipboard();
    return text;
}

Resources UsedResources() {
    const HANDLE process = GetCurrentProcess();
    DWORD handles = 0;
    GetProcessHandleCount(process, &handles);
    return {{handles, GetGuiResources(process, GR_USEROBJECTS), GetGuiResources(process, GR_GDIOBJECTS)}, 0};
}
