#include "platform/kernel/ProgramSearch.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "platform/files/ModuleFile.h"
#include "platform/files/PathSyntax.h"
#include "platform/kernel/CommandLine.h"
#include "platform/kernel/process.h"
#include "platform/messages.h"

namespace juntora::kernel {
namespace {

constexpr std::string_view BLANKS = " \t";

/// A file that can be run, or what speaks against it.
struct Found {
    std::string file;
    DWORD error = ERROR_FILE_NOT_FOUND;
};

/// The program at `path`, or at what is left of it without the extension.
Found programAt(const std::string& path) {
    const files::Located file = files::locateModule(path);
    if (file.error != 0) {
        return {"", file.error};
    }
    const bool canRun = S_ISREG(file.state.stx_mode) && access(file.path.c_str(), X_OK) == 0;
    return canRun ? Found{file.path, 0} : Found{"", ERROR_ACCESS_DENIED};
}

std::string ownFolder() {
    char path[4096];
    const std::string own(path, GetModuleFileNameA(path, sizeof path));
    return own.substr(0, own.rfind('/') + 1);
}

/// Those along PATH, behind the ones given.
std::vector<std::string> withFoldersOfPath(std::vector<std::string> folders) {
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

Found programIn(const std::vector<std::string>& folders, const std::string& word) {
    Found best;
    for (const std::string& folder : folders) {
        Found found = programAt(folder + word);
        if (!found.file.empty()) {
            return found;
        }
        // What is there and cannot be run is worth more than that it is nowhere else.
        if (found.error == ERROR_ACCESS_DENIED) {
            best = found;
        }
    }
    return best;
}

Found programNamed(const std::string& word) {
    if (word.empty()) {
        return {};
    }
    if (files::hasDrive(word) || word.find_first_of(files::SEPARATORS) != std::string::npos) {
        return programAt(word);
    }
    return programIn(withFoldersOfPath({ownFolder(), ""}), word);
}

}  // namespace

ProgramStart findProgram(std::string_view line) {
    const std::string text(line);
    std::vector<std::string> words = splitCommandLine(line);
    const Found first = programNamed(words[0]);
    if (!first.file.empty()) {
        return {first.file, words, text, 0};
    }
    const std::size_t start = line.find_first_not_of(BLANKS);
    const bool isQuoted = start == std::string_view::npos || line[start] == '"';
    std::size_t end = isQuoted ? line.size() : line.find_first_of(BLANKS, start);
    while (end < line.size()) {
        const std::size_t next = line.find_first_not_of(BLANKS, end);
        end = next == std::string_view::npos ? next : line.find_first_of(BLANKS, next);
        const std::string name(line.substr(0, end));
        if (next == std::string_view::npos || name.find('"') != std::string::npos) {
            break;
        }
        const Found found = programNamed(name);
        if (!found.file.empty()) {
            std::string quotedLine = '"' + name + '"' + text.substr(name.size());
            return {found.file, splitCommandLine(quotedLine), quotedLine, 0};
        }
    }
    return {"", words, text, first.error};
}

std::string programOnPath(const std::string& name) {
    return programIn(withFoldersOfPath({}), name).file;
}

}  // namespace juntora::kernel
