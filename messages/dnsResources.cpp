#include "messages/dnsResources.h"

#include "platform/dialog/dialog.h"

namespace juntora {
namespace {

constexpr DWORD BUTTON = WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON;
constexpr DWORD DEFAULT_BUTTON = WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON;
constexpr DWORD CHECK_BOX = WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX;
constexpr DWORD TEXT = WS_VISIBLE | WS_GROUP | SS_LEFT | SS_NOPREFIX;
constexpr DWORD ICON = WS_VISIBLE | SS_ICON;

/// The dialog moves the text to where the default icon's width ends, counted from its own edge.
/// Three buttons with labels of up to 18 characters find room.
constexpr DialogControl CONTROLS[] = {
    {IDC_DNS_FIRST, "Button", "OK", DEFAULT_BUTTON, 49, 30, 45, 14},
    {IDC_DNS_SECOND, "Button", "Cancel", BUTTON, 98, 30, 45, 14},
    {IDC_DNS_THIRD, "Button", "Cancel", BUTTON, 147, 30, 45, 14},
    {IDC_DNS_CHECK, "Button", "&Don't show this message again", CHECK_BOX, 7, 48, 150, 10},
    {IDC_DNS_TEXT, "Static", "", TEXT, 26, 2, 200, 8},
    {IDC_DNS_ICON, "Static", "", ICON, 2, 2, 24, 20, IDI_WARNING},
    {IDC_DNS_STOP, "Static", "", ICON, 2, 2, 24, 20, IDI_STOP},
    {IDC_DNS_QUESTION, "Static", "", ICON, 2, 2, 24, 20, IDI_QUESTION},
};

constexpr DialogTemplate TEMPLATES[] = {
    {IDD_DNS, "", WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, 0, 240, 64, "MS Sans Serif",
     8, CONTROLS},
};

}  // namespace

void RegisterDnsResources() {
    if (!FindDialogTemplate(IDD_DNS)) {
        RegisterResources(TEMPLATES, {});
    }
}

}  // namespace juntora
