#include "screen/Tray.h"

#include "platform/messages.h"
#include "screen/Icons.h"
#include "screen/Units.h"

namespace juntora::screen {

Tray::Tray(WindowMenu& menu) : m_windowMenu(menu) {
    // Some trays show the menu by themselves and never say that they are about to: it is kept up.
    m_windowMenu.setChanged([this] { refill(); });
    QObject::connect(&m_menu, &QMenu::aboutToShow, [this] { m_windowMenu.refresh(); });
    QObject::connect(&m_icon, &QSystemTrayIcon::activated,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) {
                             tell(m_window, WM_SYSCOMMAND, SC_RESTORE, 0);
                         }
                     });
    m_icon.setContextMenu(&m_menu);
}

void Tray::update(const ViewedWindow& window) {
    m_window = window.window;
    m_icon.setIcon(iconOf(window.icon));
    m_icon.setToolTip(textOf(window.text));
    refill();
    m_icon.show();
}

void Tray::refill() {
    m_menu.clear();
    m_windowMenu.fillTray(m_menu);
}

}  // namespace juntora::screen
