// The path operations against their rules, applied one by one to a list of elements, however slow that is.
#include "base/path_ops.h"

#include <algorithm>

#include "fuzz.h"

namespace {

using Parts = std::vector<WideText>;

constexpr WideView LETTERS = TEXT("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
constexpr WideView SEPARATORS = TEXT("\\/");
const WideText BACKSLASH = TEXT("\\");
const WideText UP = TEXT("..");

WideText WithBackslashes(WideText path) {
    std::replace(path.begin(), path.end(), WCHAR{'/'}, WCHAR{'\\'});
    return path;
}

WideText RootName(const WideText& path) {
    const WideText start = WithBackslashes(path.substr(0, 5));
    if (start.size() > 1 && start[1] == ':' && LETTERS.find(start[0]) != WideView::npos)
        return path.substr(0, 2);
    for (const WideText device : {TEXT("\\\\?\\"), TEXT("\\\\.\\"), TEXT("\\??\\")})
        if (start.starts_with(device) && start != device + BACKSLASH)
            return path.substr(0, 3);
    const bool is_server = start.size() > 2 && start.starts_with(TEXT("\\\\")) && start[2] != '\\';
    return is_server ? path.substr(0, path.find_first_of(SEPARATORS, 3)) : WideText();
}

// The elements behind the root name, with one backslash for each run of separators.
Parts PartsOf(const WideText& path) {
    Parts parts;
    for (const WCHAR unit : WithBackslashes(path.substr(RootName(path).size())))
        if (parts.empty() || (unit == '\\') != (parts.back() == BACKSLASH))
            parts.emplace_back(1, unit);
        else if (unit != '\\')
            parts.back() += unit;
    return parts;
}

bool HasRootDirectory(const WideText& path) {
    return path.find_first_of(SEPARATORS, RootName(path).size()) == RootName(path).size();
}

bool IsAbsolute(const WideText& path) {
    return RootName(path).size() == 2 ? HasRootDirectory(path) : !RootName(path).empty();
}

WideText Parent(WideText path) {
    const std::size_t root = std::min(path.find_first_not_of(SEPARATORS, RootName(path).size()), path.size());
    for (const bool is_separator : {false, true})
        while (path.size() > root && (SEPARATORS.find(path.back()) != WideView::npos) == is_separator)
            path.pop_back();
    return path;
}

WideText Join(const WideText& first, const WideText& second) {
    const WideText root = RootName(second);
    const WideText rest = second.substr(root.size());
    if (IsAbsolute(second) || (!root.empty() && root != RootName(first)))
        return second;
    if (HasRootDirectory(second))
        return RootName(first) + rest;
    const bool is_short_root = first.size() < 3 && first == RootName(first);
    return first + (is_short_root || WithBackslashes(first).ends_with('\\') ? WideText() : BACKSLASH) + rest;
}

// Removes `count` parts wherever `fits` is true for an index, until it is true for none.
template <typename Fits>
void Remove(Parts& parts, std::size_t count, const Fits& fits) {
    for (std::size_t at = 0; at < parts.size(); ++at)
        for (; at < parts.size() && fits(at); at = 0)
            for (std::size_t left = count; left > 0 && at < parts.size(); --left)
                parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(at));
}

WideText Normal(const WideText& path) {
    Parts parts = PartsOf(path);
    const auto is = [&parts](std::size_t at, WideView part) {
        return at < parts.size() && parts[at] == part;
    };
    const auto is_here = [&](std::size_t at) { return is(at, TEXT(".")); };
    const auto goes_back = [&](std::size_t at) {
        return !is(at, BACKSLASH) && !is(at, UP) && is(at + 2, UP);
    };
    const auto is_above_root = [&](std::size_t at) { return at == 1 && is(0, BACKSLASH) && is(1, UP); };
    Remove(parts, 2, is_here);
    Remove(parts, 4, goes_back);
    Remove(parts, 2, is_above_root);
    if (parts.size() > 1 && is(parts.size() - 2, UP))
        parts.pop_back();
    WideText normal = WithBackslashes(RootName(path));
    for (const WideText& part : parts)
        normal += part;
    return normal.empty() && !path.empty() ? WideText(TEXT(".")) : normal;
}

}  // namespace

// The input: a folder, a line feed and a path.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const WideText input(data, data + size);
    const WideText base = input.substr(0, input.find('\n'));
    const WideText path = input.substr(std::min(base.size() + 1, size));
    const WideText normal = NormalPath(path);
    Require(normal == Normal(path));
    // Removing `.` can turn an element into a root name, as in `.\C:.\b`; the rest then has another normal
    // form.
    Require(RootName(normal).size() != RootName(path).size() || NormalPath(normal) == normal);
    Require(IsAbsolutePath(path) == IsAbsolute(path));
    Require(ParentPath(path) == Parent(path));
    Require(JoinPath(base, path) == Join(base, path));
    WideText anchored = path;
    AnchorPath(base, anchored);
    Require(anchored == (path.empty() || IsAbsolute(path) ? path : Normal(Join(base, path))));
    return 0;
}
