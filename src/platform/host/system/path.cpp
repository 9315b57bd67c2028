// Paths by the rules of Windows, and the files of Linux that they stand for: drive C: is the root. Names that
// differ by case are two files here.
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <string_view>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"
#include "platform/host/system/native.h"

namespace {

using Text = std::u16string;
using View = std::u16string_view;

constexpr std::size_t LONGEST_PATH = 32767;
constexpr View DEVICE_PREFIX = u"\\\\.\\";
constexpr std::size_t DEVICE_PREFIX_LENGTH = DEVICE_PREFIX.size();

// The names of devices; those that end in a digit are looked up without it.
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

bool SameName(View left, View right) {
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](WCHAR a, WCHAR b) { return Upper(a) == Upper(b); });
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

// The device that the path's last element names, whatever folder stands before it and whatever follows a
// dot or a colon in it; empty for none.
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
    const auto is_name = [name](View device) { return SameName(name, device); };
    if (std::any_of(DEVICES.begin(), DEVICES.end(), is_name))
        return name;
    const bool has_number = name.size() == 4 && name[3] >= u'1' && name[3] <= u'9';
    const auto is_port = [name](View device) { return SameName(name.substr(0, 3), device); };
    return has_number && std::any_of(NUMBERED_DEVICES.begin(), NUMBERED_DEVICES.end(), is_port) ? name
                                                                                                : View{};
}

// A full path in the making. What stands in the first root_length characters cannot be climbed out of.
struct PathInMaking {
    Text text;
    std::size_t root_length;
    View rest;  // what is still to be taken in
};

Text CurrentDirectory() {
    std::array<char, PATH_MAX> native{};
    if (getcwd(native.data(), native.size()) == nullptr) {
        SetLastError(host::ErrorOf(errno));
        return {};
    }
    Text path = host::WidePath(native.data());
    if (path.empty())
        SetLastError(ERROR_NO_UNICODE_TRANSLATION);
    return path;
}

PathInMaking StartWithPrefix(View path) {
    View rest = path.substr(std::min<std::size_t>(path.size(), DEVICE_PREFIX_LENGTH));
    Text root = {u'\\', u'\\', path[2]};
    if (HasDrive(rest)) {
        root += Text(u"\\") + Text(rest.substr(0, 2));
        rest.remove_prefix(2);
    }
    const std::size_t length = root.size();
    return {std::move(root), length, rest};
}

PathInMaking StartWithServer(View path) {
    const std::size_t server_end = NextSeparator(path, 2);
    const std::size_t share_end = NextSeparator(path, std::min(server_end + 1, path.size()));
    Text root(path.substr(0, share_end));
    std::replace(root.begin(), root.end(), u'/', u'\\');
    return {std::move(root), share_end, path.substr(share_end)};
}

// Drives other than C: have no current directory of their own.
bool StartWithDrive(View path, PathInMaking& start) {
    start = {Text(path.substr(0, 2)), 2, path.substr(2)};
    const bool is_relative = start.rest.empty() || !IsSeparator(start.rest.front());
    if (is_relative && Upper(path[0]) == u'C')
        start.text = CurrentDirectory();
    return !start.text.empty();
}

bool StartPath(View path, PathInMaking& start) {
    if (HasDevicePrefix(path)) {
        start = StartWithPrefix(path);
        return true;
    }
    if (HasServer(path)) {
        start = StartWithServer(path);
        return true;
    }
    if (HasDrive(path))
        return StartWithDrive(path, start);
    start = {IsSeparator(path.front()) ? u"C:" : CurrentDirectory(), 2, path};
    return !start.text.empty();
}

void DropLastElement(PathInMaking& path) {
    const std::size_t separator = path.text.rfind(u'\\');
    path.text.resize(separator == Text::npos ? path.root_length : std::max(separator, path.root_length));
}

// The last element loses its dots and blanks at the end, one in the middle only a single dot.
View Trimmed(View element, bool is_last) {
    if (is_last)
        return element.substr(0, element.find_last_not_of(u" .") + 1);
    if (element.size() > 1 && element.ends_with(u'.') && !element.ends_with(u".."))
        element.remove_suffix(1);
    return element;
}

void TakeElement(PathInMaking& path, View element, bool is_last) {
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

Text FinishPath(PathInMaking path) {
    const bool ends_in_separator = !path.rest.empty() && IsSeparator(path.rest.back());
    for (std::size_t at = 0; at < path.rest.size(); at++) {
        const std::size_t end = NextSeparator(path.rest, at);
        TakeElement(path, path.rest.substr(at, end - at), end == path.rest.size());
        at = end;
    }
    const bool is_bare_root = path.text.ends_with(u':') || path.text.size() == 3;
    if ((ends_in_separator || is_bare_root) && !path.text.ends_with(u'\\'))
        path.text += u'\\';
    return std::move(path.text);
}

// The full path by the rules of Windows, in time linear in its length; empty with the last error set when
// there is none.
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
    PathInMaking start = {};
    return StartPath(path, start) ? FinishPath(std::move(start)) : Text{};
}

bool HasForbiddenCharacter(View path) {
    return std::any_of(
        path.begin(), path.end(),
        [](WCHAR unit) { return unit < u' ' || View(u"*?<>|\":").find(unit) != View::npos; });
}

// The Linux path below a drive's root.
bool FindOnDrive(View full, std::string& native) {
    if (Upper(full[0]) != u'C')
        return host::Fail(ERROR_PATH_NOT_FOUND);
    if (HasForbiddenCharacter(full.substr(2)) || !host::ToUtf8(full.substr(2), native))
        return host::Fail(ERROR_INVALID_NAME);
    std::replace(native.begin(), native.end(), '\\', '/');
    return true;
}

}  // namespace

namespace host {

bool FindNative(LPCWSTR path, std::string& native) {
    if (path == nullptr || *path == u'\0')
        return Fail(ERROR_PATH_NOT_FOUND);
    const Text full = FullPath(path);
    if (full.empty())
        return false;
    View rest = full;
    // As on a system where nobody has turned long paths on.
    if (full.size() >= MAX_PATH && !HasDevicePrefix(path))
        return Fail(ERROR_PATH_NOT_FOUND);
    if (HasDevicePrefix(rest))
        rest.remove_prefix(std::min<std::size_t>(rest.size(), DEVICE_PREFIX_LENGTH));
    else if (HasServer(rest))
        return Fail(ERROR_BAD_NETPATH);
    if (SameName(rest, u"NUL")) {
        native = "/dev/null";
        return true;
    }
    return HasDrive(rest) ? FindOnDrive(rest, native) : Fail(ERROR_FILE_NOT_FOUND);
}

DWORD CopyOut(View text, LPWSTR buffer, DWORD size) {
    if (size <= text.size())
        return static_cast<DWORD>(text.size() + 1);
    *std::copy(text.begin(), text.end(), buffer) = u'\0';
    return static_cast<DWORD>(text.size());
}

std::string NativePath(View path) {
    if (path.starts_with(u"\\\\?\\"))
        path.remove_prefix(DEVICE_PREFIX_LENGTH);
    std::string native;
    if (!HasDrive(path) || Upper(path[0]) != u'C' || path.size() < 3 || !IsSeparator(path[2]) ||
        !ToUtf8(path.substr(2), native))
        return {};
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

Text WidePath(std::string_view native) {
    Text path;
    if (!native.starts_with('/') || !FromUtf8(native, path))
        return {};
    std::replace(path.begin(), path.end(), u'/', u'\\');
    return u"C:" + path;
}

}  // namespace host

DWORD WINAPI GetFullPathNameW(LPCWSTR path, DWORD size, LPWSTR full, LPWSTR* file_part) {
    if (host::CallFails("GetFullPathNameW"))
        return 0;
    const Text text = FullPath(path == nullptr ? View{} : View(path));
    if (text.empty())
        return 0;
    if (file_part != nullptr)
        host::NotImplemented("GetFullPathNameW", "the part of the file");
    return host::CopyOut(text, full, size);
}

DWORD WINAPI GetCurrentDirectoryW(DWORD size, LPWSTR path) {
    if (host::CallFails("GetCurrentDirectoryW"))
        return 0;
    const Text current = CurrentDirectory();
    return current.empty() ? 0 : host::CopyOut(current, path, size);
}

BOOL WINAPI SetCurrentDirectoryW(LPCWSTR path) {
    if (host::CallFails("SetCurrentDirectoryW"))
        return FALSE;
    if (path == nullptr || *path == u'\0')
        return host::Fail(ERROR_INVALID_NAME);
    std::string native;
    if (!host::FindNative(path, native))
        return FALSE;
    struct stat status = {};
    if (stat(native.c_str(), &status) == 0 && !S_ISDIR(status.st_mode))
        return host::Fail(ERROR_DIRECTORY);
    return chdir(native.c_str()) == 0 ? TRUE : host::Fail(host::ErrorOf(errno, native));
}
