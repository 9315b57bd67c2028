// The types and values that all headers of this folder share.
#pragma once

#include <cstddef>
#include <cstdint>

using WCHAR = char16_t;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using BOOL = int;
using SHORT = std::int16_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using UINT_PTR = std::uintptr_t;
using INT_PTR = std::intptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using ATOM = WORD;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPVOID = void*;
using PVOID = void*;
using LPCVOID = const void*;
using LPBOOL = BOOL*;
using LPDWORD = DWORD*;

using HANDLE = void*;
using HLOCAL = void*;
using HGDIOBJ = void*;
using HWND = struct WindowTag*;
using HMENU = struct MenuTag*;
using HINSTANCE = struct InstanceTag*;
using HMODULE = HINSTANCE;
using HICON = struct IconTag*;
using HCURSOR = HICON;
using HBRUSH = struct BrushTag*;
using HFONT = struct FontTag*;
using HDC = struct DeviceContextTag*;
using HRGN = struct RegionTag*;
using HDWP = void*;

#define WINAPI
#define CALLBACK
#define TRUE 1
#define FALSE 0
#define MAX_PATH 260

// TEXT expands its argument first, as the platform's macro does.
#define LAYER_WIDE_LITERAL(quote) u##quote
#define TEXT(quote) LAYER_WIDE_LITERAL(quote)

constexpr WORD LOWORD(std::uintptr_t value) {
    return static_cast<WORD>(value & 0xFFFF);
}
constexpr WORD HIWORD(std::uintptr_t value) {
    return static_cast<WORD>((value >> 16) & 0xFFFF);
}
constexpr WORD LOWORD(std::intptr_t value) {
    return LOWORD(static_cast<std::uintptr_t>(value));
}
constexpr WORD HIWORD(std::intptr_t value) {
    return HIWORD(static_cast<std::uintptr_t>(value));
}
constexpr bool IS_HIGH_SURROGATE(WCHAR unit) {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool IS_LOW_SURROGATE(WCHAR unit) {
    return (unit & 0xFC00) == 0xDC00;
}
// Like the platform's macros, these functions take integers of any type and use their low words.
template <typename Low, typename High>
constexpr LONG MAKELONG(Low low, High high) {
    return static_cast<LONG>((static_cast<DWORD>(low) & 0xFFFFU) | (static_cast<DWORD>(high) << 16));
}
template <typename Low, typename High>
constexpr LPARAM MAKELPARAM(Low low, High high) {
    return static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}
template <typename Low, typename High>
constexpr WPARAM MAKEWPARAM(Low low, High high) {
    return static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}
template <typename Low, typename High>
constexpr LRESULT MAKELRESULT(Low low, High high) {
    return static_cast<LRESULT>(static_cast<DWORD>(MAKELONG(low, high)));
}

struct POINT {
    LONG x;
    LONG y;
};
struct SIZE {
    LONG cx;
    LONG cy;
};
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)))
