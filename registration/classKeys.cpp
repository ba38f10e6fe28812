#include "registration/classKeys.h"

#include <cstring>

#include "common/CaseBlind.h"
#include "common/PerUserRegistration.h"
#include "registration/paths.h"
#include "registration/registryKeys.h"

namespace juntora {
namespace {

constexpr char CLASSES[] = "Software\\Classes\\CLSID\\{";

/// The default value of a subkey without its double quotes; empty where it cannot be read.
std::string readServerPath(HKEY classKey, const char* serverKey) {
    HKEY key{};
    if (RegOpenKeyExA(classKey, serverKey, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) {
        return "";
    }
    char value[4096];
    DWORD size = sizeof value;
    const DWORD error = RegQueryValueExA(key, nullptr, nullptr, value, &size);
    RegCloseKey(key);
    std::string path(value, error == ERROR_SUCCESS ? strnlen(value, size) : 0);
    std::erase(path, '"');
    return path;
}

bool areSame(const std::string& left, const std::string& right) {
    return !left.empty() && equalCaseBlind(left, right);
}

bool leadToOneFile(const std::string& path, const std::string& value) {
    return areSame(fullPath(path), fullPath(value)) || areSame(ownPath(path), ownPath(value));
}

ClassPlace placeOf(HKEY root, const std::string& name, const char* serverKey, const char* path) {
    HKEY classKey{};
    const DWORD error = RegOpenKeyExA(root, name.c_str(), KEY_QUERY_VALUE, &classKey);
    if (error != ERROR_SUCCESS) {
        return error == ERROR_FILE_NOT_FOUND ? ClassPlace::NOWHERE : ClassPlace::UNREADABLE;
    }
    const std::string value = readServerPath(classKey, serverKey);
    RegCloseKey(classKey);
    return leadToOneFile(path, value) ? ClassPlace::HERE : ClassPlace::ELSEWHERE;
}

}  // namespace

ClassScope classScope() {
    return IsUserAdministrator() ? ClassScope{HKEY_LOCAL_MACHINE, "admin"}
                                 : ClassScope{HKEY_CURRENT_USER, "user"};
}

std::string classKeyOf(const std::string& classId) { return CLASSES + classId + "}"; }

int isRegisteredAt(const char* classId, const char* serverKey, const char* path) {
    const HKEY root = classScope().root;
    const std::string name = classKeyOf(classId);
    const ClassPlace place = placeOf(root, name, serverKey, path);
    if (place == ClassPlace::ELSEWHERE) {
        deleteKeyTree(root, name.c_str());
    }
    return place == ClassPlace::HERE ? 1 : 0;
}

ClassPlace findClass(const char* classId, const char* serverKey, const char* path) {
    PerUserRegistrationOn();
    const ClassPlace place =
        placeOf(HKEY_CLASSES_ROOT, std::string("CLSID\\{") + classId + "}", serverKey, path);
    PerUserRegistrationOff();
    return place;
}

}  // namespace juntora
