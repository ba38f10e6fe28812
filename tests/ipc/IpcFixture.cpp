#include "tests/ipc/IpcFixture.h"

#include <cstdio>
#include <filesystem>
#include <iterator>

namespace juntora::test {
namespace {

HWND makeWindow() {
    WNDCLASSA description{};
    description.lpfnWndProc = DefWindowProcA;
    description.lpszClassName = "IpcTest";
    RegisterClassA(&description);
    return CreateWindowExA(0, "IpcTest", "tool", WS_POPUP, 0, 0, 0, 0, 0, 0);
}

const IpcSlotBlock* block() {
    return reinterpret_cast<const IpcSlotBlock*>(
        reinterpret_cast<const char*>(ipcMemAddress(offsetof(IpcSlotBlock, slots))) -
        offsetof(IpcSlotBlock, slots));
}

}  // namespace

IpcTest::IpcTest() : m_hub("ipc_fake_hub"), m_hubWindow(0), m_window(makeWindow()) {
    std::sscanf(m_hub.readLine().value_or("").c_str(), "hub %x", &m_hubWindow);
    EXPECT_NE(m_hubWindow, 0U);
    for (const auto& file : std::filesystem::directory_iterator(sandbox().temporaryFolder())) {
        std::filesystem::remove(file);  // Of the tests before, in a process that runs several.
    }
}

IpcTest::~IpcTest() {
    ipcMemClose();
    ipcMessageId = 0;
    ipcSelfId = IPC_NO_IDENTITY;
    DestroyWindow(m_window);
}

void IpcTest::tellHub(const std::string& line) {
    ASSERT_TRUE(m_hub.writeLine(line));
    for (auto told = m_hub.readLine(); told != "ok"; told = m_hub.readLine()) {
        ASSERT_TRUE(told);
        m_told.push_back(*told);
    }
}

SeenRecord IpcTest::seen() {
    SeenRecord record;
    std::string line;
    if (m_told.empty()) {
        line = m_hub.readLine().value_or("");
    } else {
        line = m_told.front();
        m_told.pop_front();
    }
    int textAt = -1;
    std::sscanf(line.c_str(),
                "record %d target %x sender %x reply %d spill %d link %d at %td text %n",
                &record.opcode, &record.target, &record.sender, &record.replyLength,
                &record.spillLength, &record.link, &record.offset, &textAt);
    if (textAt < 0) {
        ADD_FAILURE() << "no record: " << line;
        return {};
    }
    // A blank in the format passes over the text's own first blanks too.
    record.text = line.substr(line.find(" text ") + 6);
    return record;
}

bool IpcTest::isFree(int slot) { return block()->isFree[slot] != 0; }

int IpcTest::freeSlots() {
    int count = 0;
    for (int slot = 0; slot < 64; ++slot) {
        count += isFree(slot) ? 1 : 0;
    }
    return count;
}

int IpcTest::filesLeft() const {
    const std::filesystem::directory_iterator files(sandbox().temporaryFolder());
    return static_cast<int>(std::distance(begin(files), end(files)));
}

}  // namespace juntora::test
