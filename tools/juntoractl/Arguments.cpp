#include "tools/juntoractl/Arguments.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

constexpr std::string_view BLANKS = " \t";

}  // namespace

std::string Arguments::word(const char* what) {
    if (isAtEnd()) {
        complain(std::string(what) + " is missing");
        return "";
    }
    if (m_rest.front() == '"') {
        return takeQuoted();
    }
    const std::string_view taken = m_rest.substr(0, m_rest.find_first_of(BLANKS));
    m_rest.remove_prefix(taken.size());
    return std::string(taken);
}

std::vector<std::string> Arguments::words() {
    std::vector<std::string> all;
    while (!isAtEnd()) {
        all.push_back(word("a word"));
    }
    return all;
}

bool Arguments::takeIf(std::string_view expected) {
    skipBlanks();
    if (m_rest.substr(0, m_rest.find_first_of(BLANKS)) != expected) {
        return false;
    }
    m_rest.remove_prefix(expected.size());
    return true;
}

HWND Arguments::window(const char* what) {
    const std::string text = word(what);
    HWND window = 0;
    if (m_problem.empty() && !parseWindow(text, &window)) {
        complain(std::string(what) + ": \"" + text + "\" is no hexadecimal number");
    }
    return window;
}

int Arguments::number(const char* what, int lowest, int highest) {
    const std::string text = word(what);
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || behind != end || number < lowest || number > highest) {
        complain(std::string(what) + ": \"" + text + "\" is no number from " +
                 std::to_string(lowest) + " to " + std::to_string(highest));
        return lowest;
    }
    return number;
}

std::string Arguments::text(const char* what) {
    if (isAtEnd()) {
        complain(std::string(what) + " is missing");
        return "";
    }
    return m_rest.front() == '"' ? takeQuoted() : std::string(std::exchange(m_rest, {}));
}

std::optional<std::string> Arguments::optionalText() {
    return isAtEnd() ? std::nullopt : std::optional<std::string>(text("TEXT"));
}

bool Arguments::areComplete() {
    if (!isAtEnd()) {
        complain("\"" + std::string(m_rest) + "\" is too much");
    }
    return m_problem.empty();
}

void Arguments::skipBlanks() {
    m_rest.remove_prefix(std::min(m_rest.find_first_not_of(BLANKS), m_rest.size()));
}

bool Arguments::isAtEnd() {
    skipBlanks();
    return m_rest.empty();
}

std::string Arguments::takeQuoted() {
    std::string taken;
    m_rest.remove_prefix(1);
    for (;;) {
        const std::size_t quote = m_rest.find('"');
        if (quote == std::string_view::npos) {
            complain("a double quote is not closed");
            return "";
        }
        taken += m_rest.substr(0, quote);
        m_rest.remove_prefix(quote + 1);
        if (m_rest.empty() || m_rest.front() != '"') {
            break;
        }
        taken += '"';
        m_rest.remove_prefix(1);
    }
    if (!m_rest.empty() && BLANKS.find(m_rest.front()) == std::string_view::npos) {
        complain(
            "a closing double quote must be followed by a blank, or by a second one if it "
            "stands for itself");
    }
    return taken;
}

void Arguments::complain(std::string problem) {
    if (m_problem.empty()) {
        m_problem = std::move(problem);
    }
    m_rest = {};
}

}  // namespace juntora
