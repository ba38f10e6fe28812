#include "common/PathText.h"

#include <algorithm>

namespace juntora {
namespace {

constexpr std::size_t SHORTEST_COLLAPSED = 4;

bool isSeparator(char c) { return c == '\\' || c == '/'; }

/// Where a segment of `dots` dots behind `text` and a backslash starts to take names away; npos if
/// it would climb above the start.
std::size_t climb(std::string_view text, std::size_t dots) {
    std::size_t at = text.size();
    for (; dots > 1 && at != std::string_view::npos; --dots) {
        at = text.substr(0, at).rfind('\\');
    }
    return at;
}

}  // namespace

void toBackslashes(std::string& text) { std::replace(text.begin(), text.end(), '/', '\\'); }

void collapseSeparators(std::string& text) {
    if (text.size() < SHORTEST_COLLAPSED) {
        return;
    }
    std::size_t kept = 1;
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        if (!isSeparator(text[i]) || !isSeparator(text[i + 1])) {
            text[kept++] = text[i];
        }
    }
    text[kept++] = text.back();
    text.resize(kept);
}

void removeDots(std::string& text) {
    // What is kept moves to the front, so that a long text is walked through once.
    std::size_t kept = 0;
    std::size_t read = 0;
    const auto keepUpTo = [&](std::size_t end) {
        std::char_traits<char>::move(&text[kept], &text[read], end - read);
        kept += end - read;
        read = end;
    };
    while (read < text.size()) {
        keepUpTo(std::min(text.find("\\.", read), text.size()));
        const std::size_t behind = text.find_first_not_of('.', read + 1);
        if (behind == std::string::npos) {
            break;
        }
        if (text[behind] == '\\') {
            const std::size_t start = climb({text.data(), kept}, behind - read - 1);
            if (start == std::string_view::npos) {
                break;
            }
            kept = start;
            read = behind;
        } else {
            keepUpTo(behind);
        }
    }
    text.erase(kept, read - kept);
}

PathParts splitPath(std::string_view path) {
    PathParts parts;
    const bool hasDrive = path.size() >= 2 && path[1] == ':';
    parts.drive = path.substr(0, hasDrive ? 2 : 0);
    path.remove_prefix(parts.drive.size());
    parts.directory = path.substr(0, path.rfind('\\') + 1);
    path.remove_prefix(parts.directory.size());
    parts.baseName = path.substr(0, path.rfind('.'));
    parts.extension = path.substr(parts.baseName.size());
    return parts;
}

PathComponents::PathComponents(std::string_view path) : m_rest(path) {
    m_rest.remove_prefix(isUncPath(path) ? 2 : 0);
}

std::string_view PathComponents::next() {
    const std::string_view component = m_rest.substr(0, m_rest.find('\\'));
    m_rest.remove_prefix(std::min(component.size() + 1, m_rest.size()));
    return component;
}

void PathComponents::skip(int count) {
    for (; count > 0 && !m_rest.empty(); --count) {
        next();
    }
}

}  // namespace juntora
