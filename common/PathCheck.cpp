#include "common/PathCheck.h"

#include <algorithm>
#include <iterator>

#include "common/CaseBlind.h"
#include "common/PathName.h"
#include "common/PathText.h"
#include "platform/files/drives.h"

namespace juntora {
namespace {

constexpr std::string_view FORBIDDEN_IN_SHORT_NAMES = " []<>:;\"/\\|*+=,?";
constexpr std::string_view FORBIDDEN_IN_LONG_NAMES = "?<>:\"/\\|*";
constexpr char LAST_CONTROL = 31;

constexpr std::size_t LONGEST_BASE = 8;
constexpr std::size_t LONGEST_EXTENSION = 3;
constexpr std::size_t LONGEST_COMPONENT = 255;
constexpr int LONGEST_PATH = 260;
/// Of a file system whose names are short: 8 characters, a dot and 3.
constexpr unsigned long LONGEST_SHORT_NAME = 12;
constexpr DWORD FILE_SYSTEM_CAPACITY = 24;

struct KnownFileSystem {
    std::string_view name;
    int kind;
};
constexpr KnownFileSystem KNOWN_FILE_SYSTEMS[] = {
    {"NTFS", FILE_SYSTEM_NTFS},        {"HPFS", FILE_SYSTEM_HPFS},
    {"FAT32", FILE_SYSTEM_FAT32},      {"NWCOMPA", FILE_SYSTEM_NETWARE},
    {"NWCompat", FILE_SYSTEM_NETWARE}, {"POSIX", FILE_SYSTEM_POSIX},
};

bool isForbidden(char c, std::string_view forbidden) {
    return (c >= 1 && c <= LAST_CONTROL) || forbidden.find(c) != std::string_view::npos;
}

bool holdsForbidden(std::string_view component, std::string_view forbidden) {
    return std::any_of(component.begin(), component.end(),
                       [=](char c) { return isForbidden(c, forbidden); });
}

int refuse(PathError reason, unsigned long* error) {
    if (error != nullptr) {
        *error = reason;
    }
    return 0;
}

}  // namespace

int fileSystemKind(std::string_view name, unsigned long maxComponent) {
    if (equalCaseBlind(name, "FAT") && maxComponent <= LONGEST_SHORT_NAME) {
        return FILE_SYSTEM_FAT_SHORT;
    }
    const auto* const known =
        std::find_if(std::begin(KNOWN_FILE_SYSTEMS), std::end(KNOWN_FILE_SYSTEMS),
                     [=](const auto& each) { return equalCaseBlind(each.name, name); });
    return known == std::end(KNOWN_FILE_SYSTEMS) ? FILE_SYSTEM_FAT_LONG : known->kind;
}

bool isLegalNameCharacter(char c, int kind) {
    return c != '\0' && !isForbidden(c, kind == FILE_SYSTEM_FAT_SHORT ? FORBIDDEN_IN_SHORT_NAMES
                                                                      : FORBIDDEN_IN_LONG_NAMES);
}

bool isLegalPathCharacter(char c, int kind) {
    const bool isBetweenNames = c == '/' || (kind != FILE_SYSTEM_POSIX && (c == '\\' || c == ':'));
    return isBetweenNames || isLegalNameCharacter(c, kind);
}

int checkShortName(std::string_view component, unsigned long* error) {
    if (component.empty()) {
        return -1;
    }
    if (holdsForbidden(component, FORBIDDEN_IN_SHORT_NAMES)) {
        return refuse(PATH_ERROR_CHARACTER, error);
    }
    if (component.front() == '.') {
        return 0;
    }
    const std::string_view base = component.substr(0, component.find('.'));
    const std::string_view extension =
        component.substr(std::min(base.size() + 1, component.size()));
    if (base.size() > LONGEST_BASE) {
        return refuse(PATH_ERROR_LONG_BASE, error);
    }
    if (extension.size() > LONGEST_EXTENSION) {
        return refuse(PATH_ERROR_LONG_EXTENSION, error);
    }
    if (extension.find('.') != std::string_view::npos) {
        return refuse(PATH_ERROR_SECOND_DOT, error);
    }
    return 1;
}

int checkLongName(std::string_view component, unsigned long* error) {
    if (component.empty()) {
        return -1;
    }
    if (holdsForbidden(component, FORBIDDEN_IN_LONG_NAMES)) {
        return refuse(PATH_ERROR_CHARACTER, error);
    }
    return component.size() <= LONGEST_COMPONENT ? 1 : refuse(PATH_ERROR_LONG_COMPONENT, error);
}

int PathName::getVolumeInfo(unsigned long* maxComponent, CString* fileSystem) const {
    if (isEmpty() || maxComponent == nullptr || fileSystem == nullptr) {
        return -1;
    }
    CString start;
    if (isUnc()) {
        getUncRoot(start);
    } else {
        getDrive(start);
    }
    const std::string root = std::string(start).append("\\");
    DWORD longest = 0;
    char name[FILE_SYSTEM_CAPACITY];
    if (GetVolumeInformationA(root.c_str(), &longest, name, sizeof name) == 0) {
        return -1;
    }
    *maxComponent = longest;
    *fileSystem = name;
    return 1;
}

int PathName::checkForVolume(unsigned long* error) const {
    if (isEmpty()) {
        return -1;
    }
    if (length() > LONGEST_PATH) {
        return refuse(PATH_ERROR_LONG_PATH, error);
    }
    unsigned long maxComponent = 0;
    CString fileSystem;
    if (getVolumeInfo(&maxComponent, &fileSystem) != 1) {
        return -1;
    }
    const int kind = fileSystemKind(static_cast<const char*>(fileSystem), maxComponent);
    return checkForKind(kind, error) == 1 ? 1 : 0;
}

int PathName::checkForKind(int kind, unsigned long* error) const {
    if (isEmpty()) {
        return -1;
    }
    PathComponents components(text());
    if (kind != FILE_SYSTEM_POSIX) {
        if (hasDriveLetter() == 0) {
            return 0;
        }
        components.skip(isUnc() ? 2 : 1);
    }
    const auto check = kind == FILE_SYSTEM_FAT_SHORT ? checkShortName : checkLongName;
    while (true) {
        const std::string_view component = components.next();
        if (component.empty()) {
            return 1;
        }
        if (check(component, error) != 1) {
            return 0;
        }
    }
}

}  // namespace juntora
