// Samples of one measurement, and what is said of them.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace juntora::bench {

using Clock = std::chrono::steady_clock;

inline double microsecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

/// Microseconds a call.
class Samples {
public:
    void add(double microseconds) { m_values.push_back(microseconds); }
    double median() { return at(0.50); }
    double p99() { return at(0.99); }

private:
    double at(double fraction) {
        if (m_values.empty()) {
            return 0;
        }
        const auto index =
            static_cast<std::ptrdiff_t>(static_cast<double>(m_values.size() - 1) * fraction);
        std::nth_element(m_values.begin(), m_values.begin() + index, m_values.end());
        return m_values[static_cast<std::size_t>(index)];
    }

    std::vector<double> m_values;
};

/// Adds the mean time of so many calls, one behind the other.
template <typename Call>
void measureCalls(Samples& samples, int calls, Call call) {
    const auto start = Clock::now();
    for (int i = 0; i < calls; ++i) {
        call();
    }
    samples.add(microsecondsSince(start) / calls);
}

/// Time between two calls, spent working or asleep.
void work(std::chrono::microseconds time);

/// One row of the report: a figure, and what it is held against.
void printRow(const char* name, double value, const char* unit);
void printRatio(const char* name, double ratio, double goal, bool atMost);

}  // namespace juntora::bench
