#include "tools/samples/SampleTool.h"

#include <cstdio>
#include <string>

#include "platform/kernel/printable.h"
#include "platform/kernel/process.h"
#include "platform/kernel/signals.h"
#include "tools/toolkit/ToolWindow.h"

namespace juntora {
namespace {

class SampleTool : public ToolWindow {
public:
    using ToolWindow::ToolWindow;

private:
    int onRecord(int opcode, const IpcMessage& record) override {
        std::printf("%s: record %d from %x: %s\n", name().c_str(), opcode, record.sender,
                    PrintableText(record.text).c_str());
        std::fflush(stdout);
        return 1;
    }
};

}  // namespace

int runSampleTool(int argc, char** argv, const char* baseName) {
    SetProgramArguments(argc, argv);
    SampleTool tool((std::string(baseName) + "Wnd").c_str(), baseName);
    if (tool.handle() == 0 || !QuitOnSignals()) {
        std::fprintf(stderr, "%s: no window can be made on this desktop\n", baseName);
        return 1;
    }
    if (tool.signOn(baseName, true) != ToolWindow::SignOn::DONE) {
        std::fprintf(stderr, "%s: not signed on, as the hub cannot be reached or refused\n",
                     baseName);
        return 1;
    }
    std::printf("%s: signed on as %x\n", tool.name().c_str(), tool.handle());
    std::fflush(stdout);
    return tool.run();
}

}  // namespace juntora
