#include "shell/LineWords.h"

#include <algorithm>

namespace juntora {
namespace {

bool startsSwitch(std::string_view text) {
    return !text.empty() && (text[0] == '-' || text[0] == '/');
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

std::size_t lengthOfBareWord(std::string_view text) {
    std::size_t end = text.find(' ');
    while (end != text.npos && !startsSwitch(text.substr(end + 1))) {
        end = text.find(' ', end + 1);
    }
    const std::string_view word = text.substr(0, end);
    return word.find_last_not_of(' ') + 1;
}

}  // namespace

bool LineWords::next() {
    m_rest.remove_prefix(std::min(m_rest.find_first_not_of(' '), m_rest.size()));
    if (m_rest.empty()) {
        return false;
    }
    if (m_rest[0] == '"') {
        m_rest.remove_prefix(1);
        const std::size_t length = std::min(m_rest.find('"'), m_rest.size());
        take(length);
        if (m_word.size() == length && !m_rest.empty()) {
            m_rest.remove_prefix(1);
        }
    } else if (startsSwitch(m_rest) && m_rest.size() > 1 && isLetter(m_rest[1])) {
        take(2);
    } else {
        take(lengthOfBareWord(m_rest));
    }
    return true;
}

void LineWords::take(std::size_t length) {
    m_word = m_rest.substr(0, std::min(length, LONGEST));
    m_rest.remove_prefix(m_word.size());
}

}  // namespace juntora
