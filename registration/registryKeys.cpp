#include "registration/registryKeys.h"

#include <cstring>

namespace juntora {

int setKeyDefaultValue(HKEY root, const char* key, const char* value) {
    HKEY open{};
    if (RegOpenKeyExA(root, key, KEY_QUERY_VALUE | KEY_SET_VALUE, &open) != ERROR_SUCCESS &&
        RegCreateKeyA(root, key, &open) != ERROR_SUCCESS) {
        return 0;
    }
    const DWORD error =
        RegSetValueExA(open, nullptr, REG_SZ, value, static_cast<DWORD>(std::strlen(value) + 1));
    RegCloseKey(open);
    return error == ERROR_SUCCESS ? 1 : 0;
}

int setUserKeyDefaultValue(const char* key, const char* value) {
    return setKeyDefaultValue(HKEY_CURRENT_USER, key, value);
}

int deleteKeyTree(HKEY root, const char* keyPath) {
    const DWORD error = RegDeleteTreeA(root, keyPath);
    return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND ? 1 : 0;
}

}  // namespace juntora
