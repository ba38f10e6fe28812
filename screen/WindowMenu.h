// What a window offers beside its controls: its own menu, and the same from the tray.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QString>

#include "platform/desktop/view.h"
#include "screen/Channel.h"

class QMenu;

namespace juntora::screen {

/// The items that a program has put into its window's menu. They are read when the window first
/// appears and again whenever a menu is about to be shown; until the answer is there the items
/// known before are shown.
class WindowMenu {
public:
    WindowMenu(HWND window, DWORD owner);

    /// Takes over what the window is like now.
    void update(const ViewedWindow& viewed, const std::vector<ViewedWindow>& controls);
    /// Asks for the items anew.
    void refresh();
    /// Calls `changed` whenever the items have been read and are others than before.
    void setChanged(std::function<void()> changed) { m_changed = std::move(changed); }

    /// Fills a menu with what the window can do: be put away, what its buttons open (their text
    /// ends in an ellipsis), the program's own items, close.
    void fill(QMenu& menu) const;
    /// The same for somebody who doesn't see the window: it is shown instead of put away.
    void fillTray(QMenu& menu) const;

private:
    struct Item {
        UINT flags;
        WPARAM command;
        QString text;
    };
    void addRest(QMenu& menu) const;
    void addButtons(QMenu& menu) const;
    void addOwnItems(QMenu& menu) const;
    void addCommand(QMenu& menu, const QString& text, WPARAM command) const;
    static std::vector<Item> parse(const std::string& lines);

    const HWND m_window;
    DWORD m_style = 0;
    std::vector<ViewedWindow> m_buttons;
    std::shared_ptr<Channel> m_channel;
    std::shared_ptr<void> m_alive;
    std::string m_lines;  ///< The items as they were read.
    std::vector<Item> m_items;
    std::function<void()> m_changed;
};

}  // namespace juntora::screen
