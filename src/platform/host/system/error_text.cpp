// The English Windows texts of the errors that the layer reports or that tests use.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks/call_hooks.h"

namespace host {
namespace {

struct ErrorText {
    DWORD code;
    std::u16string_view text;
};

constexpr auto TEXTS = std::to_array<ErrorText>({
    {ERROR_SUCCESS, u"The operation completed successfully."},
    {ERROR_FILE_NOT_FOUND, u"The system cannot find the file specified."},
    {ERROR_PATH_NOT_FOUND, u"The system cannot find the path specified."},
    {ERROR_TOO_MANY_OPEN_FILES, u"The system cannot open the file."},
    {ERROR_ACCESS_DENIED, u"Access is denied."},
    {ERROR_INVALID_HANDLE, u"The handle is invalid."},
    {ERROR_NOT_ENOUGH_MEMORY, u"Not enough memory resources are available to process this command."},
    {ERROR_NOT_SAME_DEVICE, u"The system cannot move the file to a different disk drive."},
    {ERROR_WRITE_PROTECT, u"The media is write protected."},
    {ERROR_NOT_READY, u"The device is not ready."},
    {ERROR_BAD_LENGTH, u"The program issued a command but the command length is incorrect."},
    {ERROR_GEN_FAILURE, u"A device attached to the system is not functioning."},
    {ERROR_SHARING_VIOLATION,
     u"The process cannot access the file because it is being used by another process."},
    {ERROR_BAD_NETPATH, u"The network path was not found."},
    {ERROR_NETNAME_DELETED, u"The specified network name is no longer available."},
    {ERROR_FILE_EXISTS, u"The file exists."},
    {ERROR_INVALID_PARAMETER, u"The parameter is incorrect."},
    {ERROR_DISK_FULL, u"There is not enough space on the disk."},
    {ERROR_INSUFFICIENT_BUFFER, u"The data area passed to a system call is too small."},
    {ERROR_INVALID_NAME, u"The filename, directory name, or volume label syntax is incorrect."},
    {ERROR_DIR_NOT_EMPTY, u"The directory is not empty."},
    {ERROR_BAD_PATHNAME, u"The specified path is invalid."},
    {ERROR_ALREADY_EXISTS, u"Cannot create a file when that file already exists."},
    {ERROR_BAD_EXE_FORMAT, u"%1 is not a valid Win32 application."},
    {ERROR_FILENAME_EXCED_RANGE, u"The filename or extension is too long."},
    {ERROR_NO_DATA, u"The pipe is being closed."},
    {ERROR_DIRECTORY, u"The directory name is invalid."},
    {ERROR_INVALID_FLAGS, u"Invalid flags."},
    {ERROR_NO_UNICODE_TRANSLATION,
     u"No mapping for the Unicode character exists in the target multi-byte code page."},
    {ERROR_IO_DEVICE, u"The request could not be performed because of an I/O device error."},
    {ERROR_INVALID_WINDOW_HANDLE, u"Invalid window handle."},
    {ERROR_CLASS_ALREADY_EXISTS, u"Class already exists."},
    {ERROR_CONTROL_ID_NOT_FOUND, u"Control ID not found."},
    {ERROR_NO_SYSTEM_RESOURCES, u"Insufficient system resources exist to complete the requested service."},
    {ERROR_CANT_RESOLVE_FILENAME, u"The name of the file cannot be resolved by the system."},
});

}  // namespace
}  // namespace host

DWORD WINAPI FormatMessageW(DWORD flags, LPCVOID source, DWORD code, DWORD language, LPWSTR buffer,
                            DWORD size, void* arguments) {
    if (host::CallFails("FormatMessageW"))
        return 0;
    constexpr DWORD FLAGS =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    if (flags != FLAGS || source != nullptr || language != 0 || size != 0 || arguments != nullptr)
        host::NotImplemented("FormatMessageW", "anything but a system text in an allocated buffer");
    const auto* const found =
        std::find_if(host::TEXTS.begin(), host::TEXTS.end(),
                     [code](const host::ErrorText& entry) { return entry.code == code; });
    if (found == host::TEXTS.end()) {
        SetLastError(ERROR_MR_MID_NOT_FOUND);
        return 0;
    }
    constexpr std::u16string_view LINE_END = u"\r\n";
    const std::size_t length = found->text.size() + LINE_END.size();
    auto* const text = static_cast<WCHAR*>(std::malloc((length + 1) * sizeof(WCHAR)));
    if (text == nullptr) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    WCHAR* const end = std::copy(found->text.begin(), found->text.end(), text);
    *std::copy(LINE_END.begin(), LINE_END.end(), end) = u'\0';
    // With FORMAT_MESSAGE_ALLOCATE_BUFFER this argument is the address of the caller's pointer.
    *reinterpret_cast<LPWSTR*>(buffer) = text;
    return static_cast<DWORD>(length);
}

HLOCAL WINAPI LocalFree(HLOCAL memory) {
    std::free(memory);
    return nullptr;
}
