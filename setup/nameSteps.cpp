#include "setup/nameSteps.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "setup/letters.h"

namespace juntora {
namespace {

constexpr int STEPPED = 0;
constexpr int REFUSED = 1;

std::optional<std::string_view> nameIn(const char* buffer, int size) {
    const auto capacity = static_cast<std::size_t>(size > 0 ? size : 0);
    const void* end = capacity > 0 ? std::memchr(buffer, '\0', capacity) : nullptr;
    return end ? std::optional(std::string_view(buffer, static_cast<const char*>(end)))
               : std::nullopt;
}

/// Puts `ending` behind the first `kept` characters of the name.
int endWith(const std::string& ending, char* name, std::size_t kept, int size) {
    if (kept + ending.size() >= static_cast<std::size_t>(size)) {
        return REFUSED;
    }
    std::memcpy(name + kept, ending.c_str(), ending.size() + 1);
    return STEPPED;
}

std::string_view digitsAtEnd(std::string_view text) {
    std::size_t start = text.size();
    while (start > 0 && isDigit(text[start - 1])) {
        --start;
    }
    return text.substr(start);
}

/// The digits between the last "[" of a name and the "]" at its end; empty if that isn't what
/// stands there.
std::string_view digitsInBrackets(std::string_view name) {
    name.remove_suffix(1);
    const std::string_view digits = digitsAtEnd(name);
    name.remove_suffix(digits.size());
    return name.ends_with('[') ? digits : std::string_view{};
}

/// A number as its digits, without zeros in front: zero has none.
std::string numberOf(std::string_view digits) {
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return std::string(digits);
}

std::string oneMore(std::string_view digits) {
    std::string number = '0' + numberOf(digits);
    auto digit = number.rbegin();
    for (; *digit == '9'; ++digit) {
        *digit = '0';
    }
    ++*digit;
    return numberOf(number);
}

/// Of a number above zero.
std::string oneLess(std::string number) {
    auto digit = number.rbegin();
    for (; *digit == '0'; ++digit) {
        *digit = '9';
    }
    --*digit;
    return numberOf(number);
}

/// Puts the next letter in the place of the one at the end.
int letterUp(std::string_view text, char* name, int size) {
    const char last = text.back();
    const std::string ending = foldCase(last) == 'z' ? std::string(2, last == 'z' ? 'a' : 'A')
                                                     : std::string(1, static_cast<char>(last + 1));
    return endWith(ending, name, text.size() - 1, size);
}

/// Puts the letter before it in the place of the one at the end, if need be with the one in front.
int letterDown(std::string_view text, char* name, int size) {
    const char last = text.back();
    if (foldCase(last) != 'a') {
        return endWith(std::string(1, static_cast<char>(last - 1)), name, text.size() - 1, size);
    }
    const char before = text.size() > 1 ? text[text.size() - 2] : '\0';
    if (!isLetter(before)) {
        return STEPPED;
    }
    std::string ending = last == 'a' ? "z" : "Z";
    if (foldCase(before) != 'a') {
        ending.insert(ending.begin(), static_cast<char>(before - 1));
    }
    return endWith(ending, name, text.size() - 2, size);
}

using StepNumber = int(char* name, int size);
using StepLetter = int(std::string_view text, char* name, int size);

/// Steps a name by what it ends in.
int stepEnd(char* name, int size, StepNumber* stepNumber, StepLetter* stepLetter) {
    const auto text = nameIn(name, size);
    if (!text || text->empty()) {
        return REFUSED;
    }
    const char last = text->back();
    if (last == ']' || isDigit(last)) {
        return stepNumber(name, size);
    }
    return isLetter(last) ? stepLetter(*text, name, size) : REFUSED;
}

}  // namespace

int IncrementNumber(char* name, int size) {
    const auto text = nameIn(name, size);
    if (!text) {
        return REFUSED;
    }
    if (!text->ends_with(']')) {
        const std::string_view digits = digitsAtEnd(*text);
        return endWith(oneMore(digits), name, text->size() - digits.size(), size);
    }
    const std::string_view digits = digitsInBrackets(*text);
    return digits.empty()
               ? REFUSED
               : endWith(oneMore(digits) + ']', name, text->size() - digits.size() - 1, size);
}

int DecrementNumber(char* name, int size) {
    const auto text = nameIn(name, size);
    if (!text) {
        return REFUSED;
    }
    const bool isInBrackets = text->ends_with(']');
    const std::string_view digits = isInBrackets ? digitsInBrackets(*text) : digitsAtEnd(*text);
    const std::string number = numberOf(digits);
    if (digits.empty() || (isInBrackets && number.empty())) {
        return REFUSED;
    }
    std::string less = number.empty() ? number : oneLess(number);
    if (isInBrackets) {
        less = (less.empty() ? "0" : less) + ']';
    }
    return endWith(less, name, text->size() - digits.size() - (isInBrackets ? 1 : 0), size);
}

int IncrementName(char* name, int size) { return stepEnd(name, size, IncrementNumber, letterUp); }

int DecrementName(char* name, int size) { return stepEnd(name, size, DecrementNumber, letterDown); }

}  // namespace juntora
