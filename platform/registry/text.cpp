// Values that are texts, in one go.
#include <algorithm>

#include "platform/messages.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

DWORD readText(HKEY key, const char* name, std::string* text) {
    DWORD size = 0;
    DWORD type = 0;
    if (const DWORD error = RegQueryValueExA(key, name, &type, nullptr, &size)) {
        return error;
    }
    text->resize(size);
    // Another program may write the value between the two looks.
    DWORD error = RegQueryValueExA(key, name, &type, text->data(), &size);
    if (error == ERROR_SUCCESS && type != REG_SZ) {
        error = ERROR_FILE_NOT_FOUND;
    }
    text->resize(error == ERROR_SUCCESS ? std::min(text->find('\0'), text->size()) : 0);
    return error;
}

}  // namespace

DWORD ReadRegistryText(HKEY key, const std::string& path, const char* name, std::string* text) {
    text->clear();
    HKEY open{};
    if (const DWORD error = RegOpenKeyExA(key, path.c_str(), KEY_QUERY_VALUE, &open)) {
        return error;
    }
    const DWORD error = readText(open, name, text);
    RegCloseKey(open);
    return error;
}

}  // namespace juntora
