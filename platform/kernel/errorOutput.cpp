#include "platform/kernel/errorOutput.h"

#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

#include "platform/kernel/NoPipeSignal.h"

namespace juntora::kernel {
namespace {

bool canTakeMore() {
    pollfd errors{STDERR_FILENO, POLLOUT, 0};
    return poll(&errors, 1, 0) == 1 && (errors.revents & POLLOUT) != 0;
}

}  // namespace

void WriteToErrors(std::string_view text) {
    const NoPipeSignal noSignal;
    while (!text.empty() && canTakeMore()) {
        // A pipe that can be written to has room for this much at least.
        const ssize_t written =
            write(STDERR_FILENO, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written <= 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

bool ErrorsAreOnTerminal() { return isatty(STDERR_FILENO) == 1; }

std::size_t ErrorColumns() {
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void LeaveStandardStreams() {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing >= 0) {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            dup2(nothing, stream);
        }
        if (nothing > STDERR_FILENO) {
            close(nothing);
        }
    }
    rlimit image{};
    if (getrlimit(RLIMIT_CORE, &image) == 0) {
        image.rlim_cur = 0;
        setrlimit(RLIMIT_CORE, &image);
    }
}

}  // namespace juntora::kernel
