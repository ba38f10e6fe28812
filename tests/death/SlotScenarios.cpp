// The block of slots: opened, and slots of it taken and given back.
#include <cstring>
#include <memory>
#include <string>

#include "ipc/ipc.h"
#include "platform/kernel/sync.h"
#include "tests/death/LayerScenario.h"
#include "tests/death/SlotWatch.h"
#include "tests/death/scenarios.h"

namespace juntora::test {

TakenSlots countAndReclaimSlots(Findings& findings) {
    TakenSlots taken;
    HANDLE mapping = CreateFileMappingA(sizeof(IpcSlotBlock), IPC_BLOCK_NAME);
    auto* block = static_cast<IpcSlotBlock*>(MapViewOfFile(mapping, sizeof(IpcSlotBlock)));
    if (!findings.expect(block != nullptr, "the block cannot be opened")) {
        return taken;
    }
    taken.lowestFree = -1;
    for (int slot = 0; slot < 64; ++slot) {
        const std::uint8_t flag = block->isFree[slot];
        findings.expect(flag <= 1, "a slot's flag is " + std::to_string(flag));
        if (flag != 0 && taken.lowestFree < 0) {
            taken.lowestFree = slot;
        }
        if (flag == 0) {
            ++taken.count;
            ipcMemFree(ipcMemAddress(static_cast<LPARAM>(offsetof(IpcSlotBlock, slots)) +
                                     slot * static_cast<LPARAM>(sizeof(IpcMessage))));
            findings.expect(block->isFree[slot] == 1, "a slot cannot be given back");
        }
    }
    UnmapViewOfFile(block);
    CloseHandle(mapping);
    return taken;
}

namespace {

LPARAM offsetOf(int slot) {
    return static_cast<LPARAM>(offsetof(IpcSlotBlock, slots) + sizeof(IpcMessage) * slot);
}

/// A slot that can be taken is the lowest free one.
void checkTaking(Findings& findings, int expected) {
    IpcMessage* slot = ipcMemAlloc(sizeof(IpcMessage));
    if (findings.expect(slot != nullptr, "no slot can be taken")) {
        findings.expect(ipcMemOffset(slot) == offsetOf(expected),
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
        const TakenSlots taken = countAndReclaimSlots(findings);
        const int dead = board->mender != 0 ? 2 : 1;
        findings.expect(taken.count <= dead, std::to_string(taken.count) + " slots are taken");
        checkTaking(findings, 0);
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
            const TakenSlots taken = countAndReclaimSlots(findings);
            findings.expect(taken.count == 0,
                            "a new block has " + std::to_string(taken.count) + " slots taken");
            checkTaking(findings, 0);
        }
        ipcMemClose();
    }
};

}  // namespace

void addSlotScenarios(Scenarios& all) {
    all.push_back([] { return std::make_unique<TakingSlot>(); });
    all.push_back([] { return std::make_unique<OpeningBlock>(); });
}

}  // namespace juntora::test
