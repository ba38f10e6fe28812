#include "screen/WindowMenu.h"

#include <algorithm>
#include <iterator>

#include <QAction>
#include <QMenu>
#include <QStringList>

#include "platform/desktop/message.h"
#include "screen/Control.h"
#include "screen/Units.h"

namespace juntora::screen {
namespace {

/// Commands from here on are the system's: a window manager has its own for them.
constexpr WPARAM FIRST_SYSTEM_COMMAND = 0xF000;

bool opensSomething(const ViewedWindow& control) {
    return isOfClass(control, "Button") && (control.style & WS_VISIBLE) != 0 &&
           control.text.ends_with("...");
}

}  // namespace

WindowMenu::WindowMenu(HWND window, DWORD owner)
    : m_window(window), m_channel(Channel::to(owner)), m_alive(std::make_shared<int>()) {
    refresh();
}

void WindowMenu::update(const ViewedWindow& viewed, const std::vector<ViewedWindow>& controls) {
    m_style = viewed.style;
    m_buttons.clear();
    std::ranges::copy_if(controls, std::back_inserter(m_buttons), opensSomething);
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

void WindowMenu::addButtons(QMenu& menu) const {
    for (const ViewedWindow& button : m_buttons) {
        QAction* action = menu.addAction(textOf(button.text));
        action->setEnabled((button.style & WS_DISABLED) == 0);
        QObject::connect(action, &QAction::triggered,
                         [window = button.window] { tell(window, BM_CLICK, 0, 0); });
    }
}

void WindowMenu::addRest(QMenu& menu) const {
    addButtons(menu);
    addOwnItems(menu);
    if ((m_style & WS_SYSMENU) != 0) {
        menu.addSeparator();
        addCommand(menu, QStringLiteral("&Close"), SC_CLOSE);
    }
}

void WindowMenu::fill(QMenu& menu) const {
    if ((m_style & WS_MINIMIZEBOX) != 0) {
        addCommand(menu, QStringLiteral("Mi&nimize"), SC_MINIMIZE);
        menu.addSeparator();
    }
    addRest(menu);
}

void WindowMenu::fillTray(QMenu& menu) const {
    addCommand(menu, QStringLiteral("&Show"), SC_RESTORE);
    addRest(menu);
    if ((m_style & WS_DISABLED) != 0) {  // A box of its own stands in front of the window.
        for (QAction* action : menu.actions().mid(1)) {
            action->setEnabled(false);
        }
    }
}

}  // namespace juntora::screen
