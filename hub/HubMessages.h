// Names of the window messages that the hub's request dispatch gives its main window. They are
// registered where they are used.
#pragma once

namespace juntora {

/// Shows the main window (wParam 1). Posted.
inline constexpr char HUB_SHOW_MESSAGE[] = "OHMARAJuntoraShowMessage";
/// Closes all tools but the one whose window lParam is. Sent.
inline constexpr char HUB_CLOSE_APPS_MESSAGE[] = "OHMARAJuntoraCloseAppsMessage";
/// Starts Planchet unless it runs. Posted.
inline constexpr char HUB_START_PLANCHET_MESSAGE[] = "OHMARAJuntoraStartPlanchetMessage";

/// String resource of the version message; %1 stands for the name of the tool.
inline constexpr int VERSION_MESSAGE_STRING = 103;

}  // namespace juntora
