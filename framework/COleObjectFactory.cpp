#include "framework/COleObjectFactory.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/automation/registration.h"
#include "platform/desktop/message.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

struct Factory {
    GUID classId;
    const char* programId;
    CCmdTarget* (*create)();
    const AFX_DISPMAP* (*describe)();
};

/// Made when the first factory is, whatever the order of the program's static objects.
std::vector<Factory>& factories() {
    static std::vector<Factory> all;
    return all;
}

int g_locks = 0;
bool g_isUserControl = true;

}  // namespace

COleObjectFactory::COleObjectFactory(const GUID& classId, const char* programId,
                                     CCmdTarget* (*create)(), const AFX_DISPMAP* (*describe)()) {
    factories().push_back({classId, programId, create, describe});
}

bool COleObjectFactory::RegisterAll() {
    return std::ranges::all_of(factories(), [](const Factory& factory) {
        return ServeClass({factory.programId,
                           [create = factory.create]() -> IDispatch* {
                               CCmdTarget* object = create();
                               return object != nullptr ? object->GetIDispatch(false) : nullptr;
                           },
                           &factory.describe()->description()});
    });
}

void COleObjectFactory::RevokeAll() { RevokeClasses(); }

bool COleObjectFactory::UpdateRegistryAll(bool add) {
    const std::string program = OwnProgramPath();
    bool isDone = true;
    for (const Factory& factory : factories()) {
        const ClassRegistration registration{factory.classId, factory.programId, program};
        isDone = (add ? RegisterClassOf(registration) : UnregisterClassOf(registration)) && isDone;
    }
    return isDone;
}

bool AfxOleInit() {
    std::string why;
    if (!StartAutomation(&why)) {
        std::fprintf(stderr, "Automation cannot be started: %s.\n", why.c_str());
        return false;
    }
    return true;
}

void AfxOleLockApp() { ++g_locks; }
void AfxOleUnlockApp() {
    if (--g_locks == 0 && !g_isUserControl) {
        PostQuitMessage(0);
    }
}
void AfxOleSetUserCtrl(bool userControl) { g_isUserControl = userControl; }
bool AfxOleCanExitApp() { return g_locks == 0; }

}  // namespace juntora
