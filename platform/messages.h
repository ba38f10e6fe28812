// Numbers of messages, styles, commands and results, as the platform's protocol gives them. They
// travel between processes, so none may be changed.
#pragma once

#include "platform/types.h"

namespace juntora {

// Messages.
inline constexpr UINT WM_CREATE = 1;
inline constexpr UINT WM_DESTROY = 2;
inline constexpr UINT WM_SIZE = 5;
inline constexpr UINT WM_ENABLE = 10;
inline constexpr UINT WM_SETTEXT = 12;
inline constexpr UINT WM_GETTEXT = 13;
inline constexpr UINT WM_GETTEXTLENGTH = 14;
inline constexpr UINT WM_PAINT = 15;
inline constexpr UINT WM_CLOSE = 16;
inline constexpr UINT WM_QUIT = 18;
inline constexpr UINT WM_SHOWWINDOW = 24;
inline constexpr UINT WM_QUERYDRAGICON = 55;
inline constexpr UINT WM_SETICON = 128;
inline constexpr UINT WM_GETDLGCODE = 135;
inline constexpr UINT WM_NCDESTROY = 130;
inline constexpr UINT WM_KEYDOWN = 256;
inline constexpr UINT WM_CHAR = 258;
inline constexpr UINT WM_INITDIALOG = 272;
inline constexpr UINT WM_COMMAND = 273;
inline constexpr UINT WM_SYSCOMMAND = 274;
inline constexpr UINT WM_TIMER = 275;
inline constexpr UINT WM_USER = 1024;
inline constexpr UINT WM_APP = 32768;
/// RegisterWindowMessageA gives numbers from here up to 65,535.
inline constexpr UINT FIRST_REGISTERED_MESSAGE = 0xC000;

// Button messages and notices.
inline constexpr UINT BM_GETCHECK = 240;
inline constexpr UINT BM_SETCHECK = 241;
inline constexpr UINT BM_CLICK = 245;
inline constexpr WORD BN_CLICKED = 0;

// List box messages and results.
inline constexpr UINT LB_ADDSTRING = 384;
inline constexpr UINT LB_INSERTSTRING = 385;
inline constexpr UINT LB_DELETESTRING = 386;
inline constexpr UINT LB_RESETCONTENT = 388;
inline constexpr UINT LB_SETCURSEL = 390;
inline constexpr UINT LB_GETCURSEL = 392;
inline constexpr UINT LB_GETTEXT = 393;
inline constexpr UINT LB_GETTEXTLEN = 394;
inline constexpr UINT LB_GETCOUNT = 395;
inline constexpr UINT LB_FINDSTRINGEXACT = 418;
inline constexpr WORD LBN_SELCHANGE = 1;
inline constexpr WORD LBN_DBLCLK = 2;
inline constexpr LRESULT LB_ERR = -1;

// System commands; the low four bits belong to the system.
inline constexpr WPARAM SC_SIZE = 0xF000;
inline constexpr WPARAM SC_MOVE = 0xF010;
inline constexpr WPARAM SC_MINIMIZE = 0xF020;
inline constexpr WPARAM SC_MAXIMIZE = 0xF030;
inline constexpr WPARAM SC_CLOSE = 0xF060;
inline constexpr WPARAM SC_RESTORE = 0xF120;

// ShowWindow.
inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;
inline constexpr int SW_SHOWMINIMIZED = 2;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_MINIMIZE = 6;
inline constexpr int SW_SHOWMINNOACTIVE = 7;
inline constexpr int SW_RESTORE = 9;
inline constexpr int SW_SHOWDEFAULT = 10;

// Window styles.
inline constexpr DWORD WS_POPUP = 0x80000000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_MINIMIZE = 0x20000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;
inline constexpr DWORD WS_DISABLED = 0x08000000;
inline constexpr DWORD WS_CAPTION = 0x00C00000;
inline constexpr DWORD WS_BORDER = 0x00800000;
inline constexpr DWORD WS_VSCROLL = 0x00200000;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_GROUP = 0x00020000;
inline constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
inline constexpr DWORD WS_TABSTOP = 0x00010000;
inline constexpr DWORD WS_EX_APPWINDOW = 0x00040000;
inline constexpr DWORD DS_MODALFRAME = 0x80;
inline constexpr DWORD DS_CENTER = 0x0800;
inline constexpr DWORD BS_PUSHBUTTON = 0;
inline constexpr DWORD BS_DEFPUSHBUTTON = 1;
inline constexpr DWORD BS_AUTOCHECKBOX = 3;
inline constexpr DWORD SS_LEFT = 0;
inline constexpr DWORD SS_CENTER = 1;
inline constexpr DWORD SS_ICON = 3;
inline constexpr DWORD SS_ETCHEDHORZ = 16;
inline constexpr DWORD SS_NOPREFIX = 0x80;
inline constexpr DWORD LBS_NOTIFY = 1;
inline constexpr DWORD LBS_SORT = 2;
inline constexpr DWORD LBS_NOINTEGRALHEIGHT = 0x100;

// Class styles.
inline constexpr UINT CS_VREDRAW = 1;
inline constexpr UINT CS_HREDRAW = 2;
inline constexpr UINT CS_DBLCLKS = 8;

// GetWindow, SetWindowPos, PeekMessageA.
inline constexpr UINT GW_HWNDNEXT = 2;
inline constexpr UINT GW_OWNER = 4;
inline constexpr UINT GW_CHILD = 5;
inline constexpr HWND HWND_TOP = 0;
inline constexpr HWND HWND_BOTTOM = 1;
inline constexpr UINT SWP_NOSIZE = 1;
inline constexpr UINT SWP_NOMOVE = 2;
inline constexpr UINT SWP_NOZORDER = 4;
inline constexpr UINT SWP_NOACTIVATE = 16;
inline constexpr UINT PM_NOREMOVE = 0;
inline constexpr UINT PM_REMOVE = 1;

// Menus.
inline constexpr UINT MF_BYCOMMAND = 0;
inline constexpr UINT MF_GRAYED = 1;
inline constexpr UINT MF_STRING = 0;
inline constexpr UINT MF_SEPARATOR = 0x800;

// Dialog and message box.
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDABORT = 3;
inline constexpr int IDRETRY = 4;
inline constexpr int IDIGNORE = 5;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;
inline constexpr UINT MB_OK = 0;
inline constexpr UINT MB_OKCANCEL = 1;
inline constexpr UINT MB_ABORTRETRYIGNORE = 2;
inline constexpr UINT MB_YESNOCANCEL = 3;
inline constexpr UINT MB_YESNO = 4;
inline constexpr UINT MB_RETRYCANCEL = 5;
inline constexpr UINT MB_ICONSTOP = 0x10;
inline constexpr UINT MB_ICONQUESTION = 0x20;
inline constexpr UINT MB_ICONWARNING = 0x30;
inline constexpr UINT MB_ICONINFORMATION = 0x40;
inline constexpr UINT MB_ICONEXCLAMATION = MB_ICONWARNING;
/// The platform's own icons, which message boxes show.
inline constexpr int IDI_STOP = 32513;
inline constexpr int IDI_QUESTION = 32514;
inline constexpr int IDI_WARNING = 32515;
inline constexpr int IDI_INFORMATION = 32516;
inline constexpr UINT MB_DEFBUTTON2 = 0x100;
inline constexpr UINT MB_DEFBUTTON3 = 0x200;
inline constexpr UINT MB_SYSTEMMODAL = 0x1000;
inline constexpr UINT MB_TASKMODAL = 0x2000;

// Error numbers that the code above reads or shows.
inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
inline constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_INVALID_DATA = 13;
inline constexpr DWORD ERROR_NO_MORE_FILES = 18;
inline constexpr DWORD ERROR_WRITE_PROTECT = 19;
inline constexpr DWORD ERROR_GEN_FAILURE = 31;
inline constexpr DWORD ERROR_BAD_NETPATH = 53;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_DISK_FULL = 112;
inline constexpr DWORD ERROR_INVALID_NAME = 123;
inline constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
inline constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
inline constexpr DWORD ERROR_LOCK_FAILED = 167;
inline constexpr DWORD ERROR_ALREADY_EXISTS = 183;
inline constexpr DWORD ERROR_BAD_EXE_FORMAT = 193;
inline constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
inline constexpr DWORD ERROR_MORE_DATA = 234;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_NOT_OWNER = 288;
inline constexpr DWORD ERROR_TOO_MANY_POSTS = 298;
inline constexpr DWORD ERROR_INVALID_ADDRESS = 487;
inline constexpr DWORD ERROR_BADDB = 1009;
inline constexpr DWORD ERROR_REGISTRY_IO_FAILED = 1016;
inline constexpr DWORD ERROR_NOT_REGISTRY_FILE = 1017;
inline constexpr DWORD ERROR_KEY_DELETED = 1018;
inline constexpr DWORD ERROR_MESSAGE_SYNC_ONLY = 1159;
inline constexpr DWORD ERROR_BAD_DEVICE = 1200;
inline constexpr DWORD ERROR_CONNECTION_UNAVAIL = 1201;
inline constexpr DWORD ERROR_NO_NETWORK = 1222;
inline constexpr DWORD ERROR_INVALID_WINDOW_HANDLE = 1400;
inline constexpr DWORD ERROR_CANNOT_FIND_WND_CLASS = 1407;
inline constexpr DWORD ERROR_CLASS_ALREADY_EXISTS = 1410;
inline constexpr DWORD ERROR_TIMEOUT = 1460;
inline constexpr DWORD ERROR_NOT_CONNECTED = 2250;

// Waits.
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_ABANDONED = 128;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;
inline constexpr DWORD INFINITE = 0xFFFFFFFF;

}  // namespace juntora
