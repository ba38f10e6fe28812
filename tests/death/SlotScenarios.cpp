// The block of slots: opened, and slots of it taken and given back.
#include <cstring>
#include <string>

#include "ipc/ipc.h"
#include "platform/kernel/sync.h"
#include "tests/death/LayerScenario.h"
#include "tests/death/SlotWatch.h"
#include "tests/death/scenarios.h"

namespace juntora::test {
namespace {

LPARAM offsetOf(int slot) {
    return static_cast<LPARAM>(offsetof(IpcSlotBlock, slots) + sizeof(IpcMessage) * slot);
}

}  // namespace

int reclaimSlots(Findings& findings) {
    int taken = 0;
    HANDLE mapping = CreateFileMappingA(sizeof(IpcSlotBlock), IPC_BLOCK_NAME);
    auto* block = static_cast<IpcSlotBlock*>(MapViewOfFile(mapping, sizeof(IpcSlotBlock)));
    if (!findings.expect(block != nullptr, "the block cannot be opened")) {
        return taken;
    }
    for (int slot = 0; slot < 64; ++slot) {
        const std::uint8_t flag = block->isFree[slot];
        findings.expect(flag <= 1, "a slot's flag is " + std::to_string(flag));
        if (flag == 0) {
            ++taken;
            ipcMemFree(ipcMemAddress(offsetOf(slot)));
            findings.expect(block->isFree[slot] == 1, "a slot cannot be given back");
        }
    }
    UnmapViewOfFile(block);
    CloseHandle(mapping);
    return taken;
}

namespace {

/// The lowest slot can be taken.
void checkTaking(Findings& findings) {
    IpcMessage* slot = ipcMemAlloc(sizeof(IpcMessage));
    if (findings.expect(slot != nullptr, "no slot can be taken")) {
        findings.expect(ipcMemOffset(slot) == offsetOf(0),
                        "the slot at " + std::to_string(ipcMemOffset(slot)) + " was taken");
        ipcMemFree(slot);
    }
}

/// The block is the survivor's too.
class TakingSlot : public LayerScenario {
public:
    std::string name() const override { return "takingAndFreeingASlot"; }
    void settle() override {
        LayerScenario::settle();
        ipcMemOpen();
    }
    void prepare() override {
        LayerScenario::prepare();
        ipcMemOpen();
    }
    void operate() override {
        IpcMessage* slot = ipcMemAlloc(sizeof(IpcMessage));
        slot->text[0] = 'v';
        ipcMemFree(slot);
    }
    void prepareMending() override {
        LayerScenario::prepareMending();
        ipcMemOpen();
    }
    void mend() override { ipcMemFree(ipcMemAlloc(sizeof(IpcMessage))); }

protected:
    void look(Findings& findings) override {
        const int taken = reclaimSlots(findings);
        const int dead = board->mender != 0 ? 2 : 1;
        findings.expect(taken <= dead, std::to_string(taken) + " slots are taken");
        checkTaking(findings);
    }
};

/// The block is the victim's alone; with it goes what it has left in there.
class OpeningBlock : public LayerScenario {
public:
    std::string name() const override { return "openingTheBlock"; }
    void operate() override {
        ipcMemOpen();
        ipcMemAlloc(sizeof(IpcMessage));
        ipcMemClose();
    }
    void mend() override {
        ipcMemOpen();
        ipcMemAlloc(sizeof(IpcMessage));
    }

protected:
    void look(Findings& findings) override {
        if (findings.expect(ipcMemOpen() != 0, "the block cannot be opened")) {
            const int taken = reclaimSlots(findings);
            findings.expect(taken == 0,
                            "a new block has " + std::to_string(taken) + " slots taken");
            checkTaking(findings);
        }
        ipcMemClose();
    }
};

const Registration<TakingSlot, OpeningBlock> registration;

}  // namespace
}  // namespace juntora::test
