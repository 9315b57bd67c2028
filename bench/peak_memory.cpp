// The peak memory of parsing the largest configurations, counted at the allocator.
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>

#include "config/config_text.h"

namespace {

constexpr std::size_t HEADER_BYTES = alignof(std::max_align_t);
std::size_t held_bytes = 0;
std::size_t peak_bytes = 0;

}  // namespace

void* operator new(std::size_t size) {
    auto* const block = static_cast<char*>(std::malloc(size + HEADER_BYTES));
    if (block == nullptr)
        throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(block) = size;
    held_bytes += size;
    peak_bytes = std::max(peak_bytes, held_bytes);
    return block + HEADER_BYTES;
}

void operator delete(void* memory) noexcept {
    if (memory == nullptr)
        return;
    char* const block = static_cast<char*>(memory) - HEADER_BYTES;
    held_bytes -= *reinterpret_cast<std::size_t*>(block);
    std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace {

void Report(const char* what, const std::string& text) {
    peak_bytes = held_bytes;
    const std::size_t before = held_bytes;
    try {
        ParseConfigText(text);
    } catch (const std::runtime_error& error) {
        std::printf("(%.60s)\n", error.what());
    }
    std::printf("%s: %zu bytes of text, %zu bytes more at the peak\n", what, text.size(),
                peak_bytes - before);
}

}  // namespace

int main() {
    std::string text = "version=1\nkernel=C:\\";
    text.resize(MAX_CONFIG_BYTES, 'k');
    Report("one huge value", text);

    text = "version=1\n";
    for (unsigned number = 0; text.size() + 8 <= MAX_CONFIG_BYTES; ++number)
        text += std::to_string(number) + "=\n";
    Report("many keys", text);
}
