// Opens and reads a file; the error messages contain its path.
#include "adapter/sized_file.h"

#include <stdexcept>

#include "base/file_system.h"
#include "base/text_convert.h"

namespace {

[[noreturn]] void Fail(const WideText& path) {
    throw std::runtime_error(Utf8FromWide(path) + " : lecture impossible.");
}

}  // namespace

SizedFile::SizedFile(const WideText& path) : path_(path), handle_(OpenForReading(path)) {
    if (!handle_ || !FileSize(handle_.Get(), bytes_))
        Fail(path);
}

std::string SizedFile::Read(std::uint64_t offset, std::uint64_t count) const {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    std::size_t read = 0;
    if (!ReadAt(handle_.Get(), offset, bytes.data(), bytes.size(), read) || read != bytes.size())
        Fail(path_);
    return bytes;
}
