#include "base/file_replacement.h"

#include <utility>

#include "base/text_convert.h"

FileReplacement::FileReplacement(WideText target) : target_(std::move(target)) {
    constexpr unsigned ATTEMPTS = 100;
    const WideText stem = target_ + TEXT(".tmp-") + WideNumberText(GetCurrentProcessId()) + TEXT("-");
    for (unsigned attempt = 0; attempt < ATTEMPTS; ++attempt) {
        WideText path = stem + WideNumberText(GetTickCount64()) + TEXT("-") + WideNumberText(attempt);
        handle_ = OwnedHandle(
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (handle_)
            path_ = std::move(path);
        if (handle_ || GetLastError() != ERROR_FILE_EXISTS)
            return;
    }
}

FileReplacement::~FileReplacement() {
    handle_.Reset();
    if (!path_.empty())
        DeleteFileW(path_.c_str());
}

bool FileReplacement::Finish() {
    if (FlushFileBuffers(handle_.Get()) == FALSE)
        return false;
    handle_.Reset();
    if (MoveFileExW(path_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) ==
        FALSE)
        return false;
    path_.clear();
    return true;
}
