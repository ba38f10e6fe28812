// The application's settings.
#include <cstring>
#include <string>

#include "framework/CWinApp.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

std::string sectionKey(const char* section) {
    return std::string(PROFILES_KEY) + "\\" + static_cast<const char*>(AfxGetAppName()) + "\\" +
           section;
}

}  // namespace

CString CWinApp::GetProfileString(const char* section, const char* entry,
                                  const char* standard) const {
    std::string value;
    const DWORD error = ReadRegistryText(HKEY_CURRENT_USER, sectionKey(section), entry, &value);
    return error == ERROR_SUCCESS ? CString(value) : CString(standard);
}

bool CWinApp::WriteProfileString(const char* section, const char* entry, const char* value) {
    HKEY key{};
    if (RegCreateKeyA(HKEY_CURRENT_USER, sectionKey(section).c_str(), &key) != ERROR_SUCCESS) {
        return false;
    }
    const DWORD error =
        RegSetValueExA(key, entry, REG_SZ, value, static_cast<DWORD>(std::strlen(value) + 1));
    RegCloseKey(key);
    return error == ERROR_SUCCESS;
}

}  // namespace juntora
