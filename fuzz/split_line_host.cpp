// Splits a command line by the rules that the platform documents.
#include "fuzz.h"

std::vector<WideText> SplitLine(const WideText& line) {
    const auto is = [&line](std::size_t at, WCHAR unit) { return at < line.size() && line[at] == unit; };
    std::size_t at = line.find('"', 1);  // in the first word nothing is escaped
    std::vector<WideText> words{line.substr(1, at - 1)};
    while ((at = line.find_first_not_of(TEXT(" \t"), at + 1)) != WideText::npos) {
        WideText& word = words.emplace_back();
        for (bool is_quoted = false; at < line.size() && (is_quoted || !(is(at, ' ') || is(at, '\t')));
             ++at) {
            const std::size_t quote = line.find_first_not_of('\\', at);
            const std::size_t backslashes = quote - at;
            if (!is(quote, '"')) {
                word += line[at];
                continue;
            }
            word.append(backslashes / 2, '\\');
            at = quote;
            if (backslashes % 2 == 1)
                word += '"';
            else if (is_quoted && is(at + 1, '"'))
                word += line[++at];
            else
                is_quoted = !is_quoted;
        }
    }
    return words;
}
