// Values that are texts, in one go.
#include "platform/registry/registry.h"

namespace juntora {

std::string ReadRegistryText(HKEY key, const std::string& path, const char* name) {
    HKEY open{};
    if (RegOpenKeyExA(key, path.c_str(), KEY_QUERY_VALUE, &open) != ERROR_SUCCESS) {
        return "";
    }
    std::string text;
    DWORD size = 0;
    DWORD type = 0;
    DWORD error = RegQueryValueExA(open, name, &type, nullptr, &size);
    if (error == ERROR_SUCCESS && type == REG_SZ) {
        text.resize(size);
        error = RegQueryValueExA(open, name, &type, text.data(), &size);
    }
    RegCloseKey(open);
    // Another program may have written the value between the two looks.
    return error == ERROR_SUCCESS && type == REG_SZ ? std::string(text.c_str()) : "";
}

}  // namespace juntora
