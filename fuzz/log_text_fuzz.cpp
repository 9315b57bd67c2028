// Any bytes as a log: one character after the other, each line feed behind a carriage return.
#include "launch/log_text.h"

#include <algorithm>

#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    WideText normal;
    for (const WCHAR character : ReadableText(bytes)) {
        if (character == '\n' && !normal.ends_with('\r'))
            normal += TEXT('\r');
        normal += character;
    }
    WideText text = LogText(bytes);
    Require(text == normal);
    NormalizeLineEnds(text);
    Require(text == normal);
    ShowZeros(text);
    std::replace(normal.begin(), normal.end(), WCHAR{0}, WCHAR{TEXT('·')});
    Require(text == normal);
    return 0;
}
