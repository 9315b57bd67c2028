// The entry of a console program with wide arguments: Linux calls main, the program has wmain.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/system/native.h"

extern "C" int wmain(int argc, WCHAR** argv);

int main(int argc, char** argv) {
    std::vector<std::u16string> texts(static_cast<std::size_t>(argc));
    std::vector<WCHAR*> arguments;
    for (std::size_t at = 0; at < texts.size(); at++) {
        if (!host::FromUtf8(argv[at], texts[at])) {
            std::fprintf(stderr, "Argument %zu is not UTF-8\n", at);
            std::abort();
        }
        arguments.push_back(texts[at].data());
    }
    arguments.push_back(nullptr);
    return wmain(argc, arguments.data());
}
