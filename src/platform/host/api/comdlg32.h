// The boxes in which the user chooses a file to open or to write (COMDLG32). A box is a window with its own
// message loop and reacts to messages and keys, as the platform's box does.
#pragma once

#include "platform/host/api/base.h"
#include "platform/host/api/user32.h"

using LPOFNHOOKPROC = UINT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

constexpr DWORD FNERR_INVALIDFILENAME = 0x3002;

struct OPENFILENAMEW {
    DWORD lStructSize;
    HWND hwndOwner;
    HINSTANCE hInstance;
    LPCWSTR lpstrFilter;
    LPWSTR lpstrCustomFilter;
    DWORD nMaxCustFilter;
    DWORD nFilterIndex;
    LPWSTR lpstrFile;
    DWORD nMaxFile;
    LPWSTR lpstrFileTitle;
    DWORD nMaxFileTitle;
    LPCWSTR lpstrInitialDir;
    LPCWSTR lpstrTitle;
    DWORD Flags;
    WORD nFileOffset;
    WORD nFileExtension;
    LPCWSTR lpstrDefExt;
    LPARAM lCustData;
    LPOFNHOOKPROC lpfnHook;
    LPCWSTR lpTemplateName;
    void* pvReserved;
    DWORD dwReserved;
    DWORD FlagsEx;
};
static_assert(sizeof(OPENFILENAMEW) == 152);

constexpr DWORD OFN_OVERWRITEPROMPT = 0x00000002;
constexpr DWORD OFN_NOCHANGEDIR = 0x00000008;
constexpr DWORD OFN_PATHMUSTEXIST = 0x00000800;
constexpr DWORD OFN_FILEMUSTEXIST = 0x00001000;
constexpr DWORD OFN_EXPLORER = 0x00080000;

// Both calls store the full path of the chosen file in lpstrFile and return TRUE. They return FALSE if the
// user cancelled (CommDlgExtendedError then returns 0) or the box could not be shown (CommDlgExtendedError
// then returns the error).
BOOL WINAPI GetOpenFileNameW(OPENFILENAMEW* request);
BOOL WINAPI GetSaveFileNameW(OPENFILENAMEW* request);

// The error of the last file box; 0 if the user chose a file or cancelled.
DWORD WINAPI CommDlgExtendedError();
