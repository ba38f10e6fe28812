// The hub's dialogs, controls, strings and icon, by their numbers.
#pragma once

namespace juntora {

inline constexpr char VERSION_TEXT[] = "Version 16.6.0";

inline constexpr int IDI_HUB = 128;

// The main dialog.
inline constexpr int IDD_HUB = 102;
inline constexpr int IDC_ACTIVITY = 1000;
inline constexpr int IDC_HIDE = 1002;
inline constexpr int IDC_HUB_ICON = 1003;
inline constexpr int IDC_MINIMIZE = 1016;
inline constexpr int IDC_VERSION = 1017;

// The activity monitor.
inline constexpr int IDD_MONITOR = 130;
inline constexpr int IDC_ACTIVITY_LIST = 1001;

// The about box.
inline constexpr int IDD_ABOUT = 100;
inline constexpr int IDC_ABOUT_VERSION = 1004;
inline constexpr int IDC_ABOUT_LEVEL = 1007;
inline constexpr int IDC_ABOUT_BUILD = 1008;

// Strings.
inline constexpr int IDS_NO_AUTOMATION = 100;
inline constexpr int IDS_ABOUT_ITEM = 101;

/// Makes templates and strings known to the layer.
void RegisterHubResources();

}  // namespace juntora
