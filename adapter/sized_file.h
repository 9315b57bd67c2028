// A file that is read in pieces.
#pragma once

#include <cstdint>
#include <string>

#include "base/owned_handle.h"
#include "platform/win32.h"

class SizedFile {
public:
    // Opens it for reading. Throws where that fails.
    explicit SizedFile(const WideText& path);

    // When it was opened.
    std::uint64_t Bytes() const {
        return bytes_;
    }
    // As many bytes, all of which must be there. Throws where they are not.
    std::string Read(std::uint64_t offset, std::uint64_t count) const;

private:
    WideText path_;
    OwnedHandle handle_;
    std::uint64_t bytes_ = 0;
};
