// Requests of three tools to a hub that is whole but for its dialogs. Each starts with a byte that
// chooses the opcode and one that chooses the sender, and its text ends with a line.
//
// Launches have a fuzzer of their own: here they would start what the text names.
#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "tests/fuzz/Fuzz.h"
#include "tests/hub/BareHub.h"
#include "tests/support/DesktopSandbox.h"

using namespace juntora;

namespace {

constexpr int OPCODES[] = {
    IPC_SIGN_ON,    IPC_SIGN_OFF,       IPC_FIND_APP,         IPC_APP_NAME,        IPC_WATCH,
    IPC_COMMAND,    IPC_IS_ALIVE,       IPC_SET_ENV,          IPC_FILE_OPEN,       IPC_FILE_QUERY,
    IPC_FILE_CLOSE, IPC_FILE_SET_FLAGS, IPC_FILE_CLEAR_FLAGS, IPC_FILE_FIND_FLAGS, IPC_STATUS};

/// The hub and its tools, made with the first input.
struct Scene {
    Scene() {
        sandbox.enter();
        hub = std::make_unique<test::BareHub>();
        std::generate(std::begin(tools), std::end(tools), [&] { return hub->makeTool(); });
    }

    void request(int opcode, HWND sender, std::string_view text) {
        for (const HWND tool : tools) {
            hub->arrivals(tool);  // Each holds a slot.
        }
        if (opcode == IPC_SIGN_ON) {
            // Another version's message is not what is looked for here.
            const std::string name(text.substr(0, text.find_first_of(" \t\v\f\r")));
            hub->send(sender, opcode, name.substr(0, 900) + " 117707");
        } else {
            hub->send(sender, opcode, text, 1000);
        }
        mustHold(static_cast<int>(hub->lines().size()) == hub->m_table.count(),
                 "each row has its line");
    }

    test::DesktopSandbox sandbox;
    std::unique_ptr<test::BareHub> hub;
    HWND tools[3]{};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Never destroyed: the layer has left the desktop by the time at which statics go. What is left
    // behind the sandbox's own process clears away.
    static Scene& scene = *new Scene;
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    while (rest.size() >= 2) {
        const int opcode = OPCODES[static_cast<unsigned char>(rest[0]) % std::size(OPCODES)];
        const HWND tool = scene.tools[static_cast<unsigned char>(rest[1]) % std::size(scene.tools)];
        rest.remove_prefix(2);
        const std::string_view text = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(text.size() + 1, rest.size()));
        scene.request(opcode, tool, text);
    }
    for (const HWND tool : scene.tools) {
        scene.request(IPC_SIGN_OFF, tool, "");
    }
    clearenv();  // Of what the requests have set.
    scene.sandbox.enter();
    mustHold(scene.hub->m_table.count() == 0, "no row is left of tools that have gone");
    return 0;
}
