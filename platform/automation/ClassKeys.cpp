#include "platform/automation/ClassKeys.h"

#include "platform/registry/registry.h"

namespace juntora::automation {

DWORD readClassText(const std::string& path, std::string* text) {
    return ReadRegistryText(HKEY_CLASSES_ROOT, path, nullptr, text);
}

bool writeClassText(const std::string& path, const std::string& text) {
    std::string now;
    if (readClassText(path, &now) == ERROR_SUCCESS && now == text) {
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
