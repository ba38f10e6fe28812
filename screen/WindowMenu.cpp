#include "screen/WindowMenu.h"

#include <QAction>
#include <QMenu>
#include <QStringList>

#include "platform/desktop/message.h"
#include "screen/Units.h"

namespace juntora::screen {
namespace {

/// Commands from here on are the system's: a window manager has its own for them.
constexpr WPARAM FIRST_SYSTEM_COMMAND = 0xF000;

bool isVisibleButton(const ViewedWindow& control) {
    return control.className == "Button" && (control.style & WS_VISIBLE) != 0;
}

}  // namespace

WindowMenu::WindowMenu(HWND window, DWORD owner)
    : m_window(window), m_channel(Channel::to(owner)), m_alive(std::make_shared<int>()) {
    refresh();
}

void WindowMenu::refresh() {
    m_channel->ask(m_alive, [this, window = m_window]() -> std::function<void()> {
        return [this, lines = askForText(window, VIEW_GET_MENU, 0)] {
            if (lines != m_lines) {
                m_lines = lines;
                m_items = parse(lines);
                if (m_changed) {
                    m_changed();
                }
            }
        };
    });
}

std::vector<WindowMenu::Item> WindowMenu::parse(const std::string& lines) {
    std::vector<Item> items;
    for (const QString& line : textOf(lines).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields.size() >= 3) {
            items.push_back({fields[0].toUInt(), fields[1].toUInt(),
                             QStringList(fields.mid(2)).join(QLatin1Char('\t'))});
        }
    }
    return items;
}

void WindowMenu::addCommand(QMenu& menu, const QString& text, WPARAM command) const {
    QAction* action = menu.addAction(text);
    QObject::connect(action, &QAction::triggered,
                     [window = m_window, command] { tell(window, WM_SYSCOMMAND, command, 0); });
}

void WindowMenu::addOwnItems(QMenu& menu) const {
    for (const Item& item : m_items) {
        if ((item.flags & MF_SEPARATOR) == 0 && item.command < FIRST_SYSTEM_COMMAND) {
            addCommand(menu, item.text, item.command);
            menu.actions().back()->setEnabled((item.flags & MF_GRAYED) == 0);
        }
    }
}

void WindowMenu::fill(QMenu& menu, DWORD style) {
    refresh();
    if ((style & WS_MINIMIZEBOX) != 0) {
        addCommand(menu, QStringLiteral("Mi&nimize"), SC_MINIMIZE);
        menu.addSeparator();
    }
    addOwnItems(menu);
    menu.addSeparator();
    addCommand(menu, QStringLiteral("&Close"), SC_CLOSE);
}

void WindowMenu::fillTray(QMenu& menu, DWORD style, const std::vector<ViewedWindow>& controls) {
    addCommand(menu, QStringLiteral("&Show"), SC_RESTORE);
    for (const ViewedWindow& control : controls) {
        if (isVisibleButton(control) && control.text.ends_with("...")) {
            QAction* action = menu.addAction(textOf(control.text));
            action->setEnabled((control.style & WS_DISABLED) == 0);
            QObject::connect(action, &QAction::triggered,
                             [window = control.window] { tell(window, BM_CLICK, 0, 0); });
        }
    }
    addOwnItems(menu);
    menu.addSeparator();
    addCommand(menu, QStringLiteral("&Close"), SC_CLOSE);
    if ((style & WS_DISABLED) != 0) {  // A box of its own stands in front of the window.
        for (QAction* action : menu.actions()) {
            action->setEnabled(false);
        }
    }
}

}  // namespace juntora::screen
