// The hub's answers to requests, and what it carries from tool to tool.
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "hub/HubMessages.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/dialog.h"
#include "tests/hub/HubFixture.h"

namespace juntora {
namespace {

using HubDispatch = test::HubTest;
using Texts = std::vector<std::string>;
using namespace std::string_literals;

TEST_F(HubDispatch, SignOnGivesNumbersNamesAndLines) {
    EXPECT_EQ(m_bHadClient, 0);
    const HWND first = attach("Draftel");
    EXPECT_EQ(std::string(m_record.text), hex(first) + " Draftel;0");
    EXPECT_EQ(m_record.replyLength, static_cast<int>(std::strlen(m_record.text)) + 1);
    EXPECT_EQ(m_bHadClient, 1);
    const HWND second = attach("draftel");
    EXPECT_EQ(std::string(m_record.text), hex(second) + " draftel;1");

    char line[80];
    std::snprintf(line, sizeof line, " Draftel;0   (%04x)           ", first);
    EXPECT_EQ(lines().size(), 2U);
    EXPECT_EQ(lines()[0], line);

    // Room for ten bytes is filled to the last, without a NUL.
    const HWND third = makeTool();
    EXPECT_EQ(send(third, IPC_SIGN_ON, "Sketchel 117707", 10), 1);
    EXPECT_EQ(m_record.replyLength, 10);
    EXPECT_EQ(std::string(m_record.text, 15), (hex(third) + " Sketchel;0").substr(0, 10) + "17707");
    EXPECT_EQ(m_table.findNewest(third, nullptr, false)->toolIndex, -1);
    attach("Kaldo");
    EXPECT_EQ(m_table.findNewest(0, "kaldo", false)->toolIndex, 11);
}

TEST_F(HubDispatch, RefusedSignOnsLeaveNoTrace) {
    const HWND tool = makeTool();
    // The longest name whose answer still has room.
    const std::string fits(80 - hex(tool).size() - std::strlen(" ;0") - 1, 'n');
    for (const std::string& text :
         {""s, " "s, "Draftel"s, "Draftel 117706"s, "117707"s, "Draftel x117707"s,
          "Draftel 1177070000000"s, "Draftel Two 117707"s, fits + "n 117707",
          std::string(990, 'x') + " 117707", std::string(1003, '%')}) {
        EXPECT_EQ(send(tool, IPC_SIGN_ON, text), 0) << text;
        EXPECT_EQ(std::string(m_record.text, sizeof m_record.text).substr(0, text.size()), text);
        EXPECT_EQ(m_record.replyLength, 60);
    }
    for (const HWND nobody : {HWND{0}, ~HWND{0}}) {
        EXPECT_EQ(send(nobody, IPC_SIGN_ON, "Draftel 117707"), 0);
    }
    EXPECT_EQ(send(tool, IPC_SIGN_ON, "Draftel 117707", -1), 0);
    EXPECT_EQ(m_table.count(), 0);
    EXPECT_EQ(lines(), Texts());
    EXPECT_EQ(m_bHadClient, 0);

    for (const std::string& name : {fits, "%s%n%x"s, "a;b;"s, "\xFF\xE4;"s, "\"(*"s}) {
        EXPECT_EQ(send(tool, IPC_SIGN_ON, name + " 117707", 1000), 1) << name;
        EXPECT_EQ(m_record.text, hex(tool) + ' ' + name + ";0");
        EXPECT_EQ(send(tool, IPC_FIND_APP, name + ";0", 2), static_cast<int>(tool));
    }
    EXPECT_EQ(lines().size(), 5U);
    EXPECT_EQ(send(tool, IPC_SIGN_OFF, "", 2), 1);
    EXPECT_EQ(lines(), Texts());
}

TEST_F(HubDispatch, TellsAPersonWhoseVersionDiffers) {
    static constexpr StringResource STRINGS[] = {{VERSION_MESSAGE_STRING, "<%1> differs %s"}};
    RegisterResources({}, STRINGS);
    struct Case {
        const char* text;
        const char* oldText;  // Where the first versions of the protocol had the text.
        const char* told;
    };
    const Case cases[] = {{"Draftel 1", "Old", "<Draftel> differs %s"},
                          {"%s 1", "Old%s", "<Old%s"},
                          {"", "", "<the last Ohmara program started> differs %s"},
                          {"7", "7", "<the last Ohmara program started> differs %s"}};
    for (const Case& each : cases) {
        m_record = {0, makeTool(), 60, 0, 0, {}};
        std::strcpy(m_record.text, each.text);
        std::memcpy(&m_record.spillLength, each.oldText, std::strlen(each.oldText));
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(sendRecord(IPC_SIGN_ON), 0);
        const std::string shown = ::testing::internal::GetCapturedStderr();
        EXPECT_NE(shown.find(each.told), std::string::npos) << shown;
    }
}

TEST_F(HubDispatch, AnswersWhoIsWho) {
    const HWND first = attach("Draftel");
    const HWND second = attach("Draftel");
    EXPECT_EQ(send(0, IPC_FIND_APP, "DRAFTEL", 2), static_cast<int>(second));
    EXPECT_EQ(send(0, IPC_FIND_APP, "draftel;0", 2), static_cast<int>(first));
    EXPECT_EQ(send(0, IPC_FIND_APP, " Draftel", 2), 0);
    EXPECT_EQ(send(0, IPC_FIND_APP, "", 2), 0);
    EXPECT_EQ(m_pHub->findToolWindow("Draftel;1"), second);
    EXPECT_EQ(ipcDes::theHub(), m_pHub.get());

    EXPECT_EQ(send(0, IPC_APP_NAME, hex(second)), 1);
    EXPECT_STREQ(m_record.text, "Draftel;1");
    EXPECT_EQ(m_record.replyLength, 10);
    EXPECT_EQ(send(0, IPC_APP_NAME, "0X" + hex(first), 3), 1);
    EXPECT_EQ(std::string(m_record.text, 3), "Dra");
    EXPECT_EQ(m_record.replyLength, 3);
    for (const char* text : {"", "0", "zz", "ffffffff", "100000000"}) {
        EXPECT_EQ(send(0, IPC_APP_NAME, text), 0) << text;
        EXPECT_EQ(m_record.replyLength, 60);
        EXPECT_EQ(send(0, IPC_IS_ALIVE, text, 2), 0) << text;
    }
    EXPECT_EQ(send(0, IPC_IS_ALIVE, hex(first), 2), 1);
    EXPECT_EQ(send(first, IPC_SIGN_OFF, "", 2), 1);
    EXPECT_EQ(send(0, IPC_IS_ALIVE, hex(first), 2), 0);
}

TEST_F(HubDispatch, ForwardsToRowsOnlyAndKeepsNoSlot) {
    const HWND from = attach("Draftel");
    const HWND to = attach("Sketchel");
    EXPECT_NE(send(from, IPC_COMMAND, "open %s", -1, to), 0);
    EXPECT_NE(send(from, 4711, "", 60, to), 0);
    const std::string endless(1004, 'e');
    EXPECT_NE(send(from, IPC_STATUS, endless, -1, to), 0);
    const std::string sender = std::to_string(from);
    EXPECT_EQ(arrivals(to), (Texts{"30 " + sender + " open %s", "4711 " + sender + " ",
                                   "50 " + sender + ' ' + endless.substr(1)}));

    const HWND stranger = makeTool();
    EXPECT_EQ(send(from, IPC_COMMAND, "x", -1, stranger), 0);
    EXPECT_EQ(send(from, IPC_COMMAND, "x", -1, m_window.m_hWnd), 0);
    EXPECT_EQ(send(to, IPC_SIGN_OFF, "", 2), 1);
    EXPECT_EQ(send(from, IPC_COMMAND, "x", -1, to), 0);
    EXPECT_EQ(arrivals(to), Texts());

    // A tool that died a moment ago still has its row.
    const HWND dead = attach("Draftel");
    DestroyWindow(dead);
    for (int round = 0; round < 70; ++round) {
        EXPECT_EQ(send(from, IPC_COMMAND, "x", -1, dead), 0);
    }
    EXPECT_TRUE(allSlotsFree());
}

TEST_F(HubDispatch, SendsInAnothersName) {
    const HWND known = attach("Kaldo");
    const HWND other = attach("Draftel");
    const HWND standIn = attach("Voltara");
    m_table.pushFront(std::make_unique<AppEntry>("Kaldo;0", 0, known, 0U, 11, 1U, "/file"));
    EXPECT_NE(m_pHub->sendStatusAs(standIn, other, "ready", -3), 0);
    EXPECT_NE(m_pHub->sendRequestAs(standIn, IPC_COMMAND, "hello", other), 0);
    EXPECT_EQ(m_pHub->sendRequestAs(standIn, IPC_COMMAND, "hello", makeTool()), 0);
    EXPECT_EQ(ipcSelfId, 0U);
    m_pHub->broadcast(IPC_COMMAND, "known", 1);
    m_pHub->broadcast(IPC_COMMAND, "all", 0);
    const std::string sender = std::to_string(standIn);
    EXPECT_EQ(arrivals(other),
              (Texts{"50 " + sender + " ready -3", "30 " + sender + " hello", "30 0 all"}));
    EXPECT_EQ(arrivals(known), (Texts{"30 0 known", "30 0 all"}));

    // A long text stays in the file that the receiver will read.
    const std::string path = [&] {
        m_pHub->sendRequestAs(standIn, IPC_COMMAND, std::string(5000, 'l').c_str(), other);
        return arrivals(other).at(0).substr(("30 " + sender + ' ').size());
    }();
    EXPECT_EQ(std::remove(path.c_str()), 0) << path;
}

TEST_F(HubDispatch, AnswersTheWords) {
    const HWND tool = attach("Draftel");
    EXPECT_EQ(send(tool, IPC_COMMAND, "JUNTORA_IS_SKETCHEL_RUNNING"), 0);
    attach("sketchel");
    EXPECT_EQ(send(tool, IPC_COMMAND, "juntora_is_sketchel_running"), 1);
    EXPECT_EQ(send(tool, IPC_COMMAND, "JUNTORA_ANY_APPS_RUNNING"), 2);
    for (const char* text :
         {"SW_SHOW", "JUNTORA_CLOSE_ALL_APPS", "JUNTORA_ANY_APPS_RUNNING ", ""}) {
        EXPECT_EQ(send(tool, IPC_COMMAND, text), 0) << text;
    }
    EXPECT_EQ(send(tool, IPC_COMMAND, std::string(1004, 'J')), 0);
}

TEST_F(HubDispatch, WithstandsEveryOpcodeAndAnyBytes) {
    const HWND tool = attach("Draftel");
    std::mt19937 random(99);
    for (int opcode = 0; opcode < 65'536; ++opcode) {
        send(tool, opcode, "");
        if (opcode == IPC_SIGN_OFF) {
            EXPECT_EQ(m_table.count(), 0);
            ASSERT_EQ(send(tool, IPC_SIGN_ON, "Draftel 117707"), 1);
        }
        for (char& byte : m_record.text) {
            byte = static_cast<char>(random());
        }
        const auto odd = static_cast<int>(random());
        m_record.replyLength = opcode % 3 ? odd : opcode % 7 - 1;
        m_record.spillLength = odd;
        m_record.sender = opcode % 5 ? tool : static_cast<HWND>(odd);
        m_record.target = opcode % 11 ? 0 : tool;
        sendRecord(opcode);
        if (opcode % 11 == 0) {
            EXPECT_EQ(arrivals(tool).size(), 1U);
        }
    }
    EXPECT_EQ(send(tool, IPC_IS_ALIVE, hex(tool), 2), 1);
    EXPECT_EQ(m_table.count(), 1);
    EXPECT_TRUE(allSlotsFree());
}

TEST_F(HubDispatch, WindowOutlivesCloseMessagesAndBadOffsets) {
    for (const UINT message : {WM_CLOSE, static_cast<UINT>(SC_CLOSE)}) {
        EXPECT_EQ(SendMessageA(m_window.m_hWnd, message, 0, 0), 0);
    }
    for (const LPARAM offset : {-1L, 0L, 63L, 65L, 64L + 1024 * 64, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(SendMessageA(m_window.m_hWnd, ipcMessageId, IPC_IS_ALIVE, offset), 0);
    }
    EXPECT_TRUE(IsWindow(m_window.m_hWnd));
    const HWND tool = attach("Draftel");
    m_window.SetIpc(nullptr);
    EXPECT_EQ(send(tool, IPC_IS_ALIVE, hex(tool), 2), 0);
}

// A bridge that answers opcode 13 alone, and shows in the table as the real one does.
class ProbeBridge : public Bridge {
public:
    explicit ProbeBridge(ipcDes* owner) : m_pHub(owner) { ++count; }
    ~ProbeBridge() override {
        m_pHub->removeWindowRows(window);
        --count;
    }
    int createAllWindows() override {
        m_pHub->addToolRow("Voltara", window);
        return windowsCanBeMade;
    }
    bool isCalling() const override { return false; }
    void clientGone(HWND) override {}
    bool firstLook(int opcode, IpcMessage* record, int* result) override {
        *result = 5;
        return opcode == IPC_FIND_APP || record->target == window;
    }
    HWND toolForLockedFile(const PathName& file, std::uint32_t access) override {
        return file == PathName("/x/locked") && access == 2 ? window : 0;
    }
    HWND toolForMonitoredFile(HWND, const PathName& file, std::uint32_t* flags) override {
        return file == PathName("/x/locked") && ++*flags == 8 ? window : 0;
    }

    static constexpr HWND window = 0x7000;
    static int count;
    static int windowsCanBeMade;

private:
    ipcDes* m_pHub;
};
int ProbeBridge::count = 0;
int ProbeBridge::windowsCanBeMade = 1;

TEST_F(HubDispatch, BridgeLooksFirst) {
    m_pHub->createBridge();
    const HWND tool = attach("Draftel");
    EXPECT_EQ(send(tool, IPC_FIND_APP, "Draftel", 2), static_cast<int>(tool));

    setBridgeMaker(
        [](ipcDes* hub) -> std::unique_ptr<Bridge> { return std::make_unique<ProbeBridge>(hub); });
    m_pHub->createBridge();
    m_pHub->createBridge();
    EXPECT_EQ(ProbeBridge::count, 1);
    EXPECT_EQ(m_table.count(), 2);
    EXPECT_EQ(m_table.findNewest(0, "Voltara;0", true)->toolIndex, 1);
    EXPECT_EQ(send(tool, IPC_FIND_APP, "Draftel", 2), 5);
    EXPECT_EQ(send(tool, IPC_COMMAND, "x", -1, ProbeBridge::window), 5);
    EXPECT_EQ(m_record.replyLength, -1);
    EXPECT_EQ(send(tool, IPC_IS_ALIVE, "7000", 2), 1);

    EXPECT_EQ(send(tool, IPC_FILE_OPEN, "/X/LOCKED 2", 2), 0x7000) << "held outside the table";
    EXPECT_EQ(send(tool, IPC_FILE_OPEN, "/x/locked 1", 2), 0);
    EXPECT_EQ(send(tool, IPC_FILE_FIND_FLAGS, "/x/locked 7 0", 1000), 0x7000);
    EXPECT_STREQ(m_record.text, "\"/x/locked\" 8 7000");
    EXPECT_EQ(send(tool, IPC_FILE_FIND_FLAGS, "/x/locked 3 0", 1000), 0);
    EXPECT_STREQ(m_record.text, "\"/x/locked\" 0 0");

    ProbeBridge::windowsCanBeMade = 0;
    m_pHub->createBridge();
    EXPECT_EQ(ProbeBridge::count, 0);
    EXPECT_EQ(send(tool, IPC_IS_ALIVE, "7000", 2), 0);
    EXPECT_EQ(send(tool, IPC_FIND_APP, "Draftel", 2), static_cast<int>(tool));

    ProbeBridge::windowsCanBeMade = 1;
    m_pHub->createBridge();
    m_pHub.reset();
    EXPECT_EQ(ProbeBridge::count, 0);
    EXPECT_EQ(ipcDes::theHub(), nullptr);
    m_window.SetIpc(nullptr);
    setBridgeMaker(nullptr);
}

}  // namespace
}  // namespace juntora
