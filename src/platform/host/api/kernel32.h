// System calls (KERNEL32): text conversion, paths, files, processes, time and the texts of errors. Each call
// follows the platform's contract. The comments here name only limits and differences of the layer.
#pragma once

#include "platform/host/api/base.h"

// --- error codes ---

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD NO_ERROR = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_NOT_SAME_DEVICE = 17;
constexpr DWORD ERROR_WRITE_PROTECT = 19;
constexpr DWORD ERROR_NOT_READY = 21;
constexpr DWORD ERROR_BAD_LENGTH = 24;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_SHARING_VIOLATION = 32;
constexpr DWORD ERROR_BAD_NETPATH = 53;
constexpr DWORD ERROR_NETNAME_DELETED = 64;
constexpr DWORD ERROR_FILE_EXISTS = 80;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_DISK_FULL = 112;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_INVALID_NAME = 123;
constexpr DWORD ERROR_DIR_NOT_EMPTY = 145;
constexpr DWORD ERROR_BAD_PATHNAME = 161;
constexpr DWORD ERROR_ALREADY_EXISTS = 183;
constexpr DWORD ERROR_BAD_EXE_FORMAT = 193;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_NO_DATA = 232;
constexpr DWORD ERROR_DIRECTORY = 267;
constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
constexpr DWORD ERROR_INVALID_FLAGS = 1004;
constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;
constexpr DWORD ERROR_IO_DEVICE = 1117;
constexpr DWORD ERROR_INVALID_WINDOW_HANDLE = 1400;
constexpr DWORD ERROR_CLASS_ALREADY_EXISTS = 1410;
constexpr DWORD ERROR_CONTROL_ID_NOT_FOUND = 1421;
constexpr DWORD ERROR_NO_SYSTEM_RESOURCES = 1450;
constexpr DWORD ERROR_CANT_RESOLVE_FILENAME = 1921;

DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD code);

// --- text ---

constexpr UINT CP_ACP = 0;  // code page 1252
constexpr UINT CP_UTF8 = 65001;
constexpr DWORD MB_ERR_INVALID_CHARS = 0x8;
constexpr DWORD WC_ERR_INVALID_CHARS = 0x80;

int WINAPI MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR bytes, int byte_count, LPWSTR wide,
                               int wide_size);

// Converts to UTF-8 only.
int WINAPI WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR wide, int wide_count, LPSTR bytes,
                               int byte_size, LPCSTR default_char, LPBOOL used_default_char);

// --- paths and the module ---

DWORD WINAPI GetFullPathNameW(LPCWSTR path, DWORD size, LPWSTR full, LPWSTR* file_part);
DWORD WINAPI GetCurrentDirectoryW(DWORD size, LPWSTR path);
BOOL WINAPI SetCurrentDirectoryW(LPCWSTR path);

// `module` and `name` must be null, which means the program itself.
DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size);
HMODULE WINAPI GetModuleHandleW(LPCWSTR name);

// --- the search for DLLs; these calls have no effect, because there are no DLLs ---

constexpr DWORD LOAD_LIBRARY_SEARCH_USER_DIRS = 0x400;
constexpr DWORD LOAD_LIBRARY_SEARCH_SYSTEM32 = 0x800;

// `folder` must be empty; `folders` must be the two constants together.
BOOL WINAPI SetDllDirectoryW(LPCWSTR folder);
BOOL WINAPI SetDefaultDllDirectories(DWORD folders);

// --- files ---

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;
static_assert(sizeof(SECURITY_ATTRIBUTES) == 24);

union LARGE_INTEGER {
    LONGLONG QuadPart;
};
using PLARGE_INTEGER = LARGE_INTEGER*;
static_assert(sizeof(LARGE_INTEGER) == 8);

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};
static_assert(sizeof(FILETIME) == 8);

struct BY_HANDLE_FILE_INFORMATION {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD dwVolumeSerialNumber;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD nNumberOfLinks;
    DWORD nFileIndexHigh;
    DWORD nFileIndexLow;
};
using LPBY_HANDLE_FILE_INFORMATION = BY_HANDLE_FILE_INFORMATION*;
static_assert(sizeof(BY_HANDLE_FILE_INFORMATION) == 52);

struct OVERLAPPED;  // not supported: every pointer to one must be null
using LPOVERLAPPED = OVERLAPPED*;

constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD FILE_READ_DATA = 0x1;
constexpr DWORD FILE_WRITE_DATA = 0x2;
constexpr DWORD FILE_READ_ATTRIBUTES = 0x80;
constexpr DWORD SYNCHRONIZE = 0x00100000;

constexpr DWORD FILE_SHARE_READ = 0x1;
constexpr DWORD FILE_SHARE_WRITE = 0x2;
constexpr DWORD FILE_SHARE_DELETE = 0x4;

constexpr DWORD CREATE_NEW = 1;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD TRUNCATE_EXISTING = 5;

constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD FILE_FLAG_SEQUENTIAL_SCAN = 0x08000000;
constexpr DWORD FILE_FLAG_BACKUP_SEMANTICS = 0x02000000;

constexpr DWORD FILE_BEGIN = 0;

constexpr DWORD FILE_TYPE_UNKNOWN = 0;
constexpr DWORD FILE_TYPE_DISK = 1;
constexpr DWORD FILE_TYPE_CHAR = 2;
constexpr DWORD FILE_TYPE_PIPE = 3;

constexpr DWORD MOVEFILE_REPLACE_EXISTING = 0x1;
constexpr DWORD MOVEFILE_WRITE_THROUGH = 0x8;

constexpr DWORD STD_INPUT_HANDLE = static_cast<DWORD>(-10);
constexpr DWORD STD_OUTPUT_HANDLE = static_cast<DWORD>(-11);
constexpr DWORD STD_ERROR_HANDLE = static_cast<DWORD>(-12);

// Share modes apply to the handles of this process and to those that its running children inherited. Symbolic
// links are followed. Templates, overlapped input or output and security descriptors are not supported.
HANDLE WINAPI CreateFileW(LPCWSTR path, DWORD access, DWORD share_mode, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD flags, HANDLE template_file);
BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD size, LPDWORD read, LPOVERLAPPED overlapped);
BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD size, LPDWORD written, LPOVERLAPPED overlapped);
BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER position, DWORD method);
BOOL WINAPI GetFileSizeEx(HANDLE file, PLARGE_INTEGER size);
BOOL WINAPI FlushFileBuffers(HANDLE file);
// Sets only dwFileAttributes: FILE_ATTRIBUTE_DIRECTORY for a folder, FILE_ATTRIBUTE_ARCHIVE for a file.
BOOL WINAPI GetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information);
DWORD WINAPI GetFileType(HANDLE file);
// Closes an open handle even when a test makes the call fail.
BOOL WINAPI CloseHandle(HANDLE handle);
// Moves within one file system only.
BOOL WINAPI MoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags);
BOOL WINAPI DeleteFileW(LPCWSTR path);
// The three streams of this process. Their handles are not counted as open; CloseHandle returns TRUE for them
// and has no effect.
HANDLE WINAPI GetStdHandle(DWORD which);

// --- processes ---

using LPPROC_THREAD_ATTRIBUTE_LIST = struct PROC_THREAD_ATTRIBUTE_LIST*;

struct STARTUPINFOW {
    DWORD cb;
    LPWSTR lpReserved;
    LPWSTR lpDesktop;
    LPWSTR lpTitle;
    DWORD dwX;
    DWORD dwY;
    DWORD dwXSize;
    DWORD dwYSize;
    DWORD dwXCountChars;
    DWORD dwYCountChars;
    DWORD dwFillAttribute;
    DWORD dwFlags;
    WORD wShowWindow;
    WORD cbReserved2;
    BYTE* lpReserved2;
    HANDLE hStdInput;
    HANDLE hStdOutput;
    HANDLE hStdError;
};
using LPSTARTUPINFOW = STARTUPINFOW*;
static_assert(sizeof(STARTUPINFOW) == 104);

struct STARTUPINFOEXW {
    STARTUPINFOW StartupInfo;
    LPPROC_THREAD_ATTRIBUTE_LIST lpAttributeList;
};
static_assert(sizeof(STARTUPINFOEXW) == 112);

struct PROCESS_INFORMATION {
    HANDLE hProcess;
    HANDLE hThread;
    DWORD dwProcessId;
    DWORD dwThreadId;
};
using LPPROCESS_INFORMATION = PROCESS_INFORMATION*;
static_assert(sizeof(PROCESS_INFORMATION) == 24);

constexpr DWORD_PTR PROC_THREAD_ATTRIBUTE_HANDLE_LIST = 0x20002;
constexpr DWORD STARTF_USESTDHANDLES = 0x100;
constexpr DWORD CREATE_NO_WINDOW = 0x08000000;
constexpr DWORD EXTENDED_STARTUPINFO_PRESENT = 0x00080000;

constexpr DWORD INFINITE = 0xFFFFFFFF;
constexpr DWORD WAIT_OBJECT_0 = 0;
constexpr DWORD WAIT_TIMEOUT = 258;
constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;
constexpr DWORD STILL_ACTIVE = 259;

BOOL WINAPI InitializeProcThreadAttributeList(LPPROC_THREAD_ATTRIBUTE_LIST list, DWORD count, DWORD flags,
                                              SIZE_T* size);
// Supports only PROC_THREAD_ATTRIBUTE_HANDLE_LIST. The caller must keep the array of handles until the
// process is started.
BOOL WINAPI UpdateProcThreadAttribute(LPPROC_THREAD_ATTRIBUTE_LIST list, DWORD flags, DWORD_PTR attribute,
                                      PVOID value, SIZE_T size, PVOID previous_value, SIZE_T* return_size);
void WINAPI DeleteProcThreadAttributeList(LPPROC_THREAD_ATTRIBUTE_LIST list);

// The child gets each stream of STARTF_USESTDHANDLES that is inheritable and, if there is a list of handles,
// in the list. Without a list it also inherits every other inheritable handle. The application name is
// required. The environment is always the parent's. The thread handle can only be closed.
BOOL WINAPI CreateProcessW(LPCWSTR application, LPWSTR command_line, LPSECURITY_ATTRIBUTES process_security,
                           LPSECURITY_ATTRIBUTES thread_security, BOOL inherit_handles, DWORD flags,
                           LPVOID environment, LPCWSTR current_directory, LPSTARTUPINFOW startup,
                           LPPROCESS_INFORMATION information);
// Waits for processes only. The time limit is in real time even with a test clock.
DWORD WINAPI WaitForSingleObject(HANDLE handle, DWORD milliseconds);
BOOL WINAPI GetExitCodeProcess(HANDLE process, LPDWORD exit_code);
DWORD WINAPI GetCurrentProcessId();

// A code above 255 must be an exception code that corresponds to a signal. The process then ends by that
// signal.
[[noreturn]] void WINAPI ExitProcess(UINT exit_code);

// --- time ---

ULONGLONG WINAPI GetTickCount64();

// With a test clock, advances the clock instead of waiting.
void WINAPI Sleep(DWORD milliseconds);

// --- the texts of errors ---

constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

// Supports only these three flags together. The texts are those of an English Windows.
DWORD WINAPI FormatMessageW(DWORD flags, LPCVOID source, DWORD code, DWORD language, LPWSTR buffer,
                            DWORD size, void* arguments);
HLOCAL WINAPI LocalFree(HLOCAL memory);

// --- the entry point of a windowed program ---

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous_instance, LPWSTR command_line, int show_command);
