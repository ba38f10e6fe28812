// Keys: opening, making, deleting, and the predefined ones.
#include <string>
#include <utility>

#include "platform/registry/KeyHandles.h"
#include "platform/registry/registry.h"

namespace juntora {

using registry::KeyPath;
using registry::OpenKey;

namespace {

DWORD finish(DWORD error, OpenKey::Pointer key, HKEY* result) {
    if (error == ERROR_SUCCESS) {
        *result = registry::addHandle(std::move(key));
    }
    return error;
}

DWORD remove(HKEY key, const char* text, registry::Removal removal) {
    const OpenKey::Pointer from = registry::keyOf(key);
    if (from == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    KeyPath path;
    if (const DWORD error = registry::appendPath(text, &path)) {
        return error;
    }
    return path.empty() ? ERROR_INVALID_PARAMETER : from->remove(path, removal);
}

}  // namespace

DWORD RegOpenKeyExA(HKEY key, const char* path, REGSAM access, HKEY* result) {
    const OpenKey::Pointer from = registry::keyOf(key);
    KeyPath elements;
    OpenKey::Pointer found;
    if (from == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if (result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    if (const DWORD error = registry::appendPath(path, &elements)) {
        return error;
    }
    const DWORD error = from->open(elements, access, &found);
    return finish(error, std::move(found), result);
}

DWORD RegOpenKeyW(HKEY key, const char16_t* path, HKEY* result) {
    const OpenKey::Pointer from = registry::keyOf(key);
    KeyPath elements;
    std::string text;
    if (from == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if (result == nullptr || !registry::toUtf8(path == nullptr ? u"" : path, &text)) {
        return ERROR_INVALID_PARAMETER;
    }
    if (const DWORD error = registry::appendPath(text.c_str(), &elements)) {
        return error;
    }
    OpenKey::Pointer found;
    const DWORD error = from->open(elements, registry::WHAT_CAN_BE_HAD, &found);
    return finish(error, std::move(found), result);
}

DWORD RegCreateKeyExA(HKEY key, const char* path, REGSAM access, HKEY* result, DWORD* disposition) {
    const OpenKey::Pointer from = registry::keyOf(key);
    KeyPath elements;
    if (from == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if (result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    if (const DWORD error = registry::appendPath(path, &elements)) {
        return error;
    }
    OpenKey::Pointer found;
    bool isNew = false;
    const DWORD error = from->create(elements, access, &found, &isNew);
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
