#include "setup/textFields.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "common/CaseBlind.h"
#include "setup/letters.h"

namespace juntora {
namespace {

const char* skipBlanks(const char* text) {
    while (isBlank(*text)) {
        ++text;
    }
    return text;
}

std::string_view withoutBlanksBehind(std::string_view text) {
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// The token that starts at `start`, with the blanks behind it.
std::string_view tokenAt(const char* start, char delimiter, const char** next) {
    const std::string_view rest(start);
    const std::size_t end = rest.find(delimiter);
    *next = end == std::string_view::npos ? nullptr : start + end + 1;
    return rest.substr(0, end);
}

}  // namespace

char* RemoveBlanks(char* text) {
    *std::remove_if(text, text + std::strlen(text), isBlank) = '\0';
    return text;
}

char* NextToken(const char* cursor, const char** next, char delimiter, char* output, int size) {
    if (!cursor) {
        *next = nullptr;
        return nullptr;
    }
    const char* start = skipBlanks(cursor);
    *next = nullptr;
    std::string_view token = *start != '\0' ? tokenAt(start, delimiter, next) : "";
    if (size > 0) {
        token = withoutBlanksBehind(token.substr(0, static_cast<std::size_t>(size) - 1));
        std::memcpy(output, token.data(), token.size());
        output[token.size()] = '\0';
    }
    return output;
}

bool ListHasToken(const char* name, const char* list, char delimiter) {
    if (!name) {
        return false;
    }
    while (list && *(list = skipBlanks(list)) != '\0') {
        if (equalCaseBlind(withoutBlanksBehind(tokenAt(list, delimiter, &list)), name)) {
            return true;
        }
    }
    return false;
}

const char* NextField(const char* text, const char* delimiters, char* output) {
    text += std::strspn(text, delimiters);
    const std::size_t length = std::strcspn(text, delimiters);
    std::memcpy(output, text, length);
    output[length] = '\0';
    return length > 0 ? text + length : nullptr;
}

}  // namespace juntora
