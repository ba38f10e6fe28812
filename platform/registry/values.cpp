// Values, and the names of values and of subkeys one after the other.
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "platform/registry/KeyHandles.h"
#include "platform/registry/registry.h"

namespace juntora {

using registry::Listing;
using registry::OpenKey;

namespace {

/// The key, if the handle allows the access and the name is none that no value can have.
DWORD keyFor(HKEY handle, REGSAM access, const char* name, OpenKey::Pointer* key) {
    *key = registry::keyOf(handle);
    if (*key == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if (!(*key)->allows(access)) {
        return ERROR_ACCESS_DENIED;
    }
    const bool isTooLong = name != nullptr && std::strlen(name) > registry::MAX_VALUE_NAME;
    return isTooLong ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
}

std::string_view textOf(const char* name) { return name == nullptr ? "" : name; }

DWORD readName(OpenKey& key, Listing listing, DWORD index, std::string* name) {
    registry::Cursor cursor = registry::cursorOf(key, listing);
    const DWORD error = key.readName(listing, index, &cursor, name);
    registry::keepCursor(key, listing, std::move(cursor));
    return error;
}

DWORD giveName(const std::string& found, char* name, DWORD* length) {
    if (found.size() >= *length) {
        return ERROR_MORE_DATA;
    }
    std::memcpy(name, found.c_str(), found.size() + 1);
    *length = static_cast<DWORD>(found.size());
    return ERROR_SUCCESS;
}

}  // namespace

DWORD RegEnumKeyExA(HKEY key, DWORD index, char* name, DWORD* length) {
    OpenKey::Pointer open;
    if (const DWORD error = keyFor(key, KEY_ENUMERATE_SUB_KEYS, nullptr, &open)) {
        return error;
    }
    if (name == nullptr || length == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    std::string found;
    const DWORD error = readName(*open, Listing::KEYS, index, &found);
    return error == ERROR_SUCCESS ? giveName(found, name, length) : error;
}

DWORD RegQueryValueExA(HKEY key, const char* name, DWORD* type, void* data, DWORD* size) {
    OpenKey::Pointer open;
    if (const DWORD error = keyFor(key, KEY_QUERY_VALUE, name, &open)) {
        return error;
    }
    if (data != nullptr && size == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    return open->readValue(textOf(name), {type, data, size});
}

DWORD RegSetValueExA(HKEY key, const char* name, DWORD type, const void* data, DWORD size) {
    OpenKey::Pointer open;
    if (const DWORD error = keyFor(key, KEY_SET_VALUE, name, &open)) {
        return error;
    }
    if ((data == nullptr && size > 0) || size > registry::MAX_VALUE_BYTES) {
        return ERROR_INVALID_PARAMETER;
    }
    return open->writeValue(textOf(name), type, data, size);
}

DWORD RegDeleteValueA(HKEY key, const char* name) {
    OpenKey::Pointer open;
    const DWORD error = keyFor(key, KEY_SET_VALUE, name, &open);
    return error == ERROR_SUCCESS ? open->removeValue(textOf(name)) : error;
}

DWORD RegEnumValueA(HKEY key, DWORD index, char* name, DWORD* length, DWORD* type, void* data,
                    DWORD* size) {
    OpenKey::Pointer open;
    if (const DWORD error = keyFor(key, KEY_QUERY_VALUE, nullptr, &open)) {
        return error;
    }
    if (name == nullptr || length == nullptr || (data != nullptr && size == nullptr)) {
        return ERROR_INVALID_PARAMETER;
    }
    std::string found;
    DWORD error = ERROR_FILE_NOT_FOUND;
    while (error == ERROR_FILE_NOT_FOUND) {  // Deleted since its name was read: on to the next.
        error = readName(*open, Listing::VALUES, index, &found);
        if (error == ERROR_SUCCESS) {
            error = open->readValue(found, {type, data, size});
        }
    }
    // The name comes last, so that it is untouched where the data did not fit.
    return error == ERROR_SUCCESS ? giveName(found, name, length) : error;
}

}  // namespace juntora
