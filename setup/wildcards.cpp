#include "setup/wildcards.h"

#include <array>
#include <cstring>
#include <string_view>

#include "common/CaseBlind.h"

namespace juntora {
namespace {

constexpr char WILDCARDS[] = "*?";
constexpr char LITERALLY = '\\';

bool isWildcard(char c) { return c == '*' || c == '?'; }

/// foldCase as a table, which costs half of it.
constexpr auto FOLDED = [] {
    std::array<char, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = foldCase(static_cast<char>(byte));
    }
    return table;
}();

char folded(char c) { return FOLDED[static_cast<unsigned char>(c)]; }

/// Takes the first character off a pattern, which is no "*". Returns whether it stands for `c`,
/// which is no NUL.
bool takeFirst(const char*& pattern, char c) {
    char first = *pattern++;
    if (first == '?') {
        return true;
    }
    if (first == LITERALLY) {
        first = *pattern;
        pattern += first != '\0' ? 1 : 0;
    }
    return folded(first) == folded(c);
}

/// What stands in a pattern up to a "*" or to the end: it stands for texts of one length.
struct Stretch {
    explicit Stretch(const char* pattern) : start(pattern), end(pattern) {
        for (; *end != '\0' && *end != '*'; ++end) {
            end += *end == LITERALLY && end[1] != '\0' ? 1 : 0;
            ++length;
        }
    }
    /// The first place of a text where its first character can be; the end if there is none.
    const char* skipTo(const char* text) const {
        if (length == 0 || *start == '?') {
            return text;
        }
        const char first = folded(start[*start == LITERALLY ? 1 : 0]);
        while (*text != '\0' && folded(*text) != first) {
            ++text;
        }
        return text;
    }
    /// Whether it stands for what is in front of a text.
    bool isAt(const char* text) const {
        for (const char* at = start; at != end; ++text) {
            if (*text == '\0' || !takeFirst(at, *text)) {
                return false;
            }
        }
        return true;
    }

    const char* start;
    const char* end;
    std::size_t length = 0;
};

/// Behind the first place in a text where the stretch can be, or, as the last one of a pattern,
/// behind the only one; null if there is none, as in an empty text for any stretch.
const char* behindPlace(const Stretch& stretch, const char* text) {
    if (*stretch.end == '\0') {
        const std::size_t left = std::strlen(text);
        const bool isThere = stretch.length <= left && stretch.isAt(text + left - stretch.length);
        return isThere ? text + left : nullptr;
    }
    for (text = stretch.skipTo(text); *text != '\0'; text = stretch.skipTo(text + 1)) {
        if (stretch.isAt(text)) {
            return text + stretch.length;
        }
    }
    return nullptr;
}

enum class Match {
    YES,
    NOT_HERE,  ///< What stands before any "*" isn't here; it may be further behind in the text.
    NEVER      ///< Neither here nor further behind, where there is less for what failed here.
};

/// Each stretch behind a "*" is best taken where it comes first, for that leaves most to the rest:
/// no other place needs to be tried.
Match matchAt(const char* pattern, const char* text) {
    for (; *pattern != '*'; ++text) {
        if (*text == '\0') {
            return *pattern == '\0' ? Match::YES : Match::NEVER;
        }
        if (!takeFirst(pattern, *text)) {
            return Match::NOT_HERE;
        }
    }
    while (*pattern == '*') {
        if (*++pattern == '\0') {
            return Match::YES;
        }
        const Stretch stretch(pattern);
        text = behindPlace(stretch, text);
        if (!text) {
            return Match::NEVER;
        }
        pattern = stretch.end;
    }
    return Match::YES;
}

/// How much of a text that isn't empty a wildcard stands for that has `rest` behind it.
std::size_t shortestRun(const char* text, const char* rest) {
    for (std::size_t run = 1;; ++run) {
        const Match match = matchAt(rest, text + run);
        if (match != Match::NOT_HERE) {
            return match == Match::YES ? run : std::strlen(text);
        }
    }
}

/// A text that is put together in a caller's buffer, and ended at all times if there is any room.
class Output {
public:
    Output(char* buffer, int size) : m_end(buffer), m_room(size > 0 ? size : 0) {
        if (m_room > 0) {
            *m_end = '\0';
        }
    }
    /// All of the text, or nothing and false.
    bool append(const char* text, std::size_t length) {
        if (length >= m_room) {
            return false;
        }
        std::memcpy(m_end, text, length);
        m_end += length;
        m_room -= length;
        *m_end = '\0';
        return true;
    }

private:
    char* m_end;
    std::size_t m_room;
};

}  // namespace

int WildcardMatch(const char* pattern, const char* text) {
    return matchAt(pattern, text) == Match::YES ? 1 : 0;
}

int WildcardApply(const char* source, const char* sourcePattern, const char* targetPattern,
                  char* output, int size) {
    Output name(output, size);
    const std::size_t literal = std::strcspn(targetPattern, WILDCARDS);
    if (!name.append(targetPattern, literal)) {
        return WILDCARD_NOT_APPLIED;
    }
    const char* target = targetPattern + literal;
    while (*target != '\0' && *source != '\0' && *sourcePattern != '\0') {
        if (!isWildcard(*sourcePattern)) {
            source += takeFirst(sourcePattern, *source) ? 1 : 0;
            continue;
        }
        const char* rest = sourcePattern + 1;
        const std::size_t run = *rest != '\0' ? shortestRun(source, rest) : std::strlen(source);
        if (!name.append(source, run)) {
            return WILDCARD_NOT_APPLIED;
        }
        if (*rest == '\0') {
            return 0;
        }
        source += run;
        sourcePattern = rest;
        ++target;
    }
    return *target == '\0' ? 0 : WILDCARD_NOT_APPLIED;
}

bool HasWildcards(const char* text) { return std::strpbrk(text, WILDCARDS) != nullptr; }

}  // namespace juntora
