// All operations in which processes die here.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <vector>

#include "tests/death/Scenario.h"

namespace juntora::test {

struct ScenarioMaker : std::function<std::unique_ptr<Scenario>()> {
    using function::function;
    /// By its name the test framework tells it from others.
    friend void PrintTo(const ScenarioMaker& make, std::ostream* stream) {
        *stream << make()->name();
    }
};
using Scenarios = std::vector<ScenarioMaker>;

/// Complete once main() runs.
inline Scenarios& scenarios() {
    static Scenarios all;
    return all;
}

/// Adds scenarios of these kinds, made with these arguments, to all. Each file has one of its own.
template <typename... Kinds>
struct Registration {
    template <typename... Arguments>
    explicit Registration(Arguments... arguments) {
        (scenarios().emplace_back([=] { return std::make_unique<Kinds>(arguments...); }), ...);
    }
};

}  // namespace juntora::test
