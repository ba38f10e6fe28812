// Questions to the programs whose windows are shown.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/types.h"

namespace juntora::screen {

/// Asks the windows of one thread, from a thread of its own: a program that is stopped, or busy,
/// keeps nobody waiting but those who have asked it. For the toolkit's thread.
class Channel {
public:
    /// The channel to the owner of a window, as GetWindowThreadProcessId numbers it.
    static std::shared_ptr<Channel> to(DWORD owner);

    /// No answer comes any more, from whatever channel: the toolkit is about to go, and a program
    /// that was stopped may answer at any time.
    static void endAnswers();

    Channel();
    ~Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    /// Runs `question` on the channel's thread, behind those asked before, then what it returns on
    /// the toolkit's thread, unless `asker` has gone by then.
    void ask(const std::weak_ptr<void>& asker, std::function<std::function<void()>()> question);

private:
    struct Work;
    std::shared_ptr<Work> m_work;
};

/// The text that a window answers with, empty without one. For the channel's thread.
std::string askForText(HWND window, UINT message, WPARAM wParam);

/// What a person does: put into the window's queue, in the order in which it was done.
void tell(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace juntora::screen
