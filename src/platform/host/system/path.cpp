// Converts between Windows paths and Linux paths: drive C: is the root folder of Linux. Names that differ
// only in case are different files here.
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

using Text = std::u16string;
using View = std::u16string_view;

constexpr std::size_t LONGEST_PATH = 32767;
constexpr View DEVICE_PREFIX = u"\\\\.\\";
constexpr std::size_t DEVICE_PREFIX_LENGTH = DEVICE_PREFIX.size();

// The names of devices. A name of the second list must be followed by a digit from 1 to 9.
constexpr auto DEVICES = std::to_array<View>({u"NUL", u"CON", u"AUX", u"PRN", u"CONIN$", u"CONOUT$"});
constexpr auto NUMBERED_DEVICES = std::to_array<View>({u"COM", u"LPT"});

bool IsSeparator(WCHAR unit) {
    return unit == u'\\' || unit == u'/';
}

bool IsLetter(WCHAR unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

WCHAR Upper(WCHAR unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<WCHAR>(unit - u'a' + u'A') : unit;
}

bool EqualIgnoringCase(View left, View right) {
    const auto equal = [](WCHAR a, WCHAR b) { return Upper(a) == Upper(b); };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), equal);
}

bool HasDrive(View path) {
    return path.size() >= 2 && IsLetter(path[0]) && path[1] == u':';
}

bool HasDevicePrefix(View path) {
    return path.size() >= 3 && IsSeparator(path[0]) && IsSeparator(path[1]) &&
           (path[2] == u'.' || path[2] == u'?') && (path.size() == 3 || IsSeparator(path[3]));
}

bool HasServer(View path) {
    return path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]);
}

std::size_t NextSeparator(View path, std::size_t from) {
    while (from < path.size() && !IsSeparator(path[from]))
        from++;
    return from;
}

// The device that the last element of the path names; empty if it names none. Ignores the folders before this
// element, and its part after a dot or a colon.
View DeviceIn(View path) {
    if (HasServer(path))
        return {};
    std::size_t start = path.size();
    while (start > 0 && !IsSeparator(path[start - 1]))
        start--;
    View name = path.substr(start);
    if (start == 0 && HasDrive(path))
        name.remove_prefix(2);
    name = name.substr(0, name.find_first_of(u".:"));
    while (name.ends_with(u' '))
        name.remove_suffix(1);
    const auto is_name = [name](View device) { return EqualIgnoringCase(name, device); };
    if (std::any_of(DEVICES.begin(), DEVICES.end(), is_name))
        return name;
    const bool has_number = name.size() == 4 && name[3] >= u'1' && name[3] <= u'9';
    const auto is_port = [name](View device) { return EqualIgnoringCase(name.substr(0, 3), device); };
    return has_number && std::any_of(NUMBERED_DEVICES.begin(), NUMBERED_DEVICES.end(), is_port) ? name
                                                                                                : View{};
}

// A full path that is being built.
struct PartialPath {
    Text text;
    std::size_t root_length;  // characters that ".." does not remove
    View rest;                // not yet added
};

Text CurrentDirectory() {
    std::array<char, PATH_MAX> native{};
    if (getcwd(native.data(), native.size()) == nullptr) {
        SetLastError(ErrorOf(errno));
        return {};
    }
    Text path = FromNativePath(native.data());
    if (path.empty())
        SetLastError(ERROR_NO_UNICODE_TRANSLATION);
    return path;
}

PartialPath StartWithPrefix(View path) {
    View rest = path.substr(std::min<std::size_t>(path.size(), DEVICE_PREFIX_LENGTH));
    Text root = {u'\\', u'\\', path[2]};
    if (HasDrive(rest)) {
        root += Text(u"\\") + Text(rest.substr(0, 2));
        rest.remove_prefix(2);
    }
    const std::size_t length = root.size();
    return {std::move(root), length, rest};
}

PartialPath StartWithServer(View path) {
    const std::size_t server_end = NextSeparator(path, 2);
    const std::size_t share_end = NextSeparator(path, std::min(server_end + 1, path.size()));
    Text root(path.substr(0, share_end));
    std::replace(root.begin(), root.end(), u'/', u'\\');
    return {std::move(root), share_end, path.substr(share_end)};
}

// Drives other than C: have their root as the current directory.
PartialPath StartWithDrive(View path) {
    const View rest = path.substr(2);
    const bool is_relative = rest.empty() || !IsSeparator(rest.front());
    return {is_relative && Upper(path[0]) == u'C' ? CurrentDirectory() : Text(path.substr(0, 2)), 2, rest};
}

// The text is empty if the current directory is needed and cannot be determined.
PartialPath StartPath(View path) {
    if (HasDevicePrefix(path))
        return StartWithPrefix(path);
    if (HasServer(path))
        return StartWithServer(path);
    if (HasDrive(path))
        return StartWithDrive(path);
    return {IsSeparator(path.front()) ? u"C:" : CurrentDirectory(), 2, path};
}

void DropLastElement(PartialPath& path) {
    const std::size_t separator = path.text.rfind(u'\\');
    path.text.resize(separator == Text::npos ? path.root_length : std::max(separator, path.root_length));
}

// Removes all dots and blanks at the end of the last element, and a single dot at the end of an earlier one.
View Trimmed(View element, bool is_last) {
    if (is_last)
        return element.substr(0, element.find_last_not_of(u" .") + 1);
    if (element.size() > 1 && element.ends_with(u'.') && !element.ends_with(u".."))
        element.remove_suffix(1);
    return element;
}

void AddElement(PartialPath& path, View element, bool is_last) {
    if (element.empty() || element == u".")
        return;
    if (element == u"..") {
        DropLastElement(path);
        return;
    }
    if (!path.text.ends_with(u'\\'))
        path.text += u'\\';
    path.text += Trimmed(element, is_last);
}

Text FinishPath(PartialPath path) {
    const bool ends_in_separator = !path.rest.empty() && IsSeparator(path.rest.back());
    for (std::size_t at = 0; at < path.rest.size(); at++) {
        const std::size_t end = NextSeparator(path.rest, at);
        AddElement(path, path.rest.substr(at, end - at), end == path.rest.size());
        at = end;
    }
    const bool is_bare_root = path.text.ends_with(u':') || path.text.size() == 3;
    if ((ends_in_separator || is_bare_root) && !path.text.ends_with(u'\\'))
        path.text += u'\\';
    return std::move(path.text);
}

// Makes the full path, in time linear in its length. Empty, with the last error set, if that fails.
Text FullPath(View path) {
    if (path.find_first_not_of(u' ') == View::npos) {
        SetLastError(ERROR_INVALID_NAME);
        return {};
    }
    if (path.size() > LONGEST_PATH) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return {};
    }
    if (const View device = DeviceIn(path); !device.empty())
        return Text(DEVICE_PREFIX) + Text(device);
    PartialPath start = StartPath(path);
    return start.text.empty() ? Text{} : FinishPath(std::move(start));
}

bool HasForbiddenCharacter(View path) {
    const auto is_forbidden = [](WCHAR unit) {
        return unit < u' ' || View(u"*?<>|\":").find(unit) != View::npos;
    };
    return std::any_of(path.begin(), path.end(), is_forbidden);
}

std::nullopt_t NoPath(DWORD error) {
    SetLastError(error);
    return std::nullopt;
}

// The Linux path of a full path that starts with a drive.
std::optional<std::string> NativePathOnDrive(View full) {
    if (Upper(full[0]) != u'C')
        return NoPath(ERROR_PATH_NOT_FOUND);
    const View path = full.substr(2);
    std::optional<std::string> native = HasForbiddenCharacter(path) ? std::nullopt : ToUtf8(path);
    if (!native)
        return NoPath(ERROR_INVALID_NAME);
    std::replace(native->begin(), native->end(), '\\', '/');
    return native;
}

}  // namespace

std::optional<std::string> ToNativePath(LPCWSTR path) {
    if (path == nullptr || *path == u'\0')
        return NoPath(ERROR_PATH_NOT_FOUND);
    const Text full = FullPath(path);
    if (full.empty())
        return std::nullopt;
    View rest = full;
    // As on Windows by default: long paths are not supported.
    if (full.size() >= MAX_PATH && !HasDevicePrefix(path))
        return NoPath(ERROR_PATH_NOT_FOUND);
    if (HasDevicePrefix(rest))
        rest.remove_prefix(std::min<std::size_t>(rest.size(), DEVICE_PREFIX_LENGTH));
    else if (HasServer(rest))
        return NoPath(ERROR_BAD_NETPATH);
    if (EqualIgnoringCase(rest, u"NUL"))
        return "/dev/null";
    return HasDrive(rest) ? NativePathOnDrive(rest) : NoPath(ERROR_FILE_NOT_FOUND);
}

DWORD CopyIfItFits(View text, LPWSTR buffer, DWORD size) {
    if (size <= text.size())
        return static_cast<DWORD>(text.size() + 1);
    *std::copy(text.begin(), text.end(), buffer) = u'\0';
    return static_cast<DWORD>(text.size());
}

Text FromNativePath(std::string_view native) {
    std::optional<Text> path = native.starts_with('/') ? FromUtf8(native) : std::nullopt;
    if (!path)
        return {};
    std::replace(path->begin(), path->end(), u'/', u'\\');
    return u"C:" + *path;
}

}  // namespace host

DWORD WINAPI GetFullPathNameW(LPCWSTR path, DWORD size, LPWSTR full, LPWSTR* file_part) {
    if (host::CallFails("GetFullPathNameW"))
        return 0;
    const std::u16string text = host::FullPath(path == nullptr ? u"" : path);
    if (text.empty())
        return 0;
    if (file_part != nullptr)
        host::NotImplemented("GetFullPathNameW", "the position of the file name");
    return host::CopyIfItFits(text, full, size);
}

DWORD WINAPI GetCurrentDirectoryW(DWORD size, LPWSTR path) {
    if (host::CallFails("GetCurrentDirectoryW"))
        return 0;
    const std::u16string current = host::CurrentDirectory();
    return current.empty() ? 0 : host::CopyIfItFits(current, path, size);
}

BOOL WINAPI SetCurrentDirectoryW(LPCWSTR path) {
    if (host::CallFails("SetCurrentDirectoryW"))
        return FALSE;
    if (path == nullptr || *path == u'\0')
        return host::Fail(ERROR_INVALID_NAME);
    const std::optional<std::string> native = host::ToNativePath(path);
    if (!native)
        return FALSE;
    struct stat status = {};
    if (stat(native->c_str(), &status) == 0 && !S_ISDIR(status.st_mode))
        return host::Fail(ERROR_DIRECTORY);
    return chdir(native->c_str()) == 0 ? TRUE : host::Fail(host::ErrorOf(errno, *native));
}
