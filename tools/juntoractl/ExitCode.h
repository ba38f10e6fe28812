// What juntoractl tells by its exit code.
#pragma once

namespace juntora {

enum ExitCode : int {
    EXIT_CODE_DONE = 0,
    EXIT_CODE_REFUSED = 1,  ///< The hub refused or found nothing; a lock could not be had.
    EXIT_CODE_USAGE = 2,
    EXIT_CODE_NO_HUB = 3,
};

}  // namespace juntora
