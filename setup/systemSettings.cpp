#include "setup/systemSettings.h"

#include <cstring>
#include <string_view>

#include "platform/files/paths.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

constexpr char VERSION_KEY[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr std::size_t SETTING_SIZE = 80;
constexpr WORD TITLE_SIZE = 260;

std::string versionSetting(const char* name) {
    std::string text;
    ReadRegistryText(HKEY_LOCAL_MACHINE, VERSION_KEY, name, &text);
    return text.size() < SETTING_SIZE ? text : "";
}

}  // namespace

bool ExtensionIsShown(const char* extension) {
    const std::string_view given(extension);
    std::string name = "filename";
    name.append(given.starts_with('.') ? "" : ".").append(given);
    char title[TITLE_SIZE];
    return GetFileTitleA(name.c_str(), title, TITLE_SIZE) == 0 && std::strlen(title) == name.size();
}

std::string GetRegisteredOrganization() { return versionSetting("RegisteredOrganization"); }
std::string GetRegisteredOwner() { return versionSetting("RegisteredOwner"); }

}  // namespace juntora
