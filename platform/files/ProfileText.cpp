#include "platform/files/ProfileText.h"

#include <algorithm>
#include <set>
#include <utility>

#include "platform/files/CaseFolding.h"

namespace juntora::files {
namespace {

constexpr std::string_view UTF8_MARK = "\xEF\xBB\xBF";
constexpr std::string_view WIDE_MARKS[] = {"\xFF\xFE", "\xFE\xFF"};
constexpr std::string_view BLANKS = " \t\r";
constexpr std::string_view LINE_ENDS{"\n\r\0", 3};

struct LessIgnoringCase {
    bool operator()(std::string_view left, std::string_view right) const {
        return lessIgnoringCase(left, right);
    }
};

bool isMarked(std::string_view text) {
    return text.starts_with(UTF8_MARK) || text.starts_with(WIDE_MARKS[0]) ||
           text.starts_with(WIDE_MARKS[1]);
}

/// Goes over the lines, and says what the one that it stands at is.
class Lines {
public:
    Lines(std::string_view text, std::string_view section)
        : m_text(text),
          m_section(withoutBlanks(section)),
          m_end(text.starts_with(UTF8_MARK) ? UTF8_MARK.size() : 0) {}

    bool next() {
        if (m_end >= m_text.size()) {
            return false;
        }
        m_start = m_end;
        const std::size_t newline = std::min(m_text.find('\n', m_start), m_text.size());
        m_end = std::min(newline + 1, m_text.size());
        m_contentEnd = newline;
        if (newline < m_text.size() && newline > m_start && m_text[newline - 1] == '\r') {
            --m_contentEnd;
        }
        const std::string_view line = m_text.substr(m_start, m_contentEnd - m_start);
        m_content = withoutBlanks(line.substr(0, line.find('\0')));
        m_bracket = m_content.starts_with('[') ? m_content.find(']') : std::string_view::npos;
        if (isHeader()) {
            m_isInSection = equalIgnoringCase(header(), m_section);
        }
        return true;
    }

    std::size_t start() const { return m_start; }
    std::size_t contentEnd() const { return m_contentEnd; }
    std::size_t end() const { return m_end; }

    bool isHeader() const { return m_bracket != std::string_view::npos; }
    std::string_view header() const { return withoutBlanks(m_content.substr(1, m_bracket - 1)); }
    /// Whether the line belongs to the section that was asked for; its headers do.
    bool isInSection() const { return m_isInSection; }
    bool isBlank() const { return m_content.empty(); }

    /// The name of a key; empty for a line that is none.
    std::string_view key() const {
        const std::size_t sign = m_content.find('=');
        const bool isKey =
            sign != std::string_view::npos && m_content.front() != ';' && m_content.front() != '[';
        return isKey ? withoutBlanks(m_content.substr(0, sign)) : std::string_view();
    }
    std::string_view value() const {
        return withoutBlanks(m_content.substr(m_content.find('=') + 1));
    }
    std::size_t valueStart() const {
        const std::size_t behind = m_text.find('=', m_start) + 1;
        return std::min(m_text.find_first_not_of(" \t", behind), m_contentEnd);
    }

private:
    std::string_view m_text;
    std::string_view m_section;
    std::string_view m_content;
    std::size_t m_bracket = std::string_view::npos;
    std::size_t m_start = 0;
    std::size_t m_contentEnd = 0;
    std::size_t m_end;
    bool m_isInSection = false;
};

/// Where the lines of a section end that are its own beyond doubt: behind its last key; if it has
/// none, behind the comments that follow its header at once.
class SectionEnd {
public:
    void pass(const Lines& line) {
        if (line.isHeader() || !line.key().empty()) {
            m_end = line.end();
            m_isBehindHeader = line.isHeader();
        } else if (line.isBlank()) {
            m_isBehindHeader = false;
        } else if (m_isBehindHeader) {
            m_end = line.end();
        }
    }
    std::size_t get() const { return m_end; }

private:
    std::size_t m_end = 0;
    bool m_isBehindHeader = false;
};

std::string_view lineEndOf(std::string_view text) {
    const std::size_t newline = text.find('\n');
    const bool isPair =
        newline != std::string_view::npos && newline > 0 && text[newline - 1] == '\r';
    return isPair ? "\r\n" : "\n";
}

std::string joined(std::string_view before, std::string_view between, std::string_view behind) {
    std::string text;
    text.reserve(before.size() + between.size() + behind.size());
    return text.append(before).append(between).append(behind);
}

/// Without a pair of quotes around all of it.
std::string_view unquoted(std::string_view value) {
    const bool isQuoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                          value.find(value.front(), 1) == value.size() - 1;
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

std::string_view withoutBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

bool ProfileText::isWide() const {
    return std::ranges::any_of(WIDE_MARKS,
                               [this](std::string_view mark) { return m_text.starts_with(mark); });
}

std::optional<std::string_view> ProfileText::value(std::string_view section,
                                                   std::string_view key) const {
    key = withoutBlanks(key);
    if (key.empty()) {
        return std::nullopt;
    }
    for (Lines line(m_text, section); line.next();) {
        if (line.isInSection() && equalIgnoringCase(line.key(), key)) {
            return unquoted(line.value());
        }
    }
    return std::nullopt;
}

std::vector<std::string_view> ProfileText::sections() const {
    std::vector<std::string_view> names;
    std::set<std::string_view, LessIgnoringCase> seen;
    for (Lines line(m_text, ""); line.next();) {
        if (line.isHeader() && !line.header().empty() && seen.insert(line.header()).second) {
            names.push_back(line.header());
        }
    }
    return names;
}

std::vector<std::string_view> ProfileText::keys(std::string_view section) const {
    std::vector<std::string_view> names;
    std::set<std::string_view, LessIgnoringCase> seen;
    for (Lines line(m_text, section); line.next();) {
        if (line.isInSection() && !line.key().empty() && seen.insert(line.key()).second) {
            names.push_back(line.key());
        }
    }
    return names;
}

std::string ProfileText::withValue(std::string_view section, std::string_view key,
                                   std::string_view value) const {
    value = withoutBlanks(value);
    SectionEnd end;
    int headers = 0;
    for (Lines line(m_text, section); line.next();) {
        if (!line.isInSection()) {
            continue;
        }
        headers += line.isHeader() ? 1 : 0;
        if (headers == 1) {
            end.pass(line);
        }
        if (equalIgnoringCase(line.key(), key)) {
            return joined(m_text.substr(0, line.valueStart()), value,
                          m_text.substr(line.contentEnd()));
        }
    }
    const std::string_view before = m_text.substr(0, headers > 0 ? end.get() : m_text.size());
    const std::string lineEnd(lineEndOf(m_text));
    std::string added;
    if (!before.empty() && before != UTF8_MARK) {
        added += before.ends_with('\n') ? "" : lineEnd;
        added += headers > 0 ? "" : lineEnd;
    }
    if (headers == 0) {
        added.append("[").append(section).append("]").append(lineEnd);
    }
    added.append(key).append("=").append(value).append(lineEnd);
    return joined(before, added, m_text.substr(before.size()));
}

std::string ProfileText::withoutKey(std::string_view section, std::string_view key) const {
    std::string text;
    std::size_t kept = 0;
    for (Lines line(m_text, section); line.next();) {
        if (line.isInSection() && equalIgnoringCase(line.key(), key)) {
            text.append(m_text.substr(kept, line.start() - kept));
            kept = line.end();
        }
    }
    return text.append(m_text.substr(kept));
}

std::string ProfileText::withoutSection(std::string_view section) const {
    std::string text;
    std::size_t kept = 0;
    SectionEnd end;
    for (Lines line(m_text, section); line.next();) {
        if (!line.isInSection()) {
            continue;
        }
        if (line.isHeader()) {
            kept = std::max(kept, end.get());
            text.append(m_text.substr(kept, line.start() - kept));
        }
        end.pass(line);
    }
    text.append(m_text.substr(std::max(kept, end.get())));
    // A mark in the middle of a file is none, and must not become one.
    return isMarked(text) && !isMarked(m_text) ? "\n" + text : text;
}

bool ProfileText::isSectionName(std::string_view name) {
    return !name.empty() && name.find_first_of(LINE_ENDS) == std::string_view::npos &&
           name.find(']') == std::string_view::npos && withoutBlanks(name) == name;
}

bool ProfileText::isKeyName(std::string_view name) {
    return !name.empty() && name.find_first_of(LINE_ENDS) == std::string_view::npos &&
           name.find('=') == std::string_view::npos && name.front() != ';' && name.front() != '[' &&
           withoutBlanks(name) == name;
}

}  // namespace juntora::files
