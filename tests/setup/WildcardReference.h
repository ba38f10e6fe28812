// What patterns stand for, told by recursion: slow, and plain to see. For short texts.
#pragma once

#include <cctype>
#include <string>

namespace juntora::test {

inline bool isSame(char left, char right) {
    return std::tolower(static_cast<unsigned char>(left)) ==
           std::tolower(static_cast<unsigned char>(right));
}

inline bool matchesByRecursion(const char* pattern, const char* text) {
    if (*text == '\0') {
        return *pattern == '\0' || (pattern[0] == '*' && pattern[1] == '\0');
    }
    switch (*pattern) {
        case '\0':
            return false;
        case '?':
            return matchesByRecursion(pattern + 1, text + 1);
        case '\\':
            return pattern[1] != '\0' && isSame(pattern[1], *text) &&
                   matchesByRecursion(pattern + 2, text + 1);
        case '*':
            if (pattern[1] == '\0') {
                return true;
            }
            while (!matchesByRecursion(pattern + 1, text)) {
                if (*text++ == '\0') {
                    return false;
                }
            }
            return true;
        default:
            return isSame(*pattern, *text) && matchesByRecursion(pattern + 1, text + 1);
    }
}

struct Applied {
    int result;
    std::string name;
};

/// For an output of `capacity` characters.
inline Applied applyByRecursion(const char* source, const char* pattern, const std::string& target,
                                std::size_t capacity) {
    constexpr int FAILED = 1405;
    std::string name = target.substr(0, target.find_first_of("*?"));
    if (name.size() > capacity) {
        return {FAILED, ""};
    }
    std::size_t walked = name.size();
    while (walked < target.size() && *source != '\0' && *pattern != '\0') {
        if (*pattern != '*' && *pattern != '?') {
            const char* literal = *pattern == '\\' ? pattern + 1 : pattern;
            source += isSame(*literal, *source) ? 1 : 0;
            pattern = *literal == '\0' ? literal : literal + 1;
            continue;
        }
        std::string run(1, *source);
        if (pattern[1] == '\0') {
            run = source;
        } else {
            while (!matchesByRecursion(pattern + 1, source + run.size()) &&
                   source[run.size()] != '\0') {
                run += source[run.size()];
            }
        }
        if (name.size() + run.size() > capacity) {
            return {FAILED, name};
        }
        name += run;
        if (pattern[1] == '\0') {
            return {0, name};
        }
        source += run.size();
        ++pattern;
        ++walked;
    }
    return {walked == target.size() ? 0 : FAILED, name};
}

}  // namespace juntora::test
