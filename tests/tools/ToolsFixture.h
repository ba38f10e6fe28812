// The programs on a desktop of their own, with the real hub.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/types.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {

/// A `juntoractl tool` that has signed on.
class Tool {
public:
    explicit Tool(const std::string& name, const ChildProcess::Options& options = {});

    const std::string& id() const { return m_id; }
    const std::string& name() const { return m_name; }
    ChildProcess& process() { return m_process; }

    /// The next line that it prints.
    nlohmann::json next();
    /// The next line of that event, past others.
    nlohmann::json next(const std::string& event);
    /// Writes a line and returns the result or error that answers it.
    nlohmann::json ask(const std::string& line);
    int result(const std::string& line) { return ask(line).value("result", -9999); }

private:
    ChildProcess m_process;
    std::string m_id;
    std::string m_name;
};

struct Outcome {
    int code = -1;
    std::string output;
    std::string errors;
};

class ToolsTest : public TestDesktop {
protected:
    /// Runs juntoractl to its end, with `input` as its whole input.
    static Outcome control(const std::vector<std::string>& arguments,
                           const std::string& input = "");
    /// Waits until the hub's process has ended, for longer than Planchet waits for a first tool
    /// that it has not seen. False when it runs on.
    static bool hubEnds();
    static bool hubRuns();
    static void killHub();
};

}  // namespace juntora::test
