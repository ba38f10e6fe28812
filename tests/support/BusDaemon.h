// A message bus of a test's own.
#pragma once

#include <string>

#include "tests/support/ChildProcess.h"

namespace juntora::test {

/// A dbus-daemon without any services. Ends with the object, as every ChildProcess does.
class BusDaemon {
public:
    /// `folder` takes its configuration and its socket.
    explicit BusDaemon(const std::string& folder);

    /// As DBUS_SESSION_BUS_ADDRESS; empty where the daemon is not installed.
    const std::string& address() const { return m_address; }
    void end() { m_daemon.kill(); }

private:
    ChildProcess m_daemon;
    std::string m_address;
};

}  // namespace juntora::test
