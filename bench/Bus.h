// The comparison: a private message bus with a caller and a service.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

#include "tests/support/BusDaemon.h"

struct sd_bus;

namespace juntora::bench {

/// A dbus-daemon of its own, a service process on it, and this process's connection. Throws
/// std::runtime_error when the daemon is not there.
class Bus {
public:
    explicit Bus(const std::string& folder);
    ~Bus();
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    /// A method call with one number, there and back.
    void call();
    /// `count` calls of 900 characters that ask for no answer, until the service has had them all:
    /// with `direct`, over a connection of two without a daemon between them.
    void oneWay(int count, bool direct);

private:
    test::BusDaemon m_daemon;
    pid_t m_service = -1;
    sd_bus* m_bus = nullptr;
    sd_bus* m_direct = nullptr;
};

}  // namespace juntora::bench
