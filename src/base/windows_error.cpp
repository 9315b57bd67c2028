#include "base/windows_error.h"

#include <memory>

#include "base/text_convert.h"

namespace {

struct LocalDeleter {
    void operator()(WCHAR* buffer) const {
        LocalFree(buffer);
    }
};

}  // namespace

WideText WindowsErrorText(DWORD code) {
    LPWSTR buffer = nullptr;
    FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        code, 0, reinterpret_cast<LPWSTR>(&buffer), 0, nullptr);
    if (buffer == nullptr)
        return TEXT("Erreur Windows ") + WideNumberText(code);
    const std::unique_ptr<WCHAR, LocalDeleter> owned(buffer);
    return owned.get();
}
