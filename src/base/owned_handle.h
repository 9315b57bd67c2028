// A kernel handle with one owner, which closes it when it is destroyed.
#pragma once

#include <utility>

#include "platform/win32.h"

// Can be moved, not copied. Null and INVALID_HANDLE_VALUE both mean that there is no handle.
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
    // Passes the ownership to the caller.
    [[nodiscard]] HANDLE Release() noexcept {
        return std::exchange(handle_, nullptr);
    }
    // Closes the handle now.
    void Reset() noexcept {
        if (handle_ != nullptr)
            CloseHandle(Release());
    }

private:
    HANDLE handle_ = nullptr;
};
