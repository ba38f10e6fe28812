#include "setup/switches.h"

#include <functional>
#include <map>
#include <string>

#include "common/CaseBlind.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

struct DefaultOn {
    const char* name;
    const char* offWord;
};
constexpr DefaultOn DEFAULT_ON[] = {
    {"ENABLE_EXPRESS_CONNECT", "DISABLE_EXPRESS_CONNECT"},
    {"DRAFTEL_ENABLE_AUTO_TRANSACTIONS", "DRAFTEL_DISABLE_AUTO_TRANSACTIONS"},
    {"DRAFTEL_CORRECT_PAGE_READ", "DRAFTEL_OLD_PAGE_READ"},
    {nullptr, nullptr},
};

using Switches = std::map<std::string, bool, std::less<>>;

/// Lives as long as the process: others may ask while static objects go.
constinit Switches* g_switches = nullptr;

Switches* makeSwitches() {
    auto* switches = new Switches;
    for (const DefaultOn* each = DEFAULT_ON; each->name; ++each) {
        switches->emplace(each->name, GetEnvironment(each->offWord) == nullptr);
    }
    return switches;
}

bool isOnByEnvironment(const char* name) {
    const char* value = GetEnvironment(name);
    return value &&
           (equalCaseBlind(value, "TRUE") || equalCaseBlind(value, "YES") || value[0] == '1');
}

}  // namespace

bool isSwitchOn(const char* name) {
    if (!name || *name == '\0') {
        return false;
    }
    if (!g_switches) {
        g_switches = makeSwitches();
    }
    const auto known = g_switches->find(name);
    return known != g_switches->end()
               ? known->second
               : g_switches->emplace(name, isOnByEnvironment(name)).first->second;
}

bool useCurrentMenus() {
    static const bool areCurrent = !isSwitchOn("TARVEX_USE_OLD_MENU_OBSOLETE");
    return areCurrent;
}

}  // namespace juntora
