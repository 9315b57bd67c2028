// The entry point of a console program: Linux calls main, the program defines wmain.
#include <cstdio>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/system/native.h"

extern "C" int wmain(int argc, WCHAR** argv);

int main(int argc, char** argv) {
    std::vector<std::u16string> texts(static_cast<std::size_t>(argc));
    std::vector<WCHAR*> arguments;
    for (std::size_t at = 0; at < texts.size(); at++) {
        std::optional<std::u16string> text = host::FromUtf8(argv[at]);
        if (!text) {
            std::fprintf(stderr, "Erreur : l'argument %zu n'est pas en UTF-8.\n", at);
            return 2;
        }
        texts[at] = std::move(*text);
        arguments.push_back(texts[at].data());
    }
    arguments.push_back(nullptr);
    return wmain(argc, arguments.data());
}
