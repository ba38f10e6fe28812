// List boxes: the window around ListItems. The lines are in the owner's memory; other processes
// read them by messages.
#include <cstring>
#include <memory>
#include <new>
#include <optional>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/Controls.h"
#include "platform/dialog/ListItems.h"

namespace juntora::dialog {
namespace {

constexpr LRESULT LB_OKAY = 0;
constexpr LRESULT LB_ERRSPACE = -2;

struct ListBox {
    ListItems items;
    std::optional<std::size_t> selected;
};

ListBox* listOf(HWND window) { return reinterpret_cast<ListBox*>(GetWindowUserData(window)); }

LRESULT create(HWND window) {
    if (!listOf(window)) {  // Anybody can send the message once more.
        const bool sorted = (GetWindowStyle(window) & LBS_SORT) != 0;
        auto list = std::make_unique<ListBox>(ListBox{ListItems(sorted), std::nullopt});
        SetWindowUserData(window, reinterpret_cast<LPARAM>(list.release()));
    }
    return 0;
}

void destroy(HWND window) {
    const std::unique_ptr<ListBox> list(listOf(window));
    SetWindowUserData(window, 0);
}

LRESULT resultOf(std::optional<std::size_t> position) {
    return position ? static_cast<LRESULT>(*position) : LB_ERR;
}

LRESULT noteAdded(ListBox& list, std::size_t index) {
    if (list.selected && *list.selected >= index) {
        ++*list.selected;
    }
    return static_cast<LRESULT>(index);
}

/// A line is never longer than what a reader in another process has room for.
std::string_view lineOf(LPARAM text) {
    const auto* line = reinterpret_cast<const char*>(text);
    return {line, strnlen(line, MESSAGE_TEXT_BYTES - 1)};
}

LRESULT add(ListBox& list, WPARAM, LPARAM text) {
    return text == 0 ? LB_ERR : noteAdded(list, list.items.add(lineOf(text)));
}

LRESULT insert(ListBox& list, WPARAM wParam, LPARAM text) {
    const bool atEnd = static_cast<std::int32_t>(wParam) == -1;
    const std::size_t index = atEnd ? list.items.count() : wParam;
    if (text == 0 || index > list.items.count()) {
        return LB_ERR;
    }
    list.items.insert(index, lineOf(text));
    return noteAdded(list, index);
}

LRESULT remove(ListBox& list, WPARAM index, LPARAM) {
    if (index >= list.items.count()) {
        return LB_ERR;
    }
    list.items.remove(index);
    if (list.selected && *list.selected == index) {
        list.selected.reset();
    } else if (list.selected && *list.selected > index) {
        --*list.selected;
    }
    return static_cast<LRESULT>(list.items.count());
}

LRESULT reset(ListBox& list, WPARAM, LPARAM) {
    list.items.clear();
    list.selected.reset();
    return LB_OKAY;
}

LRESULT select(ListBox& list, WPARAM index, LPARAM) {
    list.selected.reset();
    if (index < list.items.count()) {
        list.selected = index;
    }
    return resultOf(list.selected);
}

LRESULT selected(ListBox& list, WPARAM, LPARAM) { return resultOf(list.selected); }

LRESULT copyText(ListBox& list, WPARAM index, LPARAM buffer) {
    if (index >= list.items.count() || buffer == 0) {
        return LB_ERR;
    }
    const std::string& line = list.items.at(index);
    std::memcpy(reinterpret_cast<char*>(buffer), line.c_str(), line.size() + 1);
    return static_cast<LRESULT>(line.size());
}

LRESULT textLength(ListBox& list, WPARAM index, LPARAM) {
    return index < list.items.count() ? static_cast<LRESULT>(list.items.at(index).size()) : LB_ERR;
}

LRESULT count(ListBox& list, WPARAM, LPARAM) { return static_cast<LRESULT>(list.items.count()); }

LRESULT findExact(ListBox& list, WPARAM wParam, LPARAM text) {
    std::optional<std::size_t> after;
    if (static_cast<std::int32_t>(wParam) != -1) {
        after = wParam;
    }
    return text == 0 ? LB_ERR : resultOf(list.items.findExact(after, lineOf(text)));
}

struct Request {
    UINT message;
    LRESULT (*handler)(ListBox& list, WPARAM wParam, LPARAM lParam);
    bool changes;  ///< What the window shows.
};

constexpr Request REQUESTS[] = {
    {LB_ADDSTRING, add, true},       {LB_INSERTSTRING, insert, true},
    {LB_DELETESTRING, remove, true}, {LB_RESETCONTENT, reset, true},
    {LB_SETCURSEL, select, true},    {LB_GETCURSEL, selected, false},
    {LB_GETTEXT, copyText, false},   {LB_GETTEXTLEN, textLength, false},
    {LB_GETCOUNT, count, false},     {LB_FINDSTRINGEXACT, findExact, false},
};

const Request* requestOf(UINT message) {
    for (const Request& request : REQUESTS) {
        if (request.message == message) {
            return &request;
        }
    }
    return nullptr;
}

LRESULT answer(HWND window, const Request& request, WPARAM wParam, LPARAM lParam) {
    ListBox* list = listOf(window);
    if (!list) {
        return LB_ERR;
    }
    LRESULT result = LB_ERRSPACE;
    try {
        result = request.handler(*list, wParam, lParam);
    } catch (const std::bad_alloc&) {
        return LB_ERRSPACE;
    }
    if (request.changes) {
        NoteWindowChange(window);
    }
    return result;
}

}  // namespace

LRESULT ListBoxProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (const Request* request = requestOf(message)) {
        return answer(window, *request, wParam, lParam);
    }
    switch (message) {
        case WM_CREATE:
            return create(window);
        case WM_NCDESTROY:
            destroy(window);
            break;
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        default:
            break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace juntora::dialog
