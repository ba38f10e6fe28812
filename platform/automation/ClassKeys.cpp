#include "platform/automation/ClassKeys.h"

#include <algorithm>

#include "platform/registry/registry.h"

namespace juntora::automation {
namespace {

/// Longer than any path or command line that stands there.
constexpr std::size_t LONGEST = 8192;

}  // namespace

std::string readClassText(const std::string& path) {
    HKEY key{};
    if (RegOpenKeyExA(HKEY_CLASSES_ROOT, path.c_str(), KEY_READ, &key) != ERROR_SUCCESS) {
        return "";
    }
    std::string text(LONGEST, '\0');
    DWORD size = LONGEST;
    DWORD type = 0;
    const bool isText =
        RegQueryValueExA(key, nullptr, &type, text.data(), &size) == ERROR_SUCCESS &&
        (type == REG_SZ || type == REG_EXPAND_SZ);
    RegCloseKey(key);
    text.resize(isText ? size : 0);
    text.resize(std::min(text.size(), text.find('\0')));  // Of the value, which may have one.
    return text;
}

bool writeClassText(const std::string& path, const std::string& text) {
    if (!text.empty() && readClassText(path) == text) {
        return true;
    }
    HKEY key{};
    if (RegCreateKeyA(HKEY_CLASSES_ROOT, path.c_str(), &key) != ERROR_SUCCESS) {
        return false;
    }
    const bool isWritten = RegSetValueExA(key, nullptr, REG_SZ, text.c_str(),
                                          static_cast<DWORD>(text.size() + 1)) == ERROR_SUCCESS;
    RegCloseKey(key);
    return isWritten;
}

}  // namespace juntora::automation
