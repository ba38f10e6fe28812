#include "shell/resources.h"

#include "hub/HubMessages.h"
#include "ipc/IpcMessage.h"
#include "platform/dialog/dialog.h"

namespace juntora {
namespace {

constexpr int NO_ID = -1;
constexpr char FONT[] = "MS Sans Serif";
constexpr int FONT_POINTS = 8;

constexpr DWORD DIALOG = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
constexpr DWORD BUTTON = WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON;
constexpr DWORD DEFAULT_BUTTON = WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON;
constexpr DWORD TEXT = WS_VISIBLE | WS_GROUP | SS_LEFT;
constexpr DWORD ICON = WS_VISIBLE | SS_ICON;
constexpr DWORD RULE = WS_VISIBLE | SS_ETCHEDHORZ;
constexpr DWORD LIST =
    WS_VISIBLE | WS_TABSTOP | WS_BORDER | WS_VSCROLL | LBS_SORT | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT;

constexpr DialogControl HUB_CONTROLS[] = {
    {IDC_MINIMIZE, "Button", "&Close", DEFAULT_BUTTON, 99, 27, 50, 14},
    {IDC_ACTIVITY, "Button", "&Activity...", BUTTON, 39, 27, 50, 14},
    {IDC_HIDE, "Button", "&Hide", WS_DISABLED | WS_TABSTOP | BS_PUSHBUTTON, 99, 43, 50, 14},
    {IDC_HUB_ICON, "Static", "", ICON, 8, 8, 20, 20, IDI_HUB},
    {IDC_VERSION, "Static", "Version Goes Here", TEXT, 43, 12, 117, 8},
};

constexpr DialogControl MONITOR_CONTROLS[] = {
    {IDCANCEL, "Button", "&Close", BUTTON, 214, 18, 50, 14},
    {IDC_ACTIVITY_LIST, "ListBox", "", LIST, 7, 18, 198, 95},
    {NO_ID, "Static", "Application (ID#)", TEXT, 15, 7, 54, 8},
    {NO_ID, "Static", "File", TEXT, 131, 7, 12, 8},
};

constexpr DialogControl ABOUT_CONTROLS[] = {
    {IDOK, "Button", "OK", DEFAULT_BUTTON, 152, 64, 50, 14},
    {NO_ID, "Static", "", ICON, 11, 17, 20, 20, IDI_HUB},
    {NO_ID, "Static", HUB_WINDOW_TITLE, TEXT, 40, 10, 119, 8},
    {IDC_ABOUT_VERSION, "Static", "", TEXT, 40, 25, 119, 8},
    {NO_ID, "Static", "", RULE, 7, 42, 195, 1},
    {NO_ID, "Static", "Level:", TEXT, 40, 50, 24, 8},
    {IDC_ABOUT_LEVEL, "Static", "", TEXT, 68, 50, 60, 8},
    {NO_ID, "Static", "Build:", TEXT, 40, 63, 24, 8},
    {IDC_ABOUT_BUILD, "Static", "", TEXT, 68, 63, 60, 8},
};

constexpr DialogTemplate TEMPLATES[] = {
    {IDD_ABOUT, "About Voltara Juntora", DIALOG, 0, 209, 85, FONT, FONT_POINTS, ABOUT_CONTROLS},
    {IDD_HUB, HUB_WINDOW_TITLE, DIALOG | WS_MINIMIZEBOX | DS_CENTER, WS_EX_APPWINDOW, 182, 58, FONT,
     FONT_POINTS, HUB_CONTROLS},
    {IDD_MONITOR, "Application Activity", DIALOG, 0, 271, 122, FONT, FONT_POINTS, MONITOR_CONTROLS},
};

constexpr StringResource STRINGS[] = {
    {IDS_NO_AUTOMATION,
     "OLE initialization failed.  Make sure that the OLE libraries are the correct version."},
    {IDS_ABOUT_ITEM, "&About Juntora..."},
    {VERSION_MESSAGE_STRING,
     "The Juntora and %1 have mismatched IPC version numbers.  One or the other is out of date.  "
     "Please correct the problem or call technical support."},
};

}  // namespace

void RegisterHubResources() { RegisterResources(TEMPLATES, STRINGS); }

}  // namespace juntora
