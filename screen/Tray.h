// The icon beside the clock of a window that has a button on the task bar.
#pragma once

#include <QMenu>
#include <QSystemTrayIcon>

#include "screen/WindowMenu.h"

namespace juntora::screen {

class Tray {
public:
    explicit Tray(WindowMenu& menu);

    /// Takes over the window's present title, icon and controls.
    void update(const ViewedWindow& window, const std::vector<ViewedWindow>& controls);

private:
    void refill();

    WindowMenu& m_windowMenu;
    HWND m_window = 0;
    DWORD m_style = 0;
    std::vector<ViewedWindow> m_controls;
    QMenu m_menu;
    QSystemTrayIcon m_icon;
};

}  // namespace juntora::screen
