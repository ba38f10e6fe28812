// The text of a request to start a tool.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace juntora {

/// How the new tool shows itself, the asking tool's folder, and program and arguments as they go to
/// the system:
///
///     1 "C:\home\me\my boards" draftel.exe board.opj
///     1 C:\home\me draftel.exe                        where the text holds no quote at all
struct LaunchRequest {
    explicit LaunchRequest(std::string_view text);

    /// Whether the text names a folder and something to start.
    bool isUsable() const { return !command.empty(); }

    std::int32_t show = 0;  ///< 0: minimised.
    std::string directory;  ///< Of any length.
    std::string command;
};

}  // namespace juntora
