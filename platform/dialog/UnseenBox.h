// What becomes of a box that asks somebody and that nobody can see: waiting would be waiting for
// ever, and a hub or a tool that waits serves nobody.
#pragma once

#include <cstdint>

#include "platform/types.h"

namespace juntora::dialog {

/// What a box's modal loop is ended with, and its caller gets, when nobody could see it.
inline constexpr int NOT_SHOWN = 0;

/// Writes a box's text to standard error, where whoever started the program may see it, and the
/// answer that is given in its user's place. A null text is empty, a null caption "Error".
void PrintUnseenBox(const char* text, const char* caption, const char* answer);

/// Belongs to a box that is shown and tells when no screen shows it any more.
class ScreenWatch {
public:
    /// The number of the timer that the box has from now on.
    static constexpr std::uintptr_t TIMER = 1;

    void start(HWND box);
    /// At each tick of the timer: has the screen started anew where that can be, and returns
    /// whether there has been none for ten seconds on end.
    bool isUnseen();

private:
    int m_unseenTicks = 0;
};

}  // namespace juntora::dialog
