// A kernel handle that is closed when its owner goes.
#pragma once

#include <utility>

#include "platform/win32.h"

// Moved, never copied. Null and INVALID_HANDLE_VALUE both mean that there is none.
class OwnedHandle {
public:
    OwnedHandle() = default;
    explicit OwnedHandle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    OwnedHandle(OwnedHandle&& other) noexcept : handle_(other.Release()) {}
    OwnedHandle& operator=(OwnedHandle&& other) noexcept {
        if (this != &other) {
            Reset();
            handle_ = other.Release();
        }
        return *this;
    }
    ~OwnedHandle() {
        Reset();
    }

    explicit operator bool() const {
        return handle_ != nullptr;
    }
    HANDLE Get() const {
        return handle_;
    }
    // Gives the handle up to the caller.
    HANDLE Release() {
        return std::exchange(handle_, nullptr);
    }
    // Closes it now.
    void Reset() {
        if (handle_ != nullptr)
            CloseHandle(Release());
    }

private:
    HANDLE handle_ = nullptr;
};
