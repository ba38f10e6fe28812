#include "tests/hub/HubFixture.h"

#include <cstdio>

namespace juntora::test {

HWND HubTest::attach(const std::string& name) {
    const HWND tool = makeTool();
    EXPECT_EQ(send(tool, IPC_SIGN_ON, name + " 117707"), 1) << name;
    return tool;
}

std::string HubTest::hex(HWND window) {
    char text[16];
    std::snprintf(text, sizeof text, "%x", window);
    return text;
}

bool HubTest::allSlotsFree() const {
    std::vector<IpcMessage*> slots(64);
    for (IpcMessage*& slot : slots) {
        slot = ipcMemAlloc(sizeof(IpcMessage));
    }
    const bool allFree = slots.back() != nullptr;
    for (IpcMessage* slot : slots) {
        ipcMemFree(slot);
    }
    return allFree;
}

}  // namespace juntora::test
