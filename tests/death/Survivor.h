// The process that lives on and looks what a death has left.
#pragma once

#include <chrono>
#include <string>

#include "tests/death/Scenario.h"

namespace juntora::test {

/// A child forked from this process. It is killed and collected with the object.
class Survivor {
public:
    /// Returns once scenario.settle() is done. Throws std::runtime_error when it is not.
    explicit Survivor(Scenario& scenario);
    ~Survivor();
    Survivor(const Survivor&) = delete;
    Survivor& operator=(const Survivor&) = delete;

    /// Has it call scenario.attend(); does not wait for it.
    void attend();
    /// Has it call scenario.check() and returns the complaints, empty when all was well. One that
    /// has not answered within `patience` or has ended is a complaint.
    std::string check(std::chrono::milliseconds patience);

private:
    std::string answer(std::chrono::milliseconds patience);

    pid_t m_pid = -1;
    int m_channel = -1;
};

}  // namespace juntora::test
