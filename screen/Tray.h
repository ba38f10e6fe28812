// The icon beside the clock of a window that has a button on the task bar.
#pragma once

#include <QMenu>
#include <QSystemTrayIcon>

#include "screen/WindowMenu.h"

namespace juntora::screen {

class Tray {
public:
    explicit Tray(WindowMenu& menu);

    /// Takes over the window's present title and icon, and its menu's items.
    void update(const ViewedWindow& window);

    /// Until the next update.
    void hide() { m_icon.hide(); }

private:
    void refill();

    WindowMenu& m_windowMenu;
    HWND m_window = 0;
    QMenu m_menu;
    QSystemTrayIcon m_icon;
};

}  // namespace juntora::screen
