#include "platform/files/privateProfile.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/LockedFile.h"
#include "platform/files/ProfileText.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

using files::ProfileText;

constexpr std::size_t LARGEST_FILE = std::size_t{256} << 20;

const char* orEmpty(const char* text) { return text == nullptr ? "" : text; }

/// False, with the error set, for a file that has nothing to be read.
bool readProfile(const char* file, std::string* text) {
    if (!ReadWholeFile(orEmpty(file), LARGEST_FILE, text)) {
        return false;
    }
    if (ProfileText(*text).isWide()) {
        SetLastError(ERROR_INVALID_DATA);
        return false;
    }
    return true;
}

/// Writes as much as there is room for in front of `closing` NULs, of which a room of 1 byte has
/// but one. Returns how much.
DWORD writeOut(std::string_view text, DWORD closing, char* buffer, DWORD capacity) {
    const std::size_t length =
        std::min<std::size_t>(text.size(), capacity - std::min(closing, capacity));
    if (length < text.size()) {
        SetLastError(ERROR_MORE_DATA);
    }
    std::memcpy(buffer, text.data(), length);
    std::memset(buffer + length, '\0', std::min<std::size_t>(closing, capacity - length));
    return static_cast<DWORD>(length);
}

DWORD writeNames(const std::vector<std::string_view>& names, char* buffer, DWORD capacity) {
    std::string list;
    for (const std::string_view name : names) {
        list.append(name) += '\0';
    }
    // The last name's own NUL goes where the list is cut.
    return writeOut(list, list.size() < capacity ? 1 : 2, buffer, capacity);
}

DWORD writeStandard(const char* standard, bool isList, char* buffer, DWORD capacity) {
    std::string_view text = orEmpty(standard);
    text = text.substr(0, text.find_last_not_of(" \t") + 1);
    return writeOut(text, isList ? 2 : 1, buffer, capacity);
}

std::string_view withoutBlanksOrEmpty(const char* name) {
    return files::withoutBlanks(orEmpty(name));
}

/// The text with the change; an error for names or a value that cannot be written.
DWORD change(const ProfileText& text, const char* section, const char* key, const char* value,
             std::string* changed) {
    const std::string_view sectionName = withoutBlanksOrEmpty(section);
    const std::string_view keyName = withoutBlanksOrEmpty(key);
    const std::string_view newValue = orEmpty(value);
    if (!ProfileText::isSectionName(sectionName) ||
        (key != nullptr && !ProfileText::isKeyName(keyName)) ||
        newValue.find_first_of("\r\n") != std::string_view::npos) {
        return ERROR_INVALID_PARAMETER;
    }
    if (text.isWide()) {
        return ERROR_INVALID_DATA;
    }
    if (key == nullptr) {
        *changed = text.withoutSection(sectionName);
    } else if (value == nullptr) {
        *changed = text.withoutKey(sectionName, keyName);
    } else {
        *changed = text.withValue(sectionName, keyName, newValue);
    }
    return ERROR_SUCCESS;
}

BOOL result(DWORD error) {
    if (error != ERROR_SUCCESS) {
        SetLastError(error);
    }
    return error == ERROR_SUCCESS;
}

}  // namespace

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* standard,
                               char* buffer, DWORD capacity, const char* file) {
    if (buffer == nullptr || capacity == 0) {
        return 0;
    }
    const bool isList = section == nullptr || key == nullptr;
    std::string text;
    if (!readProfile(file, &text)) {
        return writeStandard(standard, isList, buffer, capacity);
    }
    const ProfileText profile(text);
    if (isList) {
        const std::vector<std::string_view> names =
            section == nullptr ? profile.sections() : profile.keys(section);
        if (!names.empty()) {
            return writeNames(names, buffer, capacity);
        }
    } else if (const auto value = profile.value(section, key)) {
        return writeOut(*value, 1, buffer, capacity);
    }
    SetLastError(ERROR_FILE_NOT_FOUND);
    return writeStandard(standard, isList, buffer, capacity);
}

UINT GetPrivateProfileIntA(const char* section, const char* key, int standard, const char* file) {
    using Limits = std::numeric_limits<int>;
    std::string text;
    if (section == nullptr || key == nullptr || !readProfile(file, &text)) {
        return static_cast<UINT>(standard);
    }
    const auto value = ProfileText(text).value(section, key);
    if (!value) {
        return static_cast<UINT>(standard);
    }
    const std::string_view digits = value->substr(value->starts_with('+') ? 1 : 0);
    int number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ec == std::errc::result_out_of_range) {
        number = digits.starts_with('-') ? Limits::min() : Limits::max();
    }
    return static_cast<UINT>(number);
}

BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value,
                                const char* file) {
    std::string changed;
    // Before anything is made for it.
    if (const DWORD error = change(ProfileText(""), section, key, value, &changed)) {
        return result(error);
    }
    const bool isDeletion = key == nullptr || value == nullptr;
    files::LockedFile locked(orEmpty(file), !isDeletion);
    if (locked.error() == ERROR_FILE_NOT_FOUND && isDeletion) {
        return 1;
    }
    std::string text;
    DWORD error = locked.error();
    error = error == ERROR_SUCCESS ? locked.read(LARGEST_FILE, &text) : error;
    error =
        error == ERROR_SUCCESS ? change(ProfileText(text), section, key, value, &changed) : error;
    if (error == ERROR_SUCCESS && changed != text) {
        error = locked.replace(changed);
    }
    return result(error);
}

}  // namespace juntora
