#include "tools/toolkit/ActivityReader.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <initializer_list>
#include <system_error>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"

namespace juntora {
namespace {

constexpr char DIALOG_TITLE[] = "Application Activity";
constexpr int LIST_ID = 1001;
constexpr int READINGS = 5;
constexpr std::string_view BEFORE_MARK = ")        ";

bool isActivityDialog(HWND window) {
    char title[sizeof DIALOG_TITLE + 1];
    return GetWindowTextA(window, title, sizeof title) > 0 && std::strcmp(title, DIALOG_TITLE) == 0;
}

/// The dialog, which is `window` or somewhere below it; 0 if it is not there.
HWND findDialog(HWND window) {
    HWND found = isActivityDialog(window) ? window : 0;
    for (HWND child = GetWindow(window, GW_CHILD); found == 0 && child != 0;
         child = GetWindow(child, GW_HWNDNEXT)) {
        found = findDialog(child);
    }
    return found;
}

struct Search {
    DWORD process;
    HWND found;
};

BOOL searchTopLevel(HWND window, LPARAM context) {
    auto* search = reinterpret_cast<Search*>(context);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    search->found = process == search->process ? findDialog(window) : 0;
    return search->found == 0 ? 1 : 0;
}

/// Takes `part` off the front.
bool take(std::string_view* text, std::string_view part) {
    if (text->substr(0, part.size()) != part) {
        return false;
    }
    text->remove_prefix(part.size());
    return true;
}

/// Takes the access off the end, with the two blanks before it.
bool takeAccess(std::string_view* text, std::string* access) {
    for (const std::string_view held : {"r/w", "r", "w"}) {
        const std::string ending = "  (" + std::string(held) + ")";
        if (text->size() >= ending.size() && text->substr(text->size() - ending.size()) == ending) {
            text->remove_suffix(ending.size());
            *access = held;
            return true;
        }
    }
    if (text->size() < 2 || text->substr(text->size() - 2) != "  ") {
        return false;
    }
    text->remove_suffix(2);
    return true;
}

std::string_view withoutQuotes(std::string_view file) {
    const bool isQuoted = file.size() >= 2 && file.front() == '"' && file.back() == '"';
    return isQuoted ? file.substr(1, file.size() - 2) : file;
}

std::vector<ActivityLine> readOnce(HWND list) {
    std::vector<ActivityLine> lines;
    std::vector<char> text(MESSAGE_TEXT_BYTES);
    const LRESULT count = SendMessageA(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const LRESULT length = SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(i),
                                            reinterpret_cast<LPARAM>(text.data()));
        if (length < 0) {
            break;
        }
        if (auto line = parseActivityLine({text.data(), static_cast<std::size_t>(length)})) {
            lines.push_back(std::move(*line));
        }
    }
    return lines;
}

}  // namespace

std::optional<ActivityLine> parseActivityLine(std::string_view text) {
    ActivityLine line{};
    if (!take(&text, " ")) {
        return std::nullopt;
    }
    line.name = text.substr(0, text.find(' '));
    text.remove_prefix(line.name.size());
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (!take(&text, "(")) {
        return std::nullopt;
    }
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, line.id, 16);
    text.remove_prefix(static_cast<std::size_t>(behind - text.data()));
    if (error != std::errc() || !take(&text, BEFORE_MARK)) {
        return std::nullopt;
    }
    line.isMarked = take(&text, "*");
    if ((!line.isMarked && !take(&text, " ")) || !takeAccess(&text, &line.access)) {
        return std::nullopt;
    }
    line.file = withoutQuotes(text);
    return line;
}

bool ActivityReader::find(HWND hubWindow) {
    Search search{};
    GetWindowThreadProcessId(hubWindow, &search.process);
    EnumWindows(searchTopLevel, reinterpret_cast<LPARAM>(&search));
    m_list = search.found != 0 ? GetDlgItem(search.found, LIST_ID) : 0;
    m_lastChange = 0;
    return m_list != 0;
}

std::vector<ActivityLine> ActivityReader::read() const {
    std::vector<ActivityLine> lines;
    for (int reading = 0; reading < READINGS; ++reading) {
        const DWORD before = GetWindowChangeCount(m_list);
        lines = readOnce(m_list);
        if (GetWindowChangeCount(m_list) == before) {
            break;
        }
    }
    return lines;
}

bool ActivityReader::hasNews() {
    const DWORD change = GetWindowChangeCount(m_list);
    const bool isNew = change != m_lastChange || change == 0;
    m_lastChange = change;
    return isNew;
}

}  // namespace juntora
