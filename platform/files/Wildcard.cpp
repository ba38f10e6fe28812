#include "platform/files/Wildcard.h"

#include <cstddef>

#include "platform/files/CaseFolding.h"

namespace juntora::files {
namespace {

bool isWildcardAt(std::string_view pattern, std::size_t at) {
    return at < pattern.size() && (pattern[at] == '*' || pattern[at] == '?');
}

/// Whether the pattern's character at `at` may stand for nothing in front of the name's rest.
bool mayBeNothing(std::string_view pattern, std::size_t at, std::string_view rest) {
    if (pattern[at] == '?') {
        return rest.empty() || rest.front() == '.';
    }
    return pattern[at] == '.' && rest.empty() && isWildcardAt(pattern, at + 1);
}

bool standsFor(char pattern, char c) {
    return pattern == '?' ? c != '.' : foldCase(pattern) == foldCase(c);
}

}  // namespace

bool matchesWildcard(std::string_view pattern, std::string_view name) {
    constexpr std::size_t NONE = std::string_view::npos;
    std::size_t at = 0;
    std::size_t taken = 0;
    std::size_t star = NONE;  // The last "*" so far, and how much of the name was taken there.
    std::size_t takenAtStar = 0;
    while (at < pattern.size() || taken < name.size()) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            takenAtStar = taken;
        } else if (at < pattern.size() && taken < name.size() &&
                   standsFor(pattern[at], name[taken])) {
            ++at;
            ++taken;
        } else if (at < pattern.size() && mayBeNothing(pattern, at, name.substr(taken))) {
            ++at;
        } else if (star != NONE && takenAtStar < name.size()) {
            taken = ++takenAtStar;
            at = star + 1;
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace juntora::files
