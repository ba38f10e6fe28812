#include "platform/kernel/CommandLine.h"

namespace juntora::kernel {
namespace {

constexpr std::string_view BLANKS = " \t";

/// The first word: up to the closing quote, or to a blank.
std::size_t endOfProgram(std::string_view line, std::string* word) {
    bool quoted = false;
    std::size_t at = 0;
    for (; at < line.size(); ++at) {
        const char c = line[at];
        if (c == '"') {
            quoted = !quoted;
        } else if (!quoted && BLANKS.find(c) != std::string_view::npos) {
            break;
        } else if (word != nullptr) {
            *word += c;
        }
    }
    return at;
}

/// Backslashes count only in front of a quote. Returns whether the quote itself is a character.
bool takeBackslashes(std::string_view line, std::size_t* at, std::string* word) {
    std::size_t count = 0;
    while (*at < line.size() && line[*at] == '\\') {
        ++count;
        ++*at;
    }
    const bool beforeQuote = *at < line.size() && line[*at] == '"';
    word->append(beforeQuote ? count / 2 : count, '\\');
    return beforeQuote && count % 2 != 0;
}

std::string takeArgument(std::string_view line, std::size_t* at) {
    std::string word;
    bool quoted = false;
    while (*at < line.size()) {
        const char c = line[*at];
        if (!quoted && BLANKS.find(c) != std::string_view::npos) {
            break;
        }
        if (c == '\\') {
            if (takeBackslashes(line, at, &word)) {
                word += line[(*at)++];
            }
            continue;
        }
        ++*at;
        if (c != '"') {
            word += c;
        } else if (quoted && *at < line.size() && line[*at] == '"') {
            word += line[(*at)++];
        } else {
            quoted = !quoted;
        }
    }
    return word;
}

std::string quoted(const std::string& word) {
    if (!word.empty() && word.find_first_of(" \t\"") == std::string::npos) {
        return word;
    }
    std::string text = "\"";
    std::size_t backslashes = 0;
    for (const char c : word) {
        if (c == '"') {
            text.append(backslashes + 1, '\\');
        }
        backslashes = c == '\\' ? backslashes + 1 : 0;
        text += c;
    }
    text.append(backslashes, '\\');
    return text + '"';
}

}  // namespace

std::vector<std::string> splitCommandLine(std::string_view line) {
    std::vector<std::string> words(1);
    std::size_t at = endOfProgram(line, &words[0]);
    for (;;) {
        at = line.find_first_not_of(BLANKS, at);
        if (at == std::string_view::npos) {
            return words;
        }
        words.push_back(takeArgument(line, &at));
    }
}

std::string_view tailOf(std::string_view line) {
    line.remove_prefix(endOfProgram(line, nullptr));
    const std::size_t start = line.find_first_not_of(BLANKS);
    return start == std::string_view::npos ? std::string_view{} : line.substr(start);
}

std::string joinCommandLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + quoted(word);
    }
    return line;
}

}  // namespace juntora::kernel
