#include "bench/PingPong.h"

#include <linux/futex.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace juntora::bench {

struct PingPong::Words {
    alignas(64) std::atomic<std::uint32_t> there;
    alignas(64) std::atomic<std::uint32_t> back;
};

namespace {

void store(std::atomic<std::uint32_t>& word, std::uint32_t value) {
    word.store(value);
    syscall(SYS_futex, &word, FUTEX_WAKE, 1, nullptr, nullptr, 0);
}

void await(std::atomic<std::uint32_t>& word, std::uint32_t value) {
    for (std::uint32_t seen = word.load(); seen != value; seen = word.load()) {
        syscall(SYS_futex, &word, FUTEX_WAIT, seen, nullptr, nullptr, 0);
    }
}

}  // namespace

PingPong::PingPong()
    : m_words(static_cast<Words*>(
          mmap(nullptr, sizeof(Words), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))),
      m_other(fork()) {
    if (m_other == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (std::uint32_t round = 1;; ++round) {
            await(m_words->there, round);
            store(m_words->back, round);
        }
    }
}

PingPong::~PingPong() {
    kill(m_other, SIGKILL);
    waitpid(m_other, nullptr, 0);
    munmap(m_words, sizeof(Words));
}

void PingPong::call() {
    ++m_round;
    store(m_words->there, m_round);
    await(m_words->back, m_round);
}

}  // namespace juntora::bench
