// The physical limit of a round trip between two processes that sleep: two futexes in shared
// memory.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>

namespace juntora::bench {

class PingPong {
public:
    /// Starts the other process.
    PingPong();
    ~PingPong();
    PingPong(const PingPong&) = delete;
    PingPong& operator=(const PingPong&) = delete;

    /// There and back.
    void call();

private:
    struct Words;
    Words* m_words;
    pid_t m_other;
    std::uint32_t m_round = 0;
};

}  // namespace juntora::bench
