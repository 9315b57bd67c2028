// Windows paths as text: where the root ends, and the one pass that builds a normal form.
#include "base/path_ops.h"

#include <algorithm>

namespace {

constexpr WCHAR BACKSLASH = 0x5C;

bool IsSeparator(WCHAR character) {
    return character == TEXT('\\') || character == TEXT('/');
}

bool IsDriveLetter(WCHAR character) {
    const WCHAR lower = static_cast<WCHAR>(character | 0x20);
    return lower >= TEXT('a') && lower <= TEXT('z');
}

// `\\?\`, `\\.\` and `\??\`, the forms that name devices.
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

// The normal form as it grows, element by element.
struct Normalizer {
    WideText text;
    std::size_t root_end = 0;  // where the relative part starts
    bool has_root_directory = false;
    std::size_t names = 0;  // elements at the end that a `..` can take away

    void TakeLastName() {
        text.pop_back();
        const std::size_t separator = text.find_last_of(BACKSLASH);
        text.resize(separator == WideText::npos ? root_end : separator + 1);
        --names;
    }

    void Add(WideView element, bool separator_follows) {
        if (element == TEXT("."))
            return;
        if (element == TEXT("..")) {
            if (names > 0)
                return TakeLastName();
            if (has_root_directory)
                return;
        } else {
            ++names;
        }
        text += element;
        if (separator_follows)
            text += BACKSLASH;
    }

    bool EndsInDots() const {
        return names == 0 && text.size() > root_end && text.back() == BACKSLASH;
    }
};

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
    Normalizer normal;
    normal.text.reserve(path.size());
    normal.text = path.substr(0, RootNameEnd(path));
    std::replace(normal.text.begin(), normal.text.end(), WCHAR{TEXT('/')}, BACKSLASH);
    normal.has_root_directory = HasRootDirectory(path);
    if (normal.has_root_directory)
        normal.text += BACKSLASH;
    normal.root_end = normal.text.size();
    for (auto at = path.begin() + static_cast<std::ptrdiff_t>(RelativeStart(path)); at != path.end();) {
        const auto end = std::find_if(at, path.end(), IsSeparator);
        normal.Add(WideView(at, end), end != path.end());
        at = std::find_if_not(end, path.end(), IsSeparator);
    }
    if (normal.EndsInDots())
        normal.text.pop_back();
    return normal.text.empty() ? WideText(TEXT(".")) : normal.text;
}

void AnchorPath(WideView base, WideText& field) {
    if (!field.empty() && !IsAbsolutePath(field))
        field = NormalPath(JoinPath(base, field));
}
