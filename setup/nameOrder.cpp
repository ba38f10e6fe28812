#include "setup/nameOrder.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "setup/letters.h"

namespace juntora {
namespace {

/// Takes the digits in front of a text, and returns them without zeros in front.
std::string_view takeNumber(const char** text) {
    while (**text == '0') {
        ++*text;
    }
    const char* start = *text;
    while (isDigit(**text)) {
        ++*text;
    }
    return {start, *text};
}

/// Left minus right. Once it is beyond an int, further digits can't bring it back.
int difference(std::string_view left, std::string_view right) {
    constexpr std::int64_t MOST = std::numeric_limits<int>::max();
    const std::size_t length = std::max(left.size(), right.size());
    const auto digit = [length](std::string_view number, std::size_t at) {
        const std::size_t missing = length - number.size();
        return at < missing ? 0 : number[at - missing] - '0';
    };
    std::int64_t sum = 0;
    for (std::size_t at = 0; at < length; ++at) {
        sum = std::clamp(sum * 10 + digit(left, at) - digit(right, at), -MOST, MOST);
    }
    return static_cast<int>(sum);
}

int rank(char c) { return c == '$' ? '{' : static_cast<unsigned char>(foldCase(c)); }

}  // namespace

int CompareNames(const char* left, const char* right) {
    for (;;) {
        if (isDigit(*left) && isDigit(*right)) {
            const std::string_view leftNumber = takeNumber(&left);
            const std::string_view rightNumber = takeNumber(&right);
            if (const int result = difference(leftNumber, rightNumber)) {
                return result;
            }
            continue;
        }
        const int result = rank(*left) - rank(*right);
        if (result != 0 || *left == '\0') {
            return result;
        }
        ++left;
        ++right;
    }
}

}  // namespace juntora
