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
    const std::optional<std::uint64_t> size = FileSize(handle_.Get());
    if (!size)
        Fail(path);
    bytes_ = *size;
}

std::string SizedFile::Read(std::uint64_t offset, std::uint64_t count) const {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    if (ReadAt(handle_.Get(), offset, bytes.data(), bytes.size()) != bytes.size())
        Fail(path_);
    return bytes;
}
