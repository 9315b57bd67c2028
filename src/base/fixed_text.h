// Short texts that need no memory beside their own record: what must be told also when memory is short is
// composed in one.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "platform/win32.h"

// Holds up to CAPACITY characters; what no longer fits is left out. Nothing here fails.
template <std::size_t CAPACITY>
class FixedText {
public:
    FixedText() {
        characters_[0] = 0;
    }
    explicit FixedText(WideView text) : FixedText() {
        *this += text;
    }

    FixedText& operator+=(WideView text) {
        text = text.substr(0, CAPACITY - size_);
        std::copy(text.begin(), text.end(), characters_.data() + size_);
        size_ += text.size();
        characters_[size_] = 0;
        return *this;
    }
    // Adds a number in plain decimal.
    FixedText& operator+=(std::uint64_t number) {
        std::array<char, 20> digits{};
        const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        for (const char* digit = digits.data(); digit != end; ++digit) {
            const auto character = static_cast<WCHAR>(*digit);
            *this += WideView(&character, 1);
        }
        return *this;
    }

    operator WideView() const {
        return {characters_.data(), size_};
    }
    const WCHAR* c_str() const {
        return characters_.data();
    }

private:
    std::size_t size_ = 0;
    std::array<WCHAR, CAPACITY + 1> characters_;  // not cleared: it may be long
};
