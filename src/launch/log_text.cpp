#include "launch/log_text.h"

#include <algorithm>

#include "base/text_convert.h"

namespace {

constexpr WCHAR CARRIAGE_RETURN = TEXT('\r');
constexpr WCHAR LINE_FEED = TEXT('\n');

bool IsBareLineFeed(const WideText& text, std::size_t index) {
    return text[index] == LINE_FEED && (index == 0 || text[index - 1] != CARRIAGE_RETURN);
}

}  // namespace

WideText LogText(std::string_view bytes) {
    WideText text = WideFromBytes(bytes);
    NormalizeLineEnds(text);
    return text;
}

void NormalizeLineEnds(WideText& text) {
    std::size_t bare = 0;
    for (std::size_t index = 0; index < text.size(); ++index)
        bare += IsBareLineFeed(text, index) ? 1 : 0;
    std::size_t from = text.size();
    text.resize(from + bare);
    // Copies from the end, so that each character is moved once. Stops at the first bare line feed: the
    // characters before it need not move.
    for (std::size_t to = text.size(); to != from;) {
        --from;
        const bool needs_return = IsBareLineFeed(text, from);
        text[--to] = text[from];
        if (needs_return)
            text[--to] = CARRIAGE_RETURN;
    }
}

void ShowZeros(WideText& text) {
    constexpr WCHAR MIDDLE_DOT = 0xB7;  // every font has this character, also ANSI_FIXED_FONT
    std::replace(text.begin(), text.end(), WCHAR{0}, MIDDLE_DOT);
}
