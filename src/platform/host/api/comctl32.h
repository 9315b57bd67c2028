// The common controls that the form uses (COMCTL32): the tab control and the list view in report mode, their
// records, messages and notifications.
#pragma once

#include "platform/host/api/base.h"
#include "platform/host/api/user32.h"

// --- start-up ---

struct INITCOMMONCONTROLSEX {
    DWORD dwSize;
    DWORD dwICC;
};

constexpr DWORD ICC_LISTVIEW_CLASSES = 0x0001;
constexpr DWORD ICC_TAB_CLASSES = 0x0008;

#define WC_TABCONTROLW TEXT("SysTabControl32")
#define WC_LISTVIEWW TEXT("SysListView32")

// Has no effect, because the classes always exist. Returns FALSE, with the last error set, only when a test
// makes the call fail.
BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* classes);

// --- the tab control ---

struct TCITEMW {
    UINT mask;
    DWORD dwState;
    DWORD dwStateMask;
    LPWSTR pszText;
    int cchTextMax;
    int iImage;
    LPARAM lParam;
};

constexpr UINT TCIF_TEXT = 0x0001;

constexpr UINT TCM_FIRST = 0x1300;
constexpr UINT TCM_GETCURSEL = TCM_FIRST + 11;
constexpr UINT TCM_GETITEMW = TCM_FIRST + 60;
constexpr UINT TCM_INSERTITEMW = TCM_FIRST + 62;

constexpr UINT TCN_SELCHANGE = 0U - 551U;

// --- the list view ---

struct LVITEMW {
    UINT mask;
    int iItem;
    int iSubItem;
    UINT state;
    UINT stateMask;
    LPWSTR pszText;
    int cchTextMax;
    int iImage;
    LPARAM lParam;
    int iIndent;
    int iGroupId;
    UINT cColumns;
    UINT* puColumns;
    int* piColFmt;
    int iGroup;
};

struct LVCOLUMNW {
    UINT mask;
    int fmt;
    int cx;
    LPWSTR pszText;
    int cchTextMax;
    int iSubItem;
    int iImage;
    int iOrder;
    int cxMin;
    int cxDefault;
    int cxIdeal;
};

struct NMLISTVIEW {
    NMHDR hdr;
    int iItem;
    int iSubItem;
    UINT uNewState;
    UINT uOldState;
    UINT uChanged;
    POINT ptAction;
    LPARAM lParam;
};

static_assert(sizeof(TCITEMW) == 40);
static_assert(sizeof(LVITEMW) == 88);
static_assert(sizeof(LVCOLUMNW) == 56);
static_assert(sizeof(NMLISTVIEW) == 64);

constexpr DWORD LVS_REPORT = 0x0001;
constexpr DWORD LVS_TYPEMASK = 0x0003;
constexpr DWORD LVS_SINGLESEL = 0x0004;
constexpr DWORD LVS_SHOWSELALWAYS = 0x0008;
constexpr DWORD LVS_EX_FULLROWSELECT = 0x00000020;
constexpr DWORD LVS_EX_DOUBLEBUFFER = 0x00010000;

constexpr UINT LVIF_TEXT = 0x0001;
constexpr UINT LVIF_STATE = 0x0008;
constexpr UINT LVIS_FOCUSED = 0x0001;
constexpr UINT LVIS_SELECTED = 0x0002;
constexpr UINT LVCF_WIDTH = 0x0002;
constexpr UINT LVCF_TEXT = 0x0004;
constexpr UINT LVNI_SELECTED = 0x0002;
constexpr int LVIR_BOUNDS = 0;

constexpr UINT LVM_FIRST = 0x1000;
constexpr UINT LVM_DELETEALLITEMS = LVM_FIRST + 9;
constexpr UINT LVM_GETNEXTITEM = LVM_FIRST + 12;
constexpr UINT LVM_GETITEMRECT = LVM_FIRST + 14;
constexpr UINT LVM_GETCOLUMNWIDTH = LVM_FIRST + 29;
constexpr UINT LVM_SETCOLUMNWIDTH = LVM_FIRST + 30;
constexpr UINT LVM_SETITEMSTATE = LVM_FIRST + 43;
constexpr UINT LVM_SETEXTENDEDLISTVIEWSTYLE = LVM_FIRST + 54;
constexpr UINT LVM_GETEXTENDEDLISTVIEWSTYLE = LVM_FIRST + 55;
constexpr UINT LVM_INSERTITEMW = LVM_FIRST + 77;
constexpr UINT LVM_GETCOLUMNW = LVM_FIRST + 95;
constexpr UINT LVM_INSERTCOLUMNW = LVM_FIRST + 97;
constexpr UINT LVM_GETITEMTEXTW = LVM_FIRST + 115;
constexpr UINT LVM_SETITEMTEXTW = LVM_FIRST + 116;

constexpr UINT LVN_ITEMCHANGED = 0U - 101U;
