// A platform_peer that runs, as the tests speak to it.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "platform/types.h"
#include "tests/support/ChildProcess.h"

namespace juntora::test {

class Peer {
public:
    explicit Peer(const std::string& title = "peer")
        : process("platform_peer", {title}),
          window(static_cast<HWND>(std::stoul(process.readLine().value_or("0"), nullptr, 16))) {}

    /// Has the peer do something, and waits for its answer.
    long ask(const std::string& line) {
        process.writeLine(line);
        return std::stol(process.readLine().value_or("-9999"));
    }

    ChildProcess process;
    HWND window;
};

}  // namespace juntora::test
