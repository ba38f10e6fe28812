#include "tests/bridge/BridgeFixture.h"

#include <deque>
#include <ostream>

#include "framework/COleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "ipc/ipc.h"
#include "platform/automation/registration.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"

namespace juntora::test {
namespace {

constexpr char LINK_PROGRAM_ID[] = "Tarvex.VoltaraIpcLink.16.6.0";
constexpr GUID LINK_CLASS{0x11111113, 0x2222, 0x3333, {4, 4, 5, 5, 5, 5, 5, 5}};
constexpr LONG COOKIE = 4711;

std::deque<Arrived>& arrived() {
    static std::deque<Arrived> all;
    return all;
}

LRESULT keep(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    IpcMessage* record = nullptr;
    int opcode = 0;
    if (!ipcReceive(message, wParam, lParam, &record, &opcode)) {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    arrived().push_back({opcode, record->sender, record->text});
    ipcRelease(record);
    return 1;
}

void raiseIfToldTo() {
    if (TestLink::raises) {
        AfxThrowOleException(E_FAIL);
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Arrived& record) {
    return stream << record.opcode << " from " << std::hex << record.sender << ": " << record.text;
}

void BridgeFixture::startHubWithLibrary(const std::string& faults) {
    startHub({}, "juntora",
             {"JUNTORA_TOOL_OBJECTS=" + ProgramFolder() + "/libtest_tool_objects.so",
              "TEST_TOOL_FAULTS=" + faults});
}

HWND BridgeFixture::attachKeeper(const std::string& name) {
    const HWND tool = attach(name);
    SetWindowProc(tool, &keep);
    return tool;
}

int BridgeFixture::launch(HWND tool, const std::string& text) {
    ipcSelfId = tool;
    char reply[8];
    int capacity = sizeof reply;
    return ipcSend(IPC_LAUNCH, text.c_str(), 0, reply, &capacity);
}

int BridgeFixture::tell(HWND tool, HWND target, const std::string& text, int opcode) {
    ipcSelfId = tool;
    return ipcPost(opcode, text.c_str(), target);
}

HWND BridgeFixture::find(const std::string& name) { return ipcFindApp(name.c_str()); }
bool BridgeFixture::finds(const std::string& name) const {
    return waitFor([&] { return find(name) != 0; });
}
bool BridgeFixture::loses(const std::string& name) const {
    return waitFor([&] { return find(name) == 0; });
}

Arrived BridgeFixture::next() {
    if (!waitFor([] { return !arrived().empty(); })) {
        return {};
    }
    Arrived first = std::move(arrived().front());
    arrived().pop_front();
    return first;
}

std::vector<std::string> BridgeFixture::calls(std::size_t count) {
    std::vector<std::string> lines;
    while (lines.size() < count) {
        std::string line;
        // The hub may be asking this process for something meanwhile.
        waitFor([&] {
            line = m_hub->readLine(ChildProcess::Milliseconds(1)).value_or("");
            return !line.empty();
        });
        lines.push_back(line);
        if (line.empty()) {
            break;
        }
    }
    return lines;
}

bool TestLink::offer() {
    return AfxOleInit() && RegisterClassOf({LINK_CLASS, LINK_PROGRAM_ID, "/nowhere"}) &&
           COleObjectFactory::RegisterAll();
}

const AFX_DISPMAP* TestLink::map() {
    static const AFX_DISPMAP_ENTRY entries[] = {
        DISP_FUNCTION<&TestLink::GetDataFile>("getDataFile"),
        DISP_FUNCTION<&TestLink::ScopelCommand>("scopelCommand"),
        DISP_FUNCTION<&TestLink::Advise>("advise"),
        DISP_FUNCTION<&TestLink::Unadvise>("unadvise"),
        DISP_FUNCTION<&TestLink::GetProfileFile>("getProfileFile"),
    };
    static const AFX_DISPMAP map("Test.Link", entries);
    return &map;
}

bool TestLink::change(LONG code) {
    COleDispatchDriver driver;
    driver.AttachDispatch(sink, false);
    try {
        driver.InvokeHelper(1, code);
        return true;
    } catch (CException* exception) {
        exception->Delete();
        return false;
    }
}

std::string TestLink::GetDataFile() {
    raiseIfToldTo();
    return dataFile;
}

LONG TestLink::ScopelCommand(const char* text) {
    commands.emplace_back(text);
    raiseIfToldTo();
    return 0;
}

void TestLink::Advise(IDispatch* listener, LONG, LONG* cookie) {
    raiseIfToldTo();
    listener->AddRef();
    sink = listener;
    *cookie = COOKIE;
}

void TestLink::Unadvise(LONG cookie) {
    unadvised += cookie == COOKIE ? 1 : 0;
    sink->Release();
    sink = nullptr;
    raiseIfToldTo();
}

std::string TestLink::GetProfileFile() {
    raiseIfToldTo();
    return profileFile;
}

namespace {
const COleObjectFactory linkFactory(LINK_CLASS, LINK_PROGRAM_ID, &TestLink::create, &TestLink::map);
}  // namespace

}  // namespace juntora::test
