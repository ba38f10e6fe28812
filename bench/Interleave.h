// Two ways to do the same, measured in turn within one process.
#pragma once

#include "bench/Statistics.h"

namespace juntora::bench {

inline constexpr int ROUNDS = 200;
inline constexpr int CALLS = 200;

/// Keeps the compiler from leaving out what made the value.
template <typename Value>
void keep(const Value& value) {
    asm volatile("" : : "r"(&value) : "memory");
}

/// Measures calls of two alternatives in turn; each sample is the time of one call.
template <typename First, typename Second>
void interleave(Samples& first, Samples& second, First callFirst, Second callSecond) {
    for (int round = 0; round < ROUNDS; ++round) {
        measureCalls(first, CALLS, callFirst);
        measureCalls(second, CALLS, callSecond);
    }
}

}  // namespace juntora::bench
