// A real program, started and watched by a test: it waits on events, never on the clock alone, and
// leaves no process behind.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/Descriptor.h"

namespace juntora::test {

/// The folder of the programs under test: JUNTORA_TEST_BIN, else that of the test's own binary.
std::string ProgramFolder();

/// The path of the running test binary.
std::string OwnProgram();

/// One child with pipes at its standard input and output. To be used by one thread. The child is
/// killed and collected with the object, and dies with the thread that made it.
class ChildProcess {
public:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr Milliseconds PATIENCE{10'000};

    struct Options {
        std::vector<std::string> environment{};  ///< "NAME=VALUE" over the test's own.
        std::string folder{};                    ///< Current folder; empty for the test's own.
        bool keepErrors = false;  ///< Standard error goes to errors() and not to the test's own.
    };

    /// Starts `program`, a path, or a bare name of ProgramFolder(). One that cannot be executed
    /// says so at its standard error and ends with 127.
    explicit ChildProcess(const std::string& program, std::vector<std::string> arguments = {})
        : ChildProcess(program, std::move(arguments), Options()) {}
    ChildProcess(const std::string& program, std::vector<std::string> arguments,
                 const Options& options);
    ~ChildProcess();
    ChildProcess(ChildProcess&& other) noexcept = default;

    pid_t pid() const { return m_pid; }
    bool isRunning();

    /// The next line of its standard output without the line end; nothing when none is whole
    /// within `timeout` or the output has ended. A last line without an end counts as whole.
    std::optional<std::string> readLine(Milliseconds timeout = PATIENCE);
    /// Reads on until a line contains `part`, and returns that line.
    std::optional<std::string> readLineWith(std::string_view part, Milliseconds timeout = PATIENCE);
    /// All that is left of the output, until it ends or `timeout` is over.
    std::string readAll(Milliseconds timeout = PATIENCE);

    /// Writes `line` and a line end. False when the child takes no more input.
    bool writeLine(std::string_view line);
    void closeInput() { m_input.reset(); }

    void kill(int signal = SIGKILL);
    /// Waits for its end: the exit code, or 128 and the signal that killed it; nothing when it
    /// still runs after `timeout`. Output is taken in meanwhile, so that a full pipe stops nobody.
    std::optional<int> wait(Milliseconds timeout = PATIENCE);

    /// What it has written to standard error so far, with keepErrors; all of it after wait().
    const std::string& errors() const { return m_errors; }

private:
    using Deadline = std::chrono::steady_clock::time_point;

    std::optional<std::string> takeLine();
    bool waitForEvent(Deadline deadline, bool untilEnd);
    static void drain(Descriptor& descriptor, std::string& into);
    void collect();

    pid_t m_pid = -1;
    Descriptor m_process;
    Descriptor m_input;
    Descriptor m_output;
    Descriptor m_errorOutput;
    std::string m_read;
    std::string m_errors;
    std::optional<int> m_result;
};

}  // namespace juntora::test
