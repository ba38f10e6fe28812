#include "registration/userCleanUp.h"

#include <set>

#include "common/PerUserRegistration.h"
#include "platform/automation/guid.h"
#include "registration/registryKeys.h"

namespace juntora {
namespace {

constexpr char FILE_NAME[] = "cleanup.txt";
constexpr char CLASSES[] = "Software\\Classes\\";
constexpr const char* BY_IDENTIFIER[] = {"CLSID", "Interface", "Typelib", "Wow6432Node\\CLSID",
                                         "Wow6432Node\\Interface"};

}  // namespace

std::vector<std::string> CleanUpTable::keys() const {
    std::vector<std::string> keys;
    for (const std::string& identifier : identifiers) {
        for (const char* kind : BY_IDENTIFIER) {
            keys.push_back(std::string(CLASSES) + kind + "\\{" + identifier + "}");
        }
    }
    for (const std::string& name : names) {
        keys.push_back(CLASSES + name);
    }
    return keys;
}

std::string addCleanUpLine(const Words& words, CleanUpTable* table) {
    if (words.size() != 2 || (words[0] != "identifier" && words[0] != "name")) {
        return "a line is \"identifier\" or \"name\", and one word behind it";
    }
    if (words[0] == "identifier") {
        if (!GuidOfText("{" + words[1] + "}")) {
            return "\"" + words[1] + "\" is no identifier of 36 characters without braces";
        }
        table->identifiers.push_back(words[1]);
        return "";
    }
    // "CLSID" or ".sch" would take other programs' with it.
    const std::size_t dot = words[1].find('.');
    if (dot == 0 || dot == words[1].npos || words[1].find('\\') != words[1].npos) {
        return "\"" + words[1] + "\" is no name of a class";
    }
    table->names.push_back(words[1]);
    return "";
}

CleanUpTable readCleanUp() {
    CleanUpTable table;
    table.isWhole =
        readDataFile(FILE_NAME, [&](const Words& words) { return addCleanUpLine(words, &table); });
    return table;
}

DWORD findPresentKeys(const CleanUpTable& table, std::vector<std::string>* present) {
    present->clear();
    std::set<std::string> seen;
    for (const std::string& path : table.keys()) {
        if (!seen.insert(path).second) {
            continue;
        }
        HKEY key{};
        const DWORD error = RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), KEY_QUERY_VALUE, &key);
        if (error == ERROR_SUCCESS) {
            RegCloseKey(key);
            present->push_back(path);
        } else if (error != ERROR_FILE_NOT_FOUND) {
            return error;
        }
    }
    return ERROR_SUCCESS;
}

void deleteKeys(const CleanUpTable& table) {
    for (const std::string& key : table.keys()) {
        deleteKeyTree(HKEY_CURRENT_USER, key.c_str());
    }
}

int cleanUserRegistrations() {
    if (IsUserAdministrator()) {
        deleteKeys(readCleanUp());
    }
    return 1;
}

}  // namespace juntora
