#include "bench/Statistics.h"

#include <cstdio>

namespace juntora::bench {

void work(std::chrono::microseconds time) {
    const auto end = Clock::now() + time;
    while (Clock::now() < end) {
    }
}

void printRow(const char* name, double value, const char* unit) {
    std::printf("  %-52s %12.3f %s\n", name, value, unit);
}

void printRatio(const char* name, double ratio, double goal, bool atMost) {
    const bool reached = atMost ? ratio <= goal : ratio >= goal;
    std::printf("  %-52s %12.3f (%s %g: %s)\n", name, ratio, atMost ? "at most" : "at least", goal,
                reached ? "reached" : "NOT REACHED");
}

}  // namespace juntora::bench
