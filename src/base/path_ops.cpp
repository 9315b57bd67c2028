#include "base/path_ops.h"

#include <algorithm>

namespace {

constexpr WCHAR BACKSLASH = TEXT('\\');
constexpr WideView HERE = TEXT(".");
constexpr WideView UP = TEXT("..");

bool IsSeparator(WCHAR character) {
    return character == TEXT('\\') || character == TEXT('/');
}

bool IsDriveLetter(WCHAR character) {
    const WCHAR lower = static_cast<WCHAR>(character | 0x20);
    return lower >= TEXT('a') && lower <= TEXT('z');
}

// Returns whether the path, which starts with a separator, has the prefix of a device path: `\\?\`, `\\.\`
// or `\??\`.
bool HasDevicePrefix(WideView path) {
    if (path.size() < 4 || !IsSeparator(path[3]) || (path.size() > 4 && IsSeparator(path[4])))
        return false;
    if (IsSeparator(path[1]))
        return path[2] == TEXT('?') || path[2] == TEXT('.');
    return path[1] == TEXT('?') && path[2] == TEXT('?');
}

std::size_t RootNameEnd(WideView path) {
    if (path.size() < 2)
        return 0;
    if (IsDriveLetter(path[0]) && path[1] == TEXT(':'))
        return 2;
    if (!IsSeparator(path[0]))
        return 0;
    if (HasDevicePrefix(path))
        return 3;
    if (path.size() >= 3 && IsSeparator(path[1]) && !IsSeparator(path[2]))
        return static_cast<std::size_t>(std::find_if(path.begin() + 3, path.end(), IsSeparator) -
                                        path.begin());
    return 0;
}

std::size_t RelativeStart(WideView path) {
    const auto after_name = path.begin() + static_cast<std::ptrdiff_t>(RootNameEnd(path));
    return static_cast<std::size_t>(std::find_if_not(after_name, path.end(), IsSeparator) - path.begin());
}

bool HasRootDirectory(WideView path) {
    const std::size_t root_end = RootNameEnd(path);
    return root_end < path.size() && IsSeparator(path[root_end]);
}

// Returns the index at which the last element starts. The text must end in a separator; the result is at
// least `root_end`, the end of the root.
std::size_t LastNameStart(WideView text, std::size_t root_end) {
    std::size_t at = text.size() - 1;
    while (at > root_end && text[at - 1] != BACKSLASH)
        --at;
    return at;
}

}  // namespace

bool IsAbsolutePath(WideView path) {
    const std::size_t root_end = RootNameEnd(path);
    if (root_end == 2)  // a drive
        return HasRootDirectory(path);
    return root_end > 0;
}

WideText ParentPath(WideView path) {
    const std::size_t start = RelativeStart(path);
    std::size_t end = path.size();
    while (end > start && !IsSeparator(path[end - 1]))
        --end;
    while (end > start && IsSeparator(path[end - 1]))
        --end;
    return WideText(path.substr(0, end));
}

WideText JoinPath(WideView base, WideView path) {
    const WideView base_root = base.substr(0, RootNameEnd(base));
    const WideView path_root = path.substr(0, RootNameEnd(path));
    if (IsAbsolutePath(path) || (!path_root.empty() && path_root != base_root))
        return WideText(path);
    const WideView after_root = path.substr(path_root.size());
    WideText joined(HasRootDirectory(path) ? base_root : base);
    const bool needs_separator = !HasRootDirectory(path) && !base.empty() && !IsSeparator(base.back()) &&
                                 !(base_root.size() == base.size() && base.size() < 3);
    if (needs_separator)
        joined += BACKSLASH;
    joined += after_root;
    return joined;
}

WideText NormalPath(WideView path) {
    if (path.empty())
        return {};
    WideText text(path);  // the normal form is never longer
    std::size_t used = RootNameEnd(path);
    std::replace(text.data(), text.data() + used, WCHAR{TEXT('/')}, BACKSLASH);
    const bool has_root_directory = HasRootDirectory(path);
    if (has_root_directory)
        text[used++] = BACKSLASH;
    const std::size_t root_end = used;
    std::size_t names = 0;  // number of elements at the end that a `..` can remove
    for (std::size_t at = RelativeStart(path); at < path.size();) {
        const std::size_t start = used;
        while (at < path.size() && !IsSeparator(path[at]))
            text[used++] = path[at++];
        const WideView element = WideView(text).substr(start, used - start);
        const bool goes_up = element == UP;
        if (goes_up && names > 0) {
            used = LastNameStart(WideView(text).substr(0, start), root_end);
            --names;
        } else if (element == HERE || (goes_up && has_root_directory)) {
            used = start;
        } else {
            names += goes_up ? 0 : 1;
            if (at < path.size())
                text[used++] = BACKSLASH;
        }
        while (at < path.size() && IsSeparator(path[at]))
            ++at;
    }
    const bool ends_in_dots = names == 0 && used > root_end && text[used - 1] == BACKSLASH;
    text.resize(ends_in_dots ? used - 1 : used);
    return text.empty() ? WideText(HERE) : text;
}

void AnchorPath(WideView base, WideText& path) {
    if (!path.empty() && !IsAbsolutePath(path))
        path = NormalPath(JoinPath(base, path));
}
