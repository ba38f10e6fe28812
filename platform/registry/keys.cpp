// Keys: opening, making, deleting, and the predefined ones.
#include <string>
#include <utility>

#include "platform/registry/KeyHandles.h"
#include "platform/registry/registry.h"

namespace juntora {

using registry::KeyPath;
using registry::OpenKey;

namespace {

/// The open key from which a path leads, and the path itself: what every call begins with.
struct Way {
    OpenKey::Pointer from;
    KeyPath path;
};

DWORD findWay(HKEY key, const char* text, Way* way) {
    way->from = registry::keyOf(key);
    return way->from == nullptr ? ERROR_INVALID_HANDLE : registry::appendPath(text, &way->path);
}

DWORD finish(DWORD error, OpenKey::Pointer key, HKEY* result) {
    if (error == ERROR_SUCCESS) {
        *result = registry::addHandle(std::move(key));
    }
    return error;
}

DWORD remove(HKEY key, const char* text, registry::Removal removal) {
    Way way;
    if (const DWORD error = findWay(key, text, &way)) {
        return error;
    }
    return way.path.empty() ? ERROR_INVALID_PARAMETER : way.from->remove(way.path, removal);
}

}  // namespace

DWORD RegOpenKeyExA(HKEY key, const char* path, REGSAM access, HKEY* result) {
    Way way;
    if (const DWORD error = findWay(key, path, &way)) {
        return error;
    }
    if (result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    OpenKey::Pointer found;
    const DWORD error = way.from->open(way.path, access, &found);
    return finish(error, std::move(found), result);
}

DWORD RegOpenKeyW(HKEY key, const char16_t* path, HKEY* result) {
    std::string text;
    const bool isText = registry::toUtf8(path == nullptr ? u"" : path, &text);
    return isText ? RegOpenKeyExA(key, text.c_str(), registry::WHAT_CAN_BE_HAD, result)
                  : ERROR_INVALID_PARAMETER;
}

DWORD RegCreateKeyExA(HKEY key, const char* path, REGSAM access, HKEY* result, DWORD* disposition) {
    Way way;
    if (const DWORD error = findWay(key, path, &way)) {
        return error;
    }
    if (result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    OpenKey::Pointer found;
    bool isNew = false;
    const DWORD error = way.from->create(way.path, access, &found, &isNew);
    if (error == ERROR_SUCCESS && disposition != nullptr) {
        *disposition = isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    }
    return finish(error, std::move(found), result);
}

DWORD RegCreateKeyA(HKEY key, const char* path, HKEY* result) {
    return RegCreateKeyExA(key, path, registry::WHAT_CAN_BE_HAD, result, nullptr);
}

DWORD RegCloseKey(HKEY key) { return registry::closeHandle(key); }

DWORD RegDeleteKeyA(HKEY key, const char* path) {
    return remove(key, path, registry::Removal::KEY_WITHOUT_SUBKEYS);
}

DWORD RegDeleteTreeA(HKEY key, const char* path) {
    return remove(key, path, registry::Removal::TREE);
}

DWORD RegOverridePredefKey(HKEY predefined, HKEY key) {
    OpenKey::Pointer overriding;
    if (key != nullptr && (overriding = registry::keyOf(key)) == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    return registry::overridePredefined(predefined, std::move(overriding));
}

}  // namespace juntora
