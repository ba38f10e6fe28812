#include "tests/tools/ToolsFixture.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>

#include "ipc/ipc.h"
#include "platform/desktop/window.h"
#include "tests/support/ProcessDescriptor.h"

namespace juntora::test {
namespace {

/// 0 when no hub is there.
pid_t hubProcess() {
    DWORD process = 0;
    return ipcFindHub() && GetWindowThreadProcessId(ipcHubWindow, &process)
               ? static_cast<pid_t>(process)
               : 0;
}

}  // namespace

Tool::Tool(const std::string& name, const ChildProcess::Options& options)
    : m_process("juntoractl", {"tool", name}, options) {
    const nlohmann::json event = next();
    EXPECT_EQ(event.value("event", ""), "signed-on");
    m_id = event.value("id", "");
    m_name = event.value("name", "");
}

nlohmann::json Tool::next() {
    const auto line = m_process.readLine();
    if (!line) {
        ADD_FAILURE() << m_name << " prints no more";
        return nlohmann::json::object();
    }
    return nlohmann::json::parse(*line);
}

nlohmann::json Tool::next(const std::string& event) {
    for (;;) {
        nlohmann::json line = next();
        if (line.empty() || line["event"] == event) {
            return line;
        }
    }
}

nlohmann::json Tool::ask(const std::string& line) {
    EXPECT_TRUE(m_process.writeLine(line));
    for (;;) {
        nlohmann::json answer = next();
        if (answer.empty() || answer["event"] != "record") {
            return answer;
        }
    }
}

Outcome ToolsTest::control(const std::vector<std::string>& arguments, const std::string& input) {
    ChildProcess process("juntoractl", arguments, {{}, "", true});
    process.writeLine(input);
    process.closeInput();
    const std::string output = process.readAll();
    const int code = process.wait().value_or(-1);
    return {code, output, process.errors()};
}

bool ToolsTest::hubRuns() { return ipcFindHub() != 0; }

void ToolsTest::killHub() {
    const pid_t process = hubProcess();
    ASSERT_GT(process, 0);  // 0 would be everybody in this process's group.
    kill(process, SIGKILL);
}

bool ToolsTest::hubEnds() {
    const pid_t process = hubProcess();
    if (process == 0) {
        return true;
    }
    const Descriptor ended = openProcess(process);
    pollfd watched{ended, POLLIN, 0};
    return ended < 0 || poll(&watched, 1, 90'000) == 1;
}

}  // namespace juntora::test
