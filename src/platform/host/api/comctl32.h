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
constexpr DWORD ICC_STANDARD_CLASSES = 0x4000;

#define WC_TABCONTROLW TEXT("SysTabControl32")
#define WC_LISTVIEWW TEXT("SysListView32")

// FALSE with the last error set when a fault was asked for; the classes are there from the start.
BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* classes);

// --- notifications of every common control ---

constexpr UINT NM_CLICK = 0U - 2U;
constexpr UINT NM_DBLCLK = 0U - 3U;
constexpr UINT NM_SETFOCUS = 0U - 7U;
constexpr UINT NM_KILLFOCUS = 0U - 8U;
constexpr UINT NM_RELEASEDCAPTURE = 0U - 16U;

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

#pragma pack(push, 1)
struct NMTCKEYDOWN {
    NMHDR hdr;
    WORD wVKey;
    UINT flags;
};
#pragma pack(pop)

constexpr UINT TCIF_TEXT = 0x0001;

constexpr UINT TCM_FIRST = 0x1300;
constexpr UINT TCM_GETITEMCOUNT = TCM_FIRST + 4;
constexpr UINT TCM_GETITEMRECT = TCM_FIRST + 10;
constexpr UINT TCM_GETCURSEL = TCM_FIRST + 11;
constexpr UINT TCM_SETCURSEL = TCM_FIRST + 12;
constexpr UINT TCM_GETITEMW = TCM_FIRST + 60;
constexpr UINT TCM_INSERTITEMW = TCM_FIRST + 62;

constexpr UINT TCN_KEYDOWN = 0U - 550U;
constexpr UINT TCN_SELCHANGE = 0U - 551U;
constexpr UINT TCN_SELCHANGING = 0U - 552U;

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

struct NMITEMACTIVATE {
    NMHDR hdr;
    int iItem;
    int iSubItem;
    UINT uNewState;
    UINT uOldState;
    UINT uChanged;
    POINT ptAction;
    LPARAM lParam;
    UINT uKeyFlags;
};

#pragma pack(push, 1)
struct NMLVKEYDOWN {
    NMHDR hdr;
    WORD wVKey;
    UINT flags;
};
#pragma pack(pop)

static_assert(sizeof(TCITEMW) == 40);
static_assert(sizeof(LVITEMW) == 88);
static_assert(sizeof(LVCOLUMNW) == 56);
static_assert(sizeof(NMLISTVIEW) == 64);
static_assert(sizeof(NMITEMACTIVATE) == 72);
static_assert(sizeof(NMLVKEYDOWN) == 30);

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
constexpr UINT LVNI_FOCUSED = 0x0001;
constexpr UINT LVNI_SELECTED = 0x0002;
constexpr int LVIR_BOUNDS = 0;
constexpr int LVIR_LABEL = 2;
constexpr int LVIR_SELECTBOUNDS = 3;

constexpr UINT LVM_FIRST = 0x1000;
constexpr UINT LVM_GETITEMCOUNT = LVM_FIRST + 4;
constexpr UINT LVM_DELETEITEM = LVM_FIRST + 8;
constexpr UINT LVM_DELETEALLITEMS = LVM_FIRST + 9;
constexpr UINT LVM_GETNEXTITEM = LVM_FIRST + 12;
constexpr UINT LVM_GETITEMRECT = LVM_FIRST + 14;
constexpr UINT LVM_ENSUREVISIBLE = LVM_FIRST + 19;
constexpr UINT LVM_GETCOLUMNWIDTH = LVM_FIRST + 29;
constexpr UINT LVM_SETCOLUMNWIDTH = LVM_FIRST + 30;
constexpr UINT LVM_GETTOPINDEX = LVM_FIRST + 39;
constexpr UINT LVM_GETCOUNTPERPAGE = LVM_FIRST + 40;
constexpr UINT LVM_SETITEMSTATE = LVM_FIRST + 43;
constexpr UINT LVM_GETITEMSTATE = LVM_FIRST + 44;
constexpr UINT LVM_GETSELECTEDCOUNT = LVM_FIRST + 50;
constexpr UINT LVM_SETEXTENDEDLISTVIEWSTYLE = LVM_FIRST + 54;
constexpr UINT LVM_GETEXTENDEDLISTVIEWSTYLE = LVM_FIRST + 55;
constexpr UINT LVM_INSERTITEMW = LVM_FIRST + 77;
constexpr UINT LVM_GETCOLUMNW = LVM_FIRST + 95;
constexpr UINT LVM_INSERTCOLUMNW = LVM_FIRST + 97;
constexpr UINT LVM_GETITEMTEXTW = LVM_FIRST + 115;
constexpr UINT LVM_SETITEMTEXTW = LVM_FIRST + 116;

constexpr UINT LVN_ITEMCHANGING = 0U - 100U;
constexpr UINT LVN_ITEMCHANGED = 0U - 101U;
constexpr UINT LVN_INSERTITEM = 0U - 102U;
constexpr UINT LVN_DELETEITEM = 0U - 103U;
constexpr UINT LVN_DELETEALLITEMS = 0U - 104U;
constexpr UINT LVN_KEYDOWN = 0U - 155U;

// The names without a letter, as the platform spells them for wide text.
