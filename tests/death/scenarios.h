// All operations in which processes die here.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "tests/death/Scenario.h"

namespace juntora::test {

using Scenarios = std::vector<std::function<std::unique_ptr<Scenario>()>>;

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
        (scenarios().push_back([=] { return std::make_unique<Kinds>(arguments...); }), ...);
    }
};

}  // namespace juntora::test
