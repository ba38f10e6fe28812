// The window's own menu.
#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/desktop/LocalWindows.h"
#include "platform/desktop/message.h"
#include "platform/dialog/Controls.h"
#include "platform/dialog/dialog.h"

namespace juntora {
namespace {

struct MenuItem {
    UINT flags;
    WPARAM command;
    std::string text;
};

}  // namespace

class SystemMenu {
public:
    SystemMenu()
        : m_items{{MF_STRING, SC_RESTORE, "&Restore"},   {MF_STRING, SC_MOVE, "&Move"},
                  {MF_STRING, SC_SIZE, "&Size"},         {MF_STRING, SC_MINIMIZE, "Mi&nimize"},
                  {MF_STRING, SC_MAXIMIZE, "Ma&ximize"}, {MF_SEPARATOR, 0, ""},
                  {MF_STRING, SC_CLOSE, "&Close"}} {}

    const std::vector<MenuItem>& items() const { return m_items; }

    void append(MenuItem item) { m_items.push_back(std::move(item)); }

    MenuItem* find(WPARAM command) {
        const auto found = std::ranges::find_if(m_items, [command](const MenuItem& item) {
            return item.command == command && (item.flags & MF_SEPARATOR) == 0;
        });
        return found == m_items.end() ? nullptr : &*found;
    }

private:
    std::vector<MenuItem> m_items;
};

namespace {

struct Menus {
    std::mutex mutex;
    std::map<HWND, std::unique_ptr<SystemMenu>> ofWindow;
};

Menus& menus() {
    static Menus all;
    return all;
}

}  // namespace

SystemMenu* GetSystemMenu(HWND window) {
    if (!desktop::localWindow(window)) {
        return nullptr;
    }
    Menus& all = menus();
    const std::lock_guard guard(all.mutex);
    // Few windows ever ask for their menu, so that those of windows that have gone can wait here.
    std::erase_if(all.ofWindow,
                  [](const auto& entry) { return !desktop::localWindow(entry.first); });
    std::unique_ptr<SystemMenu>& menu = all.ofWindow[window];
    if (!menu) {
        menu = std::make_unique<SystemMenu>();
    }
    return menu.get();
}

LRESULT dialog::CopySystemMenu(HWND window, char* buffer) {
    const SystemMenu* menu = GetSystemMenu(window);
    if (!menu || !buffer) {
        return 0;
    }
    std::string lines;
    for (const MenuItem& item : menu->items()) {
        const std::string line =
            std::to_string(item.flags) + '\t' + std::to_string(item.command) + '\t' + item.text;
        if (lines.size() + line.size() + 1 < MESSAGE_TEXT_BYTES) {
            lines += line + '\n';
        }
    }
    std::memcpy(buffer, lines.c_str(), lines.size() + 1);
    return static_cast<LRESULT>(lines.size());
}

BOOL AppendMenuA(SystemMenu* menu, UINT flags, WPARAM command, const char* text) {
    if (!menu) {
        return 0;
    }
    menu->append({flags, command, text ? text : ""});
    return 1;
}

int EnableMenuItem(SystemMenu* menu, WPARAM command, UINT flags) {
    MenuItem* item = menu ? menu->find(command) : nullptr;
    if (!item) {
        return -1;
    }
    const UINT before = item->flags & MF_GRAYED;
    item->flags = (item->flags & ~MF_GRAYED) | (flags & MF_GRAYED);
    return static_cast<int>(before);
}

}  // namespace juntora
