// Windows, messages, timers, input and painting (USER32), with the messages and styles of the standard
// controls. All calls for a window must come from the thread that created it.
#pragma once

#include "platform/host/api/base.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the platform's own names

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using TIMERPROC = void(CALLBACK*)(HWND, UINT, UINT_PTR, DWORD);
using WNDENUMPROC = BOOL(CALLBACK*)(HWND, LPARAM);
using LPRECT = RECT*;
using LPPOINT = POINT*;
using LPMSG = struct tagMSG*;

#define MAKEINTRESOURCEW(number) (reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(number)))

// --- errors of windows ---

constexpr DWORD ERROR_INVALID_DWP_HANDLE = 1405;

// --- records ---

struct WNDCLASSW {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCWSTR lpszMenuName;
    LPCWSTR lpszClassName;
};

struct STYLESTRUCT {
    DWORD styleOld;
    DWORD styleNew;
};
struct CREATESTRUCTW {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCWSTR lpszName;
    LPCWSTR lpszClass;
    DWORD dwExStyle;
};

struct MINMAXINFO {
    POINT ptReserved;
    POINT ptMaxSize;
    POINT ptMaxPosition;
    POINT ptMinTrackSize;
    POINT ptMaxTrackSize;
};

struct WINDOWPOS {
    HWND hwnd;
    HWND hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    UINT flags;
};

struct tagMSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using MSG = tagMSG;

struct NMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};

struct MOUSEINPUT {
    LONG dx;
    LONG dy;
    DWORD mouseData;
    DWORD dwFlags;
    DWORD time;
    ULONG_PTR dwExtraInfo;
};

struct KEYBDINPUT {
    WORD wVk;
    WORD wScan;
    DWORD dwFlags;
    DWORD time;
    ULONG_PTR dwExtraInfo;
};

struct INPUT {
    DWORD type;
    union {
        MOUSEINPUT mi;
        KEYBDINPUT ki;
    };
};

static_assert(sizeof(WNDCLASSW) == 72);
static_assert(sizeof(CREATESTRUCTW) == 80);
static_assert(sizeof(MINMAXINFO) == 40);
static_assert(sizeof(MSG) == 48);
static_assert(sizeof(NMHDR) == 24);
static_assert(sizeof(INPUT) == 40);

// --- window classes and styles ---

constexpr UINT CS_DBLCLKS = 0x0008;

constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000U);
#define HWND_TOP (static_cast<HWND>(nullptr))

constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_MINIMIZE = 0x20000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_DISABLED = 0x08000000;
constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
constexpr DWORD WS_CLIPCHILDREN = 0x02000000;
constexpr DWORD WS_MAXIMIZE = 0x01000000;
constexpr DWORD WS_CAPTION = 0x00C00000;
constexpr DWORD WS_BORDER = 0x00800000;
constexpr DWORD WS_DLGFRAME = 0x00400000;
constexpr DWORD WS_VSCROLL = 0x00200000;
constexpr DWORD WS_HSCROLL = 0x00100000;
constexpr DWORD WS_SYSMENU = 0x00080000;
constexpr DWORD WS_THICKFRAME = 0x00040000;
constexpr DWORD WS_GROUP = 0x00020000;
constexpr DWORD WS_TABSTOP = 0x00010000;
constexpr DWORD WS_OVERLAPPEDWINDOW = 0x00CF0000;

constexpr DWORD WS_EX_DLGMODALFRAME = 0x00000001;
constexpr DWORD WS_EX_TOOLWINDOW = 0x00000080;
constexpr DWORD WS_EX_WINDOWEDGE = 0x00000100;
constexpr DWORD WS_EX_CLIENTEDGE = 0x00000200;
constexpr DWORD WS_EX_CONTROLPARENT = 0x00010000;

constexpr int GWLP_WNDPROC = -4;
constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr int GWLP_USERDATA = -21;

constexpr UINT GW_HWNDNEXT = 2;
constexpr UINT GW_OWNER = 4;
constexpr UINT GW_CHILD = 5;

constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_SHOW = 5;
constexpr int SW_MINIMIZE = 6;
constexpr int SW_SHOWNA = 8;
constexpr int SW_RESTORE = 9;

constexpr UINT SWP_NOSIZE = 0x0001;
constexpr UINT SWP_NOMOVE = 0x0002;
constexpr UINT SWP_NOZORDER = 0x0004;
constexpr UINT SWP_NOACTIVATE = 0x0010;
constexpr UINT SWP_FRAMECHANGED = 0x0020;
constexpr UINT SWP_SHOWWINDOW = 0x0040;
constexpr UINT SWP_HIDEWINDOW = 0x0080;

constexpr UINT RDW_INVALIDATE = 0x0001;
constexpr UINT RDW_ERASE = 0x0004;
constexpr UINT RDW_ALLCHILDREN = 0x0080;
constexpr UINT RDW_UPDATENOW = 0x0100;
constexpr UINT RDW_FRAME = 0x0400;

// --- messages ---

constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_MOVE = 0x0003;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_ACTIVATE = 0x0006;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_ENABLE = 0x000A;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_MOUSEACTIVATE = 0x0021;
constexpr UINT WM_GETMINMAXINFO = 0x0024;
constexpr UINT WM_NEXTDLGCTL = 0x0028;
constexpr UINT WM_SETFONT = 0x0030;
constexpr UINT WM_GETFONT = 0x0031;
constexpr UINT WM_WINDOWPOSCHANGING = 0x0046;
constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
constexpr UINT WM_NOTIFY = 0x004E;
constexpr UINT WM_STYLECHANGING = 0x007C;
constexpr UINT WM_STYLECHANGED = 0x007D;
constexpr UINT WM_NCCREATE = 0x0081;
constexpr UINT WM_NCDESTROY = 0x0082;
constexpr UINT WM_NCCALCSIZE = 0x0083;
constexpr UINT WM_NCHITTEST = 0x0084;
constexpr UINT WM_GETDLGCODE = 0x0087;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_SYSCHAR = 0x0106;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_SYSCOMMAND = 0x0112;
constexpr UINT WM_TIMER = 0x0113;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_CAPTURECHANGED = 0x0215;
constexpr UINT WM_CUT = 0x0300;
constexpr UINT WM_UNDO = 0x0304;
constexpr UINT WM_USER = 0x0400;
constexpr UINT WM_APP = 0x8000;

constexpr UINT DM_GETDEFID = WM_USER + 0;
constexpr UINT DC_HASDEFID = 0x534B;

constexpr int DLGC_WANTARROWS = 0x0001;
constexpr int DLGC_WANTALLKEYS = 0x0004;
constexpr int DLGC_WANTMESSAGE = 0x0004;
constexpr int DLGC_HASSETSEL = 0x0008;
constexpr int DLGC_DEFPUSHBUTTON = 0x0010;
constexpr int DLGC_UNDEFPUSHBUTTON = 0x0020;
constexpr int DLGC_WANTCHARS = 0x0080;
constexpr int DLGC_STATIC = 0x0100;
constexpr int DLGC_BUTTON = 0x2000;

constexpr int SIZE_RESTORED = 0;
constexpr int SIZE_MINIMIZED = 1;
constexpr int WA_INACTIVE = 0;
constexpr int WA_ACTIVE = 1;
constexpr int WA_CLICKACTIVE = 2;
constexpr int MA_ACTIVATE = 1;
constexpr int MA_NOACTIVATE = 3;

constexpr int HTERROR = -2;
constexpr int HTTRANSPARENT = -1;
constexpr int HTNOWHERE = 0;
constexpr int HTCLIENT = 1;
constexpr int HTBORDER = 18;

constexpr UINT SC_MINIMIZE = 0xF020;
constexpr UINT SC_CLOSE = 0xF060;
constexpr UINT SC_RESTORE = 0xF120;

constexpr UINT PM_REMOVE = 0x0001;

constexpr UINT USER_TIMER_MINIMUM = 0x0000000A;
constexpr UINT USER_TIMER_MAXIMUM = 0x7FFFFFFF;

// --- the standard controls ---

constexpr DWORD BS_PUSHBUTTON = 0x0000;
constexpr DWORD BS_DEFPUSHBUTTON = 0x0001;
constexpr DWORD BS_AUTOCHECKBOX = 0x0003;
constexpr DWORD BS_GROUPBOX = 0x0007;
constexpr DWORD BS_TYPEMASK = 0x000F;
constexpr int BN_CLICKED = 0;
constexpr UINT BM_GETCHECK = 0x00F0;
constexpr UINT BM_SETCHECK = 0x00F1;
constexpr UINT BM_SETSTYLE = 0x00F4;
constexpr UINT BM_CLICK = 0x00F5;
constexpr UINT BST_UNCHECKED = 0x0000;
constexpr UINT BST_CHECKED = 0x0001;

constexpr DWORD ES_CENTER = 0x0001;
constexpr DWORD ES_RIGHT = 0x0002;
constexpr DWORD ES_MULTILINE = 0x0004;
constexpr DWORD ES_UPPERCASE = 0x0008;
constexpr DWORD ES_LOWERCASE = 0x0010;
constexpr DWORD ES_PASSWORD = 0x0020;
constexpr DWORD ES_AUTOVSCROLL = 0x0040;
constexpr DWORD ES_AUTOHSCROLL = 0x0080;
constexpr DWORD ES_READONLY = 0x0800;
constexpr DWORD ES_WANTRETURN = 0x1000;
constexpr DWORD ES_NUMBER = 0x2000;
constexpr int EN_CHANGE = 0x0300;
constexpr UINT EM_GETSEL = 0x00B0;
constexpr UINT EM_SETSEL = 0x00B1;
constexpr UINT EM_LIMITTEXT = 0x00C5;
constexpr UINT EM_SETLIMITTEXT = EM_LIMITTEXT;
constexpr UINT EM_GETLIMITTEXT = 0x00D5;

constexpr DWORD SS_LEFT = 0x0000;
constexpr DWORD SS_NOPREFIX = 0x0080;
constexpr DWORD SS_PATHELLIPSIS = 0x8000;

constexpr DWORD CBS_DROPDOWNLIST = 0x0003;
constexpr DWORD CBS_SORT = 0x0100;
constexpr int CBN_SELCHANGE = 1;
constexpr int CB_ERR = -1;
constexpr int CB_ERRSPACE = -2;
constexpr UINT CB_ADDSTRING = 0x0143;
constexpr UINT CB_GETCURSEL = 0x0147;
constexpr UINT CB_GETLBTEXT = 0x0148;
constexpr UINT CB_SETCURSEL = 0x014E;

// --- boxes ---

constexpr UINT MB_OK = 0x0000;
constexpr UINT MB_YESNOCANCEL = 0x0003;
constexpr UINT MB_YESNO = 0x0004;
constexpr UINT MB_ICONERROR = 0x0010;
constexpr UINT MB_ICONQUESTION = 0x0020;
constexpr UINT MB_ICONWARNING = 0x0030;

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

// --- keys and input ---

constexpr int VK_LBUTTON = 0x01;
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_RETURN = 0x0D;
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;
constexpr int VK_ESCAPE = 0x1B;
constexpr int VK_SPACE = 0x20;
constexpr int VK_PRIOR = 0x21;
constexpr int VK_NEXT = 0x22;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_DELETE = 0x2E;
constexpr int VK_F4 = 0x73;
constexpr int VK_PACKET = 0xE7;

constexpr int MK_LBUTTON = 0x0001;
constexpr int MK_SHIFT = 0x0004;
constexpr int MK_CONTROL = 0x0008;

constexpr DWORD INPUT_MOUSE = 0;
constexpr DWORD INPUT_KEYBOARD = 1;
constexpr DWORD MOUSEEVENTF_LEFTDOWN = 0x0002;
constexpr DWORD MOUSEEVENTF_LEFTUP = 0x0004;
constexpr DWORD KEYEVENTF_EXTENDEDKEY = 0x0001;
constexpr DWORD KEYEVENTF_KEYUP = 0x0002;
constexpr DWORD KEYEVENTF_UNICODE = 0x0004;

// --- colours and cursors ---

constexpr int COLOR_BTNFACE = 15;

#define IDC_ARROW MAKEINTRESOURCEW(32512)

// --- classes and windows ---

ATOM WINAPI RegisterClassW(const WNDCLASSW* window_class);
BOOL WINAPI UnregisterClassW(LPCWSTR name, HINSTANCE instance);
HWND WINAPI CreateWindowExW(DWORD extended_style, LPCWSTR class_name, LPCWSTR title, DWORD style, int x,
                            int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                            LPVOID parameter);
BOOL WINAPI DestroyWindow(HWND window);
LRESULT WINAPI DefWindowProcW(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT WINAPI CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wparam, LPARAM lparam);
BOOL WINAPI IsWindow(HWND window);
LONG_PTR WINAPI GetWindowLongPtrW(HWND window, int index);
LONG_PTR WINAPI SetWindowLongPtrW(HWND window, int index, LONG_PTR value);
int WINAPI GetClassNameW(HWND window, LPWSTR name, int capacity);
DWORD WINAPI GetWindowThreadProcessId(HWND window, LPDWORD process);

// --- the window tree ---

HWND WINAPI GetParent(HWND window);
HWND WINAPI GetWindow(HWND window, UINT relation);
BOOL WINAPI IsChild(HWND parent, HWND window);
BOOL WINAPI EnumWindows(WNDENUMPROC procedure, LPARAM parameter);
HWND WINAPI FindWindowW(LPCWSTR class_name, LPCWSTR title);

// --- text and dialog items ---

BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text);
int WINAPI GetWindowTextW(HWND window, LPWSTR text, int capacity);
int WINAPI GetWindowTextLengthW(HWND window);
HWND WINAPI GetDlgItem(HWND dialog, int id);
int WINAPI GetDlgCtrlID(HWND window);
BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text);
UINT WINAPI GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int capacity);
BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check);
UINT WINAPI IsDlgButtonChecked(HWND dialog, int id);
HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous);
BOOL WINAPI IsDialogMessageW(HWND dialog, LPMSG message);
int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR title, UINT flags);

// --- showing, enabling, focus ---

BOOL WINAPI ShowWindow(HWND window, int command);
BOOL WINAPI IsWindowVisible(HWND window);
BOOL WINAPI EnableWindow(HWND window, BOOL enable);
BOOL WINAPI IsWindowEnabled(HWND window);
HWND WINAPI SetFocus(HWND window);
HWND WINAPI GetFocus();
HWND WINAPI SetActiveWindow(HWND window);
HWND WINAPI GetActiveWindow();
BOOL WINAPI SetForegroundWindow(HWND window);

// --- geometry ---

BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL WINAPI SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags);
HDWP WINAPI BeginDeferWindowPos(int count);
HDWP WINAPI DeferWindowPos(HDWP moves, HWND window, HWND after, int x, int y, int width, int height,
                           UINT flags);
BOOL WINAPI EndDeferWindowPos(HDWP moves);
BOOL WINAPI GetWindowRect(HWND window, LPRECT rectangle);
BOOL WINAPI GetClientRect(HWND window, LPRECT rectangle);
BOOL WINAPI ClientToScreen(HWND window, LPPOINT point);
BOOL WINAPI ScreenToClient(HWND window, LPPOINT point);
int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count);
BOOL WINAPI AdjustWindowRectEx(LPRECT rectangle, DWORD style, BOOL menu, DWORD extended_style);

// --- painting ---

BOOL WINAPI InvalidateRect(HWND window, const RECT* rectangle, BOOL erase);
BOOL WINAPI RedrawWindow(HWND window, const RECT* rectangle, HRGN region, UINT flags);
BOOL WINAPI UpdateWindow(HWND window);
// Returns whether the window needs to be painted. `rectangle` must be null and `erase` must be FALSE.
BOOL WINAPI GetUpdateRect(HWND window, LPRECT rectangle, BOOL erase);
HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name);

// --- messages and timers ---

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
void WINAPI PostQuitMessage(int exit_code);
BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT lowest, UINT highest);
BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT lowest, UINT highest, UINT flags);
BOOL WINAPI TranslateMessage(const MSG* message);
LRESULT WINAPI DispatchMessageW(const MSG* message);
UINT_PTR WINAPI SetTimer(HWND window, UINT_PTR id, UINT period_ms, TIMERPROC procedure);
BOOL WINAPI KillTimer(HWND window, UINT_PTR id);

// --- input ---

UINT WINAPI SendInput(UINT count, INPUT* inputs, int input_bytes);
SHORT WINAPI GetKeyState(int key);
HWND WINAPI SetCapture(HWND window);
BOOL WINAPI ReleaseCapture();
HWND WINAPI GetCapture();
BOOL WINAPI SetCursorPos(int x, int y);

// NOLINTEND(bugprone-reserved-identifier)
