// A file of known size that is read in pieces.
#pragma once

#include <cstdint>
#include <string>

#include "base/owned_handle.h"
#include "platform/win32.h"

class SizedFile {
public:
    // Opens the file for reading. Throws when that fails.
    explicit SizedFile(const WideText& path);

    // Size in bytes when the file was opened.
    std::uint64_t Bytes() const {
        return bytes_;
    }
    // Reads `count` bytes from `offset` on. Throws when that fails or the file ends before.
    std::string Read(std::uint64_t offset, std::uint64_t count) const;

private:
    WideText path_;
    OwnedHandle handle_;
    std::uint64_t bytes_ = 0;
};
