#include "bridge/CAppReg.h"

#include <cstring>

namespace juntora {
namespace {

constexpr char VALUE[] = "CmdLine";
constexpr REGSAM ACCESS = KEY_READ | KEY_WRITE;

}  // namespace

/// Makes what is missing but the first. Null on failure.
HKEY CAppReg::openToolKey(const char* toolKey) {
    HKEY key{};
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "software", ACCESS, &key) != ERROR_SUCCESS) {
        return nullptr;
    }
    for (const char* name : {"Tarvex", "Voltara Juntora", "16.6.0", toolKey}) {
        HKEY next{};
        const DWORD error = RegCreateKeyExA(key, name, ACCESS, &next, nullptr);
        RegCloseKey(key);
        if (error != ERROR_SUCCESS) {
            return nullptr;
        }
        key = next;
    }
    return key;
}

void CAppReg::setCmdLine(const char* toolKey, const char* text) {
    const HKEY key = openToolKey(toolKey);
    if (key == nullptr) {
        return;
    }
    if (text != nullptr) {
        RegSetValueExA(key, VALUE, REG_SZ, text, static_cast<DWORD>(std::strlen(text) + 1));
    } else {
        RegDeleteValueA(key, VALUE);
    }
    RegCloseKey(key);
}

void CAppReg::clearCmdLine(const char* toolKey) { setCmdLine(toolKey, nullptr); }

std::string CAppReg::getCmdLine(const char* toolKey) {
    std::string text;
    ReadRegistryText(HKEY_CURRENT_USER, std::string(SUITE_KEY) + "\\" + toolKey, VALUE, &text);
    return text;
}

}  // namespace juntora
