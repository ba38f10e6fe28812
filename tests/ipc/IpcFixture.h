// A process that is a tool, with a hub in another process that tells what it gets.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {

/// A record as the hub found it in its slot.
struct SeenRecord {
    int opcode = -1;
    HWND target = 0;
    HWND sender = 0;
    int replyLength = 0;
    int spillLength = 0;
    int link = 0;
    LPARAM offset = 0;
    std::string text;
};

class IpcTest : public TestDesktop {
protected:
    IpcTest();
    ~IpcTest() override;

    /// Has the fake hub do something; see fake_hub.cpp.
    void tellHub(const std::string& line);
    /// The next record that the hub got.
    SeenRecord seen();
    /// Opens the block and reaches the hub, as a tool with the test's window.
    void attach() { ASSERT_TRUE(ipcObserve(m_window)); }
    /// Whether the slot of that number can be taken.
    static bool isFree(int slot);
    static int freeSlots();
    int filesLeft() const;

    ChildProcess m_hub;
    HWND m_hubWindow;
    HWND m_window;

private:
    std::deque<std::string> m_told;  ///< Records that came before the answer to a tellHub.
};

}  // namespace juntora::test
