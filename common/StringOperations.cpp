#include "common/StringOperations.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace juntora {
namespace {

constexpr const char* WHITE_SPACE = " \t\n\v\f\r";

}  // namespace

int findOneOfFrom(const CString& text, int from, const char* set) {
    const int length = text.GetLength();
    if (from < 0 || from >= length || !set) {
        return -1;
    }
    const char* begin = text;
    const int at = from + static_cast<int>(std::strcspn(begin + from, set));
    return at < length ? at : -1;
}

int deleteChars(CString& text, int count, int at) {
    const int length = text.GetLength();
    if (length == 0) {
        return 0;
    }
    if (count <= 0 || at < 0 || count > length || at > length - count) {
        return -1;
    }
    char* begin = text.GetBuffer();
    std::copy(begin + at + count, begin + length, begin + at);
    text.ReleaseBuffer(length - count);
    return 0;
}

void replaceChar(CString& text, char from, char to) {
    const int length = text.GetLength();
    char* begin = text.GetBuffer();
    std::replace(begin, begin + length, from, to);
    text.ReleaseBuffer(length);
}

void removeChars(CString& text, const CString& set) {
    const std::string members(set);  // A copy, as it may be the text itself.
    char* begin = text.GetBuffer();
    char* end = begin + text.GetLength();
    for (const char member : members) {
        end = std::remove(begin, end, member);
    }
    text.ReleaseBuffer(static_cast<int>(end - begin));
}

void removeWhitespace(CString& text) { removeChars(text, WHITE_SPACE); }

void collapseWhitespace(CString& text) {
    char* begin = text.GetBuffer();
    char* end = begin;
    const char* from = begin + std::strspn(begin, WHITE_SPACE);
    while (*from) {
        if (end != begin) {
            *end++ = ' ';
        }
        const std::size_t word = std::strcspn(from, WHITE_SPACE);
        std::memmove(end, from, word);
        end += word;
        from += word;
        from += std::strspn(from, WHITE_SPACE);
    }
    text.ReleaseBuffer(static_cast<int>(end - begin));
}

}  // namespace juntora
