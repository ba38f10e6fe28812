// The class that the test's server offers.
#pragma once

#include "platform/automation/guid.h"

namespace juntora::test {

inline constexpr char PROGRAM_ID[] = "Test.Counter.2.1";
inline constexpr GUID CLASS_ID{0x11111111, 0x2222, 0x3333, {4, 4, 5, 5, 5, 5, 5, 5}};
inline constexpr GUID INTERFACE_ID{0x11111112, 0x2222, 0x3333, {4, 4, 5, 5, 5, 5, 5, 5}};

/// What the server does, by an environment variable of this name: nothing (it serves), "exit",
/// "idle" (it never offers its class) or "late" (it offers it, and answers when no caller waits for
/// it any more).
inline constexpr char MODE[] = "TEST_SERVER_MODE";

/// The members by their numbers.
enum Member : long {
    ADD = 1,
    ECHO = 2,
    RAISE = 3,
    CALL_BACK = 4,
    BUMP = 5,
    REFERENCES = 6,
    MAKE = 7,
    DIE = 8,
    CALL_LATER = 9,
};

/// Of the object that is handed to CALL_BACK: takes and returns a number.
inline constexpr long ON_CALL = 1;

}  // namespace juntora::test
