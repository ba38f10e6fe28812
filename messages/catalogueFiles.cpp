#include "messages/catalogueFiles.h"

#include <algorithm>
#include <vector>

#include "messages/Catalogue.h"
#include "messages/NvMessageManager.h"
#include "platform/files/installRoot.h"
#include "platform/files/status.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constexpr char FOLDER_VARIABLE[] = "JUNTORA_CATALOGUES";
constexpr char TABLE_FILE[] = "modules.txt";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::string_view BLANKS = " \t\r";

/// Each ends in a separator.
std::vector<std::string> catalogueFolders() {
    std::vector<std::string> folders;
    if (const std::string root = InstallRoot(); !root.empty()) {
        folders.push_back(root + "/share/" + NvMrdUtil::product() + "/catalogues/");
    }
    const char* named = GetEnvironment(FOLDER_VARIABLE);
    if (named && *named != '\0') {
        folders.push_back(std::string(named) + "/");
    }
    return folders;
}

/// False if the file cannot be read, with what is wrong.
bool readFile(const std::string& path, std::string* bytes, std::string* why) {
    FileStatus status{};
    if (!ReadFileStatus(path.c_str(), &status) || status.kind != FileKind::REGULAR) {
        *why = path + ": this is not a file that can be read. Put one in its place.";
        return false;
    }
    if (status.size > static_cast<std::int64_t>(Catalogue::LARGEST_FILE)) {
        *why = path + ": the file is larger than " + std::to_string(Catalogue::LARGEST_FILE >> 20) +
               " MiB, which is more than is read. Divide it.";
        return false;
    }
    bytes->resize(static_cast<std::size_t>(status.size));
    const long got = ReadFileStart(path.c_str(), bytes->data(), bytes->size());
    bytes->resize(static_cast<std::size_t>(std::max(got, 0L)));
    if (got < 0) {
        *why = path + ": the file may not be read. Check its permissions.";
    }
    return got >= 0;
}

std::string_view takeWord(std::string_view* line) {
    line->remove_prefix(std::min(line->find_first_not_of(BLANKS), line->size()));
    const std::string_view word = line->substr(0, line->find_first_of(BLANKS));
    line->remove_prefix(word.size());
    return word;
}

std::string notFound(const std::string& what) {
    std::string folders;
    for (const std::string& folder : catalogueFolders()) {
        folders += (folders.empty() ? "" : " or ") + folder;
    }
    if (folders.empty()) {
        return "The " + what +
               " was not looked for: the program lies outside of an installation. Name the "
               "installation in JUNTORA_ROOT, or the catalogues' folder in " +
               FOLDER_VARIABLE + ".";
    }
    return "The " + what + " is not in " + folders + ". Install it there, or name its folder in " +
           FOLDER_VARIABLE + ".";
}

void readRows(std::string_view table,
              const std::function<void(std::string_view, std::string_view)>& row) {
    table.remove_prefix(table.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0);
    while (!table.empty()) {
        std::string_view line = table.substr(0, table.find('\n'));
        table.remove_prefix(std::min(line.size() + 1, table.size()));
        line = line.substr(0, line.find('#'));
        const std::string_view module = takeWord(&line);
        for (std::string_view file = takeWord(&line); !file.empty(); file = takeWord(&line)) {
            row(module, file);
        }
    }
}

}  // namespace

std::string readCatalogueFile(const std::string& name, std::string* bytes, std::string* path) {
    if (name.find_first_of("/\\") != std::string::npos) {
        return name + ": a catalogue is named by its file alone, without a folder.";
    }
    for (const std::string& folder : catalogueFolders()) {
        *path = folder + name;
        if (GetFileAttributesA(path->c_str()) != INVALID_FILE_ATTRIBUTES) {
            std::string why;
            readFile(*path, bytes, &why);
            return why;
        }
    }
    return notFound("message catalogue " + name);
}

std::string readModuleTable(const std::function<void(std::string_view, std::string_view)>& row) {
    std::string failures;
    bool isThere = false;
    for (const std::string& folder : catalogueFolders()) {
        const std::string path = folder + TABLE_FILE;
        std::string table;
        std::string why;
        if (readFile(path, &table, &why)) {
            isThere = true;
            readRows(table, row);
        } else if (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES) {
            failures += why + "\n";
        }
    }
    return isThere || !failures.empty()
               ? failures
               : notFound(std::string("table of message catalogues, ") + TABLE_FILE + ",");
}

}  // namespace juntora
