// The owner of a kernel handle. Its destructor closes the handle.
#pragma once

#include <utility>

#include "platform/win32.h"

// Can be moved, not copied. A handle of INVALID_HANDLE_VALUE is stored as null, which means that there is
// no handle.
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
    // Returns the handle without closing it; the caller must close it.
    [[nodiscard]] HANDLE Release() noexcept {
        return std::exchange(handle_, nullptr);
    }
    // Closes the handle, if there is one.
    void Reset() noexcept {
        if (handle_ != nullptr)
            CloseHandle(Release());
    }

private:
    HANDLE handle_ = nullptr;
};
