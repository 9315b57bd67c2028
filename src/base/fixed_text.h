// Fixed-capacity strings that never allocate, for reporting errors when memory is short.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "platform/win32.h"

// A text of at most CAPACITY characters, followed by a NUL. Characters that do not fit are dropped.
template <std::size_t CAPACITY>
class FixedText {
public:
    FixedText() {
        characters_[0] = 0;
    }
    explicit FixedText(WideView text) : FixedText() {
        *this += text;
    }

    // Returns nothing, unlike the usual operator: a caller that returned the result by value would copy
    // the whole capacity.
    void operator+=(WideView text) {
        text = text.substr(0, CAPACITY - size_);
        std::copy(text.begin(), text.end(), characters_.data() + size_);
        size_ += text.size();
        characters_[size_] = 0;
    }
    // Appends the number in decimal.
    void operator+=(std::uint64_t number) {
        std::array<char, 20> digits{};
        std::array<WCHAR, 20> wide{};
        char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        *this += WideView(wide.data(), std::copy(digits.data(), end, wide.data()));
    }

    operator WideView() const {
        return {characters_.data(), size_};
    }
    const WCHAR* c_str() const {
        return characters_.data();
    }

private:
    std::size_t size_ = 0;
    std::array<WCHAR, CAPACITY + 1> characters_;  // not initialised: a large capacity would take time
};
