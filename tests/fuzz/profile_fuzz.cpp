// Any bytes as a private-profile file: what a change must do, and what it must leave as it was.
// An input: a section, a key and a value, each ending at a NUL, and the text of the file.
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/files/CaseFolding.h"
#include "platform/files/ProfileText.h"
#include "tests/fuzz/Fuzz.h"

namespace juntora {
namespace {

using files::equalIgnoringCase;
using files::ProfileText;
using Values = std::map<std::pair<std::string, std::string>, std::string>;

/// All that can be read, but for what is in `section`, with a key that of the key alone.
Values valuesBut(const std::string& text, std::string_view section,
                 std::optional<std::string_view> key) {
    const ProfileText profile(text);
    Values values;
    for (const std::string_view each : profile.sections()) {
        for (const std::string_view name : profile.keys(each)) {
            const auto value = profile.value(each, name);
            mustHold(value.has_value(), "a key that is listed has a value");
            if (!equalIgnoringCase(each, section) || (key && !equalIgnoringCase(name, *key))) {
                values[{std::string(each), std::string(name)}] = *value;
            }
        }
    }
    return values;
}

bool hasSection(const std::string& text, std::string_view section) {
    for (const std::string_view each : ProfileText(text).sections()) {
        if (equalIgnoringCase(each, section)) {
            return true;
        }
    }
    return false;
}

/// Whether all of `part` is in `whole`, in order: nothing that was there has gone.
bool isWithin(std::string_view part, std::string_view whole) {
    for (const char c : whole) {
        part.remove_prefix(!part.empty() && part.front() == c ? 1 : 0);
    }
    return part.empty();
}

void checkValue(const std::string& text, std::string_view section, std::string_view key,
                std::string_view value) {
    const std::string after = ProfileText(text).withValue(section, key, value);
    const std::string fresh = ProfileText("").withValue(section, key, value);
    const auto expected = ProfileText(fresh).value(section, key);
    mustHold(expected.has_value(), "a value alone in its file");
    mustHold(ProfileText(after).value(section, key) == expected, "the value that was written");
    mustHold(valuesBut(after, section, key) == valuesBut(text, section, key), "all others");
    mustHold(ProfileText(after).withValue(section, key, value) == after, "written twice");
    if (!ProfileText(text).value(section, key)) {
        mustHold(isWithin(text, after), "what was in the file before");
    }
}

void checkRemoval(const std::string& text, std::string_view section, std::string_view key) {
    const std::string less = ProfileText(text).withoutKey(section, key);
    mustHold(!ProfileText(less).value(section, key), "a key that was deleted");
    mustHold(valuesBut(less, section, key) == valuesBut(text, section, key), "all other keys");
    mustHold(hasSection(less, section) == hasSection(text, section), "the key's section");
    const std::string least = ProfileText(text).withoutSection(section);
    mustHold(!hasSection(least, section), "a section that was deleted");
    mustHold(valuesBut(least, section, std::nullopt) == valuesBut(text, section, std::nullopt),
             "all other sections");
    mustHold(isWithin(less, text) && isWithin(least, text), "a deletion adds nothing");
}

}  // namespace
}  // namespace juntora

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace juntora;
    FuzzInput input(data, size);
    const std::string section = input.text();
    const std::string key = input.text();
    const std::string value = input.text();
    const std::string text = input.rest();

    const ProfileText profile(text);
    profile.value(section, key);
    profile.keys(section);
    if (!profile.isWide() && ProfileText::isSectionName(section) && ProfileText::isKeyName(key) &&
        value.find_first_of("\r\n") == std::string::npos) {
        checkValue(text, section, key, value);
        checkRemoval(text, section, key);
    }
    return 0;
}
