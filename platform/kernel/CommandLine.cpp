#include "platform/kernel/CommandLine.h"

#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "platform/files/HostPath.h"
#include "platform/files/PathSyntax.h"

namespace juntora::kernel {
namespace {

constexpr std::string_view BLANKS = " \t";
constexpr char PROGRAM_EXTENSION[] = ".exe";
constexpr std::size_t EXTENSION_LENGTH = sizeof PROGRAM_EXTENSION - 1;

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

bool isProgram(const files::Located& file) {
    return file.error == 0 && S_ISREG(file.state.stx_mode) && access(file.path.c_str(), X_OK) == 0;
}

bool endsInExtension(const std::string& name) {
    return name.size() > EXTENSION_LENGTH &&
           strcasecmp(name.c_str() + name.size() - EXTENSION_LENGTH, PROGRAM_EXTENSION) == 0;
}

/// The program at `path`, or at what is left of it without the extension; empty if there is none.
std::string programAt(const std::string& path) {
    const files::Located file = files::locate(path);
    if (isProgram(file)) {
        return file.path;
    }
    return endsInExtension(path) ? programAt(path.substr(0, path.size() - EXTENSION_LENGTH)) : "";
}

std::string ownFolder() {
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    const std::string own(path, length > 0 ? static_cast<std::size_t>(length) : 0);
    return own.substr(0, own.rfind('/') + 1);
}

std::vector<std::string> searchFolders() {
    std::vector<std::string> folders{ownFolder(), ""};
    const char* path = std::getenv("PATH");
    std::string_view rest = path == nullptr ? "" : path;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (end > 0) {
            folders.push_back(std::string(rest.substr(0, end)) + "/");
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
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

std::string findProgram(const std::string& word) {
    if (word.empty() || files::hasDrive(word) ||
        word.find_first_of(files::SEPARATORS) != std::string::npos) {
        return programAt(word);
    }
    for (const std::string& folder : searchFolders()) {
        std::string found = programAt(folder + word);
        if (!found.empty()) {
            return found;
        }
    }
    return "";
}

}  // namespace juntora::kernel
