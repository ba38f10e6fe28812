#include "platform/kernel/input.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

#include "platform/desktop/message.h"

namespace juntora {
namespace {

constexpr std::size_t CHUNK = 64 * 1024;

struct Input {
    InputTaker take = nullptr;
    void* context = nullptr;
    /// Rings for what is there already: a watched descriptor tells of news alone, and a file of
    /// nothing.
    int more = -1;
};

Input s_input;

bool isReadable() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) > 0;
}

void askForMore() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(s_input.more, &one, sizeof one);
}

void readOnce(void*) {
    // Without this look the read could wait: the descriptor is others' too, so it is left as it is.
    if (!isReadable()) {
        return;
    }
    static char chunk[CHUNK];
    const ssize_t count = read(STDIN_FILENO, chunk, sizeof chunk);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
        askForMore();
        return;
    }
    const Input input = s_input;
    if (count > 0) {
        askForMore();
        input.take(chunk, static_cast<std::size_t>(count), input.context);
    } else {
        UnwatchStandardInput();
        input.take(nullptr, 0, input.context);
    }
}

}  // namespace

bool WatchStandardInput(InputTaker take, void* context) {
    UnwatchStandardInput();
    s_input = {take, context, eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    if (s_input.more < 0 || !WatchDescriptor(s_input.more, readOnce, nullptr)) {
        UnwatchStandardInput();
        return false;
    }
    WatchDescriptor(STDIN_FILENO, readOnce, nullptr);
    askForMore();
    return true;
}

void UnwatchStandardInput() {
    if (s_input.more >= 0) {
        UnwatchDescriptor(STDIN_FILENO);
        UnwatchDescriptor(s_input.more);
        close(s_input.more);
    }
    s_input = {};
}

}  // namespace juntora
