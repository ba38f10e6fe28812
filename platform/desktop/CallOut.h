// Calls from a message loop into the program.
#pragma once

#include <cstdint>

namespace juntora::desktop {

/// Tells on standard error of the exception that is being caught: "`what` `number` failed". To be
/// called inside a catch clause.
void reportException(const char* what, std::uint64_t number) noexcept;

/// Calls the program's code. What that throws is reported and goes no further: nothing may pass
/// through a message loop, which has others to serve.
template <typename Call>
void callOut(const char* what, std::uint64_t number, const Call& call) noexcept {
    try {
        call();
    } catch (...) {
        reportException(what, number);
    }
}

}  // namespace juntora::desktop
