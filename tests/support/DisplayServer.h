// A display in memory.
#pragma once

#include <string>

#include "tests/support/ChildProcess.h"

namespace juntora::test {

/// An X server of 1280 by 800 pixels, without a window manager. Ends with the object, in good
/// order: it leaves its lock behind otherwise.
class DisplayServer {
public:
    DisplayServer();
    ~DisplayServer() { end(); }
    DisplayServer(const DisplayServer&) = delete;
    DisplayServer& operator=(const DisplayServer&) = delete;

    /// As DISPLAY; empty where the server is not installed.
    const std::string& name() const { return m_name; }
    void end();

private:
    ChildProcess m_server;
    std::string m_name;
};

}  // namespace juntora::test
