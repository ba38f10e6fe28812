#include "platform/automation/ClassKeys.h"

#include "platform/registry/registry.h"

namespace juntora::automation {

std::string readClassText(const std::string& path) {
    return ReadRegistryText(HKEY_CLASSES_ROOT, path, nullptr);
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
