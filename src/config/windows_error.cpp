#include "config/windows_error.h"

#include "config/text_convert.h"

WideText WindowsErrorText(DWORD code) {
    LPWSTR buffer = nullptr;
    FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        code, 0, reinterpret_cast<LPWSTR>(&buffer), 0, nullptr);
    if (buffer == nullptr)
        return TEXT("Erreur Windows ") + WideNumberText(code);
    WideText text = buffer;
    LocalFree(buffer);
    return text;
}
