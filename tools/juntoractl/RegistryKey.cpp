#include "tools/juntoractl/RegistryKey.h"

#include <algorithm>
#include <cctype>

#include "platform/messages.h"

namespace juntora {
namespace {

const struct {
    const char* shortName;
    const char* name;
    HKEY key;
} ROOTS[] = {
    {"HKCU", "HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKLM", "HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {"HKCR", "HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
};

std::string inCapitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

std::string withoutOuterSeparators(const std::string& path) {
    const std::size_t first = path.find_first_not_of('\\');
    return first == std::string::npos ? ""
                                      : path.substr(first, path.find_last_not_of('\\') - first + 1);
}

}  // namespace

bool parseKeyName(const std::string& text, KeyName* name) {
    std::string key = text;
    if (key.find('\\') == std::string::npos) {
        std::replace(key.begin(), key.end(), '/', '\\');
    }
    const std::size_t end = std::min(key.find('\\'), key.size());
    const std::string root = inCapitals(key.substr(0, end));
    for (const auto& each : ROOTS) {
        if (root == each.shortName || root == each.name) {
            *name = {each.key, each.shortName, withoutOuterSeparators(key.substr(end))};
            return true;
        }
    }
    return false;
}

OpenRegistryKey::~OpenRegistryKey() {
    if (m_key != nullptr) {
        RegCloseKey(m_key);
    }
}

std::string registryErrorText(DWORD error) {
    const auto meaning = [&]() -> const char* {
        switch (error) {
            case ERROR_FILE_NOT_FOUND:
                return "not found";
            case ERROR_ACCESS_DENIED:
                return "access denied";
            case ERROR_INVALID_PARAMETER:
                return "a name of more than 255 bytes, or a value of more than 1 MiB";
            case ERROR_LOCK_FAILED:
                return "locked by another program";
            case ERROR_KEY_DELETED:
                return "deleted meanwhile";
            case ERROR_DISK_FULL:
                return "no room left";
            case ERROR_BADDB:
                return "the registry's file is damaged";
            case ERROR_NOT_REGISTRY_FILE:
                return "the file is no registry of this version";
            default:
                return "the system failed";
        }
    };
    return std::string(meaning()) + " (error " + std::to_string(error) + ")";
}

}  // namespace juntora
