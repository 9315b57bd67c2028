// Takes any bytes as a log, against a rule that goes character by character: each line feed has a carriage
// return before it.
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
