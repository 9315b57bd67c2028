// Splits a command line by the platform itself.
#include "fuzz.h"

#include <shellapi.h>

std::vector<WideText> SplitLine(const WideText& line) {
    int count = 0;
    WCHAR** const words = CommandLineToArgvW(line.c_str(), &count);
    std::vector<WideText> copies(words, words + count);
    LocalFree(words);
    return copies;
}
