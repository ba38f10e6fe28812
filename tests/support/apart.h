// A part of a test in a process of its own, maybe of another user.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include <gtest/gtest.h>

namespace juntora::test {

/// Runs `part` in a forked child. False from ended() if anything failed in it.
template <typename Part>
pid_t startApart(Part part) {
    const pid_t child = fork();
    if (child == 0) {
        part();
        std::fflush(stdout);
        _exit(::testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

inline bool ended(pid_t child) {
    int status = -1;
    return waitpid(child, &status, 0) == child && status == 0;
}

template <typename Part>
bool apart(Part part) {
    return ended(startApart(part));
}

inline constexpr uid_t NOBODY = 65'534;

/// In a child: without the rights of user 0, which no mode of a file keeps out.
inline void becomeNobody() {
    if (geteuid() == 0) {
        ASSERT_EQ(0, setresgid(NOBODY, NOBODY, NOBODY));
        ASSERT_EQ(0, setresuid(NOBODY, NOBODY, NOBODY));
    }
}

}  // namespace juntora::test
