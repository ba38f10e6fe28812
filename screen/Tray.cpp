#include "screen/Tray.h"

#include "platform/messages.h"
#include "screen/Icons.h"
#include "screen/Units.h"

namespace juntora::screen {

Tray::Tray(WindowMenu& menu) : m_windowMenu(menu) {
    const auto refill = [this] {
        m_menu.clear();
        m_windowMenu.fillTray(m_menu, m_controls);
    };
    QObject::connect(&m_menu, &QMenu::aboutToShow, refill);
    QObject::connect(&m_icon, &QSystemTrayIcon::activated,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) {
                             tell(m_window, WM_SYSCOMMAND, SC_RESTORE, 0);
                         }
                     });
    m_icon.setContextMenu(&m_menu);
}

void Tray::update(const ViewedWindow& window, const std::vector<ViewedWindow>& controls) {
    m_window = window.window;
    m_controls = controls;
    m_icon.setIcon(iconOf(window.icon));
    m_icon.setToolTip(textOf(window.text));
    // A tray that shows the menu by itself never says that it is about to.
    m_menu.clear();
    m_windowMenu.fillTray(m_menu, m_controls);
    m_icon.show();
}

}  // namespace juntora::screen
