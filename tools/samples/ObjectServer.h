// A sample tool that is driven by automation objects.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "framework/CCmdTarget.h"
#include "platform/desktop/window.h"

namespace juntora {

/// Prints a line, and appends it to the file that JUNTORA_SAMPLE_LOG names: who starts a tool by
/// its objects seldom sees what it prints. Control characters stand as escapes.
void say(const char* tool, const std::string& text);

/// The command line that the hub has left for the tool in the registry; empty for none.
std::string leftCommandLine(const char* toolKey);

/// The program stays as long as one lives.
class SampleObject : public CCmdTarget {
public:
    SampleObject();
    ~SampleObject() override;
};

/// The main function of such a tool: registers the program's classes, for all users where this one
/// is an administrator, and serves them. With "-Regserver" that is all, and with "-Unregserver" it
/// takes them out instead ("/" and letters of either case will do as well); with "-Embedding" the
/// program ends 2 s after its last object has gone, in which another may be made, or when none has
/// been made for a minute. Returns the exit code.
int runObjectServer(int argc, char** argv, const char* tool);

/// What a file says that a tool is to do of itself: words and numbers line by line, each carried
/// out from the message loop. `wait N` waits N milliseconds; the rest is the tool's own.
class SampleScript {
public:
    /// `step` gets a line's word and what stands behind it.
    using Step = std::function<void(const std::string& word, const std::string& rest)>;

    explicit SampleScript(Step step);
    ~SampleScript();
    SampleScript(const SampleScript&) = delete;
    SampleScript& operator=(const SampleScript&) = delete;

    /// Reads the file; what was left of another one is dropped. False if it cannot be read.
    bool load(const std::string& path);
    void run();

private:
    static LRESULT procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void next();

    const Step m_step;
    HWND m_window;
    std::vector<std::string> m_lines;
    std::size_t m_at = 0;
};

}  // namespace juntora
